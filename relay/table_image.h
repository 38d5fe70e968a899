/// \file
/// The rows of a table at one moment, as bytes, and what has become of them since.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "relay/commit.h"
#include "relay/row_layout.h"
#include "relay/state_hash.h"

namespace dtsdb::relay {

class TableImage {
 public:
  TableImage() = default;

  /// Reads all rows in the thread's transaction. What goes wrong is reported to the database.
  static TableImage Read(dbDatabase& database, dbTableDescriptor& table, const RowLayout& layout);

  std::size_t Size() const { return m_rows.size(); }
  oid_t NumberAt(std::size_t i) const { return m_rows[i].number; }
  std::string_view BytesAt(std::size_t i) const { return {m_bytes.data() + m_rows[i].offset, m_rows[i].size}; }
  std::size_t ByteCount() const { return m_bytes.size(); }
  /// Of all rows together.
  StateHash Hash(const RowLayout& layout) const;

 private:
  struct Row {
    oid_t number;
    std::size_t offset;
    std::size_t size;
  };

  std::vector<Row> m_rows;  // by rising number
  std::string m_bytes;
};

/// What leads from one image of a table to another. Its rows are views into the images, its texts into `keys`, which
/// gets the keys of removed rows. `hash` is that of the first image at first, then of the second.
TableChange Difference(const TableImage& before, const TableImage& after, const RowLayout& layout, StateHash& hash,
                       std::vector<std::string>& keys);

}  // namespace dtsdb::relay
