#include <fmt/format.h>

#include <optional>
#include <set>
#include <utility>

#include "analysis/switching.h"
#include "command/analysis_result.h"
#include "command/commands.h"
#include "command/effect_report.h"
#include "command/finding_report.h"
#include "command/imported_model.h"
#include "command/page_subject.h"
#include "command/topology_report.h"
#include "formats/failure.h"
#include "formats/field_text.h"
#include "formats/files.h"
#include "formats/messages.h"
#include "formats/text_layout.h"
#include "model/text.h"
#include "page/report.h"
#include "script/switch_script.h"

namespace dtsdb::tools {
namespace {

struct SwitchOptions {
  ModelName model;
  std::vector<std::string> words;
  std::string script;
  ModelName output;
  std::string undo;
  std::string page;
  std::string sheet;
  bool asIs = false;
  bool verify = false;
  Language language = LocaleLanguage();
  Format format = Format::kText;
};

std::vector<SwitchRun> ReadRuns(const SwitchOptions& options) {
  std::vector<SwitchRun> runs(1);
  if (!options.script.empty()) TakeSwitchScript(options.script, ReadFile(options.script, kMostScriptBytes), runs);
  std::vector<std::string> words;
  for (const std::string& word : options.words) words.push_back(UserText(word));
  TakeSwitchRuns(words, runs);
  std::erase_if(runs, [](const SwitchRun& run) { return run.empty(); });
  if (runs.empty()) throw Failure(kExitUsage, "there is no event; 'dtsdb switch --help' describes how to write them");
  return runs;
}

Cell SectionCell(int section) { return section >= 0 ? NumberCell(section) : Cell(); }

/// The switching of a model, run by run, and the report on it.
class SwitchingReport {
 public:
  SwitchingReport(analysis::Switching& session, const SwitchOptions& options)
      : m_session(session), m_verify(options.verify), m_language(options.language) {
    m_events.GroupBy(1);
    m_findings.GroupBy(1).HideWhenEmpty();
    m_log.GroupBy(1).HideWhenEmpty();
    m_moved.GroupBy(1).HideWhenEmpty();
    m_islands.GroupBy(1);
    m_differences.GroupBy(1).HideWhenEmpty();
    NoteOutcome(session.First());
  }

  void Do(const SwitchRun& events) {
    ++m_run;
    m_lastEvents.clear();
    for (const SwitchEvent& event : events) Request(event);
    const analysis::Result<analysis::Outcome> outcome = m_session.Run();
    m_hasTopology = outcome.has_value();
    if (outcome) {
      NoteOutcome(*outcome);
    } else {
      WriteMessage(fmt::format("run {}: {}", m_run, outcome.error().message));
      m_runs.Add({NumberCell(m_run), "failed", NumberCell(0), NumberCell(0), NumberCell(0), NumberCell(0)});
      ++m_failed;
    }
    if (m_verify) Verify();
  }

  /// True when every run came to its end and, as far as that was looked at, is the same as a full one.
  /// The events of the last run with what became of them, for a page.
  const std::vector<page::RunEvent>& LastEvents() const { return m_lastEvents; }
  bool HasTopology() const { return m_hasTopology; }

  bool IsGood() const { return m_failed == 0 && m_differences.Rows().empty(); }

  Report MakeReport() {
    Report report;
    report.Fact("good", IsGood());
    report.Fact("failed_runs", NumberCell(m_failed));
    if (m_verify) {
      const auto count = static_cast<long long>(m_differences.Rows().size());
      report.Line(count == 0 ? "No run differs from a full one." : Counted(count, "difference") + " from full runs.");
    }
    for (const Sheet& sheet : {m_events, m_runs, m_findings, m_log, m_moved, m_islands}) report.Add(sheet);
    if (m_verify) report.Add(m_differences);
    if (m_hasTopology) {
      AddEffect(report, m_session.EffectSoFar());
    } else {
      report.Line("The last run failed: what has lost and regained supply isn't known.");
    }
    return report;
  }

 private:
  /// Hands one event to the topology and notes what it reports.
  void Request(const SwitchEvent& event) {
    const analysis::EventResult done = Take(m_session.Request(event));
    const std::string effect = Effect(event, done.result, done.stood);
    m_events.Add({NumberCell(m_run), SwitchEventText(event), NumberCell(done.result), effect});
    m_lastEvents.push_back({SwitchEventText(event), effect});
  }

  static std::string Effect(const SwitchEvent& event, int result, bool stood) {
    if (result == 1) return stood ? "stood so already; followed up all the same" : "followed up";
    if (stood && !event.on) return "stood so already; nothing to follow up";
    if (event.on) return "stands closed within one section; nothing to follow up";
    return "stands open, but other breakers join its nodes; not followed up";
  }

  /// Notes how a run went, and the islands that it leaves.
  void NoteOutcome(const analysis::Outcome& outcome) {
    const analysis::RunReport& run = outcome.run;
    if (run.reason == analysis::RunReason::kIncrementalFailed) {
      WriteMessage(fmt::format("run {}: the incremental run failed; a full run has taken its place", m_run));
    }
    for (const auto& [branch, breaker, on] : run.followed) {
      const std::string text = (on ? "in ZBR " : "out ZBR ") + branch;
      m_events.Add({NumberCell(m_run), text, Cell(), "with its breaker " + breaker});
      m_lastEvents.push_back({text, "with its breaker " + breaker});
    }
    NoteFindings(run);
    NoteChanges(outcome);
    const Sheet islands = IslandSheet(outcome.islands);
    m_runs.Add({NumberCell(m_run), run.Text(), NumberCell(m_run == 0 ? 0 : outcome.levels),
                NumberCell(static_cast<long long>(outcome.moved.size())),
                NumberCell(static_cast<long long>(outcome.log.size())),
                NumberCell(static_cast<long long>(islands.Rows().size()))});
    for (std::vector<Cell> row : islands.Rows()) {
      row.insert(row.begin(), NumberCell(m_run));
      m_islands.Add(std::move(row));
    }
  }

  /// Notes what the run has found that the one before hadn't.
  void NoteFindings(const analysis::RunReport& run) {
    std::set<std::string> texts;
    const Sheet found = RunFindingSheet(run.findings, run.leftOut, m_language);
    for (std::vector<Cell> row : found.Rows()) {
      const std::string text = CellText(row[2]) + CellText(row[4]);  // identity and text
      texts.insert(text);
      row.insert(row.begin(), NumberCell(m_run));
      if (!m_known.contains(text)) m_findings.Add(std::move(row));
    }
    m_known = std::move(texts);
  }

  /// Notes what the run has logged and which nodes have moved.
  void NoteChanges(const analysis::Outcome& outcome) {
    for (const analysis::LogRow& row : outcome.log) {
      m_log.Add({NumberCell(m_run), row.table, row.identity, row.event, NumberCell(row.status),
                 SectionCell(row.oldSection), SectionCell(row.newSection)});
    }
    for (const analysis::MovedNode& node : outcome.moved) {
      m_moved.Add(
          {NumberCell(m_run), node.node, node.level, SectionCell(node.oldSection), SectionCell(node.newSection)});
    }
  }

  void Verify() {
    for (const auto& [table, identity, here, there] : m_session.CompareWithFullRun()) {
      m_differences.Add({NumberCell(m_run), table, identity, here, there});
    }
  }

  /// The columns of `sheet` behind one for the run.
  static std::vector<std::string> WithRun(const Sheet& sheet) {
    std::vector<std::string> columns = sheet.Columns();
    columns.insert(columns.begin(), "run");
    return columns;
  }

  analysis::Switching& m_session;
  bool m_verify;
  Language m_language;
  int m_run = 0;
  int m_failed = 0;
  bool m_hasTopology = true;
  Sheet m_events{"events", "Events", {"run", "event", "result", "effect"}};
  Sheet m_runs{"runs", "Runs", {"run", "kind", "levels", "moved_nodes", "log_rows", "live_islands"}};
  Sheet m_log{"log", "Log", {"run", "table", "identity", "event", "status", "old_section", "new_section"}};
  Sheet m_moved{"moved", "Moved nodes", {"run", "node", "voltage_level", "old_section", "new_section"}};
  Sheet m_islands{"islands", "Live islands before (run 0) and after", WithRun(IslandSheet({}))};
  Sheet m_findings{"findings", "Findings", WithRun(RunFindingSheet({}, {}, Language::kEnglish))};
  std::set<std::string> m_known;             // what the last run has found
  std::vector<page::RunEvent> m_lastEvents;  // of the last run
  Sheet m_differences{"differences", "Differences", {"run", "table", "identity", "here", "full_run"}};
};

/// Writes the script that leads back from what `session` has switched.
void WriteUndo(const analysis::Switching& session, const SwitchOptions& options) {
  const std::string script = Take(analysis::ScriptOf(session.WayBack()));
  const char* const rules = options.asIs ? "with --as-is" : "without --as-is";
  WriteFile(options.undo, fmt::format("# The way back, for 'dtsdb switch MODEL --script', {}.\n{}", rules, script));
}

/// The page on the runs, with the pictures before and after each.
class SwitchingPage {
 public:
  /// `model` is as the session has begun with it.
  SwitchingPage(const analysis::Model& model, const SwitchOptions& options)
      : m_model(model), m_path(options.page), m_runs(First(model, options)) {}

  /// Takes up the run that has just ended.
  void Note(int number, const SwitchingReport& report) {
    if (!report.HasTopology()) return;
    m_runs.Add(fmt::format("Run {}", number), report.LastEvents(), Take(m_model.Copy()));
  }

  void Write() const { WriteFile(m_path, page::WriteReport(m_runs)); }

 private:
  /// What the validation has found comes from a copy: validating the model itself would drop its topology.
  static page::RunHistory First(const analysis::Model& model, const SwitchOptions& options) {
    analysis::Model validated = Take(model.Copy());
    const analysis::Validation validation = Take(validated.Validate(options.language));
    const analysis::Model copy = Take(model.Copy());
    return page::RunHistory({copy, validation, PageSubject(options.model, options.language)}, copy);
  }

  const analysis::Model& m_model;
  std::string m_path;
  page::RunHistory m_runs;
};

int Switch(const SwitchOptions& options) {
  const std::vector<SwitchRun> runs = ReadRuns(options);
  const ImportedModel imported = LoadImported(options.model);
  analysis::Model model = analysis::Model::Of(imported.tables, options.model.Text());
  Take(model.RequireGood());
  for (const SwitchRun& events : runs) {
    for (const SwitchEvent& event : events) RequireComponent(model.Tables(), event);
  }
  const analysis::Rules rules = options.asIs ? analysis::Rules::kAsIs : analysis::Rules::kCareful;
  analysis::Switching session = Take(analysis::Switching::Begin(model, rules));
  SwitchingReport report(session, options);
  std::optional<SwitchingPage> page;
  if (!options.page.empty()) page.emplace(model, options);
  int number = 0;
  for (const SwitchRun& events : runs) {
    report.Do(events);
    if (page) page->Note(++number, report);
  }
  if (page) page->Write();
  if (!options.undo.empty()) WriteUndo(session, options);
  if (!options.output.IsEmpty()) {
    Take(model.Save(options.output.Text()));
    WriteIdsBeside(imported, options.output);
  }
  WriteReport(report.MakeReport(), options.format, options.sheet);
  return report.IsGood() ? kExitGood : kExitFaults;
}

}  // namespace

void AddSwitch(CommandLine& app, Action& action) {
  AddCommand<SwitchOptions>(
      app, action, "switch", "Switch breakers and equipment and follow up what changes",
      [](CommandLine& command, SwitchOptions& options) {
        AddModelArgument(command, options.model).Required();
        AddImportOptions(command, options.model);
        command.Add("EVENT", options.words, "What is switched, in the words below").Shown("...");
        command.Add("--script", options.script, "Take events from FILE first").Shown("FILE");
        AddOutputOption(command, options.output, "Write the model with its topology to OUT");
        AddPathOption(command, "--undo", options.undo, "Write a script that switches everything back to FILE");
        AddPathOption(command, "--report", options.page,
                      "Write a page that shows each run before and after to FILE, an HTML document");
        command.AddFlag("--as-is", options.asIs, "Keep what incremental runs give, also where a full one differs");
        command.AddFlag("--verify", options.verify, "Compare each run with a full one on a copy");
        AddSheetOption(command, options.sheet,
                       "events, runs, findings, log, moved, islands, differences, effect or island_changes");
        AddLanguageOption(command, options.language);
        AddLogOption(command, "the validation where the model needs one");
        AddFormatOption(command, options.format);
        command.Footer(std::string("Events:\n") + kSwitchEventHelp +
                       "\nAll events given are followed up in one run; the word 'run' between them begins another.\n"
                       "In a script each event stands on a line of its own, identities with blanks in quotes, notes\n"
                       "behind '#'.\n\n"
                       "Examples:\n"
                       "  dtsdb switch grid.obj open CB B1 out LN 'Line 1-2'\n"
                       "  dtsdb switch grid.obj break LN L1 from run join LN L1 from --verify\n"
                       "  dtsdb switch grid.obj --script evening.txt -o evening.obj");
        AddExitCodes(command, "every run is good", "a run failed or, with --verify, differs from a full one");
      },
      Switch);
}

}  // namespace dtsdb::tools
