#include "relay/commit.h"

#include <algorithm>
#include <limits>

#include "relay/bytes.h"

namespace dtsdb::relay {
namespace {

/// The fewest bytes of a row: its number and a length.
constexpr std::size_t kLeastRow = 12;

void EncodeRows(const std::vector<ChangedRow>& rows, ByteWriter& writer) {
  writer.Put(static_cast<std::uint32_t>(rows.size()));
  for (const ChangedRow& row : rows) {
    writer.Put(std::uint64_t{row.number});
    writer.PutCounted<std::uint32_t>(row.bytes);
  }
}

bool DecodeRows(ByteReader& reader, std::vector<ChangedRow>& rows) {
  const auto count = reader.Get<std::uint32_t>();
  if (count > reader.Left() / kLeastRow) return false;
  rows.reserve(count);
  oid_t before = 0;
  for (std::uint32_t i = 0; i < count; ++i) {
    ChangedRow row;
    row.number = reader.Get<std::uint64_t>();
    row.bytes = reader.GetCounted<std::uint32_t>();
    if (!reader.IsGood() || row.number <= before || row.number == std::numeric_limits<oid_t>::max()) return false;
    before = row.number;
    rows.push_back(row);
  }
  return true;
}

bool DecodeTable(ByteReader& reader, TableChange& table) {
  table.table = reader.GetCounted<std::uint8_t>();
  table.fingerprint = reader.Get<std::uint64_t>();
  return !table.table.empty() && DecodeRows(reader, table.removed) && DecodeRows(reader, table.updated) &&
         DecodeRows(reader, table.inserted);
}

}  // namespace

std::size_t Commit::RowCount() const {
  std::size_t count = 0;
  for (const TableChange& table : tables) count += table.removed.size() + table.updated.size() + table.inserted.size();
  return count;
}

std::string EncodeCommit(const Commit& commit) {
  std::string bytes;
  ByteWriter writer(bytes);
  writer.Put(static_cast<std::uint64_t>(commit.time));
  writer.Put(commit.after.low);
  writer.Put(commit.after.high);
  writer.Put(static_cast<std::uint16_t>(commit.tables.size()));
  for (const TableChange& table : commit.tables) {
    writer.PutCounted<std::uint8_t>(table.table);
    writer.Put(table.fingerprint);
    EncodeRows(table.removed, writer);
    EncodeRows(table.updated, writer);
    EncodeRows(table.inserted, writer);
  }
  return bytes;
}

std::optional<StateHash> DecodeStateHash(std::string_view bytes) {
  ByteReader reader(bytes);
  reader.Get<std::uint64_t>();
  StateHash hash;
  hash.low = reader.Get<std::uint64_t>();
  hash.high = reader.Get<std::uint64_t>();
  if (!reader.IsGood()) return {};
  return hash;
}

std::optional<Commit> DecodeCommit(std::string_view bytes) {
  ByteReader reader(bytes);
  Commit commit;
  commit.time = static_cast<std::int64_t>(reader.Get<std::uint64_t>());
  commit.after.low = reader.Get<std::uint64_t>();
  commit.after.high = reader.Get<std::uint64_t>();
  const auto count = reader.Get<std::uint16_t>();
  for (unsigned i = 0; i < count; ++i) {
    TableChange table;
    if (!DecodeTable(reader, table)) return {};
    const auto isSame = [&table](const TableChange& other) { return other.table == table.table; };
    if (std::any_of(commit.tables.begin(), commit.tables.end(), isSame)) return {};
    commit.tables.push_back(std::move(table));
  }
  if (!reader.IsDone()) return {};
  return commit;
}

}  // namespace dtsdb::relay
