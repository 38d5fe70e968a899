/// \file
/// What an import has made of a grid in an exchange format.
#pragma once

#include <string>
#include <vector>

namespace dtsdb::tools {

/// What an object that no record stands for is to the record that it is listed with: ImportReport::Identity::table.
namespace part_of {

inline constexpr const char* kTerminal = "ND.Terminal";            ///< a terminal on the node
inline constexpr const char* kTopological = "ND.TopologicalNode";  ///< the topological node that the border gives it
inline constexpr const char* kNodeVoltage = "ND.BaseVoltage";      ///< its base voltage, where its level has none
inline constexpr const char* kLevelVoltage = "KV.BaseVoltage";     ///< the base voltage of the level
inline constexpr const char* kUnusedNode = "KV.ConnectivityNode";  ///< a node in the level without equipment
inline constexpr const char* kIdleNode = "KV.ND";  ///< one without equipment in the model; its name is its identity
inline constexpr const char* kPosition = "ST.Location";  ///< where the station stands; its name is the position
inline constexpr const char* kProfile = "Profile";       ///< a file that was read; its identity is "KIND VERSION TIME"
inline constexpr const char* kAll[] = {kTerminal,   kTopological, kNodeVoltage, kLevelVoltage,
                                       kUnusedNode, kIdleNode,    kPosition,    kProfile};

}  // namespace part_of

/// The account of an import. Texts are UTF-8.
struct ImportReport {
  /// A file that was read.
  struct File {
    std::string name;
    std::string contents;  ///< the short names of what it contains, such as "EQ"
    std::string version;
    std::string time;  ///< that the states are of, as the file has it
    int objects = 0;
  };
  /// A class of objects that was mapped.
  struct Class {
    std::string name;
    int count = 0;
    std::string tables;  ///< of the model, such as "CB"
  };
  /// Objects of one class that were left out, or mapped otherwise than objects of their class are.
  struct Exception {
    std::string type;  ///< the class
    int count = 0;
    std::vector<std::string> names;  ///< the first ones; of equipment with where it is defined
    std::string why;
  };
  /// A record and the object that it stands for.
  struct Identity {
    std::string table;
    std::string identity;
    std::string mrid;
    std::string name;
    int file = -1;  ///< place in `files` of the one that defines the object, -1 for none
    int line = 0;   ///< in that file
  };

  std::vector<File> files;
  std::vector<Class> classes;        ///< by name
  std::vector<Exception> leftOut;    ///< by class: equipment that the model lacks
  std::vector<Exception> changed;    ///< by class
  std::vector<Exception> unknown;    ///< by class: what no table has room for
  std::vector<Identity> identities;  ///< by table and identity
  std::vector<Identity> parts;  ///< likewise: objects that no record stands for, but an export or a map names (part_of)

  /// The object that the record of `table` with the identity `identity` stands for; null for none.
  const Identity* Find(const std::string& table, const std::string& identity) const;
  /// Where an object is defined, as "FILE, line N"; empty where that isn't known.
  std::string PlaceOf(const Identity& identity) const;
};

}  // namespace dtsdb::tools
