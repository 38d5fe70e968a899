/// \file
/// Where the connectivity nodes of a set lie: in which voltage level of which station.
#pragma once

#include <vector>

#include "formats/cgmes/connections.h"

namespace dtsdb::tools::cgmes {

/// A voltage level. Its number is that of the object that becomes it: a VoltageLevel, or else what contains the nodes
/// (a Line at a border, a Substation), or a node of which no container is known.
struct Level {
  int object = Objects::kNone;
  int station = Objects::kNone;  ///< the object that becomes its station: a Substation, or `object`
  int region = Objects::kNone;   ///< the SubGeographicalRegion of the station, Objects::kNone for none
  double nominal = 0;            ///< nominal voltage in kV, 0 when it isn't known
  double high = 0;               ///< upper and lower limit in kV, 0 and 0 for none
  double low = 0;
  bool hasTwoVoltages = false;  ///< lines of several nominal voltages meet in it: `nominal` is 0
};

/// All voltage levels, and those of the nodes.
class Places {
 public:
  Places(const Objects& objects, const Connections& connections);

  const std::vector<Level>& Levels() const { return m_levels; }
  /// The place in Levels() of the level that a connectivity node lies in; Objects::kNone for a node without terminals.
  int LevelOf(int node) const { return m_levelOf[static_cast<std::size_t>(node)]; }
  /// The connectivity nodes with terminals, in the order of their numbers.
  const std::vector<int>& Nodes() const { return m_nodes; }

 private:
  int ContainerOf(int node) const;
  int AddLevel(int object);
  void FindVoltages();
  void TakeVoltageOfLines(Level& level, int node) const;

  const Objects& m_objects;
  const Connections& m_connections;
  std::vector<Level> m_levels;
  std::vector<int> m_byObject;  // places in m_levels
  std::vector<int> m_nodes;
  std::vector<int> m_levelOf;
};

}  // namespace dtsdb::tools::cgmes
