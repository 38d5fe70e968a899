/// \file
/// A measuring stick for topology runs: the connected components of the network over plain arrays.
#pragma once

#include <vector>

#include "model/dtsdb.h"

namespace dtsdb::bench {

/// The nodes and what joins them, as compressed rows: the neighbours of node i are those from first[i] to
/// first[i + 1].
struct CompressedRows {
  std::vector<int> first;
  std::vector<int> neighbours;
};

/// The nodes, joined by closed breakers and branches in service.
CompressedRows RowsOf(const DTSDB& network);

/// The component of each node, by a breadth-first search; returns how many there are.
int FindComponents(const CompressedRows& rows, std::vector<int>& component);

}  // namespace dtsdb::bench
