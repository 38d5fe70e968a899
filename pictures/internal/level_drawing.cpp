#include "pictures/internal/level_drawing.h"

#include <fmt/format.h>

#include <algorithm>
#include <utility>

#include "pictures/internal/place.h"
#include "pictures/internal/symbols.h"
#include "pictures/internal/wording.h"

namespace dtsdb::pictures::internal {
namespace {

constexpr int kSections = 8;  // colours of pictures/style.css
constexpr int kHalfSymbol = kSymbolSize / 2;
constexpr int kArrowGap = 16;  // from the middle of a switch to that of the arrow beside it
constexpr int kBranchGap = 20;
constexpr int kBranchStep = 14;
constexpr int kBadgeGap = 20;
constexpr int kDotOnBar = 5;
constexpr int kBarEnd = 8;  // how far a bar goes beyond its column

bool Contains(const std::string& text, const char* word) { return text.find(word) != std::string::npos; }

/// The class of something that isn't whole.
std::string StateClass(const std::string& state, bool open) {
  std::string classes;
  if (open) classes += " off";
  if (Contains(state, "isolated")) classes += " isolated";
  if (Contains(state, "dead")) classes += " dead";
  return classes;
}

const char* SymbolOf(DeviceKind kind) {
  static constexpr const char* kSymbols[] = {"line", "dc-line", "transformer", "unit", "load", "capacitor", "reactor"};
  return kSymbols[static_cast<std::size_t>(kind)];
}

std::string TitleOf(const RecordName& name, const std::string& what) {
  return fmt::format("{} {}: {}", name.table, name.identity, what);
}

std::string FlowTitle(const std::optional<Power>& flow) {
  return flow ? fmt::format(", {:.3f} MW, {:.3f} Mvar", flow->p, flow->q) : "";
}

}  // namespace

std::string SectionClasses::Of(const StationNode& node) {
  if (node.island < 0) return "dead";
  const int order = m_order.emplace(node.section, static_cast<int>(m_order.size())).first->second;
  return fmt::format("live s{}", order % kSections);
}

LevelDrawing::LevelDrawing(const Tier& tier, SectionClasses& classes, bool flows, Picture& picture)
    : m_tier(tier),
      m_level(tier.Level()),
      m_classes(classes),
      m_flows(flows),
      m_picture(picture),
      m_rails(m_level.nodes.size()) {}

std::string LevelDrawing::ClassesOf(int node) { return m_classes.Of(m_level.nodes[Place(node)]); }

void LevelDrawing::Draw() {
  DrawNodes();
  for (const GridSwitch& item : m_tier.Grid().switches) DrawSwitch(item);
  for (const GridFeeder& feeder : m_tier.Grid().feeders) DrawFeeder(feeder);
  DrawRails();
  DrawBuses();
}

void LevelDrawing::DrawNodes() {
  m_firstNode = m_picture.elements.size();
  for (std::size_t i = 0; i < m_level.nodes.size(); ++i) {
    const StationNode& node = m_level.nodes[i];
    Element& element = m_picture.elements.emplace_back();
    element.record = node.name;
    element.id = ElementId(node.name);
    element.classes = "node ";
    element.classes += ClassesOf(static_cast<int>(i));
    const std::string section = node.section >= 0 ? fmt::format("section {}", node.section) : "no section";
    const std::string island = node.island >= 0 ? fmt::format("island {}", node.island) : "dead";
    element.title = TitleOf(node.name, fmt::format("{}, {}", section, island));
  }
}

/// Rails as lines, with dots where three ways meet.
void LevelDrawing::DrawRails() {
  std::map<int, std::pair<int, int>> bars;  // first and last x, by node
  std::map<int, int> ends;                  // by the first column of bars
  for (const GridBar& bar : m_tier.Grid().bars) {
    if (m_tier.Words().ofBars[Place(bar.node)].empty()) continue;
    Rail& rail = m_rails[Place(bar.node)];
    const int first = m_tier.X(bar.first) - kBarEnd;
    if (!ends.contains(bar.first)) ends[bar.first] = m_tier.RightmostOf(bar.first, bar.last);
    const int last = ends[bar.first] + kBarEnd;
    rail.left = rail.isEmpty ? first : std::min(rail.left, first);
    rail.right = rail.isEmpty ? last : std::max(rail.right, last);
    rail.isEmpty = false;
    bars[bar.node] = {rail.left, rail.right};
  }
  for (std::size_t i = 0; i < m_rails.size(); ++i) {
    const Rail& rail = m_rails[i];
    const auto row = m_tier.Grid().rowOf.find(static_cast<int>(i));
    if (rail.isEmpty || row == m_tier.Grid().rowOf.end()) continue;
    const int y = m_tier.Y(row->second);
    const bool isBar = bars.contains(static_cast<int>(i));
    Element& element = NodeElement(static_cast<int>(i));
    if (isBar) element.dotRadius = kDotOnBar;
    if (rail.left < rail.right && !isBar) element.wires.push_back({{rail.left, y}, {rail.right, y}});
    for (const auto& [x, ways] : rail.waysAt) {
      const int along = (x > rail.left ? 1 : 0) + (x < rail.right ? 1 : 0);
      const auto sideways = rail.sidewaysAt.find(x);
      const int all = ways + along + (sideways == rail.sidewaysAt.end() ? 0 : sideways->second);
      if (isBar || all > 2) element.dots.push_back({x, y});
    }
  }
}

void LevelDrawing::DrawBuses() {
  struct Names {
    std::size_t count = 0;  // that are written already
    int x = 0;              // of the next one
  };
  std::map<int, int> firstColumn;  // by the node of a bar
  for (const GridBar& bar : m_tier.Grid().bars) firstColumn.emplace(bar.node, bar.first);
  std::map<int, Names> written;  // by node
  for (const StationBus& bus : m_level.buses) {
    Element& element = m_picture.elements.emplace_back();
    element.record = bus.name;
    element.id = ElementId(bus.name);
    element.classes = "bus " + ClassesOf(bus.node) + StateClass(bus.state, false);
    element.title = TitleOf(bus.name, "bus, " + bus.state);
    const auto column = firstColumn.find(bus.node);
    if (column == firstColumn.end()) continue;
    const Rail& rail = m_rails[Place(bus.node)];
    const int y = m_tier.Y(m_tier.Grid().rowOf.at(bus.node));
    Names& names = written[bus.node];
    if (names.count == 0) {
      element.wires.push_back({{rail.left, y}, {rail.right, y}});
      names.x = m_tier.X(column->second);
    }
    const std::string& name = m_tier.Words().ofBars[Place(bus.node)][names.count++];
    element.labels.push_back(MakeLabel(name, {names.x, y - 6}, Anchor::kStart, kBoldFont));
    names.x += TextWidth(name, kBoldFont) + kBarEnd;
  }
}

Point LevelDrawing::CentreOf(const GridSwitch& item) const {
  const int y = m_tier.Y(item.at.row);
  return {m_tier.X(item.at.column), item.upright ? (y + m_tier.Y(item.at.row + 1)) / 2 : y};
}

/// The way from a node along grid points to `end`.
void LevelDrawing::AddWay(int node, const std::vector<GridPoint>& way, Point end) {
  Wire wire;
  for (const GridPoint& point : way) wire.push_back({m_tier.X(point.column), m_tier.Y(point.row)});
  wire.push_back(end);
  Rail& rail = m_rails[Place(node)];
  const int x = wire.front().x;
  rail.left = rail.isEmpty ? x : std::min(rail.left, x);
  rail.right = rail.isEmpty ? x : std::max(rail.right, x);
  rail.isEmpty = false;
  const bool isSideways = wire[1].y == wire[0].y;
  ++(isSideways ? rail.sidewaysAt : rail.waysAt)[x];
  NodeElement(node).wires.push_back(std::move(wire));
}

void LevelDrawing::DrawSwitch(const GridSwitch& where) {
  const StationSwitch& item = m_level.switches[Place(where.number)];
  const Point centre = CentreOf(where);
  const Point first = where.upright ? Point{centre.x, centre.y - kHalfSymbol} : Point{centre.x - kHalfSymbol, centre.y};
  const Point last = where.upright ? Point{centre.x, centre.y + kHalfSymbol} : Point{centre.x + kHalfSymbol, centre.y};
  AddWay(item.from, where.from, where.fromIsFirst ? first : last);
  AddWay(item.to, where.to, where.fromIsFirst ? last : first);

  const std::string kind = item.isBreaker ? "breaker" : "disconnector";
  Element element;
  element.record = item.name;
  element.id = ElementId(item.name);
  const bool dead = item.state == "dead" || ClassesOf(item.from) == "dead";
  element.classes = "switch " + kind + (item.open ? " open" : " closed") + StateClass(item.state, false) +
                    (dead && !Contains(item.state, "dead") ? " dead" : "") +
                    (item.open || dead ? "" : " " + ClassesOf(item.from));
  element.title =
      TitleOf(item.name, kind + (item.open ? ", open, " : ", closed, ") + item.state + FlowTitle(item.flow));
  const int turns = where.upright ? 0 : 3;
  if (Contains(item.state, "isolated")) element.symbols.push_back(MakeSymbol("hatch", centre));
  element.symbols.push_back(MakeSymbol(kind + (item.open ? "-open" : "-closed"), centre, turns));
  if (m_flows && ShowsFlow(item) && !IsZero(*item.flow)) {
    const bool along = GoesAlong(*item.flow) == where.fromIsFirst;
    const Point beside = where.upright ? Point{centre.x, centre.y - kArrowGap} : Point{centre.x - kArrowGap, centre.y};
    element.symbols.push_back(MakeSymbol("arrow", beside, where.upright ? (along ? 0 : 2) : (along ? 3 : 1)));
  }
  DrawLabels(element, where);
  m_picture.elements.push_back(std::move(element));
  DrawBranches(item, where);
}

/// The lines beside an upright switch, or below a level one.
void LevelDrawing::DrawLabels(Element& element, const GridSwitch& where) const {
  const Point centre = CentreOf(where);
  int y = where.upright ? centre.y - 2 : centre.y + kHalfSymbol + kLineHeight;
  if (where.upright && m_tier.Words().ofSwitches[Place(where.number)].size() == 1) y += 6;
  for (const std::string& line : m_tier.Words().ofSwitches[Place(where.number)]) {
    const Point at{where.upright ? centre.x + kLabelGap : centre.x, y};
    element.labels.push_back(MakeLabel(line, at, where.upright ? Anchor::kStart : Anchor::kMiddle, kSmallFont));
    y += kLineHeight;
  }
}

/// The zero-impedance branches beside the breaker that carries them.
void LevelDrawing::DrawBranches(const StationSwitch& item, const GridSwitch& where) {
  const Point centre = CentreOf(where);
  int gap = kBranchGap;
  for (const RecordName& branch : item.branches) {
    const Point at = where.upright ? Point{centre.x - gap, centre.y} : Point{centre.x, centre.y - gap};
    Element& element = m_picture.elements.emplace_back();
    element.record = branch;
    element.id = ElementId(branch);
    element.classes = "branch " + ClassesOf(item.from);
    element.title = TitleOf(branch, "zero-impedance branch on " + item.name.identity);
    element.symbols.push_back(MakeSymbol("zero-impedance", at));
    gap += kBranchStep;
  }
}

void LevelDrawing::DrawLabels(Element& element, const GridFeeder& feeder, Point centre) const {
  const std::vector<std::string>& lines = m_tier.Words().ofDevices[Place(feeder.number)];
  const int half = element.symbols.back().box.height / 2;
  const int count = static_cast<int>(lines.size());
  int y = feeder.up ? centre.y - half - 5 - (count - 1) * kLineHeight : centre.y + half + kLineHeight;
  for (const std::string& line : lines) {
    element.labels.push_back(MakeLabel(line, {centre.x, y}, Anchor::kMiddle));
    y += kLineHeight;
  }
}

void LevelDrawing::DrawFeeder(const GridFeeder& feeder) {
  const StationDevice& device = m_level.devices[Place(feeder.number)];
  const int step = feeder.up ? -1 : 1;
  const int x = m_tier.X(feeder.from.column);
  if (m_tier.RoleOf(feeder.number) != Role::kAlone) {
    const int edge = m_tier.RoleOf(feeder.number) == Role::kPrimary ? m_tier.EdgeOf(feeder) + step * kFeederWire
                                                                    : (feeder.up ? m_tier.Top() : m_tier.Bottom());
    AddWay(device.node, {feeder.from}, {x, edge});
    m_pins[feeder.number] = {x, edge, feeder.up};
    return;
  }
  Element element;
  element.record = device.name;
  element.id = ElementId(device.name, device.end);
  const bool isDead = Contains(device.state, "dead");
  element.classes = std::string("device ") + SymbolOf(device.kind) + StateClass(device.state, device.open) +
                    (isDead ? "" : " " + ClassesOf(device.node)) + (device.isReference ? " reference" : "");
  const std::string far = device.far.empty() ? "" : " to " + device.far;
  element.title =
      TitleOf(device.name, KindText(device.kind) + far + ", " + device.state +
                               (device.isReference ? ", reference of its island" : "") + FlowTitle(device.flow));
  const int start = m_tier.EdgeOf(feeder) + step * kFeederWire;
  const int half = SizeOfSymbol(SymbolOf(device.kind)).height / 2;
  const Point centre{x, start + step * half};
  AddWay(device.node, {feeder.from}, {x, start});
  if (Contains(device.state, "isolated")) element.symbols.push_back(MakeSymbol("hatch", centre));
  element.symbols.push_back(MakeSymbol(SymbolOf(device.kind), centre, feeder.up ? 2 : 0));
  DrawLabels(element, feeder, centre);
  if (device.isReference) element.symbols.push_back(MakeSymbol("reference", {x + kBadgeGap, centre.y}));
  if (m_flows && device.flow && !IsZero(*device.flow)) {
    const bool away = GoesAlong(*device.flow);
    element.symbols.push_back(MakeSymbol("arrow", {x, start - step * 8}, away == (step > 0) ? 0 : 2));
  }
  m_picture.elements.push_back(std::move(element));
}

}  // namespace dtsdb::pictures::internal
