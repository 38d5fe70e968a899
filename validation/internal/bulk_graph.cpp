#include "validation/internal/bulk_graph.h"

#include <bit>
#include <functional>

#include "include/internal/table_filler.h"
#include "model/threads.h"
#include "validation/internal/device_kinds.h"
#include "validation/internal/logical_numbers.h"
#include "validation/internal/name_order.h"
#include "validation/internal/verdict.h"

namespace dtsdb::internal {
namespace {

constexpr auto kSelf = [](int number) { return number; };

std::size_t At(int number) { return static_cast<std::size_t>(number); }

/// From numbers in an order to the places in it.
std::vector<int> PlacesIn(const std::vector<int>& order) {
  std::vector<int> places(order.size());
  for (std::size_t i = 0; i < order.size(); ++i) places[At(order[i])] = static_cast<int>(i);
  return places;
}

/// What tTable::PhToLg will return for the records of a table that are still to be filled in: `ranks` by physical
/// number. For any other number the table answers, which has grown but is empty.
template <class T>
class PlannedNumbers {
 public:
  PlannedNumbers(const std::vector<int>& ranks, tTable<T>& table) : m_ranks(ranks), m_table(table) {}
  int PhToLg(int number) const {
    return number >= 0 && At(number) < m_ranks.size() ? m_ranks[At(number)] : m_table.PhToLg(number);
  }

 private:
  const std::vector<int>& m_ranks;
  tTable<T>& m_table;
};

/// A record in a relation's row.
struct Named {
  int number;
  const QString& id;
};

/// The order of the ends of `branches`, which ascend: an end's identity is that of its branch and a letter.
///
/// The ends of a branch stand directly behind each other, but for those of branches whose identity begins with its own:
/// "B" has the ends "Bi" and "Bz", and between them may be what belongs to "Bj". So an end waits until the next branch
/// is beyond it; those that wait are in order, the first on top.
template <class Branch>
std::vector<int> OrderOfEnds(tTable<Branch>& table, const std::vector<int>& branches) {
  std::vector<int> order;
  order.reserve(2 * branches.size());
  std::vector<int> waiting;
  const auto idOf = [&](int end) -> const QString& { return table.GetPh(branches[At(end / 2)]).id; };
  const auto standsBefore = [&](int end, const QString& id) {
    const QString& own = idOf(end);
    if (id.size() <= own.size() || !id.startsWith(own)) return true;
    return QChar(EndLetter(end % 2 != 0)) <= id[own.size()];
  };
  for (int i = 0; i < static_cast<int>(branches.size()); ++i) {
    const QString& id = idOf(2 * i);
    for (; !waiting.empty() && standsBefore(waiting.back(), id); waiting.pop_back()) order.push_back(waiting.back());
    waiting.push_back(2 * i + 1);
    waiting.push_back(2 * i);
  }
  order.insert(order.end(), waiting.rbegin(), waiting.rend());
  return order;
}

/// So many records ahead texts are fetched: each lies apart from the others, and a copy waits until it has counted
/// itself there.
constexpr int kFetchAhead = 12;

/// Fetches where copies of `text` are counted.
void Fetch(const QString& text) { __builtin_prefetch(const_cast<QString&>(text).data_ptr().d_ptr(), 1); }

/// Makes the planned rows of a relation. `parent` and `child` return number and identity of an item's parent and child.
template <class Row, class Parent, class Child>
void FillRows(DTSDB& model, const RowPlan& plan, Parent parent, Child child) {
  using R = Relation<Row>;
  TableFiller<Row>::Fill(TableOf<Row>(model), plan.Count(), [&](int lg, Row& row) {
    if (lg + kFetchAhead < plan.Count()) {
      const int ahead = plan.ItemAt(lg + kFetchAhead);
      Fetch(parent(ahead).id);
      Fetch(child(ahead).id);
    }
    const int item = plan.ItemAt(lg);
    const Named from = parent(item);
    const Named to = child(item);
    row = Row(from.id, to.id);
    row.*R::kParentNumber = from.number;
    row.*R::kChildNumber = to.number;
    row.next = plan.NextOf(item);
    row.prev = plan.PrevOf(item);
  });
}

/// Stores the heads of a relation's chains in the parents, of a table in which nothing has moved.
template <class Row>
void StoreHeads(DTSDB& model, const RowPlan& plan) {
  using R = Relation<Row>;
  auto& parents = TableOf<typename R::Parent>(model);
  for (int i = 0; i < parents.GetCount(); ++i) parents.GetPh(i).*R::kHead = plan.HeadOf(i);
}

/// The name of an end's node as the branch has it.
template <class Branch>
const QString& NodeNameIn(const Branch& branch, bool isTo) {
  if constexpr (std::is_same_v<Branch, ZBR>) {
    return branch.id;  // never asked for: the nodes of a breaker have a name
  } else {
    return isTo ? branch.znd : branch.nd;
  }
}

}  // namespace

bool BulkGraph::Takes(DTSDB& model) {
  bool takes = true;
  const auto look = [&](auto&... tables) {
    takes = takes && (TableFiller<std::remove_reference_t<decltype(tables[0])>>::IsStrict(tables) && ...);
  };
  look(*model.m_analogTable, *model.m_statusTable, *model.m_coTable, *model.m_dvTable, *model.m_stTable,
       *model.m_kvTable);
  ForEachShunt([&]<class Shunt>() { look(TableOf<Shunt>(model)); });
  ForEachBranch([&]<class Branch>() { look(TableOf<Branch>(model)); });
  ForEachBranch([&]<class Branch>() {
    using End = typename BranchKind<Branch>::End;
    takes = takes && TableFiller<End>::CanGrow(TableOf<End>(model));
  });
  ForEachRelation([&]<class Row>() { takes = takes && TableFiller<Row>::CanGrow(TableOf<Row>(model)); });
  return takes;
}

// The steps of the checks

int BulkGraph::InsertNode(const QString& nd, int* pNd, const QString& kv, int mask) {
  const u32 mark = mask > 0 ? static_cast<u32>(mask) : 0;
  *pNd = m_nodeNames.Find(nd);
  if (*pNd != -1) {
    Node& node = m_nodes[At(*pNd)];
    if (m_model.m_kvTable->GetPh(node.level).id != kv) return INSERT_OTHER_LEVEL;
    node.flags |= mark;
    return INSERT_DONE;
  }
  const int level = NumberOf<KV>(kv);
  if (level == -1) return INSERT_NO_LEVEL;
  *pNd = m_nodeNames.Add(nd);
  m_nodes.push_back({&nd, &kv, level, mark, 0});
  return INSERT_DONE;
}

void BulkGraph::RelateZbr(int level, int zbr) {
  m_zbrs.push_back(zbr);
  m_levelsOfZbrs.push_back(level);
}

bool BulkGraph::IsNode(int number, const QString& name) const {
  return number >= 0 && number < m_nodeNames.Count() && m_nodeNames[number] == name;
}

void BulkGraph::LinkAll() {
  RunTasks({[this] { IndexOf<CO>(); }, [this] { IndexOf<DV>(); }, [this] { IndexOf<ST>(); }, [this] { IndexOf<KV>(); },
            [this] { IndexOf<ANALOG>(); }, [this] { IndexOf<STATUS>(); }});
  std::vector<std::function<void()>> links;
  ForEachRelation([&]<class Row>() {
    if constexpr (kParentName<Row>.key != nullptr) links.emplace_back([this] { Link<Row>(); });
  });
  RunTasks(links);
}

// The end of the run

/// Each step reads what those before it have made; the tasks of one step write to different tables and fields.
void BulkGraph::Finish(ValidationLog& log) {
  FindOrders();
  WarnOfIdleNodes(log);
  PlanRows();
  GrowTables();
  NumbersToLogical();
  FillTables();
}

void BulkGraph::FindOrders() {
  std::vector<std::function<void()>> tasks = {[this] {
    m_nodeOrder = NameOrder(m_nodeNames.Names());
    m_nodeRanks = PlacesIn(m_nodeOrder);
  }};
  ForEachBranch([&]<class Branch>() {
    tasks.emplace_back([this] {
      MadeEnds<Branch>& made = Made<Branch>();
      made.order = OrderOfEnds(TableOf<Branch>(m_model), made.branches);
      made.ranks = PlacesIn(made.order);
    });
  });
  RunTasks(tasks);
}

void BulkGraph::PlanRows() {
  std::vector<std::function<void()>> tasks;
  ForEachBranch([&]<class Branch>() { tasks.emplace_back([this] { PlanEnds<Branch>(); }); });
  tasks.emplace_back([this] { PlanLevels(); });
  RunTasks(tasks);
}

/// The rows name nodes and ends, which come first.
void BulkGraph::FillTables() {
  std::vector<std::function<void()>> tasks = {[this] { FillNodes(); }};
  ForEachBranch([&]<class Branch>() { tasks.emplace_back([this] { FillEnds<Branch>(); }); });
  RunTasks(tasks);
  tasks.clear();
  ForEachBranch([&]<class Branch>() { tasks.emplace_back([this] { FillEndRows<Branch>(); }); });
  tasks.emplace_back([this] { FillLevelRows(); });
  ForEachRelation([&]<class Row>() {
    if constexpr (kParentName<Row>.key != nullptr) tasks.emplace_back([this] { FillLinkedRows<Row>(); });
  });
  RunTasks(tasks);
}

void BulkGraph::WarnOfIdleNodes(ValidationLog& log) const {
  for (const int number : m_nodeOrder) {
    const Node& node = m_nodes[At(number)];
    if (std::popcount(node.flags & kDeviceMarks) + node.ends <= 1) log.Report(ND(*node.name), message::kFewDevices);
  }
}

void BulkGraph::PlanLevels() {
  const int levels = m_model.m_kvTable->GetCount();
  std::vector<int> levelOf(m_nodes.size());
  for (std::size_t i = 0; i < m_nodes.size(); ++i) levelOf[i] = m_nodes[i].level;
  Plan<R_KV_ND>() = RowPlan(std::move(levelOf), levels);
  Plan<R_KV_ND>().Sort([this](int i) { return m_nodeOrder[At(i)]; }, kSelf);
  Plan<R_KV_ND>().MakeChains();
  Plan<R_KV_ZBR>() = RowPlan(m_levelsOfZbrs, levels);
  Plan<R_KV_ZBR>().Sort(kSelf, kSelf);
  Plan<R_KV_ZBR>().MakeChains();
}

template <class Branch>
void BulkGraph::PlanEnds() {
  MadeEnds<Branch>& made = Made<Branch>();
  RowPlan& plan = Plan<typename BranchKind<Branch>::Row>();
  plan = RowPlan(std::move(made.nodes), m_nodeNames.Count());
  plan.Sort([&made](int i) { return made.order[At(i)]; }, [this](int node) { return m_nodeRanks[At(node)]; });
  plan.MakeChains();
}

/// After this, and until it is filled, a table gives stray numbers the logical numbers that they get.
void BulkGraph::GrowTables() {
  TableFiller<ND>::Grow(*m_model.m_ndTable, m_nodeNames.Count());
  ForEachBranch([this]<class Branch>() {
    using End = typename BranchKind<Branch>::End;
    TableFiller<End>::Grow(TableOf<End>(m_model), static_cast<int>(Made<Branch>().order.size()));
  });
  ForEachRelation([this]<class Row>() { TableFiller<Row>::Grow(TableOf<Row>(m_model), Plan<Row>().Count()); });
}

void BulkGraph::NumbersToLogical() {
  const PlannedNumbers<ND> nodes(m_nodeRanks, *m_model.m_ndTable);
  ForEachShunt([&]<class Shunt>() { ToLogical(TableOf<Shunt>(m_model), &Shunt::ind, nodes); });
  ForEachBranch([&]<class Branch>() {
    using End = typename BranchKind<Branch>::End;
    const PlannedNumbers<End> ends(Made<Branch>().ranks, TableOf<End>(m_model));
    BranchToLogical<Branch>(m_model, nodes, ends);
  });
  ForEachRelation([this]<class Row>() {
    if constexpr (kOwnRow<Row> == OwnRow::kFromPlace) {
      std::vector<int> same(At(Plan<Row>().Count()));
      std::iota(same.begin(), same.end(), 0);
      const PlannedNumbers<Row> rows(same, TableOf<Row>(m_model));
      OwnFromPlace<Row>(m_model, rows);
    }
  });
}

void BulkGraph::FillNodes() {
  TableFiller<ND>::Fill(*m_model.m_ndTable, m_nodeNames.Count(), [this](int lg, ND& nd) {
    if (lg + kFetchAhead < m_nodeNames.Count()) Fetch(*m_nodes[At(m_nodeOrder[At(lg + kFetchAhead)])].name);
    const int number = m_nodeOrder[At(lg)];
    const Node& node = m_nodes[At(number)];
    nd = ND(*node.name);
    nd.flags = node.flags;
    nd.r_kv_nd = Plan<R_KV_ND>().RankOf(number);
    ForEachBranch([&]<class Branch>() {
      using Row = typename BranchKind<Branch>::Row;
      nd.*Relation<Row>::kHead = Plan<Row>().HeadOf(number);
    });
  });
}

void BulkGraph::FillLevelRows() {
  tTable<KV>& levels = *m_model.m_kvTable;
  tTable<ND>& nodes = *m_model.m_ndTable;
  const RowPlan& plan = Plan<R_KV_ND>();
  FillRows<R_KV_ND>(
      m_model, plan,
      [&](int item) {
        const QString& id = levels.GetPh(plan.ParentOf(item)).id;
        return Named{plan.ParentOf(item), id.isEmpty() ? *m_nodes[At(item)].kv : id};  // null or not, as it was
      },
      [&](int item) {
        return Named{m_nodeRanks[At(item)], nodes.GetPh(m_nodeRanks[At(item)]).id};
      });
  StoreHeads<R_KV_ND>(m_model, plan);

  tTable<ZBR>& zbrs = *m_model.m_zbrTable;
  const RowPlan& zbrPlan = Plan<R_KV_ZBR>();
  FillRows<R_KV_ZBR>(
      m_model, zbrPlan,
      [&](int item) {
        return Named{zbrPlan.ParentOf(item), levels.GetPh(zbrPlan.ParentOf(item)).id};
      },
      [&](int item) {
        return Named{m_zbrs[At(item)], zbrs.GetPh(m_zbrs[At(item)]).id};
      });
  StoreHeads<R_KV_ZBR>(m_model, zbrPlan);
  for (int item = 0; item < zbrPlan.Count(); ++item) zbrs.GetPh(m_zbrs[At(item)]).r_kv_zbr = zbrPlan.RankOf(item);
  for (int lg = 0; lg < zbrPlan.Count(); ++lg) {  // Kept: K13.
    for (i32* const link : {&m_model.m_rKvZbrTable->GetPh(lg).next, &m_model.m_rKvZbrTable->GetPh(lg).prev}) {
      if (*link != RowPlan::kNone) *link = zbrPlan.RankOf(*link);
    }
  }
}

template <class Branch>
void BulkGraph::FillEnds() {
  using End = typename BranchKind<Branch>::End;
  using Row = typename BranchKind<Branch>::Row;
  const MadeEnds<Branch>& made = Made<Branch>();
  const RowPlan& plan = Plan<Row>();
  tTable<Branch>& branches = TableOf<Branch>(m_model);
  TableFiller<End>::Fill(TableOf<End>(m_model), static_cast<int>(made.order.size()), [&](int lg, End& end) {
    const int number = made.order[At(lg)];
    const int branch = made.branches[At(number / 2)];
    end = EndOf(branches.GetPh(branch), branch, branches.GetPh(branch).id, number % 2 != 0);
    end.*Relation<Row>::kOwn = kOwnRow<Row> == OwnRow::kLeft ? number : plan.RankOf(number);
  });
}

template <class Branch>
void BulkGraph::FillEndRows() {
  using End = typename BranchKind<Branch>::End;
  const MadeEnds<Branch>& made = Made<Branch>();
  const RowPlan& plan = Plan<typename BranchKind<Branch>::Row>();
  tTable<Branch>& branches = TableOf<Branch>(m_model);
  tTable<End>& ends = TableOf<End>(m_model);
  tTable<ND>& nodes = *m_model.m_ndTable;
  FillRows<typename BranchKind<Branch>::Row>(
      m_model, plan,
      [&](int item) {
        const int node = m_nodeRanks[At(plan.ParentOf(item))];
        const QString& id = nodes.GetPh(node).id;
        if (!id.isEmpty()) return Named{node, id};
        return Named{node, NodeNameIn(branches.GetPh(made.branches[At(item / 2)]), item % 2 != 0)};
      },
      [&](int item) {
        return Named{made.ranks[At(item)], ends.GetPh(made.ranks[At(item)]).id};
      });
}

template <class Row>
void BulkGraph::FillLinkedRows() {
  using R = Relation<Row>;
  auto& parents = TableOf<typename R::Parent>(m_model);
  auto& children = TableOf<typename R::Child>(m_model);
  const RowPlan& plan = Plan<Row>();
  FillRows<Row>(
      m_model, plan,
      [&](int item) {
        return Named{plan.ParentOf(item), parents.GetPh(plan.ParentOf(item)).id};
      },
      [&](int item) {
        return Named{item, children.GetPh(item).id};
      });
  StoreHeads<Row>(m_model, plan);
}

}  // namespace dtsdb::internal
