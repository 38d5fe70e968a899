#include "command/topology_task.h"

#include <fmt/format.h>

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <set>
#include <utility>

#include "command/analysis_result.h"
#include "command/validation_run.h"
#include "formats/failure.h"
#include "formats/field_text.h"
#include "script/switch_events.h"
#include "topology/component_types.h"
#include "validation/message_catalog.h"

namespace dtsdb::tools {
namespace {

/// A run of more rows than these is a full one, whatever they are: TP::tpChange.
constexpr std::size_t kMostOfARun = 49;
/// More rows at once would keep the last of them waiting: one full run takes less time.
constexpr std::size_t kMostInTurn = 2000;

class Stopwatch {
 public:
  /// The milliseconds since it was made or last asked.
  double Lap() {
    const auto now = std::chrono::steady_clock::now();
    return std::chrono::duration<double, std::milli>(now - std::exchange(m_begin, now)).count();
  }

 private:
  std::chrono::steady_clock::time_point m_begin = std::chrono::steady_clock::now();
};

/// The number of sections that the last run has changed: those that nodes or equipment left or came to, and those that
/// became live or dead.
int ChangedSectionCount(DTSDB& model) {
  std::set<int> sections;
  for (int i = 0; i < model.m_chndTable->GetCount(); ++i) {
    const CHND& row = (*model.m_chndTable)[i];
    sections.insert({row.ibs_old, row.ibs_new});
  }
  for (int i = 0; i < model.m_tplTable->GetCount(); ++i) {
    const TPL& row = (*model.m_tplTable)[i];
    if (row.event.startsWith(QLatin1String("BS"))) sections.insert({row.n3, row.n2});
  }
  const int dead = (*model.m_globalTable)[0].bs_dead;
  return static_cast<int>(std::count_if(sections.begin(), sections.end(), [dead](int bs) { return bs > dead; }));
}

/// A Failure when the validation hasn't found the model good. A model that was written over a good one without
/// validation leaves its mark, and has no nodes.
void CheckModel(DTSDB& model) {
  const std::string remedy = "; 'dtsdb validate' with the database as MODEL and as OUT does that";
  if (!IsMarkedGood(model)) throw Failure(kExitFaults, "the model in the database is not marked good" + remedy);
  const int nodes = model.m_ndTable->GetCount();
  const auto hasNodes = [nodes](const CB& breaker) {
    return std::min(breaker.ind, breaker.iznd) >= 0 && std::max(breaker.ind, breaker.iznd) < nodes;
  };
  for (int i = 0; i < model.m_cbTable->GetCount(); ++i) {
    const CB& breaker = (*model.m_cbTable)[i];
    if (hasNodes(breaker)) continue;
    throw Failure(kExitFaults, fmt::format("the model in the database has to be validated: CB {} has no nodes{}",
                                           IdText(breaker.id), remedy));
  }
}

}  // namespace

/// Reads the model as the watch notes it: in one transaction.
void TopologyTask::LoadModel() {
  m_watch.NoteModel();
  m_tp.tpReadFastdb(m_database.Db());
  m_database.Check();
  CheckModel(m_model);
  if (!m_options.indications) return;
  m_tp.tpReadStatus(m_database.Db());
  m_database.Db()->commit();
}

void TopologyTask::Start() {
  Stopwatch watch;
  LoadModel();
  const GLOBAL& global = (*m_model.m_globalTable)[0];
  const u32 lastRun = std::max(global.u1, global.time);
  analysis::Result<analysis::RunReport> run = m_runner.RunFull();
  if (!run) throw Failure(kExitFaults, "the model in the database: " + run.error().message);
  const double worked = watch.Lap();
  if (!Store(Extent::kAll)) return;
  m_window.emplace(lastRun, m_clock);
  m_log.Start(m_model.m_islandTable->GetCount(), worked, watch.Lap());
  ReportFindings(*run);
}

bool TopologyTask::Look() {
  m_replaced = m_replaced || m_watch.HasChanged();
  m_database.Check();
  if (m_replaced) return false;
  if (!m_window) return true;
  TraceWindow::Taken taken = m_window->Look(m_reader);
  m_database.Check();
  if (!taken.fresh.empty()) FollowUp(std::move(taken));
  return !m_replaced;
}

void TopologyTask::FollowUp(TraceWindow::Taken taken) {
  for (std::vector<TPTRACE>* rows : {&taken.fresh, &taken.late, &taken.inTurn}) {
    for (TPTRACE& row : *rows) row.n1 = NumberOf(row);
  }
  ReportRows(taken);
  if (taken.fresh.size() <= kMostOfARun || taken.inTurn.size() > kMostInTurn) {
    taken.holding.insert(taken.holding.end(), taken.inTurn.begin(), taken.inTurn.end());
    FollowUp(taken.holding, std::move(taken.fresh));
    return;
  }
  if (!taken.late.empty()) FollowUp(taken.holding, std::move(taken.late));
  FollowUpInTurn(taken.inTurn);
}

/// Follows the rows up by as many incremental runs as it takes. So each is logged, and while rows come so fast that
/// many wait after each look, the task doesn't spend the time on full runs in which still more come.
void TopologyTask::FollowUpInTurn(const std::vector<TPTRACE>& rows) {
  for (auto begin = rows.begin(); begin != rows.end() && !m_replaced;) {
    const auto end = begin + std::min(static_cast<std::ptrdiff_t>(kMostOfARun), rows.end() - begin);
    const std::vector<TPTRACE> part(begin, end);
    FollowUp(part, part);
    begin = end;
  }
}

/// Follows up `fresh` by one run, after `holding` was put in its order.
void TopologyTask::FollowUp(const std::vector<TPTRACE>& holding, std::vector<TPTRACE> fresh) {
  ApplyInOrder(holding);
  const int count = static_cast<int>(fresh.size());
  m_model.m_tptraceTable->SetData(fresh.data(), count, false);
  ++m_run;
  Stopwatch watch;
  const analysis::Result<analysis::RunReport> run = m_runner.Run();
  const double worked = watch.Lap();
  if (!StoreRun(run)) return;
  ReportRun(run, count, worked, watch.Lap());
  if (run) ReportFindings(*run);
  if (m_options.verify) Verify();
}

void TopologyTask::ReportRows(const TraceWindow::Taken& taken) {
  const auto now = static_cast<std::int64_t>(m_clock.day());
  for (const TPTRACE& row : taken.ahead) {
    m_log.Message(fmt::format("trace row {}: {} is stamped {} s ahead of the clock; it counts as of now", row.id,
                              Quoted(IdText(row.name)), row.time - now));
  }
  for (const TPTRACE& row : taken.fresh) {
    if (row.n1 != -1) continue;
    m_log.Message(fmt::format("trace row {}: there is no {}", row.id, Quoted(IdText(row.name))));
  }
}

/// The number of the row's component, -1 where it isn't there. The topology passes over a type that stands for no
/// component, whatever the number.
int TopologyTask::NumberOf(const TPTRACE& row) {
  const bool known = WithComponentType(row.type, [](const auto&) {});
  return known ? ComponentNumber(m_model, row.type, row.name) : 0;
}

/// Makes the last row of each component hold, also where it was taken before a row that holds earlier.
void TopologyTask::ApplyInOrder(const std::vector<TPTRACE>& rows) {
  for (const TPTRACE& row : rows) {
    const int number = NumberOf(row);
    if (number >= 0) m_runner.Put({row.type, row.status != 0, ""}, number);
  }
}

/// Stores what a run has left. Nothing of one that failed: other programs keep the last good result.
bool TopologyTask::StoreRun(const analysis::Result<analysis::RunReport>& run) {
  if (!run) {
    m_log.Message(run.error().message + "; nothing is stored", m_run);
    m_good = false;
    return true;
  }
  if (run->kind == analysis::RunKind::kNothing) return true;
  if (run->kind == analysis::RunKind::kIncremental) return Store(Extent::kChanges);
  if (run->reason == analysis::RunReason::kIncrementalFailed) {
    m_log.Message("the incremental run failed; a full run has taken its place", m_run);
  }
  return Store(Extent::kAll);
}

bool TopologyTask::Store(Extent extent) {
  m_replaced = !m_watch.BeginStoring();
  m_database.Check();
  if (m_replaced) return false;
  if (extent == Extent::kAll) {
    m_tp.tpWriteFastdb(m_database.Db());
  } else {
    m_model.WriteGLOBALToFastdb(m_database.Db());  // the time from which a task that starts later reads the trace
    m_tp.tpWriteChangedData(m_database.Db());
  }
  m_database.Check();
  m_watch.NoteStored((*m_model.m_globalTable)[0]);
  return true;
}

void TopologyTask::ReportRun(const analysis::Result<analysis::RunReport>& run, int rows, double worked, double stored) {
  RunLine line;
  line.run = m_run;
  line.report = run ? &*run : nullptr;
  line.rows = rows;
  line.levels = m_tp.getChangedKVCount();
  line.worked = worked;
  line.stored = stored;
  if (run && run->kind == analysis::RunKind::kIncremental) {
    line.sections = ChangedSectionCount(m_model);
    line.logFirst = m_tp.tpGetStartNo();
    line.logLast = m_tp.tpGetEndNo();
  }
  m_log.Run(line);
}

/// Reports what a run has found out and done besides, a line each; of the findings those that are new.
void TopologyTask::ReportFindings(const analysis::RunReport& run) {
  for (const analysis::FollowedBranch& followed : run.followed) m_log.Followed(m_run, followed);
  std::set<std::string> texts;
  const char* const why = FindMessage(analysis::kLeftOutCode)->english;
  for (const std::string& branch : run.leftOut) texts.insert(fmt::format("ZBR {} is {}", branch, why));
  for (const Finding& finding : run.findings) texts.insert(finding.text.toStdString());
  for (const std::string& text : texts) {
    if (!m_known.contains(text)) m_log.Message(text, m_run);
  }
  m_known = std::move(texts);
}

void TopologyTask::Verify() {
  for (const analysis::Difference& difference : analysis::CompareWithFullRun(m_model, m_runner.WhichRules())) {
    m_good = false;
    m_log.Differs(m_run, difference);
  }
}

}  // namespace dtsdb::tools
