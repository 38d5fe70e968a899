#include <fmt/format.h>

#include "command/commands.h"
#include "command/finding_report.h"
#include "command/imported_model.h"
#include "command/script_run.h"
#include "command/validation_run.h"
#include "formats/failure.h"
#include "formats/files.h"
#include "formats/messages.h"
#include "formats/model_io.h"
#include "formats/text_layout.h"
#include "script/edit_script.h"

namespace dtsdb::tools {
namespace {

struct EditOptions {
  ModelName model;
  std::string script;
  ModelName output;
  bool isDryRun = false;
  Format format = Format::kText;
  Language language = LocaleLanguage();
};

constexpr const char* kEditFooter =
    "A script in UTF-8 has one edit on a line, blank lines and lines that begin with '#' apart:\n"
    "  add TABLE id=IDENTITY FIELD=VALUE ...\n"
    "  change TABLE IDENTITY FIELD=VALUE ...\n"
    "  remove TABLE IDENTITY\n"
    "TABLE is one of CO, DV, ST, KV, BUS, LD, UN, CP, CB, XF, ZBR, LN, DLN. What holds blanks stands in double "
    "quotes.\n"
    "The edited model is validated. It is written only when every line could be applied and the model is good.\n\n"
    "Examples:\n"
    "  dtsdb edit grid.obj --script changes.txt --dry-run\n"
    "  dtsdb edit grid.obj --script changes.txt -o edited.obj";

/// The last line for people.
std::string Verdict(const std::string& script, const ScriptResult& result, long long refused, long long errors) {
  const std::string applied = fmt::format("{}: {} applied", script, Counted(result.applied, "line"));
  if (refused > 0) return fmt::format("{}, {} refused.", applied, refused);
  if (result.good) return applied + "; the edited model is good.";
  return fmt::format("{}; the edited model is not good: {}.", applied, Counted(errors, "error"));
}

int RunEdit(const EditOptions& options) {
  if (options.output.IsEmpty() && !options.isDryRun) {
    throw Failure(kExitUsage, "name the place of the edited model with -o OUT, or only try it with --dry-run");
  }
  const std::vector<Edit> edits = ReadEditScript(options.script, ReadFile(options.script, kMostScriptBytes));
  DTSDB database = LoadImported(options.model).tables;
  RequireGood(database, options.model);
  ScriptResult result = ApplyScript(database, edits, options.language);

  const auto refused = static_cast<long long>(result.refusals.Rows().size());
  const auto errors = static_cast<long long>(result.faults.Rows().size());
  const bool isWritten = result.good && !options.isDryRun;
  if (isWritten) SaveModel(database, options.output);

  Report report;
  report.Fact("good", result.good);
  report.Fact("written", isWritten);
  report.Fact("applied", NumberCell(result.applied));
  report.Fact("refused", NumberCell(refused));
  report.Fact("errors", NumberCell(errors));
  report.Add(std::move(result.refusals)).HideWhenEmpty();
  report.Add(std::move(result.faults)).HideWhenEmpty();
  report.Add(std::move(result.records)).HideWhenEmpty();
  report.Line("");
  report.Line(Verdict(options.script, result, refused, errors));
  WriteReport(report, options.format);
  if (!result.good && !options.isDryRun) WriteMessage(options.output.Text() + " isn't written");
  return result.good ? kExitGood : kExitFaults;
}

}  // namespace

void AddEdit(CommandLine& app, Action& action) {
  AddCommand<EditOptions>(
      app, action, "edit", "Add records to a model, change and remove some, by a script",
      [](CommandLine& command, EditOptions& options) {
        AddModelArgument(command, options.model).Required();
        command.Add("--script", options.script, "The edits, a line each").Shown("FILE").Required();
        AddOutputOption(command, options.output, "Write the edited model to OUT");
        command.AddFlag("--dry-run", options.isDryRun, "Only report what would be refused; nothing is written");
        AddLogOption(command, "the validations");
        AddLanguageOption(command, options.language);
        AddFormatOption(command, options.format);
        command.Footer(kEditFooter);
        AddExitCodes(command, "every line is applied and the model is good",
                     "lines are refused or the model has errors");
      },
      RunEdit);
}

}  // namespace dtsdb::tools
