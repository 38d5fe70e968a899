#include "python/core/realtime.h"

#include <unistd.h>

#include "formats/catalog.h"
#include "model/table_info.h"
#include "model/text.h"
#include "python/core/errors.h"

namespace dtsdb::python {
namespace {

using tools::RealtimeDatabase;
using tools::StoredTable;
using tools::StoredTableOf;

StoredValue ValueOf(const ColumnInfo& column, const void* row) {
  switch (column.type) {
    case ColumnType::kText:
      return IdFromBytes(column.In<char const*>(row));
    case ColumnType::kInt4:
      return std::int64_t{column.In<int4>(row)};
    case ColumnType::kNat4:
      return std::int64_t{column.In<nat4>(row)};
    case ColumnType::kReal4:
      return double{column.In<real4>(row)};
    case ColumnType::kReal8:
      return column.In<real8>(row);
    case ColumnType::kBytes:
      break;
  }
  return QByteArray(&column.In<char>(row), static_cast<qsizetype>(column.size));
}

const char* TypeOf(const ColumnInfo& column, const TableInfo& table) {
  if (column.type == ColumnType::kBytes) return "bytes";
  if (column.field != ColumnInfo::kNoField) {
    return TypeName(table.fields()[static_cast<std::size_t>(column.field)].type);
  }
  constexpr const char* kNames[] = {"text", "i32", "u32", "f32", "f64"};
  return kNames[static_cast<std::size_t>(column.type)];
}

std::vector<StoredRow> Read(const StoredTable& table, dbDatabase* db) {
  std::vector<StoredRow> rows;
  table.ForEachRow(db, [&](const void* row) {
    StoredRow& values = rows.emplace_back();
    for (const ColumnInfo& column : table.Columns()) values.push_back(ValueOf(column, row));
  });
  return rows;
}

}  // namespace

class Realtime::Turn {
 public:
  explicit Turn(Realtime& owner) : m_owner(owner), m_lock(owner.m_mutex) {
    if (owner.m_process != ::getpid()) {
      RefuseCall(owner.m_name + ": the database was opened by another process; open it in this one", owner.m_name);
    }
    if (owner.m_isClosed) RefuseCall(owner.m_name + ": the database is closed; open it again", owner.m_name);
    if (!owner.m_database) owner.Open();
    owner.m_database->Db()->attach();
  }
  Turn(const Turn&) = delete;
  Turn& operator=(const Turn&) = delete;
  ~Turn() {
    if (m_isDone) {
      m_owner.m_database->Db()->detach(dbDatabase::DESTROY_CONTEXT);
    } else {
      m_owner.Forget();
    }
  }

  RealtimeDatabase& Database() { return *m_owner.m_database; }
  dbDatabase* Db() { return Database().Db(); }

  /// The work is done; without this the database is opened anew, since it keeps its first error.
  void Done() {
    Database().Check();
    m_isDone = true;
  }

 private:
  Realtime& m_owner;
  const std::lock_guard<std::mutex> m_lock;
  bool m_isDone = false;
};

Realtime::Realtime(const std::string& name, bool writes) : m_name(name), m_writes(writes), m_process(::getpid()) {
  Open();
  m_database->Db()->detach(dbDatabase::DESTROY_CONTEXT);
}

Realtime::~Realtime() {
  if (m_process == ::getpid()) {
    Forget();
  } else {
    static_cast<void>(m_database.release());  // it is the other process's to close
  }
}

void Realtime::Open() {
  m_database = std::make_unique<RealtimeDatabase>(m_name, m_writes ? dbDatabase::dbAllAccess : dbDatabase::dbReadOnly);
}

void Realtime::Forget() {
  if (m_database) m_database->Db()->attach();
  m_database.reset();
}

void Realtime::Close() {
  const std::lock_guard lock(m_mutex);
  m_isClosed = true;
  if (m_process == ::getpid()) Forget();
}

bool Realtime::IsClosed() const {
  const std::lock_guard lock(m_mutex);
  return m_isClosed;
}

std::vector<std::pair<std::string, int>> Realtime::Counts() {
  Turn turn(*this);
  std::vector<std::pair<std::string, int>> counts;
  for (const auto& table : tools::StoredTables()) counts.emplace_back(table->Info().name, table->Count(turn.Db()));
  turn.Done();
  return counts;
}

std::vector<StoredRow> Realtime::Rows(const std::string& table) {
  RowsState unknown;
  return *RowsUnlessKnown(table, unknown);
}

std::optional<std::vector<StoredRow>> Realtime::RowsUnlessKnown(const std::string& table, RowsState& known) {
  const StoredTable& stored = StoredTableOf(tools::NamedTable(table));
  Turn turn(*this);
  // The first reading begins the transaction that both numbers and rows are of.
  const RowsState now{rtdb::OpeningNumber(turn.Db()), stored.ChangeNumber(turn.Db())};
  std::optional<std::vector<StoredRow>> rows;
  if (now.change == 0 || now.change != known.change || now.opening != known.opening) rows = Read(stored, turn.Db());
  turn.Done();
  known = now;
  return rows;
}

bool Realtime::Put(const std::string& table, const std::vector<std::string>& assignments) {
  const StoredTable& stored = StoredTableOf(tools::NamedTable(table));
  tools::RowValues values(stored, assignments);
  if (!m_writes) RefuseCall(m_name + ": the database was opened to read; open it with write=True", m_name);
  Turn turn(*this);
  const bool isNew = tools::PutRow(turn.Database(), stored, values);
  turn.Done();
  return isNew;
}

std::vector<std::pair<std::string, std::string>> StoredColumns(const std::string& table) {
  const StoredTable& stored = StoredTableOf(tools::NamedTable(table));
  std::vector<std::pair<std::string, std::string>> columns;
  for (const ColumnInfo& column : stored.Columns()) columns.emplace_back(column.name, TypeOf(column, stored.Info()));
  return columns;
}

}  // namespace dtsdb::python
