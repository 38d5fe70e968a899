#include "pictures/internal/spacing.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numeric>

#include "pictures/internal/place.h"

namespace dtsdb::pictures::internal {
namespace {

constexpr double kBetweenPoints = 36;
constexpr double kFromEdge = 17;
constexpr int kMostRounds = 120;
constexpr int kFewestRounds = 10;
constexpr int kMostMoves = 300'000;  // of points, in all rounds
constexpr double kMoved = 0.5;       // a round that moves nothing further is the last
constexpr double kPart = 0.5;        // of what is missing, in one round
constexpr double kGoldenTurn = 2.4;  // radians; points on one place part in directions far from each other

/// Points from left to right.
class Sweep {
 public:
  explicit Sweep(const std::vector<PlanePoint>& points) : m_points(points), m_order(points.size()) {
    std::iota(m_order.begin(), m_order.end(), 0);
    std::sort(m_order.begin(), m_order.end(), [&](int a, int b) {
      return points[Place(a)].x != points[Place(b)].x ? points[Place(a)].x < points[Place(b)].x : a < b;
    });
  }

  const std::vector<int>& Order() const { return m_order; }
  /// Calls `visit` with the points between two x.
  template <class Visit>
  void Between(double left, double right, Visit visit) const {
    const auto isLeft = [&](int number, double x) { return m_points[Place(number)].x < x; };
    for (auto at = std::lower_bound(m_order.begin(), m_order.end(), left, isLeft);
         at != m_order.end() && m_points[Place(*at)].x <= right; ++at) {
      visit(*at);
    }
  }

 private:
  const std::vector<PlanePoint>& m_points;
  std::vector<int> m_order;
};

/// One round of moving points apart.
class Round {
 public:
  Round(std::vector<PlanePoint>& points, const Edges& edges)
      : m_points(points), m_edges(edges), m_sweep(points), m_moves(points.size()) {}

  /// How far the point moved that moved furthest.
  double Move() {
    for (const int point : m_sweep.Order()) {
      const double x = m_points[Place(point)].x;
      m_sweep.Between(x, x + kBetweenPoints, [&](int other) { Part(point, other); });
    }
    for (const auto& [from, to] : m_edges) {
      const auto [left, right] = std::minmax(m_points[Place(from)].x, m_points[Place(to)].x);
      m_sweep.Between(left - kFromEdge, right + kFromEdge, [&, from = from, to = to](int point) {
        if (point != from && point != to) PartFromEdge(point, m_points[Place(from)], m_points[Place(to)]);
      });
    }
    double furthest = 0;
    for (std::size_t i = 0; i < m_points.size(); ++i) {
      const double length = std::hypot(m_moves[i].x, m_moves[i].y);
      const double part = length > kBetweenPoints ? kBetweenPoints / length : 1;
      m_points[i] = {m_points[i].x + part * m_moves[i].x, m_points[i].y + part * m_moves[i].y};
      furthest = std::max(furthest, length);
    }
    return furthest;
  }

 private:
  void Add(int point, double x, double y) {
    m_moves[Place(point)] = {m_moves[Place(point)].x + x, m_moves[Place(point)].y + y};
  }

  /// Each pair is met from its left point, or from both where they stand one above the other.
  void Part(int a, int b) {
    if (a == b) return;
    double dx = m_points[Place(b)].x - m_points[Place(a)].x;
    double dy = m_points[Place(b)].y - m_points[Place(a)].y;
    double distance = std::hypot(dx, dy);
    if (distance >= kBetweenPoints || (dx == 0 && a > b)) return;
    const double missing = kPart * (kBetweenPoints - distance) / 2;
    if (distance == 0) {
      dx = std::cos(kGoldenTurn * b);
      dy = std::sin(kGoldenTurn * b);
      distance = 1;
    }
    Add(a, -dx / distance * missing, -dy / distance * missing);
    Add(b, dx / distance * missing, dy / distance * missing);
  }

  void PartFromEdge(int point, const PlanePoint& from, const PlanePoint& to) {
    const PlanePoint& at = m_points[Place(point)];
    const double dx = to.x - from.x;
    const double dy = to.y - from.y;
    const double length = std::hypot(dx, dy);
    if (length < 1) return;
    const double along = ((at.x - from.x) * dx + (at.y - from.y) * dy) / length;
    if (along <= 0 || along >= length) return;  // its end is a point, which keeps its distance
    const double aside = ((at.x - from.x) * dy - (at.y - from.y) * dx) / length;
    if (std::fabs(aside) >= kFromEdge) return;
    const bool toRight = aside > 0 || (aside == 0 && point % 2 == 0);
    const double missing = kPart * (kFromEdge - std::fabs(aside)) * (toRight ? 1 : -1);
    Add(point, dy / length * missing, -dx / length * missing);
  }

  std::vector<PlanePoint>& m_points;
  const Edges& m_edges;
  Sweep m_sweep;
  std::vector<PlanePoint> m_moves;
};

}  // namespace

PlaneBox BoxAround(const std::vector<PlanePoint>& points) {
  if (points.empty()) return {};
  PlaneBox box{points[0].x, points[0].y, points[0].x, points[0].y};
  for (const PlanePoint& point : points) {
    box.left = std::min(box.left, point.x);
    box.top = std::min(box.top, point.y);
    box.right = std::max(box.right, point.x);
    box.bottom = std::max(box.bottom, point.y);
  }
  return box;
}

std::vector<double> NearestDistances(const std::vector<PlanePoint>& points) {
  if (points.size() < 2) return {};
  const Sweep sweep(points);
  const std::vector<int>& order = sweep.Order();
  std::vector<double> nearest(points.size(), std::numeric_limits<double>::infinity());
  for (std::size_t i = 0; i < order.size(); ++i) {
    const PlanePoint& here = points[Place(order[i])];
    double& best = nearest[Place(order[i])];
    const auto look = [&](std::size_t place) {
      const PlanePoint& other = points[Place(order[place])];
      if (std::fabs(other.x - here.x) > best) return false;
      best = std::min(best, std::hypot(other.x - here.x, other.y - here.y));
      return true;
    };
    for (std::size_t right = i + 1; right < order.size() && look(right); ++right) {
    }
    for (std::size_t left = i; left > 0 && look(left - 1); --left) {
    }
  }
  return nearest;
}

void Spread(std::vector<PlanePoint>& points, const Edges& edges) {
  const int count = static_cast<int>(points.size());
  const int rounds = std::clamp(kMostMoves / std::max(count, 1), kFewestRounds, kMostRounds);
  for (int round = 0; round < rounds; ++round) {
    if (Round(points, edges).Move() < kMoved) break;
  }
}

}  // namespace dtsdb::pictures::internal
