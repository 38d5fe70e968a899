/// \file
/// A picture as plain data: elements that stand for records, with boxes, lines and labels in whole pixels.
#pragma once

#include <string>
#include <vector>

#include "pictures/station.h"

namespace dtsdb::pictures {

/// A place, from the upper left corner of the picture to the right and downwards.
struct Point {
  int x = 0;  ///< to the right
  int y = 0;  ///< downwards

  /// Two are the same when both coordinates are.
  bool operator==(const Point& other) const = default;
};

/// A rectangle.
struct Box {
  int x = 0;       ///< of its upper left corner
  int y = 0;       ///< of its upper left corner
  int width = 0;   ///< in units of the picture
  int height = 0;  ///< in units of the picture
};

/// True when the two have an inner point in common.
constexpr bool Overlap(const Box& a, const Box& b) {
  return a.x < b.x + b.width && b.x < a.x + a.width && a.y < b.y + b.height && b.y < a.y + a.height;
}

/// A symbol of pictures/symbols.svg.
struct Symbol {
  std::string name;      ///< of the symbol, as in pictures/symbols.svg
  std::string classes;   ///< parted by blanks; may be empty
  Point centre;          ///< where it stands
  int quarterTurns = 0;  ///< clockwise
  Box box;               ///< what it covers, turned as it is
  int degrees = 0;       ///< clockwise, besides the quarter turns
};

/// Which end of a label stands at its place.
enum class Anchor { kStart, kMiddle, kEnd };

/// One line of text.
struct Label {
  std::string text;                ///< in UTF-8
  Point at;                        ///< on its base line
  Anchor anchor = Anchor::kStart;  ///< which end stands at the place
  Box box;                         ///< what it covers at most
};

/// A line from point to point.
using Wire = std::vector<Point>;

/// What stands for a record, or for a part of it.
struct Element {
  RecordName record;            ///< what it stands for
  std::string id;               ///< unique in the picture; of letters, digits, '-', '_' and '.'
  std::string classes;          ///< parted by blanks
  std::string title;            ///< what it is, in words
  std::vector<Wire> wires;      ///< lines between points
  std::vector<Point> dots;      ///< where wires are joined
  int dotRadius = 3;            ///< in units of the picture
  std::vector<Symbol> symbols;  ///< drawn on the lines
  std::vector<Label> labels;    ///< texts beside it
};

/// A picture. Elements are drawn in their order.
struct Picture {
  int width = 0;                  ///< in units of the picture
  int height = 0;                 ///< in units of the picture
  std::string title;              ///< of the whole, for people
  std::vector<Element> elements;  ///< in the order in which they are drawn
};

}  // namespace dtsdb::pictures
