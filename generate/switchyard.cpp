#include "generate/switchyard.h"

#include "model/record_bits.h"

namespace dtsdb::tools {
namespace {

constexpr i8 kPointClosed = 1;
constexpr i8 kPointOpen = 2;

QString Join(const QString& text, const char* end) { return text + QLatin1String(end); }

}  // namespace

QString CircuitNode(const QString& level, int circuit) {
  return level + QLatin1String(circuit < 9 ? "-0" : "-") + QString::number(circuit + 1);
}

QString Switchyard::BusbarNode(int number) const {
  if (m_data.busbars == 0) return CircuitNode(m_id, 0);
  return Join(m_id, number == 0 ? "-I" : "-II");
}

void Switchyard::Build() {
  const int rowLength = static_cast<int>(m_data.row.size());
  QString firstOfRow;
  for (int circuit = 0; circuit < m_level.circuits; ++circuit) {
    const int place = circuit % rowLength;
    const QString bay = CircuitNode(m_id, circuit);
    if (place == 0) firstOfRow = bay;
    BuildBay(m_data.row[static_cast<std::size_t>(place)], bay, circuit, circuit != m_level.openCircuit);
    const bool isLast = place == rowLength - 1 || circuit == m_level.circuits - 1;
    if (isLast) BuildBay(m_data.rowEnd, Join(firstOfRow, "Z"), circuit + 1, true);
  }
  BuildBay(m_data.coupler, Join(m_id, "-C"), 0, !m_level.couplerOpen);
}

void Switchyard::BuildBay(const Bay& bay, const QString& id, int circuit, bool breakerClosed) {
  for (const BaySwitch& item : bay) {
    const bool isBreaker = item.kind == SwitchKind::kBreaker;
    const bool closed =
        isBreaker ? breakerClosed : item.kind != SwitchKind::kSelector || IsOnOwnBus(item.from, circuit);
    PutSwitch(Join(id, item.suffix), NodeOf(item.from, id, circuit), NodeOf(item.to, id, circuit), isBreaker, closed);
  }
}

bool Switchyard::IsOnOwnBus(Point bus, int circuit) const { return (bus == Point::kBus1) == (circuit % 2 == 0); }

QString Switchyard::NodeOf(Point point, const QString& bay, int circuit) const {
  switch (point) {
    case Point::kBus1:
      return BusbarNode(0);
    case Point::kBus2:
      return BusbarNode(1);
    case Point::kOwnBus:
      return BusbarNode(circuit % m_data.busbars);
    case Point::kInner:
      return Join(bay, "a");
    case Point::kOuter:
      return Join(bay, "b");
    case Point::kCircuit:
      return CircuitNode(m_id, circuit);
    case Point::kPrevious:
      return CircuitNode(m_id, circuit - 1);
    case Point::kNext:
      return CircuitNode(m_id, (circuit + 1) % m_level.circuits);
  }
  return {};
}

void Switchyard::PutSwitch(const QString& id, const QString& nd, const QString& znd, bool isBreaker, bool closed) {
  STATUS& point = m_rows.Put<STATUS>(Join(id, ".S"));
  point.name = Join(id, isBreaker ? " breaker" : " disconnector");
  point.value = closed ? kPointClosed : kPointOpen;

  CB& breaker = m_rows.Put<CB>(id);
  breaker.kv = m_id;
  breaker.flags = (isBreaker ? CB_BREAKER : CB_DISCONNECTOR) | (closed ? 0 : CB_OPEN);
  breaker.status_id = point.id;
  breaker.nd = nd;
  breaker.znd = znd;
}

}  // namespace dtsdb::tools
