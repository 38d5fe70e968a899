/// \file
/// How the states of breakers and components change, and which changes are remembered for the next incremental run.
#include <QDateTime>
#include <algorithm>
#include <vector>

#include "model/exchange.h"
#include "model/text.h"
#include "topology/component_types.h"
#include "topology/walks.h"

namespace dtsdb {
/// True when closing the breaker joins nothing: both its nodes lie in one section already.
bool TP::ClosesWithinSection(const CB& cb) const { return cb.ibs == cb.izbs && cb.ibs > Global().bs_live; }

/// Switches component `id` on or off. Gives its physical number when the next run has to know, else -1.
template <class Component>
int TP::SwitchComponent(const ComponentType<Component>& type, const QString& id, bool on) {
  auto& table = Table<Component>();
  const int number = table.Find(Component(id));
  if (number < 0) {
    if (*type.unknown != '\0') PrintText(TextFromId(id) + QLatin1String(type.unknown));
    return -1;
  }
  Component& component = table.GetPh(number);
  u32& word = component.*type.word;
  // One-sided, deliberately: switching on what is on already goes on.
  if (!on && (word & type.bit)) return -1;
  SetBit(word, type.bit, !on);
  if constexpr (std::is_same_v<Component, CB>) {
    if (on ? ClosesWithinSection(component) : tpFindPassPath(number)) return -1;
  }
  return number;
}

int TP::tpSetCompStatus(const char* id, int type, bool on) {
  TPTRACE row;
  row.id = m_tptraceTable->GetCount();
  row.name = IdFromBytes(id);
  row.type = static_cast<u8>(type);
  row.n1 = -1;
  row.status = on ? 1 : 0;
  row.time = static_cast<u32>(QDateTime::currentSecsSinceEpoch());
  WithComponentType(type, [&](const auto& component) { row.n1 = SwitchComponent(component, row.name, on); });
  if (row.n1 < 0) return 0;
  m_tptraceTable->Add(row);
  return 1;
}

/// Gives the breakers the states of their status points.
int TP::tpRefreshCB() {
  constexpr i8 kClosed = 1;
  constexpr i8 kOpen = 2;
  for (int i = 0; i < m_cbTable->GetCount(); ++i) {
    CB& cb = (*m_cbTable)[i];
    if (cb.istatus == -1) continue;
    const i8 value = m_statusTable->GetPh(cb.istatus).value;
    if (value == kOpen || value == kClosed) SetBit(cb.flags, CB_OPEN, value == kOpen);
  }
  return 1;
}

/// Takes the component states of one table from its twin, row by row side by side. A twin of another length is passed
/// over without a word.
template <class Component>
void TP::ReadStates(dbDatabase* db) {
  constexpr u32 kBits = ComponentBits<Component>();
  auto& table = Table<Component>();
  dbCursor<typename Twin<Component>::Row> cursor(db, dbCursorViewOnly);
  const int count = cursor.select(kReadingOrder<Component>);
  if (count <= 0 || count != table.GetCount()) return;
  const auto* row = cursor.get();
  for (int i = 0; i < count && row != nullptr; ++i, row = cursor.next()) {
    u32& status = table[i].status;
    status = (status & ~kBits) | (static_cast<u32>(row->status) & kBits);
  }
}

int TP::tpReadStatus(dbDatabase* db) {
  if (!DTSDB_ASSERT(db != nullptr, "db != NULL")) return 1;
  TwinFinder<STATUS> points(db, dbCursorViewOnly);
  for (int i = 0; i < m_statusTable->GetCount(); ++i) {
    STATUS& point = (*m_statusTable)[i];
    if (points.Select(point) == 1) LoadCell(point.value, points.Cursor().get()->value);
  }
  tpRefreshCB();
  ReadStates<LN>(db);
  ReadStates<DLN>(db);
  ReadStates<ZBR>(db);
  ReadStates<XF>(db);
  ReadStates<UN>(db);
  ReadStates<LD>(db);
  ReadStates<CP>(db);
  return 1;
}

/// Finds the component of a trace row and gives it the row's state. An unknown one leaves the row with -1 and reaches,
/// with its warning, no record.
void TP::ApplyTrace(TPTRACE& row) {
  WithComponentType(row.type, [&](const auto& type) {
    using Component = typename std::remove_cvref_t<decltype(type)>::Record;
    auto& table = Table<Component>();
    row.n1 = table.Find(Component(row.name));
    const bool on = row.n1 >= 0 && row.status != 0;
    SetBit(table.GetPh(row.n1).*type.word, type.bit, !on);
  });
}

int TP::tpReadTptrace(dbDatabase* db) {
  if (!DTSDB_ASSERT(db != nullptr, "db != NULL")) return 1;
  using Columns = Twin<TPTRACE>;
  dbCursor<Columns::Row> cursor(db, dbCursorViewOnly);
  const u32 lastRun = std::max(Global().u1, Global().time);
  dbQuery query;
  // FastDB compares columns as signed numbers: from 2038 on it finds times below lastRun as well.
  query = "time >= ", lastRun, "or time < 0";
  const int count = cursor.select(query);
  if (count <= 0) return 1;

  std::vector<TPTRACE> rows;
  rows.reserve(static_cast<std::size_t>(count));
  for (const auto* row = cursor.get(); row != nullptr; row = cursor.next()) {
    if (row->time < lastRun) continue;
    TPTRACE& trace = rows.emplace_back();
    const auto load = [&](const auto&... columns) { (LoadCell(trace.*columns.field, row->*columns.cell), ...); };
    load(Columns::id, Columns::name, Columns::type, Columns::status, Columns::time);
    ApplyTrace(trace);
  }
  if (rows.empty()) return 1;
  if (m_tptraceTable->GetCount() > 0) m_tptraceTable->Clear();
  m_tptraceTable->SetData(rows.data(), static_cast<int>(rows.size()), false);
  return 1;
}

}  // namespace dtsdb
