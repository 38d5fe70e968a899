#include "rtdb/internal/context.h"

#include <algorithm>

#include "rtdb/internal/key_code.h"
#include "rtdb/internal/lmdb_value.h"
#include "rtdb/internal/row_order.h"

namespace dtsdb::internal::rtdb {
namespace {

using Contexts = std::vector<std::unique_ptr<Context>>;

/// The calling thread's contexts, null before the first and after the thread's end has begun.
thread_local Contexts* t_contexts = nullptr;

/// Rolls back what a thread has left open when it ends.
struct ThreadEnd {
  ThreadEnd() = default;
  ThreadEnd(const ThreadEnd&) = delete;
  ThreadEnd& operator=(const ThreadEnd&) = delete;
  ~ThreadEnd() { delete std::exchange(t_contexts, nullptr); }
};
thread_local ThreadEnd t_end;

}  // namespace

Context* Context::Find(const Store* store) {
  if (t_contexts == nullptr) return nullptr;
  for (const auto& context : *t_contexts) {
    if (context->m_store.get() == store) return context.get();
  }
  return nullptr;
}

Context& Context::Attach(const std::shared_ptr<Store>& store) {
  if (Context* context = Find(store.get())) return *context;
  if (t_contexts == nullptr) {
    static_cast<void>(&t_end);
    t_contexts = new Contexts;
  }
  // Databases that other threads have closed meanwhile.
  std::erase_if(*t_contexts, [](const auto& context) { return context->m_store->Closed(); });
  t_contexts->push_back(std::make_unique<Context>(store));
  return *t_contexts->back();
}

void Context::Detach(const Store* store) {
  if (t_contexts == nullptr) return;
  std::erase_if(*t_contexts,
                [store](const auto& context) { return context->m_store.get() == store || context->m_store->Closed(); });
}

Context::Context(std::shared_ptr<Store> store) : m_store(std::move(store)), m_uses(m_store->TableCount()) {}

Context::~Context() {
  Rollback();
  for (RowStream* stream : m_linked) stream->ContextEnded();
  if (!m_store->File().OfThisProcess()) return;
  for (TableUse& use : m_uses) {
    if (use.readCursor != nullptr) mdb_cursor_close(use.readCursor);
  }
  if (m_read != nullptr) m_store->File().Free(m_read);
}

Status Context::BeginRead() {
  if (m_failed) return Status::AlreadyReported();
  if (Transaction() != nullptr) return {};
  Environment& file = m_store->File();
  Status status = m_read == nullptr ? file.Begin(false, m_read) : file.Renew(m_read);
  if (!status) return status;
  m_reading = true;
  ++m_readSerial;
  status = m_store->Plans(m_read, m_plans);
  if (!status) EndRead();
  return status;
}

Status Context::BeginWrite() {
  if (m_failed) return Status::AlreadyReported();
  if (m_write != nullptr) return {};
  if (m_store->ReadOnly()) return m_store->NotToBeChanged();
  // From here on everything goes through the write transaction; open walks take along which rows they still have to do.
  DetachStreams();
  KeepRows();
  if (m_reading) EndRead();
  Status status = m_store->File().Begin(true, m_write);
  if (!status) {
    m_write = nullptr;
    return status;
  }
  // What was read before may have changed since.
  for (TableUse& use : m_uses) ++use.changes;
  status = m_store->Plans(m_write, m_plans);
  if (status && m_plans->isCopy && !m_store->KeepsCopy()) status = m_store->NotToBeChanged();
  if (status) status = m_store->FirstRowNumber(m_write, m_nextRow);
  if (!status) Rollback();
  return status;
}

Status Context::Commit() {
  ResetStreams();
  Status status;
  if (m_write != nullptr) {
    status = CommitWrite();
  } else if (m_reading) {
    EndRead();
  }
  if (m_failed) {
    status = Status::Error(dbErrors::FileError,
                           m_store->File().Path() + ": nothing committed, since a change in the transaction failed");
  }
  m_failed = false;
  return status;
}

Status Context::CommitWrite() {
  const std::uint64_t number = mdb_txn_id(m_write);
  bool changed = false;
  Status status = m_store->NoteRowNumbers(m_write, m_nextRow);
  if (status) status = NoteChanges(changed);
  MDB_txn* const ending = m_write;
  ForgetWrite();  // first: where memory fails, the end of a transaction leaves by an exception
  if (status) {
    status = m_store->File().Commit(ending, true);
  } else {
    m_store->File().Abort(ending, true);
  }
  if (status && changed) m_lastCommit = number;
  return status;
}

Status Context::NoteChanges(bool& any) {
  m_places.clear();
  for (std::size_t slot = 0; slot < m_uses.size(); ++slot) {
    if (!m_uses[slot].changed) continue;
    any = true;
    const auto& place = m_plans->tables[slot].changePlace;
    if (place) m_places.push_back(*place);
  }
  return m_store->NoteChanges(m_write, m_places);
}

Status Context::ChangeNumber(const Table& table, std::uint64_t& number) {
  number = 0;
  if (Status status = BeginRead(); !status) return status;
  std::shared_ptr<const RowPlan> plan;
  if (Status status = PlanOf(table, plan); !status) return status;
  const auto& place = m_plans->tables[static_cast<std::size_t>(table.slot)].changePlace;
  if (!place) return {};
  if (m_write == nullptr || !Use(table).changed) return m_store->LastChange(Transaction(), *place, number);
  number = mdb_txn_id(m_write);
  return {};
}

Status Context::CopyNote(std::string& note) {
  if (Status status = BeginRead(); !status) return status;
  return m_store->CopyNote(Transaction(), note);
}

Status Context::SetCopyNote(std::string_view note) {
  if (!m_store->KeepsCopy()) {
    return Status::Error(dbErrors::DatabaseReadOnly, m_store->File().Path() + ": not opened to be kept as a copy");
  }
  if (Status status = BeginWrite(); !status) return status;
  return m_store->SetCopyNote(m_write, note);
}

void Context::Rollback() {
  ResetStreams();
  if (m_write != nullptr) {
    m_store->File().Abort(m_write, true);
    ForgetWrite();
  } else if (m_reading) {
    EndRead();
  }
  m_failed = false;
}

void Context::EndRead() {
  m_store->File().Reset(m_read);
  m_reading = false;
}

void Context::ForgetWrite() {
  m_write = nullptr;
  for (TableUse& use : m_uses) {
    use.writeCursor = use.orderCursor = nullptr;
    use.longKeys = false;
    use.changed = false;
    use.highestKnown = false;
    use.moved.clear();
    ++use.changes;
    ++use.place;
  }
}

void Context::KeepRows() {
  for (RowStream* stream : m_linked) stream->KeepRow();
}

void Context::ResetStreams() {
  KeepRows();
  for (RowStream* stream : m_linked) stream->Reset();
}

void Context::DetachStreams() {
  while (!m_open.empty()) m_open.back()->Detach();
}

Status Context::PlanOf(const Table& table, std::shared_ptr<const RowPlan>& plan) const {
  const TablePlan& found = m_plans->tables[static_cast<std::size_t>(table.slot)];
  if (!found.refusal.empty()) {
    return Status::Error(dbErrors::DatabaseOpenError, m_store->File().Path() + ": " + found.refusal);
  }
  plan = found.plan;
  return {};
}

Status Context::CursorOf(const Table& table, MDB_cursor*& cursor) {
  TableUse& use = Use(table);
  ++use.place;
  int result = MDB_SUCCESS;
  if (m_write != nullptr) {
    if (use.writeCursor == nullptr) result = mdb_cursor_open(m_write, table.handle, &use.writeCursor);
    cursor = use.writeCursor;
  } else {
    if (use.readCursor == nullptr) {
      result = mdb_cursor_open(m_read, table.handle, &use.readCursor);
    } else if (use.readSerial != m_readSerial) {
      result = mdb_cursor_renew(m_read, use.readCursor);
    }
    use.readSerial = m_readSerial;
    cursor = use.readCursor;
  }
  return result == MDB_SUCCESS ? Status() : Failed(result, "going to a row");
}

Status Context::FindRow(const Table& table, std::string& key, std::string_view& image, bool& found) {
  MDB_cursor* cursor = nullptr;
  found = false;
  if (Status status = CursorOf(table, cursor); !status) return status;
  MDB_val at = Val(key);
  MDB_val data{};
  int result = mdb_cursor_get(cursor, &at, &data, MDB_SET_KEY);
  if (result == MDB_NOTFOUND) {
    const auto& moved = Use(table).moved;
    const auto known = moved.empty() ? moved.end() : moved.find(RowNumberOf(key));
    if (known == moved.end() || known->second == key) return {};
    key = known->second;
    at = Val(key);
    result = mdb_cursor_get(cursor, &at, &data, MDB_SET_KEY);
    if (result == MDB_NOTFOUND) return {};
  }
  if (result != MDB_SUCCESS) return Failed(result, "reading a row");
  found = true;
  image = View(data);
  return {};
}

Status Context::KeyOf(const Table& table, oid_t number, std::string& key, bool& found) {
  MDB_val at{};
  MDB_val data{};
  found = false;
  if (table.ordered) {
    std::string form;
    AppendRowNumber(form, number);
    at = Val(form);
    const int result = mdb_get(Transaction(), table.order, &at, &data);
    if (result != MDB_SUCCESS && result != MDB_NOTFOUND) return Failed(result, "going to a row");
    found = result == MDB_SUCCESS;
    if (found) key = View(data);
    return {};
  }
  MDB_cursor* cursor = nullptr;
  if (Status status = CursorOf(table, cursor); !status) return status;
  int result = mdb_cursor_get(cursor, &at, &data, MDB_FIRST);
  while (result == MDB_SUCCESS && RowNumberOf(View(at)) != number) {
    result = mdb_cursor_get(cursor, &at, &data, MDB_NEXT);
  }
  if (result != MDB_SUCCESS && result != MDB_NOTFOUND) return Failed(result, "going to a row");
  found = result == MDB_SUCCESS;
  if (found) key = View(at);
  return {};
}

Status Context::BeginChange(const Table& table, std::shared_ptr<const RowPlan>& plan) {
  if (Status status = BeginWrite(); !status) return status;
  if (Status status = PlanOf(table, plan); !status) return status;
  // Walks over this table go on over the rows they selected, not over what the change makes of the table.
  for (std::size_t i = m_open.size(); i-- > 0;) {
    if (m_open[i]->IsOver(table)) m_open[i]->Detach();
  }
  return {};
}

Status Context::GiveUp(int result, const char* operation) {
  Status status = Failed(result, operation);
  Rollback();
  m_failed = true;
  return status;
}

Status Context::NoteLongKey(const Table& table, const RowPlan& plan) {
  TableUse& use = Use(table);
  if (use.longKeys || plan.TableSchema().longKeys) return {};
  use.longKeys = true;
  return m_store->MarkLongKeys(m_write, table);
}

Status Context::PutNew(const Table& table, std::string& key, std::string_view image) {
  MDB_cursor* cursor = nullptr;
  if (Status status = CursorOf(table, cursor); !status) return status;
  TableUse& use = Use(table);
  if (!use.highestKnown) {
    MDB_val last{};
    MDB_val data{};
    use.highest.clear();
    if (mdb_cursor_get(cursor, &last, &data, MDB_LAST) == MDB_SUCCESS) use.highest = View(last);
    use.highestKnown = true;
  }
  MDB_val at = Val(key);
  MDB_val data = Val(image);
  int result = MDB_KEYEXIST;
  if (key > use.highest) {
    // Rows that come in order fill their pages.
    result = mdb_cursor_put(cursor, &at, &data, MDB_APPEND);
    if (result == MDB_SUCCESS) use.highest = key;
  }
  if (result == MDB_KEYEXIST) result = mdb_cursor_put(cursor, &at, &data, MDB_NOOVERWRITE);
  if (result == MDB_SUCCESS && table.ordered) result = NoteOrder(table, key);
  if (result != MDB_SUCCESS) return GiveUp(result, "writing a row");
  RowsChanged(use);
  return {};
}

int Context::NoteOrder(const Table& table, std::string_view key) {
  MDB_cursor*& cursor = Use(table).orderCursor;
  const int result = cursor == nullptr ? mdb_cursor_open(m_write, table.order, &cursor) : MDB_SUCCESS;
  return result == MDB_SUCCESS ? PutOrder(cursor, key) : result;
}

Status Context::Insert(const Table& table, const void* record, oid_t& number) {
  number = 0;
  if (Status status = BeginWrite(); !status) return status;
  const oid_t next = m_nextRow;
  if (Status status = InsertAs(table, record, next); !status) return status;
  number = next;
  return {};
}

Status Context::InsertAs(const Table& table, const void* record, oid_t number) {
  std::shared_ptr<const RowPlan> plan;
  if (Status status = BeginChange(table, plan); !status) return status;
  const bool shortened = plan->Key(record, m_key);
  if (shortened) {
    if (Status status = NoteLongKey(table, *plan); !status) return status;
  }
  plan->Encode(record, m_image);
  AppendRowNumber(m_key, number);
  if (Status status = PutNew(table, m_key, m_image); !status) return status;
  m_nextRow = std::max(m_nextRow, number + 1);
  return {};
}

Status Context::Replace(const Table& table, LoadedRow& row, const void* record, bool& found) {
  std::shared_ptr<const RowPlan> plan;
  found = false;
  if (Status status = BeginChange(table, plan); !status) return status;
  // First of all, since texts of the record may lie in row.image.
  plan->Encode(record, m_image);
  const bool shortened = plan->Key(record, m_key);
  // The loaded image is the stored one, and the table's cursor stands on it, unless something came in between.
  TableUse& use = Use(table);
  bool standsThere = row.changes == use.changes && row.place == use.place;
  if (row.changes != use.changes) {
    std::string key(row.Key());
    std::string_view stored;
    if (Status status = FindRow(table, key, stored, found); !status || !found) return status;
    row.Keep(key, stored);
    standsThere = true;
  }
  found = true;
  if (m_image != row.Image()) {
    AppendRowNumber(m_key, RowNumberOf(row.Key()));
    if (shortened) {
      if (Status status = NoteLongKey(table, *plan); !status) return status;
    }
    if (Status status = Put(table, row, standsThere); !status) return status;
    row.Keep(m_key, m_image);
  }
  row.changes = use.changes;
  row.place = standsThere ? use.place : kNowhere;
  return {};
}

Status Context::Put(const Table& table, const LoadedRow& row, bool& standsThere) {
  TableUse& use = Use(table);
  MDB_val key = Val(row.Key());
  MDB_val data = Val(m_image);
  if (m_key == row.Key()) {
    const int result = standsThere ? mdb_cursor_put(use.writeCursor, &key, &data, MDB_CURRENT)
                                   : mdb_put(m_write, table.handle, &key, &data, 0);
    if (result != MDB_SUCCESS) return GiveUp(result, "writing a row");
    RowsChanged(use);
    return {};
  }
  const int result = mdb_del(m_write, table.handle, &key, nullptr);
  if (result != MDB_SUCCESS) return GiveUp(result, "writing a row");
  if (Status status = PutNew(table, m_key, m_image); !status) return status;
  standsThere = true;
  use.moved[RowNumberOf(m_key)] = m_key;
  return {};
}

Status Context::Remove(const Table& table, std::string key, bool& found) {
  std::shared_ptr<const RowPlan> plan;
  found = false;
  if (Status status = BeginChange(table, plan); !status) return status;
  std::string_view image;
  if (Status status = FindRow(table, key, image, found); !status || !found) return status;
  int result = mdb_cursor_del(Use(table).writeCursor, 0);
  if (result == MDB_SUCCESS && table.ordered) result = DeleteOrder(m_write, table.order, key);
  if (result != MDB_SUCCESS) return GiveUp(result, "removing a row");
  RowsChanged(Use(table));
  return {};
}

Status Context::RemoveAll(const Table& table) {
  std::shared_ptr<const RowPlan> plan;
  if (Status status = BeginChange(table, plan); !status) return status;
  MDB_stat rows{};
  int result = mdb_stat(m_write, table.handle, &rows);
  if (result == MDB_SUCCESS && rows.ms_entries == 0) return {};
  if (result == MDB_SUCCESS) result = mdb_drop(m_write, table.handle, 0);
  if (result == MDB_SUCCESS && table.ordered) result = mdb_drop(m_write, table.order, 0);
  if (result != MDB_SUCCESS) return GiveUp(result, "emptying a table");
  TableUse& use = Use(table);
  use.highestKnown = false;
  RowsChanged(use);
  ++use.place;
  return {};
}

void Context::Unlink(RowStream* stream) {
  StreamClosed(stream);
  std::erase(m_linked, stream);
}

}  // namespace dtsdb::internal::rtdb
