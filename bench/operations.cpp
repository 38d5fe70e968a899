#include "bench/operations.h"

#include <map>
#include <set>
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

/// What the components that are switched are chosen by.
class Choice {
 public:
  explicit Choice(DTSDB& network) : m_network(network) {
    CountLines();
    NoteOpenEnds(*network.m_lnTable);
    NoteOpenEnds(*network.m_xfTable);
    NoteOpenEnds(*network.m_dlnTable);
    NoteOpenEnds(*network.m_zbrTable);
  }

  QByteArray Coupler(TP& topology) const {
    return Breaker(topology, [](const CB& breaker) { return breaker.id.endsWith(QLatin1String("-CQ0")); });
  }

  /// The breaker of a bay whose circuit is a line in the meshes.
  QByteArray Feeder(TP& topology) const {
    return Breaker(topology, [&](const CB& breaker) {
      if (!breaker.id.endsWith(QLatin1String("Q0"))) return false;
      const ND& circuit = m_network.m_ndTable->GetPh(breaker.iznd);
      if (circuit.r_nd_ln2 == -1) return false;
      const LN2& end = m_network.m_ln2Table->GetPh(m_network.m_rNdLn2Table->GetPh(circuit.r_nd_ln2).iln2);
      const LN& line = m_network.m_lnTable->GetPh(end.iln);
      return IsPlain(line) && IsMeshed(line);
    });
  }

  QByteArray MeshedLine() const {
    return Line([&](const LN& line) { return IsMeshed(line); });
  }

  /// A line without which its island falls in two: the only one of a station.
  QByteArray SplittingLine() const {
    return Line([&](const LN& line) { return m_lines.at(line.st) == 1 || m_lines.at(line.zst) == 1; });
  }

 private:
  void CountLines() {
    auto& lines = *m_network.m_lnTable;
    for (int i = 0; i < lines.GetCount(); ++i) {
      if (lines[i].status & BranchKind<LN>::kOut) continue;
      ++m_lines[lines[i].st];
      ++m_lines[lines[i].zst];
    }
  }

  template <class Branch>
  void NoteOpenEnds(tTable<Branch>& branches) {
    using Kind = BranchKind<Branch>;
    for (int i = 0; i < branches.GetCount(); ++i) {
      if ((branches[i].status & (Kind::kOpen1 | Kind::kOpen2)) == 0) continue;
      m_levelsOfOpenEnds.insert(LevelOf(branches[i].ind));
      m_levelsOfOpenEnds.insert(LevelOf(branches[i].iznd));
    }
  }

  int LevelOf(int nd) const { return m_network.m_rKvNdTable->GetPh(m_network.m_ndTable->GetPh(nd).r_kv_nd).ikv; }
  /// No branch on the node's voltage level has an open end: beside one a run goes over everything.
  bool IsClear(int nd) const { return m_levelsOfOpenEnds.count(LevelOf(nd)) == 0; }

  bool IsMeshed(const LN& line) const { return m_lines.at(line.st) > 3 && m_lines.at(line.zst) > 3; }
  /// Closed, in service, and between live sections.
  bool IsPlain(const LN& line) const {
    const auto isLive = [&](int bs) { return m_network.m_bsTable->GetPh(bs).island >= 0; };
    return line.status == 0 && isLive(line.ibs) && isLive(line.izbs) && IsClear(line.ind) && IsClear(line.iznd);
  }

  /// A closed breaker that `accepts` takes and whose opening parts its nodes.
  template <class Accepts>
  QByteArray Breaker(TP& topology, Accepts accepts) const {
    auto& breakers = *m_network.m_cbTable;
    for (int i = breakers.GetCount() / 2; i < breakers.GetCount(); ++i) {
      const CB& breaker = breakers[i];
      const bool fits = (breaker.flags & CB_OPEN) == 0 && IsClear(breaker.ind) && accepts(breaker);
      QByteArray id = IdToBytes(breaker.id);
      if (fits && PartsNodes(topology, id)) return id;
    }
    throw std::runtime_error("the network has no such breaker");
  }

  template <class Accepts>
  QByteArray Line(Accepts accepts) const {
    auto& lines = *m_network.m_lnTable;
    for (int i = lines.GetCount() / 2; i < lines.GetCount(); ++i) {
      if (IsPlain(lines[i]) && accepts(lines[i])) return IdToBytes(lines[i].id);
    }
    throw std::runtime_error("the network has no such line");
  }

  DTSDB& m_network;
  std::map<QString, int> m_lines;  // in service, by station
  std::set<int> m_levelsOfOpenEnds;
};

}  // namespace

std::vector<Operation> ChooseOperations(DTSDB& network, TP& topology) {
  const Choice choice(network);
  return {{"bus coupler", 1, choice.Coupler(topology)},
          {"feeder", 1, choice.Feeder(topology)},
          {"splitting line", 5, choice.SplittingLine()},
          {"meshed line", 5, choice.MeshedLine()}};
}

}  // namespace dtsdb::bench
