#include "tests/load/network.h"

#include <algorithm>
#include <map>
#include <random>
#include <set>
#include <utility>

#include "model/record_bits.h"

namespace dtsdb::load {
namespace {

/// Calls `visit` with each row of a table. The texts of a row hold only for that call.
template <class Row, class Visit>
void ForEachRow(dbDatabase& database, Visit visit) {
  dbCursor<Row> cursor(&database);
  if (cursor.select() <= 0) return;
  for (const Row* row = cursor.first(); row != nullptr; row = cursor.next()) visit(*row);
}

constexpr nat4 kOpenEnds = 3;  // of the status of a branch: either end is open

struct Node {
  int attached = 0;                 // devices, buses and ends of branches
  std::vector<std::string> closed;  // breakers
};

/// What stands at the nodes, and the levels on which an event may lead to a full run.
struct Layout {
  std::map<std::string, Node> nodes;
  std::set<std::string> careful;
};

template <class Row>
void PutDevices(dbDatabase& database, Layout& layout) {
  ForEachRow<Row>(database, [&](const Row& row) { ++layout.nodes[row.nd].attached; });
}

template <class Row>
void PutBranches(dbDatabase& database, Layout& layout) {
  ForEachRow<Row>(database, [&](const Row& row) {
    for (const char* node : {row.nd, row.znd}) ++layout.nodes[node].attached;
    if ((row.status & kOpenEnds) != 0) layout.careful.insert({row.kv, row.zkv});
  });
}

Layout LayoutOf(dbDatabase& database) {
  Layout layout;
  ForEachRow<cb>(database, [&](const cb& row) {
    if ((row.flags & CB_OPEN) != 0) return;
    for (const char* node : {row.nd, row.znd}) layout.nodes[node].closed.emplace_back(row.id);
  });
  PutDevices<bus>(database, layout);
  PutDevices<un>(database, layout);
  PutDevices<ld>(database, layout);
  PutDevices<cp>(database, layout);
  PutBranches<ln>(database, layout);
  PutBranches<xf>(database, layout);
  PutBranches<dln>(database, layout);
  ForEachRow<r_kv_zbr>(database, [&](const r_kv_zbr& row) { layout.careful.insert(row.kv_id); });
  return layout;
}

}  // namespace

std::vector<Switchable> FindSwitchables(dbDatabase& database) {
  Layout layout = LayoutOf(database);
  std::vector<Switchable> found;
  ForEachRow<ld>(database, [&](const ld& row) {
    const Node& node = layout.nodes[row.nd];
    if (row.status != 0 || row.tp_status != 0 || node.attached != 1 || node.closed.size() != 1) return;
    if (layout.careful.contains(row.kv)) return;
    const bool isBreaker = found.size() % 2 == 0;
    found.push_back({isBreaker ? node.closed.front() : row.id, row.id, isBreaker});
  });
  database.commit();
  return found;
}

Plan::Plan(std::vector<Switchable> components, int writers, unsigned seed)
    : m_components(std::move(components)), m_writers(writers) {
  std::mt19937 random(seed);
  std::shuffle(m_components.begin(), m_components.end(), random);
}

int Plan::ComponentOf(int row) const {
  const int writer = row % m_writers;
  return row / m_writers % Share(writer) * m_writers + writer;
}

}  // namespace dtsdb::load
