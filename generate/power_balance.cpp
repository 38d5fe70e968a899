#include "generate/power_balance.h"

#include <algorithm>
#include <array>
#include <cstddef>

#include "generate/export_plan.h"
#include "generate/supply_tree.h"

namespace dtsdb::tools {
namespace {

constexpr int64_t kLeastPercentOfUnit = 20;  ///< a unit in service gives this part of its size or more
constexpr int64_t kReactivePercent = 50;     ///< of its size that a unit gives at most
constexpr int64_t kAbsorbedPercent = 20;     ///< of its size that a unit takes in at most
constexpr int64_t kReferenceReserve = int64_t{50} * kEighths;

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

/// What units can give.
struct Limits {
  Power least;
  Power most;
};

Limits LimitsOf(const Device& unit) {
  if (unit.isOff) return {};
  const int64_t size = int64_t{unit.size} * kEighths;
  return {{size * kLeastPercentOfUnit / 100, -size * kAbsorbedPercent / 100}, {size, size * kReactivePercent / 100}};
}

class Balance {
 public:
  Balance(Plan& plan, Device& reference, Random& random)
      : m_plan(plan),
        m_reference(reference),
        m_random(random),
        m_need(plan.PointCount()),
        m_export(plan.PointCount()),
        m_tree(GrowSupplyTree(plan, plan.PointOf(reference.at))),
        m_devicesAt(plan.PointCount(), static_cast<int>(plan.devices.size()),
                    [&plan](int i) { return std::array{plan.PointOf(plan.devices[Index(i)].at)}; }) {}

  void Run() {
    for (const int point : m_tree.order) m_plan.isLive[Index(point)] = 1;
    ClearDeadDevices();
    for (std::size_t i = 0; i < m_tree.links.size(); ++i) {
      const Link& link = m_tree.links[i];
      if (m_tree.inTree[i] == 0 && m_plan.isLive[Index(link.from)] != 0) DrawTransit(link);
    }
    AddDevicesToNeeds();
    PlanExportsOfAll();
    for (auto point = m_tree.order.rbegin(); point != m_tree.order.rend(); ++point) Settle(*point);
    SettleReference();
  }

 private:
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
    const CircuitEnd& end = m_plan.branches[Index(link.branches.front())].from;
    const int limit = kEighths * DataOf(m_plan.levels[Index(end.level)].tier).transit;
    const int64_t p = m_random.Between(-limit, limit);
    Carry(link, link.to, {p, p * m_random.Between(0, 30) / 100});
  }

  void AddDevicesToNeeds() {
    for (const Device& device : m_plan.devices) {
      if (device.kind == DeviceKind::kUnit || !m_plan.IsLive(device.at)) continue;
      m_need[Index(m_plan.PointOf(device.at))] += device.power;
    }
  }

  void PlanExportsOfAll() {
    for (int64_t Power::*const part : {&Power::p, &Power::q}) {
      TreeSupply supply{m_tree.order, m_tree.parent, {}, {}, {}};
      for (std::size_t point = 0; point < m_need.size(); ++point) {
        const Limits limits = LimitsAt(static_cast<int>(point));
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
    const Limits limits = LimitsAt(point);
    const Power wanted = m_need[Index(point)] + m_export[Index(point)];
    Dispatch(point, {std::clamp(wanted.p, limits.least.p, limits.most.p),
                     std::clamp(wanted.q, limits.least.q, limits.most.q)});
    if (m_tree.upward[Index(point)] == -1) return;
    const Link& link = m_tree.links[Index(m_tree.upward[Index(point)])];
    if (point == link.to && link.leadsToStar) {
      CarryToStars(link);
    } else {
      Carry(link, point, m_need[Index(point)]);
    }
  }

  /// Of the units on `point` together.
  Limits LimitsAt(int point) const {
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
    Limits rest = LimitsAt(point);
    for (const int number : m_devicesAt.Of(point)) {
      Device& device = m_plan.devices[Index(number)];
      if (device.kind != DeviceKind::kUnit || device.isOff) continue;
      const Limits own = LimitsOf(device);
      device.power = {power.p * own.most.p / rest.most.p, power.q * own.most.q / rest.most.q};
      power -= device.power;
      rest.most -= own.most;
      m_need[Index(point)] -= device.power;
    }
  }

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

  /// The reference unit gives what remains, and the load beside it is raised where that would be too little.
  void SettleReference() {
    const int root = m_tree.order.front();
    Power remains = m_reference.power + m_need[Index(root)];
    for (const int number : m_devicesAt.Of(root)) {
      Device& device = m_plan.devices[Index(number)];
      if (device.kind != DeviceKind::kLoad || device.isOff || remains.p >= kReferenceReserve) continue;
      device.power.p += kReferenceReserve - remains.p;
      remains.p = kReferenceReserve;
    }
    m_reference.power = remains;
    const int64_t p = remains.p / kEighths;
    if (p >= m_reference.size) m_reference.size = static_cast<int>((p / 50 + 2) * 50);
  }

  Plan& m_plan;
  Device& m_reference;
  Random& m_random;
  std::vector<Power> m_need;    ///< of each point: what must come to it
  std::vector<Power> m_export;  ///< of each point: what its part of the tree is to give towards the root
  SupplyTree m_tree;
  ListsByPoint m_devicesAt;
};

}  // namespace

void BalancePowers(Plan& plan, Random& random) {
  const auto reference =
      std::find_if(plan.devices.begin(), plan.devices.end(), [](const Device& device) { return device.isReference; });
  if (reference != plan.devices.end()) Balance(plan, *reference, random).Run();
}

}  // namespace dtsdb::tools
