#include "generate/power_balance.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <map>
#include <numeric>
#include <span>
#include <utility>

#include "generate/export_plan.h"

namespace dtsdb::tools {
namespace {

constexpr int64_t kLeastPercentOfUnit = 20;  ///< a unit in service gives this part of its size or more
constexpr int64_t kReactivePercent = 50;     ///< of its size that a unit gives at most
constexpr int64_t kAbsorbedPercent = 20;     ///< of its size that a unit takes in at most
constexpr int64_t kReferenceReserve = 50 * kEighths;

std::size_t Index(int number) { return static_cast<std::size_t>(number); }

int64_t Size(int64_t value) { return value < 0 ? -value : value; }

/// What a line or winding that carries `p` loses.
Power Loss(const Branch& branch, int64_t p) {
  return branch.transformer == -1 ? Power{Size(p) / 80, Size(p) / 100} : Power{Size(p) / 200, Size(p) / 20};
}

/// The first parts are larger by one where `whole` can't be divided.
int64_t Share(int64_t whole, int64_t parts, int64_t part) {
  const int64_t least = (whole - (whole < 0 ? parts - 1 : 0)) / parts;
  return least + (part < whole - least * parts ? 1 : 0);
}

/// Lists of numbers by owner, in one block.
class ListsByPoint {
 public:
  /// `pointsOf(i)` are the owners of number i, -1 for none.
  template <class PointsOf>
  ListsByPoint(std::size_t points, int count, PointsOf pointsOf) : m_first(points + 1) {
    const auto each = [&](auto use) {
      for (int i = 0; i < count; ++i) {
        for (const int point : pointsOf(i)) {
          if (point != -1) use(Index(point), i);
        }
      }
    };
    each([this](std::size_t point, int) { ++m_first[point + 1]; });
    for (std::size_t i = 0; i < points; ++i) m_first[i + 1] += m_first[i];
    m_numbers.resize(m_first.back());
    std::vector<std::size_t> next(m_first.begin(), m_first.end() - 1);
    each([this, &next](std::size_t point, int number) { m_numbers[next[point]++] = number; });
  }

  std::span<const int> Of(int point) const {
    return {m_numbers.data() + m_first[Index(point)], m_numbers.data() + m_first[Index(point) + 1]};
  }

 private:
  std::vector<std::size_t> m_first;
  std::vector<int> m_numbers;
};

/// Branches in service between the same two points share what they carry. Star points of transformers side by side
/// count as the same; `from` and `to` are the first of them.
struct Link {
  int from = 0;
  int to = 0;
  std::vector<int> branches;
};

class Balance {
 public:
  Balance(Plan& plan, Random& random)
      : m_plan(plan),
        m_random(random),
        m_need(plan.isLive.size()),
        m_export(plan.isLive.size()),
        m_upward(plan.isLive.size(), -1),
        m_links(FindLinks(plan)),
        m_linksAt(plan.isLive.size(), static_cast<int>(m_links.size()),
                  [this](int i) {
                    return std::array{m_links[Index(i)].from, m_links[Index(i)].to};
                  }),
        m_devicesAt(plan.isLive.size(), static_cast<int>(plan.devices.size()),
                    [&plan](int i) { return std::array{plan.PointOf(plan.devices[Index(i)].at)}; }) {}

  void Run() {
    const auto reference = std::find_if(m_plan.devices.begin(), m_plan.devices.end(),
                                        [](const Device& device) { return device.isReference; });
    if (reference == m_plan.devices.end()) return;
    GrowTree(m_plan.PointOf(reference->at));
    ClearDeadDevices();
    for (std::size_t i = 0; i < m_links.size(); ++i) {
      if (!m_inTree[i] && IsLive(m_links[i].from)) DrawTransit(m_links[i]);
    }
    AddDevicesToNeeds();
    PlanExportsOfAll();
    for (auto point = m_order.rbegin(); point != m_order.rend(); ++point) Settle(*point);
    SettleReference(*reference);
  }

 private:
  bool IsLive(int point) const { return m_plan.isLive[Index(point)] != 0; }
  const Level& LevelOf(const CircuitEnd& end) const { return m_plan.levels[Index(end.level)]; }

  static std::vector<Link> FindLinks(const Plan& plan) {
    const std::vector<int> first = FirstOfStars(plan);
    std::map<std::pair<int, int>, std::size_t> known;
    std::vector<Link> links;
    for (std::size_t i = 0; i < plan.branches.size(); ++i) {
      const int from = plan.FromPoint(plan.branches[i]);
      const int to = plan.ToPoint(plan.branches[i]);
      if (from == -1 || to == -1) continue;
      const auto [it, isNew] = known.try_emplace({from, first[Index(to)]}, links.size());
      if (isNew) links.push_back({.from = from, .to = first[Index(to)], .branches = {}});
      links[it->second].branches.push_back(static_cast<int>(i));
    }
    return links;
  }

  /// Of each star point: the first one of its station whose windings lead to the same points. Of others: themselves.
  static std::vector<int> FirstOfStars(const Plan& plan) {
    std::vector<int> first(plan.isLive.size());
    std::iota(first.begin(), first.end(), 0);
    for (std::size_t i = 1; i < plan.transformers.size(); ++i) {
      const Transformer& one = plan.transformers[i - 1];
      const Transformer& other = plan.transformers[i];
      if (one.station != other.station || one.windings != 3 || other.windings != 3) continue;
      bool isSame = true;
      for (int w = 0; w < 3; ++w) {
        isSame &= WindingPoint(plan, one.firstBranch + w) == WindingPoint(plan, other.firstBranch + w);
      }
      if (isSame) first[Index(StarOf(plan, other))] = first[Index(StarOf(plan, one))];
    }
    return first;
  }

  static int StarOf(const Plan& plan, const Transformer& transformer) {
    return plan.PointOf(plan.branches[Index(transformer.firstBranch)].to);
  }

  /// Where a winding in service begins.
  static int WindingPoint(const Plan& plan, int branch) {
    return plan.ToPoint(plan.branches[Index(branch)]) == -1 ? -1 : plan.FromPoint(plan.branches[Index(branch)]);
  }

  // The tree

  /// Reaches all points from `root`, the higher voltages first, so that power comes down from them.
  void GrowTree(int root) {
    m_inTree.assign(m_links.size(), 0);
    std::array<std::vector<std::pair<int, int>>, kTiers> reached;  // points and the links that lead to them, by voltage
    std::array<std::size_t, kTiers> taken{};
    reached[0].emplace_back(root, -1);
    for (;;) {
      std::size_t tier = 0;
      while (tier < reached.size() && taken[tier] == reached[tier].size()) ++tier;
      if (tier == reached.size()) return;
      const auto [point, link] = reached[tier][taken[tier]++];
      if (IsLive(point)) continue;
      m_plan.isLive[Index(point)] = 1;
      m_order.push_back(point);
      m_upward[Index(point)] = link;
      if (link != -1) m_inTree[Index(link)] = 1;
      for (const int next : m_linksAt.Of(point)) {
        const int other = OtherEnd(m_links[Index(next)], point);
        if (!IsLive(other)) reached[Index(TierOf(m_links[Index(next)], other))].emplace_back(other, next);
      }
    }
  }

  static int OtherEnd(const Link& link, int point) { return link.from == point ? link.to : link.from; }

  /// The voltage at which a link leads to `point`; to a star point, that of the winding.
  int TierOf(const Link& link, int point) const {
    const Branch& branch = m_plan.branches[Index(link.branches.front())];
    const bool leadsToStar = LevelOf(branch.to).isStar;
    return static_cast<int>(LevelOf(link.from == point || leadsToStar ? branch.from : branch.to).tier);
  }

  // What stands on the points

  void ClearDeadDevices() {
    for (const DcLine& line : m_plan.dcLines) {
      Device& from = m_plan.devices[Index(line.fromConverter)];
      Device& to = m_plan.devices[Index(line.toConverter)];
      if (!m_plan.IsLive(from.at) || !m_plan.IsLive(to.at)) from.power = to.power = {};
    }
    for (Device& device : m_plan.devices) {
      if (device.isOff || !m_plan.IsLive(device.at)) device.power = {};
    }
  }

  /// A random power round a mesh.
  void DrawTransit(const Link& link) {
    const int limit = kEighths * DataOf(LevelOf(m_plan.branches[Index(link.branches.front())].to).tier).transit;
    const int64_t p = m_random.Between(-limit, limit);
    Carry(link, link.to, {p, p * m_random.Between(0, 30) / 100});
  }

  void AddDevicesToNeeds() {
    for (const Device& device : m_plan.devices) {
      if (device.kind != DeviceKind::kUnit && m_plan.IsLive(device.at))
        m_need[Index(m_plan.PointOf(device.at))] += device.power;
    }
  }

  void PlanExportsOfAll() {
    std::vector<int> parent(m_upward.size(), -1);
    for (const int point : m_order) {
      if (m_upward[Index(point)] != -1) parent[Index(point)] = OtherEnd(m_links[Index(m_upward[Index(point)])], point);
    }
    for (int64_t Power::*const part : {&Power::p, &Power::q}) {
      TreeSupply supply{m_order, parent, {}, {}, {}};
      for (std::size_t point = 0; point < m_need.size(); ++point) {
        const Limits limits = LimitsOf(static_cast<int>(point));
        supply.need.push_back(m_need[point].*part);
        supply.leastGiven.push_back(limits.least.*part);
        supply.mostGiven.push_back(limits.most.*part);
      }
      const std::vector<int64_t> exports = PlanExports(supply);
      for (std::size_t point = 0; point < m_need.size(); ++point) m_export[point].*part = exports[point];
    }
  }

  /// Settles all that hangs on `point`, those behind it in the tree being settled: what its units don't give comes
  /// through the tree.
  void Settle(int point) {
    const Limits limits = LimitsOf(point);
    const Power wanted = m_need[Index(point)] + m_export[Index(point)];
    Dispatch(point, {std::clamp(wanted.p, limits.least.p, limits.most.p),
                     std::clamp(wanted.q, limits.least.q, limits.most.q)});
    if (m_upward[Index(point)] == -1) return;
    const Link& link = m_links[Index(m_upward[Index(point)])];
    if (point == link.to && LevelOf(m_plan.branches[Index(link.branches.front())].to).isStar) {
      CarryToStars(link);
    } else {
      Carry(link, point, m_need[Index(point)]);
    }
  }

  struct Limits {
    Power least;
    Power most;
  };

  static Limits LimitsOf(const Device& unit) {
    if (unit.isOff) return {};
    const int64_t size = int64_t{unit.size} * kEighths;
    return {{size * kLeastPercentOfUnit / 100, -size * kAbsorbedPercent / 100}, {size, size * kReactivePercent / 100}};
  }

  /// Of the units on `point` together.
  Limits LimitsOf(int point) const {
    Limits sum;
    for (const int number : m_devicesAt.Of(point)) {
      const Device& device = m_plan.devices[Index(number)];
      if (device.kind != DeviceKind::kUnit) continue;
      sum.least += LimitsOf(device).least;
      sum.most += LimitsOf(device).most;
    }
    return sum;
  }

  /// The units on `point` give `power`, each in proportion to its size.
  void Dispatch(int point, Power power) {
    Limits rest = LimitsOf(point);
    for (const int number : m_devicesAt.Of(point)) {
      Device& device = m_plan.devices[Index(number)];
      if (device.kind != DeviceKind::kUnit || device.isOff) continue;
      const Limits own = LimitsOf(device);
      device.power = {Part(power.p, own.most.p, rest.most.p), Part(power.q, own.most.q, rest.most.q)};
      power -= device.power;
      rest.most -= own.most;
      m_need[Index(point)] -= device.power;
    }
  }

  static int64_t Part(int64_t power, int64_t own, int64_t all) { return power * own / all; }

  /// `power` reaches `point` through the branches of `link`.
  void Carry(const Link& link, int point, Power power) {
    const auto count = static_cast<int64_t>(link.branches.size());
    for (int64_t i = 0; i < count; ++i) {
      CarryOne(m_plan.branches[Index(link.branches[static_cast<std::size_t>(i)])], link.to == point,
               {Share(power.p, count, i), Share(power.q, count, i)});
    }
  }

  /// Each transformer brings through its winding of `link` what its own star point needs.
  void CarryToStars(const Link& link) {
    for (const int number : link.branches) {
      Branch& winding = m_plan.branches[Index(number)];
      CarryOne(winding, true, m_need[Index(m_plan.ToPoint(winding))]);
    }
  }

  /// `reaches` comes out of `branch` at one end. What it costs is needed at the other.
  void CarryOne(Branch& branch, bool isForward, const Power& reaches) {
    const Power leaves = reaches + Loss(branch, reaches.p);
    branch.in = isForward ? leaves : Power{} - reaches;
    branch.out = isForward ? reaches : Power{} - leaves;
    m_need[Index(m_plan.FromPoint(branch))] += branch.in;
    m_need[Index(m_plan.ToPoint(branch))] -= branch.out;
  }

  /// The reference unit gives what remains. The loads beside it are raised where that would be too little.
  void SettleReference(Device& unit) {
    const int root = m_order.front();
    Power& need = m_need[Index(root)];
    for (const int number : m_devicesAt.Of(root)) {
      Device& device = m_plan.devices[Index(number)];
      if (device.kind != DeviceKind::kLoad || device.isOff || unit.power.p + need.p >= kReferenceReserve) continue;
      const int64_t more = kReferenceReserve - unit.power.p - need.p;
      device.power.p += more;
      need.p += more;
    }
    unit.power += need;
    const int64_t p = unit.power.p / kEighths;
    if (p >= unit.size) unit.size = static_cast<int>((p / 50 + 2) * 50);
  }

  Plan& m_plan;
  Random& m_random;
  std::vector<Power> m_need;    ///< of each point: what must come to it
  std::vector<Power> m_export;  ///< of each point: what its part of the tree is to give towards the root
  std::vector<int> m_upward;    ///< of each point: the link of the tree towards the root
  std::vector<Link> m_links;
  std::vector<char> m_inTree;  ///< of each link
  std::vector<int> m_order;    ///< live points, each behind the one that it is fed from
  ListsByPoint m_linksAt;
  ListsByPoint m_devicesAt;
};

}  // namespace

void BalancePowers(Plan& plan, Random& random) { Balance(plan, random).Run(); }

}  // namespace dtsdb::tools
