#include "pictures/station_diagram.h"

#include <fmt/format.h>

#include <algorithm>
#include <utility>

#include "formats/text_layout.h"
#include "pictures/internal/channels.h"
#include "pictures/internal/level_drawing.h"
#include "pictures/internal/tier_stack.h"
#include "pictures/internal/transformer_drawing.h"
#include "pictures/internal/transformers.h"
#include "pictures/internal/wording.h"

namespace dtsdb::pictures {
namespace {

using internal::Channels;
using internal::Connection;
using internal::DrawnEnd;
using internal::DrawnTransformer;
using internal::LevelDrawing;
using internal::Tier;
using internal::TierStack;
using internal::Transformer;
using internal::WindingEnd;

constexpr int kDiagramMargin = 16;
constexpr int kDiagramTitleBase = 30;
constexpr int kDiagramTitleHeight = 40;
constexpr int kLevelGap = 16;

std::size_t Number(int number) { return static_cast<std::size_t>(number); }

/// What is written on the left of a level.
std::vector<std::string> TitleOf(const StationLevel& level) {
  std::vector<std::string> lines = {fmt::format("{:g} kV", level.voltage)};
  for (std::string& line : internal::Wrapped(level.name.identity)) lines.push_back(std::move(line));
  return lines;
}

/// The picture of a station, from its title to the wires between its levels.
class StationDrawing {
 public:
  StationDrawing(const Station& station, const DiagramOptions& options)
      : m_station(station),
        m_options(options),
        m_stack(station, internal::TransformerPlan(station), options.flows),
        m_connections(m_stack.Connections()),
        m_channels(m_connections, m_stack.Extents()) {}

  Picture Draw() {
    int titles = 0;
    for (const Tier& tier : m_stack.Tiers()) {
      for (const std::string& line : TitleOf(tier.Level()))
        titles = std::max(titles, internal::TextWidth(line, internal::kBoldFont));
    }
    m_tops =
        m_stack.Place(m_channels, kDiagramMargin + titles + kLevelGap + m_channels.LeftWidth(), kDiagramTitleHeight);
    DrawTitle();
    m_levels.reserve(m_stack.Tiers().size());
    for (const Tier& tier : m_stack.Tiers()) DrawLevel(tier);
    DrawTransformers();
    m_picture.width = std::max(m_picture.width, m_stack.Right() + kDiagramMargin + m_channels.RightWidth());
    m_picture.height = m_tops.back() + kDiagramMargin;
    return std::move(m_picture);
  }

 private:
  void DrawTitle() {
    m_picture.title = tools::OneLine(m_station.name.identity);
    Element element;
    element.record = m_station.name;
    element.id = internal::ElementId(m_station.name);
    element.classes = "station";
    element.title = "ST " + m_station.name.identity;
    Label label =
        internal::MakeLabel(m_picture.title, {kDiagramMargin, kDiagramTitleBase}, Anchor::kStart, internal::kTitleFont);
    m_picture.width = label.box.width + 2 * kDiagramMargin;
    element.labels.push_back(std::move(label));
    m_picture.elements.push_back(std::move(element));
  }

  void DrawLevel(const Tier& tier) {
    const StationLevel& level = tier.Level();
    Element element;
    element.record = level.name;
    element.id = internal::ElementId(level.name);
    element.classes = "level";
    element.title = fmt::format("KV {}: {:g} kV", level.name.identity, level.voltage);
    int y = tier.Grid().bars.empty() ? tier.Top() + internal::kLineHeight
                                     : tier.Y(tier.Grid().rowOf.at(tier.Grid().bars.front().node));
    for (const std::string& line : TitleOf(level)) {
      element.labels.push_back(internal::MakeLabel(line, {kDiagramMargin, y}, Anchor::kStart, internal::kBoldFont));
      y += internal::kLineHeight;
    }
    m_picture.elements.push_back(std::move(element));
    m_levels.emplace_back(tier, m_classes, m_options.flows, m_picture).Draw();
  }

  DrawnEnd EndOf(const WindingEnd& end) {
    const int tier = m_stack.TierOf(end.level);
    const StationDevice& device = m_station.levels[Number(end.level)].devices[Number(end.device)];
    LevelDrawing& drawing = m_levels[Number(tier)];
    const Tier& where = m_stack.Tiers()[Number(tier)];
    return {&device, drawing.ClassesOf(device.node), drawing.Pins().at(end.device),
            where.Words().ofDevices[Number(end.device)]};
  }

  void DrawTransformers() {
    std::size_t connection = 0;
    for (const Transformer& transformer : m_stack.Plan().transformers) {
      DrawnTransformer drawn{EndOf(transformer.primary), {}, nullptr, m_options.flows};
      for (const WindingEnd& end : transformer.others) drawn.others.push_back(EndOf(end));
      if (transformer.star >= 0) drawn.star = &m_station.levels[Number(transformer.star)];
      const std::vector<Point> terminals = internal::TerminalsOf(drawn);
      for (std::size_t i = 0; i < terminals.size(); ++i) DrawWire(connection++, terminals[i], transformer.others[i]);
      internal::DrawTransformer(drawn, m_picture);
    }
  }

  /// The wire from a symbol to a winding belongs to the winding's node.
  void DrawWire(std::size_t number, Point terminal, const WindingEnd& end) {
    Connection connection = m_connections[number];
    LevelDrawing& drawing = m_levels[Number(m_stack.TierOf(end.level))];
    const internal::Pin& pin = drawing.Pins().at(end.device);
    connection.first.x = terminal.x;
    connection.first.y = terminal.y;
    connection.second.x = pin.x;
    connection.second.y = pin.y;
    const int node = m_station.levels[Number(end.level)].devices[Number(end.device)].node;
    drawing.NodeElement(node).wires.push_back(m_channels.WireOf(number, connection, m_tops, m_stack.Left()));
  }

  const Station& m_station;
  const DiagramOptions& m_options;
  TierStack m_stack;
  std::vector<Connection> m_connections;
  Channels m_channels;
  std::vector<int> m_tops;
  internal::SectionClasses m_classes;
  std::vector<LevelDrawing> m_levels;  // by tier
  Picture m_picture;
};

}  // namespace

Picture DrawStation(const Station& station, const DiagramOptions& options) {
  return StationDrawing(station, options).Draw();
}

}  // namespace dtsdb::pictures
