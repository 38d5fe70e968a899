#include <algorithm>
#include <numeric>

#include "tools/catalog.h"
#include "tools/commands.h"
#include "tools/failure.h"
#include "tools/field_text.h"
#include "tools/model_io.h"
#include "tools/nearest.h"

namespace dtsdb::tools {
namespace {

struct DumpOptions {
  std::string model;
  std::string table;
  std::string id;
  Format format = Format::Text;
};

constexpr const char* kFooter =
    "Text leaves out the columns in which every record shown has the default. CSV takes one TABLE.\n"
    "--id finds records by identity or number, relation rows by the identity of their parent or child.\n\n"
    "Examples:\n"
    "  dtsdb dump grid.obj CB\n"
    "  dtsdb dump grid.obj LN --id 'Line 1-2'\n"
    "  dtsdb dump grid.obj UN --format csv > units.csv";

/// The texts under which a record can be found.
template <class T>
std::vector<std::string> Names(const T& record) {
  if constexpr (T::kKey == RecordKey::Relation) {
    return {IdText(record.*Relation<T>::parentId), IdText(record.*Relation<T>::childId)};
  } else {
    return {KeyText(record)};
  }
}

template <class T>
bool IsCalled(const T& record, const std::string& id) {
  const auto names = Names(record);
  return std::find(names.begin(), names.end(), id) != names.end();
}

/// The records of a table, all or those called `id`; for people without the columns that hold only defaults.
template <class T>
Sheet TableSheet(tTable<T>& table, const std::string& id) {
  Sheet sheet(T::kTableName, T::kTableName, FieldNames<T>());
  for (int i = 0; i < table.GetCount(); ++i) {
    if (id.empty() || IsCalled(table[i], id)) sheet.Add(FieldCells<T>(table[i]));
  }
  sheet.HideDefaults(FieldCells<T>(T()));
  return sheet;
}

std::vector<std::string> KnownNames(DTSDB& database, const std::vector<int>& places) {
  std::vector<std::string> known;
  for (const int place : places) {
    VisitTable(database, place, [&known](auto& table) {
      for (int i = 0; i < table.GetCount(); ++i) {
        for (std::string& name : Names(table[i])) known.push_back(std::move(name));
      }
    });
  }
  return known;
}

/// The tables to look at: the one that was named, or all.
std::vector<int> Places(const std::string& table) {
  if (!table.empty()) return {NamedTable(table)};
  std::vector<int> places(kTableCount);
  std::iota(places.begin(), places.end(), 0);
  return places;
}

int Dump(const DumpOptions& options) {
  const std::vector<int> places = Places(options.table);
  if (options.format == Format::Csv && places.size() > 1) {
    throw Failure(EXIT_USAGE, "CSV holds one table: say which TABLE");
  }
  DTSDB database = LoadModel(options.model);
  const std::string id = ArgumentText(options.id);
  Report report;
  std::size_t found = 0;
  for (const int place : places) {
    VisitTable(database, place, [&](auto& table) {
      Sheet sheet = TableSheet(table, id);
      found += sheet.Rows().size();
      if (!sheet.Rows().empty() || places.size() == 1) report.Add(std::move(sheet));
    });
  }
  if (!id.empty() && found == 0) {
    const std::string where = options.table.empty() ? options.model : "table " + TableNames()[places.front()];
    throw Failure(EXIT_USAGE, where + " has no record " + Quoted(id) + DidYouMean(id, KnownNames(database, places)));
  }
  WriteReport(report, options.format);
  return EXIT_GOOD;
}

}  // namespace

void AddDump(CLI::App& app, Action& action) {
  AddCommand<DumpOptions>(
      app, action, "dump", "Show the records of a model",
      [](CLI::App& command, DumpOptions& options) {
        AddModelArgument(command, options.model)->required();
        AddArgument(command, "TABLE", options.table, "Only this table, such as CB or LN");
        AddIdOption(command, options.id, "Only the records with this identity");
        AddFormatOption(command, options.format);
        command.footer(kFooter);
      },
      Dump);
}

}  // namespace dtsdb::tools
