/// \file
/// The topology task of an installation: follows up what other programs write into the trace of a realtime database.
#pragma once

#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "analysis/careful_runner.h"
#include "command/model_watch.h"
#include "command/task_log.h"
#include "command/trace_reader.h"
#include "command/trace_window.h"
#include "formats/realtime.h"
#include "model/dtsdb.h"
#include "topology/tp.h"

namespace dtsdb::tools {

/// Works on the model in a realtime database, as long as that is the one that it has read. Each start and each run ends
/// with one commit and is reported in one line. Throws Failure when the database can't be read or written.
class TopologyTask {
 public:
  struct Options {
    bool indications = false;  ///< take the breakers' positions from the status table at the start
    bool asIs = false;         ///< keep what incremental runs give, also where a full one differs
    bool verify = false;       ///< compare each run with a full one
  };

  /// The database must outlive the task.
  TopologyTask(RealtimeDatabase& database, Options options, TaskLog log, TaskClock clock = TaskClock::OfMachine())
      : m_database(database), m_options(options), m_log(log), m_clock(std::move(clock)) {}
  TopologyTask(const TopologyTask&) = delete;
  TopologyTask& operator=(const TopologyTask&) = delete;

  /// Loads the model, works out its topology from nothing and stores it. A Failure with kExitFaults when the model
  /// isn't marked good or has no topology: then nothing is stored, and a Look only finds out whether the model was
  /// replaced.
  void Start();

  /// Looks for rows of the trace that were not taken yet, and follows them up. False when another program has replaced
  /// the model: then nothing was stored, and another task has to start. Needs a Start before.
  ///
  /// A row counts as taken when it was there at the look before with the same contents. So a row that has changed is
  /// taken again, and none is lost that was stamped up to a minute before it could be committed.
  bool Look();

  /// True when every run could be worked out and, as far as that was looked at, was the same as a full one.
  bool IsGood() const { return m_good; }

 private:
  enum class Extent { kAll, kChanges };

  void LoadModel();
  void FollowUp(TraceWindow::Taken taken);
  void FollowUpInTurn(const std::vector<TPTRACE>& rows);
  void FollowUp(const std::vector<TPTRACE>& holding, std::vector<TPTRACE> fresh);
  void ReportRows(const TraceWindow::Taken& taken);
  int NumberOf(const TPTRACE& row);
  void ApplyInOrder(const std::vector<TPTRACE>& rows);
  bool StoreRun(const analysis::Result<analysis::RunReport>& run);
  /// False when another program has replaced the model meanwhile: then nothing is stored.
  bool Store(Extent extent);
  void ReportRun(const analysis::Result<analysis::RunReport>& run, int rows, double worked, double stored);
  void ReportFindings(const analysis::RunReport& run);
  void Verify();

  RealtimeDatabase& m_database;
  Options m_options;
  TaskLog m_log;
  TaskClock m_clock;
  DTSDB m_model;
  TP m_tp{&m_model};
  analysis::CarefulRunner m_runner{m_model, m_tp, m_options.asIs ? analysis::Rules::kAsIs : analysis::Rules::kCareful};
  ModelWatch m_watch{m_database.Db(), m_clock};
  TraceReader m_reader{m_database.Db(), m_clock};
  std::optional<TraceWindow> m_window;  // once the model has its topology
  std::set<std::string> m_known;        // what the last run has found
  int m_run = 0;
  bool m_good = true;
  bool m_replaced = false;  // the model, by another program
};

}  // namespace dtsdb::tools
