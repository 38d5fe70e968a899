#include "command/commands.h"
#include "command/topology_report.h"
#include "command/validation_run.h"
#include "formats/failure.h"
#include "formats/model_io.h"
#include "topology/tp.h"

namespace dtsdb::tools {
namespace {

struct TopologyOptions {
  ModelName model;
  ModelName output;
  std::string sheet;
  Format format = Format::kText;
};

constexpr const char* kFooter =
    "A model without the mark of a good validation is validated first; when it has errors, the exit code is 1.\n"
    "The result has four sheets: islands, sections, contents and dead. CSV holds one, islands unless --sheet names\n"
    "another.\n\n"
    "Examples:\n"
    "  dtsdb topology examples/ieee14\n"
    "  dtsdb topology grid.obj -o live.obj\n"
    "  dtsdb topology grid.obj --format csv --sheet contents";

int Topology(const TopologyOptions& options) {
  DTSDB database = LoadModel(options.model);
  RequireGood(database, options.model);
  TP tp(&database);
  if (tp.tpAllnew() == 0) throw Failure(kExitFaults, options.model.Text() + ": the topology can't be worked out");
  if (database.m_islandTable->GetCount() > 0) tp.tpSetRefUN();
  if (!options.output.IsEmpty()) SaveModel(database, options.output);
  WriteReport(TopologyReport(database), options.format, options.sheet);
  return kExitGood;
}

}  // namespace

void AddTopology(CommandLine& app, Action& action) {
  AddCommand<TopologyOptions>(
      app, action, "topology", "Work out and show bus sections, islands and what is dead",
      [](CommandLine& command, TopologyOptions& options) {
        AddModelArgument(command, options.model).Required();
        AddOutputOption(command, options.output, "Write the model with its topology to OUT");
        AddSheetOption(command, options.sheet, "islands, sections, contents or dead");
        AddFormatOption(command, options.format);
        command.Footer(kFooter);
      },
      Topology);
}

}  // namespace dtsdb::tools
