#include "analysis/topology.h"

#include "analysis/careful_runner.h"
#include "analysis/internal/equipment_state.h"
#include "analysis/internal/guard.h"
#include "analysis/internal/section_contents.h"
#include "formats/field_text.h"
#include "formats/node_groups.h"
#include "topology/tp.h"

namespace dtsdb::analysis {
namespace {

using internal::StateOf;
using tools::IdText;

void Add(Counts& sum, const Counts& counts) {
  sum.nodes += counts.nodes;
  sum.buses += counts.buses;
  sum.units += counts.units;
  sum.loads += counts.loads;
  sum.shunts += counts.shunts;
  sum.branches += counts.branches;
}

std::vector<Island> IslandsOf(DTSDB& tables, const std::vector<Section>& sections) {
  std::vector<Island> islands;
  for (int i = 0; i < tables.m_islandTable->GetCount(); ++i) {
    const ISLAND& record = (*tables.m_islandTable)[i];
    Island& island = islands.emplace_back();
    island.number = record.id;
    island.reference = IdText(record.ref_id);
    island.referenceSection = record.ref_ibs >= 0 ? record.ref_ibs : -1;
  }
  for (const Section& section : sections) {
    if (!section.IsLive() || static_cast<std::size_t>(section.island) >= islands.size()) continue;
    Island& island = islands[static_cast<std::size_t>(section.island)];
    ++island.sections;
    Add(island.counts, section.counts);
  }
  return islands;
}

/// The first node of each point, by number.
std::vector<int> FirstNodes(DTSDB& tables) {
  std::vector<int> first(static_cast<std::size_t>(tables.m_ndTable->GetCount()), -1);
  for (const tools::NodeGroup& group : tools::NodeGroups(tables)) {
    for (const int node : group.nodes) first[static_cast<std::size_t>(node)] = group.nodes.front();
  }
  return first;
}

std::vector<Node> NodesOf(DTSDB& tables) {
  tTable<ND>& table = *tables.m_ndTable;
  const std::vector<int> first = FirstNodes(tables);
  std::vector<Node> nodes;
  nodes.reserve(first.size());
  for (int i = 0; i < table.GetCount(); ++i) {
    const ND& record = table[i];
    Node& node = nodes.emplace_back();
    node.identity = IdText(record.id);
    node.point = IdText(table[first[static_cast<std::size_t>(i)]].id);
    const KV& level = tables.m_kvTable->GetPh(tables.m_rKvNdTable->GetPh(record.r_kv_nd).ikv);
    node.station = IdText(level.st);
    node.level = IdText(level.id);
    if (record.ibs < internal::kFirstSection || record.ibs >= tables.m_bsTable->GetSize()) continue;
    node.section = record.ibs;
    node.live = tables.m_bsTable->GetPh(record.ibs).island >= 0;
  }
  return nodes;
}

/// Adds the records of a table that aren't live.
template <class T>
void AddDead(DTSDB& tables, std::vector<Dead>& dead) {
  tTable<T>& table = TableOf<T>(tables);
  for (int i = 0; i < table.GetCount(); ++i) {
    std::string state = StateOf(table[i]);
    if (state != internal::kLive) dead.push_back({T::kTableName, IdText(table[i].id), std::move(state)});
  }
}

std::vector<Dead> DeadOf(DTSDB& tables) {
  std::vector<Dead> dead;
  AddDead<BUS>(tables, dead);
  AddDead<UN>(tables, dead);
  AddDead<LD>(tables, dead);
  AddDead<CP>(tables, dead);
  AddDead<LN>(tables, dead);
  AddDead<XF>(tables, dead);
  AddDead<DLN>(tables, dead);
  AddDead<ZBR>(tables, dead);
  AddDead<CB>(tables, dead);
  return dead;
}

}  // namespace

Result<Topology> WorkOutTopology(Model& model) {
  const Result<void> good = model.RequireGood();
  if (!good) return tl::unexpected(good.error());
  return internal::Guarded(model.Name(), [&]() -> Result<Topology> {
    TP tp(&model.Tables());
    CarefulRunner runner(model.Tables(), tp);
    Result<RunReport> run = runner.RunFull();
    if (!run) {
      run.error().message = model.Name() + ": " + run.error().message;
      return tl::unexpected(run.error());
    }
    Topology topology = DescribeTopology(model.Tables());
    topology.findings = std::move(run->findings);
    topology.leftOut = std::move(run->leftOut);
    return topology;
  });
}

bool HasTopology(const Model& model) { return model.IsGood() && model.Tables().m_bsTable->GetCount() > 0; }

Topology DescribeTopology(DTSDB& tables) {
  Topology topology;
  topology.sections = internal::SectionContents(tables).InRingOrder();
  topology.islands = IslandsOf(tables, topology.sections);
  topology.nodes = NodesOf(tables);
  topology.dead = DeadOf(tables);
  return topology;
}

std::vector<Island> DescribeIslands(DTSDB& tables) {
  return IslandsOf(tables, internal::SectionContents(tables).InRingOrder());
}

}  // namespace dtsdb::analysis
