#include <fmt/format.h>

#include <algorithm>

#include "command/commands.h"
#include "command/rtdb_backup.h"
#include "command/rtdb_prune.h"
#include "formats/catalog.h"
#include "formats/failure.h"
#include "formats/field_text.h"
#include "formats/nearest.h"
#include "formats/realtime.h"
#include "formats/stored_rows.h"

namespace dtsdb::tools {
namespace {

struct RtdbOptions {
  ModelName database;
  std::string table;
  std::string id;
  std::vector<std::string> values;
  Format format = Format::kText;
};

constexpr const char* kRtdbFooter =
    "NAME is the path of the database, with or without its ending .fdb. As a MODEL of the other commands it is\n"
    "written rtdb:NAME. Other programs may use the database meanwhile.\n"
    "'dtsdb rtdb COMMAND --help' prints more about a command.";

constexpr const char* kListFooter =
    "Example:\n"
    "  dtsdb rtdb ls grid";

constexpr const char* kShowFooter =
    "All columns of the rows are shown, also those that only other programs use; ranges of bytes (raw_...) as\n"
    "hexadecimal digits. Text leaves out the columns in which every row shown has the default.\n"
    "--id finds rows by identity or number, relation rows by the identity of their parent or child.\n\n"
    "Examples:\n"
    "  dtsdb rtdb show grid CB\n"
    "  dtsdb rtdb show grid LN --id 'Line 1-2' --format json";

constexpr const char* kPutFooter =
    "The row is the one with the given id, in a relation table that with the given two identities. It is added when\n"
    "there is none; columns that aren't given then have the defaults of 'dtsdb info --fields TABLE'.\n"
    "Either all values are stored or none. The database is made when there is none.\n\n"
    "Examples:\n"
    "  dtsdb rtdb put grid STATUS id='Breaker 7' value=1\n"
    "  dtsdb rtdb put grid R_KV_LD kv_id='Level 10' ld_id='Load 3' next=-1";

constexpr const char* kCheckFooter =
    "Looks through all pages of the file, compares its tables with those of this program and reads every row.\n"
    "Exits with 3 when something is wrong.\n\n"
    "Example:\n"
    "  dtsdb rtdb check grid";

/// The tables that have rows.
Report TableList(RealtimeDatabase& database) {
  Report report;
  Sheet& sheet = report.Add(Sheet("tables", "Tables", {"table", "rows", "meaning"}));
  for (const auto& table : StoredTables()) {
    const int rows = table->Count(database.Db());
    if (rows > 0) sheet.Add({table->Info().name, NumberCell(rows), table->Info().meaning});
  }
  database.Check();
  const auto empty = kTableCount - sheet.Rows().size();
  if (empty > 0) report.Line(fmt::format("The other {} tables are empty.", empty));
  return report;
}

int List(const RtdbOptions& options) {
  RealtimeDatabase database(options.database.Path(), dbDatabase::dbReadOnly);
  WriteReport(TableList(database), options.format);
  return kExitGood;
}

/// The rows of a table, all or those called `id`.
Sheet RowSheet(RealtimeDatabase& database, const StoredTable& table, const std::string& id) {
  const std::span<const ColumnInfo> columns = table.Columns();
  Sheet sheet(table.Info().name, table.Info().name, NamesOf(columns));
  std::vector<std::string> known;
  table.ForEachRow(database.Db(), [&](const void* row) {
    const std::vector<std::string> names = RowNames(table, row);
    if (id.empty() || std::find(names.begin(), names.end(), id) != names.end()) sheet.Add(ColumnCells(columns, row));
    known.insert(known.end(), names.begin(), names.end());
  });
  database.Check();
  if (!id.empty() && sheet.Rows().empty()) {
    throw Failure(kExitUsage,
                  fmt::format("table {} has no row {}{}", table.Info().name, Quoted(id), DidYouMean(id, known)));
  }
  sheet.HideDefaults(ColumnCells(columns, table.NewRow().get()));
  return sheet;
}

int Show(const RtdbOptions& options) {
  const StoredTable& table = StoredTableOf(NamedTable(options.table));
  RealtimeDatabase database(options.database.Path(), dbDatabase::dbReadOnly);
  Report report;
  report.Add(RowSheet(database, table, UserText(options.id)));
  WriteReport(report, options.format);
  return kExitGood;
}

int Put(const RtdbOptions& options) {
  Report report;
  std::vector<std::string> assignments;
  for (const std::string& value : options.values) assignments.push_back(UserText(value));
  const StoredTable& table = StoredTableOf(NamedTable(options.table));
  RowValues values(table, assignments);  // a wrong value ends the command before a database is made
  RealtimeDatabase database(options.database.Path(), dbDatabase::dbAllAccess);
  const bool isNew = PutRow(database, table, values);
  report.Line(values.Name() + (isNew ? ": added, there was no such row." : ": changed."));
  WriteReport(report, Format::kText);
  return kExitGood;
}

int Check(const RtdbOptions& options) {
  RealtimeDatabase database(options.database.Path(),
                            dbDatabase::dbReadOnly);  // looks through the pages and the tables' columns
  const StoredRowCounts counts = CheckStoredRows(database, options.database.Text());
  Report report;
  report.Line(fmt::format("{}: good: {} in {} of {} tables.", options.database.Text(), Counted(counts.rows, "row"),
                          counts.tables, kTableCount));
  WriteReport(report, Format::kText);
  return kExitGood;
}

using Describe = void (*)(CommandLine&, RtdbOptions&);

void AddRtdbCommand(CommandLine& rtdb, Action& action, const std::string& name, const std::string& purpose,
                    Describe describe, int (*run)(const RtdbOptions&)) {
  AddCommand<RtdbOptions>(
      rtdb, action, name, purpose,
      [describe](CommandLine& command, RtdbOptions& options) {
        AddDatabaseArgument(command, options.database);
        describe(command, options);
      },
      run);
}

void AddTableArgument(CommandLine& command, RtdbOptions& options) {
  AddArgument(command, "TABLE", options.table, "The table, such as CB or LN").Required();
}

}  // namespace

void AddRtdb(CommandLine& app, Action& action) {
  CommandLine rtdb =
      app.AddSubcommand("rtdb", "Look into a realtime database, change a row of it, prune its logs, back it up", {});
  rtdb.RequireSubcommand();
  rtdb.Footer(kRtdbFooter);
  AddRtdbCommand(
      rtdb, action, "ls", "List the tables that have rows",
      [](CommandLine& command, RtdbOptions& options) {
        AddFormatOption(command, options.format);
        command.Footer(kListFooter);
        AddExitCodes(command, "the tables are listed");
      },
      List);
  AddRtdbCommand(
      rtdb, action, "show", "Show the rows of a table",
      [](CommandLine& command, RtdbOptions& options) {
        AddTableArgument(command, options);
        AddIdOption(command, options.id, "Only the rows with this identity");
        AddFormatOption(command, options.format);
        command.Footer(kShowFooter);
        AddExitCodes(command, "the rows are shown");
      },
      Show);
  AddRtdbCommand(
      rtdb, action, "put", "Change a row, or add it",
      [](CommandLine& command, RtdbOptions& options) {
        AddTableArgument(command, options);
        command.Add("COLUMN=VALUE", options.values, "What to store, as in text tables").Shown("...").Required();
        command.Footer(kPutFooter);
        AddExitCodes(command, "the row is stored");
      },
      Put);
  AddRtdbCommand(
      rtdb, action, "check", "Look for damage",
      [](CommandLine& command, RtdbOptions&) {
        command.Footer(kCheckFooter);
        AddExitCodes(command, "nothing is wrong");
      },
      Check);
  AddRtdbPrune(rtdb, action);
#ifndef DTSDB_RTDB_FASTDB
  AddRtdbBackup(rtdb, action);
#endif
}

}  // namespace dtsdb::tools
