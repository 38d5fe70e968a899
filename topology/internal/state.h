/// \file
/// What a TP lends its stages: the tables, the work arrays and the voltage levels of the run.
#pragma once

#include <memory>
#include <vector>

#include "topology/internal/change_log.h"
#include "topology/internal/changes.h"
#include "topology/internal/entries.h"
#include "topology/internal/levels.h"
#include "topology/internal/network.h"
#include "topology/internal/sections.h"

namespace dtsdb::internal {

struct StoredResults;

/// What a TP keeps between two runs. The copies of a TP share it.
struct WorkArrays {
  std::shared_ptr<StoredResults> stored;  ///< made with the first storing in a realtime database
  WorkArray<BS> sections;
  WorkArray<BSL> entries;
  std::vector<int> allKvs;       ///< all voltage levels with nodes, in list order
  std::vector<int> placeOfKv;    ///< by KV number: the place in allKvs, -1 for none
  std::vector<int> placeInRun;   ///< by KV number: the place in the list of the run that had it last
  std::vector<int> markedNodes;  ///< by base section: how many nodes of the KV being sorted still carry ND_MARK
  std::vector<int> moveOfNode;   ///< by ND number: the row of CHND of the run that moved it last
  internal::Changes changes;
};

/// Everything by reference; only the members below put new work arrays in the place of the old ones. A stage takes the
/// parts that it needs out of it, and only after Make: the parts point into the arrays.
struct State {
  Network network;  ///< the tables as they were when the TP was made
  DTSDB& model;     ///< the model that the realtime database is exchanged with
  std::shared_ptr<WorkArrays>& arrays;
  BS*& bs;    ///< what the sections in `arrays` begin with, null without arrays
  BSL*& bsl;  ///< the same of the entries
  bool& allnew;
  Levels levels;

  /// The same on `flat` in the place of nodes, branches and their ends. It must outlive what is returned.
  State Over(FlatNetwork& flat) const;

  /// Sizes the BS and BSL tables and makes the work arrays: all sections and entries are free.
  void Make() const;
  /// Lets the work arrays go.
  void Clear() const;

  internal::Sections Sections() const;
  internal::Entries Entries() const;
  ChangeLog Log() const { return {network, !allnew, arrays ? &arrays->moveOfNode : nullptr}; }
};

}  // namespace dtsdb::internal
