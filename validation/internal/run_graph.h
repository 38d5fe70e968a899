/// \file
/// What the checks look up and make: by single additions, or for the whole run at once.
#pragma once

#include <memory>

#include "validation/internal/bulk_graph.h"
#include "validation/internal/hierarchy.h"

namespace dtsdb::internal {

/// The records, relations and nodes of a model as a check sees them. All numbers are physical, -1 is none.
///
/// As long as it isn't given to a whole run, every operation works on the tables: so it does for edits, and for models
/// with doubled keys, where an addition can fail.
class RunGraph {
 public:
  explicit RunGraph(DTSDB& model) : m_model(model) {}

  /// Makes what follows at once, in place of single additions: BulkGraph.
  void BeginAtOnce() {
    m_bulk = std::make_unique<BulkGraph>(m_model);
    m_bulk->LinkAll();
  }
  void EndAtOnce() { m_bulk.reset(); }
  /// Null when single additions are made.
  BulkGraph* AtOnce() { return m_bulk.get(); }
  bool HasGivenUp() const { return m_bulk != nullptr && m_bulk->HasGivenUp(); }

  template <class Record>
  int NumberOf(const QString& id) {
    if constexpr (!std::is_same_v<Record, CB>) {  // few branches name a breaker
      if (m_bulk != nullptr) return m_bulk->NumberOf<Record>(id);
    }
    return internal::NumberOf<Record>(m_model, id);
  }

  /// The parent of record `number`, which has one in relation `Row`.
  template <class Row>
  int ParentOf(int number) {
    using R = Relation<Row>;
    if (m_bulk != nullptr) return m_bulk->ParentOf<Row>(number);
    return TableOf<Row>(m_model).GetPh(TableOf<typename R::Child>(m_model).GetPh(number).*R::kOwn).*R::kParentNumber;
  }

  int LevelOfNode(int nd) const {
    return m_bulk != nullptr ? m_bulk->LevelOfNode(nd) : internal::LevelOfNode(m_model, nd);
  }
  int StationOfLevel(int kv) const {
    return m_bulk != nullptr ? m_bulk->ParentOf<R_ST_KV>(kv) : internal::StationOfLevel(m_model, kv);
  }
  int DistrictOfStation(int st) const {
    return m_bulk != nullptr ? m_bulk->ParentOf<R_DV_ST>(st) : internal::DistrictOfStation(m_model, st);
  }

  /// Ties the children of a relation to the parents that they name; false when the relation takes no more rows.
  template <class Row>
  bool Link() {
    return m_bulk != nullptr || LinkPass<Row>(m_model);  // BeginAtOnce has tied them all
  }

  /// Ties zero-impedance branch `zbr` to a level; false when the relation takes no more rows.
  bool RelateZbr(int level, int zbr);

  // See graph.h.
  int InsertNode(const QString& nd, int* pNd, const QString& kv, int mask);
  int InsertBranch(int kind, const BranchEnds& ends);

  /// InsertBranch for a line, after a test that its nodes exist and lie in the stations that it names.
  int InsertLine(int kind, const QString& st, const QString& zst, const BranchEnds& ends);

 private:
  DTSDB& m_model;
  std::unique_ptr<BulkGraph> m_bulk;
};

}  // namespace dtsdb::internal
