/// \file
/// The topology task of an installation: follows up what other programs write into the trace of a realtime database.
#pragma once

#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "analysis/careful_runner.h"
#include "command/trace_reader.h"
#include "command/trace_window.h"
#include "formats/realtime.h"
#include "model/dtsdb.h"
#include "topology/tp.h"

namespace dtsdb::tools {

/// Works on the model in a realtime database. Each start and each run ends with one commit and writes one line on the
/// standard output. Throws Failure when the database can't be read or written.
class TopologyTask {
 public:
  struct Options {
    bool indications = false;  ///< take the breakers' positions from the status table at the start
    bool asIs = false;         ///< keep what incremental runs give, also where a full one differs
    bool verify = false;       ///< compare each run with a full one
  };

  TopologyTask(RealtimeDatabase& database, Options options, TaskClock clock = TaskClock::OfMachine())
      : m_database(database), m_options(options), m_clock(std::move(clock)) {}
  TopologyTask(const TopologyTask&) = delete;
  TopologyTask& operator=(const TopologyTask&) = delete;

  /// Loads the model, works out its topology from nothing and stores it. A Failure when the model isn't marked good or
  /// has no topology.
  void Start();

  /// Looks for rows of the trace that were not taken yet, and follows them up.
  ///
  /// A row counts as taken when it was there at the look before with the same contents. So a row that has changed is
  /// taken again, and none is lost that was stamped up to a minute before it could be committed. Needs a Start before.
  void Look();

  /// True when every run could be worked out and, as far as that was looked at, was the same as a full one.
  bool IsGood() const { return m_good; }

 private:
  int NumberOf(const TPTRACE& row);
  void ApplyInOrder(const std::vector<TPTRACE>& rows);
  void Store(const analysis::Result<analysis::RunReport>& run);
  void ReportFindings(const analysis::RunReport& run);
  void Verify();

  RealtimeDatabase& m_database;
  Options m_options;
  TaskClock m_clock;
  DTSDB m_model;
  TP m_tp{&m_model};
  analysis::CarefulRunner m_runner{m_model, m_tp, m_options.asIs ? analysis::Rules::kAsIs : analysis::Rules::kCareful};
  TraceReader m_reader{m_database.Db(), m_clock};
  std::optional<TraceWindow> m_window;
  std::set<std::string> m_known;  // what the last run has found
  int m_run = 0;
  bool m_good = true;
};

}  // namespace dtsdb::tools
