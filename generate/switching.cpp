#include "generate/switching.h"

#include <cstddef>
#include <numeric>
#include <span>

namespace dtsdb::tools {
namespace {

constexpr int kPercentCouplerOpen = 15;
constexpr int kPercentCircuitOpen = 8;  ///< levels with an open breaker
constexpr int kPercentTransformerOut = 2;

Arrangement ChooseArrangement(const Level& level, const GeneratorOptions& options, Random& random) {
  ArrangementShares shares = options.arrangements.value_or(UsualShares(level.tier));
  for (int i = 0; i < kArrangements; ++i) {
    const ArrangementData& data = DataOf(static_cast<Arrangement>(i));
    if (level.circuits < data.leastCircuits || level.circuits > data.mostCircuits) shares[Index(i)] = 0;
  }
  const int sum = std::accumulate(shares.begin(), shares.end(), 0);
  if (sum == 0) return Arrangement::kSingleBus;
  int rest = random.Between(1, sum);
  std::size_t chosen = 0;
  while (rest > shares[chosen]) rest -= shares[chosen++];
  return static_cast<Arrangement>(chosen);
}

void PlanSwitchyard(Level& level, const GeneratorOptions& options, Random& random) {
  level.arrangement = ChooseArrangement(level, options, random);
  if (!DataOf(level.arrangement).coupler.empty()) {
    level.couplerOpen = random.Chance(kPercentCouplerOpen);
    level.couplerHasZbr = random.Chance(options.zeroImpedance);
  }
  if (random.Chance(kPercentCircuitOpen)) level.openCircuit = random.Between(0, level.circuits - 1);
}

BranchState DrawLineState(Random& random) {
  const int state = random.Between(1, 200);
  if (state <= 2) return BranchState::kOut;
  if (state == 3) return BranchState::kFromOpen;
  if (state == 4) return BranchState::kToOpen;
  return BranchState::kIn;
}

/// Sets of numbers that are joined one by one.
class Parts {
 public:
  explicit Parts(std::size_t count) : m_parent(count) { std::iota(m_parent.begin(), m_parent.end(), 0); }

  /// Returns whether the two were apart.
  bool Join(int one, int other) {
    const int oneRoot = Root(one);
    const int otherRoot = Root(other);
    if (oneRoot == otherRoot) return false;
    m_parent[Index(otherRoot)] = oneRoot;
    return true;
  }

 private:
  int Root(int number) {
    while (Parent(number) != number) number = Parent(number) = Parent(Parent(number));
    return number;
  }

  int& Parent(int number) { return m_parent[Index(number)]; }

  std::vector<int> m_parent;
};

/// What of the grid hangs together, and what has to be closed for it.
class Keeper {
 public:
  explicit Keeper(Plan& plan) : m_plan(plan), m_parts(plan.PointCount()) {}

  void Run() {
    for (std::size_t i = 0; i < m_plan.levels.size(); ++i) {
      if (!m_plan.levels[i].isStar && !m_plan.levels[i].couplerOpen) JoinBusbars(i);
    }
    for (const Branch& branch : m_plan.branches) {
      if (IsConnected(branch)) JoinEnds(branch);
    }
    for (std::size_t i = 0; i < m_plan.levels.size(); ++i) {
      Level& level = m_plan.levels[i];
      if (level.isGrid && level.couplerOpen && JoinBusbars(i)) level.couplerOpen = false;
    }
    for (const Transformer& transformer : m_plan.transformers) CloseTransformer(transformer);
    for (Branch& branch : m_plan.branches) {
      if (branch.transformer == -1 && !IsConnected(branch) && JoinEnds(branch)) Close(branch);
    }
    ReconnectDevices();
  }

 private:
  Level& LevelOf(const CircuitEnd& end) { return m_plan.levels[Index(end.level)]; }

  bool IsConnected(const Branch& branch) const {
    return m_plan.FromPoint(branch) != -1 && m_plan.ToPoint(branch) != -1;
  }

  /// The busbar of a circuit, whether its breaker is closed or not.
  int BusbarOf(const CircuitEnd& end) {
    const int first = m_plan.firstPoint[Index(end.level)];
    return first + (LevelOf(end).isStar ? end.circuit : end.circuit % 2);
  }

  bool JoinBusbars(std::size_t level) { return m_parts.Join(m_plan.firstPoint[level], m_plan.firstPoint[level] + 1); }
  bool JoinEnds(const Branch& branch) { return m_parts.Join(BusbarOf(branch.from), BusbarOf(branch.to)); }

  /// A transformer whose levels of the grid would be apart without it is connected to all of them.
  void CloseTransformer(const Transformer& transformer) {
    const std::span<Branch> windings(&m_plan.branches[Index(transformer.firstBranch)], Index(transformer.windings));
    const CircuitEnd& first = windings.front().from;
    bool wereApart = false;
    for (const Branch& winding : windings) {
      const CircuitEnd& other = windings.size() == 1 ? winding.to : winding.from;
      if (LevelOf(other).isGrid) wereApart |= m_parts.Join(BusbarOf(first), BusbarOf(other));
    }
    if (!wereApart) return;
    for (Branch& winding : windings) {
      if (LevelOf(winding.from).isGrid) Close(winding);
    }
  }

  void Close(Branch& branch) {
    branch.state = BranchState::kIn;
    CloseCircuit(branch.from);
    CloseCircuit(branch.to);
  }

  void CloseCircuit(const CircuitEnd& end) {
    Level& level = LevelOf(end);
    if (!level.isStar && Plan::IsCutOff(level, end.circuit)) level.openCircuit = -1;
  }

  /// The reference unit feeds the network, and a converter that is cut off would still be fed through its DC line.
  void ReconnectDevices() {
    for (const Device& device : m_plan.devices) {
      if (device.kind == DeviceKind::kConverter || device.isReference) CloseCircuit(device.at);
    }
  }

  Plan& m_plan;
  Parts m_parts;
};

}  // namespace

void PlanSwitching(Plan& plan, const GeneratorOptions& options, Random& random) {
  int points = 0;
  plan.firstPoint.reserve(plan.levels.size());
  for (Level& level : plan.levels) {
    plan.firstPoint.push_back(points);
    points += level.isStar ? level.circuits : 2;
    if (!level.isStar) PlanSwitchyard(level, options, random);
  }
  plan.isLive.assign(Index(points), 0);

  for (const Transformer& transformer : plan.transformers) {
    if (!random.Chance(kPercentTransformerOut)) continue;
    for (int i = 0; i < transformer.windings; ++i) {
      plan.branches[Index(transformer.firstBranch + i)].state = BranchState::kOut;
    }
  }
  for (Branch& branch : plan.branches) {
    if (branch.transformer == -1) branch.state = DrawLineState(random);
  }
}

void KeepTogether(Plan& plan) { Keeper(plan).Run(); }

}  // namespace dtsdb::tools
