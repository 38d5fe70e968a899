/// \file
/// A station as a picture shows it: its voltage levels with all that stands on them, and their states.
#pragma once

#include <QString>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "analysis/error.h"
#include "analysis/model.h"
#include "analysis/topology.h"
#include "breakerflow/flows.h"

namespace dtsdb::pictures {

using analysis::Result;

/// Which record something is.
struct RecordName {
  std::string table;     ///< of the record
  QString id;            ///< raw bytes, as in the tables
  std::string identity;  ///< the same in UTF-8

  /// Two are the same when table and identity are.
  bool operator==(const RecordName& other) const { return table == other.table && id == other.id; }
};

/// Active and reactive power in MW and Mvar.
struct Power {
  float p = 0;  ///< MW
  float q = 0;  ///< Mvar
};

/// What stands at a node.
enum class DeviceKind { kLine, kDcLine, kWinding, kUnit, kLoad, kCapacitor, kReactor };

/// A node of a level.
struct StationNode {
  RecordName name;   ///< the record that it stands for
  int section = -1;  ///< number of its section, -1 for none
  int island = -1;   ///< number of its live island, -1 when it is dead
};

/// A bus on a node.
struct StationBus {
  RecordName name;    ///< the record that it stands for
  int node = -1;      ///< place in StationLevel::nodes, as everywhere below
  std::string state;  ///< "live", or what it is in its place, as everywhere below
};

/// A breaker or disconnector between two nodes of a level.
struct StationSwitch {
  RecordName name;                     ///< the record that it stands for
  int from = -1;                       ///< place of its from node
  int to = -1;                         ///< place of its to node
  bool isBreaker = false;              ///< else it is a disconnector
  bool open = false;                   ///< its position
  std::string state{};                 ///< of the sections that it joins
  std::optional<Power> flow{};         ///< from `from` towards `to`
  std::vector<RecordName> branches{};  ///< the zero-impedance branches that it carries
};

/// What stands on one node: a unit, load or shunt device, or an end of a line or winding.
struct StationDevice {
  RecordName name;                      ///< the record that it stands for
  DeviceKind kind = DeviceKind::kLoad;  ///< what it is
  int node = -1;                        ///< place of its node
  std::string end;                      ///< of a branch "from" or "to", else empty
  std::string far;    ///< identity of what its other end stands on: of a line the station, of a winding the level
  std::string state;  ///< of a branch the state of the whole branch
  bool open = false;  ///< switched off, out of service, or open at this end
  bool isReference = false;     ///< the reference unit of its island
  std::optional<Power> flow{};  ///< out of the node, into the device
};

/// A voltage level.
struct StationLevel {
  RecordName name;                      ///< the record that it stands for
  float voltage = 0;                    ///< base voltage in kV
  std::vector<StationNode> nodes;       ///< what its other parts refer to by place
  std::vector<StationBus> buses;        ///< physical buses
  std::vector<StationSwitch> switches;  ///< breakers and disconnectors
  std::vector<StationDevice> devices;   ///< what stands at one node, and ends of branches
};

/// A station. Levels stand by their voltage, the highest first; what is on them by identity.
struct Station {
  RecordName name;                   ///< the record that it stands for
  std::vector<StationLevel> levels;  ///< its voltage levels
};

/// Reads stations out of a model with a topology. The tables must outlive this and stay as they are.
class StationReader {
 public:
  /// `flows` are shown at switches; without them only the powers in the tables are there.
  explicit StationReader(DTSDB& tables, const Flows* flows = nullptr);

  /// The station with this identity. An Error of usage, with the nearest identities, when there is none.
  Result<Station> Read(const QString& id) const;
  /// The voltage level with this identity as a station of its own; an Error likewise.
  Result<Station> ReadLevel(const QString& id) const;
  /// The identities of all stations, in the order of their table.
  std::vector<QString> Stations() const;

 private:
  friend class LevelReader;
  std::string StateOf(const RecordName& name) const;

  DTSDB& m_tables;
  analysis::Topology m_topology;
  std::map<std::pair<std::string, std::string>, std::string> m_states;  // of what isn't live, by table and identity
  std::map<QString, Power> m_flows;                                     // through breakers
  std::map<int, std::vector<int>> m_branchesOf;                         // zero-impedance branches, by breaker
};

}  // namespace dtsdb::pictures
