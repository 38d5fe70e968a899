#include <fmt/format.h>

#include <algorithm>

#include "command/commands.h"
#include "command/finding_report.h"
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

constexpr int kFirstOfAKind = 3;

constexpr const char* kFooter =
    "Leaves the log nmd.log in the current folder. The model is written with -o only when it is good.\n"
    "Text shows all errors and then the first 3 warnings of each kind; JSON and CSV contain each.\n"
    "Exit code 0: the model is good; 1: it has errors. Warnings don't count.\n\n"
    "Examples:\n"
    "  dtsdb validate examples/ieee14\n"
    "  dtsdb validate grid.obj -o checked.obj\n"
    "  dtsdb validate grid.obj --format json";

long long Count(const QList<Finding>& findings, Severity severity) {
  return std::count_if(findings.begin(), findings.end(), [=](const Finding& f) { return f.severity == severity; });
}

/// Adds the findings, such that many warnings don't bury the errors, and the warnings counted by kind.
void AddFindings(Report& report, const QList<Finding>& findings, const ValidateOptions& options) {
  const bool isShortened = options.format == Format::kText && !options.showsAll;
  const int mostOfAKind = isShortened ? kFirstOfAKind : 0;
  const Sheet& shown = report.Add(FindingSheet(findings, {options.language, Severity::kWarning, mostOfAKind}));
  const long long leftOut = Count(findings, Severity::kError) + Count(findings, Severity::kWarning) -
                            static_cast<long long>(shown.Rows().size());
  if (leftOut > 0) report.Line(fmt::format("{} not shown; --all shows each.", Counted(leftOut, "more warning")));
  report.Add(WarningKinds(findings, options.language));
}

int Validate(const ValidateOptions& options) {
  DTSDB database = LoadModel(options.model);
  NMD nmd(&database);
  const bool finished = nmd.DetectAll();
  const bool good = finished && IsMarkedGood(database);
  const long long errors = Count(nmd.Findings(), Severity::kError);
  const long long warnings = Count(nmd.Findings(), Severity::kWarning);
  if (good && !options.output.IsEmpty()) SaveModel(database, options.output);

  Report report;
  report.Fact("good", good);
  report.Fact("errors", NumberCell(errors));
  report.Fact("warnings", NumberCell(warnings));
  AddFindings(report, nmd.Findings(), options);
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

void AddValidate(CLI::App& app, Action& action) {
  AddCommand<ValidateOptions>(
      app, action, "validate", "Check a model and list its faults",
      [](CLI::App& command, ValidateOptions& options) {
        AddModelArgument(command, options.model)->required();
        AddOutputOption(command, options.output, "Write the validated model to OUT when it is good");
        command.add_flag("--all", options.showsAll, "Show each warning, not the first 3 of each kind only");
        AddLanguageOption(command, options.language);
        AddSheetOption(command, options.sheet, "findings, kinds");
        AddFormatOption(command, options.format);
        command.footer(kFooter);
      },
      Validate);
}

}  // namespace dtsdb::tools
