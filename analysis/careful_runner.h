/// \file
/// Topology runs whose result is that of a full run.
#pragma once

#include <QList>
#include <string>
#include <vector>

#include "analysis/error.h"
#include "analysis/topology.h"
#include "model/dtsdb.h"
#include "topology/switch_event.h"
#include "topology/tp.h"
#include "validation/finding.h"

namespace dtsdb::analysis {

/// Whose result holds.
enum class Rules {
  kCareful,  ///< that of a full run: incremental runs only where they certainly equal it; docs/topology.md
  kAsIs,     ///< that of TP::tpChange, which can differ from a full run; a full one only where it fails
};

/// What a run was.
enum class RunKind {
  kNothing,      ///< no run: nothing was to follow up
  kIncremental,  ///< TP::tpChange
  kFull,         ///< TP::tpAllnew
};

/// Why a run was of its kind.
enum class RunReason {
  kNothingWaiting,
  kCertain,            ///< incremental: nothing that it reaches makes it differ from a full one
  kAsIs,               ///< incremental: as the rules of TP have it
  kAsked,              ///< full: the first one, or one that was asked for
  kOpenEnd,            ///< full: a branch with an open end stands on a level that the changes reach
  kZeroImpedance,      ///< full: so does a zero-impedance branch, or a breaker that carries one
  kManyChanges,        ///< full: 50 or more changes were waiting
  kIncrementalFailed,  ///< full: the incremental run failed
  kFailedBefore,       ///< full: the run before failed
};

/// A zero-impedance branch that was switched together with the breaker that carries it.
struct FollowedBranch {
  std::string branch;   ///< identity of the ZBR
  std::string breaker;  ///< identity of its CB
  bool on = false;      ///< back in service; false: taken out
};

/// How a run went.
struct RunReport {
  RunKind kind = RunKind::kNothing;               ///< what the run was
  RunReason reason = RunReason::kNothingWaiting;  ///< why it was that
  std::string cause;                     ///< of kOpenEnd and kZeroImpedance: table and identity, such as "LN L1"
  std::vector<FollowedBranch> followed;  ///< since the run before
  std::vector<std::string> leftOut;      ///< zero-impedance branches that the topology takes as out of service
  QList<Finding> findings;               ///< breakers that disagree with the zero-impedance branch that they carry

  /// Kind and reason in words, such as "incremental", "full, for the open end of LN L1".
  std::string Text() const;
};

/// A component whose state has changed.
struct ComponentChange {
  int type = 0;     ///< component type code of TP::tpSetCompStatus
  int number = -1;  ///< in its table
};

/// What an event did to the model.
struct EventResult {
  int result = 0;      ///< of TP::tpSetCompStatus: 1 when a run has to follow it up
  bool stood = false;  ///< the component was in that state before
};

/// Makes runs on a model whose TP the caller has, and leaves a good topology or an Error.
///
/// With Rules::kCareful a breaker takes the zero-impedance branch that it carries out of service with it, and back when
/// it was taken out so. Zero-impedance branches on which the rules make a full run fail are out of service while the
/// run lasts.
///
/// The first run must be RunFull. States that are changed other than by Request and Put need another one.
class CarefulRunner {
 public:
  /// The model and its TP must outlive the runner.
  CarefulRunner(DTSDB& database, TP& tp, Rules rules = Rules::kCareful)
      : m_database(database), m_tp(tp), m_rules(rules) {}

  /// Works out everything from nothing. After an Error every further run is a full one until one succeeds.
  Result<RunReport> RunFull();

  /// Switches component `number`, which `event` names, and leaves the change for the next run.
  EventResult Request(const SwitchEvent& event, int number);

  /// Puts component `number` into the state of `event`. The caller has a row for it in TPTRACE.
  void Put(const SwitchEvent& event, int number);

  /// Takes up what waits in TPTRACE and what was requested. Afterwards nothing waits, whether it succeeded or not: the
  /// states stand in the model.
  Result<RunReport> Run();

  /// Further runs choose no references (TP::tpSetRefUN) and report no findings. Both go over the whole network, and who
  /// makes many runs seldom needs them.
  void LeaveReferencesAndFindings() { m_isBrief = true; }

  /// The rules that the runs go by.
  Rules WhichRules() const { return m_rules; }

 private:
  Result<RunReport> RunFull(RunReason reason, const std::string& cause = "");
  Result<RunReport> RunChanges();
  Result<RunReport> RunIncrementally();
  std::vector<ComponentChange> Changes();
  RunReport Report(RunKind kind, RunReason reason, const std::string& cause = "");
  void FollowBreaker(const SwitchEvent& event, int number);
  void NoteFollowed(const FollowedBranch& followed);
  void ChooseReferences();

  DTSDB& m_database;
  TP& m_tp;
  Rules m_rules;
  bool m_needsFullRun = true;
  bool m_isBrief = false;
  std::vector<ComponentChange> m_untraced;  // since the last run
  std::vector<FollowedBranch> m_followed;   // likewise
  std::vector<std::string> m_leftOut;       // by the last full run
};

/// What differs between the topology in `database` and that of a full run, which is made on a copy by the same rules. A
/// model that can't be copied and a full run that fails are a difference without table and identity.
std::vector<Difference> CompareWithFullRun(DTSDB& database, Rules rules = Rules::kCareful);

}  // namespace dtsdb::analysis
