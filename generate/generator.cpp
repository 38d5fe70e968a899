#include "generate/generator.h"

#include <algorithm>
#include <cmath>
#include <vector>

#include "generate/input_rows.h"
#include "generate/random.h"
#include "generate/switchyard.h"
#include "model/record_bits.h"

namespace dtsdb::tools {
namespace {

constexpr int kStationsInDistrict = 20;
constexpr float kHigh = 220.0F;    ///< of hubs
constexpr float kMiddle = 110.0F;  ///< of every station
constexpr float kLow = 10.0F;      ///< of substations that feed loads
constexpr u8 kStationType = 8;

QString Text(const char* latin) { return QLatin1String(latin); }

/// "S000042" for 42.
QString Numbered(const char* prefix, int number) {
  return Text(prefix) + QString::number(number).rightJustified(6, QLatin1Char('0'));
}

/// Current in A of `p` MW at `vbase` kV, in tenths.
double Current(double p, float vbase) { return std::round(std::abs(p) * 10000.0 / (1.732 * double{vbase})) / 10.0; }

struct Level {
  QString id;
  float vbase = 0.0F;
  int circuits = 0;  ///< those that stand on it so far
};

struct Station {
  QString id;
  QString district;
  std::vector<Level> levels;  ///< the higher voltage first
};

/// How many devices stand on a level. Numbers drawn for it are drawn in this order: the members of a braced list are
/// evaluated one by one, the arguments of a call in any order.
struct DeviceCounts {
  int units = 0;
  int loads = 0;
  int capacitors = 0;
};

/// Writes a utility in three passes: the stations with their equipment, the lines between them, and then, when it is
/// known how many circuits each level has, the switchyards.
class Utility {
 public:
  explicit Utility(const GeneratorOptions& options) : m_random(options.seed), m_count(std::max(0, options.stations)) {}

  void Generate(DTSDB& database) {
    m_rows.Put<CO>(m_company);
    m_stations.reserve(static_cast<std::size_t>(m_count));
    for (int i = 0; i < m_count; ++i) AddStation(i);
    AddLines();
    for (Station& station : m_stations) {
      for (const Level& level : station.levels) AddSwitchyard(level);
    }
    m_rows.FillTables(database);
  }

 private:
  // Stations and what stands in them

  void AddStation(int number) {
    Station station;
    station.district = Numbered("D", number / kStationsInDistrict);
    if (number % kStationsInDistrict == 0) m_rows.Put<DV>(station.district).co = m_company;
    station.id = Numbered("S", number);
    ST& st = m_rows.Put<ST>(station.id);
    st.dv = station.district;
    st.type = kStationType;

    const int kind = m_random.Between(1, 100);
    if (kind <= 30) {
      EquipHub(station);
    } else if (kind <= 75) {
      EquipSubstation(station);
    } else {
      EquipPlant(station);
    }
    if (number == 0) AddUnit(station, station.levels.front()).ref = 0;
    m_stations.push_back(std::move(station));
  }

  void EquipHub(Station& station) {
    AddLevel(station, kHigh);
    AddLevel(station, kMiddle);
    AddWindings(station, 30);
    AddDevices(station, station.levels.front(),
               {.units = m_random.Chance(25) ? m_random.Between(1, 3) : 0, .loads = m_random.Chance(10) ? 1 : 0});
    AddDevices(station, station.levels.back(),
               {.loads = m_random.Chance(30) ? 1 : 0, .capacitors = m_random.Chance(10) ? 1 : 0});
  }

  void EquipSubstation(Station& station) {
    AddLevel(station, kMiddle);
    AddLevel(station, kLow);
    AddWindings(station, 50);
    AddDevices(station, station.levels.back(),
               {.loads = m_random.Between(1, 3), .capacitors = m_random.Chance(40) ? 1 : 0});
  }

  void EquipPlant(Station& station) {
    AddLevel(station, kMiddle);
    AddDevices(station, station.levels.front(),
               {.units = m_random.Chance(40) ? m_random.Between(1, 2) : 0, .loads = m_random.Between(1, 2)});
  }

  void AddLevel(Station& station, float vbase) {
    Level level;
    level.vbase = vbase;
    level.id = station.id + QLatin1Char('-') + QString::number(static_cast<int>(vbase));
    KV& kv = m_rows.Put<KV>(level.id);
    kv.name = level.id + Text(" kV");
    kv.st = station.id;
    kv.vbase = vbase;
    kv.vmax = vbase * 1.1F;
    kv.vmin = vbase * 0.9F;
    station.levels.push_back(std::move(level));
  }

  /// One winding between the two levels of the station, or two in `percent` of the cases.
  void AddWindings(Station& station, int percent) {
    Level& high = station.levels.front();
    Level& low = station.levels.back();
    const int count = m_random.Chance(percent) ? 2 : 1;
    for (int i = 1; i <= count; ++i) {
      XF& xf = m_rows.Put<XF>(station.id + Text("-T") + QString::number(i));
      xf.type = 1;
      xf.st = station.id;
      SetEnds(xf, high, low);
      SetFlow(xf, m_random.Tenths(-50, 150), high.vbase, low.vbase);
      if (m_random.Chance(2)) xf.status = BranchKind<XF>::kOut;
    }
  }

  void AddDevices(const Station& station, Level& level, const DeviceCounts& counts) {
    for (int i = 0; i < counts.units; ++i) AddUnit(station, level);
    for (int i = 0; i < counts.loads; ++i) AddLoad(station, level);
    for (int i = 0; i < counts.capacitors; ++i) AddCapacitor(station, level);
  }

  UN& AddUnit(const Station& station, Level& level) {
    UN& un = PutShunt<UN>(station, level, "-G");
    un.pmax = static_cast<f32>(m_random.Between(50, 600));
    un.p = static_cast<f32>(m_random.Between(20, static_cast<int>(un.pmax)));
    un.pcur = un.p;
    un.q = static_cast<f32>(m_random.Tenths(-20, 100));
    un.a = static_cast<f32>(m_random.Tenths(-30, 0));
    un.ref = m_random.Chance(20) ? 0 : -1;
    un.ana_p = Measure(un.id, ".P", double{un.p});
    un.ana_q = Measure(un.id, ".Q", double{un.q});
    un.ana_v = Measure(un.id, ".V", Voltage(level));
    return un;
  }

  void AddLoad(const Station& station, Level& level) {
    LD& ld = PutShunt<LD>(station, level, "-L");
    ld.p = static_cast<f32>(m_random.Tenths(1, 60));
    ld.q = static_cast<f32>(m_random.Tenths(0, 20));
    ld.a = static_cast<f32>(m_random.Tenths(-30, 0));
    ld.ana_p = Measure(ld.id, ".P", double{ld.p});
    ld.ana_q = Measure(ld.id, ".Q", double{ld.q});
    ld.ana_i = Measure(ld.id, ".I", Current(double{ld.p}, level.vbase));
    ld.ana_v = Measure(ld.id, ".V", Voltage(level));
  }

  void AddCapacitor(const Station& station, Level& level) {
    CP& cp = PutShunt<CP>(station, level, "-C");
    cp.q = static_cast<f32>(m_random.Tenths(-30, -1));
    cp.ana_q = Measure(cp.id, ".Q", double{cp.q});
  }

  /// A device on a circuit of its own. Its number in its name is the circuit's.
  template <class Shunt>
  Shunt& PutShunt(const Station& station, Level& level, const char* infix) {
    const int circuit = level.circuits;
    Shunt& shunt = m_rows.Put<Shunt>(station.id + Text(infix) + QString::number(static_cast<int>(level.vbase)) +
                                     QLatin1Char('-') + QString::number(circuit + 1));
    shunt.kv = level.id;
    shunt.nd = NextCircuit(level);
    if (m_random.Chance(2)) shunt.status = SHUNT_OFF;
    return shunt;
  }

  // Lines

  /// The stations stand row by row on a square grid. Each but the first has a line to the one on its left or the one
  /// above it, which makes one network; a third of those that have both neighbours get the other line as well.
  void AddLines() {
    const int width = std::max(1, static_cast<int>(std::sqrt(m_count)));
    for (int i = 1; i < m_count; ++i) {
      const bool hasLeft = i % width != 0;
      const bool hasAbove = i >= width;
      const bool left = hasLeft && (!hasAbove || m_random.Chance(50));
      AddLine(left ? i - 1 : i - width, i);
      if (hasLeft && hasAbove && m_random.Chance(1, 3)) AddLine(left ? i - width : i - 1, i);
      if (m_random.Chance(1, 10)) AddDcLine(m_random.Between(0, i - 1), i);
    }
  }

  Station& At(int number) { return m_stations[static_cast<std::size_t>(number)]; }
  static bool IsHub(const Station& station) { return station.levels.front().vbase == kHigh; }
  static Level& LevelOf(Station& station, float vbase) {
    return station.levels.front().vbase == vbase ? station.levels.front() : station.levels.back();
  }

  void AddLine(int from, int to) {
    const bool high = IsHub(At(from)) && IsHub(At(to)) && m_random.Chance(60);
    const float vbase = high ? kHigh : kMiddle;
    LN& ln = PutLine<LN>("L-", At(from), At(to), vbase);
    SetFlow(ln, m_random.Tenths(-120, 120), vbase, vbase);
    const int state = m_random.Between(1, 200);
    if (state <= 2) ln.status = BranchKind<LN>::kOut;
    if (state == 3) ln.status = BranchKind<LN>::kOpen1;
    if (state == 4) ln.status = BranchKind<LN>::kOpen2;
  }

  /// A DC line between two hubs, near or far; nothing where there are no two.
  void AddDcLine(int from, int to) {
    if (!IsHub(At(from)) || !IsHub(At(to))) return;
    DLN& dln = PutLine<DLN>("DC-", At(from), At(to), kHigh);
    MeasureEnds(dln, m_random.Tenths(0, 300), kHigh, kHigh);
  }

  template <class Line>
  Line& PutLine(const char* prefix, Station& from, Station& to, float vbase) {
    Line& line = m_rows.Put<Line>(Text(prefix) + from.id + QLatin1Char('-') + to.id);
    line.dv = from.district;
    line.st = from.id;
    line.zst = to.id;
    SetEnds(line, LevelOf(from, vbase), LevelOf(to, vbase));
    return line;
  }

  template <class Branch>
  static void SetEnds(Branch& branch, Level& from, Level& to) {
    branch.kv = from.id;
    branch.nd = NextCircuit(from);
    branch.zkv = to.id;
    branch.znd = NextCircuit(to);
  }

  /// Flow values of a line or winding that carries `p` MW, and their measurements.
  template <class Branch>
  void SetFlow(Branch& branch, double p, float vbase, float zvbase) {
    branch.p = static_cast<f32>(p);
    branch.zp = branch.p;
    branch.q = static_cast<f32>(m_random.Tenths(-30, 30));
    branch.zq = branch.q;
    branch.i = static_cast<f32>(Current(p, vbase));
    branch.zi = static_cast<f32>(Current(p, zvbase));
    MeasureEnds(branch, p, vbase, zvbase);
  }

  template <class Branch>
  void MeasureEnds(Branch& branch, double p, float vbase, float zvbase) {
    branch.ana_p = Measure(branch.id, ".P", p);
    branch.ana_q = Measure(branch.id, ".Q", m_random.Tenths(-30, 30));
    branch.ana_i = Measure(branch.id, ".I", Current(p, vbase));
    branch.zana_p = Measure(branch.id, ".zP", p);
    branch.zana_q = Measure(branch.id, ".zQ", m_random.Tenths(-30, 30));
    branch.zana_i = Measure(branch.id, ".zI", Current(p, zvbase));
  }

  // Switchyards

  void AddSwitchyard(const Level& level) {
    const Arrangement arrangement = ChooseArrangement(level);
    Switchyard yard(m_rows, level.id, arrangement, level.circuits);
    SwitchStates states;
    states.coupler = !m_random.Chance(15);
    if (m_random.Chance(8)) states.openCircuit = m_random.Between(0, level.circuits - 1);
    yard.Build(states);

    for (int bus = 0; bus < yard.BusbarCount(); ++bus) AddBusbar(yard, bus, level);
    if (arrangement == Arrangement::kDoubleBus && states.coupler && m_random.Chance(10)) AddZbr(yard, level);
  }

  Arrangement ChooseArrangement(const Level& level) {
    if (level.circuits < 3) return Arrangement::kSingleBus;
    const int choice = m_random.Between(1, 100);
    if (level.vbase == kLow) return choice <= 60 ? Arrangement::kSingleBus : Arrangement::kDoubleBus;
    if (choice <= 25) return Arrangement::kSingleBus;
    if (choice <= 65) return Arrangement::kDoubleBus;
    return choice <= 85 || level.circuits > 6 ? Arrangement::kBreakerAndAHalf : Arrangement::kRing;
  }

  void AddBusbar(const Switchyard& yard, int number, const Level& level) {
    BUS& bus = m_rows.Put<BUS>(level.id + Text(number == 0 ? "-B1" : "-B2"));
    bus.kv = level.id;
    bus.nd = yard.BusbarNode(number);
    bus.v = Voltage(level);
    bus.a = m_random.Tenths(-30, 0);
    bus.ana_v = Measure(bus.id, ".V", bus.v);
    bus.ana_a = Measure(bus.id, ".A", bus.a);
  }

  /// A zero-impedance branch on the coupler of a double bus.
  void AddZbr(const Switchyard& yard, const Level& level) {
    ZBR& zbr = m_rows.Put<ZBR>(level.id + Text("-Z"));
    zbr.cb = yard.CouplerBreaker();
    zbr.p = static_cast<f32>(m_random.Tenths(-80, 80));
    zbr.q = static_cast<f32>(m_random.Tenths(-20, 20));
    zbr.i = static_cast<f32>(Current(double{zbr.p}, level.vbase));
    zbr.ana_p = Measure(zbr.id, ".P", double{zbr.p});
    zbr.ana_q = Measure(zbr.id, ".Q", double{zbr.q});
    zbr.ana_i = Measure(zbr.id, ".I", double{zbr.i});
  }

  // What all of them need

  static QString NextCircuit(Level& level) { return Switchyard::CircuitNode(level.id, level.circuits++); }

  /// A measured voltage in kV, close to the base voltage.
  double Voltage(const Level& level) { return double{level.vbase} * m_random.Between(960, 1050) / 1000.0; }

  /// A measurement of device `device`; returns its identity.
  QString Measure(const QString& device, const char* suffix, double value) {
    ANALOG& point = m_rows.Put<ANALOG>(device + Text(suffix));
    point.name = point.id;
    point.value = static_cast<f32>(value);
    return point.id;
  }

  Random m_random;
  int m_count;
  QString m_company = Text("UTILITY");
  InputRows m_rows;
  std::vector<Station> m_stations;
};

}  // namespace

void GenerateUtility(DTSDB& database, const GeneratorOptions& options) { Utility(options).Generate(database); }

}  // namespace dtsdb::tools
