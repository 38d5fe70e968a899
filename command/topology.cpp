#include "analysis/topology.h"
#include "command/analysis_result.h"
#include "command/commands.h"
#include "command/finding_report.h"
#include "command/imported_model.h"
#include "command/place_filter.h"
#include "command/topology_report.h"

namespace dtsdb::tools {
namespace {

struct TopologyOptions {
  ModelName model;
  ModelName output;
  Place place;
  std::string sheet;
  Language language = LocaleLanguage();
  Format format = Format::kText;
};

constexpr const char* kFooter =
    "A model without the mark of a good validation is validated first.\n"
    "The result has five sheets: islands, sections, contents, dead and findings. CSV holds one, islands unless "
    "--sheet\n"
    "names another.\n\n"
    "Examples:\n"
    "  dtsdb topology examples/ieee14\n"
    "  dtsdb topology grid.obj -o live.obj\n"
    "  dtsdb topology grid.obj --format csv --sheet contents";

int Topology(const TopologyOptions& options) {
  const ImportedModel imported = LoadImported(options.model);
  analysis::Model model = analysis::Model::Of(imported.tables, options.model.Text());
  const PlaceFilter filter(options.place, model.Tables());
  analysis::Topology topology = Take(analysis::WorkOutTopology(model));
  if (!options.output.IsEmpty()) {
    Take(model.Save(options.output.Text()));
    WriteIdsBeside(imported, options.output);
  }
  filter.Restrict(topology);
  WriteReport(TopologyReport(topology, options.language), options.format, options.sheet);
  return kExitGood;
}

}  // namespace

void AddTopology(CommandLine& app, Action& action) {
  AddCommand<TopologyOptions>(
      app, action, "topology", "Work out and show bus sections, islands and what is dead",
      [](CommandLine& command, TopologyOptions& options) {
        AddModelArgument(command, options.model).Required();
        AddImportOptions(command, options.model);
        AddOutputOption(command, options.output, "Write the model with its topology to OUT");
        AddPlaceOptions(command, options.place);
        AddSheetOption(command, options.sheet, "islands, sections, contents, dead or findings");
        AddLanguageOption(command, options.language);
        AddLogOption(command, "the validation where the model needs one");
        AddFormatOption(command, options.format);
        command.Footer(kFooter);
        AddExitCodes(command, "the topology is worked out",
                     "the model has errors, or its topology can't be worked out");
      },
      Topology);
}

}  // namespace dtsdb::tools
