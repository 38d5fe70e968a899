#include "rtdb/internal/schema.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <set>
#include <sstream>

namespace dtsdb::internal::rtdb {
namespace {

/// By dbField::FieldTypes.
constexpr std::array<const char*, 12> kTypeNames = {"bool", "int1", "nat1",  "int2",  "nat2", "int4",
                                                    "nat4", "int8", "real4", "real8", "text", "raw"};

constexpr std::string_view kChanges = "changes ";

std::optional<dbField::FieldTypes> TypeOf(std::string_view name) {
  const auto found = std::find(kTypeNames.begin(), kTypeNames.end(), name);
  if (found == kTypeNames.end()) return std::nullopt;
  return static_cast<dbField::FieldTypes>(found - kTypeNames.begin());
}

std::vector<std::string_view> Split(std::string_view text, char separator) {
  std::vector<std::string_view> parts;
  while (!text.empty()) {
    const auto end = std::min(text.find(separator), text.size());
    if (end > 0) parts.push_back(text.substr(0, end));
    text.remove_prefix(std::min(end + 1, text.size()));
  }
  return parts;
}

bool ReadNumber(std::string_view text, std::uint32_t& number) {
  const auto result = std::from_chars(text.data(), text.data() + text.size(), number);
  return result.ec == std::errc() && result.ptr == text.data() + text.size();
}

std::optional<Column> ColumnFromLine(std::string_view line, std::uint32_t newest) {
  const auto words = Split(line, ' ');
  if (words.size() < 4 || words.size() > 5) return std::nullopt;
  const auto type = TypeOf(words[1]);
  Column column;
  if (!type || !ReadNumber(words[2], column.rawSize) || !ReadNumber(words[3], column.since)) return std::nullopt;
  // A gigabyte is far beyond any class, and keeps sums of sizes within their types.
  if (column.since < 1 || column.since > newest || column.rawSize > 1U << 30) return std::nullopt;
  if (words.size() == 5 && words[4] != "key") return std::nullopt;
  column.name = words[0];
  column.type = *type;
  column.key = words.size() == 5;
  return column;
}

Column ColumnOf(const dbFieldDescriptor& field) {
  const bool raw = field.type == dbField::tpRawBinary;
  return {field.name, field.type, raw ? static_cast<std::uint32_t>(field.appSize) : 0, 1, field.indexType != 0};
}

std::string Words(const Column& column) {
  std::string words = kTypeNames[column.type];
  if (column.type == dbField::tpRawBinary) words += " of " + std::to_string(column.rawSize) + " bytes";
  return words + (column.key ? ", key" : "");
}

const Column* Find(const std::vector<Column>& columns, const std::string& name) {
  const auto found = std::find_if(columns.begin(), columns.end(), [&](const Column& c) { return c.name == name; });
  return found == columns.end() ? nullptr : &*found;
}

std::vector<std::string> KeyNames(const std::vector<Column>& columns) {
  std::vector<std::string> names;
  for (const Column& column : columns) {
    if (column.key) names.push_back(column.name);
  }
  return names;
}

}  // namespace

std::string Schema::ToText() const {
  std::ostringstream text;
  text << "table " << layout << '\n';
  if (longKeys) text << "long-keys\n";
  if (changePlace) text << kChanges << *changePlace << '\n';
  for (const Column& column : columns) {
    text << column.name << ' ' << kTypeNames[column.type] << ' ' << column.rawSize << ' ' << column.since
         << (column.key ? " key" : "") << '\n';
  }
  return text.str();
}

std::optional<Schema> Schema::FromText(std::string_view text) {
  auto lines = Split(text, '\n');
  Schema schema;
  if (lines.empty() || !lines[0].starts_with("table ") || !ReadNumber(lines[0].substr(6), schema.layout)) {
    return std::nullopt;
  }
  for (auto line = lines.begin() + 1; line != lines.end(); ++line) {
    if (*line == "long-keys") {
      schema.longKeys = true;
      continue;
    }
    if (line->starts_with(kChanges) && std::count(line->begin(), line->end(), ' ') == 1) {
      schema.changePlace.emplace();
      if (!ReadNumber(line->substr(kChanges.size()), *schema.changePlace)) return std::nullopt;
      if (*schema.changePlace >= Schema::kMostPlaces) return std::nullopt;
      continue;
    }
    auto column = ColumnFromLine(*line, schema.layout);
    if (!column || Find(schema.columns, column->name) != nullptr) return std::nullopt;
    if (!schema.columns.empty() && column->since < schema.columns.back().since) return std::nullopt;
    schema.columns.push_back(std::move(*column));
  }
  // Each layout after the first has brought at least one column.
  if (schema.layout < 1 || schema.layout > schema.columns.size() + 1) return std::nullopt;
  return schema;
}

Schema SchemaOf(const dbTableDescriptor& table) {
  Schema schema;
  for (const dbFieldDescriptor& field : table.getFields()) schema.columns.push_back(ColumnOf(field));
  return schema;
}

std::string Adopt(Schema& stored, const dbTableDescriptor& table, bool& grown) {
  grown = false;
  const std::string where = std::string("table ") + table.getName();
  std::set<std::string> names;
  std::vector<Column> added;
  const Schema wanted = SchemaOf(table);
  for (const Column& column : wanted.columns) {
    if (!names.insert(column.name).second) return where + ": the program names column " + column.name + " twice";
    const Column* old = Find(stored.columns, column.name);
    if (old == nullptr) {
      if (column.key)
        return where + ": column " + column.name + " is new and a key, which an existing table can't take";
      added.push_back(column);
    } else if (old->type != column.type || old->rawSize != column.rawSize || old->key != column.key) {
      return where + ": column " + column.name + " is " + Words(*old) + " in the store and " + Words(column) +
             " in this program";
    }
  }
  for (const Column& column : stored.columns) {
    if (!names.contains(column.name)) {
      return where + " was written by a newer layout: it has a column " + column.name + " that this program lacks";
    }
  }
  if (KeyNames(stored.columns) != KeyNames(wanted.columns)) return where + ": the key columns stand in another order";
  if (added.empty()) return {};
  grown = true;
  ++stored.layout;
  for (Column& column : added) {
    column.since = stored.layout;
    stored.columns.push_back(std::move(column));
  }
  return {};
}

}  // namespace dtsdb::internal::rtdb
