#include <fmt/format.h>

#include <algorithm>

#include "command/commands.h"
#include "command/finding_report.h"
#include "command/imported_model.h"
#include "command/validation_run.h"
#include "formats/catalog.h"
#include "formats/failure.h"
#include "formats/messages.h"
#include "formats/model_io.h"
#include "formats/text_layout.h"
#include "validation/nmd.h"

namespace dtsdb::tools {
namespace {

struct ValidateOptions {
  ModelName model;
  ModelName output;
  Format format = Format::kText;
  Language language = LocaleLanguage();
  bool showsAll = false;
  std::string sheet;
};

constexpr const char* kValidateFooter =
    "The model is written with -o only when it is good. The log has a line for each finding, in the encoding of "
    "identities.\n"
    "Text lists the errors and counts the warnings by kind; with --all, and in JSON and CSV, each is listed.\n"
    "Warnings don't make a model bad.\n\n"
    "Examples:\n"
    "  dtsdb validate examples/ieee14\n"
    "  dtsdb validate grid.obj -o checked.obj\n"
    "  dtsdb validate grid.obj --format json";

long long Count(const QList<Finding>& findings, Severity severity) {
  return std::count_if(findings.begin(), findings.end(), [=](const Finding& f) { return f.severity == severity; });
}

int Validate(const ValidateOptions& options) {
  ImportedModel model = LoadImported(options.model);
  DTSDB& database = model.tables;
  NMD nmd(&database);
  const bool finished = nmd.DetectAll();
  const bool good = finished && IsMarkedGood(database);
  const long long errors = Count(nmd.Findings(), Severity::kError);
  const long long warnings = Count(nmd.Findings(), Severity::kWarning);
  if (good && !options.output.IsEmpty()) {
    SaveModel(database, options.output);
    WriteIdsBeside(model, options.output);
  }

  Report report;
  report.Fact("good", good);
  report.Fact("errors", NumberCell(errors));
  report.Fact("warnings", NumberCell(warnings));
  // Text lists the errors only unless all is wanted: many warnings must not bury them.
  const bool listsAll = options.showsAll || options.format != Format::kText;
  report.Add(
      FindingSheet(nmd.Findings(), listsAll ? Severity::kWarning : Severity::kError, options.language, model.report));
  report.Add(WarningKinds(nmd.Findings(), options.language));
  report.Line("");
  report.Line(fmt::format("{}: the model is {}good: {}, {}.", options.model.Text(), good ? "" : "not ",
                          Counted(errors, "error"), Counted(warnings, "warning")));
  WriteReport(report, options.format, options.sheet);

  if (!finished) WriteMessage("the validation can't be finished: " + FailureText(nmd, options.language));
  if (!good && !options.output.IsEmpty())
    WriteMessage(options.output.Text() + " isn't written, since the model is not good");
  return good ? kExitGood : kExitFaults;
}

}  // namespace

void AddValidate(CommandLine& app, Action& action) {
  AddCommand<ValidateOptions>(
      app, action, "validate", "Check a model and list its faults",
      [](CommandLine& command, ValidateOptions& options) {
        AddModelArgument(command, options.model).Required();
        AddImportOptions(command, options.model);
        AddOutputOption(command, options.output, "Write the validated model to OUT when it is good");
        AddLogOption(command, "the validation");
        command.AddFlag("--all", options.showsAll, "List each warning, not the kinds only");
        AddLanguageOption(command, options.language);
        AddSheetOption(command, options.sheet, "findings, kinds");
        AddFormatOption(command, options.format);
        command.Footer(kValidateFooter);
        AddExitCodes(command, "the model is good", "it has errors");
      },
      Validate);
}

}  // namespace dtsdb::tools
