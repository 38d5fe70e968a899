// Two published national grids: the flows through their switches against the published ones.

#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <vector>

#include "breakerflow/cbflow.h"
#include "model/record_bits.h"
#include "tests/breakerflow/both_sources.h"
#include "tests/breakerflow/cgmes_model.h"
#include "tests/support/places.h"
#include "tests/support/realtime_store.h"

namespace dtsdb::test {
namespace {

constexpr double kNear = 0.005;  // MW, Mvar; the published flows have four digits behind the point

/// A CGMES state put into a realtime database, as far as the breaker flow looks at it.
class PublishedGrid {
 public:
  explicit PublishedGrid(const QString& folder) : m_model(folder) {
    const auto flows = m_model.OfType("SvPowerFlow");
    for (const CgmesObject& flow : flows) m_flows.insert(flow["SvPowerFlow.Terminal"], flow);
    const auto terminals = m_model.OfType("Terminal");
    for (auto it = terminals.cbegin(); it != terminals.cend(); ++it) {
      const int number = (*it)["ACDCTerminal.sequenceNumber"].toInt();
      m_terminals[(*it)["Terminal.ConductingEquipment"]].insert(number, it.key());
    }
    PutSections();
    for (auto it = m_terminals.cbegin(); it != m_terminals.cend(); ++it) PutEquipment(it.key(), it->values());
    m_store.Db()->commit();
  }

  QString Error() const { return m_model.Error(); }
  dbDatabase* Db() { return m_store.Db(); }
  RealtimeStore& Store() { return m_store; }

  /// The terminals of the switches that conduct, from end first.
  const QMap<QByteArray, QStringList>& Switches() const { return m_switches; }
  /// What flows into the equipment at a terminal.
  double P(const QString& terminal) const { return m_flows.value(terminal).Number("SvPowerFlow.p"); }
  double Q(const QString& terminal) const { return m_flows.value(terminal).Number("SvPowerFlow.q"); }

 private:
  /// The number of a terminal's node, in the order of their first use. Behind no terminal lies a node of its own.
  int Node(const QString& terminal) {
    const QString node = m_model.Object(terminal)["Terminal.ConnectivityNode"];
    const auto found = m_nodes.constFind(node);
    return found != m_nodes.constEnd() ? *found : *m_nodes.insert(node, static_cast<int>(m_nodes.size()));
  }
  QString TopologicalNode(const QString& terminal) const {
    const CgmesObject& node = m_model.Object(m_model.Object(terminal)["Terminal.ConnectivityNode"]);
    return node["ConnectivityNode.TopologicalNode"];
  }

  void PutSections() {
    const auto voltages = m_model.OfType("SvVoltage");
    for (const CgmesObject& voltage : voltages) {
      bs row;
      row.id = static_cast<int>(m_sections.size());
      row.v = voltage.Number("SvVoltage.v");
      row.a = voltage.Number("SvVoltage.angle");
      m_store.Insert(row);
      m_sections.insert(voltage["SvVoltage.TopologicalNode"], row.id);
    }
  }

  void PutEquipment(const QString& id, const QStringList& terminals) {
    const CgmesObject& equipment = m_model.Object(id);
    if (!equipment["Switch.open"].isEmpty()) return PutSwitch(id, equipment, terminals);
    if (terminals.size() == 1) return PutShunt(id, equipment, terminals[0]);
    if (terminals.size() == 2 && !equipment.Is("PowerTransformer")) return PutBranch<ln>(id, terminals);
    if (terminals.size() == 2) return PutBranch<xf>(id, terminals);
    for (int i = 0; i < terminals.size(); ++i) {  // three windings, each to a star point without breakers
      PutBranch<xf>(id + QString::number(i), {terminals[i], QString()});
    }
  }

  void PutSwitch(const QString& id, const CgmesObject& equipment, const QStringList& terminals) {
    ASSERT_EQ(terminals.size(), 2);
    const bool conducts =
        equipment["Switch.open"] == QLatin1String("false") && equipment["Equipment.inService"] == QLatin1String("true");
    const int section = m_sections.value(TopologicalNode(terminals[0]), -1);
    const QByteArray bytes = id.toLatin1();
    cb row;
    row.id = bytes.constData();
    row.ind = Node(terminals[0]);
    row.iznd = Node(terminals[1]);
    row.flags = conducts ? 1 : 1 | CB_OPEN;
    row.tp_status = section >= 0 ? 0 : TP_BOTH_DEAD;
    row.ibs = section;
    m_store.Insert(row);
    if (conducts) m_switches.insert(bytes, terminals);
  }

  void PutShunt(const QString& id, const CgmesObject& equipment, const QString& terminal) {
    if (equipment.Is("SynchronousMachine") || equipment.Is("ExternalNetworkInjection")) {
      PutShunt<un>(id, terminal, -1);
    } else if (equipment.Is("LinearShuntCompensator") || equipment.Is("NonlinearShuntCompensator") ||
               equipment.Is("StaticVarCompensator")) {
      PutShunt<cp>(id, terminal, 1);
    } else {
      PutShunt<ld>(id, terminal, 1);
    }
  }

  /// Published powers count into the equipment: a unit's change their sign.
  template <class Row>
  void PutShunt(const QString& id, const QString& terminal, double sign) {
    const QByteArray bytes = id.toLatin1();
    Row row;
    row.id = bytes.constData();
    row.ind = Node(terminal);
    row.p = static_cast<real4>(sign * P(terminal));
    row.q = static_cast<real4>(sign * Q(terminal));
    m_store.Insert(row);
  }

  void PutEnds(ln& row, int end) {
    row.ln2 = end;
    row.zln2 = end + 1;
  }
  void PutEnds(xf& row, int end) {
    row.xf2 = end;
    row.zxf2 = end + 1;
  }

  /// Published powers count into the branch: those of the to end change their sign.
  template <class Row>
  void PutBranch(const QString& id, const QStringList& terminals) {
    const QByteArray bytes = id.toLatin1();
    Row row;
    row.id = bytes.constData();
    PutEnds(row, m_ends += 2);
    row.ind = Node(terminals[0]);
    row.iznd = Node(terminals[1]);
    row.p = static_cast<real4>(P(terminals[0]));
    row.q = static_cast<real4>(Q(terminals[0]));
    row.zp = static_cast<real4>(-P(terminals[1]));
    row.zq = static_cast<real4>(-Q(terminals[1]));
    m_store.Insert(row);
  }

  CgmesModel m_model;
  RealtimeStore m_store;
  QHash<QString, CgmesObject> m_flows;            // by terminal
  QMap<QString, QMap<int, QString>> m_terminals;  // by equipment and number
  QHash<QString, int> m_nodes;
  QHash<QString, int> m_sections;
  QMap<QByteArray, QStringList> m_switches;
  int m_ends = 0;
};

void ExpectPublishedFlows(const char* name, qsizetype switches) {
  const QString folder = QString::fromStdString(DataPath(std::string("relicapgrid/") + name));
  PublishedGrid grid(folder);
  ASSERT_EQ(grid.Error().toStdString(), "");
  ASSERT_EQ(grid.Switches().size(), switches);
  cbFlow flow(grid.Db(), 0.1F);  // the published injections of a large set sum to some hundredths
  flow.loadData();
  flow.calculate();
  for (int set = 0; set < flow.SetCount(); ++set) EXPECT_TRUE(flow.IsBalanced(set)) << set;
  DTSDB model;
  model.ReadFastdb(grid.Db());
  ExpectSameFlows(model, grid.Db());
  flow.storeData();

  double worst = 0;
  int compared = 0;
  grid.Store().ForEachRow<cb>("order by id", [&](const cb& row) {
    const QStringList terminals = grid.Switches().value(row.id);
    if (terminals.isEmpty()) {
      EXPECT_EQ(row.p, 0) << row.id;
      return;
    }
    const QString& from = terminals[0];
    const QString& to = terminals[1];
    for (const double error : {row.p - grid.P(from), row.q - grid.Q(from), row.p + grid.P(to), row.q + grid.Q(to)}) {
      EXPECT_LE(std::fabs(error), kNear) << row.id << ": " << row.p << ", " << row.q << "; published " << grid.P(from)
                                         << ", " << grid.Q(from);
      worst = std::max(worst, std::fabs(error));
    }
    ++compared;
  });
  EXPECT_EQ(compared, switches);
  std::printf("%s: %d switches, largest difference %.4f MW or Mvar\n", name, compared, worst);
}

TEST(PublishedFlows, OfBelgoviaAreMet) { ExpectPublishedFlows("belgovia", 20); }

TEST(PublishedFlows, OfEspheimAreMet) { ExpectPublishedFlows("espheim", 1218); }

}  // namespace
}  // namespace dtsdb::test
