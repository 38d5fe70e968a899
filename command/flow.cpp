#include <fmt/format.h>

#include "analysis/flows.h"
#include "command/analysis_result.h"
#include "command/commands.h"
#include "command/finding_report.h"
#include "command/flow_report.h"
#include "command/imported_model.h"
#include "command/place_filter.h"
#include "formats/failure.h"
#include "formats/realtime.h"
#include "rtdb/volma_rtdb.h"

namespace dtsdb::tools {
namespace {

struct FlowOptions {
  ModelName model;
  std::string sheet;
  Place place;
  FlowSettings settings;
  bool store = false;
  Format format = Format::kText;
};

constexpr const char* kFlowFooter =
    "A realtime database must hold a topology already; --store writes the flows there. Any other model gets one where\n"
    "it has none. A bus section without a voltage gets that of a bus on it, or else the base voltage of its level.\n"
    "A set whose injections sum to more than the tolerance isn't computed.\n"
    "The result has two sheets: sets and breakers. CSV holds one, sets unless --sheet names the other.\n\n"
    "Examples:\n"
    "  dtsdb flow examples/ieee14\n"
    "  dtsdb flow grid.obj --format csv --sheet breakers\n"
    "  dtsdb flow rtdb:grid --delta 0.5 --store";

Flows ComputeInDatabase(const FlowOptions& options) {
  DTSDB model = options.place.IsEmpty() ? DTSDB() : ReadModel(options.model);
  const PlaceFilter filter(options.place, model);
  RealtimeDatabase database(options.model.Path(), options.store ? dbDatabase::dbAllAccess : dbDatabase::dbReadOnly);
  const int sections = dbCursor<bs>(database.Db()).select();
  database.Check();
  if (sections == 0) {
    throw Failure(kExitFaults, fmt::format("{0}: there is no topology; 'dtsdb topology {0} -o {0}' works it out",
                                           options.model.Text()));
  }
  Flows flows = ComputeFlows(database.Db(), options.settings);
  database.Check();
  if (options.store) StoreFlows(database.Db(), flows);
  database.Check();
  filter.Restrict(flows);
  return flows;
}

Flows ComputeInTables(const FlowOptions& options) {
  if (options.store) throw Failure(kExitUsage, "--store needs a realtime database, as in rtdb:grid");
  analysis::Model model = OpenModel(options.model);
  const PlaceFilter filter(options.place, model.Tables());
  Take(model.RequireGood(LocaleLanguage()));
  Flows flows = Take(analysis::WorkOutFlows(model, options.settings));
  filter.Restrict(flows);
  return flows;
}

int Flow(const FlowOptions& options) {
  const Flows flows = options.model.IsDatabase() ? ComputeInDatabase(options) : ComputeInTables(options);
  WriteReport(FlowReport(flows), options.format, options.sheet);
  return IsWhole(flows) ? kExitGood : kExitFaults;
}

}  // namespace

void AddFlow(CommandLine& app, Action& action) {
  AddCommand<FlowOptions>(
      app, action, "flow", "Work out and show the power through every closed breaker",
      [](CommandLine& command, FlowOptions& options) {
        AddModelArgument(command, options.model).Required();
        command.Add("--delta", options.settings.tolerance, "Tolerance of a set's balance, MW and Mvar (0.01)")
            .Shown("MW");
        command.AddFlag("--store", options.store, "Write the flows into the realtime database");
        AddPlaceOptions(command, options.place);
        AddSheetOption(command, options.sheet, "sets or breakers");
        AddLogOption(command, "the breaker flow and, where the model needs one, the validation");
        AddFormatOption(command, options.format);
        command.Footer(kFlowFooter);
        AddExitCodes(command, "every set is computed",
                     "a set isn't balanced or lacks a voltage, or the model isn't ready");
      },
      Flow);
}

}  // namespace dtsdb::tools
