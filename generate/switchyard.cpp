#include "generate/switchyard.h"

#include <algorithm>

#include "model/record_bits.h"

namespace dtsdb::tools {
namespace {

constexpr u32 kBreaker = 1;
constexpr u32 kDisconnector = 4;
static_assert((kBreaker | kDisconnector) == CB_TYPES);

constexpr i8 kPointClosed = 1;
constexpr i8 kPointOpen = 2;

QString Join(const QString& text, const char* end) { return text + QLatin1String(end); }

/// The bay of a circuit bears the name of its node.
QString BayOf(const QString& level, int circuit) { return Switchyard::CircuitNode(level, circuit); }

}  // namespace

QString Switchyard::CircuitNode(const QString& level, int circuit) {
  return level + QLatin1String(circuit < 9 ? "-0" : "-") + QString::number(circuit + 1);
}

int Switchyard::BusbarCount() const {
  return m_arrangement == Arrangement::kDoubleBus || m_arrangement == Arrangement::kBreakerAndAHalf ? 2 : 1;
}

QString Switchyard::BusbarNode(int number) const {
  if (m_arrangement == Arrangement::kRing) return CircuitNode(m_level, 0);
  return Join(m_level, number == 0 ? "-I" : "-II");
}

void Switchyard::Build(const SwitchStates& states) {
  switch (m_arrangement) {
    case Arrangement::kSingleBus:
    case Arrangement::kDoubleBus:
      return BuildBays(states);
    case Arrangement::kBreakerAndAHalf:
      return BuildDiameters();
    case Arrangement::kRing:
      return BuildRing();
  }
}

// bus I  ----+------------        bus I  ----+---------+--------
//            Q1                              Q1        CQ1
//            |                   bus II ---- | --+---- | --+---
//            Q0                              |   Q2    CQ0 |
//            |                               +---+     |   |
//          circuit                           Q0        +-CQ2
//                                            |
//                                          circuit    coupler
void Switchyard::BuildBays(const SwitchStates& states) {
  const bool isDouble = m_arrangement == Arrangement::kDoubleBus;
  const QString bus1 = BusbarNode(0);
  const QString bus2 = BusbarNode(1);
  for (int circuit = 0; circuit < m_circuits; ++circuit) {
    const QString bay = BayOf(m_level, circuit);
    const QString inner = Join(bay, "a");
    const bool onFirst = !isDouble || circuit % 2 == 0;
    PutDisconnector(Join(bay, "Q1"), bus1, inner, onFirst);
    if (isDouble) PutDisconnector(Join(bay, "Q2"), bus2, inner, !onFirst);
    PutBreaker(Join(bay, "Q0"), inner, CircuitNode(m_level, circuit), circuit != states.openCircuit);
  }
  if (!isDouble) return;
  const QString coupler = Join(m_level, "-C");
  PutDisconnector(Join(coupler, "Q1"), bus1, Join(coupler, "a"), true);
  PutBreaker(CouplerBreaker(), Join(coupler, "a"), Join(coupler, "b"), states.coupler);
  PutDisconnector(Join(coupler, "Q2"), Join(coupler, "b"), bus2, true);
}

// bus I --Q1-Q0--+--Q1-Q0--+--Q1-Q0-- bus II, a diameter; the last may have but one circuit and two breakers
//                |         |
//             circuit   circuit
void Switchyard::BuildDiameters() {
  for (int first = 0; first < m_circuits; first += 2) {
    const int behind = std::min(first + 2, m_circuits);
    QString from = BusbarNode(0);
    for (int circuit = first; circuit <= behind; ++circuit) {
      const bool last = circuit == behind;
      const QString to = last ? BusbarNode(1) : CircuitNode(m_level, circuit);
      const QString bay = last ? Join(BayOf(m_level, first), "Z") : BayOf(m_level, circuit);
      PutDisconnector(Join(bay, "Q1"), from, Join(bay, "a"), true);
      PutBreaker(Join(bay, "Q0"), Join(bay, "a"), to, true);
      from = to;
    }
  }
}

// +--Q1-Q0--circuit--Q1-Q0--circuit--Q1-Q0--circuit--+
// +--------------------------------------------------+
void Switchyard::BuildRing() {
  for (int circuit = 0; circuit < m_circuits; ++circuit) {
    const QString bay = BayOf(m_level, circuit);
    PutDisconnector(Join(bay, "Q1"), CircuitNode(m_level, circuit), Join(bay, "a"), true);
    PutBreaker(Join(bay, "Q0"), Join(bay, "a"), CircuitNode(m_level, (circuit + 1) % m_circuits), true);
  }
}

void Switchyard::PutBreaker(const QString& id, const QString& nd, const QString& znd, bool closed) {
  PutSwitch(id, nd, znd, closed, kBreaker, " breaker");
}

void Switchyard::PutDisconnector(const QString& id, const QString& nd, const QString& znd, bool closed) {
  PutSwitch(id, nd, znd, closed, kDisconnector, " disconnector");
}

void Switchyard::PutSwitch(const QString& id, const QString& nd, const QString& znd, bool closed, u32 type,
                           const char* name) {
  STATUS& point = m_rows->Put<STATUS>(Join(id, ".S"));
  point.name = Join(id, name);
  point.value = closed ? kPointClosed : kPointOpen;

  CB& breaker = m_rows->Put<CB>(id);
  breaker.kv = m_level;
  breaker.flags = type | (closed ? 0 : CB_OPEN);
  breaker.status_id = point.id;
  breaker.nd = nd;
  breaker.znd = znd;
}

}  // namespace dtsdb::tools
