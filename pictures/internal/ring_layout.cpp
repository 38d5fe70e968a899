#include "pictures/internal/ring_layout.h"

#include <algorithm>
#include <limits>
#include <set>

#include "pictures/internal/grid_builder.h"
#include "pictures/internal/place.h"

namespace dtsdb::pictures::internal {
namespace {

constexpr std::size_t kFewestPlaces = 3;
constexpr std::size_t kMostThingsOnPlace = 3;  // more hang on a busbar

/// Number of switches of each node that lie on closed ways: ends of trees are taken away one by one.
std::vector<int> SwitchesInLoops(const LevelShape& shape, std::vector<bool>& isInLoop) {
  const std::size_t count = shape.Level().nodes.size();
  std::vector<int> degree(count);
  std::vector<int> ends;
  for (std::size_t i = 0; i < count; ++i) {
    degree[i] = static_cast<int>(shape.SwitchesOf(static_cast<int>(i)).size());
    if (degree[i] == 1) ends.push_back(static_cast<int>(i));
  }
  isInLoop.assign(shape.Level().switches.size(), true);
  while (!ends.empty()) {
    const int node = ends.back();
    ends.pop_back();
    for (const int number : shape.SwitchesOf(node)) {
      if (!isInLoop[Place(number)]) continue;
      isInLoop[Place(number)] = false;
      --degree[Place(node)];
      const int other = shape.Other(number, node);
      if (--degree[Place(other)] == 1) ends.push_back(other);
    }
  }
  return degree;
}

/// The closed way from `start` on; every node on it has two switches in loops.
Ring WalkRing(const LevelShape& shape, const std::vector<bool>& isInLoop, int start) {
  Ring ring;
  int node = start;
  int last = -1;
  do {
    const std::vector<int>& switches = shape.SwitchesOf(node);
    const auto next = std::find_if(switches.begin(), switches.end(),
                                   [&](int number) { return isInLoop[Place(number)] && number != last; });
    last = *next;
    ring.nodes.push_back(node);
    ring.switches.push_back(last);
    node = shape.Other(last, node);
  } while (node != start);
  return ring;
}

/// Things that hang on a node beside the ring.
std::size_t ThingsOn(const LevelShape& shape, int node) {
  return shape.DevicesOf(node).size() + shape.SwitchesOf(node).size() - 2;
}

bool IsRing(const LevelShape& shape, const Ring& ring, std::size_t nodesInLoops) {
  if (ring.nodes.size() != nodesInLoops || nodesInLoops < kFewestPlaces) return false;
  std::size_t places = 0;
  for (const int node : ring.nodes) {
    const std::size_t things = ThingsOn(shape, node);
    if (things > kMostThingsOnPlace) return false;
    if (things > 0) ++places;
    // A bar on which nothing hangs but the ring: two rows of breakers between two bars make a closed way too.
    if (things == 0 && shape.IsBar(node) && !shape.Level().buses.empty()) return false;
  }
  const std::set<int> nodes(ring.nodes.begin(), ring.nodes.end());
  const auto isOnRing = [&](int node) { return nodes.contains(node); };
  return places >= kFewestPlaces &&
         (shape.Level().buses.empty() || std::all_of(shape.Bars().begin(), shape.Bars().end(), isOnRing));
}

/// A ring on two rows.
class RingLayout {
 public:
  RingLayout(const LevelShape& shape, const Ring& ring) : m_shape(shape), m_ring(ring), m_grid(shape) {}

  LevelGrid Build() {
    ChooseCorners();
    for (const int number : m_ring.switches) m_grid.MarkPlaced(number);
    const int size = Size();
    for (int i = 0; i < size; ++i) {
      const bool isUpper = (i - m_left - 1 + size) % size < (m_right - m_left + size) % size;
      m_grid.PutNode(NodeAt(i), isUpper ? kUpperBars : kLowerBars);
    }
    const int leftColumn = m_grid.NewColumn();
    PutSide(m_left + 1, m_right, 1);
    const int upperEnd = m_grid.LastColumn();
    m_grid.ContinueAt(leftColumn + 1);
    PutSide(m_left, m_right + 1, -1);
    m_grid.ContinueAt(std::max(upperEnd, m_grid.LastColumn()) + 1);
    m_grid.PutUpright(SwitchAt(m_left), leftColumn, NodeAt(m_left + 1));
    m_grid.PutUpright(SwitchAt(m_right), m_grid.NewColumn(), NodeAt(m_right));
    PutTreesElsewhere();
    return m_grid.Finish();
  }

 private:
  int Size() const { return static_cast<int>(m_ring.nodes.size()); }
  int Wrapped(int place) const { return (place % Size() + Size()) % Size(); }
  int NodeAt(int place) const { return m_ring.nodes[Place(Wrapped(place))]; }
  int SwitchAt(int place) const { return m_ring.switches[Place(Wrapped(place))]; }

  /// Above 0 for a place that belongs above, below 0 for one that belongs below. Windings count most: wires lead on.
  int Wish(int place) const {
    for (const int device : m_shape.DevicesOf(NodeAt(place))) {
      const bool isWinding = m_shape.Level().devices[Place(device)].kind == DeviceKind::kWinding;
      return (m_shape.IsUp()[Place(device)] ? 1 : -1) * (isWinding ? 3 : 1);
    }
    return 0;
  }

  /// Two upright switches part the ring into an upper and a lower side: so that each has half of the places, and most
  /// of them stand on the side where they belong.
  void ChooseCorners() {
    std::vector<int> places;
    for (int i = 0; i < Size(); ++i) {
      if (ThingsOn(m_shape, NodeAt(i)) > 0) places.push_back(i);
    }
    const int count = static_cast<int>(places.size());
    const int upper = (count + 1) / 2;
    const auto at = [&](int i) { return places[Place(i % count)]; };
    int best = 0;
    int bestSum = std::numeric_limits<int>::min();
    const int tried = std::min(count, 64);
    for (int first = 0; first < tried; ++first) {
      int sum = 0;
      for (int i = 0; i < count; ++i) sum += i < upper ? Wish(at(first + i)) : -Wish(at(first + i));
      if (sum > bestSum) {
        bestSum = sum;
        best = first;
      }
    }
    m_left = Between(at(best + count - 1), at(best));
    m_right = Between(at(best + upper - 1), at(best + upper));
  }

  /// The switch in the middle between two places.
  int Between(int place, int next) const { return Wrapped(place + (Wrapped(next - place) - 1) / 2); }

  /// The nodes from place `first` to place `last` from left to right, with the switches between them.
  void PutSide(int first, int last, int step) {
    const int count = Wrapped((last - first) * step) + 1;
    for (int i = 0; i < count; ++i) {
      const int place = first + i * step;
      PutPlace(NodeAt(place), step > 0 ? -1 : 1);
      if (i + 1 == count) break;
      const int number = SwitchAt(step > 0 ? place : place - 1);
      const int row = m_grid.RowOf(NodeAt(place));
      const int left = m_grid.LastColumn();
      const int middle = m_grid.NewColumn();
      m_grid.PutLevel(number, NodeAt(place), {middle, row}, {{left, row}}, {{middle + 1, row}});
    }
  }

  /// A node of the ring with what hangs on it.
  void PutPlace(int node, int step) {
    const bool isBar = m_shape.IsBar(node) && !m_shape.Level().buses.empty();
    const int first = isBar || ThingsOn(m_shape, node) == 0 ? m_grid.NewColumn() : m_grid.LastColumn() + 1;
    m_grid.PutSides(node, step);
    if (isBar) m_grid.PutBar(node, first, m_grid.LastColumn());
  }

  /// What hangs together with the ring in no way.
  void PutTreesElsewhere() {
    for (int node = 0; node < static_cast<int>(m_shape.Level().nodes.size()); ++node) {
      if (!m_grid.HasRow(node)) m_grid.PutTree(node, kBelowBars, m_grid.NewColumn(), 1, true);
    }
  }

  const LevelShape& m_shape;
  const Ring& m_ring;
  GridBuilder m_grid;
  int m_left = 0;   // place of the switch on the left
  int m_right = 0;  // and on the right
};

}  // namespace

Ring FindRing(const LevelShape& shape) {
  std::vector<bool> isInLoop;
  const std::vector<int> degree = SwitchesInLoops(shape, isInLoop);
  const auto nodesInLoops =
      static_cast<std::size_t>(std::count_if(degree.begin(), degree.end(), [](int switches) { return switches > 0; }));
  const bool isSimple =
      std::all_of(degree.begin(), degree.end(), [](int switches) { return switches == 0 || switches == 2; });
  const auto loops = std::any_of(shape.Level().switches.begin(), shape.Level().switches.end(),
                                 [](const StationSwitch& item) { return item.from == item.to; });
  if (nodesInLoops == 0 || !isSimple || loops) return {};
  const auto start = std::find_if(degree.begin(), degree.end(), [](int switches) { return switches > 0; });
  Ring ring = WalkRing(shape, isInLoop, static_cast<int>(start - degree.begin()));
  return IsRing(shape, ring, nodesInLoops) ? ring : Ring();
}

LevelGrid LayOutRing(const LevelShape& shape, const Ring& ring) { return RingLayout(shape, ring).Build(); }

}  // namespace dtsdb::pictures::internal
