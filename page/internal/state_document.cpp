#include "page/internal/state_document.h"

#include <map>
#include <set>

#include "formats/field_text.h"
#include "model/record_bits.h"
#include "pictures/grid_map.h"
#include "pictures/svg.h"

namespace dtsdb::page::internal {
namespace {

using tools::IdText;

/// What the nodes and devices of a live island add up to.
struct IslandTotals {
  std::set<std::string> stations;
  double generation = 0;
  double load = 0;
};

template <class T>
void AddPower(DTSDB& tables, double IslandTotals::*total, std::map<int, IslandTotals>& totals) {
  tTable<T>& devices = TableOf<T>(tables);
  for (int i = 0; i < devices.GetCount(); ++i) {
    const T& device = devices[i];
    const int island = IslandOf(tables, device.ind);
    const bool counts = island >= 0 && (device.status & SHUNT_OFF) == 0 && std::isfinite(device.p);
    if (counts) totals[island].*total += static_cast<double>(device.p);
  }
}

std::map<int, IslandTotals> TotalsOf(const GridState& state) {
  DTSDB& tables = state.model.Tables();
  std::map<int, IslandTotals> totals;
  for (const analysis::Node& node : state.topology.nodes) {
    if (node.live) totals[tables.m_bsTable->GetPh(node.section).island].stations.insert(node.station);
  }
  AddPower<UN>(tables, &IslandTotals::generation, totals);
  AddPower<LD>(tables, &IslandTotals::load, totals);
  return totals;
}

Json IslandsJson(const GridState& state) {
  const std::map<int, IslandTotals> totals = TotalsOf(state);
  Json islands = Json::array();
  for (const analysis::Island& island : state.topology.islands) {
    const auto found = totals.find(island.number);
    const IslandTotals total = found != totals.end() ? found->second : IslandTotals();
    islands.push_back({{"number", island.number},
                       {"live", true},
                       {"reference", island.reference},
                       {"stations", total.stations.size()},
                       {"sections", island.sections},
                       {"nodes", island.counts.nodes},
                       {"buses", island.counts.buses},
                       {"units", island.counts.units},
                       {"loads", island.counts.loads},
                       {"generation", PowerJson(total.generation)},
                       {"load", PowerJson(total.load)}});
  }
  return islands;
}

/// Stations without a live node first, then equipment.
Json DeadJson(const GridState& state) {
  DTSDB& tables = state.model.Tables();
  std::set<std::string> live;
  for (const analysis::Node& node : state.topology.nodes) {
    if (node.live) live.insert(node.station);
  }
  Json dead = Json::array();
  for (const QString& id : state.stations->Stations()) {
    const std::string station = IdText(id);
    if (live.contains(station)) continue;
    dead.push_back({{"table", ST::kTableName}, {"id", station}, {"station", station}, {"state", "dead"}});
  }
  for (const analysis::Dead& thing : state.topology.dead) {
    dead.push_back({{"table", thing.table},
                    {"id", thing.identity},
                    {"station", StationOf(tables, thing.table, thing.identity)},
                    {"state", thing.state}});
  }
  return dead;
}

const char* SetStateText(FlowSetState state) {
  switch (state) {
    case FlowSetState::kLacksPower:
      return "lacks power";
    case FlowSetState::kNotBalanced:
      return "not balanced";
    case FlowSetState::kNoVoltage:
      return "no voltage";
    case FlowSetState::kBalanced:
      break;
  }
  return "balanced";
}

/// Sets of joined breakers whose flows are missing or don't fit.
Json UnbalancedJson(const GridState& state) {
  DTSDB& tables = state.model.Tables();
  Json sets = Json::array();
  for (const FlowSet& set : state.flows.sets) {
    if (set.state == FlowSetState::kBalanced) continue;
    Json breakers = Json::array();
    for (const int place : set.breakers) {
      breakers.push_back(IdText(state.flows.breakers[static_cast<std::size_t>(place)].id));
    }
    const std::string level = IdText(set.kv);
    sets.push_back({{"level", level},
                    {"station", StationOf(tables, KV::kTableName, level)},
                    {"state", SetStateText(set.state)},
                    {"p", PowerJson(static_cast<double>(set.surplus.p))},
                    {"q", PowerJson(static_cast<double>(set.surplus.q))},
                    {"nodes", set.nodes},
                    {"breakers", std::move(breakers)}});
  }
  return sets;
}

}  // namespace

Json SummaryJson(const GridState& state) {
  DTSDB& tables = state.model.Tables();
  return {{"stations", tables.m_stTable->GetCount()}, {"levels", tables.m_kvTable->GetCount()},
          {"nodes", tables.m_ndTable->GetCount()},    {"buses", tables.m_busTable->GetCount()},
          {"switches", tables.m_cbTable->GetCount()}, {"lines", tables.m_lnTable->GetCount()},
          {"dcLines", tables.m_dlnTable->GetCount()}, {"transformers", tables.m_xfTable->GetCount()},
          {"units", tables.m_unTable->GetCount()},    {"loads", tables.m_ldTable->GetCount()},
          {"shunts", tables.m_cpTable->GetCount()},   {"islands", state.topology.islands.size()},
          {"dead", state.topology.dead.size()},       {"errors", state.grid->errors},
          {"warnings", state.grid->warnings}};
}

Json StateJson(const GridState& state) {
  Json json = {{"version", state.version},
               {"verdict", state.grid->good ? "good" : "faulty"},
               {"errors", state.grid->errors},
               {"warnings", state.grid->warnings}};
  json["topology"] = state.hasTopology;
  json["islands"] = state.hasTopology ? IslandsJson(state) : Json::array();
  json["dead"] = state.hasTopology ? DeadJson(state) : Json::array();
  json["unbalanced"] = state.hasTopology ? UnbalancedJson(state) : Json::array();
  return json;
}

Json MapJson(const GridState& state) {
  std::string svg;
  if (state.hasTopology) {
    const pictures::GridReader reader(state.model.Tables(), state.grid->subject.positions);
    pictures::Picture picture = pictures::DrawGrid(reader.Read(), {.flows = true});
    for (pictures::Element& element : picture.elements) {
      if (state.changed.contains({element.record.table, element.record.identity})) element.classes += " changed";
    }
    svg = pictures::ToSvg(picture);
  }
  return {{"version", state.version}, {"svg", std::move(svg)}};
}

Json FindingsJson(const Grid& grid) {
  Json findings = Json::array();
  for (const PageFinding& finding : grid.findings) {
    findings.push_back({{"code", finding.code},
                        {"severity", finding.severity},
                        {"table", finding.thing.table},
                        {"id", finding.thing.id},
                        {"field", finding.field},
                        {"station", finding.thing.station},
                        {"text", finding.text},
                        {"remedy", finding.remedy}});
  }
  return findings;
}

}  // namespace dtsdb::page::internal
