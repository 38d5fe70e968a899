/// \file
/// A model in one state, with all that the documents take from it.
#pragma once

#include <map>
#include <memory>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "analysis/model.h"
#include "analysis/topology.h"
#include "breakerflow/flows.h"
#include "page/documents.h"
#include "pictures/station.h"

namespace dtsdb::page::internal {

/// Table and identity of a record, in UTF-8.
using RecordKey = std::pair<std::string, std::string>;

/// A finding as the page shows it.
struct PageFinding {
  Thing thing;  ///< without table for what concerns the run as a whole
  std::string code;
  std::string severity;  ///< "error" or "warning"
  std::string field;
  std::string text;
  std::string remedy;  ///< what to do; may be empty
};

/// What all states of one grid share.
struct Grid {
  Subject subject;  ///< with the positions of the model where it has any
  bool good = false;
  int errors = 0;
  int warnings = 0;
  std::vector<PageFinding> findings;
  std::map<RecordKey, std::vector<int>> findingsOf;  ///< places in `findings`
  std::vector<Thing> records;                        ///< all that have an identity, the most asked-for tables first
};

/// Reads what all states share.
std::shared_ptr<const Grid> ReadGrid(const analysis::Model& model, const analysis::Validation& validation,
                                     Subject subject);

/// One state. What needs a topology is empty without one.
struct GridState {
  GridState(std::shared_ptr<const Grid> shared, const analysis::Model& model, int version);

  std::shared_ptr<const Grid> grid;
  analysis::Model model;
  int version = 1;
  bool hasTopology = false;
  analysis::Topology topology;
  Flows flows;
  std::unique_ptr<pictures::StationReader> stations;  ///< null without a topology
  std::set<RecordKey> changed;                        ///< marked in the documents
};

/// Number of the live island of node `nd`, -1 for none.
int IslandOf(DTSDB& tables, int nd);

/// The identity in UTF-8 of the first station that a record belongs to; empty for none.
std::string StationOf(DTSDB& tables, TableKind kind, const void* record);
/// The same for the record `id` (UTF-8) of `table`.
std::string StationOf(DTSDB& tables, const std::string& table, const std::string& id);

}  // namespace dtsdb::page::internal
