#include "command/topology_task.h"

#include <fmt/format.h>

#include <QDateTime>
#include <algorithm>
#include <chrono>
#include <cstdint>
#include <set>
#include <utility>

#include "command/analysis_result.h"
#include "command/render.h"
#include "command/validation_run.h"
#include "formats/failure.h"
#include "formats/field_text.h"
#include "formats/messages.h"
#include "formats/text_layout.h"
#include "script/switch_events.h"
#include "topology/component_types.h"

namespace dtsdb::tools {
namespace {

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

void Log(const std::string& line) {
  const std::string time = QDateTime::currentDateTimeUtc().toString(Qt::ISODate).toStdString();
  WriteResult(Format::kText, time + " " + OneLine(line) + "\n");
}

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

}  // namespace

void TopologyTask::Start() {
  Stopwatch watch;
  m_tp.tpReadFastdb(m_database.Db());
  m_database.Check();
  if (!IsMarkedGood(m_model)) {
    throw Failure(kExitFaults,
                  "the model in the database is not marked good; 'dtsdb validate' with the database as "
                  "MODEL and as OUT does that");
  }
  if (m_options.indications) {
    m_tp.tpReadStatus(m_database.Db());
    m_database.Db()->commit();
  }
  const GLOBAL& global = (*m_model.m_globalTable)[0];
  m_window.emplace(std::max(global.u1, global.time), m_clock);
  analysis::Result<analysis::RunReport> run = m_runner.RunFull();
  if (!run) throw Failure(kExitFaults, "the model in the database: " + run.error().message);
  const double worked = watch.Lap();
  m_tp.tpWriteFastdb(m_database.Db());
  m_database.Check();
  Log(fmt::format("start: full run, {}, {:.1f} ms, stored in {:.1f} ms",
                  Counted(m_model.m_islandTable->GetCount(), "live island"), worked, watch.Lap()));
  ReportFindings(*run);
}

void TopologyTask::Look() {
  TraceWindow::Taken taken = m_window->Look(m_reader);
  m_database.Check();
  if (taken.fresh.empty()) return;
  const auto now = static_cast<std::int64_t>(m_clock.day());
  for (const TPTRACE& row : taken.ahead) {
    WriteMessage(fmt::format("trace row {}: {} is stamped {} s ahead of the clock; it counts as of now", row.id,
                             Quoted(IdText(row.name)), row.time - now));
  }
  ApplyInOrder(taken.holding);
  std::vector<TPTRACE>& fresh = taken.fresh;
  for (TPTRACE& row : fresh) {
    row.n1 = NumberOf(row);
    if (row.n1 != -1) continue;
    WriteMessage(fmt::format("trace row {}: there is no {}", row.id, Quoted(IdText(row.name))));
  }

  const int count = static_cast<int>(fresh.size());
  m_model.m_tptraceTable->SetData(fresh.data(), count, false);
  ++m_run;
  Stopwatch watch;
  const analysis::Result<analysis::RunReport> run = m_runner.Run();
  const double worked = watch.Lap();
  Store(run);
  const double stored = watch.Lap();
  const bool incremental = run && run->kind == analysis::RunKind::kIncremental;
  const bool logged = incremental && m_tp.tpGetStartNo() != -1;
  const std::string log = logged ? fmt::format("log {}..{}", m_tp.tpGetStartNo(), m_tp.tpGetEndNo()) : "no log";
  const int sections = incremental ? ChangedSectionCount(m_model) : 0;
  Log(fmt::format("run {}: {}, {}, {}, {} changed, {}, {:.1f} ms, stored in {:.1f} ms", m_run,
                  run ? run->Text() : "failed", Counted(count, "row"), Counted(m_tp.getChangedKVCount(), "level"),
                  Counted(sections, "section"), log, worked, stored));
  if (run) ReportFindings(*run);
  if (m_options.verify) Verify();
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
void TopologyTask::Store(const analysis::Result<analysis::RunReport>& run) {
  if (!run) {
    WriteMessage(fmt::format("run {}: {}; nothing is stored", m_run, run.error().message));
    m_good = false;
    return;
  }
  if (run->kind == analysis::RunKind::kNothing) return;
  if (run->kind == analysis::RunKind::kIncremental) {
    m_model.WriteGLOBALToFastdb(m_database.Db());  // the time from which a task that starts later reads the trace
    m_tp.tpWriteChangedData(m_database.Db());
  } else {
    if (run->reason == analysis::RunReason::kIncrementalFailed) {
      WriteMessage(fmt::format("run {}: the incremental run failed; a full run has taken its place", m_run));
    }
    m_tp.tpWriteFastdb(m_database.Db());
  }
  m_database.Check();
}

/// Reports what a run has found out and done besides, a line each; of the findings those that are new.
void TopologyTask::ReportFindings(const analysis::RunReport& run) {
  for (const auto& [branch, breaker, on] : run.followed) {
    Log(fmt::format("run {}: ZBR {} {} with its breaker {}", m_run, branch, on ? "in" : "out", breaker));
  }
  std::set<std::string> texts;
  for (const std::string& branch : run.leftOut)
    texts.insert(fmt::format("ZBR {} is {}", branch, analysis::kWhyLeftOut));
  for (const Finding& finding : run.findings) texts.insert(finding.text.toStdString());
  for (const std::string& text : texts) {
    if (!m_known.contains(text)) WriteMessage(fmt::format("run {}: {}", m_run, text));
  }
  m_known = std::move(texts);
}

void TopologyTask::Verify() {
  for (const auto& [table, identity, here, there] : analysis::CompareWithFullRun(m_model, m_runner.WhichRules())) {
    m_good = false;
    Log(fmt::format("run {} differs from a full one: {} {}: {}; full run: {}", m_run, table, identity, here, there));
  }
}

}  // namespace dtsdb::tools
