/// \file
/// The tables of one open database within a store file.
#pragma once

#include <lmdb.h>

#include <atomic>
#include <cstdint>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "rtdb/internal/environment.h"
#include "rtdb/internal/row_image.h"
#include "rtdb/internal/status.h"
#include "rtdb/reference.h"

namespace dtsdb::internal::rtdb {

/// A table of an open database.
struct Table {
  std::string name;
  const dbTableDescriptor* descriptor = nullptr;
  int slot = 0;  ///< its place in the store
  MDB_dbi handle = 0;
  bool present = false;  ///< false only for a table that a database for reading only could not make
  MDB_dbi order = 0;     ///< the rows in the order of their insertion, rtdb/internal/row_order.h
  bool ordered = false;  ///< it has that tree; in an older file a database for reading only can't make it
};

/// How rows of a table and a program's class correspond, as of some state of the store.
struct TablePlan {
  std::shared_ptr<const RowPlan> plan;
  std::string refusal;  ///< why the table can't be used, else empty
  /// Of the number of its last change, rtdb/internal/change_number.h; none in a file without such numbers.
  std::optional<std::uint32_t> changePlace;
};

/// The correspondence for all tables by slot, as of a generation of schemas.
struct PlanSet {
  std::uint64_t generation = 0;
  bool isCopy = false;  ///< of another store: only the program that keeps it changes it
  std::vector<TablePlan> tables;
};

/// One database's view of a store file: its tables and how they fit the program's classes.
///
/// In the file, each table is a named tree, some with a second one for the order of their rows; the tree "@schema"
/// holds each table's columns under its name, the file's format and the generation of both, which rises with every
/// change of one.
class Store {
 public:
  /// What a database is opened for. A copy is only read by those who don't keep it.
  enum class Use { kRead, kChange, kKeepCopy };

  /// The tree of schemas. What it holds beside them has a key that begins with @, as no table's name does.
  static constexpr char kSchemaTree[] = "@schema";
  /// Under it stands the first row number that was not given, where a transaction has taken those of the next ones.
  static constexpr char kRowNumbersKey[] = "@rows";

  /// So many row numbers belong to each write transaction. One that inserts more takes those of the next ones too.
  static constexpr std::uint64_t kRowsPerTransaction = std::uint64_t{1} << 24;

  /// Opens the file and makes the tables that it lacks. Null with the reason in `status` where that fails.
  static std::shared_ptr<Store> Open(const std::string& path, Use use, std::size_t sizeLimit,
                                     const std::vector<dbTableDescriptor*>& tables, Status& status);

  Environment& File() { return *m_file; }
  bool ReadOnly() const { return m_readOnly; }
  bool KeepsCopy() const { return m_keepsCopy; }
  /// The error of a change where the database may not make any.
  Status NotToBeChanged() const;
  /// Rises with every Store that this program opens, from 1 on.
  std::uint64_t OpeningNumber() const { return m_opening; }
  Table& At(int slot) { return m_tables[static_cast<std::size_t>(slot)]; }
  std::size_t TableCount() const { return m_tables.size(); }

  /// Set once the database has been closed, for the threads that are still attached.
  bool Closed() const { return m_closed; }
  void Close() { m_closed = true; }

  /// The plans that fit the state which a transaction sees, `known` if they still do.
  Status Plans(MDB_txn* transaction, std::shared_ptr<const PlanSet>& known);
  /// Notes within a write transaction that a table has a key that was shortened.
  Status MarkLongKeys(MDB_txn* transaction, const Table& table);

  /// The number of the first row that a write transaction inserts. It is above all numbers that were ever given.
  Status FirstRowNumber(MDB_txn* transaction, oid_t& number);
  /// Notes within a write transaction that all numbers below `end` are given, where they aren't its own alone.
  Status NoteRowNumbers(MDB_txn* transaction, oid_t end);
  /// Notes within a write transaction that it has changed rows of the tables of these places.
  Status NoteChanges(MDB_txn* transaction, const std::vector<std::uint32_t>& places);
  /// The number of the transaction that changed the table of a place last, 0 where it is unknown.
  Status LastChange(MDB_txn* transaction, std::uint32_t place, std::uint64_t& number);
  /// What is noted in a store that is a copy, else an empty text.
  Status CopyNote(MDB_txn* transaction, std::string& note);
  /// Notes it within a write transaction; an empty text makes the store no copy.
  Status SetCopyNote(MDB_txn* transaction, std::string_view note);
  /// For tests: as if each transaction had only so many row numbers. To be set before the first row is inserted.
  void SetRowsPerTransaction(std::uint64_t rows) { m_rowsPerTransaction = rows; }

 private:
  Store() = default;

  Status OpenTables();
  /// What a file has.
  struct Found {
    int format = 0;         ///< 0 for a new file
    bool complete = false;  ///< no table, column or tree is missing
    bool isCopy = false;
  };
  /// Opens what is there.
  Status FindTables(MDB_txn* transaction, Found& found);
  /// Makes what is missing. `alone`: no other program has the file open.
  Status MakeTables(MDB_txn* transaction, bool alone);
  Status MakeTable(MDB_txn* transaction, Table& table, int format, bool& changed);
  /// The file's format, 0 where none is noted.
  Status ReadFormat(MDB_txn* transaction, int& format);
  Status WriteFormat(MDB_txn* transaction, int format);
  /// Brings a file of an older format up to another one.
  Status Upgrade(MDB_txn* transaction, int from, int to);
  /// The same for a table, which the program may not have.
  Status Upgrade(MDB_txn* transaction, const std::string& name, int from, int to);
  /// Gives a table a place for the number of its last change.
  Status GiveChangePlace(MDB_txn* transaction, Schema& schema);
  /// Opens the second tree of a table that is to have one. With MDB_CREATE it is made where it is missing or lacks
  /// rows.
  Status OpenOrder(MDB_txn* transaction, Table& table, const Schema& schema, unsigned flags);
  Status ReadSchema(MDB_txn* transaction, const std::string& table, Schema& schema, bool& found);
  Status WriteSchema(MDB_txn* transaction, const std::string& table, const Schema& schema);
  Status RaiseGeneration(MDB_txn* transaction);
  Status ReadGeneration(MDB_txn* transaction, std::uint64_t& generation) {
    return ReadNumber(transaction, kGenerationKey, generation);
  }
  /// A number of "@schema", 0 where it isn't there.
  Status ReadNumber(MDB_txn* transaction, std::string_view key, std::uint64_t& number);
  Status WriteNumber(MDB_txn* transaction, std::string_view key, std::uint64_t number);
  Status LoadPlan(MDB_txn* transaction, const Table& table, TablePlan& plan);
  Status Refused(const std::string& why) const;
  Status Failed(int result, const char* operation) const { return LmdbError(result, m_file->Path(), operation); }

  static constexpr std::string_view kGenerationKey = "@generation";

  std::shared_ptr<Environment> m_file;
  bool m_readOnly = false;  ///< also for a copy that this database doesn't keep
  bool m_keepsCopy = false;
  bool m_opensToChange = false;
  std::uint64_t m_opening = 0;
  std::uint64_t m_rowsPerTransaction = kRowsPerTransaction;
  MDB_dbi m_main = 0;
  MDB_dbi m_schemas = 0;
  std::vector<Table> m_tables;
  std::atomic<bool> m_closed = false;
  std::mutex m_mutex;  ///< guards m_plans
  std::shared_ptr<const PlanSet> m_plans;
};

}  // namespace dtsdb::internal::rtdb
