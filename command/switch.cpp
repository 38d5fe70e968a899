#include <fmt/format.h>

#include "command/careful_run.h"
#include "command/commands.h"
#include "command/topology_compare.h"
#include "command/topology_report.h"
#include "command/validation_run.h"
#include "formats/failure.h"
#include "formats/field_text.h"
#include "formats/files.h"
#include "formats/messages.h"
#include "formats/model_io.h"
#include "formats/text_layout.h"
#include "model/table_info.h"
#include "model/text.h"
#include "script/switch_script.h"
#include "topology/tp.h"

namespace dtsdb::tools {
namespace {

struct SwitchOptions {
  ModelName model;
  std::vector<std::string> words;
  std::string script;
  ModelName output;
  std::string sheet;
  bool verify = false;
  Format format = Format::kText;
};

std::vector<SwitchRun> ReadRuns(const SwitchOptions& options) {
  std::vector<SwitchRun> runs(1);
  if (!options.script.empty()) TakeSwitchScript(options.script, ReadFile(options.script), runs);
  std::vector<std::string> words;
  for (const std::string& word : options.words) words.push_back(UserText(word));
  TakeSwitchRuns(words, runs);
  std::erase_if(runs, [](const SwitchRun& run) { return run.empty(); });
  if (runs.empty()) throw Failure(kExitUsage, "there is no event; 'dtsdb switch --help' describes how to write them");
  return runs;
}

/// The name of the table whose kind code is `kind`; the number when there is none.
std::string KindTable(int kind) {
  const std::string name = TableName(kind);
  return name.empty() ? NumberText(kind) : name;
}

Cell SectionCell(int section) { return section > 0 ? NumberCell(section) : Cell(); }

/// The switching of a model, run by run, and the report on it.
class Switching {
 public:
  Switching(DTSDB& database, bool verify) : m_database(database), m_verify(verify) {
    m_events.GroupBy(1);
    m_log.GroupBy(1).HideWhenEmpty();
    m_moved.GroupBy(1).HideWhenEmpty();
    m_islands.GroupBy(1);
    m_differences.GroupBy(1).HideWhenEmpty();
  }

  /// Works out the topology that the switching begins with. False when that fails.
  bool Begin() {
    if (!m_runner.RunFull()) return false;
    NoteRun("full", 0, 0, 0);
    return true;
  }

  void Do(const SwitchRun& events) {
    ++m_run;
    for (const SwitchEvent& event : events) Request(event);
    const RunOutcome outcome = m_runner.Run();
    if (outcome == RunOutcome::kReplaced) {
      WriteMessage(fmt::format("run {}: the incremental run failed; a full run has taken its place", m_run));
    }
    if (outcome == RunOutcome::kFailed) WriteMessage(fmt::format("run {}: the topology can't be worked out", m_run));
    m_failed += outcome == RunOutcome::kFailed ? 1 : 0;
    const bool incremental = outcome == RunOutcome::kIncremental;
    if (incremental) NoteChanges();
    NoteRun(OutcomeText(outcome), outcome == RunOutcome::kNothing ? 0 : m_tp.getChangedKVCount(),
            incremental ? m_database.m_chndTable->GetCount() : 0, m_database.m_tplTable->GetCount());
    if (m_verify) Verify();
  }

  /// True when every run came to its end and, as far as that was looked at, is the same as a full one.
  bool IsGood() const { return m_failed == 0 && m_differences.Rows().empty(); }

  Report MakeReport() {
    Report report;
    report.Fact("good", IsGood());
    report.Fact("failed_runs", NumberCell(m_failed));
    if (m_verify) {
      const auto count = static_cast<long long>(m_differences.Rows().size());
      report.Line(count == 0 ? "No run differs from a full one." : Counted(count, "difference") + " from full runs.");
    }
    for (const Sheet& sheet : {m_events, m_runs, m_log, m_moved, m_islands}) report.Add(sheet);
    if (m_verify) report.Add(m_differences);
    return report;
  }

 private:
  /// Hands one event to the topology and notes what it reports.
  void Request(const SwitchEvent& event) {
    const int number = ComponentNumber(m_database, event);
    const bool stood = Stands(m_database, event, number);
    const QByteArray id = IdToBytes(*IdFromText(QString::fromStdString(event.id)));
    const int result = m_tp.tpSetCompStatus(id.constData(), event.type, event.on);
    m_events.Add({NumberCell(m_run), SwitchEventText(event), NumberCell(result), Effect(event, result, stood)});
  }

  static std::string Effect(const SwitchEvent& event, int result, bool stood) {
    if (result == 1) return stood ? "stood so already; followed up all the same" : "followed up";
    if (stood && !event.on) return "stood so already; nothing to follow up";
    if (event.on) return "stands closed within one section; nothing to follow up";
    return "stands open, but other breakers join its nodes; not followed up";
  }

  /// Notes what the run has logged and which nodes have moved.
  void NoteChanges() {
    for (int i = 0; i < m_database.m_tplTable->GetCount(); ++i) {
      const TPL& row = (*m_database.m_tplTable)[i];
      m_log.Add({NumberCell(m_run), KindTable(row.kind), IdText(row.name), IdText(row.event), NumberCell(row.n1),
                 SectionCell(row.n3), SectionCell(row.n2)});
    }
    for (int i = 0; i < m_database.m_chndTable->GetCount(); ++i) {
      const CHND& row = (*m_database.m_chndTable)[i];
      m_moved.Add({NumberCell(m_run), IdText(m_database.m_ndTable->GetPh(row.ind).id),
                   IdText(m_database.m_kvTable->GetPh(row.ikv).id), SectionCell(row.ibs_old),
                   SectionCell(row.ibs_new)});
    }
  }

  /// Notes how the run went, and the islands that it leaves.
  void NoteRun(const char* outcome, int levels, int moved, int logged) {
    const Sheet islands = IslandSheet(m_database);
    m_runs.Add({NumberCell(m_run), outcome, NumberCell(levels), NumberCell(moved), NumberCell(logged),
                NumberCell(static_cast<long long>(islands.Rows().size()))});
    for (std::vector<Cell> row : islands.Rows()) {
      row.insert(row.begin(), NumberCell(m_run));
      m_islands.Add(std::move(row));
    }
  }

  void Verify() {
    for (const auto& [table, identity, here, there] : CompareWithFullRun(m_database)) {
      m_differences.Add({NumberCell(m_run), table, identity, here, there});
    }
  }

  /// The columns of `sheet` behind one for the run.
  static std::vector<std::string> WithRun(const Sheet& sheet) {
    std::vector<std::string> columns = sheet.Columns();
    columns.insert(columns.begin(), "run");
    return columns;
  }

  DTSDB& m_database;
  bool m_verify;
  TP m_tp{&m_database};
  CarefulRunner m_runner{m_database, m_tp};
  int m_run = 0;
  int m_failed = 0;
  Sheet m_events{"events", "Events", {"run", "event", "result", "effect"}};
  Sheet m_runs{"runs", "Runs", {"run", "kind", "levels", "moved_nodes", "log_rows", "live_islands"}};
  Sheet m_log{"log", "Log", {"run", "table", "identity", "event", "status", "old_section", "new_section"}};
  Sheet m_moved{"moved", "Moved nodes", {"run", "node", "voltage_level", "old_section", "new_section"}};
  Sheet m_islands{"islands", "Live islands before (run 0) and after", WithRun(IslandSheet(m_database))};
  Sheet m_differences{"differences", "Differences", {"run", "table", "identity", "here", "full_run"}};
};

int Switch(const SwitchOptions& options) {
  const std::vector<SwitchRun> runs = ReadRuns(options);
  DTSDB database = LoadModel(options.model);
  RequireGood(database, options.model);
  for (const SwitchRun& events : runs) {
    for (const SwitchEvent& event : events) RequireComponent(database, event);
  }
  Switching switching(database, options.verify);
  if (!switching.Begin()) throw Failure(kExitFaults, options.model.Text() + ": the topology can't be worked out");
  for (const SwitchRun& events : runs) switching.Do(events);
  if (!options.output.IsEmpty()) SaveModel(database, options.output);
  WriteReport(switching.MakeReport(), options.format, options.sheet);
  return switching.IsGood() ? kExitGood : kExitFaults;
}

}  // namespace

void AddSwitch(CommandLine& app, Action& action) {
  AddCommand<SwitchOptions>(
      app, action, "switch", "Switch breakers and equipment and follow up what changes",
      [](CommandLine& command, SwitchOptions& options) {
        AddModelArgument(command, options.model).Required();
        command.Add("EVENT", options.words, "What is switched, in the words below").Shown("...");
        command.Add("--script", options.script, "Take events from FILE first").Shown("FILE");
        AddOutputOption(command, options.output, "Write the model with its topology to OUT");
        command.AddFlag("--verify", options.verify, "Compare each run with a full one on a copy");
        AddSheetOption(command, options.sheet, "events, runs, log, moved, islands or differences");
        AddFormatOption(command, options.format);
        command.Footer(std::string("Events:\n") + kSwitchEventHelp +
                       "\nAll events given are followed up in one run; the word 'run' between them begins another.\n"
                       "In a script each event stands on a line of its own, identities with blanks in quotes, notes\n"
                       "behind '#'.\n\n"
                       "Examples:\n"
                       "  dtsdb switch grid.obj open CB B1 out LN 'Line 1-2'\n"
                       "  dtsdb switch grid.obj break LN L1 from run join LN L1 from --verify\n"
                       "  dtsdb switch grid.obj --script evening.txt -o evening.obj");
      },
      Switch);
}

}  // namespace dtsdb::tools
