/// \file
/// One text table: a CSV file's bytes from and to the records of a table.
#pragma once

#include <algorithm>
#include <functional>
#include <numeric>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "include/template.h"
#include "model/records.h"
#include "tools/csv.h"
#include "tools/field_text.h"

namespace dtsdb::tools {

/// Ends the reading of the file `file`: `what` is wrong in row `line` (0: in the file as a whole), column `column`
/// (empty: in the row as a whole).
[[noreturn]] void RefuseText(const std::string& file, int line, const std::string& column, const std::string& what);

/// The identity that UTF-8 `bytes` stand for, into `id`. Gives an empty text, or what is wrong.
std::string ParseIdentity(const std::string& bytes, QString& id);

/// Reads the value of a field; nothing and, for a number, an empty text leave the default.
template <class V>
std::string ParseField(const CsvField& text, V& value) {
  if (!text) return "";
  if constexpr (std::is_same_v<V, QString>) {
    return ParseIdentity(*text, value);
  } else {
    return text->empty() ? "" : ParseNumber(*text, value);
  }
}

/// The places of the two equal among `n` records, `at(i)` giving each, of which the second comes first; nothing
/// when no two are equal.
template <class At>
std::optional<std::pair<std::size_t, std::size_t>> FirstDuplicate(std::size_t n, const At& at) {
  bool ascending = true;
  for (std::size_t i = 1; i < n && ascending; ++i) ascending = at(i - 1) < at(i);
  if (ascending) return std::nullopt;
  std::vector<std::size_t> order(n);
  std::iota(order.begin(), order.end(), std::size_t{0});
  std::stable_sort(order.begin(), order.end(), [&at](std::size_t a, std::size_t b) { return at(a) < at(b); });
  std::optional<std::pair<std::size_t, std::size_t>> found;
  for (std::size_t i = 1; i < n; ++i) {
    if (at(order[i - 1]) < at(order[i])) continue;
    if (!found || order[i] < found->second) found.emplace(order[i - 1], order[i]);
  }
  return found;
}

/// How one field of `T` is read from text and written as text.
template <class T>
struct TextColumn {
  std::string name;
  std::function<std::string(T&, const CsvField&)> parse;  ///< gives an empty text, or what is wrong
};

template <class T>
std::vector<TextColumn<T>> TextColumns() {
  std::vector<TextColumn<T>> columns;
  T::ForEachField([&columns](const auto& field) {
    const auto member = field.member;
    columns.push_back(
        {field.name, [member](T& record, const CsvField& text) { return ParseField(text, record.*member); }});
  });
  return columns;
}

/// Finds the columns that a header names, in its order: places in `known`.
std::vector<std::size_t> ReadHeader(const std::string& file, const CsvRow& header,
                                    const std::vector<std::string>& known);

/// Refuses a row that has more or fewer fields than the header.
void CheckFieldCount(const std::string& file, const CsvRow& row, const std::vector<std::string>& header);

/// Calls `visit` with the rows of `bytes`, an error in the CSV itself being told with the column of `header`, which
/// `visit` may fill.
void ReadRows(const std::string& file, std::string_view bytes, const std::vector<std::string>& header,
              const std::function<void(const CsvRow&)>& visit);

/// Reads the text table `bytes`, from the file called `file` in messages, into `table`.
template <class T>
void ReadTextTable(const std::string& file, std::string_view bytes, tTable<T>& table) {
  const std::vector<TextColumn<T>> known = TextColumns<T>();
  std::vector<std::string> knownNames;
  knownNames.reserve(known.size());
  for (const TextColumn<T>& column : known) knownNames.push_back(column.name);

  std::vector<std::size_t> columns;  // places in `known`, in the order of the header
  std::vector<std::string> header;
  std::vector<T> records;
  std::vector<int> lines;
  ReadRows(file, bytes, header, [&](const CsvRow& row) {
    if (columns.empty()) {
      columns = ReadHeader(file, row, knownNames);
      for (const std::size_t column : columns) header.push_back(knownNames[column]);
      return;
    }
    CheckFieldCount(file, row, header);
    T& record = records.emplace_back();
    lines.push_back(row.line);
    for (std::size_t i = 0; i < columns.size(); ++i) {
      const std::string wrong = known[columns[i]].parse(record, row.fields[i]);
      if (!wrong.empty()) RefuseText(file, row.line, header[i], wrong);
    }
  });
  if (columns.empty()) RefuseText(file, 0, "", "the header with the names of the columns is missing");

  const auto twice = FirstDuplicate(records.size(), [&records](std::size_t i) -> const T& { return records[i]; });
  if (twice) {
    RefuseText(
        file, lines[twice->second], KeyFieldName<T>(),
        fmt::format("{} stands already in row {}", Quoted(KeyText(records[twice->second])), lines[twice->first]));
  }
  if (!records.empty()) table.SetData(records.data(), static_cast<int>(records.size()), false);
}

/// A field's value as it is written. Gives nothing in `text` for a null text. False when GBK doesn't hold the bytes.
template <class V>
bool WriteField(const V& value, CsvField& text) {
  text.reset();
  if constexpr (std::is_same_v<V, QString>) {
    if (value.isNull()) return true;
    const std::optional<QString> real = ExactTextFromId(value);
    if (!real) return false;
    text = real->toStdString();
  } else {
    text = NumberText(value);
  }
  return true;
}

/// Ends the writing of table `table`: `what` is wrong in its record `row`, counted from 0 in key order.
[[noreturn]] void RefuseRecord(const char* table, int row, const std::string& field, const std::string& what);

/// The text table with the records of `table`, all fields in their order, in the order of the keys.
template <class T>
std::string TextTable(tTable<T>& table) {
  const auto twice = FirstDuplicate(static_cast<std::size_t>(table.GetCount()),
                                    [&table](std::size_t i) -> const T& { return table[static_cast<int>(i)]; });
  if (twice) {
    const int row = static_cast<int>(twice->second);
    RefuseRecord(T::kTableName, row, KeyFieldName<T>(), Quoted(KeyText(table[row])) + " stands twice in the table");
  }
  std::string text;
  bool first = true;
  T::ForEachField([&](const auto& field) {
    AppendCsvField(text, field.name, first);
    first = false;
  });
  text += "\r\n";
  CsvField written;
  for (int row = 0; row < table.GetCount(); ++row) {
    const T& record = table[row];
    first = true;
    T::ForEachField([&](const auto& field) {
      if (!WriteField(record.*field.member, written)) {
        RefuseRecord(T::kTableName, row, field.name, "the bytes of the text are no valid GBK");
      }
      AppendCsvField(text, written, first);
      first = false;
    });
    text += "\r\n";
  }
  return text;
}

}  // namespace dtsdb::tools
