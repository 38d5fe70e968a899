/// \file
/// What one thread has going on with one database: its transaction and its cursors.
#pragma once

#include <lmdb.h>

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

#include "rtdb/internal/store.h"
#include "rtdb/reference.h"

namespace dtsdb::internal::rtdb {

/// Rows that are read within a context's transaction, as the context knows them: it reports to them what ends or
/// changes under their feet. Linked to one context at most (Context::Link).
class RowStream {
 public:
  /// The transaction is about to end: what is used of its memory from now on must be taken along.
  virtual void KeepRow() = 0;
  /// The transaction has ended: no row is left.
  virtual void Reset() = 0;
  /// So has the context; the stream is no longer linked to it.
  virtual void ContextEnded() = 0;
  /// Whether the stream goes over the rows of `table`.
  virtual bool IsOver(const Table& table) const = 0;
  /// Of an open stream: the table or the transaction is about to change, so what is still to be read is taken along.
  virtual void Detach() = 0;

 protected:
  ~RowStream() = default;
};

/// A place at which no table's cursor ever is.
inline constexpr std::uint64_t kNowhere = ~std::uint64_t{0};

/// What a thread knows of a table within its transaction.
struct TableUse {
  MDB_cursor* readCursor = nullptr;   ///< outlives its transaction, renewed for the next
  MDB_cursor* writeCursor = nullptr;  ///< ends with its transaction
  MDB_cursor* orderCursor = nullptr;  ///< the same over the order of the rows
  std::uint64_t readSerial = 0;       ///< the read transaction that readCursor was last renewed for
  std::uint64_t changes = 0;          ///< rises with every change of the table by this thread
  bool changed = false;               ///< rows have changed within this transaction
  std::uint64_t place = 0;            ///< rises whenever the table's cursor moves
  bool longKeys = false;              ///< a key has been shortened within this transaction
  bool highestKnown = false;
  std::string highest;  ///< the table's highest key, or one that was
  /// Rows whose key was changed in this transaction, by row number: selections know them by the old one.
  std::unordered_map<oid_t, std::string> moved;
};

/// A row as a cursor has loaded it, for telling whether it has changed since.
///
/// Its bytes lie in the store's memory, for as long as the transaction lasts and where it hasn't changed the table;
/// else in this row, which keeps them.
class LoadedRow {
 public:
  std::uint64_t changes = 0;  ///< of the table when the row was loaded
  std::uint64_t place = kNowhere;

  std::string_view Key() const { return m_key; }
  std::string_view Image() const { return m_image; }
  /// Takes a row where it lies.
  void Set(std::string_view key, std::string_view image) {
    m_key = key;
    m_image = image;
    m_isKept = false;
  }
  /// Copies the row, so that it no longer depends on the store's memory.
  void Keep() {
    if (!m_isKept) Keep(m_key, m_image);
  }
  /// Takes a row as a copy.
  void Keep(std::string_view key, std::string_view image) {
    m_keptKey = key;
    m_keptImage = image;
    Set(m_keptKey, m_keptImage);
    m_isKept = true;
  }
  bool IsKept() const { return m_isKept; }

 private:
  std::string_view m_key;
  std::string_view m_image;
  std::string m_keptKey;
  std::string m_keptImage;
  bool m_isKept = false;
};

/// A thread's state in a database. Created by attach, ended by detach, at the thread's end or when the database closes.
class Context {
 public:
  /// The calling thread's context of a store, or null.
  static Context* Find(const Store* store);
  /// The same, made where there is none.
  static Context& Attach(const std::shared_ptr<Store>& store);
  /// Ends the calling thread's context of a store; its transaction is rolled back.
  static void Detach(const Store* store);

  explicit Context(std::shared_ptr<Store> store);
  Context(const Context&) = delete;
  Context& operator=(const Context&) = delete;
  ~Context();

  /// Makes sure of a transaction, of a write transaction. Where a read transaction ran, its state may have moved on.
  Status BeginRead();
  Status BeginWrite();
  Status Commit();
  void Rollback();

  MDB_txn* Transaction() const { return m_write != nullptr ? m_write : m_reading ? m_read : nullptr; }

  /// The plan for a table, or the reason why it can't be used.
  Status PlanOf(const Table& table, std::shared_ptr<const RowPlan>& plan) const;
  TableUse& Use(const Table& table) { return m_uses[static_cast<std::size_t>(table.slot)]; }
  /// The table's cursor in the running transaction, shared by all that goes to single rows.
  Status CursorOf(const Table& table, MDB_cursor*& cursor);
  /// Finds a row by its key, where the row has moved since by its new one. `key` becomes the key it has now.
  Status FindRow(const Table& table, std::string& key, std::string_view& image, bool& found);

  /// The key of the row of that number.
  Status KeyOf(const Table& table, oid_t number, std::string& key, bool& found);

  // Changes. A failure beyond the row, such as a full store, ends the transaction: nothing of it will be stored.
  Status Insert(const Table& table, const void* record, oid_t& number);
  /// The same under a number of the caller's choice, which no row of the table has.
  Status InsertAs(const Table& table, const void* record, oid_t number);
  /// Replaces a row with the record. A row image that stays the same isn't written. `found` reports whether the row is
  /// still there, and `row` becomes its new state: texts of the record that lay in `row` are to be taken anew.
  Status Replace(const Table& table, LoadedRow& row, const void* record, bool& found);
  Status Remove(const Table& table, std::string key, bool& found);
  Status RemoveAll(const Table& table);

  /// The number of the transaction that changed a table last as the thread's transaction sees it, 0 if it is unknown.
  Status ChangeNumber(const Table& table, std::uint64_t& number);
  /// The number of the thread's last commit that stored changed rows, or 0.
  std::uint64_t LastCommit() const { return m_lastCommit; }

  /// What is noted in a store that is a copy, else an empty text.
  Status CopyNote(std::string& note);
  /// Notes it in the write transaction; an empty text makes the store no copy.
  Status SetCopyNote(std::string_view note);

  /// Reports to `stream` from now on, until Unlink.
  void Link(RowStream* stream) { m_linked.push_back(stream); }
  void Unlink(RowStream* stream);
  /// A linked stream that walks over a table directly, until it is closed.
  void StreamOpened(RowStream* stream) { m_open.push_back(stream); }
  void StreamClosed(RowStream* stream) { std::erase(m_open, stream); }

  Status Failed(int result, const char* operation) const {
    return LmdbError(result, m_store->File().Path(), operation);
  }

 private:
  Status BeginChange(const Table& table, std::shared_ptr<const RowPlan>& plan);
  /// Gives up the transaction after a failed change.
  Status GiveUp(int result, const char* operation);
  Status PutNew(const Table& table, std::string& key, std::string_view image);
  /// Notes a new row, or one with a new key, in the order of rows. Returns LMDB's result.
  int NoteOrder(const Table& table, std::string_view key);
  /// Commits the write transaction.
  Status CommitWrite();
  /// Notes in the store which tables the write transaction has changed. `any` reports whether there are any.
  Status NoteChanges(bool& any);
  static void RowsChanged(TableUse& use) {
    ++use.changes;
    use.changed = true;
  }
  /// Writes m_image under m_key in the place of `row`.
  Status Put(const Table& table, const LoadedRow& row, bool& standsThere);
  Status NoteLongKey(const Table& table, const RowPlan& plan);
  void EndRead();
  void ForgetWrite();
  void KeepRows();
  void ResetStreams();
  void DetachStreams();

  std::shared_ptr<Store> m_store;
  std::shared_ptr<const PlanSet> m_plans;
  MDB_txn* m_read = nullptr;  ///< kept between transactions
  bool m_reading = false;
  std::uint64_t m_readSerial = 0;
  MDB_txn* m_write = nullptr;
  bool m_failed = false;
  std::uint64_t m_lastCommit = 0;
  oid_t m_nextRow = 0;  ///< the number of the next row that this write transaction inserts
  std::vector<TableUse> m_uses;
  std::vector<RowStream*> m_linked;
  std::vector<RowStream*> m_open;
  std::vector<std::uint32_t> m_places;  ///< working space
  std::string m_key;
  std::string m_image;
};

}  // namespace dtsdb::internal::rtdb
