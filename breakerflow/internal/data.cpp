#include "breakerflow/internal/data.h"

#include "model/record_bits.h"

namespace dtsdb::internal {
namespace {

bool IsOpenOrDead(const cb& row) { return (row.flags & CB_OPEN) != 0 || (row.tp_status & TP_BOTH_DEAD) != 0; }

/// The breaker's class as bits of the row's status.
u32 FlowClassBits(u32 flags) {
  if ((flags & CB_RADIAL) != 0) return TP_FLOW_RADIAL;
  if ((flags & CB_BRIDGE) != 0) return TP_FLOW_BRIDGE;
  return (flags & CB_LOOP) != 0 ? TP_FLOW_LOOP : 0;
}

/// Adds a breaker, and its nodes where it is closed.
void AddBreaker(const cb& row, SectionVoltages& voltages, const FlowNetwork& network) {
  cbBreaker breaker;
  breaker.id = IdFromBytes(row.id);
  breaker.nd = IdFromBytes(row.nd);
  breaker.znd = IdFromBytes(row.znd);
  breaker.ind = row.ind;
  breaker.iznd = row.iznd;
  breaker.open = breaker.zopen = IsOpenOrDead(row);
  network.breakers.insert(static_cast<int>(network.breakers.size()), breaker);
  if (breaker.open) return;

  voltages.Take(row);
  const auto addNode = [&](int nd, const QString& name) {
    if (network.nodes.contains(nd)) return;
    cbNode& node = network.nodes[nd];
    node.name = name;
    node.v = voltages.V();
    node.a = voltages.A();
  };
  addNode(breaker.ind, breaker.nd);
  addNode(breaker.iznd, breaker.znd);
}

/// What stands on one node. `sign` turns its power into an injection.
template <class T, class Source>
void LoadShunts(const Source& source, const QMap<int, cbNode>& nodes, QMap<int, cbDevice>& devices, float sign) {
  source.template ForEachRow<T>([&](const auto& row) {
    if ((row.tp_status & SHUNT_DEAD) != 0 || !nodes.contains(row.ind)) return;
    const cbDevice device{IdFromBytes(row.id), IdFromBytes(row.nd), row.ind, sign * row.p, sign * row.q};
    devices.insert(static_cast<int>(devices.size()), device);
  });
}

/// The ends of branches. The power at the from end flows into the branch, that at the to end out of it: only the
/// former changes its sign on the way into the node.
template <class T, class Source, class Row = typename Twin<T>::Row>
void LoadBranchEnds(const Source& source, const QMap<int, cbNode>& nodes, QMap<int, cbDevice>& devices, int Row::*end1,
                    int Row::*end2) {
  source.template ForEachRow<T>([&](const Row& row) {
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

template <class Source>
void LoadFlowData(const Source& source, MissingVoltage missing, const FlowNetwork& network,
                  const FlowDevices& devices) {
  SectionVoltages voltages(source, missing);
  source.template ForEachRow<CB>([&](const cb& row) { AddBreaker(row, voltages, network); });
  LoadShunts<UN>(source, network.nodes, devices.units, 1);
  LoadShunts<CP>(source, network.nodes, devices.capacitors, -1);
  LoadShunts<LD>(source, network.nodes, devices.loads, -1);
  LoadBranchEnds<LN>(source, network.nodes, devices.lines, &ln::ln2, &ln::zln2);
  LoadBranchEnds<XF>(source, network.nodes, devices.windings, &xf::xf2, &xf::zxf2);
  LoadBranchEnds<DLN>(source, network.nodes, devices.dcLines, &dln::dln2, &dln::zdln2);
  ListBreakersOfNodes(network);
}

template void LoadFlowData(const StoredRows& source, MissingVoltage missing, const FlowNetwork& network,
                           const FlowDevices& devices);
template void LoadFlowData(const ModelRows& source, MissingVoltage missing, const FlowNetwork& network,
                           const FlowDevices& devices);

void LoadStoredFlowData(dbDatabase* db, const FlowNetwork& network, const FlowDevices& devices) {
  if (!DTSDB_ASSERT(db != nullptr, "db != NULL")) return;
  LoadFlowData(StoredRows(db), MissingVoltage::kStays, network, devices);
  db->commit();
}

void FlowWriter::Write(const QString& id, float p, float q, u32 flags) {
  const QByteArray bytes = IdToBytes(id);
  char const* const text = bytes.constData();
  m_query = "id=", text;
  m_cursor.select(m_query);
  for (cb* row = m_cursor.get(); row != nullptr; row = m_cursor.next()) {
    row->p = p;
    row->q = q;
    row->tp_status &= ~(TP_FLOW_LOOP | TP_FLOW_BRIDGE | TP_FLOW_RADIAL);
    row->tp_status |= FlowClassBits(flags);
    m_cursor.update();
  }
}

}  // namespace dtsdb::internal
