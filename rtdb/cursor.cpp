#include "rtdb/cursor.h"

#include <algorithm>
#include <limits>

#include "rtdb/internal/context.h"
#include "rtdb/internal/key_code.h"
#include "rtdb/internal/selection.h"

using dtsdb::internal::rtdb::Context;
using dtsdb::internal::rtdb::LoadedRow;
using dtsdb::internal::rtdb::RowPlan;
using dtsdb::internal::rtdb::Selection;
using dtsdb::internal::rtdb::Status;
using dtsdb::internal::rtdb::Table;

/// A cursor's rows, its place among them and the loaded row, in whose image the record's texts lie.
struct dbAnyCursor::State {
  State(oid_t& current, void* owner) : record(owner), selection(current, [this] { KeepRow(); }) {}

  /// The record's texts must outlive the store's memory in which they lie.
  void KeepRow() {
    if (record == nullptr || row.IsKept() || row.Image().empty()) return;
    const std::string_view before = row.Image();
    row.Keep();
    selection.Plan()->MoveTexts(before, row.Image(), record);
  }

  void* record;  ///< null when the cursor is being destroyed
  LoadedRow row;
  Selection selection;
  std::size_t place = 0;
  bool removed = false;      ///< the row at this place took over from one that was removed
  bool removedLast = false;  ///< that one was the last
};

dbAnyCursor::dbAnyCursor(dbTableDescriptor& table, dbDatabase* database, dbCursorType type, void* record)
    : m_table(&table), m_database(database), m_type(type), m_record(record), m_state(new State(m_currId, record)) {
  if (database == nullptr) return;
  if (dbTableDescriptor* own = database->lookupTable(&table)) m_table = own;
}

dbAnyCursor::~dbAnyCursor() { m_state->record = nullptr; }

dbDatabase* dbAnyCursor::Database() const { return m_database != nullptr ? m_database : m_table->getDatabase(); }

bool dbAnyCursor::Report(const Status& status) const {
  dbDatabase* database = Database();
  return database == nullptr ? status.ok : database->Report(status);
}

bool dbAnyCursor::Report(dbDatabase::dbErrorClass error, const std::string& text) const {
  if (dbDatabase* database = Database()) {
    database->handleError(error, text.c_str());
  } else {
    dbDatabase().handleError(error, text.c_str());
  }
  return false;
}

int dbAnyCursor::select(dbQuery& query, dbCursorType type) {
  m_type = type;
  return Select(&query);
}

int dbAnyCursor::select(dbQuery& query) { return Select(&query); }

int dbAnyCursor::select(char const* condition, dbCursorType type) {
  m_type = type;
  return select(condition);
}

int dbAnyCursor::select(char const* condition) {
  dbQuery query(condition);
  return Select(&query);
}

int dbAnyCursor::select(dbCursorType type) {
  m_type = type;
  return Select(nullptr);
}

int dbAnyCursor::select() { return Select(nullptr); }

int dbDatabase::select(dbAnyCursor* cursor) { return cursor == nullptr ? 0 : cursor->select(); }

bool dbAnyCursor::Begin(Context*& context, Table*& table, std::shared_ptr<const RowPlan>& plan) {
  reset();
  dbDatabase* database = Database();
  if (database == nullptr)
    return Report(dbDatabase::TableNotFound, "db != NULL: a cursor's table is in no open database");
  context = database->Attached();
  if (context == nullptr) return false;
  table = database->TableOf(m_table);
  if (table == nullptr) return false;
  Status status = m_type == dbCursorForUpdate ? context->BeginWrite() : context->BeginRead();
  if (status) status = context->PlanOf(*table, plan);
  return Report(status);
}

int dbAnyCursor::Select(dbQuery* query) {
  Context* context = nullptr;
  Table* table = nullptr;
  std::shared_ptr<const RowPlan> plan;
  if (!Begin(context, table, plan)) return 0;
  bool loaded = false;
  if (!Report(m_state->selection.Run(*context, *table, plan, query, m_state->row, loaded))) return 0;
  m_state->place = 0;
  if (loaded) {
    Take();
  } else if (m_state->selection.Size() > 0 && !Load()) {
    reset();
  }
  return getNumberOfRecords();
}

bool dbAnyCursor::gotoRow(oid_t oid) {
  Context* context = nullptr;
  Table* table = nullptr;
  std::shared_ptr<const RowPlan> plan;
  if (!Begin(context, table, plan)) return false;
  if (!Report(m_state->selection.RunFor(*context, *table, plan, oid))) return false;
  m_state->place = 0;
  return m_state->selection.Size() > 0 && Load();
}

bool dbAnyCursor::gotoRowByKey(oid_t oid) {
  Context* context = nullptr;
  Table* table = nullptr;
  std::shared_ptr<const RowPlan> plan;
  if (!Begin(context, table, plan)) return false;
  if (!Report(m_state->selection.RunFor(*context, *table, plan, oid, m_record))) return false;
  m_state->place = 0;
  return m_state->selection.Size() > 0 && Load();
}

void dbAnyCursor::Take() {
  m_state->selection.Plan()->Decode(m_state->row.Image(), m_record);
  m_currId = dtsdb::internal::rtdb::RowNumberOf(m_state->row.Key());
  m_state->removed = false;
}

bool dbAnyCursor::Load() {
  bool found = false;
  m_currId = 0;
  if (!Report(m_state->selection.Load(m_state->place, m_state->row, found))) return false;
  if (!found)
    return Report(dbDatabase::NullReferenceError, std::string("table ") + m_table->getName() + ": row has gone");
  Take();
  return true;
}

bool dbAnyCursor::GoTo(std::size_t place) {
  if (place >= m_state->selection.Size()) return false;
  m_state->place = place;
  return Load();
}

bool dbAnyCursor::gotoFirst() { return GoTo(m_state->selection.First()); }
bool dbAnyCursor::gotoLast() { return GoTo(m_state->selection.Last()); }
bool dbAnyCursor::gotoNext() { return GoTo(m_state->selection.After(m_state->place)); }
bool dbAnyCursor::gotoPrev() { return GoTo(m_state->selection.Before(m_state->place)); }

bool dbAnyCursor::gotoNextAvailable() {
  if (!m_state->removed) return gotoNext();
  m_state->removed = false;
  return HasCurrent() && !m_state->removedLast;
}

bool dbAnyCursor::skip(int n) {
  const Selection& selection = m_state->selection;
  std::size_t place = m_state->place;
  for (; n > 0 && place < selection.Size(); --n) place = selection.After(place);
  for (; n < 0 && place < selection.Size(); ++n) place = selection.Before(place);
  return GoTo(place);
}

bool dbAnyCursor::isFirst() const { return HasCurrent() && m_state->place == m_state->selection.First(); }
bool dbAnyCursor::isLast() const { return HasCurrent() && m_state->place == m_state->selection.Last(); }

int dbAnyCursor::getNumberOfRecords() const {
  constexpr std::size_t kMost = std::numeric_limits<int>::max();
  return static_cast<int>(std::min(m_state->selection.Live(), kMost));
}

bool dbAnyCursor::textsStay() const { return HasCurrent() && !m_state->row.IsKept(); }

void dbAnyCursor::RequireCurrent() const {
  if (!HasCurrent()) Report(dbDatabase::CursorError, "currId != 0: the cursor has no current row");
}

bool dbAnyCursor::MayChangeRow(Context*& context, Table*& table) {
  if (m_type != dbCursorForUpdate) {
    return Report(dbDatabase::ReadonlyCursor, "type == dbCursorForUpdate && currId != 0: the cursor is view-only");
  }
  if (!HasCurrent()) {
    return Report(dbDatabase::CursorError, "type == dbCursorForUpdate && currId != 0: the cursor has no current row");
  }
  return MayChange(context, table);
}

bool dbAnyCursor::MayChange(Context*& context, Table*& table) {
  dbDatabase* database = Database();
  if (database == nullptr)
    return Report(dbDatabase::TableNotFound, "db != NULL: a cursor's table is in no open database");
  context = database->Attached();
  table = context == nullptr ? nullptr : database->TableOf(m_table);
  return table != nullptr;
}

void dbAnyCursor::update() {
  Context* context = nullptr;
  Table* table = nullptr;
  if (!MayChangeRow(context, table)) return;
  bool found = false;
  if (!Report(context->Replace(*table, m_state->row, m_record, found))) return;
  if (found) {
    m_state->selection.Plan()->Decode(m_state->row.Image(), m_record);
  } else {
    Report(dbDatabase::NullReferenceError, std::string("table ") + m_table->getName() + ": row to update has gone");
  }
}

void dbAnyCursor::remove() {
  Context* context = nullptr;
  Table* table = nullptr;
  if (!MayChangeRow(context, table)) return;
  bool found = false;
  if (!Report(context->Remove(*table, std::string(m_state->row.Key()), found))) return;
  if (!found) Report(dbDatabase::NullReferenceError, std::string("table ") + m_table->getName() + ": row has gone");
  Selection& selection = m_state->selection;
  const std::size_t removed = m_state->place;
  const std::size_t following = selection.After(removed);
  const bool last = following >= selection.Size();
  const std::size_t next = last ? selection.Before(removed) : following;
  selection.Drop(removed);
  m_currId = 0;
  if (GoTo(next)) {
    m_state->removed = true;
    m_state->removedLast = last;
  }
}

void dbAnyCursor::removeAll() {
  reset();
  if (dbDatabase* database = Database()) {
    database->deleteTable(m_table);
  } else {
    Report(dbDatabase::TableNotFound, "db != NULL: a cursor's table is in no open database");
  }
}

void dbAnyCursor::removeAllSelected() {
  if (m_type != dbCursorForUpdate) {
    Report(dbDatabase::ReadonlyCursor, "type == dbCursorForUpdate: the cursor is view-only");
    return;
  }
  Selection& selection = m_state->selection;
  Context* context = nullptr;
  Table* table = nullptr;
  if (selection.Live() > 0 && MayChange(context, table)) {
    selection.Detach();
    for (std::size_t place = selection.First(); place < selection.Size(); place = selection.After(place)) {
      bool found = false;
      if (!Report(context->Remove(*table, selection.KeyAt(place), found))) break;
    }
  }
  reset();
}

void dbAnyCursor::reset() {
  m_state->selection.Reset();
  m_state->place = 0;
  m_state->removed = false;
}
