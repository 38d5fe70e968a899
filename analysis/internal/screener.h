/// \file
/// Outages tried out one after the other on one copy of a model.
#pragma once

#include <map>
#include <memory>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "analysis/careful_runner.h"
#include "analysis/internal/outage_events.h"
#include "analysis/internal/references.h"
#include "analysis/internal/supply_record.h"
#include "analysis/screening.h"
#include "topology/tp.h"

namespace dtsdb::analysis::internal {

/// A copy of a model, in which each outage is made and taken back. One thread at a time; several of them work on
/// several threads.
class Screener {
 public:
  /// Copies the model, which must be good, and works out its topology.
  static Result<std::unique_ptr<Screener>> Make(const Model& model);

  /// What an outage of known components costs. Afterwards the copy is as it was; an Error when it can't be brought
  /// back.
  Result<OutageResult> Try(const Outage& outage);

  /// The run before all outages.
  const RunReport& First() const { return m_first; }
  /// The copy.
  DTSDB& Tables() { return m_model.Tables(); }

 private:
  explicit Screener(Model copy);

  Result<void> Begin();
  Result<void> TakeOpenEndedOut();
  template <class Branch>
  void SetOpenEndedOut(bool out);
  Result<RunReport> Switch(const std::vector<NumberedEvent>& events, bool on);
  Result<void> GoBack(const std::vector<NumberedEvent>& events, std::vector<int> levels);
  bool IsBack(const std::vector<NumberedEvent>& events, const std::vector<int>& levels);
  void Describe(const std::vector<NumberedEvent>& events, const std::vector<int>& levels, OutageResult& result);
  void DescribeIslands(const IslandParts& parts, OutageResult& result);
  std::vector<IslandPart> PartsIn(const std::map<int, int>& firstNodes, const std::vector<Reference>& chosen);
  std::string WhyNothing(const OutageComponent& component);
  std::vector<int> LevelsOf(const RunReport& run) const;
  std::vector<int> LevelsOf(const std::vector<NumberedEvent>& events);

  Model m_model;
  TP m_tp{&m_model.Tables()};
  CarefulRunner m_runner{m_model.Tables(), m_tp};
  RunReport m_first;
  std::set<std::pair<TableKind, int>> m_openEnded;  // branches that count as out, by table and number
  std::unique_ptr<SupplyRecord> m_start;
  std::unique_ptr<References> m_references;
};

}  // namespace dtsdb::analysis::internal
