#include "formats/import_ids.h"

#include <fmt/format.h>

#include <algorithm>
#include <filesystem>
#include <system_error>

#include "formats/catalog.h"
#include "formats/csv.h"
#include "formats/failure.h"
#include "formats/files.h"
#include "formats/nearest.h"
#include "formats/text_layout.h"

namespace dtsdb::tools {
namespace {

const ImportReport::Identity kHeader = {"table", "identity", "mrid", "name"};

void AppendRow(std::string& text, const ImportReport::Identity& row) {
  AppendCsvField(text, row.table, true);
  AppendCsvField(text, GuardedText(row.identity), false);
  AppendCsvField(text, GuardedText(row.mrid), false);
  AppendCsvField(text, GuardedText(row.name), false);
  text += "\r\n";
}

/// The row of a line. Throws CsvError for one that has another number of fields.
ImportReport::Identity RowOf(const CsvRow& row) {
  if (row.fields.size() != 4) throw CsvError(row.line, 0, "a line has the four fields table, identity, mrid and name");
  const auto text = [&row](std::size_t field) { return UnguardedText(row.fields[field].value_or("")); };
  return {text(0), text(1), text(2), text(3)};
}

bool IsHeader(const ImportReport::Identity& row) {
  return row.table == kHeader.table && row.identity == kHeader.identity && row.mrid == kHeader.mrid &&
         row.name == kHeader.name;
}

/// Sorts a row into its list. Throws CsvError for one that belongs to nothing.
void Take(ImportReport::Identity row, int line, ImportReport& report) {
  if (row.mrid.empty()) throw CsvError(line, 2, "the mrid is missing");
  const auto& parts = part_of::kAll;
  const bool isPart = std::find(std::begin(parts), std::end(parts), row.table) != std::end(parts);
  if (!isPart && FindTable(row.table) == KIND_NONE) {
    throw CsvError(
        line, 0, fmt::format("there is no table {}{}", Quoted(row.table), DidYouMean(row.table, TableNames())).c_str());
  }
  (isPart ? report.parts : report.identities).push_back(std::move(row));
}

}  // namespace

std::string IdsPath(const ModelName& model) {
  std::string path = model.Path();
  while (path.size() > 1 && path.ends_with('/')) path.pop_back();
  return path + ".ids.csv";
}

void WriteIds(const ImportReport& report, const ModelName& model) {
  if (report.identities.empty()) return;
  std::string text;
  AppendRow(text, kHeader);
  for (const auto* const rows : {&report.identities, &report.parts}) {
    for (const ImportReport::Identity& row : *rows) AppendRow(text, row);
  }
  WriteFile(IdsPath(model), text);
}

void CopyIds(const ModelName& from, const ModelName& to) {
  const std::string source = IdsPath(from);
  std::error_code ignored;
  if (source == IdsPath(to) || !std::filesystem::exists(source, ignored)) return;
  WriteFile(IdsPath(to), ReadFile(source));
}

ImportReport ReadIds(const ModelName& model) {
  ImportReport report;
  const std::string path = IdsPath(model);
  std::error_code error;
  if (!std::filesystem::exists(path, error)) return report;
  bool hasHeader = false;
  try {
    ReadCsv(WithoutByteOrderMark(ReadFile(path)), [&](const CsvRow& line) {
      ImportReport::Identity row = RowOf(line);
      if (hasHeader) return Take(std::move(row), line.line, report);
      if (!IsHeader(row)) throw CsvError(line.line, 0, "the header isn't table,identity,mrid,name");
      hasHeader = true;
    });
  } catch (const CsvError& fault) {
    throw Failure(kExitFile, fmt::format("{}, line {}: {}", path, fault.Line(), fault.what()));
  }
  return report;
}

StationPositions PositionsBeside(const ModelName& model) {
  try {
    return PositionsOf(ReadIds(model));
  } catch (const Failure&) {
    return {};  // a model is whole without them
  }
}

}  // namespace dtsdb::tools
