/// \file
/// Cursors: selections of rows and the walk over them.
#pragma once

#include <memory>
#include <string>

#include "rtdb/database.h"
#include "rtdb/query.h"

namespace dtsdb::internal::rtdb {
class RowPlan;
}  // namespace dtsdb::internal::rtdb

/// Whether a cursor only looks at rows, or changes them.
enum dbCursorType { dbCursorViewOnly, dbCursorForUpdate };

/// What all cursors do, whatever their table class.
///
/// A cursor belongs to the thread that selects with it. Its selection is fixed by select: later changes alter the rows,
/// not which rows are walked over. Commit, rollback and detach of the thread reset it.
class dbAnyCursor {
 public:
  dbAnyCursor(const dbAnyCursor&) = delete;
  dbAnyCursor& operator=(const dbAnyCursor&) = delete;

  /// Selects rows, goes to the first and returns their number; 0 after a message where the query can't be used.
  /// The forms with a type change the cursor's type.
  int select(dbQuery& query, dbCursorType type);
  int select(dbQuery& query);
  int select(char const* condition, dbCursorType type);
  int select(char const* condition);
  int select(dbCursorType type);
  int select();

  /// Writes the cursor's record back to the current row.
  void update();
  /// Removes the current row. The following row becomes the current one, behind the last row the one in front of it.
  void remove();
  /// Removes all rows of the table.
  void removeAll();
  /// Removes the selected rows and resets the cursor.
  void removeAllSelected();
  /// Forgets the selection.
  void reset();

  /// Number of selected rows.
  int getNumberOfRecords() const;
  /// What the cursor is and where it stands.
  bool isUpdateCursor() const { return m_type == dbCursorForUpdate; }
  bool isFirst() const;
  bool isLast() const;
  /// Moves by n rows, backward for a negative n. False, with the cursor where it was, if there are not that many.
  bool skip(int n);
  dbTableDescriptor* getTable() const { return m_table; }
  /// Whether the texts of the current row stay where they are when the cursor moves: until the transaction ends, unless
  /// it changes the table or has changed it.
  bool textsStay() const;

 protected:
  /// A cursor that keeps its row in `record`.
  dbAnyCursor(dbTableDescriptor& table, dbDatabase* database, dbCursorType type, void* record);
  ~dbAnyCursor();

  /// Moves the cursor. False, with the cursor where it was, where there is no such row.
  bool gotoFirst();
  bool gotoLast();
  bool gotoNext();
  bool gotoPrev();
  bool gotoNextAvailable();
  bool gotoRow(oid_t oid);
  /// The same by going straight to it: the row's key columns are those of the cursor's record.
  bool gotoRowByKey(oid_t oid);

  /// The current row: whether there is one, and its number.
  bool HasCurrent() const { return m_currId != 0; }
  oid_t CurrentId() const { return m_currId; }
  /// Reports a missing current row.
  void RequireCurrent() const;

 private:
  struct State;

  dbDatabase* Database() const;
  int Select(dbQuery* query);
  /// Gets ready for a select: database, thread, table and transaction, or false after a message.
  bool Begin(dtsdb::internal::rtdb::Context*& context, dtsdb::internal::rtdb::Table*& table,
             std::shared_ptr<const dtsdb::internal::rtdb::RowPlan>& plan);
  /// Checks what changes of the table need, with a message where it is missing.
  bool MayChange(dtsdb::internal::rtdb::Context*& context, dtsdb::internal::rtdb::Table*& table);
  /// The same for a change of the current row.
  bool MayChangeRow(dtsdb::internal::rtdb::Context*& context, dtsdb::internal::rtdb::Table*& table);
  bool GoTo(std::size_t place);
  /// Takes the row at the cursor's place into the record.
  bool Load();
  void Take();
  /// Reports an error; false.
  bool Report(dbDatabase::dbErrorClass error, const std::string& text) const;
  bool Report(const dtsdb::internal::rtdb::Status& status) const;

  dbTableDescriptor* m_table;
  dbDatabase* m_database;
  dbCursorType m_type;
  void* m_record;
  oid_t m_currId = 0;
  std::unique_ptr<State> m_state;
};

/// A cursor over T's table. It holds the current row in a T of its own; texts in it live until the cursor moves.
template <class T>
class dbCursor : public dbAnyCursor {
 public:
  /// On the database that the class was registered for.
  explicit dbCursor(dbCursorType type = dbCursorViewOnly) : dbAnyCursor(T::dbDescriptor, nullptr, type, &m_record) {}
  explicit dbCursor(dbDatabase* database, dbCursorType type = dbCursorViewOnly)
      : dbAnyCursor(T::dbDescriptor, database, type, &m_record) {}

  /// The current row, or null where there is none.
  T* get() { return HasCurrent() ? &m_record : nullptr; }
  /// The row moved to, or null where there is none; then the cursor stays where it was.
  T* next() { return gotoNext() ? &m_record : nullptr; }
  T* prev() { return gotoPrev() ? &m_record : nullptr; }
  T* first() { return gotoFirst() ? &m_record : nullptr; }
  T* last() { return gotoLast() ? &m_record : nullptr; }
  /// As next(), but right after a remove() the row that followed the removed one.
  T* nextAvailable() { return gotoNextAvailable() ? &m_record : nullptr; }
  /// Selects the one row referred to. Looks for it row by row.
  T* at(const dbReference<T>& reference) { return gotoRow(reference.getOid()) ? &m_record : nullptr; }
  dbReference<T> currentId() const { return dbReference<T>(CurrentId()); }

  /// The cursor's record. Without a current row it is a record of no row, after a message.
  T* operator->() {
    RequireCurrent();
    return &m_record;
  }

 private:
  T m_record{};
};
