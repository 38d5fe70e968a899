#include "page/documents.h"

#include <algorithm>
#include <string_view>
#include <utility>

#include "analysis/effect.h"
#include "formats/catalog.h"
#include "formats/field_text.h"
#include "formats/json_text.h"
#include "formats/nearest.h"
#include "model/any_table.h"
#include "page/internal/differences.h"
#include "page/internal/grid_state.h"
#include "page/internal/json.h"
#include "page/internal/search.h"
#include "page/internal/state_document.h"
#include "page/internal/station_document.h"

namespace dtsdb::page {
namespace {

using analysis::Error;
using analysis::ErrorCode;
using internal::GridState;
using internal::Json;

Json FieldsJson(const TableInfo& table) {
  Json fields = Json::array();
  for (const FieldInfo& field : table.fields()) {
    Json json = {{"name", field.name}, {"type", TypeName(field.type)}, {"unit", field.unit}};
    json["meaning"] = field.meaning;
    json["writers"] = field.writers;
    if (field.refers != KIND_NONE) json["refers"] = TableName(field.refers);
    fields.push_back(std::move(json));
  }
  return fields;
}

/// True for the time of a run: the documents on a model don't depend on when they were made.
bool IsTime(const TableInfo& table, const FieldInfo& field) {
  return table.kind == KIND_GLOBAL && std::string_view(field.unit) == "s";
}

/// The values of one field, as the text of a JSON array.
std::string ColumnText(const AnyTable& table, const FieldInfo& field) {
  const bool isLeftOut = IsTime(table.Info(), field);
  std::string text = "[";
  for (int i = 0; i < table.GetCount(); ++i) {
    if (i > 0) text += ',';
    text += isLeftOut ? "null" : tools::JsonCell(tools::FieldCell(field, table[i]));
  }
  return text + "]";
}

Error UnknownTable(const std::string& name) {
  const std::vector<std::string> known = tools::TableNames();
  return {ErrorCode::kUsage, "there is no table " + tools::Quoted(name) + tools::DidYouMean(name, known), name};
}

}  // namespace

struct Documents::Content : GridState {
  using GridState::GridState;
};

Documents::Documents(std::unique_ptr<Content> content) : m_content(std::move(content)) {}
Documents::Documents(Documents&&) noexcept = default;
Documents& Documents::operator=(Documents&&) noexcept = default;
Documents::~Documents() = default;

Documents::Documents(const analysis::Model& model, const analysis::Validation& validation, Subject subject, int version)
    : m_content(std::make_unique<Content>(internal::ReadGrid(model, validation, std::move(subject)), model, version)) {}

Documents Documents::Later(const analysis::Model& model, int version) const {
  return Documents(std::make_unique<Content>(m_content->grid, model, version));
}

Documents Documents::Tried(const analysis::Model& model) const {
  auto content = std::make_unique<Content>(m_content->grid, model, m_content->version);
  if (m_content->hasTopology && content->hasTopology) content->changed = internal::ChangedRecords(*m_content, *content);
  return Documents(std::move(content));
}

int Documents::Version() const { return m_content->version; }

bool Documents::HasPictures() const { return m_content->hasTopology; }

std::vector<std::string> Documents::Stations() const {
  tTable<ST>& table = *m_content->model.Tables().m_stTable;
  std::vector<std::string> stations;
  stations.reserve(static_cast<std::size_t>(table.GetCount()));
  for (int i = 0; i < table.GetCount(); ++i) stations.push_back(tools::IdText(table[i].id));
  return stations;
}

std::string Documents::Model() const {
  const Subject& subject = m_content->grid->subject;
  Json tables = Json::array();
  for (const AnyTable& table : AllTables(m_content->model.Tables())) {
    tables.push_back({{"name", table.Info().name},
                      {"title", table.Info().meaning},
                      {"rows", table.GetCount()},
                      {"fields", FieldsJson(table.Info())}});
  }
  return internal::TextOf({{"format", 1},
                           {"program", "dtsdb " DTSDB_VERSION},
                           {"name", subject.name},
                           {"source", subject.source},
                           {"live", subject.live},
                           {"version", m_content->version},
                           {"summary", internal::SummaryJson(*m_content)},
                           {"tables", std::move(tables)}});
}

analysis::Result<std::string> Documents::Table(const std::string& name) const {
  const TableKind kind = tools::FindTable(name);
  if (kind == KIND_NONE) return tl::unexpected(UnknownTable(name));
  const AnyTable table = TableOfKind(m_content->model.Tables(), kind);
  std::string columns;
  for (const FieldInfo& field : table.Info().fields()) {
    if (!columns.empty()) columns += ',';
    columns += ColumnText(table, field);
  }
  return "{\"version\":" + std::to_string(m_content->version) + ",\"name\":" + tools::JsonText(name) +
         ",\"columns\":[" + columns + "]}";
}

std::string Documents::State() const { return internal::TextOf(internal::StateJson(*m_content)); }

std::string Documents::Findings() const { return internal::TextOf(internal::FindingsJson(*m_content->grid)); }

std::string Documents::Grid() const { return internal::TextOf(internal::MapJson(*m_content)); }

analysis::Result<std::string> Documents::Station(const std::string& id) const {
  if (!m_content->hasTopology) {
    return tl::unexpected(Error{ErrorCode::kNoTopology, "the model has no topology, so no station can be drawn", id});
  }
  const QString raw = tools::IdFromUtf8(id).value_or(QString());
  const analysis::Result<Json> station = internal::StationJson(*m_content, raw);
  if (!station) return tl::unexpected(station.error());
  return internal::TextOf(*station);
}

std::string Documents::StationSvg(const std::string& id) const {
  const QString raw = tools::IdFromUtf8(id).value_or(QString());
  if (!m_content->hasTopology) return "\"\"";
  const analysis::Result<Json> station = internal::StationJson(*m_content, raw);
  return station ? internal::TextOf((*station)["svg"]) : "\"\"";
}

std::string Documents::Search(const std::string& text) const {
  Json matches = Json::array();
  for (const Thing& thing : internal::FindLike(m_content->grid->records, text)) {
    matches.push_back(internal::ToJson(thing));
  }
  return internal::TextOf({{"matches", std::move(matches)}});
}

std::string Documents::Records() const {
  Json records = Json::array();
  for (const auto& [table, id, station] : m_content->grid->records) records.push_back({table, id, station});
  return internal::TextOf(records);
}

Changes Documents::ChangesSince(const Documents& before) const {
  return internal::ChangesBetween(*before.m_content, *m_content);
}

std::string ToJson(const Changes& changes) {
  const auto things = [](const std::vector<Thing>& all) {
    Json json = Json::array();
    for (const Thing& thing : all) json.push_back(internal::ToJson(thing));
    return json;
  };
  return internal::TextOf({{"becameDead", things(changes.becameDead)},
                           {"becameLive", things(changes.becameLive)},
                           {"islandsBefore", changes.islandsBefore},
                           {"islandsAfter", changes.islandsAfter},
                           {"lostLoad", internal::PowerJson(changes.lostLoad)},
                           {"stations", changes.stations}});
}

}  // namespace dtsdb::page
