#include "relay/table_image.h"

#include <algorithm>

#include "relay/row_cursor.h"

namespace dtsdb::relay {
namespace {

/// The order of the keys, which the store walks over without noting the rows first.
std::string KeyOrder(const dbTableDescriptor& table) {
  std::string order;
  for (const dbFieldDescriptor& column : table.getFields()) {
    if (column.indexType != 0) order += (order.empty() ? "order by " : ", ") + column.name;
  }
  return order;
}

/// Finds what differs between two images of one table.
class Comparison {
 public:
  Comparison(const RowLayout& layout, StateHash& hash, std::vector<std::string>& keys, TableChange& change)
      : m_layout(layout), m_hash(hash), m_keys(keys), m_change(change), m_record(layout.RecordSize()) {}

  void Remove(oid_t number, std::string_view bytes) {
    m_hash -= HashOf(m_layout.Table(), number, bytes);
    NoteRemoved(number, KeyOf(bytes));
  }
  void Insert(oid_t number, std::string_view bytes) {
    m_hash += HashOf(m_layout.Table(), number, bytes);
    m_change.inserted.push_back({number, bytes});
  }
  void Change(oid_t number, std::string_view before, std::string_view after) {
    if (before == after) return;
    m_hash -= HashOf(m_layout.Table(), number, before);
    m_hash += HashOf(m_layout.Table(), number, after);
    std::string key = KeyOf(before);
    if (key == KeyOf(after)) {
      m_change.updated.push_back({number, after});
      return;
    }
    NoteRemoved(number, std::move(key));
    m_change.inserted.push_back({number, after});
  }

 private:
  void NoteRemoved(oid_t number, std::string key) {
    m_change.removed.push_back({number, {}});
    m_keys.push_back(std::move(key));
  }
  std::string KeyOf(std::string_view bytes) {
    std::string key;
    if (m_layout.Decode(bytes, m_record.Get())) m_layout.EncodeKey(m_record.Get(), key);
    return key;
  }

  const RowLayout& m_layout;
  StateHash& m_hash;
  std::vector<std::string>& m_keys;
  TableChange& m_change;
  RecordRoom m_record;
};

}  // namespace

TableImage TableImage::Read(dbDatabase& database, dbTableDescriptor& table, const RowLayout& layout) {
  TableImage image;
  RowCursor cursor(table, &database, dbCursorViewOnly, layout);
  const std::string order = KeyOrder(table);
  const int count = order.empty() ? cursor.select() : cursor.select(order.c_str());
  image.m_rows.reserve(static_cast<std::size_t>(std::max(0, count)));
  for (bool isOnRow = cursor.IsOnRow(); isOnRow; isOnRow = cursor.Next()) {
    const std::size_t offset = image.m_bytes.size();
    layout.Encode(cursor.Record(), image.m_bytes);
    image.m_rows.push_back({cursor.Number(), offset, image.m_bytes.size() - offset});
  }
  const auto isBelow = [](const Row& a, const Row& b) { return a.number < b.number; };
  if (!std::is_sorted(image.m_rows.begin(), image.m_rows.end(), isBelow)) {
    std::sort(image.m_rows.begin(), image.m_rows.end(), isBelow);
  }
  return image;
}

StateHash TableImage::Hash(const RowLayout& layout) const {
  StateHash hash;
  for (std::size_t i = 0; i < Size(); ++i) hash += HashOf(layout.Table(), NumberAt(i), BytesAt(i));
  return hash;
}

TableChange Difference(const TableImage& before, const TableImage& after, const RowLayout& layout, StateHash& hash,
                       std::vector<std::string>& keys) {
  TableChange change;
  change.table = layout.Table();
  change.fingerprint = layout.Fingerprint();
  keys.clear();
  Comparison comparison(layout, hash, keys, change);
  std::size_t a = 0;
  std::size_t b = 0;
  while (a < before.Size() || b < after.Size()) {
    const bool hasBoth = a < before.Size() && b < after.Size();
    if (b == after.Size() || (hasBoth && before.NumberAt(a) < after.NumberAt(b))) {
      comparison.Remove(before.NumberAt(a), before.BytesAt(a));
      ++a;
    } else if (a == before.Size() || after.NumberAt(b) < before.NumberAt(a)) {
      comparison.Insert(after.NumberAt(b), after.BytesAt(b));
      ++b;
    } else {
      comparison.Change(after.NumberAt(b), before.BytesAt(a), after.BytesAt(b));
      ++a;
      ++b;
    }
  }
  for (std::size_t i = 0; i < keys.size(); ++i) change.removed[i].bytes = keys[i];
  return change;
}

}  // namespace dtsdb::relay
