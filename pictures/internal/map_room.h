/// \file
/// What is taken on a map: where labels and arrows find room, and which wires they would lie on.
#pragma once

#include <unordered_map>
#include <vector>

#include "pictures/picture.h"

namespace dtsdb::pictures::internal {

/// Boxes by the squares of a map that they lie in, so that few are looked at.
class BoxIndex {
 public:
  void Add(const Box& box, int number);
  /// The numbers in the squares that a box touches, each once, ascending.
  std::vector<int> Near(const Box& box) const;

 private:
  template <class Visit>
  static void ForEachSquare(const Box& box, const Visit& visit);

  std::unordered_map<long long, std::vector<int>> m_numbers;  // by square
};

/// Boxes that are taken, and wires.
class MapRoom {
 public:
  void Take(const Box& box);
  bool IsFree(const Box& box) const;

  void AddWire(const Wire& wire);
  /// The number of pieces of wires that a box lies on.
  int WiresUnder(const Box& box) const;

 private:
  struct Piece {
    Point from;
    Point to;
  };

  std::vector<Box> m_boxes;
  std::vector<Piece> m_pieces;
  BoxIndex m_boxIndex;
  BoxIndex m_pieceIndex;
};

}  // namespace dtsdb::pictures::internal
