#include "generate/plan_rows.h"

#include <cmath>
#include <cstddef>

#include "generate/switchyard.h"
#include "model/record_bits.h"

namespace dtsdb::tools {
namespace {

constexpr int kStationsInDistrict = 20;
constexpr u8 kStationType = 8;
constexpr u8 kHighWinding = 1;

QString Text(const char* latin) { return QLatin1String(latin); }

/// "S000042" for 42.
QString Numbered(const char* prefix, int number) {
  return Text(prefix) + QString::number(number).rightJustified(6, QLatin1Char('0'));
}

QString StationId(int number) { return Numbered("S", number); }
QString DistrictId(int station) { return Numbered("D", station / kStationsInDistrict); }

f32 Mega(int64_t eighths) { return static_cast<f32>(static_cast<double>(eighths) / kEighths); }

class PlanRows {
 public:
  PlanRows(InputRows& rows, const Plan& plan) : m_rows(rows), m_plan(plan) {}

  void Put() {
    m_rows.Put<CO>(m_company);
    for (int i = 0; i < static_cast<int>(m_plan.stations.size()); ++i) PutStation(i);
    m_levelIds.reserve(m_plan.levels.size());
    for (const Level& level : m_plan.levels) PutLevel(level);
    m_transfer.assign(2 * m_plan.levels.size(), {});
    for (std::size_t i = 0; i < m_plan.devices.size(); ++i) PutDevice(m_plan.devices[i]);
    for (const Branch& branch : m_plan.branches) {
      if (branch.transformer == -1) {
        PutLine(branch);
      } else {
        PutWinding(branch);
      }
    }
    for (const DcLine& line : m_plan.dcLines) PutDcLine(line);
    for (std::size_t i = 0; i < m_plan.levels.size(); ++i) {
      if (!m_plan.levels[i].isStar) PutSwitchyard(static_cast<int>(i));
    }
  }

 private:
  const Level& LevelAt(int number) const { return m_plan.levels[Index(number)]; }
  const QString& LevelId(int number) const { return m_levelIds[Index(number)]; }
  QString NodeOf(const CircuitEnd& end) const { return CircuitNode(LevelId(end.level), end.circuit); }
  int Kv(int level) const { return DataOf(LevelAt(level).tier).kv; }

  // The hierarchy

  void PutStation(int number) {
    const QString district = DistrictId(number);
    if (number % kStationsInDistrict == 0) m_rows.Put<DV>(district).co = m_company;
    ST& st = m_rows.Put<ST>(StationId(number));
    st.dv = district;
    st.type = kStationType;
  }

  void PutLevel(const Level& level) {
    const QString station = StationId(level.station);
    const auto vbase = static_cast<f32>(DataOf(level.tier).kv);
    const QString id =
        station + QLatin1Char('-') + (level.isStar ? Text("star") : QString::number(DataOf(level.tier).kv));
    KV& kv = m_rows.Put<KV>(id);
    kv.name = id + Text(level.isStar ? " points" : " kV");
    kv.st = station;
    kv.vbase = vbase;
    kv.vmax = vbase * 1.1F;
    kv.vmin = vbase * 0.9F;
    m_levelIds.push_back(id);
  }

  // Devices

  void PutDevice(const Device& device) {
    switch (device.kind) {
      case DeviceKind::kUnit:
        return PutUnit(device);
      case DeviceKind::kLoad:
        return PutLoad(device, "-L");
      case DeviceKind::kConverter:
        return PutLoad(device, "-V");
      case DeviceKind::kCapacitor:
        return PutCapacitor(device);
    }
  }

  void PutUnit(const Device& device) {
    UN& un = PutShunt<UN>(device, "-G");
    AddTransfer(device.at, Power{} - device.power);
    un.pmax = static_cast<f32>(device.size);
    un.p = Mega(device.power.p);
    un.pcur = un.p;
    un.q = Mega(device.power.q);
    un.a = Angle(device.at.level);
    un.ref = device.isReference ? 0 : -1;
    un.ana_p = Measure(un.id, ".P", un.p);
    un.ana_q = Measure(un.id, ".Q", un.q);
    un.ana_v = Measure(un.id, ".V", VoltageAt(device.at));
  }

  void PutLoad(const Device& device, const char* infix) {
    LD& ld = PutShunt<LD>(device, infix);
    AddTransfer(device.at, device.power);
    ld.p = Mega(device.power.p);
    ld.q = Mega(device.power.q);
    ld.a = Angle(device.at.level);
    ld.ana_p = Measure(ld.id, ".P", ld.p);
    ld.ana_q = Measure(ld.id, ".Q", ld.q);
    ld.ana_i = Measure(ld.id, ".I", Current(device.power, device.at.level));
    ld.ana_v = Measure(ld.id, ".V", VoltageAt(device.at));
  }

  void PutCapacitor(const Device& device) {
    CP& cp = PutShunt<CP>(device, "-C");
    AddTransfer(device.at, device.power);
    cp.q = Mega(device.power.q);
    cp.ana_q = Measure(cp.id, ".Q", cp.q);
  }

  /// The number in the name of a device is that of its circuit.
  template <class Shunt>
  Shunt& PutShunt(const Device& device, const char* infix) {
    const int level = device.at.level;
    Shunt& shunt = m_rows.Put<Shunt>(StationId(LevelAt(level).station) + Text(infix) + QString::number(Kv(level)) +
                                     QLatin1Char('-') + QString::number(device.at.circuit + 1));
    shunt.kv = LevelId(level);
    shunt.nd = NodeOf(device.at);
    if (device.isOff) shunt.status = SHUNT_OFF;
    return shunt;
  }

  // Lines and windings

  void PutLine(const Branch& branch) {
    QString id = LineId("L-", branch.from, branch.to);
    if (branch.parallel > 0) id += QLatin1Char('-') + QString::number(branch.parallel + 1);
    LN& line = m_rows.Put<LN>(id);
    SetStations(line, branch.from, branch.to);
    SetBranch(line, branch);
  }

  void PutWinding(const Branch& branch) {
    const Transformer& transformer = m_plan.transformers[Index(branch.transformer)];
    const QString station = StationId(transformer.station);
    const auto place = static_cast<int>(&branch - &m_plan.branches[Index(transformer.firstBranch)]);
    QString id = station + Text("-T") + QString::number(transformer.number);
    if (transformer.windings > 1) id += QLatin1Char("HML"[place]);
    XF& winding = m_rows.Put<XF>(id);
    winding.type = static_cast<u8>(kHighWinding + place);
    winding.st = station;
    SetBranch(winding, branch);
  }

  void PutDcLine(const DcLine& plan) {
    const Device& from = m_plan.devices[Index(plan.fromConverter)];
    const Device& to = m_plan.devices[Index(plan.toConverter)];
    DLN& line = m_rows.Put<DLN>(LineId("DC-", from.at, to.at));
    SetStations(line, from.at, to.at);
    SetEnds(line, from.at, to.at);
    MeasureEnds(line, from.at, to.at, {from.power.p, 0}, {-to.power.p, 0});
  }

  QString LineId(const char* prefix, const CircuitEnd& from, const CircuitEnd& to) const {
    return Text(prefix) + StationId(LevelAt(from.level).station) + QLatin1Char('-') +
           StationId(LevelAt(to.level).station);
  }

  template <class Line>
  void SetStations(Line& line, const CircuitEnd& from, const CircuitEnd& to) const {
    line.dv = DistrictId(LevelAt(from.level).station);
    line.st = StationId(LevelAt(from.level).station);
    line.zst = StationId(LevelAt(to.level).station);
  }

  template <class Row>
  void SetEnds(Row& row, const CircuitEnd& from, const CircuitEnd& to) const {
    row.kv = LevelId(from.level);
    row.nd = NodeOf(from);
    row.zkv = LevelId(to.level);
    row.znd = NodeOf(to);
  }

  template <class Row>
  void SetBranch(Row& row, const Branch& branch) {
    AddTransfer(branch.from, branch.in);
    AddTransfer(branch.to, Power{} - branch.out);
    SetEnds(row, branch.from, branch.to);
    row.p = Mega(branch.in.p);
    row.q = Mega(branch.in.q);
    row.zp = Mega(branch.out.p);
    row.zq = Mega(branch.out.q);
    row.i = Current(branch.in, branch.from.level);
    row.zi = Current(branch.out, branch.to.level);
    if (branch.state == BranchState::kOut) row.status = BranchKind<Row>::kOut;
    if (branch.state == BranchState::kFromOpen) row.status = BranchKind<Row>::kOpen1;
    if (branch.state == BranchState::kToOpen) row.status = BranchKind<Row>::kOpen2;
    MeasureEnds(row, branch.from, branch.to, branch.in, branch.out);
  }

  template <class Row>
  void MeasureEnds(Row& row, const CircuitEnd& from, const CircuitEnd& to, const Power& in, const Power& out) {
    row.ana_p = Measure(row.id, ".P", Mega(in.p));
    row.ana_q = Measure(row.id, ".Q", Mega(in.q));
    row.ana_i = Measure(row.id, ".I", Current(in, from.level));
    row.zana_p = Measure(row.id, ".zP", Mega(out.p));
    row.zana_q = Measure(row.id, ".zQ", Mega(out.q));
    row.zana_i = Measure(row.id, ".zI", Current(out, to.level));
  }

  // Switchyards

  void PutSwitchyard(int number) {
    const Level& level = LevelAt(number);
    Switchyard yard(m_rows, LevelId(number), level);
    yard.Build();
    for (int bus = 0; bus < yard.BusbarCount(); ++bus) PutBusbar(yard, bus, number);
    if (level.couplerHasZbr && !level.couplerOpen) PutZbr(yard, number);
  }

  void PutBusbar(const Switchyard& yard, int bus, int level) {
    const int point = m_plan.firstPoint[Index(level)] + (Plan::IsSplit(LevelAt(level)) ? bus : 0);
    const bool isLive = m_plan.isLive[Index(point)] != 0;
    BUS& row = m_rows.Put<BUS>(LevelId(level) + Text(bus == 0 ? "-B1" : "-B2"));
    row.kv = LevelId(level);
    row.nd = yard.BusbarNode(bus);
    row.v = isLive ? Voltage(level) : 0.0;
    row.a = isLive ? LevelAt(level).angle / 10.0 : 0.0;
    row.ana_v = Measure(row.id, ".V", static_cast<f32>(row.v));
    row.ana_a = Measure(row.id, ".A", static_cast<f32>(row.a));
  }

  /// A zero-impedance branch on the coupler: through it comes what the circuits on the second busbar take.
  void PutZbr(const Switchyard& yard, int level) {
    const Power power = m_transfer[2 * Index(level) + 1];
    ZBR& zbr = m_rows.Put<ZBR>(LevelId(level) + Text("-Z"));
    zbr.cb = yard.CouplerBreaker();
    zbr.p = Mega(power.p);
    zbr.q = Mega(power.q);
    zbr.i = Current(power, level);
    zbr.ana_p = Measure(zbr.id, ".P", zbr.p);
    zbr.ana_q = Measure(zbr.id, ".Q", zbr.q);
    zbr.ana_i = Measure(zbr.id, ".I", zbr.i);
  }

  /// A circuit takes `power` from its busbar.
  void AddTransfer(const CircuitEnd& end, const Power& power) {
    m_transfer[2 * Index(end.level) + Index(end.circuit % 2)] += power;
  }

  // Values

  f32 Angle(int level) const { return static_cast<f32>(LevelAt(level).angle / 10.0); }
  /// In kV, close to the base voltage.
  double Voltage(int level) const { return Kv(level) * LevelAt(level).voltage / 1000.0; }
  f32 VoltageAt(const CircuitEnd& end) const {
    return m_plan.IsLive(end) ? static_cast<f32>(Voltage(end.level)) : 0.0F;
  }

  /// In A, in tenths. The squares are whole numbers, so the root is the same on every platform.
  f32 Current(const Power& power, int level) const {
    const double apparent = std::sqrt(static_cast<double>(power.p * power.p + power.q * power.q)) / kEighths;
    return static_cast<f32>(std::round(apparent * 10000.0 / (1.732 * Kv(level))) / 10.0);
  }

  /// A measurement of device `device`; returns its identity.
  QString Measure(const QString& device, const char* suffix, f32 value) {
    ANALOG& point = m_rows.Put<ANALOG>(device + Text(suffix));
    point.name = point.id;
    point.value = value;
    return point.id;
  }

  InputRows& m_rows;
  const Plan& m_plan;
  QString m_company = Text("UTILITY");
  std::vector<QString> m_levelIds;
  std::vector<Power> m_transfer;  ///< what the circuits on each of a level's two busbars take
};

}  // namespace

void PutPlan(InputRows& rows, const Plan& plan) { PlanRows(rows, plan).Put(); }

}  // namespace dtsdb::tools
