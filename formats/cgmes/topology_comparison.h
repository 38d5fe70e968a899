/// \file
/// The topology of a model beside the one that its CGMES set publishes.
#pragma once

#include <string>
#include <vector>

#include "formats/cgmes/set.h"
#include "formats/import_options.h"
#include "formats/import_report.h"
#include "model/dtsdb.h"

namespace dtsdb::tools::cgmes {

/// A place where the two differ. Texts are UTF-8.
struct TopologyDifference {
  std::string what = {};     ///< such as "apart here"
  std::string station = {};  ///< identity
  std::string level = {};    ///< identity
  std::string here = {};     ///< the groups of nodes, each by the names of its first nodes
  std::string there = {};    ///< the names of the topological nodes or islands of the set
  std::string why = {};      ///< what stands between; empty where nothing explains it
  bool isByDesign = false;   ///< both are right by their own rules
};

/// The two side by side.
struct TopologyComparison {
  int groups = 0;                               ///< of nodes, here
  int published = 0;                            ///< topological nodes of the set that equipment stands on
  int same = 0;                                 ///< groups that equal a topological node
  int islands = 0;                              ///< live islands, here
  int publishedIslands = 0;                     ///< 0 for a set without islands: they aren't compared
  std::string note;                             ///< that TP and SSH are of different times; empty where they aren't
  std::vector<TopologyDifference> differences;  ///< level by level, those by design behind the others
};

/// Compares the groups of nodes that a topology run has left in `tables` with the topological nodes of `set`, from
/// which `options` and `report` are the import of these tables. Throws Failure when the set has no TP.
TopologyComparison CompareWithPublished(const ProfileSet& set, const ImportOptions& options, const ImportReport& report,
                                        DTSDB& tables);

}  // namespace dtsdb::tools::cgmes
