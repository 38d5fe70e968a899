#include <algorithm>

#include "command/commands.h"
#include "command/imported_model.h"
#include "command/place_filter.h"
#include "formats/catalog.h"
#include "formats/failure.h"
#include "formats/field_text.h"
#include "formats/nearest.h"
#include "model/any_table.h"

namespace dtsdb::tools {
namespace {

struct DumpOptions {
  ModelName model;
  std::string table;
  std::string id;
  Place place;
  Format format = Format::kText;
};

constexpr const char* kDumpFooter =
    "Text leaves out the columns in which every record shown has the default. CSV takes one TABLE.\n"
    "--id finds records by identity or number, relation rows by the identity of their parent or child.\n\n"
    "Examples:\n"
    "  dtsdb dump grid.obj CB\n"
    "  dtsdb dump grid.obj LN --id 'Line 1-2'\n"
    "  dtsdb dump grid.obj UN --format csv > units.csv";

bool IsCalled(const TableInfo& table, const void* record, const std::string& id) {
  const auto names = KeyTexts(table, record);
  return std::find(names.begin(), names.end(), id) != names.end();
}

/// The records of a table that `filter` takes, all or those called `id`; for people without the columns that hold only
/// defaults.
Sheet TableSheet(const AnyTable& table, const std::string& id, const PlaceFilter& filter) {
  const TableInfo& info = table.Info();
  Sheet sheet(info.name, info.name, NamesOf(info.fields()));
  for (int i = 0; i < table.GetCount(); ++i) {
    const bool isMeant = id.empty() || IsCalled(info, table[i], id);
    if (isMeant && filter.Takes(info.kind, table[i])) sheet.Add(FieldCells(info.fields(), table[i]));
  }
  sheet.HideDefaults(FieldCells(info.fields(), table.MakeRecords()->Add()));
  return sheet;
}

std::vector<std::string> KnownNames(const std::vector<AnyTable>& tables, const PlaceFilter& filter) {
  std::vector<std::string> known;
  for (const AnyTable& table : tables) {
    for (int i = 0; i < table.GetCount(); ++i) {
      if (!filter.Takes(table.Info().kind, table[i])) continue;
      for (std::string& name : KeyTexts(table.Info(), table[i])) known.push_back(std::move(name));
    }
  }
  return known;
}

int Dump(const DumpOptions& options) {
  const TableKind named = options.table.empty() ? KIND_NONE : NamedTable(options.table);
  if (options.format == Format::kCsv && named == KIND_NONE) {
    throw Failure(kExitUsage, "CSV holds one table: name the TABLE");
  }
  DTSDB database = LoadImported(options.model).tables;
  const std::vector<AnyTable> tables =
      named == KIND_NONE ? AllTables(database) : std::vector{TableOfKind(database, named)};
  const std::string id = UserText(options.id);
  const PlaceFilter filter(options.place, database);
  Report report;
  std::size_t found = 0;
  for (const AnyTable& table : tables) {
    Sheet sheet = TableSheet(table, id, filter);
    found += sheet.Rows().size();
    if (!sheet.Rows().empty() || named != KIND_NONE) report.Add(std::move(sheet));
  }
  if (!id.empty() && found == 0) {
    const std::string where = named == KIND_NONE ? options.model.Text() : std::string("table ") + TableName(named);
    const std::string place = options.place.IsEmpty() ? "" : " at this place";
    throw Failure(kExitUsage,
                  where + " has no record " + Quoted(id) + place + DidYouMean(id, KnownNames(tables, filter)));
  }
  WriteReport(report, options.format);
  return kExitGood;
}

}  // namespace

void AddDump(CommandLine& app, Action& action) {
  AddCommand<DumpOptions>(
      app, action, "dump", "Show the records of a model",
      [](CommandLine& command, DumpOptions& options) {
        AddModelArgument(command, options.model).Required();
        AddArgument(command, "TABLE", options.table, "Only this table, such as CB or LN");
        AddIdOption(command, options.id, "Only the records with this identity");
        AddPlaceOptions(command, options.place);
        AddFormatOption(command, options.format);
        command.Footer(kDumpFooter);
        AddExitCodes(command, "the records are shown");
      },
      Dump);
}

}  // namespace dtsdb::tools
