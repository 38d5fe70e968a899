/// \file
/// The node graph of a model: nodes from the names that devices give, two ends for every branch.
///
/// Reads the input tables, writes ND, the tables of ends and R_KV_ND and R_ND_.... Numbers are physical: they survive
/// the insertions that go on. Nothing here may ask a table that is growing for a logical number, which would renumber
/// the whole table each time.
#pragma once

#include "model/dtsdb.h"
#include "model/record_bits.h"

namespace dtsdb::internal {

/// \name Results of InsertNode, InsertBranch and InsertLine
///@{
inline constexpr int INSERT_TABLE_FULL = 0;     ///< a table takes no more rows; what was made so far stays
inline constexpr int INSERT_DONE = 1;           ///< done
inline constexpr int INSERT_SAME_NODE = 2;      ///< both ends are on the same node
inline constexpr int INSERT_OTHER_LEVEL = 4;    ///< the node exists, in another voltage level
inline constexpr int INSERT_NO_LEVEL = 5;       ///< the voltage level doesn't exist
inline constexpr int INSERT_NO_FROM_NODE = 6;   ///< the first node doesn't exist
inline constexpr int INSERT_NO_TO_NODE = 7;     ///< the second node doesn't exist
inline constexpr int INSERT_OTHER_STATION = 9;  ///< a node's station is not the one given
///@}

/// The `mask` of a device that leaves no mark on its node.
inline constexpr int NO_MARK = -1;

/// The marks that devices leave on their node.
inline constexpr u32 kDeviceMarks = ND_HAS_UN | ND_HAS_LD | ND_HAS_CP | ND_HAS_BUS;

/// Finds or makes node `nd` of level `kv`, its number in *pNd; a `mask` above 0 is added to its flags.
int InsertNode(DTSDB& model, const QString& nd, int* pNd, const QString& kv, int mask);

/// A branch as the graph sees it: its number and identity, and for each end the name of the node and where the numbers
/// of node and end stand.
struct BranchEnds {
  struct End {
    const QString& node;
    int* nodeNumber;
    int* number;
  };
  int branch;
  const QString& id;
  End from;
  End to;
};

/// The ends of `branch`, with its own fields for the numbers. The nodes are given, since those of a zero-impedance
/// branch are named by its breaker.
template <class Branch>
BranchEnds EndsOf(Branch& branch, int number, const QString& nd, const QString& znd) {
  using Kind = BranchKind<Branch>;
  return {
      number, branch.id, {nd, &branch.ind, &(branch.*Kind::kFromEnd)}, {znd, &branch.iznd, &(branch.*Kind::kToEnd)}};
}

/// The letter that stands behind a branch's identity in that of its end.
constexpr char16_t EndLetter(bool isTo) { return isTo ? u'z' : u'i'; }

/// One end of a branch, the one with number `number` and identity `id`. It stands on no node yet.
template <class Branch>
typename BranchKind<Branch>::End EndOf(const Branch& branch, int number, const QString& id, bool isTo) {
  using Kind = BranchKind<Branch>;
  typename Kind::End end(id + QChar(EndLetter(isTo)));
  end.*Kind::kOwner = number;
  if constexpr (Kind::kMeasured) {  // copied, so that a walk from a node needn't visit the branch
    end.iana_p = branch.*(isTo ? Kind::kToP : Kind::kFromP);
    end.iana_q = branch.*(isTo ? Kind::kToQ : Kind::kFromQ);
    end.flags = isTo ? END_IS_TO : 0;
  }
  return end;
}

/// Makes the two ends of a branch whose nodes have numbers. `kind` is the kind code of the table of ends; with any
/// other nothing is made.
int InsertBranch(DTSDB& model, int kind, const BranchEnds& ends);

/// How many branch ends stand on a node, and for how many of `marks` devices do: devices of one kind count once. Counts
/// to 2 at most: nobody asks for more, and a node may have many.
int DeviceCount(DTSDB& model, const ND& node, u32 marks);

}  // namespace dtsdb::internal
