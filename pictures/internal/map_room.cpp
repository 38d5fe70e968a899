#include "pictures/internal/map_room.h"

#include <algorithm>
#include <cmath>

#include "pictures/internal/place.h"

namespace dtsdb::pictures::internal {
namespace {

constexpr int kSquare = 64;  // pixels

int SquareOf(int pixel) { return pixel >= 0 ? pixel / kSquare : -1; }

/// A part of the way from 0 to 1.
struct Part {
  double first = 0;
  double last = 1;
};

/// Leaves the part where from + part * step lies between low and high.
void Clip(double from, double step, double low, double high, Part& part) {
  if (step == 0) {
    if (from <= low || from >= high) part.last = -1;
    return;
  }
  const auto [a, b] = std::minmax({(low - from) / step, (high - from) / step});
  part.first = std::max(part.first, a);
  part.last = std::min(part.last, b);
}

bool LiesOn(const Box& box, Point from, Point to) {
  Part part;
  Clip(from.x, to.x - from.x, box.x, box.x + box.width, part);
  Clip(from.y, to.y - from.y, box.y, box.y + box.height, part);
  return part.first < part.last;
}

}  // namespace

template <class Visit>
void BoxIndex::ForEachSquare(const Box& box, const Visit& visit) {
  for (int column = SquareOf(box.x); column <= SquareOf(box.x + box.width); ++column) {
    for (int row = SquareOf(box.y); row <= SquareOf(box.y + box.height); ++row) {
      visit((static_cast<long long>(column) << 32) + row);
    }
  }
}

void BoxIndex::Add(const Box& box, int number) {
  ForEachSquare(box, [&](long long square) { m_numbers[square].push_back(number); });
}

std::vector<int> BoxIndex::Near(const Box& box) const {
  std::vector<int> near;
  ForEachSquare(box, [&](long long square) {
    const auto found = m_numbers.find(square);
    if (found != m_numbers.end()) near.insert(near.end(), found->second.begin(), found->second.end());
  });
  std::sort(near.begin(), near.end());
  near.erase(std::unique(near.begin(), near.end()), near.end());
  return near;
}

void MapRoom::Take(const Box& box) {
  m_boxIndex.Add(box, static_cast<int>(m_boxes.size()));
  m_boxes.push_back(box);
}

bool MapRoom::IsFree(const Box& box) const {
  const std::vector<int> near = m_boxIndex.Near(box);
  return std::none_of(near.begin(), near.end(), [&](int number) { return Overlap(box, m_boxes[Place(number)]); });
}

/// A long wire is kept in pieces, which lie in few squares.
void MapRoom::AddWire(const Wire& wire) {
  for (std::size_t i = 1; i < wire.size(); ++i) {
    const Point from = wire[i - 1];
    const Point to = wire[i];
    const int pieces = std::max(std::abs(to.x - from.x), std::abs(to.y - from.y)) / kSquare + 1;
    for (int piece = 0; piece < pieces; ++piece) {
      const Point a{from.x + (to.x - from.x) * piece / pieces, from.y + (to.y - from.y) * piece / pieces};
      const Point b{from.x + (to.x - from.x) * (piece + 1) / pieces, from.y + (to.y - from.y) * (piece + 1) / pieces};
      const Box box{std::min(a.x, b.x), std::min(a.y, b.y), std::abs(a.x - b.x), std::abs(a.y - b.y)};
      m_pieceIndex.Add(box, static_cast<int>(m_pieces.size()));
      m_pieces.push_back({a, b});
    }
  }
}

int MapRoom::WiresUnder(const Box& box) const {
  const std::vector<int> near = m_pieceIndex.Near(box);
  return static_cast<int>(std::count_if(near.begin(), near.end(), [&](int number) {
    return LiesOn(box, m_pieces[Place(number)].from, m_pieces[Place(number)].to);
  }));
}

}  // namespace dtsdb::pictures::internal
