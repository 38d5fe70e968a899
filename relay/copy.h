/// \file
/// A store that is the copy of another one.
#pragma once

#include <deque>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "relay/commit.h"
#include "relay/copy_note.h"
#include "relay/row_layout.h"
#include "rtdb/backend.h"

namespace dtsdb::relay {

/// Applies commits to a store, each in one transaction together with the note of how far the copy has come. What a
/// transaction could not finish isn't there. The rows have the numbers that they have in the original, so both stores
/// show them in the same order.
class Copy {
 public:
  enum class Outcome {
    kApplied,
    kDiffers,      ///< the copy, or what came, isn't what it should be: nothing was changed
    kOtherLayout,  ///< the publisher's tables have other columns: nothing was changed
  };

  /// `database` is open with dbCopyAccess and outlives this. `check` throws what the database has reported.
  Copy(dbDatabase& database, std::function<void()> check, const std::vector<dbTableDescriptor*>& tables);

  /// Nothing for a store that is no copy yet.
  std::optional<CopyNote> Note();
  /// Whether a table has a row.
  bool HasRows();

  /// Goes from the note `before`, which the copy must have, to `after`.
  Outcome Apply(const Commit& commit, const CopyNote& before, const CopyNote& after);
  /// Makes the copy the whole state of a snapshot. Only rows that differ are written.
  Outcome Replace(const Commit& snapshot, const CopyNote& after);
  /// Changes the note alone, from `before` to `after`.
  Outcome Confirm(const CopyNote& before, const CopyNote& after);

 private:
  struct Table {
    explicit Table(dbTableDescriptor* registeredTable) : registered(registeredTable), layout(*registeredTable) {}
    dbTableDescriptor* registered;
    RowLayout layout;
  };

  const Table* Find(std::string_view name) const;
  Outcome ApplyTable(const TableChange& change, StateHash& hash);
  Outcome ReplaceTable(const Table& table, const TableChange* wanted, StateHash& hash);
  Outcome ApplyRows(const Table& table, const TableChange& change, StateHash& hash);
  /// Ends the transaction: commits what was applied, else nothing.
  Outcome End(Outcome outcome);

  dbDatabase& m_database;
  std::function<void()> m_check;
  std::deque<Table> m_tables;
};

}  // namespace dtsdb::relay
