/// \file
/// Row images: how a row's columns lie in the store.
///
/// An image reaches the disk: the layout's number (4 bytes), the layout's columns packed one behind the other in the
/// schema's order, then the texts, each with its zero byte. A text's place among the columns holds its offset from the
/// image's start (4 bytes). Empty texts share the image's last zero byte. Numbers have the machine's byte order.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "rtdb/internal/schema.h"

namespace dtsdb::internal::rtdb {

/// The value of a column or of a query's operand. A text is not owned.
struct Value {
  enum Kind { kInteger, kReal, kText };
  Kind kind = kInteger;
  std::int64_t integer = 0;
  double real = 0;
  std::string_view text;

  double AsReal() const { return kind == kReal ? real : static_cast<double>(integer); }
};

/// The value of a number in the machine's own bytes.
Value NumberValue(dbField::FieldTypes type, const void* bytes);
/// The number of bytes of a number.
std::size_t NumberSize(dbField::FieldTypes type);

/// How a program's class and a table's rows correspond. Never changes once made.
class RowPlan {
 public:
  /// The schema must hold exactly the descriptor's columns.
  RowPlan(Schema schema, const dbTableDescriptor& table);

  const Schema& TableSchema() const { return m_schema; }
  /// Where in the schema the key columns stand, in key order.
  const std::vector<std::size_t>& KeyColumns() const { return m_keys; }
  /// Where in the schema a column stands, or -1.
  int FindColumn(std::string_view name) const;

  /// The record's row image in the newest layout.
  void Encode(const void* record, std::string& image) const;
  /// The record's key without row number. True if it had to be shortened.
  bool Key(const void* record, std::string& key) const;

  /// Whether an image can be read: its layout is known and every offset lies within it.
  bool IsSound(std::string_view image) const;
  /// Fills the record from a sound image, which must outlive the record's texts. Columns that the image's layout lacks
  /// become 0 or empty.
  void Decode(std::string_view image, void* record) const;
  /// Lets the record's texts that lie in the image `from` lie in its copy `to`.
  void MoveTexts(std::string_view from, std::string_view to, void* record) const;
  /// One column of a sound image. Raw bytes have no value.
  Value ReadColumn(std::string_view image, std::size_t column) const;

 private:
  /// Columns that lie side by side in the class and in the image.
  struct Run {
    std::size_t image;
    std::size_t record;
    std::size_t size;
  };
  struct Place {
    std::size_t image;
    std::size_t record;
  };

  void CopyText(std::string_view image, const Place& text, void* record) const;
  void DecodeOldLayout(std::string_view image, std::uint32_t layout, void* record) const;

  Schema m_schema;
  std::vector<Place> m_places;            ///< by column
  std::vector<std::size_t> m_fixedSizes;  ///< by layout: where its texts begin
  std::vector<std::size_t> m_textCounts;  ///< by layout
  std::vector<std::size_t> m_keys;
  std::vector<Run> m_runs;
  std::vector<Place> m_bools;  ///< apart from the runs, since only 0 and 1 may reach a bool
  std::vector<Place> m_texts;
};

}  // namespace dtsdb::internal::rtdb
