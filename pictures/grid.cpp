#include "pictures/grid.h"

#include <fmt/format.h>

#include <algorithm>
#include <type_traits>

#include "formats/text_layout.h"
#include "model/branch_kinds.h"
#include "pictures/internal/place.h"
#include "pictures/internal/records.h"

namespace dtsdb::pictures {
namespace {

using internal::NameOf;
using internal::Place;

std::string Summary(const Grid& grid) {
  return tools::Counted(static_cast<long long>(grid.stations.size()), "station") + ", " +
         tools::Counted(static_cast<long long>(grid.lines.size()), "line");
}

}  // namespace

GridReader::GridReader(DTSDB& tables, const StationPositions& positions) : m_tables(tables) {
  const analysis::Topology topology = analysis::DescribeTopology(tables);
  ReadStations(positions);
  ReadIslands(topology);
  ReadLines<LN>(DeviceKind::kLine, topology);
  ReadLines<DLN>(DeviceKind::kDcLine, topology);
  ReadLines<XF>(DeviceKind::kWinding, topology);
  m_grid.title = Summary(m_grid);
}

void GridReader::ReadStations(const StationPositions& positions) {
  for (int i = 0; i < m_tables.m_stTable->GetCount(); ++i) {
    GridStation& station = m_grid.stations.emplace_back();
    station.name = NameOf((*m_tables.m_stTable)[i]);
    const auto position = positions.find(station.name.identity);
    if (position != positions.end()) station.position = position->second;
  }
  for (int i = 0; i < m_tables.m_kvTable->GetCount(); ++i) {
    const KV& level = (*m_tables.m_kvTable)[i];
    const int place = m_tables.m_stTable->Find(ST(level.st));
    if (place < 0) continue;
    GridStation& station = m_grid.stations[Place(place)];
    station.voltage = std::max(station.voltage, level.vbase);
    ++station.levels;
  }
}

/// The island of a station is that of most of its live nodes; of several with as many the first.
void GridReader::ReadIslands(const analysis::Topology& topology) {
  std::vector<std::map<int, int>> nodesOf(m_grid.stations.size());
  const tTable<R_KV_ND>& rows = *m_tables.m_rKvNdTable;
  for (int i = 0; i < rows.GetCount(); ++i) {
    const int nd = m_tables.m_ndTable->Find(ND(rows[i].nd_id));
    const int st = StationOfLevel(rows[i].kv_id);
    const int island = nd < 0 ? -1 : IslandOf(topology.nodes[Place(nd)]);
    if (st >= 0 && island >= 0) ++nodesOf[Place(st)][island];
  }
  for (std::size_t i = 0; i < nodesOf.size(); ++i) {
    GridStation& station = m_grid.stations[i];
    station.islands = static_cast<int>(nodesOf[i].size());
    const auto most = std::max_element(nodesOf[i].begin(), nodesOf[i].end(),
                                       [](const auto& a, const auto& b) { return a.second < b.second; });
    if (most != nodesOf[i].end()) station.island = most->first;
  }
}

/// The place of the station of a voltage level, -1 for none.
int GridReader::StationOfLevel(const QString& level) const {
  const int kv = m_tables.m_kvTable->Find(KV(level));
  return kv < 0 ? -1 : m_tables.m_stTable->Find(ST((*m_tables.m_kvTable)[kv].st));
}

/// The live island of a node, -1 for none.
int GridReader::IslandOf(const analysis::Node& node) const {
  return node.live && node.IsInSection() ? m_tables.m_bsTable->GetPh(node.section).island : -1;
}

template <class Line>
void GridReader::ReadLines(DeviceKind kind, const analysis::Topology& topology) {
  using Kind = BranchKind<Line>;
  std::map<std::string, std::string> states;
  for (const analysis::Dead& dead : topology.dead) {
    if (dead.table == Line::kTableName) states[dead.identity] = dead.state;
  }
  tTable<Line>& table = TableOf<Line>(m_tables);
  for (int i = 0; i < table.GetCount(); ++i) {
    const Line& record = table[i];
    GridLine line{NameOf(record), kind};
    if constexpr (std::is_same_v<Line, XF>) {
      line.from = StationOfLevel(record.kv);
      line.to = StationOfLevel(record.zkv);
      if (line.from == line.to) continue;  // within a station
    } else {
      line.from = m_tables.m_stTable->Find(ST(record.st));
      line.to = m_tables.m_stTable->Find(ST(record.zst));
    }
    if (line.from < 0 || line.to < 0) continue;
    for (const QString& id : {record.kv, record.zkv}) {
      const int level = m_tables.m_kvTable->Find(KV(id));
      if (level >= 0) line.voltage = std::max(line.voltage, (*m_tables.m_kvTable)[level].vbase);
    }
    const auto state = states.find(line.name.identity);
    line.state = state == states.end() ? internal::kLive : state->second;
    const bool fromIsOn = (record.status & (Kind::kOut | Kind::kOpen1)) == 0;
    const bool toIsOn = (record.status & (Kind::kOut | Kind::kOpen2)) == 0;
    if (fromIsOn) line.island = IslandOf(topology.nodes[Place(record.ind)]);
    if (toIsOn && line.island < 0) line.island = IslandOf(topology.nodes[Place(record.iznd)]);
    // At the from end power counts into the line, at the to end out of it. The tables have none of DC lines.
    if constexpr (!std::is_same_v<Line, DLN>) {
      if (line.island >= 0) line.flow = fromIsOn ? Power{record.p, record.q} : Power{record.zp, record.zq};
    }
    m_grid.lines.push_back(std::move(line));
  }
}

/// Stations in up to `hops` steps from one to the next.
std::set<int> GridReader::Around(int centre, int hops) const {
  std::set<int> around = {centre};
  for (int hop = 0; hop < hops; ++hop) {
    std::set<int> next = around;
    for (const GridLine& line : m_grid.lines) {
      if (around.contains(line.from)) next.insert(line.to);
      if (around.contains(line.to)) next.insert(line.from);
    }
    if (next.size() == around.size()) break;
    around = std::move(next);
  }
  return around;
}

Result<Grid> GridReader::ReadAround(const QString& id, int hops) const {
  const int centre = m_tables.m_stTable->Find(ST(id));
  if (centre < 0) return tl::unexpected(internal::Unknown<ST>(m_tables, id, "station"));
  const std::set<int> around = Around(centre, hops);
  Grid grid;
  std::map<int, int> places;
  for (const int station : around) {
    places[station] = static_cast<int>(grid.stations.size());
    grid.stations.push_back(m_grid.stations[Place(station)]);
  }
  for (const GridLine& line : m_grid.lines) {
    const auto from = places.find(line.from);
    const auto to = places.find(line.to);
    if (from != places.end() && to != places.end()) {
      grid.lines.push_back(line);
      grid.lines.back().from = from->second;
      grid.lines.back().to = to->second;
    } else if (from != places.end() || to != places.end()) {
      ++grid.stations[Place(from != places.end() ? from->second : to->second)].linesBeyond;
    }
  }
  grid.centre = places.at(centre);
  grid.title = fmt::format("{} and {} around it: {}", tools::OneLine(grid.stations[Place(grid.centre)].name.identity),
                           tools::Counted(hops, "hop"), Summary(grid));
  return grid;
}

}  // namespace dtsdb::pictures
