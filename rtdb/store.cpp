#include "rtdb/store.h"

#include <charconv>
#include <cstring>

#include "rtdb/lmdb_value.h"

namespace dtsdb::rtdb {
namespace {

constexpr char kSchemaTree[] = "@schema";
constexpr char kFormatKey[] = "@format";
constexpr char kGenerationKey[] = "@generation";
/// The file's format is this word and a number.
constexpr std::string_view kFormatWord = "realtime-store ";
constexpr int kFormat = 1;

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

std::shared_ptr<Store> Store::Open(const std::string& path, bool readOnly, std::size_t sizeLimit,
                                   const std::vector<dbTableDescriptor*>& tables, Status& status) {
  std::shared_ptr<Store> store(new Store);
  store->m_file = Environment::Open(path, readOnly, sizeLimit, status);
  if (store->m_file == nullptr) return nullptr;
  store->m_readOnly = readOnly;
  for (const dbTableDescriptor* descriptor : tables) {
    store->m_tables.push_back({descriptor->getName(), descriptor, static_cast<int>(store->m_tables.size()), 0, false});
  }
  status = store->OpenTables();
  return status ? store : nullptr;
}

Status Store::Refused(const std::string& why) const {
  return Status::Error(dbDatabase::DatabaseOpenError, m_file->Path() + ": " + why);
}

Status Store::OpenTables() {
  const std::lock_guard lock(m_file->HandleMutex());
  bool complete = false;
  Status status;
  {
    Opening opening(*m_file, false, status);
    if (status) status = FindTables(opening.Get(), complete);
    if (status) status = opening.Commit();
  }
  if (!status || complete || m_readOnly) return status;
  Opening opening(*m_file, true, status);
  if (status) status = MakeTables(opening.Get());
  if (status) status = opening.Commit();
  return status;
}

Status Store::FindTables(MDB_txn* transaction, bool& complete) {
  complete = false;
  int result = mdb_dbi_open(transaction, kSchemaTree, 0, &m_schemas);
  if (result == MDB_NOTFOUND) {
    MDB_dbi root = 0;
    MDB_stat stat{};
    result = mdb_dbi_open(transaction, nullptr, 0, &root);
    if (result == MDB_SUCCESS) result = mdb_stat(transaction, root, &stat);
    if (result != MDB_SUCCESS) return Failed(result, "open");
    if (stat.ms_entries > 0) return Refused("not a store of the realtime database");
    return m_readOnly ? Refused("a store without tables") : Status();
  }
  if (result != MDB_SUCCESS) return Failed(result, "open");
  if (Status status = CheckFormat(transaction); !status) return status;
  complete = true;
  for (Table& table : m_tables) {
    Schema schema;
    bool found = false;
    bool grown = false;
    if (Status status = ReadSchema(transaction, table.name, schema, found); !status) return status;
    if (!found) {
      complete = false;
      continue;
    }
    const std::string refusal = Adopt(schema, *table.descriptor, grown);
    if (!refusal.empty()) return Refused(refusal);
    if (grown) complete = false;
    result = mdb_dbi_open(transaction, table.name.c_str(), 0, &table.handle);
    if (result != MDB_SUCCESS) return Failed(result, ("open of table " + table.name).c_str());
    table.present = true;
  }
  return {};
}

Status Store::MakeTables(MDB_txn* transaction) {
  const int result = mdb_dbi_open(transaction, kSchemaTree, MDB_CREATE, &m_schemas);
  if (result != MDB_SUCCESS) return Failed(result, "making of the store");
  if (Status status = CheckFormat(transaction); !status) return status;
  bool changed = false;
  for (Table& table : m_tables) {
    if (Status status = MakeTable(transaction, table, changed); !status) return status;
  }
  return changed ? RaiseGeneration(transaction) : Status();
}

Status Store::MakeTable(MDB_txn* transaction, Table& table, bool& changed) {
  Schema schema;
  bool found = false;
  bool grown = false;
  if (Status status = ReadSchema(transaction, table.name, schema, found); !status) return status;
  if (!found) schema = SchemaOf(*table.descriptor);
  const std::string refusal = Adopt(schema, *table.descriptor, grown);
  if (!refusal.empty()) return Refused(refusal);
  if (!found || grown) {
    changed = true;
    if (Status status = WriteSchema(transaction, table.name, schema); !status) return status;
  }
  const int result = mdb_dbi_open(transaction, table.name.c_str(), MDB_CREATE, &table.handle);
  if (result != MDB_SUCCESS) return Failed(result, ("making of table " + table.name).c_str());
  table.present = true;
  return {};
}

Status Store::CheckFormat(MDB_txn* transaction) {
  MDB_val key = Val(kFormatKey);
  MDB_val data{};
  int result = mdb_get(transaction, m_schemas, &key, &data);
  if (result == MDB_SUCCESS) {
    const std::string_view text = View(data);
    int format = 0;
    if (!text.starts_with(kFormatWord)) return Refused("not a store of the realtime database");
    std::from_chars(text.data() + kFormatWord.size(), text.data() + text.size(), format);
    if (format == kFormat) return {};
    return Refused("written in the newer file format " + std::string(text) + "; this program knows " +
                   std::to_string(kFormat));
  }
  if (result != MDB_NOTFOUND) return Failed(result, "open");
  const std::string text = std::string(kFormatWord) + std::to_string(kFormat);
  data = Val(text);
  result = mdb_put(transaction, m_schemas, &key, &data, 0);
  // A store is made in one transaction: a list of schemas without a format is somebody else's.
  if (result == EACCES) return Refused("not a store of the realtime database");
  return result == MDB_SUCCESS ? Status() : Failed(result, "making of the store");
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

Status Store::ReadGeneration(MDB_txn* transaction, std::uint64_t& generation) {
  MDB_val key = Val(kGenerationKey);
  MDB_val data{};
  generation = 0;
  const int result = mdb_get(transaction, m_schemas, &key, &data);
  if (result == MDB_NOTFOUND) return {};
  if (result != MDB_SUCCESS) return Failed(result, "begin of a transaction");
  if (data.mv_size == sizeof(generation)) std::memcpy(&generation, data.mv_data, sizeof(generation));
  return {};
}

Status Store::RaiseGeneration(MDB_txn* transaction) {
  std::uint64_t generation = 0;
  if (Status status = ReadGeneration(transaction, generation); !status) return status;
  ++generation;
  MDB_val key = Val(kGenerationKey);
  MDB_val data{sizeof(generation), &generation};
  const int result = mdb_put(transaction, m_schemas, &key, &data, 0);
  return result == MDB_SUCCESS ? Status() : Failed(result, "writing the columns of a table");
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

Status Store::MarkLongKeys(MDB_txn* transaction, const Table& table) {
  Schema schema;
  bool found = false;
  if (Status status = ReadSchema(transaction, table.name, schema, found); !status) return status;
  if (!found || schema.longKeys) return {};
  schema.longKeys = true;
  if (Status status = WriteSchema(transaction, table.name, schema); !status) return status;
  return RaiseGeneration(transaction);
}

}  // namespace dtsdb::rtdb
