/// \file
/// How branches join sections, as the walk that looks for islands goes along them.
#pragma once

#include "topology/internal/sections.h"
#include "topology/internal/state.h"

namespace dtsdb::internal {

/// What a branch is to the sections at its ends.
struct BranchLink {
  /// The walk sees the same from both ends: it goes both ways or neither way, or from the live end to a fragment. Where
  /// this isn't so, what it reaches depends on where it begins. Kept: K37, K49, K50.
  bool isRegular = false;
  int ends[2] = {-1, -1};  ///< the proper section of each live end, -1 for an end that is isolated
  int fragment = -1;       ///< the fragment that stands for the isolated end, -1 for none
  int holder = -1;         ///< the section from which the walk reaches that fragment

  bool IsJoint() const { return ends[0] != -1 && ends[1] != -1; }
};

/// Reads how branches join sections. Reads the branches, their end records, the nodes and the sections; writes nothing.
class BranchLinks {
 public:
  explicit BranchLinks(const State& state) : m_network(state.network), m_sections(state.Sections()) {}

  template <class Branch>
  BranchLink Of(const Branch& branch) const {
    using Kind = BranchKind<Branch>;
    const auto& ends = m_network.Table<typename Kind::End>();
    const auto isIsolated = [&](int end) { return (ends.GetPh(end).flags & END_ISOLATED) != 0; };
    return Join({branch.ind, branch.ibs, isIsolated(branch.*Kind::kFromEnd)},
                {branch.iznd, branch.izbs, isIsolated(branch.*Kind::kToEnd)});
  }

 private:
  struct End {
    int nd;
    int bs;
    bool isolated;
  };
  BranchLink Join(const End& from, const End& to) const;
  bool IsProper(const End& end) const;
  bool IsFragment(const End& end) const;

  Network m_network;
  Sections m_sections;
};

}  // namespace dtsdb::internal
