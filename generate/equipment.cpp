#include "generate/equipment.h"

#include <algorithm>
#include <cstddef>
#include <span>

#include "generate/station_kinds.h"

namespace dtsdb::tools {
namespace {

constexpr int kPercentOff = 2;       ///< devices that are switched off
constexpr int kReferenceSize = 600;  ///< MW, at least
constexpr int kFirstFixedStations = 3;

int DrawCount(const DeviceDraw& draw, Random& random) {
  return random.Chance(draw.percent) ? random.Between(draw.count.low, draw.count.high) : 0;
}

int64_t DrawPower(const Range& range, Random& random) {
  return random.Between(range.low * kEighths, range.high * kEighths);
}

template <class T>
int LastOf(const std::vector<T>& rows) {
  return static_cast<int>(rows.size()) - 1;
}

class StationPlanner {
 public:
  StationPlanner(Plan& plan, const GeneratorOptions& options, Random& random)
      : m_plan(plan), m_options(options), m_random(random) {}

  void AddStation(int number) {
    const StationKind& kind = ChooseKind(number);
    m_plan.stations.push_back({.firstLevel = static_cast<int>(m_plan.levels.size())});
    for (const LevelKind& level : kind.levels) AddLevel(level.tier);
    AddTransformers(kind);
    const int first = m_plan.stations.back().firstLevel;
    for (int i = 0; i < static_cast<int>(kind.levels.size()); ++i) {
      AddDevices(first + i, kind.levels[Index(i)]);
    }
    if (number == 0) AddReference(first);
  }

 private:
  const StationKind& ChooseKind(int number) {
    const std::span<const StationKind> kinds = StationKinds();
    if (number < kFirstFixedStations) return kinds[Index(number)];
    int rest = m_random.Between(1, 100);
    std::size_t chosen = 0;
    while (rest > kinds[chosen].share) rest -= kinds[chosen++].share;
    return kinds[chosen];
  }

  int AddLevel(Tier tier, bool isStar = false) {
    Level level;
    level.station = LastOf(m_plan.stations);
    level.tier = tier;
    level.isStar = isStar;
    level.voltage = m_random.Between(960, 1050);
    level.angle = m_random.Between(-300, 0);
    m_plan.levels.push_back(level);
    ++m_plan.stations.back().levels;
    return LastOf(m_plan.levels);
  }

  CircuitEnd NextCircuit(int level) { return {level, m_plan.levels[Index(level)].circuits++}; }

  // Transformers

  void AddTransformers(const StationKind& kind) {
    const int levels = static_cast<int>(kind.levels.size());
    if (levels == 1) return;
    const int high = m_plan.stations.back().firstLevel;
    const int count = m_random.Chance(kind.twoTransformers) ? 2 : 1;
    if (levels == 3 && m_random.Chance(m_options.threeWindings)) {
      const int star = AddLevel(kind.levels.front().tier, true);
      for (int i = 0; i < count; ++i) AddThreeWindings(high, star);
      return;
    }
    for (int upper = high; upper + 1 < high + levels; ++upper) {
      for (int i = 0; i < count; ++i) {
        AddTransformer(1);
        AddWinding(NextCircuit(upper), NextCircuit(upper + 1));
      }
    }
  }

  void AddThreeWindings(int high, int star) {
    AddTransformer(3);
    const CircuitEnd centre = NextCircuit(star);
    for (int i = 0; i < 3; ++i) AddWinding(NextCircuit(high + i), centre);
  }

  void AddTransformer(int windings) {
    m_plan.transformers.push_back({.station = LastOf(m_plan.stations),
                                   .number = ++m_plan.stations.back().transformers,
                                   .firstBranch = static_cast<int>(m_plan.branches.size()),
                                   .windings = windings});
  }

  void AddWinding(const CircuitEnd& from, const CircuitEnd& to) {
    m_plan.branches.push_back({.from = from, .to = to, .transformer = LastOf(m_plan.transformers)});
  }

  // Devices

  void AddDevices(int level, const LevelKind& kind) {
    for (int i = DrawCount(kind.units, m_random); i > 0; --i) AddUnit(level);
    for (int i = DrawCount(kind.loads, m_random); i > 0; --i) AddLoadOn(NextCircuit(level));
    for (int i = DrawCount(kind.capacitors, m_random); i > 0; --i) AddCapacitor(level);
  }

  /// The unit that takes what is left over, and a load on the same circuit, so that it never has to take power in.
  void AddReference(int level) {
    Device& unit = AddUnit(level);
    unit.isOff = false;
    unit.isReference = true;
    unit.size = std::max(unit.size, kReferenceSize);
    const CircuitEnd at = unit.at;
    AddLoadOn(at).isOff = false;
  }

  Device& AddDevice(DeviceKind kind, const CircuitEnd& at) {
    m_plan.devices.push_back({.kind = kind, .at = at, .isOff = m_random.Chance(kPercentOff)});
    return m_plan.devices.back();
  }

  const TierData& TierOf(int level) const { return DataOf(m_plan.levels[Index(level)].tier); }

  Device& AddUnit(int level) {
    Device& unit = AddDevice(DeviceKind::kUnit, NextCircuit(level));
    const Range size = TierOf(level).unitSize;
    unit.size = m_random.Between(size.low, size.high);
    m_plan.levels[Index(level)].isGrid = true;
    return unit;
  }

  Device& AddLoadOn(const CircuitEnd& at) {
    Device& load = AddDevice(DeviceKind::kLoad, at);
    load.power.p = DrawPower(TierOf(at.level).load, m_random);
    load.power.q = load.power.p * m_random.Between(10, 30) / 100;
    return load;
  }

  void AddCapacitor(int level) {
    Device& capacitor = AddDevice(DeviceKind::kCapacitor, NextCircuit(level));
    capacitor.power.q = -DrawPower(TierOf(level).capacitor, m_random);
  }

  Plan& m_plan;
  const GeneratorOptions& m_options;
  Random& m_random;
};

class LinePlanner {
 public:
  LinePlanner(Plan& plan, const GeneratorOptions& options, Random& random)
      : m_plan(plan), m_options(options), m_random(random) {
    while ((m_width + 1) * (m_width + 1) <= LastOf(plan.stations) + 1) ++m_width;
  }

  /// The stations stand row by row on a square. Station `number` gets a line to the last one before it that has its
  /// voltage, or to the one above it; a third gets the other as well.
  void AddLinesOf(int number) {
    const Tier tier = TopLevel(number).tier;
    if (number > 0) {
      const int left = Before(tier, number);
      const int above = Before(tier, std::max(1, number - m_width + 1));
      const bool isLeft = above == -1 || m_random.Chance(50);
      const int first = isLeft ? left : above;
      AddLine(first, number, tier, 0);
      const int second = isLeft ? above : left;
      if (second != -1 && m_random.Chance(1, 3)) AddLine(second, number, tier, first == second ? 1 : 0);
    }
    if (tier <= Tier::k220) AddDcLineOf(number, tier);
    const Station& station = m_plan.stations[Index(number)];
    for (int i = 0; i < station.levels; ++i) {
      const Level& level = m_plan.levels[Index(station.firstLevel + i)];
      if (!level.isStar) Members(level.tier).push_back(number);
    }
  }

 private:
  std::vector<int>& Members(Tier tier) { return m_members[static_cast<std::size_t>(tier)]; }

  Level& TopLevel(int station) { return m_plan.levels[Index(m_plan.stations[Index(station)].firstLevel)]; }

  /// The last station of voltage `tier` before `number`, -1 where there is none.
  int Before(Tier tier, int number) {
    const std::vector<int>& members = Members(tier);
    const auto behind = std::lower_bound(members.begin(), members.end(), number);
    return behind == members.begin() ? -1 : *(behind - 1);
  }

  CircuitEnd NextCircuit(int station, Tier tier) {
    int level = m_plan.stations[Index(station)].firstLevel;
    while (m_plan.levels[Index(level)].tier != tier) ++level;
    Level& found = m_plan.levels[Index(level)];
    found.isGrid = true;
    return {level, found.circuits++};
  }

  void AddLine(int from, int to, Tier tier, int parallel) {
    const CircuitEnd fromEnd = NextCircuit(from, tier);
    const CircuitEnd toEnd = NextCircuit(to, tier);
    m_plan.branches.push_back({.from = fromEnd, .to = toEnd, .parallel = parallel});
  }

  void AddDcLineOf(int number, Tier tier) {
    if (number > 0 && !m_converterSites.empty() && m_random.Chance(m_options.dcLines)) {
      const int from = m_converterSites[Index(m_random.Between(0, LastOf(m_converterSites)))];
      const int64_t power = m_random.Between(kEighths, DataOf(tier).transit * kEighths);
      const int fromConverter = AddConverter(from, TopLevel(from).tier, power);
      const int toConverter = AddConverter(number, tier, power / 50 - power);
      m_plan.dcLines.push_back({fromConverter, toConverter});
    }
    m_converterSites.push_back(number);
  }

  /// A converter that takes `p` from the AC network; below 0 it gives. Either way it takes reactive power.
  int AddConverter(int station, Tier tier, int64_t p) {
    const CircuitEnd at = NextCircuit(station, tier);
    m_plan.devices.push_back({.kind = DeviceKind::kConverter, .at = at, .power = {p, (p < 0 ? -p : p) / 2}});
    return LastOf(m_plan.devices);
  }

  Plan& m_plan;
  const GeneratorOptions& m_options;
  Random& m_random;
  int m_width = 1;
  std::array<std::vector<int>, kTiers> m_members;  ///< stations that have a voltage, in order
  std::vector<int> m_converterSites;
};

}  // namespace

void PlanStations(Plan& plan, const GeneratorOptions& options, Random& random) {
  StationPlanner planner(plan, options, random);
  for (int i = 0; i < options.stations; ++i) planner.AddStation(i);
}

void PlanLines(Plan& plan, const GeneratorOptions& options, Random& random) {
  LinePlanner planner(plan, options, random);
  for (int i = 0; i < static_cast<int>(plan.stations.size()); ++i) planner.AddLinesOf(i);
}

}  // namespace dtsdb::tools
