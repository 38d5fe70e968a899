/// \file
/// Incremental topology runs as a careful operator makes them.
#pragma once

#include "model/dtsdb.h"
#include "topology/tp.h"

namespace dtsdb::tools {

/// What became of the changes that were waiting.
enum class RunOutcome {
  kNothing,      ///< none were waiting
  kIncremental,  ///< an incremental run took them up
  kFull,         ///< so many were waiting that a full run did
  kReplaced,     ///< the incremental run failed, and a full run took its place
  kFailed,       ///< the full run failed too: the results are as far as it came
};

/// The outcome in words.
const char* OutcomeText(RunOutcome outcome);

/// Makes runs on a model, and puts right at once what a run leaves that failed.
class CarefulRunner {
 public:
  CarefulRunner(DTSDB& database, TP& tp) : m_database(database), m_tp(tp) {}

  /// Works out everything from nothing. False when that fails; every further run is then a full one until it succeeds.
  bool RunFull();

  /// Takes up the waiting changes. Afterwards none is waiting, also where the topology would leave them: their states
  /// stand in the model, and the full run has seen them.
  RunOutcome Run();

 private:
  RunOutcome Change();
  void ChooseReferences();

  DTSDB& m_database;
  TP& m_tp;
  bool m_needsFullRun = false;
};

}  // namespace dtsdb::tools
