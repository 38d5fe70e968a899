/// \file
/// A published national grid (CGMES) as a model: its stations, levels, nodes and equipment with their states.
#pragma once

#include <QSet>
#include <string>

#include "tests/breakerflow/cgmes_model.h"
#include "tests/support/model_builder.h"

namespace dtsdb::test {

/// Fills a model from the profiles in a folder. Nodes of the border stand on a level of their own; a transformer with
/// three windings becomes three windings to a star point; a closed switch that is published as keeping its nodes apart
/// carries a zero-impedance branch.
class PublicGrid {
 public:
  explicit PublicGrid(const QString& folder) : m_cgmes(folder) {
    const auto terminals = m_cgmes.OfType("Terminal");
    for (auto it = terminals.cbegin(); it != terminals.cend(); ++it) {
      const int number = (*it)["ACDCTerminal.sequenceNumber"].toInt();
      m_terminals[(*it)["Terminal.ConductingEquipment"]].insert(number, (*it)["Terminal.ConnectivityNode"]);
    }
    for (auto it = m_terminals.cbegin(); it != m_terminals.cend(); ++it) Put(it.key(), it->values());
  }

  ModelBuilder& Model() { return m_model; }
  QString Error() const { return m_cgmes.Error(); }

 private:
  struct Place {
    std::string station;
    std::string level;
    std::string node;
  };

  Place PlaceOf(const QString& node) {
    QString container = m_cgmes.Object(node)["ConnectivityNode.ConnectivityNodeContainer"];
    const QString ofBay = m_cgmes.Object(container)["Bay.VoltageLevel"];
    if (!ofBay.isEmpty()) container = ofBay;
    QString station = m_cgmes.Object(container)["VoltageLevel.Substation"];
    if (station.isEmpty()) station = container = QStringLiteral("border-") + (container.isEmpty() ? node : container);
    return At(station, container, node);
  }

  Place At(const QString& station, const QString& level, const QString& node) {
    const Place place{station.toStdString(), level.toStdString(), node.toStdString()};
    if (!m_stations.contains(station)) m_model.Station(place.station.c_str());
    m_stations.insert(station);
    if (!m_levels.contains(level)) {
      KV kv(level);
      kv.st = station;
      kv.vbase = 220.0F;
      kv.vmax = 242.0F;
      kv.vmin = 198.0F;
      m_model.Put(kv);
    }
    m_levels.insert(level);
    return place;
  }

  void Put(const QString& id, const QStringList& nodes) {
    const CgmesObject& equipment = m_cgmes.Object(id);
    const std::string name = id.toStdString();
    const bool inService = equipment["Equipment.inService"] != QLatin1String("false");
    if (!equipment["Switch.open"].isEmpty()) return PutSwitch(name, equipment, PlaceOf(nodes[0]), PlaceOf(nodes[1]));
    if (nodes.size() == 1) return PutDevice(name, equipment, PlaceOf(nodes[0]), inService);
    if (nodes.size() == 2 && !equipment.Is("PowerTransformer")) {
      return PutLine(name, PlaceOf(nodes[0]), PlaceOf(nodes[1]), inService);
    }
    if (nodes.size() == 2) return PutWinding(name, PlaceOf(nodes[0]), PlaceOf(nodes[1]), inService);
    const QString star = QStringLiteral("star-") + id;
    const Place centre = At(QString::fromStdString(PlaceOf(nodes[0]).station), star, star);
    for (int i = 0; i < nodes.size(); ++i) {
      PutWinding(name + "-" + std::to_string(i + 1), PlaceOf(nodes[i]), centre, inService);
    }
  }

  void PutSwitch(const std::string& name, const CgmesObject& equipment, const Place& from, const Place& to) {
    const bool conducts = equipment["Switch.open"] == QLatin1String("false") &&
                          equipment["Equipment.inService"] != QLatin1String("false");
    m_model.Breaker(name.c_str(), from.level.c_str(), from.node.c_str(), to.node.c_str(), !conducts);
    if (conducts && equipment["Switch.retained"] == QLatin1String("true")) {
      m_model.Zbr(("zbr-" + name).c_str(), name.c_str());
    }
  }

  void PutDevice(const std::string& name, const CgmesObject& equipment, const Place& at, bool inService) {
    const char* const id = name.c_str();
    const u32 status = inService ? 0 : SHUNT_OFF;
    if (equipment.Is("BusbarSection")) {
      m_model.Bus(id, at.level.c_str(), at.node.c_str());
    } else if (equipment.Is("SynchronousMachine") || equipment.Is("ExternalNetworkInjection")) {
      m_model.Unit(id, at.level.c_str(), at.node.c_str()).Of<UN>(id).status = status;
    } else if (equipment.Is("LinearShuntCompensator") || equipment.Is("NonlinearShuntCompensator") ||
               equipment.Is("StaticVarCompensator")) {
      m_model.Cap(id, at.level.c_str(), at.node.c_str()).Of<CP>(id).status = status;
    } else {
      m_model.Load(id, at.level.c_str(), at.node.c_str()).Of<LD>(id).status = status;
    }
  }

  void PutLine(const std::string& name, const Place& from, const Place& to, bool inService) {
    const char* const id = name.c_str();
    m_model.Line(id, "DV", from.station.c_str(), to.station.c_str(), from.level.c_str(), to.level.c_str(),
                 from.node.c_str(), to.node.c_str());
    m_model.Of<LN>(id).status = inService ? 0 : BranchKind<LN>::kOut;
  }

  void PutWinding(const std::string& name, const Place& from, const Place& to, bool inService) {
    const char* const id = name.c_str();
    m_model.Winding(id, from.station.c_str(), from.level.c_str(), to.level.c_str(), from.node.c_str(), to.node.c_str());
    m_model.Of<XF>(id).status = inService ? 0 : BranchKind<XF>::kOut;
  }

  CgmesModel m_cgmes;
  ModelBuilder m_model;
  QMap<QString, QMap<int, QString>> m_terminals;  // nodes, by equipment and number
  QSet<QString> m_stations;
  QSet<QString> m_levels;
};

}  // namespace dtsdb::test
