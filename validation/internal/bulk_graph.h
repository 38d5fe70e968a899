/// \file
/// The relations and the node graph of a whole run, counted in arrays and put into the tables in one go.
#pragma once

#include <array>
#include <memory>
#include <tuple>
#include <type_traits>
#include <vector>

#include "validation/internal/graph.h"
#include "validation/internal/log.h"
#include "validation/internal/name_index.h"
#include "validation/internal/relations.h"
#include "validation/internal/row_plan.h"

namespace dtsdb::internal {

/// The ends of the branches of one kind, two for each, known by the numbers in which they are made.
template <class Branch>
struct MadeEnds {
  std::vector<int> branches;
  std::vector<int> nodes;  ///< of the ends
  std::vector<int> order;  ///< the ends in the order of their identities
  std::vector<int> ranks;  ///< the logical numbers of the ends
};

/// Does what single additions do (graph.h, relations.h), for a run over a model without doubled keys. There none can
/// fail, so that nothing need be in a table before the run's end.
///
/// Until Finish, the tables that a run makes stay as StartRun leaves them, and nodes and ends have the numbers of their
/// making. In the end everything is as single additions leave it.
class BulkGraph {
 public:
  /// Whether the run that has just been started over `model` can be made this way.
  static bool Takes(DTSDB& model);

  /// `model` and the texts in its records must stay until the end.
  explicit BulkGraph(DTSDB& model) : m_model(model) {}
  BulkGraph(const BulkGraph&) = delete;
  BulkGraph& operator=(const BulkGraph&) = delete;
  ~BulkGraph() = default;

  /// True after a step that only single additions can do: a zero-impedance branch on a breaker that has got no nodes,
  /// with whatever numbers stand there. The step has reported a full table; the run must be made anew.
  bool HasGivenUp() const { return m_hasGivenUp; }

  template <class Record>
  int NumberOf(const QString& id) {
    if constexpr (std::is_same_v<Record, ND>) {
      return m_nodeNames.Find(id);
    } else {
      return IndexOf<Record>().Find(id);
    }
  }
  /// Fetches what NumberOf and InsertNode will look at for such a name.
  template <class Record>
  void FetchFor(const QString& id) {
    if constexpr (std::is_same_v<Record, ND>) {
      m_nodeNames.Fetch(id);
    } else {
      IndexOf<Record>().Fetch(id);
    }
  }
  int LevelOfNode(int node) const { return m_nodes[static_cast<std::size_t>(node)].level; }

  /// The parent of a child in a relation that is linked, -1 none.
  template <class Row>
  int ParentOf(int child) const {
    return m_plans[kKindOf<Row>].ParentOf(child);
  }

  /// LinkPass of all relations. Children get the numbers of their rows, parents their heads in Finish.
  void LinkAll();

  int InsertNode(const QString& nd, int* pNd, const QString& kv, int mask);

  template <class Branch>
  int InsertBranch(const BranchEnds& ends);

  /// Ties a zero-impedance branch to a level. Branches come in ascending order.
  void RelateZbr(int level, int zbr);

  /// Warns of idle nodes, fills the tables and turns all numbers into logical ones.
  void Finish(ValidationLog& log);

 private:
  struct Node {
    const QString* name;  // where the node is mentioned first
    const QString* kv;
    int level;
    u32 flags;
    int ends;
  };

  template <class Record>
  NameIndex& IndexOf();
  template <class Row>
  void Link();
  bool IsNode(int number, const QString& name) const;

  template <class Row>
  RowPlan& Plan() {
    return m_plans[kKindOf<Row>];
  }
  template <class Branch>
  MadeEnds<Branch>& Made() {
    return std::get<MadeEnds<Branch>>(m_ends);
  }

  void FindOrders();
  void WarnOfIdleNodes(ValidationLog& log) const;
  void PlanRows();
  void PlanLevels();
  template <class Branch>
  void PlanEnds();
  void GrowTables();
  void NumbersToLogical();
  void FillTables();
  void FillNodes();
  template <class Branch>
  void FillEnds();
  template <class Branch>
  void FillEndRows();
  void FillLevelRows();
  template <class Row>
  void FillLinkedRows();

  DTSDB& m_model;
  bool m_hasGivenUp = false;
  std::array<std::unique_ptr<NameIndex>, kTableCount + 1> m_indexes;  // by kind code, made when first asked
  std::array<RowPlan, kTableCount + 1> m_plans;                       // by kind code of the relation
  NameIndex m_nodeNames;
  std::vector<Node> m_nodes;
  std::vector<int> m_nodeOrder;
  std::vector<int> m_nodeRanks;
  std::tuple<MadeEnds<CB>, MadeEnds<XF>, MadeEnds<LN>, MadeEnds<DLN>, MadeEnds<ZBR>> m_ends;
  std::vector<int> m_zbrs;  // those that have a level
  std::vector<int> m_levelsOfZbrs;
};

template <class Record>
NameIndex& BulkGraph::IndexOf() {
  std::unique_ptr<NameIndex>& index = m_indexes[kKindOf<Record>];
  if (index == nullptr) {
    const tTable<Record>& table = TableOf<Record>(m_model);
    index = std::make_unique<NameIndex>();
    index->Reserve(static_cast<std::size_t>(table.GetCount()));
    for (int i = 0; i < table.GetCount(); ++i) index->Add(table[i].id);
  }
  return *index;
}

template <class Row>
void BulkGraph::Link() {
  using R = Relation<Row>;
  NameIndex& parents = IndexOf<typename R::Parent>();
  tTable<typename R::Child>& children = TableOf<typename R::Child>(m_model);
  std::vector<int> parentOf(static_cast<std::size_t>(children.GetCount()), RowPlan::kNone);
  QStringView name;
  int parent = RowPlan::kNone;
  for (int i = 0; i < children.GetCount(); ++i) {
    const QString& named = children.GetPh(i).*kParentName<Row>.key;
    if (named != name) {  // neighbours have often the same parent
      name = named;
      parent = named.isEmpty() ? RowPlan::kNone : parents.Find(named);
    }
    parentOf[static_cast<std::size_t>(i)] = parent;
  }
  RowPlan plan(std::move(parentOf), parents.Count());
  const auto self = [](int number) { return number; };
  plan.Sort(self, self);
  plan.MakeChains();
  for (int i = 0; i < children.GetCount(); ++i) children.GetPh(i).*R::kOwn = plan.RankOf(i);
  Plan<Row>() = std::move(plan);
}

template <class Branch>
int BulkGraph::InsertBranch(const BranchEnds& ends) {
  *ends.from.number = -1;
  *ends.to.number = -1;
  const int from = *ends.from.nodeNumber;
  const int to = *ends.to.nodeNumber;
  if (from == to) return INSERT_SAME_NODE;
  if constexpr (std::is_same_v<Branch, ZBR>) {
    m_hasGivenUp = !IsNode(from, ends.from.node) || !IsNode(to, ends.to.node);
    if (m_hasGivenUp) return INSERT_TABLE_FULL;
  }
  MadeEnds<Branch>& made = Made<Branch>();
  *ends.from.number = static_cast<int>(made.nodes.size());
  *ends.to.number = *ends.from.number + 1;
  made.branches.push_back(ends.branch);
  for (const int node : {from, to}) {
    made.nodes.push_back(node);
    ++m_nodes[static_cast<std::size_t>(node)].ends;
  }
  return INSERT_DONE;
}

}  // namespace dtsdb::internal
