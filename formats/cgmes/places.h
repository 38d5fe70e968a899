/// \file
/// Where the connectivity nodes of a set lie: in which voltage level of which station.
#pragma once

#include <optional>
#include <utility>
#include <vector>

#include "formats/cgmes/connections.h"
#include "formats/import/groups.h"

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

/// A level that is part of another one.
struct JoinedLevel {
  Level level;                   ///< as the set has it
  int into = Objects::kNone;     ///< the object of the level that it is part of
  int station = Objects::kNone;  ///< the station of that one
};

/// All voltage levels, and those of the nodes. Levels of one nominal voltage with a closed switch between them are one
/// level: that of a VoltageLevel, and of these the first by mRID.
class Places {
 public:
  Places(const Objects& objects, const Connections& connections);

  const std::vector<Level>& Levels() const { return m_levels; }
  /// The place in Levels() of the level that a connectivity node lies in; Objects::kNone for a node without terminals.
  int LevelOf(int node) const { return m_levelOf[static_cast<std::size_t>(node)]; }
  /// What closed switches have made part of other levels, in the order in which the set names it.
  const std::vector<JoinedLevel>& Joined() const { return m_joined; }
  /// The closed switches between levels that have become one.
  const std::vector<int>& JoiningSwitches() const { return m_joiningSwitches; }
  /// The connectivity nodes with terminals, in the order of their numbers.
  const std::vector<int>& Nodes() const { return m_nodes; }
  /// What becomes the level of a node, with or without terminals: the voltage level, also that of a bay, else the
  /// container, else the node itself.
  int ContainerOf(int node) const;

 private:
  int AddLevel(int object);
  void FindVoltages();
  void TakeVoltageOfLines(Level& level, int node) const;
  bool IsMade(const Level& level) const;
  bool StandsFirst(const Level& a, const Level& b) const;
  std::optional<std::pair<int, int>> Joins(int equipment) const;
  void JoinLevels();
  void KeepFirstLevels(Groups& groups);

  const Objects& m_objects;
  const Connections& m_connections;
  std::vector<Level> m_levels;
  std::vector<int> m_byObject;  // places in m_levels
  std::vector<int> m_nodes;
  std::vector<int> m_levelOf;
  std::vector<JoinedLevel> m_joined;
  std::vector<int> m_joiningSwitches;
};

}  // namespace dtsdb::tools::cgmes
