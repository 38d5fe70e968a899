/// \file
/// Random valid networks, and what their topology must be by plain reasoning.
#pragma once

#include <numeric>
#include <random>
#include <set>
#include <string>
#include <vector>

#include "tests/support/model_builder.h"

namespace dtsdb::test {

/// Fills a model with a small random network that passes the validation; the same seed gives the same network.
///
/// Some stations, each with a 220 kV and perhaps a 110 kV level; a few nodes on each level, joined by breakers, some
/// open, some carrying a zero-impedance branch; lines, DC lines and windings, some out of service or open at an end;
/// units, loads and capacitors, some off. Zero-impedance branches open at end 2 are left out, and all of them unless
/// `withZbrs`.
class RandomNetwork {
 public:
  explicit RandomNetwork(unsigned seed, bool withZbrs = true, int mostStations = 5)
      : m_random(seed), m_withZbrs(withZbrs) {
    const int stations = Number(1, mostStations);
    for (int i = 0; i < stations; ++i) AddStation();
    AddBranches();
  }

  ModelBuilder& Model() { return m_model; }
  /// Closes all ends of branches.
  void CloseEnds() {
    CloseEndsOf<LN>();
    CloseEndsOf<XF>();
    CloseEndsOf<DLN>();
    CloseEndsOf<ZBR>();
  }
  /// A number from `low` to `high`.
  int Number(int low, int high) { return std::uniform_int_distribution(low, high)(m_random); }
  bool Chance(int percent) { return Number(1, 100) <= percent; }

 private:
  struct Level {
    std::string station;
    std::string kv;
    std::vector<std::string> nodes;
    const std::string& Any(RandomNetwork& network) const {
      return nodes[static_cast<std::size_t>(network.Number(0, static_cast<int>(nodes.size()) - 1))];
    }
  };

  template <class Branch>
  void CloseEndsOf() {
    auto& table = m_model.Table<Branch>();
    for (int i = 0; i < table.GetCount(); ++i) {
      table[i].status &= ~(BranchKind<Branch>::kOpen1 | BranchKind<Branch>::kOpen2);
    }
  }

  /// All of one length: a zero-impedance branch whose identity begins that of another gets the other's ends.
  std::string Name(const char* kind) {
    const std::string number = std::to_string(++m_names);
    return kind + std::string(number.size() < 3 ? 3 - number.size() : 0, '0') + number;
  }

  void AddStation() {
    const std::string station = Name("S");
    m_model.Station(station.c_str());
    m_high.push_back(AddLevel(station, 220));
    if (Chance(50)) m_low.push_back(AddLevel(station, 110));
  }

  Level AddLevel(const std::string& station, float vbase) {
    Level level{station, Name("K"), {}};
    m_model.Kv(level.kv.c_str(), vbase);
    const int nodes = Number(1, 6);
    for (int i = 0; i < nodes; ++i) {
      level.nodes.push_back(Name("N"));
      m_model.Bus(Name("M").c_str(), level.kv.c_str(), level.nodes.back().c_str());
    }
    const int breakers = nodes > 1 ? Number(0, 2 * nodes) : 0;
    for (int i = 0; i < breakers; ++i) AddBreaker(level);
    const int devices = Number(0, 4);
    for (int i = 0; i < devices; ++i) AddDevice(level);
    return level;
  }

  void AddBreaker(const Level& level) {
    const std::string& from = level.Any(*this);
    const std::string& to = level.Any(*this);
    if (from == to) return;
    const std::string breaker = Name("B");
    m_model.Breaker(breaker.c_str(), level.kv.c_str(), from.c_str(), to.c_str(), Chance(40));
    if (!Chance(20) || !m_withZbrs) return;
    const std::string zbr = Name("Z");
    m_model.Zbr(zbr.c_str(), breaker.c_str());
    if (Chance(20)) m_model.Of<ZBR>(zbr.c_str()).status = BranchKind<ZBR>::kOut;
    if (Chance(20)) m_model.Of<ZBR>(zbr.c_str()).status |= BranchKind<ZBR>::kOpen1;
  }

  void AddDevice(const Level& level) {
    const std::string& node = level.Any(*this);
    const std::string device = Name("E");
    const char* const kv = level.kv.c_str();
    switch (Number(0, 2)) {
      case 0:
        m_model.Unit(device.c_str(), kv, node.c_str());
        if (Chance(30)) m_model.Of<UN>(device.c_str()).status = SHUNT_OFF;
        break;
      case 1:
        m_model.Load(device.c_str(), kv, node.c_str());
        if (Chance(30)) m_model.Of<LD>(device.c_str()).status = SHUNT_OFF;
        break;
      default:
        m_model.Cap(device.c_str(), kv, node.c_str());
        if (Chance(30)) m_model.Of<CP>(device.c_str()).status = SHUNT_OFF;
    }
  }

  void AddBranches() {
    for (const Level& low : m_low) {
      for (const Level& high : m_high) {
        if (low.station != high.station) continue;
        const std::string winding = Name("X");
        m_model.Winding(winding.c_str(), low.station.c_str(), high.kv.c_str(), low.kv.c_str(), high.Any(*this).c_str(),
                        low.Any(*this).c_str());
        RandomStatus(m_model.Of<XF>(winding.c_str()));
      }
    }
    const int lines = m_high.size() > 1 ? Number(0, 3 * static_cast<int>(m_high.size())) : 0;
    for (int i = 0; i < lines; ++i) AddLine();
  }

  void AddLine() {
    const int last = static_cast<int>(m_high.size()) - 1;
    const Level& from = m_high[static_cast<std::size_t>(Number(0, last))];
    const Level& to = m_high[static_cast<std::size_t>(Number(0, last))];
    if (from.station == to.station) return;
    const std::string line = Name("L");
    const std::string nd = from.Any(*this);
    const std::string znd = to.Any(*this);
    if (Chance(80)) {
      m_model.Line(line.c_str(), "DV", from.station.c_str(), to.station.c_str(), from.kv.c_str(), to.kv.c_str(),
                   nd.c_str(), znd.c_str());
      RandomStatus(m_model.Of<LN>(line.c_str()));
    } else {
      m_model.DcLine(line.c_str(), "DV", from.station.c_str(), to.station.c_str(), from.kv.c_str(), to.kv.c_str(),
                     nd.c_str(), znd.c_str());
      RandomStatus(m_model.Of<DLN>(line.c_str()));
    }
  }

  template <class Branch>
  void RandomStatus(Branch& branch) {
    if (Chance(15)) branch.status |= BranchKind<Branch>::kOut;
    if (Chance(15)) branch.status |= BranchKind<Branch>::kOpen1;
    if (Chance(15)) branch.status |= BranchKind<Branch>::kOpen2;
  }

  std::mt19937 m_random;
  bool m_withZbrs;
  int m_names = 0;
  ModelBuilder m_model;
  std::vector<Level> m_high;
  std::vector<Level> m_low;
};

/// Sets that are joined pairwise.
class UnionFind {
 public:
  explicit UnionFind(int n) : m_parent(static_cast<std::size_t>(n)) { std::iota(m_parent.begin(), m_parent.end(), 0); }
  int Find(int i) const {
    while (m_parent[static_cast<std::size_t>(i)] != i) i = m_parent[static_cast<std::size_t>(i)];
    return i;
  }
  void Join(int a, int b) { m_parent[static_cast<std::size_t>(Find(a))] = Find(b); }

 private:
  std::vector<int> m_parent;
};

/// What the topology of a validated model must be, worked out from its node numbers and states alone.
class PlainTopology {
 public:
  explicit PlainTopology(ModelBuilder& model)
      : m_model(model), m_groups(NodeCount()), m_islands(NodeCount()), m_ends(Sized()), m_shunts(Sized()) {
    for (int i = 0; i < model.Table<CB>().GetCount(); ++i) {
      const CB& cb = model.Table<CB>()[i];
      if (!(cb.flags & (CB_OPEN | CB_ZBR))) m_groups.Join(cb.ind, cb.iznd);
    }
    ForEachBranch([&](const auto& branch) {
      ++m_ends[At(branch.ind)];
      ++m_ends[At(branch.iznd)];
    });
    Count<UN>();
    Count<LD>();
    Count<CP>();
    for (int nd = 0; nd < NodeCount(); ++nd) m_islands.Join(nd, Group(nd));
    ForEachBranch([&](const auto& branch) {
      if (!IsCut(branch, 1) && !IsCut(branch, 2)) m_islands.Join(branch.ind, branch.iznd);
    });
    for (int i = 0; i < model.Table<UN>().GetCount(); ++i) {
      const UN& unit = model.Table<UN>()[i];
      if (!(unit.status & SHUNT_OFF) && IsLegal(unit.ind)) m_live.insert(Island(unit.ind));
    }
  }

  int NodeCount() const { return m_model.Table<ND>().GetCount(); }
  int Group(int nd) const { return m_groups.Find(nd); }
  int Island(int nd) const { return m_islands.Find(nd); }
  bool IsLive(int nd) const { return IsLegal(nd) && m_live.count(Island(nd)) > 0; }
  int LiveIslandCount() const { return static_cast<int>(m_live.size()); }
  bool IsLegal(int nd) const {
    const int ends = m_ends[At(nd)];
    return ends > 1 || (ends == 1 && m_shunts[At(nd)] > 0);
  }

  /// True when end 1 or 2 of a branch carries no power.
  template <class Branch>
  bool IsCut(const Branch& branch, int end) const {
    using Kind = BranchKind<Branch>;
    const bool open = branch.status & (end == 1 ? Kind::kOpen1 : Kind::kOpen2);
    return open || (branch.status & Kind::kOut) || !IsLegal(end == 1 ? branch.ind : branch.iznd);
  }

  /// Visits all lines, windings, zero-impedance branches and DC lines.
  template <class Visit>
  void ForEachBranch(Visit visit) const {
    const auto each = [&](auto& table) {
      for (int i = 0; i < table.GetCount(); ++i) visit(table[i]);
    };
    each(m_model.Table<LN>());
    each(m_model.Table<XF>());
    each(m_model.Table<ZBR>());
    each(m_model.Table<DLN>());
  }

 private:
  std::vector<int> Sized() const { return std::vector<int>(static_cast<std::size_t>(NodeCount()), 0); }
  /// The place of the group of a node in m_ends and m_shunts.
  std::size_t At(int nd) const { return static_cast<std::size_t>(Group(nd)); }
  template <class Device>
  void Count() {
    for (int i = 0; i < m_model.Table<Device>().GetCount(); ++i) ++m_shunts[At(m_model.Table<Device>()[i].ind)];
  }

  ModelBuilder& m_model;
  UnionFind m_groups;
  UnionFind m_islands;
  std::vector<int> m_ends;
  std::vector<int> m_shunts;
  std::set<int> m_live;
};

}  // namespace dtsdb::test
