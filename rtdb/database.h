/// \file
/// A database that several threads and programs share.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "rtdb/descriptors.h"
#include "rtdb/error_class.h"
#include "rtdb/reference.h"

class dbAnyCursor;

namespace dtsdb::internal::rtdb {
class Context;
class Store;
struct Status;
struct Table;
}  // namespace dtsdb::internal::rtdb

/// An open store file with its tables.
///
/// Transactions belong to a thread and a database. The first select begins one; it ends with commit, rollback, close or
/// detach. A select of a cursor for update, an insert, an update or a removal makes it a write transaction, of which
/// there is one at a time over all programs; a second one waits. Readers never wait and see the state of the last
/// commit before their transaction began.
class dbDatabase {
 public:
  /// What a program may do with a store. dbCopyAccess is dbAllAccess for the program that keeps a copy, see
  /// setCopyNote: all others only read one.
  enum dbAccessType { dbReadOnly, dbAllAccess, dbCopyAccess };
  /// What detach does beside leaving the thread.
  enum DetachFlags { COMMIT = 1, DESTROY_CONTEXT = 2 };
  using dbErrorClass = dbErrors::dbErrorClass;
  using enum dbErrors::dbErrorClass;
  using dbErrorHandler = void (*)(int error, char const* message, int argument, void* context);

  /// A database that isn't open yet.
  explicit dbDatabase(dbAccessType access = dbAllAccess);
  dbDatabase(const dbDatabase&) = delete;
  dbDatabase& operator=(const dbDatabase&) = delete;
  /// What was not committed is lost.
  virtual ~dbDatabase();

  /// Opens the store in `fileName`, or in NAME or NAME.fdb, creates it where it does not exist, makes the tables that
  /// it lacks and attaches the calling thread. False after one message where that can't be done.
  bool open(char const* databaseName, char const* fileName = nullptr);
  /// Commits and leaves the store. Other threads lose what they have not committed.
  virtual void close();
  bool isOpen() const { return m_store != nullptr; }

  /// Lets the calling thread use the database. Harmless when it may already.
  void attach();
  /// Ends the thread's use. With COMMIT its transaction is committed, else rolled back.
  void detach(int flags = COMMIT | DESTROY_CONTEXT);

  /// Writes the state of the last commit to `file`, one whole state that is on the disk before the file takes its
  /// place; one that is there is replaced. Other programs may go on writing; the calling thread must have committed.
  /// With `compactify` free pages are left out. False after a message, and nothing is left then.
  bool backup(char const* file, bool compactify);

  /// Makes the thread's changes visible to all and resets its cursors. On failure nothing of them is stored.
  void commit();
  /// The same: the changes of a transaction become visible together or not at all.
  void precommit() { commit(); }
  /// Forgets the thread's changes and resets its cursors.
  void rollback();

  /// This database's table of a class, or null.
  dbTableDescriptor* lookupTable(dbTableDescriptor* descriptor);
  /// This database's table of that name, or null.
  dbTableDescriptor* findTableByName(char const* name);

  /// Stores a new row; the reference is 0 where that failed.
  template <class T>
  dbReference<T> insert(T const& record) {
    dbAnyReference reference;
    insertRecord(lookupTable(&T::dbDescriptor), &reference, &record);
    return dbReference<T>(reference.getOid());
  }
  bool insertRecord(dbTableDescriptor* table, dbAnyReference* reference, void const* record);
  /// Stores a new row under the number that it has in another database, so that both have it in the same place. The
  /// table must not have a row of that number. Rows inserted later get numbers above it.
  bool insertRecordAs(oid_t oid, dbTableDescriptor* table, void const* record);
  /// Replaces the row of that number. Looks for it row by row: cursors update in less time.
  void update(oid_t oid, dbTableDescriptor* table, void const* record);
  /// Selects all rows of the cursor's table. Defined with the cursors.
  int select(dbAnyCursor* cursor);
  /// Removes all rows of a table.
  void deleteTable(dbTableDescriptor* table);

  /// The number of the last transaction that changed rows of a table, whichever program committed it, as the calling
  /// thread's transaction sees it; begins a read transaction where there is none. Where the running transaction has
  /// itself changed the table, its own number, which holds if it is committed. Within one opening of the database two
  /// equal numbers mean equal rows. 0: unknown, for a table that was not changed since its file keeps these numbers, in
  /// a file that keeps none, and after a message where the table can't be read.
  std::uint64_t changeNumber(dbTableDescriptor* table);
  /// The number of the calling thread's last commit in this database that stored changed rows, 0 if there was none. A
  /// commit that failed does not count.
  std::uint64_t lastCommitNumber();

  /// Which opening of a database in this program the present one is, counted from 1, or 0 while it is closed.
  std::uint64_t openingNumber() const;

  /// Makes the store a copy of another one and notes in it, in the running write transaction, how far that has come.
  /// From the commit on only databases opened with dbCopyAccess change it; for all others it is as if it were opened
  /// with dbReadOnly. An empty note makes it an ordinary store again. Needs dbCopyAccess.
  bool setCopyNote(std::string_view note);
  /// The same if `from` is what was noted before, as the write transaction sees it; else false, and nothing is changed.
  bool moveCopyNote(std::string_view from, std::string_view to);
  /// What was noted, as the thread's transaction sees it; empty in a store that is no copy.
  std::string copyNote();

  /// Limits the size of the store file for the next open. 0, as at first, means 64 GiB or what the address space gives.
  void setFileSizeLimit(std::size_t bytes) { m_sizeLimit = bytes; }

  /// Installs the function that gets errors in place of the standard error stream, and returns the one before.
  dbErrorHandler setErrorHandler(dbErrorHandler handler, void* context = nullptr);
  /// Reports an error: calls the handler, or writes one line on the standard error stream.
  virtual void handleError(dbErrorClass error, char const* message = nullptr, int argument = 0);

 private:
  friend class dbAnyCursor;

  /// The calling thread's context, or null after a message.
  dtsdb::internal::rtdb::Context* Attached();
  /// The open table of a descriptor, or null after a message.
  dtsdb::internal::rtdb::Table* TableOf(dbTableDescriptor* descriptor);
  /// True for success; else reports the error, unless it has been reported.
  bool Report(const dtsdb::internal::rtdb::Status& status);
  void AssignTables();
  void ReleaseTables();

  dbAccessType m_access;
  std::size_t m_sizeLimit = 0;
  dbErrorHandler m_errorHandler = nullptr;
  void* m_errorContext = nullptr;
  std::shared_ptr<dtsdb::internal::rtdb::Store> m_store;
  std::vector<std::unique_ptr<dbTableDescriptor>> m_clones;
  std::vector<dbTableDescriptor*> m_tables;
};

/// Stores a new row in the database that T's table belongs to.
template <class T>
dbReference<T> insert(T const& record) {
  dbDatabase* database = T::dbDescriptor.getDatabase();
  return database == nullptr ? dbReference<T>() : database->insert(record);
}
