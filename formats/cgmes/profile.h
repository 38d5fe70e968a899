/// \file
/// What the header of a CGMES file states about it.
#pragma once

#include <QString>
#include <QStringView>
#include <string>
#include <vector>

namespace dtsdb::tools::cgmes {

/// What a profile describes. A file may contain several.
enum class ProfileKind {
  kEquipment,         ///< EQ with its parts
  kBoundary,          ///< equipment and nodes at the border, base voltages
  kSteadyState,       ///< SSH: positions of switches, powers
  kTopology,          ///< TP: the topological nodes as published
  kStateVariables,    ///< SV: voltages, flows and islands as published
  kTopologyBoundary,  ///< topological nodes of the border (2.4.15)
  kGeographical,      ///< GL: where things stand on the map
  kOther,             ///< nothing that the import reads
};

/// The short name of a kind, such as "EQ".
const char* ShortName(ProfileKind kind);

/// The kind that the URI of a profile stands for, of CGMES 2.4.15 or 3.0.
ProfileKind KindOfProfile(QStringView uri);

/// One file of a set.
struct Profile {
  std::string file;     ///< its path; inside an archive, the archive's path and the name in it
  std::string version;  ///< of CGMES: "2.4.15" or "3.0"
  std::vector<ProfileKind> kinds;
  std::string mrid;  ///< of the model in the header
  std::string scenarioTime;
  std::string authority;  ///< the modelling authority set
  int objects = 0;        ///< that it describes
  bool isRead = true;     ///< false when it contains nothing that the import reads

  bool Is(ProfileKind kind) const;
  /// The short names of its kinds, such as "EQ, EQBD".
  std::string KindNames() const;
};

}  // namespace dtsdb::tools::cgmes
