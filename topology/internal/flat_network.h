/// \file
/// The network as a run over everything works on it.
#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <tuple>
#include <type_traits>
#include <vector>

#include "model/branch_kinds.h"
#include "model/dtsdb.h"

namespace dtsdb {
namespace internal {

/// What the topology reads and writes of a branch, under the names that its record has for it.
template <class Branch>
struct FlatBranch {
  static constexpr TableKind kKind = Branch::kKind;
  i32 ind;
  i32 iznd;
  i32 ibs;
  i32 izbs;
  u32 status;
  u32 tp_status;
};

/// The same of a branch end.
template <class End>
struct FlatEnd {
  static constexpr TableKind kKind = End::kKind;
  int branch;
  u32 flags;
};

}  // namespace internal

template <class Branch>
struct BranchKind<internal::FlatBranch<Branch>> : BranchKind<Branch> {};

namespace internal {

/// A breaker as it is seen from a node.
struct Joint {
  int node;   ///< the node at its other end
  u32 flags;  ///< the breaker's
};

/// A branch end on a node.
struct NodeEnd {
  TableKind kind;  ///< of the end's table
  int node;
  int end;
};

/// What the topology reads and writes of a node, but its section, and what hangs on it.
struct FlatNode {
  static constexpr int kNoLevel = -1;
  int level = kNoLevel;
  i32 ibs0 = 0;
  i32 next = 0;
  u32 flags = 0;
  int ends = 0;  ///< how many branch ends stand on it
  int firstJoint = 0;
  int lastJoint = 0;
};

/// The nodes, breakers, branches and shunt devices of the voltage levels, as the chains of relation rows have them and
/// in their order; nodes and branches with what the topology works out of them.
///
/// A run over everything comes back to each of them several times. Here they lie side by side, while the chains lead
/// through rows, end records and wide branch records. It stands for the tables while one run lasts, which ends it with
/// Store.
class FlatNetwork {
 public:
  /// Nothing for a damaged model: chains that lead out of their tables, run in circles or into one another, or rows
  /// that aren't what their parents and children take them for. There only the chains give what a walk comes upon.
  static std::optional<FlatNetwork> Of(const DTSDB& model);

  /// Writes what the run has made of nodes, branches and their ends into the tables. What is as it was isn't touched.
  void Store(DTSDB& model) const;

  /// The nodes of a level, by number.
  std::span<const int> NodesOf(int kv) const { return Part(m_nodes, Level(kv).nodes); }
  /// The ends of the lines, windings, zero-impedance branches and DC lines on the nodes of a level: node after node, on
  /// each in this order.
  std::span<const NodeEnd> EndsOf(int kv) const { return Part(m_ends, Level(kv).ends); }
  /// The units, loads or shunt devices of a level, by number.
  template <class Device>
  std::span<const int> DevicesOf(int kv) const {
    return Part(m_devices, Level(kv).devices[kPlaceOf<Device>]);
  }

  bool HasNode(int nd) const { return nd >= 0 && At(nd) < m_ofNode.size(); }
  FlatNode& Node(int nd) { return m_ofNode[At(nd)]; }
  /// The section of a node. All of them lie side by side: most of what is asked of a node is this.
  i32& SectionOf(int nd) { return m_sectionOf[At(nd)]; }
  /// The breakers on a node of a level.
  std::span<const Joint> JointsOf(int nd) const {
    const FlatNode& node = m_ofNode[At(nd)];
    return Part(m_joints, {node.firstJoint, node.lastJoint});
  }
  int EndCountOf(int nd) const { return m_ofNode[At(nd)].ends; }

  /// The branches of a class, by number.
  template <class Branch>
  std::vector<FlatBranch<Branch>>& Branches() {
    return std::get<OfClass<Branch>>(m_classes).branches;
  }
  /// The ends of the branches of a class, by number.
  template <class Branch>
  std::vector<FlatEnd<typename BranchKind<Branch>::End>>& Ends() {
    return std::get<OfClass<Branch>>(m_classes).ends;
  }

 private:
  class Builder;
  template <class Device>
  static constexpr std::size_t kPlaceOf = std::is_same_v<Device, UN>   ? 0
                                          : std::is_same_v<Device, LD> ? 1
                                                                       : 2;

  struct Range {
    int first = 0;
    int last = 0;
  };
  struct OfLevel {
    Range nodes;
    Range ends;
    Range devices[3];
  };
  template <class Branch>
  struct OfClass {
    std::vector<FlatBranch<Branch>> branches;
    std::vector<FlatEnd<typename BranchKind<Branch>::End>> ends;
  };

  static std::size_t At(int i) { return static_cast<std::size_t>(i); }
  template <class T>
  static std::span<const T> Part(const std::vector<T>& values, Range range) {
    return {values.data() + range.first, values.data() + range.last};
  }
  const OfLevel& Level(int kv) const { return m_ofLevel[At(kv)]; }
  void StoreNodes(DTSDB& model) const;
  template <class Branch>
  void StoreBranches(DTSDB& model) const;

  std::vector<OfLevel> m_ofLevel;  // by KV number
  std::vector<FlatNode> m_ofNode;  // by ND number
  std::vector<i32> m_sectionOf;    // by ND number
  std::vector<int> m_nodes;
  std::vector<NodeEnd> m_ends;
  std::vector<int> m_devices;
  std::vector<Joint> m_joints;
  std::tuple<OfClass<LN>, OfClass<XF>, OfClass<ZBR>, OfClass<DLN>> m_classes;
};

}  // namespace internal
}  // namespace dtsdb
