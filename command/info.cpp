#include <fmt/format.h>

#include <QDateTime>
#include <algorithm>

#include "command/commands.h"
#include "command/imported_model.h"
#include "command/validation_run.h"
#include "formats/catalog.h"
#include "formats/failure.h"
#include "formats/field_text.h"
#include "model/any_table.h"

namespace dtsdb::tools {
namespace {

struct InfoOptions {
  ModelName model;
  std::string fields;
  std::string sheet;
  Format format = Format::kText;
};

constexpr const char* kInfoFooter =
    "Slots are the places of a table; some may be free.\n\n"
    "Examples:\n"
    "  dtsdb info examples/ieee14\n"
    "  dtsdb info grid.zip --ids mrid\n"
    "  dtsdb info --fields CB";

std::string TimeText(u32 seconds) {
  return QDateTime::fromSecsSinceEpoch(seconds, Qt::UTC).toString(Qt::ISODate).toStdString();
}

std::string Verdict(DTSDB& database) {
  if (database.m_globalTable->GetCount() == 0) return "not validated";
  if (IsMarkedGood(database)) return "good";
  const int errors = (*database.m_globalTable)[0].errors;
  return errors == 0 ? "not validated" : fmt::format("not good, {} errors at the last validation", errors);
}

/// A time out of GLOBAL, an empty cell for one that was never set.
Cell GlobalTime(DTSDB& database, u32 GLOBAL::*time) {
  if (database.m_globalTable->GetCount() == 0) return {};
  const u32 seconds = (*database.m_globalTable)[0].*time;
  return seconds == 0 ? Cell() : Cell(TimeText(seconds));
}

void AddLine(Report& report, const std::string& name, const Cell& value) {
  report.Fact(name, value);
  const auto* const text = std::get_if<std::string>(&value);
  std::string title = name;
  std::replace(title.begin(), title.end(), '_', ' ');
  if (text != nullptr) report.Line(fmt::format("{:<14}{}", title + ":", *text));
}

Report ModelInfo(const ModelName& model, DTSDB& database) {
  Report report;
  AddLine(report, "model", model.Text());
  AddLine(report, "form", FormName(model.Form()));
  AddLine(report, "verdict", Verdict(database));
  AddLine(report, "validated", GlobalTime(database, &GLOBAL::check_time));
  AddLine(report, "topology", GlobalTime(database, &GLOBAL::time));
  Sheet& sheet = report.Add(Sheet("tables", "Tables", {"table", "records", "slots", "meaning"}));
  for (const AnyTable& table : AllTables(database)) {
    if (table.GetSize() == 0) continue;
    sheet.Add({table.Info().name, NumberCell(table.GetCount()), NumberCell(table.GetSize()), table.Info().meaning});
  }
  const auto empty = kTableCount - sheet.Rows().size();
  if (empty > 0) report.Line(fmt::format("The other {} tables are empty.", empty));
  return report;
}

Report FieldReport(TableKind kind) {
  Report report;
  DTSDB database;
  const TableInfo& table = TableOfKind(kind);
  report.Line(fmt::format("{}: {}", table.name, table.meaning));
  Sheet& sheet = report.Add(Sheet("fields", "Fields", {"field", "type", "default", "meaning"}));
  const auto records = TableOfKind(database, kind).MakeRecords();
  const void* const defaults = records->Add();
  for (const FieldInfo& field : table.fields()) {
    sheet.Add({field.name, TypeName(field.type), FieldCell(field, defaults), field.meaning});
  }
  return report;
}

int Info(const InfoOptions& options) {
  if (options.model.IsEmpty() == options.fields.empty()) {
    throw Failure(kExitUsage, "info takes either a MODEL or --fields TABLE");
  }
  if (!options.fields.empty()) {
    WriteReport(FieldReport(NamedTable(options.fields)), options.format);
    return kExitGood;
  }
  ImportReport import;
  DTSDB database = ReadModel(options.model, &import);
  Report report = ModelInfo(options.model, database);
  if (!import.files.empty()) AddImportSheets(report, import);
  WriteReport(report, options.format, options.sheet);
  return kExitGood;
}

}  // namespace

void AddInfo(CommandLine& app, Action& action) {
  AddCommand<InfoOptions>(
      app, action, "info", "Print what a model contains, or what the fields of a table mean",
      [](CommandLine& command, InfoOptions& options) {
        AddModelArgument(command, options.model);
        AddImportOptions(command, options.model);
        command.Add("--fields", options.fields, "Describe the fields of this table").Shown("TABLE");
        AddSheetOption(command, options.sheet,
                       "tables; of CGMES profiles and XIIDM files also files, classes, left_out, changed, unknown");
        AddFormatOption(command, options.format);
        command.Footer(kInfoFooter);
        AddExitCodes(command, "the model is described");
      },
      Info);
}

}  // namespace dtsdb::tools
