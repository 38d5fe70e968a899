#include "rtdb/internal/store.h"

#include <algorithm>
#include <charconv>
#include <cstring>

#include "rtdb/internal/change_number.h"
#include "rtdb/internal/lmdb_value.h"
#include "rtdb/internal/row_order.h"

namespace dtsdb::internal::rtdb {
namespace {

constexpr char kFormatKey[] = "@format";
/// Under it stands the first place for the number of a table's last change that was not given.
constexpr char kPlacesKey[] = "@places";
/// Only in a copy of another store: what the program that keeps it has noted.
constexpr char kCopyKey[] = "@copy";
/// The file's format is this word and a number.
constexpr std::string_view kFormatWord = "realtime-store ";
constexpr int kFormat = 3;
/// Without the numbers of changes.
constexpr int kFormatWithoutChanges = 2;
/// Also without the order of rows and the count of their numbers.
constexpr int kOldestFormat = 1;

/// A transaction for opening tables, ended in any case.
class Opening {
 public:
  Opening(Environment& file, bool write, Status& status) : m_file(file), m_write(write) {
    status = file.Begin(write, m_transaction);
  }
  Opening(const Opening&) = delete;
  Opening& operator=(const Opening&) = delete;
  ~Opening() {
    if (m_transaction != nullptr) m_file.Abort(m_transaction, m_write);
  }
  MDB_txn* Get() const { return m_transaction; }
  /// Table handles opened so far stay valid.
  Status Commit() { return m_file.Commit(std::exchange(m_transaction, nullptr), m_write); }

 private:
  Environment& m_file;
  bool m_write;
  MDB_txn* m_transaction = nullptr;
};

}  // namespace

std::shared_ptr<Store> Store::Open(const std::string& path, Use use, std::size_t sizeLimit,
                                   const std::vector<dbTableDescriptor*>& tables, Status& status) {
  std::shared_ptr<Store> store(new Store);
  store->m_readOnly = use == Use::kRead;
  store->m_keepsCopy = use == Use::kKeepCopy;
  store->m_opensToChange = use != Use::kRead;
  store->m_file = Environment::Open(path, store->m_readOnly, sizeLimit, status);
  if (store->m_file == nullptr) return nullptr;
  static std::atomic<std::uint64_t> openings{0};
  store->m_opening = ++openings;
  for (const dbTableDescriptor* descriptor : tables) {
    store->m_tables.push_back(
        {.name = descriptor->getName(), .descriptor = descriptor, .slot = static_cast<int>(store->m_tables.size())});
  }
  status = store->OpenTables();
  return status ? store : nullptr;
}

Status Store::Refused(const std::string& why) const {
  return Status::Error(dbErrors::DatabaseOpenError, m_file->Path() + ": " + why);
}

Status Store::NotToBeChanged() const {
  return Status::Error(dbErrors::DatabaseReadOnly,
                       m_file->Path() + (m_opensToChange ? ": a copy of another database, which only the program that "
                                                           "keeps it changes ('dtsdb relay follow')"
                                                         : ": opened for reading only"));
}

Status Store::OpenTables() {
  const std::lock_guard lock(m_file->HandleMutex());
  Found found;
  Status status;
  {
    Opening opening(*m_file, false, status);
    if (status) status = FindTables(opening.Get(), found);
    if (status) status = opening.Commit();
  }
  if (found.isCopy && !m_keepsCopy) m_readOnly = true;
  if (!status || m_readOnly || (found.complete && found.format == kFormat)) return status;
  // A program of before that has the file open would go on changing rows without a number.
  SoleUse alone;
  if (found.format != 0 && found.format < kFormat) alone.Take(*m_file);
  if (found.complete && !alone.Held()) return status;
  Opening opening(*m_file, true, status);
  if (status) status = MakeTables(opening.Get(), alone.Held());
  if (status) status = opening.Commit();
  return status;
}

Status Store::FindTables(MDB_txn* transaction, Found& found) {
  int result = mdb_dbi_open(transaction, nullptr, 0, &m_main);
  if (result == MDB_SUCCESS) result = mdb_dbi_open(transaction, kSchemaTree, 0, &m_schemas);
  if (result == MDB_NOTFOUND) {
    MDB_stat stat{};
    result = mdb_stat(transaction, m_main, &stat);
    if (result != MDB_SUCCESS) return Failed(result, "open");
    if (stat.ms_entries > 0) return Refused("not a store of the realtime database");
    return m_readOnly ? Refused("a store without tables") : Status();
  }
  if (result != MDB_SUCCESS) return Failed(result, "open");
  if (Status status = ReadFormat(transaction, found.format); !status) return status;
  // A store is made in one transaction: a list of schemas without a format is somebody else's.
  if (found.format == 0) return Refused("not a store of the realtime database");
  found.complete = found.format > kOldestFormat;
  std::string note;
  if (Status status = CopyNote(transaction, note); !status) return status;
  found.isCopy = !note.empty();
  for (Table& table : m_tables) {
    Schema schema;
    bool present = false;
    bool grown = false;
    if (Status status = ReadSchema(transaction, table.name, schema, present); !status) return status;
    if (!present) {
      found.complete = false;
      continue;
    }
    const std::string refusal = Adopt(schema, *table.descriptor, grown);
    if (!refusal.empty()) return Refused(refusal);
    if (grown) found.complete = false;
    result = mdb_dbi_open(transaction, table.name.c_str(), 0, &table.handle);
    if (result != MDB_SUCCESS) return Failed(result, ("open of table " + table.name).c_str());
    table.present = true;
    if (found.format == kOldestFormat) continue;
    if (Status status = OpenOrder(transaction, table, schema, 0); !status) return status;
    if (HasOrderTree(schema) && !table.ordered) found.complete = false;
  }
  return {};
}

Status Store::MakeTables(MDB_txn* transaction, bool alone) {
  const int result = mdb_dbi_open(transaction, kSchemaTree, MDB_CREATE, &m_schemas);
  if (result != MDB_SUCCESS) return Failed(result, "making of the store");
  int format = 0;
  if (Status status = ReadFormat(transaction, format); !status) return status;
  const int target = format == 0 || alone ? kFormat : std::max(format, kFormatWithoutChanges);
  bool changed = format != target;
  if (changed) {
    if (Status status = Upgrade(transaction, format, target); !status) return status;
  }
  for (Table& table : m_tables) {
    if (Status status = MakeTable(transaction, table, target, changed); !status) return status;
  }
  return changed ? RaiseGeneration(transaction) : Status();
}

Status Store::MakeTable(MDB_txn* transaction, Table& table, int format, bool& changed) {
  Schema schema;
  bool found = false;
  bool grown = false;
  if (Status status = ReadSchema(transaction, table.name, schema, found); !status) return status;
  if (!found) schema = SchemaOf(*table.descriptor);
  const std::string refusal = Adopt(schema, *table.descriptor, grown);
  if (!refusal.empty()) return Refused(refusal);
  if (!found && format == kFormat) {
    if (Status status = GiveChangePlace(transaction, schema); !status) return status;
  }
  if (!found || grown) {
    changed = true;
    if (Status status = WriteSchema(transaction, table.name, schema); !status) return status;
  }
  const int result = mdb_dbi_open(transaction, table.name.c_str(), MDB_CREATE, &table.handle);
  if (result != MDB_SUCCESS) return Failed(result, ("making of table " + table.name).c_str());
  table.present = true;
  return OpenOrder(transaction, table, schema, MDB_CREATE);
}

Status Store::OpenOrder(MDB_txn* transaction, Table& table, const Schema& schema, unsigned flags) {
  if (!HasOrderTree(schema)) return {};
  MDB_stat rows{};
  MDB_stat numbers{};
  int result = mdb_dbi_open(transaction, OrderTreeName(table.name).c_str(), flags, &table.order);
  if (result == MDB_SUCCESS) result = mdb_stat(transaction, table.handle, &rows);
  if (result == MDB_SUCCESS) result = mdb_stat(transaction, table.order, &numbers);
  table.ordered = result == MDB_SUCCESS && rows.ms_entries == numbers.ms_entries;
  if (result == MDB_SUCCESS && !table.ordered && flags == MDB_CREATE) {
    result = BuildOrder(transaction, table.handle, table.order);
    table.ordered = true;
  }
  return result == MDB_SUCCESS ? Status() : Failed(result, ("open of the order of table " + table.name).c_str());
}

Status Store::ReadFormat(MDB_txn* transaction, int& format) {
  MDB_val key = Val(kFormatKey);
  MDB_val data{};
  format = 0;
  const int result = mdb_get(transaction, m_schemas, &key, &data);
  if (result == MDB_NOTFOUND) return {};
  if (result != MDB_SUCCESS) return Failed(result, "open");
  const std::string_view text = View(data);
  if (!text.starts_with(kFormatWord)) return Refused("not a store of the realtime database");
  std::from_chars(text.data() + kFormatWord.size(), text.data() + text.size(), format);
  if (format >= kOldestFormat && format <= kFormat) return {};
  return Refused("written in the newer file format " + std::string(text) + "; this program knows " +
                 std::to_string(kFormat));
}

Status Store::WriteFormat(MDB_txn* transaction, int format) {
  std::string text(kFormatWord);
  text += std::to_string(format);
  MDB_val key = Val(kFormatKey);
  MDB_val data = Val(text);
  const int result = mdb_put(transaction, m_schemas, &key, &data, 0);
  return result == MDB_SUCCESS ? Status() : Failed(result, "making of the store");
}

Status Store::Upgrade(MDB_txn* transaction, int from, int to) {
  std::vector<std::string> tables;
  MDB_cursor* cursor = nullptr;
  int result = mdb_cursor_open(transaction, m_schemas, &cursor);
  if (result != MDB_SUCCESS) return Failed(result, "open");
  MDB_val key{};
  MDB_val data{};
  while ((result = mdb_cursor_get(cursor, &key, &data, MDB_NEXT)) == MDB_SUCCESS) {
    if (!View(key).starts_with('@')) tables.emplace_back(View(key));
  }
  mdb_cursor_close(cursor);
  if (result != MDB_NOTFOUND) return Failed(result, "open");
  for (const std::string& name : tables) {
    if (Status status = Upgrade(transaction, name, from, to); !status) return status;
  }
  return WriteFormat(transaction, to);
}

Status Store::Upgrade(MDB_txn* transaction, const std::string& name, int from, int to) {
  Schema schema;
  bool found = false;
  if (Status status = ReadSchema(transaction, name, schema, found); !status) return status;
  if (from == kOldestFormat) {
    Table table;
    table.name = name;
    const int result = mdb_dbi_open(transaction, name.c_str(), 0, &table.handle);
    if (result != MDB_SUCCESS) return Failed(result, ("open of table " + name).c_str());
    if (Status status = OpenOrder(transaction, table, schema, MDB_CREATE); !status) return status;
  }
  if (to != kFormat || schema.changePlace) return {};
  if (Status status = GiveChangePlace(transaction, schema); !status) return status;
  return WriteSchema(transaction, name, schema);
}

Status Store::GiveChangePlace(MDB_txn* transaction, Schema& schema) {
  std::uint64_t next = 0;
  if (Status status = ReadNumber(transaction, kPlacesKey, next); !status) return status;
  if (next >= Schema::kMostPlaces) return {};
  schema.changePlace = static_cast<std::uint32_t>(next);
  return WriteNumber(transaction, kPlacesKey, next + 1);
}

Status Store::ReadSchema(MDB_txn* transaction, const std::string& table, Schema& schema, bool& found) {
  MDB_val key = Val(table);
  MDB_val data{};
  const int result = mdb_get(transaction, m_schemas, &key, &data);
  found = result == MDB_SUCCESS;
  if (result == MDB_NOTFOUND) return {};
  if (result != MDB_SUCCESS) return Failed(result, "reading the columns of a table");
  auto read = Schema::FromText(View(data));
  if (!read) return Refused("the columns of table " + table + " are damaged");
  schema = std::move(*read);
  return {};
}

Status Store::WriteSchema(MDB_txn* transaction, const std::string& table, const Schema& schema) {
  const std::string text = schema.ToText();
  MDB_val key = Val(table);
  MDB_val data = Val(text);
  const int result = mdb_put(transaction, m_schemas, &key, &data, 0);
  return result == MDB_SUCCESS ? Status() : Failed(result, "writing the columns of a table");
}

Status Store::ReadNumber(MDB_txn* transaction, std::string_view key, std::uint64_t& number) {
  MDB_val at = Val(key);
  MDB_val data{};
  number = 0;
  const int result = mdb_get(transaction, m_schemas, &at, &data);
  if (result == MDB_NOTFOUND) return {};
  if (result != MDB_SUCCESS) return Failed(result, "begin of a transaction");
  if (data.mv_size == sizeof(number)) std::memcpy(&number, data.mv_data, sizeof(number));
  return {};
}

Status Store::WriteNumber(MDB_txn* transaction, std::string_view key, std::uint64_t number) {
  MDB_val at = Val(key);
  MDB_val data{sizeof(number), &number};
  const int result = mdb_put(transaction, m_schemas, &at, &data, 0);
  return result == MDB_SUCCESS ? Status() : Failed(result, "writing the columns of a table");
}

Status Store::RaiseGeneration(MDB_txn* transaction) {
  std::uint64_t generation = 0;
  if (Status status = ReadGeneration(transaction, generation); !status) return status;
  return WriteNumber(transaction, kGenerationKey, generation + 1);
}

Status Store::FirstRowNumber(MDB_txn* transaction, oid_t& number) {
  std::uint64_t given = 0;
  if (Status status = ReadNumber(transaction, kRowNumbersKey, given); !status) return status;
  number = std::max<oid_t>(given, mdb_txn_id(transaction) * m_rowsPerTransaction);
  return {};
}

Status Store::NoteRowNumbers(MDB_txn* transaction, oid_t end) {
  if (end <= (mdb_txn_id(transaction) + 1) * m_rowsPerTransaction) return {};
  return WriteNumber(transaction, kRowNumbersKey, end);
}

Status Store::NoteChanges(MDB_txn* transaction, const std::vector<std::uint32_t>& places) {
  const int result = PutChangeNumber(transaction, m_main, places);
  return result == MDB_SUCCESS ? Status() : Failed(result, "noting which tables have changed");
}

Status Store::LastChange(MDB_txn* transaction, std::uint32_t place, std::uint64_t& number) {
  const int result = GetChangeNumber(transaction, m_main, place, number);
  return result == MDB_SUCCESS ? Status() : Failed(result, "looking which tables have changed");
}

Status Store::LoadPlan(MDB_txn* transaction, const Table& table, TablePlan& plan) {
  Schema schema;
  bool found = false;
  bool grown = false;
  if (Status status = ReadSchema(transaction, table.name, schema, found); !status) return status;
  if (!found && !m_readOnly) {
    plan.refusal = "table " + table.name + " has gone from the store";
    return {};
  }
  if (!found) schema = SchemaOf(*table.descriptor);
  plan.changePlace = schema.changePlace;
  plan.refusal = Adopt(schema, *table.descriptor, grown);
  if (plan.refusal.empty() && grown && !m_readOnly) plan.refusal = "table " + table.name + " has lost columns";
  if (plan.refusal.empty()) plan.plan = std::make_shared<RowPlan>(std::move(schema), *table.descriptor);
  return {};
}

Status Store::Plans(MDB_txn* transaction, std::shared_ptr<const PlanSet>& known) {
  std::uint64_t generation = 0;
  if (Status status = ReadGeneration(transaction, generation); !status) return status;
  if (known != nullptr && known->generation == generation) return {};
  const std::lock_guard lock(m_mutex);
  if (m_plans == nullptr || m_plans->generation != generation) {
    auto plans = std::make_shared<PlanSet>();
    plans->generation = generation;
    std::string note;
    if (Status status = CopyNote(transaction, note); !status) return status;
    plans->isCopy = !note.empty();
    plans->tables.resize(m_tables.size());
    for (const Table& table : m_tables) {
      if (Status status = LoadPlan(transaction, table, plans->tables[static_cast<std::size_t>(table.slot)]); !status) {
        return status;
      }
    }
    m_plans = std::move(plans);
  }
  known = m_plans;
  return {};
}

Status Store::CopyNote(MDB_txn* transaction, std::string& note) {
  MDB_val key = Val(kCopyKey);
  MDB_val data{};
  note.clear();
  const int result = mdb_get(transaction, m_schemas, &key, &data);
  if (result == MDB_SUCCESS) note = View(data);
  return result == MDB_SUCCESS || result == MDB_NOTFOUND ? Status() : Failed(result, "reading how far a copy has come");
}

Status Store::SetCopyNote(MDB_txn* transaction, std::string_view note) {
  std::string before;
  if (Status status = CopyNote(transaction, before); !status) return status;
  MDB_val key = Val(kCopyKey);
  MDB_val data = Val(note);
  int result = MDB_SUCCESS;
  if (!note.empty()) result = mdb_put(transaction, m_schemas, &key, &data, 0);
  if (note.empty() && !before.empty()) result = mdb_del(transaction, m_schemas, &key, nullptr);
  if (result != MDB_SUCCESS) return Failed(result, "noting how far a copy has come");
  return note.empty() == before.empty() ? Status() : RaiseGeneration(transaction);
}

Status Store::MarkLongKeys(MDB_txn* transaction, const Table& table) {
  Schema schema;
  bool found = false;
  if (Status status = ReadSchema(transaction, table.name, schema, found); !status) return status;
  if (!found || schema.longKeys) return {};
  schema.longKeys = true;
  if (Status status = WriteSchema(transaction, table.name, schema); !status) return status;
  return RaiseGeneration(transaction);
}

}  // namespace dtsdb::internal::rtdb
