#include <fmt/format.h>

#include <algorithm>

#include "command/commands.h"
#include "command/validation_run.h"
#include "formats/catalog.h"
#include "formats/failure.h"
#include "formats/field_text.h"
#include "formats/messages.h"
#include "formats/model_io.h"
#include "formats/text_layout.h"
#include "model/text.h"
#include "validation/nmd.h"

namespace dtsdb::tools {
namespace {

struct ValidateOptions {
  ModelName model;
  ModelName output;
  Format format = Format::kText;
};

constexpr const char* kFooter =
    "Leaves the log nmd.log in the current folder. The model is written with -o only when it is good.\n"
    "Exit code 0: the model is good; 1: it has errors. Warnings don't count.\n\n"
    "Examples:\n"
    "  dtsdb validate examples/ieee14\n"
    "  dtsdb validate grid.obj -o checked.obj\n"
    "  dtsdb validate grid.obj --format json";

long long Count(const NMD& nmd, Severity severity) {
  const auto& findings = nmd.Findings();
  return std::count_if(findings.begin(), findings.end(), [=](const Finding& f) { return f.severity == severity; });
}

int Validate(const ValidateOptions& options) {
  DTSDB database = LoadModel(options.model);
  NMD nmd(&database);
  const bool finished = nmd.DetectAll();
  const bool good = finished && IsMarkedGood(database);
  const long long errors = Count(nmd, Severity::kError);
  const long long warnings = Count(nmd, Severity::kWarning);
  if (good && !options.output.IsEmpty()) SaveModel(database, options.output);

  Report report;
  report.Fact("good", good);
  report.Fact("errors", NumberCell(errors));
  report.Fact("warnings", NumberCell(warnings));
  report.Add(FindingSheet(nmd.Findings(), Severity::kWarning));
  report.Line("");
  report.Line(fmt::format("{}: the model is {}good: {}, {}.", options.model.Text(), good ? "" : "not ",
                          Counted(errors, "error"), Counted(warnings, "warning")));
  WriteReport(report, options.format);

  if (!finished) WriteMessage("the validation can't be finished: " + nmd.GetLastError().trimmed().toStdString());
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
        AddOutputOption(command, options.output, "Write the validated model to OUT when it is good");
        AddFormatOption(command, options.format);
        command.Footer(kFooter);
      },
      Validate);
}

}  // namespace dtsdb::tools
