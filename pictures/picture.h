/// \file
/// A picture as plain data: elements that stand for records, with boxes, lines and labels in whole pixels.
#pragma once

#include <string>
#include <vector>

#include "pictures/station.h"

namespace dtsdb::pictures {

/// A place, from the upper left corner of the picture to the right and downwards.
struct Point {
  int x = 0;
  int y = 0;

  bool operator==(const Point& other) const = default;
};

struct Box {
  int x = 0;  ///< of its upper left corner
  int y = 0;
  int width = 0;
  int height = 0;
};

/// True when the two have an inner point in common.
constexpr bool Overlap(const Box& a, const Box& b) {
  return a.x < b.x + b.width && b.x < a.x + a.width && a.y < b.y + b.height && b.y < a.y + a.height;
}

/// A symbol of pictures/symbols.svg.
struct Symbol {
  std::string name;
  std::string classes;  ///< parted by blanks; may be empty
  Point centre;
  int quarterTurns = 0;  ///< clockwise
  Box box;               ///< what it covers, turned as it is
  int degrees = 0;       ///< clockwise, besides the quarter turns
};

enum class Anchor { kStart, kMiddle, kEnd };

/// One line of text.
struct Label {
  std::string text;  ///< in UTF-8
  Point at;          ///< on its base line
  Anchor anchor = Anchor::kStart;
  Box box;  ///< what it covers at most
};

/// A line from point to point.
using Wire = std::vector<Point>;

/// What stands for a record, or for a part of it.
struct Element {
  RecordName record;
  std::string id;       ///< unique in the picture; of letters, digits, '-', '_' and '.'
  std::string classes;  ///< parted by blanks
  std::string title;    ///< what it is, in words
  std::vector<Wire> wires;
  std::vector<Point> dots;  ///< where wires are joined
  int dotRadius = 3;
  std::vector<Symbol> symbols;
  std::vector<Label> labels;
};

/// A picture. Elements are drawn in their order.
struct Picture {
  int width = 0;
  int height = 0;
  std::string title;
  std::vector<Element> elements;
};

}  // namespace dtsdb::pictures
