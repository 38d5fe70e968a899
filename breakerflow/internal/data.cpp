#include "breakerflow/internal/data.h"

#include "model/record_bits.h"
#include "model/text.h"
#include "rtdb/volma_rtdb.h"

namespace dtsdb::internal {
namespace {

constexpr const char* kOrder = "order by id";
constexpr double kPi = 3.1415926;  // these digits, and no more: others compute with the same

/// Reads the voltages of bus sections, keeping the one in effect.
class SectionVoltage {
 public:
  explicit SectionVoltage(dbDatabase* db) : m_cursor(db, dbCursorViewOnly) { m_query = "id=", m_ibs; }

  /// Makes the voltage of section `ibs` the one in effect. Where there is no such section, or several of this number,
  /// the one before stays. Kept: K58.
  void Take(int ibs) {
    if (m_asked && ibs == m_ibs) return;
    m_asked = true;
    m_ibs = ibs;
    if (m_cursor.select(m_query) != 1) return;
    m_v = static_cast<float>(m_cursor->v);
    m_a = static_cast<float>(kPi * m_cursor->a / 180.0);
  }

  float V() const { return m_v; }
  float A() const { return m_a; }

 private:
  dbCursor<bs> m_cursor;
  dbQuery m_query;
  bool m_asked = false;
  int4 m_ibs = 0;
  float m_v = 0;
  float m_a = 0;
};

/// Calls `visit` with each row of a table, in the order of their identities.
template <class Row, class Visit>
void ForEachRow(dbDatabase* db, Visit visit) {
  dbCursor<Row> cursor(db, dbCursorViewOnly);
  cursor.select(kOrder);
  for (const Row* row = cursor.get(); row != nullptr; row = cursor.next()) visit(*row);
}

bool IsOpenOrDead(const cb& row) { return (row.flags & CB_OPEN) != 0 || (row.tp_status & TP_BOTH_DEAD) != 0; }

/// The breaker's class as bits of the row's status.
u32 FlowClass(u32 flags) {
  if ((flags & CB_RADIAL) != 0) return TP_FLOW_RADIAL;
  if ((flags & CB_BRIDGE) != 0) return TP_FLOW_BRIDGE;
  return (flags & CB_LOOP) != 0 ? TP_FLOW_LOOP : 0;
}

/// Fills the breakers, and the nodes of closed ones.
void LoadBreakers(dbDatabase* db, const FlowNetwork& network) {
  SectionVoltage voltage(db);
  ForEachRow<cb>(db, [&](const cb& row) {
    cbBreaker breaker;
    breaker.id = IdFromBytes(row.id);
    breaker.nd = IdFromBytes(row.nd);
    breaker.znd = IdFromBytes(row.znd);
    breaker.ind = row.ind;
    breaker.iznd = row.iznd;
    breaker.open = breaker.zopen = IsOpenOrDead(row);
    network.breakers.insert(static_cast<int>(network.breakers.size()), breaker);
    if (breaker.open) return;

    voltage.Take(row.ibs);
    const auto addNode = [&](int nd, const QString& name) {
      if (network.nodes.contains(nd)) return;
      cbNode& node = network.nodes[nd];
      node.name = name;
      node.v = voltage.V();
      node.a = voltage.A();
    };
    addNode(breaker.ind, breaker.nd);
    addNode(breaker.iznd, breaker.znd);
  });
}

/// What stands on one node. `sign` turns its power into an injection.
template <class Row>
void LoadShunts(dbDatabase* db, const QMap<int, cbNode>& nodes, QMap<int, cbDevice>& devices, float sign) {
  ForEachRow<Row>(db, [&](const Row& row) {
    if ((row.tp_status & SHUNT_DEAD) != 0 || !nodes.contains(row.ind)) return;
    const cbDevice device{IdFromBytes(row.id), IdFromBytes(row.nd), row.ind, sign * row.p, sign * row.q};
    devices.insert(static_cast<int>(devices.size()), device);
  });
}

/// The ends of branches. The power at the from end flows into the branch, that at the to end out of it: only the
/// former changes its sign on the way into the node.
template <class Row>
void LoadBranchEnds(dbDatabase* db, const QMap<int, cbNode>& nodes, QMap<int, cbDevice>& devices, int Row::*end1,
                    int Row::*end2) {
  ForEachRow<Row>(db, [&](const Row& row) {
    if ((row.tp_status & TP_BOTH_DEAD) != 0) return;
    const QString id = IdFromBytes(row.id);
    if (nodes.contains(row.ind)) {
      devices.insert(row.*end1, {id, IdFromBytes(row.nd), row.ind, -row.p, -row.q, false});
    }
    if (nodes.contains(row.iznd)) {
      devices.insert(row.*end2, {id, IdFromBytes(row.znd), row.iznd, row.zp, row.zq, true});
    }
  });
}

void ListBreakersOfNodes(const FlowNetwork& network) {
  for (auto it = network.breakers.cbegin(); it != network.breakers.cend(); ++it) {
    if (it->open || it->zopen) continue;
    network.breakersAt[it->ind].append(it.key());
    network.breakersAt[it->iznd].append(it.key());
  }
}

}  // namespace

void LoadFlowData(dbDatabase* db, const FlowNetwork& network, const FlowDevices& devices) {
  if (!DTSDB_ASSERT(db != nullptr, "db != NULL")) return;
  LoadBreakers(db, network);
  LoadShunts<un>(db, network.nodes, devices.units, 1);
  LoadShunts<cp>(db, network.nodes, devices.capacitors, -1);
  LoadShunts<ld>(db, network.nodes, devices.loads, -1);
  LoadBranchEnds<ln>(db, network.nodes, devices.lines, &ln::ln2, &ln::zln2);
  LoadBranchEnds<xf>(db, network.nodes, devices.windings, &xf::xf2, &xf::zxf2);
  LoadBranchEnds<dln>(db, network.nodes, devices.dcLines, &dln::dln2, &dln::zdln2);
  ListBreakersOfNodes(network);
  db->commit();
}

void StoreFlows(dbDatabase* db, const QMap<int, cbBreaker>& breakers) {
  if (!DTSDB_ASSERT(db != nullptr, "db != NULL")) return;
  dbCursor<cb> cursor(db, dbCursorForUpdate);
  dbQuery query;
  for (const cbBreaker& breaker : breakers) {
    const QByteArray bytes = IdToBytes(breaker.id);
    char const* const id = bytes.constData();
    query = "id=", id;
    cursor.select(query);
    for (cb* row = cursor.get(); row != nullptr; row = cursor.next()) {
      row->p = breaker.p;
      row->q = breaker.q;
      row->tp_status &= ~(TP_FLOW_LOOP | TP_FLOW_BRIDGE | TP_FLOW_RADIAL);
      row->tp_status |= FlowClass(breaker.flags);
      cursor.update();
    }
  }
  db->commit();
}

}  // namespace dtsdb::internal
