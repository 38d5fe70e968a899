#include "page/report.h"
#include "analysis/topology.h"
#include "command/analysis_result.h"
#include "command/commands.h"
#include "command/finding_report.h"
#include "command/imported_model.h"
#include "command/page_subject.h"
#include "formats/failure.h"
#include "formats/files.h"
#include "formats/messages.h"

namespace dtsdb::tools {
namespace {

struct ReportOptions {
  ModelName model;
  std::string output;
  Language language = LocaleLanguage();
};

constexpr const char* kReportFooter =
    "The page needs nothing beside it: it can be handed on as one file, and any browser shows it. The same model "
    "gives\n"
    "the same bytes. Of a model with errors it shows the tables and the findings.\n\n"
    "Examples:\n"
    "  dtsdb report examples/ieee14 -o ieee14.html\n"
    "  dtsdb report grid.zip --ids mrid -o grid.html";

/// Works out the topology where there can be one. Returns whether there is.
bool HasTopologyNow(analysis::Model& model, const analysis::Validation& validation) {
  if (!validation.good) return false;
  const analysis::Result<analysis::Topology> topology = analysis::WorkOutTopology(model);
  if (!topology) WriteMessage(topology.error().message);
  return topology.has_value();
}

int MakeReport(const ReportOptions& options) {
  if (options.output.empty()) throw Failure(kExitUsage, "name the file to be written with -o FILE");
  analysis::Model model = OpenModel(options.model);
  const analysis::Validation validation = Take(model.Validate(options.language));
  const bool hasTopology = HasTopologyNow(model, validation);
  const page::Documents documents(model, validation, PageSubject(options.model, options.language));
  WriteFile(options.output, page::WriteReport(documents));
  return hasTopology ? kExitGood : kExitFaults;
}

}  // namespace

void AddReport(CommandLine& app, Action& action) {
  AddCommand<ReportOptions>(
      app, action, "report", "Write a page that shows a model, as one file to be handed on",
      [](CommandLine& command, ReportOptions& options) {
        AddModelArgument(command, options.model).Required();
        AddImportOptions(command, options.model);
        AddPathOption(command, "-o,--output", options.output, "Where the page is written");
        AddLanguageOption(command, options.language);
        AddLogOption(command, "the validation and the breaker flow");
        command.Footer(kReportFooter);
        AddExitCodes(command, "the page is written", "it is written, but the model has errors or no topology");
      },
      MakeReport);
}

}  // namespace dtsdb::tools
