#include "bench/operations.h"

#include <map>
#include <stdexcept>

#include "include/chain.h"
#include "model/record_bits.h"
#include "model/text.h"

namespace dtsdb::bench {
namespace {

/// True when a run has to follow the opening of the breaker: nothing else joins its nodes. Leaves it closed.
bool PartsNodes(TP& topology, const QByteArray& id) {
  const bool parts = topology.tpSetCompStatus(id.constData(), 1, false) == 1;
  topology.tpSetCompStatus(id.constData(), 1, true);
  if (topology.tpChange() != 1) throw std::runtime_error("an incremental run failed");
  return parts;
}

/// A closed breaker that `accepts` takes and whose opening parts its nodes.
template <class Accepts>
QByteArray ChooseBreaker(DTSDB& network, TP& topology, Accepts accepts) {
  auto& breakers = *network.m_cbTable;
  for (int i = breakers.GetCount() / 2; i < breakers.GetCount(); ++i) {
    const CB& breaker = breakers[i];
    QByteArray id = IdToBytes(breaker.id);
    if ((breaker.flags & CB_OPEN) == 0 && accepts(breaker) && PartsNodes(topology, id)) return id;
  }
  throw std::runtime_error("the network has no such breaker");
}

QByteArray ChooseCoupler(DTSDB& network, TP& topology) {
  return ChooseBreaker(network, topology, [](const CB& breaker) { return breaker.id.endsWith(QLatin1String("-CQ0")); });
}

/// The breaker of a bay whose circuit is a line in service.
QByteArray ChooseFeeder(DTSDB& network, TP& topology) {
  return ChooseBreaker(network, topology, [&](const CB& breaker) {
    if (!breaker.id.endsWith(QLatin1String("Q0"))) return false;
    const ND& circuit = network.m_ndTable->GetPh(breaker.iznd);
    if (circuit.r_nd_ln2 == -1) return false;
    const LN2& end = network.m_ln2Table->GetPh(network.m_rNdLn2Table->GetPh(circuit.r_nd_ln2).iln2);
    return network.m_lnTable->GetPh(end.iln).status == 0;
  });
}

/// A line in service without which its island falls in two: the only one of a station.
QByteArray ChooseSplittingLine(DTSDB& network) {
  auto& lines = *network.m_lnTable;
  std::map<QString, int> linesOf;
  for (int i = 0; i < lines.GetCount(); ++i) {
    if (lines[i].status & BranchKind<LN>::kOut) continue;
    ++linesOf[lines[i].st];
    ++linesOf[lines[i].zst];
  }
  for (int i = lines.GetCount() / 2; i < lines.GetCount(); ++i) {
    const LN& line = lines[i];
    const bool joins = line.status == 0 && network.m_bsTable->GetPh(line.ibs).island >= 0 &&
                       network.m_bsTable->GetPh(line.izbs).island >= 0;
    if (joins && (linesOf[line.st] == 1 || linesOf[line.zst] == 1)) return IdToBytes(line.id);
  }
  throw std::runtime_error("the network has no such line");
}

}  // namespace

std::vector<Operation> ChooseOperations(DTSDB& network, TP& topology) {
  return {{"bus coupler", 1, ChooseCoupler(network, topology)},
          {"feeder", 1, ChooseFeeder(network, topology)},
          {"splitting line", 5, ChooseSplittingLine(network)}};
}

}  // namespace dtsdb::bench
