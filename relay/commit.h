/// \file
/// What a commit holds: the rows that it has changed, as bytes.
///
/// docs/relay.md describes the bytes. Nothing here knows of a database or of a server.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "relay/state_hash.h"
#include "rtdb/reference.h"

namespace dtsdb::relay {

/// A row in a commit. The bytes are all columns, or of a removed row the key columns; they aren't owned.
struct ChangedRow {
  oid_t number = 0;
  std::string_view bytes;
};

/// The changes of a table. A row whose key columns have changed is removed and inserted under the same number.
struct TableChange {
  std::string_view table;
  std::uint64_t fingerprint = 0;  ///< of its columns
  std::vector<ChangedRow> removed;
  std::vector<ChangedRow> updated;
  std::vector<ChangedRow> inserted;

  bool IsEmpty() const { return removed.empty() && updated.empty() && inserted.empty(); }
};

/// What leads from one state of a database to another, or from an empty one to a whole state.
struct Commit {
  std::int64_t time = 0;  ///< when the state was read, in microseconds since 1970
  StateHash after;        ///< of the whole state behind the commit
  std::vector<TableChange> tables;

  std::size_t RowCount() const;
};

std::string EncodeCommit(const Commit& commit);

/// The hash behind the commit, from its beginning; nothing where that is too short.
std::optional<StateHash> DecodeStateHash(std::string_view bytes);

/// The commit in `bytes`, whose views point into them. Nothing for bytes that are none: every count and length is
/// checked against what is there, names stand once, and row numbers of each list rise.
std::optional<Commit> DecodeCommit(std::string_view bytes);

}  // namespace dtsdb::relay
