#include "pictures/grid_map.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <numbers>
#include <numeric>
#include <optional>
#include <tuple>
#include <utility>

#include "formats/text_layout.h"
#include "pictures/internal/map_layout.h"
#include "pictures/internal/map_legend.h"
#include "pictures/internal/map_room.h"
#include "pictures/internal/map_style.h"
#include "pictures/internal/map_wires.h"
#include "pictures/internal/place.h"
#include "pictures/internal/symbols.h"
#include "pictures/internal/wording.h"

namespace dtsdb::pictures {
namespace {

using internal::MakeLabel;
using internal::MakeSymbol;
using internal::Place;

constexpr int kMargin = 16;
constexpr int kTitleBase = 30;
constexpr int kTitleHeight = 42;
constexpr int kLabelGap = 4;  // from a disc to its name
constexpr int kAscent = 10;
constexpr int kHalfAscent = 4;
constexpr int kAnyWires = 1000;  // a name may lie on as many wires
constexpr int kArrowRadius = 6;
constexpr int kArrowMargin = 14;   // from the end of a wire to an arrow at least
constexpr double kArrowStep = 14;  // from one try for an arrow to the next

const char* ClassOf(DeviceKind kind) {
  if (kind == DeviceKind::kDcLine) return "dc-line";
  return kind == DeviceKind::kWinding ? "winding" : "line";
}

/// The longest straight piece of a wire.
std::pair<Point, Point> LongestPiece(const Wire& wire) {
  const auto length = [&](std::size_t i) { return std::hypot(wire[i].x - wire[i - 1].x, wire[i].y - wire[i - 1].y); };
  std::size_t longest = 1;
  for (std::size_t i = 2; i < wire.size(); ++i) {
    if (length(i) > length(longest)) longest = i;
  }
  return {wire[longest - 1], wire[longest]};
}

/// The places for a symbol along a wire: the middle, then more and more to both sides of it.
std::vector<Point> PlacesAlong(const Wire& wire) {
  const auto [a, b] = LongestPiece(wire);
  const double length = std::hypot(b.x - a.x, b.y - a.y);
  std::vector<Point> places;
  for (int step = 0; step * kArrowStep <= length / 2 - kArrowMargin; ++step) {
    for (const int side : {1, -1}) {
      if (step == 0 && side < 0) continue;
      const double part = 0.5 + side * step * kArrowStep / length;
      places.push_back({a.x + static_cast<int>(std::lround(part * (b.x - a.x))),
                        a.y + static_cast<int>(std::lround(part * (b.y - a.y)))});
    }
  }
  return places;
}

/// Where the name of a disc may stand, the best place first.
std::vector<Label> LabelsAround(const std::string& text, Point at, int radius, const internal::Font& font) {
  const int beside = radius + kLabelGap;
  const int above = -radius - kLabelGap;
  const int below = radius + kLabelGap / 2 + kAscent;
  const int slant = radius * 7 / 10 + 2;
  return {MakeLabel(text, {at.x + beside, at.y + kHalfAscent}, Anchor::kStart, font),
          MakeLabel(text, {at.x - beside, at.y + kHalfAscent}, Anchor::kEnd, font),
          MakeLabel(text, {at.x, at.y + above}, Anchor::kMiddle, font),
          MakeLabel(text, {at.x, at.y + below}, Anchor::kMiddle, font),
          MakeLabel(text, {at.x + slant, at.y - slant}, Anchor::kStart, font),
          MakeLabel(text, {at.x + slant, at.y + slant + kAscent}, Anchor::kStart, font),
          MakeLabel(text, {at.x - slant, at.y - slant}, Anchor::kEnd, font),
          MakeLabel(text, {at.x - slant, at.y + slant + kAscent}, Anchor::kEnd, font)};
}

/// The picture of a grid, from its title to the names of its stations.
class MapDrawing {
 public:
  MapDrawing(const Grid& grid, const GridOptions& options) : m_grid(grid), m_options(options) {}

  Picture Draw() {
    DrawTitle();
    const int top = internal::DrawMapLegend(m_grid, kTitleHeight, m_picture);
    m_layout = internal::LayOutMap(m_grid, top);
    m_picture.width = std::max(m_picture.width, m_layout.width);
    m_picture.height = m_layout.height + kMargin;
    m_wires = internal::WiresOf(m_grid, m_layout.stations);
    for (const Wire& wire : m_wires) m_room.AddWire(wire);
    m_firstLine = m_picture.elements.size();
    for (std::size_t i = 0; i < m_grid.lines.size(); ++i) DrawLine(i);
    m_firstStation = m_picture.elements.size();
    for (std::size_t i = 0; i < m_grid.stations.size(); ++i) DrawStation(i);
    DrawSigns();
    DrawNames();
    DrawPowers();
    return std::move(m_picture);
  }

 private:
  void DrawTitle() {
    m_picture.title = m_grid.title;
    Element& element = m_picture.elements.emplace_back();
    element.id = "map";
    element.classes = "station";
    element.title = m_grid.title;
    Label label = MakeLabel(m_grid.title, {kMargin, kTitleBase}, Anchor::kStart, internal::kTitleFont);
    m_picture.width = label.box.width + 2 * kMargin;
    element.labels.push_back(std::move(label));
  }

  void DrawLine(std::size_t number) {
    const GridLine& line = m_grid.lines[number];
    Element& element = m_picture.elements.emplace_back();
    element.record = line.name;
    element.id = internal::ElementId(line.name);
    const bool isWhole = line.state == "live";
    element.classes =
        fmt::format("on-map {} {} {}{}", ClassOf(line.kind), internal::TierClass(internal::TierOf(line.voltage)),
                    internal::IslandClass(line.island), isWhole || line.island < 0 ? "" : " off");
    element.title = fmt::format("{} {}: {} from {} to {}, {}, {}{}", line.name.table, line.name.identity,
                                internal::KindText(line.kind), m_grid.stations[Place(line.from)].name.identity,
                                m_grid.stations[Place(line.to)].name.identity, internal::VoltageText(line.voltage),
                                isWhole ? internal::IslandText(line.island) : line.state,
                                line.flow ? fmt::format(", {:.3f} MW, {:.3f} Mvar", line.flow->p, line.flow->q) : "");
    element.wires.push_back(m_wires[number]);
  }

  void DrawStation(std::size_t number) {
    const GridStation& station = m_grid.stations[number];
    Element& element = m_picture.elements.emplace_back();
    element.record = station.name;
    element.id = internal::ElementId(station.name);
    element.classes = "on-map station " + internal::IslandClass(station.island);
    if (static_cast<int>(number) == m_grid.centre) element.classes += " centre";
    if (station.linesBeyond > 0) element.classes += " border";
    element.title = fmt::format("ST {}: {}, {}, {}", station.name.identity, internal::VoltageText(station.voltage),
                                tools::Counted(station.levels, "level"), internal::IslandText(station.island));
    if (station.islands > 1) element.title += fmt::format(" and {} more", station.islands - 1);
    if (station.linesBeyond > 0) {
      element.title += ", " + tools::Counted(station.linesBeyond, "further line");
    }
    element.symbols.push_back(
        MakeSymbol(internal::PlaceSymbol(internal::TierOf(station.voltage)), m_layout.stations[number]));
    m_room.Take(element.symbols.back().box);
  }

  /// The signs of DC lines and the arrows of flows, where there is room for them.
  void DrawSigns() {
    for (std::size_t i = 0; i < m_grid.lines.size(); ++i) {
      const GridLine& line = m_grid.lines[i];
      Element& element = m_picture.elements[m_firstLine + i];
      if (line.kind == DeviceKind::kDcLine) PutAlong(m_wires[i], MakeSymbol("dc", {}), element);
      if (line.kind == DeviceKind::kWinding) PutTurned("transformer", true, i);
      if (m_options.flows && line.flow && !internal::IsZero(*line.flow)) {
        PutTurned("arrow", internal::GoesAlong(*line.flow), i);
      }
    }
  }

  /// A symbol on a line, whose lower end points along the line or against it.
  void PutTurned(const char* name, bool along, std::size_t line) {
    const auto [a, b] = LongestPiece(m_wires[line]);
    const double length = std::hypot(b.x - a.x, b.y - a.y);
    if (length == 0) return;
    Symbol symbol = MakeSymbol(name, {});
    const int way = along ? 1 : -1;
    symbol.degrees = DegreesDownTo(way * (b.x - a.x), way * (b.y - a.y));
    const double x = std::fabs(b.x - a.x) / length;
    const double y = std::fabs(b.y - a.y) / length;
    const int halfWidth = static_cast<int>(std::ceil((symbol.box.height * x + symbol.box.width * y) / 2));
    const int halfHeight = static_cast<int>(std::ceil((symbol.box.height * y + symbol.box.width * x) / 2));
    symbol.box = {-halfWidth, -halfHeight, 2 * halfWidth, 2 * halfHeight};
    PutAlong(m_wires[line], std::move(symbol), m_picture.elements[m_firstLine + line]);
  }

  /// The turn that makes what points downwards point to (x, y).
  static int DegreesDownTo(int x, int y) {
    const double angle = std::atan2(y, x) * 180 / std::numbers::pi - 90;
    return (static_cast<int>(std::lround(angle)) + 360) % 360;
  }

  void PutAlong(const Wire& wire, Symbol symbol, Element& element) {
    const Box box = symbol.box;
    for (const Point& place : PlacesAlong(wire)) {
      symbol.centre = place;
      symbol.box = {place.x + box.x, place.y + box.y, box.width, box.height};
      if (!m_room.IsFree(symbol.box)) continue;
      m_room.Take(symbol.box);
      element.symbols.push_back(std::move(symbol));
      return;
    }
  }

  /// Stations of a high voltage and with many lines are named first.
  std::vector<std::size_t> ByImportance() const {
    std::vector<int> lines(m_grid.stations.size());
    for (const GridLine& line : m_grid.lines) {
      ++lines[Place(line.from)];
      ++lines[Place(line.to)];
    }
    std::vector<std::size_t> order(m_grid.stations.size());
    std::iota(order.begin(), order.end(), std::size_t{0});
    const auto rank = [&](std::size_t i) {
      const bool isOther = static_cast<int>(i) != m_grid.centre;
      return std::tuple(isOther, internal::TierOf(m_grid.stations[i].voltage), -lines[i]);
    };
    std::stable_sort(order.begin(), order.end(), [&](std::size_t a, std::size_t b) { return rank(a) < rank(b); });
    return order;
  }

  void DrawNames() {
    for (const std::size_t i : ByImportance()) {
      Element& element = m_picture.elements[m_firstStation + i];
      const int radius = element.symbols.front().box.width / 2;
      const bool isCentre = static_cast<int>(i) == m_grid.centre;
      const internal::Font& font = isCentre ? internal::kBoldFont : internal::kUsualFont;
      const std::string name = internal::ShortName(m_grid.stations[i].name.identity, {});
      PutBest(LabelsAround(name, m_layout.stations[i], radius, font), kAnyWires, element);
    }
  }

  void DrawPowers() {
    for (std::size_t i = 0; i < m_grid.lines.size(); ++i) {
      Element& element = m_picture.elements[m_firstLine + i];
      if (element.symbols.empty() || element.symbols.back().name != "arrow") continue;
      const std::string power = internal::PowerTexts(*m_grid.lines[i].flow).front();
      PutBest(LabelsAround(power, element.symbols.back().centre, kArrowRadius, internal::kSmallFont), 0, element);
    }
  }

  /// Adds the label that lies on the fewest wires, and on `most` at most, of those that are free. None when all overlap
  /// with something.
  void PutBest(const std::vector<Label>& labels, int most, Element& element) {
    const Label* best = nullptr;
    int fewest = most + 1;
    for (const Label& label : labels) {
      const Box& box = label.box;
      const bool isInside =
          box.x >= 0 && box.y >= 0 && box.x + box.width <= m_picture.width && box.y + box.height <= m_picture.height;
      if (!isInside || !m_room.IsFree(box)) continue;
      const int wires = m_room.WiresUnder(box);
      if (wires >= fewest) continue;
      best = &label;
      fewest = wires;
    }
    if (best == nullptr) return;
    m_room.Take(best->box);
    element.labels.push_back(*best);
  }

  const Grid& m_grid;
  const GridOptions& m_options;
  internal::MapLayout m_layout;
  std::vector<Wire> m_wires;
  internal::MapRoom m_room;
  std::size_t m_firstLine = 0;
  std::size_t m_firstStation = 0;
  Picture m_picture;
};

}  // namespace

Picture DrawGrid(const Grid& grid, const GridOptions& options) { return MapDrawing(grid, options).Draw(); }

}  // namespace dtsdb::pictures
