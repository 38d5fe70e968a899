/// \file
/// What the mapping of all kinds of equipment works on and works at.
#pragma once

#include <string>
#include <unordered_map>
#include <vector>

#include "formats/import/exceptions.h"
#include "formats/import/identities.h"
#include "formats/import_options.h"
#include "formats/input_rows.h"
#include "formats/xiidm/connections.h"
#include "formats/xiidm/network.h"

namespace dtsdb::tools::xiidm {

/// A line made of two boundary lines.
struct TieLine {
  int object;
  int half1;
  int half2;
};

/// A network on its way into a model. The steps of the mapping (steps.h) fill it in their order.
class Mapping {
 public:
  Mapping(const Network& network, const ImportOptions& options);

  const Network& network;
  const Objects& objects;
  const ImportOptions& options;
  const Connections connections;
  Identities ids;
  InputRows rows;
  std::vector<TieLine> tieLines;
  std::vector<int> borders;                 ///< boundary lines that are no half of a tie line
  std::unordered_map<int, int> districtOf;  ///< by the station: the number of its district's identity

  /// An object is left out of the model.
  void LeaveOut(int object, const std::string& why) { Count(m_leftOut, object, why); }
  /// An object is in the model otherwise than others of its class.
  void Change(int object, const std::string& why) { Count(m_changed, object, why); }
  /// The whole account.
  ImportReport Report() const;

  /// The objects of a role, without those of two ends that have both on one node, which are left out.
  std::vector<int> Standing(Role role);
  /// False, with a report, when both ends are on one node.
  bool HasTwoNodes(int object, const Terminal& from, const Terminal& to);

  /// What a boundary line takes at the border: its load there without what is generated.
  Inflow AtBorder(int boundaryLine) const;

  /// The object that becomes the station of a level: a substation, or the level itself.
  int StationOf(int level) const;
  QString LevelId(const Terminal& terminal) const { return ids.Id(KIND_KV, terminal.level); }
  QString StationId(const Terminal& terminal) const { return ids.Id(KIND_ST, StationOf(terminal.level)); }
  QString DistrictId(const Terminal& terminal) const;
  QString NodeId(const Terminal& terminal) const { return ids.Id(KIND_ND, NodeNumber(terminal.node)); }
  /// What the name of equipment is made unique with: the real text of the identity of its first level.
  QString LevelText(int object) const { return ids.Text(KIND_KV, connections.End(object, 0).level); }
  /// The number by which a node's identity is found: that of the bus, or one that no object has.
  int NodeNumber(int node) const;
  /// The row of a level.
  KV& LevelRow(int level) { return rows.Of<KV>()[m_levelRows.at(level)]; }
  void AddLevelRow(int level, const KV& row);

 private:
  void Count(Exceptions& exceptions, int object, const std::string& why) const {
    exceptions.Count(objects.RowOf(object).name, why, [&] { return network.Describe(object); });
  }
  void FindTieLines();
  int Half(int tieLine, Attribute half) const;

  std::unordered_map<int, std::size_t> m_levelRows;
  Exceptions m_leftOut;
  Exceptions m_changed;
};

}  // namespace dtsdb::tools::xiidm
