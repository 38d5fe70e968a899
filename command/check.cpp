#include <fmt/format.h>

#include <filesystem>
#include <optional>
#include <system_error>

#include "command/commands.h"
#include "formats/catalog.h"
#include "formats/failure.h"
#include "formats/files.h"
#include "formats/model_io.h"
#include "formats/salvage/salvage.h"
#include "formats/text_layout.h"
#include "rtdb/file_name.h"

namespace fs = std::filesystem;

namespace dtsdb::tools {
namespace {

struct ModelCheckOptions {
  ModelName model;
  ModelName repaired;
  bool replace = false;
  std::string sheet;
  Format format = Format::kText;
};

constexpr const char* kCheckModelFooter =
    "An object file, a folder of text tables or a realtime database; 'dtsdb rtdb check' is the short form for the "
    "last.\n"
    "Looks for damage of the file, not for faults of the network: that is what 'dtsdb validate' does. What no form "
    "can\n"
    "show is a wrong number or letter within a record.\n"
    "--repair writes the records that are whole. Validate that model before it is used.\n\n"
    "Examples:\n"
    "  dtsdb check grid.obj\n"
    "  dtsdb check rtdb:grid --format json\n"
    "  dtsdb check grid.obj --repair saved.obj";

Cell LostCell(const TableSalvage& table) { return table.lost ? NumberCell(*table.lost) : Cell(); }

/// The tables that have or had records.
void AddTables(Report& report, const Salvage& salvage) {
  const bool isSound = salvage.IsSound();
  Sheet& sheet = report.Add(Sheet("tables", "Tables", {"table", "saved", "lost", "meaning"}));
  sheet.HideWhenEmpty();
  if (isSound) sheet.HideColumn(2);
  for (const TableSalvage& table : salvage.tables) {
    if (table.saved == 0 && table.lost == 0) continue;
    sheet.Add({table.table, NumberCell(table.saved), LostCell(table), TableOfKind(NamedTable(table.table)).meaning});
  }
}

void AddPlaces(Report& report, const Salvage& salvage) {
  Sheet& sheet = report.Add(Sheet("damage", "Damage", {"table", "place", "id", "field", "what"}));
  sheet.HideWhenEmpty();
  for (const DamagedPlace& place : salvage.places) {
    sheet.Add({TextOrNothing(place.table), TextOrNothing(place.place), TextOrNothing(place.id),
               TextOrNothing(place.field), place.what});
  }
}

/// The records in all tables; nothing for `lost` where that isn't known of one.
struct Totals {
  long long saved = 0;
  std::optional<long long> lost = 0;
  int tables = 0;
};

Totals TotalsOf(const Salvage& salvage) {
  Totals totals;
  for (const TableSalvage& table : salvage.tables) {
    totals.saved += table.saved;
    if (table.saved > 0) ++totals.tables;
    if (!table.lost) totals.lost.reset();
    if (totals.lost) *totals.lost += table.lost.value_or(0);
  }
  return totals;
}

std::string Verdict(const ModelCheckOptions& options, const Salvage& salvage, const Totals& totals) {
  const std::string& name = options.model.Text();
  if (salvage.IsSound()) {
    return fmt::format("{}: sound: {} in {} of {} tables.", name, Counted(totals.saved, "record"), totals.tables,
                       kTableCount);
  }
  const std::string lost =
      totals.lost ? Counted(*totals.lost, "record") + " lost" : "it can't be known how many are lost";
  return fmt::format("{}: damaged in {}: {} can be saved, {}.", name,
                     Counted(static_cast<long long>(salvage.placeCount), "place"), Counted(totals.saved, "record"),
                     lost);
}

Report CheckReport(const ModelCheckOptions& options, const Salvage& salvage) {
  const Totals totals = TotalsOf(salvage);
  Report report;
  report.Fact("model", options.model.Text());
  report.Fact("form", std::string(FormName(options.model.Form())));
  report.Fact("sound", salvage.IsSound());
  report.Fact("saved", NumberCell(totals.saved));
  report.Fact("lost", totals.lost ? NumberCell(*totals.lost) : Cell());
  report.Fact("places", NumberCell(static_cast<long long>(salvage.placeCount)));
  report.Line(Verdict(options, salvage, totals));
  AddTables(report, salvage);
  AddPlaces(report, salvage);
  if (salvage.placeCount > salvage.places.size()) {
    report.Line(fmt::format("{} more places are not listed.", salvage.placeCount - salvage.places.size()));
  }
  return report;
}

/// The file or folder of a model.
fs::path PathOf(const ModelName& name) { return name.IsDatabase() ? rtdb::FileOf(name.Path()) : name.Path(); }

/// Refuses an OUT that is the model itself, and one that exists unless it is to be replaced.
void RequireOutput(const ModelCheckOptions& options) {
  const fs::path out = PathOf(options.repaired);
  std::error_code error;
  if (!fs::exists(out, error)) return;
  if (fs::equivalent(out, PathOf(options.model), error)) {
    throw Failure(kExitUsage, options.repaired.Text() + " is the model itself; name another OUT");
  }
  if (!options.replace) throw Failure(kExitUsage, options.repaired.Text() + " exists already; --replace overwrites it");
}

/// A path that leads to a store is one, with "rtdb:" or without.
ModelName Checked(const ModelName& model) {
  constexpr const char* kStore = ".fdb";
  std::error_code ignored;
  const bool isStore =
      !model.IsDatabase() && fs::path(model.Path()).extension() == kStore && fs::is_regular_file(model.Path(), ignored);
  return isStore ? ModelName::OfDatabase(model.Text()) : model;
}

int CheckModel(const ModelCheckOptions& given) {
  ModelCheckOptions options = given;
  options.model = Checked(options.model);
  if (!options.repaired.IsEmpty()) RequireOutput(options);
  Salvage salvage = SalvageModel(options.model);
  Report report = CheckReport(options, salvage);
  if (!options.repaired.IsEmpty()) {
    SaveModel(salvage.model, options.repaired);
    report.Line(fmt::format("What can be saved is in {}. Validate it: dtsdb validate {}", options.repaired.Text(),
                            options.repaired.Text()));
  }
  WriteReport(report, options.format, options.sheet);
  return salvage.IsSound() ? kExitGood : kExitFaults;
}

}  // namespace

void AddCheck(CommandLine& app, Action& action) {
  AddCommand<ModelCheckOptions>(
      app, action, "check", "Look for damage of a model's files, and save what is whole",
      [](CommandLine& command, ModelCheckOptions& options) {
        AddModelArgument(command, options.model, "MODEL", "Object file, text tables, rtdb:NAME or store file")
            .Required();
        AddModelOption(command, "--repair", options.repaired, "Write the records that are whole to OUT");
        command.AddFlag("--replace", options.replace, "OUT may exist; it is overwritten");
        AddSheetOption(command, options.sheet, "tables, damage");
        AddFormatOption(command, options.format);
        command.Footer(kCheckModelFooter);
        AddExitCodes(command, "the model is sound", "it is damaged");
      },
      CheckModel);
}

}  // namespace dtsdb::tools
