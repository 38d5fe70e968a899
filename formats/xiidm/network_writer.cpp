#include <fmt/format.h>

#include <QXmlStreamWriter>
#include <cmath>
#include <concepts>

#include "formats/import/switch_rows.h"
#include "formats/xiidm/export.h"
#include "formats/xiidm/export_plan.h"
#include "formats/xiidm/own_properties.h"
#include "model/branch_kinds.h"
#include "model/record_bits.h"

namespace dtsdb::tools::xiidm {
namespace {

constexpr QLatin1String kNamespace("http://www.powsybl.org/schema/iidm/1_17");
constexpr QLatin1String kSlackNamespace("http://www.powsybl.org/schema/iidm/ext/slack_terminal/1_5");
constexpr const char* kDate = "1970-01-01T00:00:00.000Z";  // the tables have none
constexpr const char* kNotGiven = "(none)";  // what an import calls a company or district that isn't given
constexpr double kNoLimit = 1.7976931348623157E308;

/// The shortest digits from which a number is read again as it was.
template <std::floating_point Number>
QString Digits(Number number) {
  return QString::fromStdString(fmt::format("{}", number));
}

/// Elements and their attributes.
class Elements {
 public:
  explicit Elements(QIODevice& output) : m_xml(&output) { m_xml.setAutoFormatting(true); }

  QXmlStreamWriter& Xml() { return m_xml; }

  void Open(const char* name) { m_xml.writeStartElement(QLatin1String("iidm:") + QLatin1String(name)); }
  void Open(const char* name, const FileName& named) {
    Open(name);
    Add("id", named.id);
    if (!named.name.isNull()) Add("name", named.name);
  }
  void Close() { m_xml.writeEndElement(); }

  void Add(const char* name, const QString& value) { m_xml.writeAttribute(QLatin1String(name), value); }
  void Add(const char* name, const char* value) { Add(name, QString::fromLatin1(value)); }
  void Add(const char* name, int value) { Add(name, QString::number(value)); }
  /// A number; 0 in place of one that isn't finite.
  template <std::floating_point Number>
  void Add(const char* name, Number value) {
    const Number written = std::isfinite(value) && value != 0 ? value : Number{0};  // and none is -0
    Add(name, Digits(written));
  }

  void Property(const QString& name, const QString& value) {
    Open("property");
    Add("name", name);
    Add("value", value);
    Close();
  }
  void Property(Attribute own, const QString& value) { Property(QLatin1String(NameOf(own)), value); }

 private:
  QXmlStreamWriter m_xml;
};

/// The name of an attribute at an end, such as "p2".
std::string At(const char* name, int side) { return name + std::to_string(side); }

QString RealText(const QString& id) {
  const QString text = TextFromId(id);
  return text == QLatin1String(kNotGiven) ? QString() : text;
}

class Writer {
 public:
  Writer(const DTSDB& model, QIODevice& output) : m_model(model), m_plan(PlanExport(model)), m_out(output) {}

  void Write() {
    QXmlStreamWriter& xml = m_out.Xml();
    xml.writeStartDocument();
    xml.writeNamespace(kNamespace, QStringLiteral("iidm"));
    xml.writeNamespace(kSlackNamespace, QStringLiteral("slt"));
    m_out.Open("network");
    m_out.Add("id", "dtsdb");
    m_out.Add("caseDate", kDate);
    m_out.Add("forecastDistance", 0);
    m_out.Add("sourceFormat", "dtsdb");
    m_out.Add("minimumValidationLevel", "STEADY_STATE_HYPOTHESIS");
    for (std::size_t i = 0; i < m_plan.stations.size(); ++i) WriteStation(i);
    for (int i = 0; i < Of<LN>().GetCount(); ++i) WriteLine(i);
    for (int i = 0; i < Of<DLN>().GetCount(); ++i) WriteDcLine(i);
    for (const auto& [level, equipment] : m_slackTerminals) WriteSlackTerminal(level, equipment);
    m_out.Close();
    xml.writeEndDocument();
  }

 private:
  template <class T>
  const tTable<T>& Of() const {
    return TableOf<T>(m_model);
  }
  static std::size_t At(int place) { return static_cast<std::size_t>(place); }

  void WriteStation(std::size_t station) {
    const ST& row = Of<ST>()[static_cast<int>(station)];
    m_out.Open("substation", m_plan.stations[station]);
    const QString district = RealText(row.dv);
    const QString company = RealText(m_plan.companies.value(row.dv));
    if (!company.isEmpty()) m_out.Add("tso", company);
    if (!district.isEmpty()) m_out.Add("geographicalTags", district);
    for (const int level : m_plan.levelsOf[station]) WriteLevel(level);
    for (const int winding : m_plan.windingsOf[station]) WriteWinding(winding);
    for (const Star& star : m_plan.starsOf[station]) WriteStar(star);
    m_out.Close();
  }

  void WriteLevel(int number) {
    const PlannedLevel& level = m_plan.levels[At(number)];
    const KV& row = Of<KV>()[number];
    m_out.Open("voltageLevel", level.name);
    const bool hasOwn = level.nominal == row.vbase;  // then with the digits of a float
    m_out.Add("nominalV", hasOwn ? Digits(row.vbase) : Digits(level.nominal));
    if (row.vmin != 0 || row.vmax != 0) {
      m_out.Add("lowVoltageLimit", row.vmin);
      m_out.Add("highVoltageLimit", row.vmax);
    }
    m_out.Add("topologyKind", "NODE_BREAKER");
    if (!hasOwn) m_out.Property(kOwnVoltage, Digits(row.vbase));
    WriteNodeNames(level);
    WriteTopology(number);
    for (const int unit : level.units) WriteUnit(unit, number);
    for (const int load : level.loads) WriteLoad(load, number);
    for (const int shunt : level.shunts) WriteShunt(shunt, level.nominal);
    for (const auto& [id, node] : level.converters) WriteConverter(id, node);
    m_out.Close();
  }

  /// The names that an import wouldn't give by itself.
  void WriteNodeNames(const PlannedLevel& level) {
    const QString levelText = level.name.name.isNull() ? level.name.id : level.name.name;
    for (int i = 0; i < static_cast<int>(level.nodes.size()); ++i) {
      const QString& name = level.nodes[At(i)];
      const QString number = QString::number(i);
      if (name.isEmpty() || name == levelText + QLatin1Char(' ') + number) continue;
      m_out.Property(QLatin1String(kOwnNodeName) + number, name);
    }
  }

  void WriteTopology(int number) {
    const PlannedLevel& level = m_plan.levels[At(number)];
    m_out.Open("nodeBreakerTopology");
    for (const int bus : level.buses) {
      m_out.Open("busbarSection", m_plan.buses[At(bus)].name);
      m_out.Add("node", m_plan.buses[At(bus)].from.node);
      m_out.Close();
    }
    for (const int breaker : level.breakers) WriteBreaker(breaker);
    for (const Disconnector& disconnector : level.disconnectors) WriteDisconnector(disconnector);
    for (const auto& [node1, node2] : level.joined) {
      m_out.Open("internalConnection");
      m_out.Add("node1", node1);
      m_out.Add("node2", node2);
      m_out.Close();
    }
    for (const int bus : level.buses) WriteVoltage(bus);
    m_out.Close();
  }

  void WriteSwitch(bool isBreaker, bool isRetained, bool isOpen, int node1, int node2) {
    m_out.Add("kind", isBreaker ? "BREAKER" : "DISCONNECTOR");
    m_out.Add("retained", isRetained ? "true" : "false");
    m_out.Add("open", isOpen ? "true" : "false");
    m_out.Add("node1", node1);
    m_out.Add("node2", node2);
  }

  /// A zero-impedance branch makes its breaker retained; what an import wouldn't give it by itself goes into
  /// properties.
  void WriteBreaker(int breaker) {
    const CB& row = Of<CB>()[breaker];
    const PlannedRow& planned = m_plan.breakers[At(breaker)];
    const ZBR* const branch = m_plan.branches.value(row.id, nullptr);
    const bool isOpen = (row.flags & CB_OPEN) != 0;
    m_out.Open("switch", planned.name);
    WriteSwitch((row.flags & CB_BREAKER) != 0, branch != nullptr, isOpen, planned.from.node, planned.to.node);
    if (branch != nullptr) {
      if (isOpen || branch->id != ZeroImpedanceId(TextFromId(row.id))) {
        m_out.Property(kOwnZeroImpedance, TextFromId(branch->id));
      }
      WritePowerProperty(kOwnZeroImpedanceP, branch->p);
      WritePowerProperty(kOwnZeroImpedanceQ, branch->q);
    }
    m_out.Close();
  }

  void WritePowerProperty(Attribute own, float power) {
    if (power != 0 && std::isfinite(power)) m_out.Property(own, Digits(power));
  }

  void WriteDisconnector(const Disconnector& disconnector) {
    m_out.Open("switch");
    m_out.Add("id", disconnector.id);
    m_out.Add("fictitious", "true");
    WriteSwitch(false, false, true, disconnector.from, disconnector.to);
    m_out.Property(kOwnDisconnects, QStringLiteral("true"));
    m_out.Close();
  }

  void WriteVoltage(int bus) {
    const BUS& row = Of<BUS>()[bus];
    if (row.v == 0 && row.a == 0) return;
    m_out.Open("bus");
    m_out.Add("v", row.v);
    m_out.Add("angle", row.a);
    m_out.Add("nodes", m_plan.buses[At(bus)].from.node);
    m_out.Close();
  }

  void WriteReactiveLimits() {
    m_out.Open("minMaxReactiveLimits");
    m_out.Add("minQ", -kNoLimit);
    m_out.Add("maxQ", kNoLimit);
    m_out.Close();
  }

  /// Of the references in a level one has its slack terminal.
  template <class T>
  void WriteReference(const T& row, const PlannedRow& planned, int level) {
    if (row.ref != 0) return;
    const QString id = m_plan.levels[At(level)].name.id;
    if (!m_slackTerminals.empty() && m_slackTerminals.back().first == id) {
      m_out.Property(kOwnReference, QStringLiteral("true"));
    } else {
      m_slackTerminals.emplace_back(id, planned.name.id);
    }
  }

  template <class T>
  void WriteFlow(const T& row, float sign) {
    m_out.Add("p", sign * row.p);
    m_out.Add("q", sign * row.q);
  }

  void WriteUnit(int unit, int level) {
    const UN& row = Of<UN>()[unit];
    const PlannedRow& planned = m_plan.units[At(unit)];
    m_out.Open("generator", planned.name);
    m_out.Add("energySource", "OTHER");
    m_out.Add("minP", std::min(row.pmax, 0.0F));
    m_out.Add("maxP", row.pmax);
    m_out.Add("voltageRegulatorOn", "false");
    m_out.Add("targetP", row.pcur);
    m_out.Add("targetQ", row.q);
    m_out.Add("node", planned.from.node);
    WriteFlow(row, -1);
    WriteReference(row, planned, level);
    WriteReactiveLimits();
    m_out.Close();
  }

  void WriteLoad(int load, int level) {
    const LD& row = Of<LD>()[load];
    const PlannedRow& planned = m_plan.loads[At(load)];
    m_out.Open("load", planned.name);
    m_out.Add("loadType", "UNDEFINED");
    m_out.Add("p0", row.p);
    m_out.Add("q0", row.q);
    m_out.Add("node", planned.from.node);
    WriteFlow(row, 1);
    WriteReference(row, planned, level);
    m_out.Close();
  }

  /// One section with the power that flows at nominal voltage.
  void WriteShunt(int shunt, double nominal) {
    const CP& row = Of<CP>()[shunt];
    const PlannedRow& planned = m_plan.shunts[At(shunt)];
    m_out.Open("shuntCompensator", planned.name);
    m_out.Add("sectionCount", 1);
    m_out.Add("voltageRegulatorOn", "false");
    m_out.Add("node", planned.from.node);
    WriteFlow(row, 1);
    m_out.Open("shuntLinearModel");
    m_out.Add("bPerSection", -static_cast<double>(row.q) / (nominal * nominal));
    m_out.Add("maximumSectionCount", 1);
    m_out.Close();
    m_out.Close();
  }

  void WriteConverter(const QString& id, int node) {
    m_out.Open("vscConverterStation");
    m_out.Add("id", id);
    m_out.Add("lossFactor", 0);
    m_out.Add("voltageRegulatorOn", "false");
    m_out.Add("reactivePowerSetpoint", 0);
    m_out.Add("node", node);
    WriteReactiveLimits();
    m_out.Close();
  }

  void WriteEnd(const PlannedEnd& end, int side) {
    m_out.Add(xiidm::At("node", side).c_str(), end.node);
    m_out.Add(xiidm::At("voltageLevelId", side).c_str(), m_plan.levels[At(end.level)].name.id);
  }

  void WriteEndFlow(int side, float p, float q) {
    m_out.Add(xiidm::At("p", side).c_str(), p);
    m_out.Add(xiidm::At("q", side).c_str(), q);
  }

  template <class T>
  void WriteEnds(const T& row, const PlannedRow& planned) {
    WriteEnd(planned.from, 1);
    WriteEnd(planned.to, 2);
    WriteEndFlow(1, row.p, row.q);
    WriteEndFlow(2, -row.zp, -row.zq);
    WriteOut(row);
  }

  template <class T>
  void WriteOut(const T& row) {
    if ((row.status & BranchKind<T>::kOut) != 0) m_out.Property(kOwnOut, QStringLiteral("true"));
  }

  /// The tables have no impedances: nothing but a reactance of 1 ohm.
  void WriteLine(int line) {
    const PlannedRow& planned = m_plan.lines[At(line)];
    m_out.Open("line", planned.name);
    m_out.Add("r", 0);
    m_out.Add("x", 1);
    WriteEnds(Of<LN>()[line], planned);
    m_out.Close();
  }

  void WriteDcLine(int line) {
    const PlannedRow& planned = m_plan.dcLines[At(line)];
    m_out.Open("hvdcLine", planned.name);
    m_out.Add("r", 0);
    m_out.Add("nominalV", m_plan.levels[At(planned.from.level)].nominal);
    m_out.Add("convertersMode", "SIDE_1_RECTIFIER_SIDE_2_INVERTER");
    m_out.Add("activePowerSetpoint", 0);
    m_out.Add("maxP", 0);
    m_out.Add("converterStation1", m_plan.converters[At(line)][0]);
    m_out.Add("converterStation2", m_plan.converters[At(line)][1]);
    WriteOut(Of<DLN>()[line]);
    m_out.Close();
  }

  void WriteWinding(int winding) {
    const XF& row = Of<XF>()[winding];
    const PlannedRow& planned = m_plan.windings[At(winding)];
    m_out.Open("twoWindingsTransformer", planned.name);
    m_out.Add("r", 0);
    m_out.Add("x", 1);
    m_out.Add("ratedU1", m_plan.levels[At(planned.from.level)].nominal);
    m_out.Add("ratedU2", m_plan.levels[At(planned.to.level)].nominal);
    WriteEnds(row, planned);
    if (row.type > 1) m_out.Property(kOwnWinding, QString::number(row.type));
    m_out.Close();
  }

  void WriteStar(const Star& star) {
    m_out.Open("threeWindingsTransformer", star.name);
    m_out.Add("ratedU0", NominalAt(star.windings[0]));
    for (int side = 1; side <= 3; ++side) {
      const int winding = star.windings[At(side) - 1];
      m_out.Add(xiidm::At("r", side).c_str(), 0);
      m_out.Add(xiidm::At("x", side).c_str(), 1);
      m_out.Add(xiidm::At("ratedU", side).c_str(), NominalAt(winding));
      WriteEnd(m_plan.windings[At(winding)].from, side);
      WriteEndFlow(side, Of<XF>()[winding].p, Of<XF>()[winding].q);
    }
    m_out.Close();
  }

  double NominalAt(int winding) const { return m_plan.levels[At(m_plan.windings[At(winding)].from.level)].nominal; }

  void WriteSlackTerminal(const QString& level, const QString& equipment) {
    m_out.Open("extension");
    m_out.Add("id", level);
    m_out.Xml().writeStartElement(QStringLiteral("slt:slackTerminal"));
    m_out.Add("id", equipment);
    m_out.Close();
    m_out.Close();
  }

  const DTSDB& m_model;
  const ExportPlan m_plan;
  Elements m_out;
  std::vector<std::pair<QString, QString>> m_slackTerminals;  // of levels, the ids of the equipment
};

}  // namespace

void WriteNetwork(const DTSDB& model, QIODevice& output) { Writer(model, output).Write(); }

}  // namespace dtsdb::tools::xiidm
