#include "topology/internal/flat_network.h"

#include <algorithm>
#include <utility>

#include "model/threads.h"
#include "topology/internal/network.h"

namespace dtsdb::internal {
namespace {

/// Some fields of all records of a table, by number: `take(record)` returns them. Records are wide, and read one after
/// the other they come in time.
template <class T, class Take>
auto Copied(const tTable<T>& table, Take take) {
  std::vector<decltype(take(table.GetPh(0)))> copies;
  copies.reserve(static_cast<std::size_t>(table.GetSize()));
  for (int i = 0; i < table.GetSize(); ++i) copies.push_back(take(table.GetPh(i)));
  return copies;
}

template <class T>
const T* Find(const std::vector<T>& values, int i) {
  return i >= 0 && static_cast<std::size_t>(i) < values.size() ? &values[static_cast<std::size_t>(i)] : nullptr;
}

/// The chains of one relation.
template <class Row>
class Chains {
 public:
  void Copy(const DTSDB& model) {
    Copy(model, [](int child) { return child; });
  }
  /// `turn(child)` is what stands for a child.
  template <class Turn>
  void Copy(const DTSDB& model, Turn turn) {
    m_links = Copied(TableOf<Row>(model), [&](const Row& row) { return Link{turn(row.ChildNumber()), row.next}; });
    m_count = m_left = TableOf<Row>(model).GetCount();
  }

  /// Calls `visit(child, row)` for the rows of the chain that begins at `head`. False when that returns false, when a
  /// row isn't there, and when the chains have come to have more rows than there are.
  template <class Visit>
  bool Follow(int head, Visit visit) {
    for (int row = head; row != -1;) {
      const Link* const link = Find(m_links, row);
      if (link == nullptr || m_left-- == 0 || !visit(link->child, row)) return false;
      row = link->next;
    }
    return true;
  }

  std::size_t Count() const { return static_cast<std::size_t>(m_count); }

 private:
  struct Link {
    int child;
    int next;
  };
  std::vector<Link> m_links;  // by row
  int m_count = 0;
  int m_left = 0;
};

int CountOf(std::size_t size) { return static_cast<int>(size); }

}  // namespace

/// Goes along the chains once, from the stations down.
class FlatNetwork::Builder {
 public:
  explicit Builder(const DTSDB& model) : m_model(model) {}

  bool Build() {
    CopyTables();
    m_made.m_ofLevel.resize(static_cast<std::size_t>(TableOf<KV>(m_model).GetSize()));
    m_made.m_nodes.reserve(m_nodes.Count());
    m_made.m_joints.reserve(m_breakerEnds.Count());
    m_made.m_ends.reserve(m_lines.Count() + m_windings.Count() + m_zbrs.Count() + m_dcLines.Count());
    m_made.m_devices.reserve(m_units.Count() + m_loads.Count() + m_capacitors.Count());
    const auto& stations = TableOf<ST>(m_model);
    for (int i = 0; i < stations.GetCount(); ++i) {
      if (!m_levels.Follow(stations[i].r_st_kv, [&](int kv, int) { return AddLevel(kv); })) return false;
    }
    return AreJointsOnLevels();
  }

  FlatNetwork Take() { return std::move(m_made); }

 private:
  /// The row that puts a node on its level, and the heads of its chains.
  struct Hanging {
    int row;
    int breakers;
    int lines;
    int windings;
    int zbrs;
    int dcLines;
  };
  struct Breaker {
    int nd;
    int znd;
    u32 flags;
  };

  /// Each task copies other tables into other members.
  void CopyTables() {
    RunTasks({[this] { CopyBreakerEnds(); }, [this] { CopyBreakers(); }, [this] { CopyNodes(); },
              [this] { CopyLevelsOfNodes(); }, [this] { CopyBranches<LN>(&m_lines); },
              [this] { CopyBranches<XF>(&m_windings); }, [this] { CopyBranches<ZBR>(&m_zbrs); },
              [this] { CopyBranches<DLN>(&m_dcLines); }, [this] { m_levels.Copy(m_model); },
              [this] { m_units.Copy(m_model); }, [this] { m_loads.Copy(m_model); },
              [this] { m_capacitors.Copy(m_model); }});
  }

  /// The children of their chains are the breakers.
  void CopyBreakerEnds() {
    const std::vector<int> breakerOfEnd = Copied(TableOf<CB2>(m_model), [](const CB2& end) { return end.icb; });
    m_breakerEnds.Copy(m_model, [&](int end) {
      const int* const breaker = Find(breakerOfEnd, end);
      return breaker != nullptr ? *breaker : -1;
    });
  }

  void CopyBreakers() {
    m_breakers = Copied(TableOf<CB>(m_model), [](const CB& cb) { return Breaker{cb.ind, cb.iznd, cb.flags}; });
  }

  void CopyLevelsOfNodes() {
    m_nodes.Copy(m_model);
    m_levelOfRow = Copied(TableOf<R_KV_ND>(m_model), [](const R_KV_ND& row) { return row.ikv; });
  }

  void CopyNodes() {
    const auto& nodes = TableOf<ND>(m_model);
    const auto size = static_cast<std::size_t>(nodes.GetSize());
    m_made.m_ofNode.reserve(size);
    m_made.m_sectionOf.reserve(size);
    m_hanging.reserve(size);
    for (int i = 0; i < nodes.GetSize(); ++i) {
      const ND& node = nodes.GetPh(i);
      m_made.m_ofNode.push_back({FlatNode::kNoLevel, node.ibs0, node.next, node.flags});
      m_made.m_sectionOf.push_back(node.ibs);
      m_hanging.push_back({node.r_kv_nd, node.r_nd_cb2, node.r_nd_ln2, node.r_nd_xf2, node.r_nd_zbr2, node.r_nd_dln2});
    }
  }

  template <class Branch>
  void CopyBranches(Chains<typename BranchKind<Branch>::Row>* chains) {
    using Kind = BranchKind<Branch>;
    using End = typename Kind::End;
    chains->Copy(m_model);
    m_made.Branches<Branch>() = Copied(TableOf<Branch>(m_model), [](const Branch& branch) {
      return FlatBranch<Branch>{branch.ind, branch.iznd, branch.ibs, branch.izbs, branch.status, branch.tp_status};
    });
    m_made.Ends<Branch>() = Copied(TableOf<End>(m_model), [](const End& end) {
      return FlatEnd<End>{end.*Kind::kOwner, end.flags};
    });
  }

  bool AddLevel(int kv) {
    const auto& levels = TableOf<KV>(m_model);
    if (!HasSlot(levels, kv)) return false;
    OfLevel& made = m_made.m_ofLevel[static_cast<std::size_t>(kv)];
    if (made.nodes.last != 0) return false;  // it hangs on two stations
    const KV& level = levels.GetPh(kv);
    made.nodes.first = CountOf(m_made.m_nodes.size());
    made.ends.first = CountOf(m_made.m_ends.size());
    const bool added = m_nodes.Follow(level.r_kv_nd, [&](int nd, int row) { return AddNode(kv, nd, row); });
    made.nodes.last = CountOf(m_made.m_nodes.size());
    made.ends.last = CountOf(m_made.m_ends.size());
    return added && AddDevices<UN>(level, m_units, &made) && AddDevices<LD>(level, m_loads, &made) &&
           AddDevices<CP>(level, m_capacitors, &made);
  }

  template <class Device>
  bool AddDevices(const KV& level, Chains<ParentRow<Device>>& chains, OfLevel* made) {
    const auto& devices = TableOf<Device>(m_model);
    Range& range = made->devices[kPlaceOf<Device>];
    range.first = CountOf(m_made.m_devices.size());
    const bool added = chains.Follow(level.*Relation<ParentRow<Device>>::kHead, [&](int device, int) {
      m_made.m_devices.push_back(device);
      return HasSlot(devices, device);
    });
    range.last = CountOf(m_made.m_devices.size());
    return added;
  }

  /// Adds a node, which row `row` puts on level `kv`, with what hangs on it.
  bool AddNode(int kv, int nd, int row) {
    const Hanging* const hanging = Find(m_hanging, nd);
    if (hanging == nullptr) return false;
    FlatNode& made = m_made.m_ofNode[static_cast<std::size_t>(nd)];
    // It would stand there twice, or on another level for those who ask the node.
    const bool twice = made.level != FlatNode::kNoLevel || hanging->row != row;
    if (twice || m_levelOfRow[static_cast<std::size_t>(row)] != kv) return false;
    made.level = kv;
    m_made.m_nodes.push_back(nd);
    const int ends = CountOf(m_made.m_ends.size());
    const bool added = AddJoints(hanging->breakers, nd, &made) && AddEnds<LN>(hanging->lines, nd, m_lines) &&
                       AddEnds<XF>(hanging->windings, nd, m_windings) && AddEnds<ZBR>(hanging->zbrs, nd, m_zbrs) &&
                       AddEnds<DLN>(hanging->dcLines, nd, m_dcLines);
    made.ends = CountOf(m_made.m_ends.size()) - ends;
    return added;
  }

  bool AddJoints(int head, int nd, FlatNode* made) {
    made->firstJoint = CountOf(m_made.m_joints.size());
    const bool added = m_breakerEnds.Follow(head, [&](int cb, int) {
      const Breaker* const breaker = Find(m_breakers, cb);
      if (breaker == nullptr) return false;
      m_made.m_joints.push_back({breaker->nd == nd ? breaker->znd : breaker->nd, breaker->flags});
      return true;
    });
    made->lastJoint = CountOf(m_made.m_joints.size());
    return added;
  }

  template <class Branch>
  bool AddEnds(int head, int nd, Chains<typename BranchKind<Branch>::Row>& chains) {
    return chains.Follow(head, [&](int number, int) {
      const auto* const end = Find(m_made.Ends<Branch>(), number);
      if (end == nullptr || Find(m_made.Branches<Branch>(), end->branch) == nullptr) return false;
      m_made.m_ends.push_back({kKindOf<typename BranchKind<Branch>::End>, nd, number});
      return true;
    });
  }

  /// A breaker can lead to a node of which nothing was added.
  bool AreJointsOnLevels() const {
    return std::all_of(m_made.m_joints.begin(), m_made.m_joints.end(), [this](const Joint& joint) {
      const FlatNode* const node = Find(m_made.m_ofNode, joint.node);
      return node != nullptr && node->level != FlatNode::kNoLevel;
    });
  }

  const DTSDB& m_model;
  Chains<R_ST_KV> m_levels;
  Chains<R_KV_ND> m_nodes;
  Chains<R_KV_UN> m_units;
  Chains<R_KV_LD> m_loads;
  Chains<R_KV_CP> m_capacitors;
  Chains<R_ND_CB2> m_breakerEnds;
  Chains<R_ND_LN2> m_lines;
  Chains<R_ND_XF2> m_windings;
  Chains<R_ND_ZBR2> m_zbrs;
  Chains<R_ND_DLN2> m_dcLines;
  std::vector<int> m_levelOfRow;    // by row of R_KV_ND
  std::vector<Hanging> m_hanging;   // by ND number
  std::vector<Breaker> m_breakers;  // by number
  FlatNetwork m_made;
};

std::optional<FlatNetwork> FlatNetwork::Of(const DTSDB& model) {
  Builder builder(model);
  if (!builder.Build()) return std::nullopt;
  return builder.Take();
}

void FlatNetwork::Store(DTSDB& model) const {
  RunTasks({[&] { StoreNodes(model); }, [&] { StoreBranches<LN>(model); }, [&] { StoreBranches<XF>(model); },
            [&] { StoreBranches<ZBR>(model); }, [&] { StoreBranches<DLN>(model); }});
}

void FlatNetwork::StoreNodes(DTSDB& model) const {
  auto& nodes = TableOf<ND>(model);
  for (std::size_t i = 0; i < m_ofNode.size(); ++i) {
    const FlatNode& node = m_ofNode[i];
    ND& record = nodes.GetPh(static_cast<int>(i));
    Put(record.ibs, m_sectionOf[i]);
    Put(record.ibs0, node.ibs0);
    Put(record.next, node.next);
    Put(record.flags, node.flags);
  }
}

template <class Branch>
void FlatNetwork::StoreBranches(DTSDB& model) const {
  const auto& [branches, ends] = std::get<OfClass<Branch>>(m_classes);
  auto& records = TableOf<Branch>(model);
  for (std::size_t i = 0; i < branches.size(); ++i) {
    Branch& record = records.GetPh(static_cast<int>(i));
    Put(record.ibs, branches[i].ibs);
    Put(record.izbs, branches[i].izbs);
    Put(record.tp_status, branches[i].tp_status);
  }
  auto& endRecords = TableOf<typename BranchKind<Branch>::End>(model);
  for (std::size_t i = 0; i < ends.size(); ++i) Put(endRecords.GetPh(static_cast<int>(i)).flags, ends[i].flags);
}

}  // namespace dtsdb::internal
