#include <fmt/format.h>

#include <filesystem>

#include "breakerflow/cbflow.h"
#include "breakerflow/log.h"
#include "command/commands.h"
#include "command/flow_report.h"
#include "command/validation_run.h"
#include "formats/failure.h"
#include "formats/model_io.h"
#include "formats/realtime.h"
#include "formats/temporary_folder.h"
#include "model/exchange.h"
#include "rtdb/volma_rtdb.h"
#include "topology/tp.h"

namespace dtsdb {

/// The command shows what would stand in the log, and leaves nothing in the user's folder.
const char* FlowLogPath() { return nullptr; }

namespace tools {
namespace {

struct FlowOptions {
  ModelName model;
  std::string sheet;
  float delta = cbFlow(nullptr).getDelta();
  bool store = false;
  Format format = Format::kText;
};

constexpr const char* kFooter =
    "In a realtime database the topology and the voltages of the bus sections must stand already; --store writes the\n"
    "flows there. Any other model is put into a temporary one, with its topology worked out where it has none, and\n"
    "with the voltages of its buses where the bus sections have none.\n"
    "A set whose injections sum to more than the tolerance isn't computed; then the exit code is 1.\n"
    "The result has two sheets: sets and breakers. CSV holds one, sets unless --sheet names the other.\n\n"
    "Examples:\n"
    "  dtsdb flow examples/ieee14\n"
    "  dtsdb flow grid.obj --format csv --sheet breakers\n"
    "  dtsdb flow rtdb:grid --delta 0.5 --store";

bool HasTopology(DTSDB& model) { return IsMarkedGood(model) && model.m_bsTable->GetCount() > 0; }

/// Gives each bus section without a voltage that of a bus on it, or else the base voltage of its level.
void CompleteVoltages(DTSDB& model) {
  tTable<BS>& sections = *model.m_bsTable;
  std::vector<const BUS*> busOf(static_cast<std::size_t>(sections.GetSize()));
  for (int i = 0; i < model.m_busTable->GetCount(); ++i) {
    const BUS& bus = (*model.m_busTable)[i];
    const bool placed = bus.ibs >= 0 && bus.ibs < sections.GetSize();
    if (placed && bus.v > 0 && busOf[bus.ibs] == nullptr) busOf[bus.ibs] = &bus;
  }
  for (int i = 0; i < sections.GetSize(); ++i) {
    BS& section = sections.GetPh(i);
    if (section.v != 0) continue;
    if (busOf[i] != nullptr) {
      section.v = busOf[i]->v;
      section.a = busOf[i]->a;
    } else if (section.ikv >= 0 && section.ikv < model.m_kvTable->GetSize()) {
      section.v = model.m_kvTable->GetPh(section.ikv).vbase;
    }
  }
}

/// Makes the model ready for the breaker flow: validated, with topology and voltages.
void MakeReady(DTSDB& model, const ModelName& name) {
  if (!HasTopology(model)) {
    RequireGood(model, name);
    if (TP(&model).tpAllnew() == 0) throw Failure(kExitFaults, name.Text() + ": the topology can't be worked out");
  }
  CompleteVoltages(model);
}

LevelOfBreaker Levels(RealtimeDatabase& database) {
  LevelOfBreaker levels;
  dbCursor<cb> cursor(database.Db());
  cursor.select(Twin<CB>::kReadingOrder);
  for (const cb* row = cursor.get(); row != nullptr; row = cursor.next()) levels.emplace(row->id, row->kv);
  return levels;
}

int ComputeIn(RealtimeDatabase& database, const FlowOptions& options) {
  cbFlow flow(database.Db(), options.delta);
  flow.loadData();
  database.Check();
  flow.calculate();
  if (options.store) flow.storeData();
  const Report report = FlowReport(flow, Levels(database));
  database.Check();
  WriteReport(report, options.format, options.sheet);
  return RefusedSets(flow) == 0 ? kExitGood : kExitFaults;
}

int ComputeInDatabase(const FlowOptions& options) {
  RealtimeDatabase database(options.model.Path(), options.store ? dbDatabase::dbAllAccess : dbDatabase::dbReadOnly);
  const int sections = dbCursor<bs>(database.Db()).select();
  database.Check();
  if (sections == 0) {
    throw Failure(kExitFaults, fmt::format("{0}: there is no topology; 'dtsdb topology {0} -o {0}' works it out",
                                           options.model.Text()));
  }
  return ComputeIn(database, options);
}

int Flow(const FlowOptions& options) {
  if (options.model.IsDatabase()) return ComputeInDatabase(options);
  if (options.store) throw Failure(kExitUsage, "--store needs a realtime database, as in rtdb:grid");
  DTSDB model = LoadModel(options.model);
  MakeReady(model, options.model);
  const TemporaryCurrentFolder away;
  RealtimeDatabase database("flow", dbDatabase::dbAllAccess);
  model.WriteFastdb(database.Db());
  database.Check();
  return ComputeIn(database, options);
}

}  // namespace

void AddFlow(CommandLine& app, Action& action) {
  AddCommand<FlowOptions>(
      app, action, "flow", "Work out and show the power through every closed breaker",
      [](CommandLine& command, FlowOptions& options) {
        AddModelArgument(command, options.model).Required();
        command.Add("--delta", options.delta, "Tolerance of a set's balance, MW and Mvar (0.01)").Shown("MW");
        command.AddFlag("--store", options.store, "Write the flows into the realtime database");
        AddSheetOption(command, options.sheet, "sets or breakers");
        AddFormatOption(command, options.format);
        command.Footer(kFooter);
      },
      Flow);
}

}  // namespace tools
}  // namespace dtsdb
