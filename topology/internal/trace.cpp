#include "topology/internal/trace.h"

#include <QDateTime>
#include <algorithm>
#include <vector>

#include "model/exchange.h"
#include "model/text.h"
#include "topology/internal/parallel_path.h"

namespace dtsdb::internal {

/// True when closing the breaker joins nothing: both its nodes lie in one section already.
bool ComponentStates::ClosesWithinSection(const CB& cb) const {
  return cb.ibs == cb.izbs && cb.ibs > m_network.Global().bs_live;
}

/// Switches component `id` on or off. Returns its physical number when the next run has to know, else -1.
template <class Component>
int ComponentStates::Switch(const ComponentType<Component>& type, const QString& id, bool on) const {
  auto& table = m_network.Table<Component>();
  const int number = table.Find(Component(id));
  if (number < 0) {
    if (*type.unknown != '\0') PrintText(TextFromId(id) + QLatin1String(type.unknown));
    return -1;
  }
  Component& component = table.GetPh(number);
  u32& word = component.*type.word;
  // One-sided: switching on what is on already goes on. Kept: K42.
  if (!on && (word & type.bit)) return -1;
  SetBit(word, type.bit, !on);
  if constexpr (std::is_same_v<Component, CB>) {
    // The state is set, but no run takes notice. Kept: K43.
    if (on ? ClosesWithinSection(component) : HasParallelPath(m_network, number)) return -1;
  }
  return number;
}

bool ComponentStates::Switch(const char* id, int type, bool on) const {
  auto& trace = m_network.Table<TPTRACE>();
  TPTRACE row;
  row.id = trace.GetCount();
  row.name = IdFromBytes(id);
  row.type = static_cast<u8>(type);
  row.n1 = -1;
  row.status = on ? 1 : 0;
  row.time = static_cast<u32>(QDateTime::currentSecsSinceEpoch());
  WithComponentType(type, [&](const auto& component) { row.n1 = Switch(component, row.name, on); });
  if (row.n1 < 0) return false;
  trace.Add(row);  // refused where the number is taken, without a word. Kept: K44.
  return true;
}

void ComponentStates::RefreshBreakers() const {
  constexpr i8 kClosed = 1;
  constexpr i8 kOpen = 2;
  auto& breakers = m_network.Table<CB>();
  for (int i = 0; i < breakers.GetCount(); ++i) {
    CB& cb = breakers[i];
    if (cb.istatus == -1) continue;
    const i8 value = m_network.Table<STATUS>().GetPh(cb.istatus).value;
    if (value == kOpen || value == kClosed) SetBit(cb.flags, CB_OPEN, value == kOpen);
  }
}

/// Takes the component states of one table from its twin, row by row side by side. A twin of another length is passed
/// over without a word. Kept: K47.
template <class Component>
void ComponentStates::ReadStatesOf(dbDatabase* db) const {
  constexpr u32 kBits = ComponentBits<Component>();
  auto& table = m_network.Table<Component>();
  dbCursor<typename Twin<Component>::Row> cursor(db, dbCursorViewOnly);
  const int count = cursor.select(Twin<Component>::kReadingOrder);
  if (count <= 0 || count != table.GetCount()) return;
  const auto* row = cursor.get();
  for (int i = 0; i < count && row != nullptr; ++i, row = cursor.next()) {
    u32& status = table[i].status;
    status = (status & ~kBits) | (static_cast<u32>(row->status) & kBits);
  }
}

void ComponentStates::ReadStates(dbDatabase* db) const {
  if (!DTSDB_ASSERT(db != nullptr, "db != NULL")) return;
  TwinFinder<STATUS> rows(db, dbCursorViewOnly);
  auto& points = m_network.Table<STATUS>();
  for (int i = 0; i < points.GetCount(); ++i) {
    STATUS& point = points[i];
    if (rows.Select(point) == 1) LoadSome(point, *rows.Cursor().get(), &STATUS::value);
  }
  RefreshBreakers();
  ReadStatesOf<LN>(db);
  ReadStatesOf<DLN>(db);
  ReadStatesOf<ZBR>(db);
  ReadStatesOf<XF>(db);
  ReadStatesOf<UN>(db);
  ReadStatesOf<LD>(db);
  ReadStatesOf<CP>(db);
}

/// Finds the component of a trace row and gives it the row's state. An unknown one leaves the row with -1 and reaches,
/// with its warning, no record.
void ComponentStates::Apply(TPTRACE& row) const {
  WithComponentType(row.type, [&](const auto& type) {
    using Component = typename std::remove_cvref_t<decltype(type)>::Record;
    auto& table = m_network.Table<Component>();
    row.n1 = table.Find(Component(row.name));
    const bool on = row.n1 >= 0 && row.status != 0;
    SetBit(table.GetPh(row.n1).*type.word, type.bit, !on);
  });
}

void ComponentStates::ReadTrace(dbDatabase* db) const {
  if (!DTSDB_ASSERT(db != nullptr, "db != NULL")) return;
  dbCursor<Twin<TPTRACE>::Row> cursor(db, dbCursorViewOnly);
  const u32 lastRun = std::max(m_network.Global().u1, m_network.Global().time);
  dbQuery query;
  // FastDB compares columns as signed numbers: from 2038 on it finds times below lastRun as well.
  query = "time >= ", lastRun, "or time < 0";
  const int count = cursor.select(query);
  if (count <= 0) return;

  std::vector<TPTRACE> rows;
  rows.reserve(static_cast<std::size_t>(count));
  for (const auto* row = cursor.get(); row != nullptr; row = cursor.next()) {
    if (row->time < lastRun) continue;
    TPTRACE& trace = rows.emplace_back();
    LoadSome(trace, *row, &TPTRACE::id, &TPTRACE::name, &TPTRACE::type, &TPTRACE::status, &TPTRACE::time);
    Apply(trace);
  }
  if (rows.empty()) return;  // and what waits stays. Kept: K46.
  auto& waiting = m_network.Table<TPTRACE>();
  if (waiting.GetCount() > 0) waiting.Clear();
  waiting.SetData(rows.data(), static_cast<int>(rows.size()), false);
}

}  // namespace dtsdb::internal
