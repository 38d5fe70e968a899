/// \file
/// The electrical topology as plain data: islands, sections, nodes, and what is dead.
#pragma once

#include <string>
#include <vector>

#include "analysis/error.h"
#include "analysis/model.h"
#include "validation/finding.h"

namespace dtsdb::analysis {

/// How many things stand on a section or in an island.
struct Counts {
  int nodes = 0;     ///< number of nodes
  int buses = 0;     ///< of buses
  int units = 0;     ///< of units
  int loads = 0;     ///< of loads
  int shunts = 0;    ///< capacitors and reactors
  int branches = 0;  ///< branch ends
};

/// What stands on a section.
struct Item {
  std::string table;     ///< ND, BUS, UN, LD, CP, LN, XF, DLN or ZBR
  std::string identity;  ///< in UTF-8
  std::string end;       ///< which end of a branch, "from" or "to"; else empty
  int leadsTo = -1;      ///< number of the section at the other end of a branch, -1 for none
  std::string state;     ///< "live", or what it is in its place; empty for a node
};

/// What a section stands for.
enum class SectionKind {
  kSection,   ///< nodes that are one point, with branches
  kFragment,  ///< nodes that are no section by themselves, at the dead end of a live branch
  kOpenEnd,   ///< the open end of a live branch, without nodes
};

/// A bus section. Numbers hold until the next run.
struct Section {
  int number = 0;                            ///< place among the sections
  SectionKind kind = SectionKind::kSection;  ///< what it is
  int island = -1;                           ///< number of its live island, -1 when it is dead
  std::string name;                          ///< as the topology names it; may be empty
  std::string station;                       ///< identity of its station
  std::string level;                         ///< identity of its voltage level
  Counts counts;                             ///< what stands on it
  std::vector<Item> items;                   ///< nodes, buses, devices and branch ends, in this order

  /// True when it lies in a live island.
  bool IsLive() const { return island >= 0; }
};

/// A live island.
struct Island {
  int number = 0;             ///< place among the islands
  int sections = 0;           ///< number of its sections
  Counts counts;              ///< of all its sections
  std::string reference;      ///< identity of the reference unit; empty for none
  int referenceSection = -1;  ///< number of the reference section, -1 for none
};

/// A node and the electrical point that it belongs to: all nodes that closed breakers join.
struct Node {
  std::string identity;  ///< real text
  std::string station;   ///< its station
  std::string level;     ///< its voltage level
  int section = -1;      ///< number of the section or fragment that the point is; -1: too small to be a section
  std::string point;     ///< identity of the first node of the point: the same for all nodes of one point
  bool live = false;     ///< lies in a live island

  /// False for a node in a group that is no section.
  bool IsInSection() const { return section >= 0; }
};

/// Equipment that isn't live.
struct Dead {
  std::string table;     ///< of the record
  std::string identity;  ///< of the record, real text
  std::string state;     ///< such as "dead", "isolated", "switched off", "to end open, dead"
};

/// All that a topology run has worked out.
struct Topology {
  std::vector<Island> islands;       ///< by number
  std::vector<Section> sections;     ///< those on which something stands, voltage level by voltage level
  std::vector<Node> nodes;           ///< in the order of the node table
  std::vector<Dead> dead;            ///< equipment, class by class; nodes are found in `nodes`
  QList<Finding> findings;           ///< breakers that disagree with the zero-impedance branch that they carry
  std::vector<std::string> leftOut;  ///< zero-impedance branches that were taken as out of service
};

/// The code of the message on a branch that is left out; FindMessage has the texts.
inline constexpr const char* kLeftOutCode = "TOPOLOGY_ZBR_LEFT_OUT";

/// Works out the topology of a model from nothing, with a reference for each live island; validates it first where it
/// isn't good. Zero-impedance branches on which the rules make a run fail are taken as out of service for the run, and
/// named in `leftOut`. An Error when the model has errors, and when a section has 100 or more neighbours, by name.
Result<Topology> WorkOutTopology(Model& model);

/// True when a good model holds the results of a run.
bool HasTopology(const Model& model);

/// What the last run has left in the tables, whoever made it. Without findings and without `leftOut`.
Topology DescribeTopology(DTSDB& tables);
/// Only its live islands.
std::vector<Island> DescribeIslands(DTSDB& tables);

/// A node or piece of equipment that is in another state in each of two results.
struct Difference {
  std::string table;     ///< of the record
  std::string identity;  ///< of the record, real text
  std::string here;      ///< its state in the first model
  std::string there;     ///< in the second
};

/// What differs between the topologies of two models that should have the same records. Another number of records is a
/// difference without identity. The numbers of sections and islands don't count: a node's state is the first node of
/// its section, whether it is live, and, where it is live in both, the first such node of its island.
std::vector<Difference> CompareTopology(DTSDB& here, DTSDB& there);

}  // namespace dtsdb::analysis
