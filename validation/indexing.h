/// \file
/// What the operations that build the node graph answer.
#pragma once

namespace dtsdb {

/// \name Results of NMD::NodeInsert, Branch2Insert and BranchInsert
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

}  // namespace dtsdb
