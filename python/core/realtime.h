/// \file
/// A realtime database as Python programs hold it.
#pragma once

#include <cstdint>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <utility>
#include <variant>
#include <vector>

#include <QByteArray>
#include <QString>

#include "formats/realtime.h"
#include "formats/stored_rows.h"

namespace dtsdb::python {

/// A value of a row, as Python gets it: a text, a whole number, any number, or a range of bytes.
using StoredValue = std::variant<QString, std::int64_t, double, QByteArray>;

/// A row: the values of the table's columns, in their order.
using StoredRow = std::vector<StoredValue>;

/// Which rows of a table somebody has read: the opening of the database, and the number of the last change; 0: unknown.
struct RowsState {
  std::uint64_t opening = 0;
  std::uint64_t change = 0;
};

/// An open realtime database. Each call is one transaction, and one thread at a time; others wait. No call needs the
/// interpreter's lock. Throws tools::Failure, and Raised when the database is closed.
class Realtime {
 public:
  /// Opens NAME.fdb. To read, the database must exist; to write, it is made where there is none.
  Realtime(const std::string& name, bool writes);
  Realtime(const Realtime&) = delete;
  Realtime& operator=(const Realtime&) = delete;
  ~Realtime();

  void Close();
  bool IsClosed() const;

  /// The name and the number of rows of each table, in the order of their kind codes.
  std::vector<std::pair<std::string, int>> Counts();

  /// All rows of a table, in the order of their keys.
  std::vector<StoredRow> Rows(const std::string& table);

  /// The rows of a table, unless they are those that `known` is of: then nothing. `known` becomes that of the rows as
  /// they are.
  std::optional<std::vector<StoredRow>> RowsUnlessKnown(const std::string& table, RowsState& known);

  /// Changes the row with the key that the assignments name, or adds it, and commits. True when it was added.
  bool Put(const std::string& table, const std::vector<std::string>& assignments);

 private:
  /// The database for the calling thread, as long as this lives.
  class Turn;

  void Open();
  void Forget();

  const std::string m_name;
  const bool m_writes;
  const int m_process;
  mutable std::mutex m_mutex;
  bool m_isClosed = false;
  std::unique_ptr<tools::RealtimeDatabase> m_database;  // none after a failure: the next call opens it anew
};

/// The columns of a table: name, and type as in text tables ("text", "i32" and so on, or "bytes").
std::vector<std::pair<std::string, std::string>> StoredColumns(const std::string& table);

}  // namespace dtsdb::python
