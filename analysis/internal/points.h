/// \file
/// Electrical points, worked out from the nodes and the states of the breakers alone; the branches on
/// a node; the islands that the last run has put nodes into.
#pragma once

#include <string>
#include <vector>

#include "include/chain.h"
#include "model/dtsdb.h"
#include "model/record_bits.h"

namespace dtsdb::analysis::internal {

/// Visits the ends of the branches of class `Branch` on node `nd`: `visit(branch, end)`.
template <class Branch, class Visit>
void ForEachEndOn(DTSDB& database, int nd, Visit visit) {
  using Kind = BranchKind<Branch>;
  using Row = typename Kind::Row;
  for (const Row& row : Chain(TableOf<Row>(database), database.m_ndTable->GetPh(nd).*Relation<Row>::kHead)) {
    const auto& end = TableOf<typename Kind::End>(database).GetPh(row.ChildNumber());
    visit(TableOf<Branch>(database).GetPh(end.*Kind::kOwner), end);
  }
}

/// True when the point of node `nd` is a bus section: it has two branch ends, or one and a unit, load or shunt device.
bool IsSectionPoint(DTSDB& database, int nd);

/// The live island of each node, by logical number; -1 for none.
std::vector<int> IslandsOfNodes(DTSDB& database);

/// The section with 100 or more branch ends that lead somewhere, on which a full run has just failed: its station,
/// voltage level and first node, for people. Empty when there is none.
std::string CrowdedSection(DTSDB& database);

}  // namespace dtsdb::analysis::internal
