#include "page/internal/grid_state.h"

#include <algorithm>
#include <string_view>

#include "analysis/flows.h"
#include "formats/catalog.h"
#include "formats/field_text.h"
#include "formats/record_places.h"
#include "model/any_table.h"

namespace dtsdb::page::internal {
namespace {

using tools::IdText;

// Tables in the order in which a search shows them. Those that aren't here come after them.
constexpr std::string_view kAskedForFirst[] = {"ST", "KV",  "CB",  "LN", "XF", "UN", "LD",     "BUS",
                                               "CP", "DLN", "ZBR", "ND", "DV", "CO", "ANALOG", "STATUS"};

/// The tables whose records people know by a name: no relation rows, no ends of branches, no results.
std::vector<AnyTable> NamedTables(DTSDB& tables) {
  std::vector<AnyTable> named;
  for (const std::string_view name : kAskedForFirst) {
    named.push_back(TableOfKind(tables, tools::FindTable(std::string(name))));
  }
  return named;
}

void AddFinding(Grid& grid, DTSDB& tables, const Finding& finding) {
  if (finding.severity == Severity::kNotice) return;
  const MessageInfo* const message = FindMessage(finding.code);
  const Language language = grid.subject.language;
  PageFinding added;
  added.code = finding.code;
  added.severity = finding.severity == Severity::kError ? "error" : "warning";
  added.field = finding.field != nullptr ? finding.field : "";
  added.text = message != nullptr ? TextOf(finding, language).trimmed().toStdString() : finding.text.toStdString();
  if (message != nullptr && message->Remedy(language) != nullptr) added.remedy = message->Remedy(language);
  added.thing = {TableName(finding.table), IdText(finding.id), ""};
  added.thing.station = StationOf(tables, added.thing.table, added.thing.id);
  grid.findingsOf[{added.thing.table, added.thing.id}].push_back(static_cast<int>(grid.findings.size()));
  grid.findings.push_back(std::move(added));
}

}  // namespace

std::shared_ptr<const Grid> ReadGrid(const analysis::Model& model, const analysis::Validation& validation,
                                     Subject subject) {
  DTSDB& tables = model.Tables();
  const auto grid = std::make_shared<Grid>();
  grid->subject = std::move(subject);
  if (!model.Positions().empty()) grid->subject.positions = model.Positions();
  grid->good = validation.good;
  grid->errors = validation.errors;
  grid->warnings = validation.warnings;
  for (const Severity severity : {Severity::kError, Severity::kWarning}) {
    for (const Finding& finding : validation.findings) {
      if (finding.severity == severity) AddFinding(*grid, tables, finding);
    }
  }
  for (const AnyTable& table : NamedTables(tables)) {
    const FieldInfo& id = table.Info().fields().front();
    for (int i = 0; i < table.GetCount(); ++i) {
      grid->records.push_back(
          {table.Info().name, IdText(id.In<QString>(table[i])), StationOf(tables, table.Info().kind, table[i])});
    }
  }
  return grid;
}

GridState::GridState(std::shared_ptr<const Grid> shared, const analysis::Model& ofState, int number)
    : grid(std::move(shared)), model(ofState), version(number), hasTopology(analysis::HasTopology(model)) {
  if (!hasTopology) return;
  topology = analysis::DescribeTopology(model.Tables());
  if (auto found = analysis::WorkOutFlows(model)) flows = std::move(*found);
  stations = std::make_unique<pictures::StationReader>(model.Tables(), &flows);
}

int IslandOf(DTSDB& tables, int nd) {
  if (nd < 0 || nd >= tables.m_ndTable->GetSize()) return -1;
  const int section = tables.m_ndTable->GetPh(nd).ibs;
  if (section <= 0 || section >= tables.m_bsTable->GetSize()) return -1;
  return std::max(tables.m_bsTable->GetPh(section).island, -1);
}

std::string StationOf(DTSDB& tables, TableKind kind, const void* record) {
  const std::vector<QString> stations = tools::PlacesOf(tables, kind, record).stations;
  return stations.empty() ? "" : IdText(stations.front());
}

std::string StationOf(DTSDB& tables, const std::string& table, const std::string& id) {
  const std::optional<QString> raw = tools::IdFromUtf8(id);
  std::string station;
  if (!raw) return station;
  ForEachRecordClass([&]<class T> {
    if (table != T::kTableName) return;
    if constexpr (std::is_constructible_v<T, QString>) {
      const int number = TableOf<T>(tables).Find(T(*raw));
      if (number >= 0) station = StationOf(tables, T::kKind, &TableOf<T>(tables).GetPh(number));
    }
  });
  return station;
}

}  // namespace dtsdb::page::internal
