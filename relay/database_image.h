/// \file
/// All tables of a database at one moment.
#pragma once

#include <cstdint>
#include <deque>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "relay/commit.h"
#include "relay/row_layout.h"
#include "relay/table_image.h"
#include "rtdb/backend.h"

namespace dtsdb::relay {

/// The tables that a relay carries: those of the installation, in their order.
std::vector<dbTableDescriptor*> CarriedTables();

/// A database's tables as they were at the last commit that was read. Each reading is one read transaction, so it shows
/// a state that was committed.
class DatabaseImage {
 public:
  /// `tables` are classes that are registered without a database, and must live as long as this.
  explicit DatabaseImage(const std::vector<dbTableDescriptor*>& tables);

  /// Reads what has changed since the last reading: the tables whose number of changes has moved, after Forget all
  /// tables. Returns what leads from the image before to that of now, whose texts live until the next reading; nothing
  /// where both are the same. Without `database` being open, or when `check` throws, the image stays as it is.
  std::optional<Commit> Read(dbDatabase& database, const std::function<void()>& check);
  /// The database has been opened anew: its numbers of changes mean nothing any more.
  void Forget();

  /// The whole state as a commit on an empty database; its texts live as long as the image stays as it is.
  Commit Whole() const;
  const StateHash& Hash() const { return m_hash; }
  /// When the state was read, in microseconds since 1970.
  std::int64_t Time() const { return m_time; }

 private:
  struct Table {
    explicit Table(dbTableDescriptor* table) : registered(table), layout(*table) {}
    dbTableDescriptor* registered;
    RowLayout layout;
    TableImage image;
    TableImage before;  // what the last commit's texts lie in
    std::vector<std::string> keys;
    std::uint64_t number = 0;
  };

  /// Reads the images of the tables that have moved.
  struct Reading;
  std::vector<Reading> ReadMoved(dbDatabase& database) const;

  std::deque<Table> m_tables;
  StateHash m_hash;
  std::int64_t m_time = 0;
  bool m_known = false;  // the numbers of changes
};

/// Microseconds since 1970.
std::int64_t Now();

}  // namespace dtsdb::relay
