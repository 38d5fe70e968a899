#include "pictures/internal/map_legend.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <algorithm>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "formats/text_layout.h"
#include "pictures/internal/map_style.h"
#include "pictures/internal/symbols.h"
#include "pictures/internal/wording.h"

namespace dtsdb::pictures::internal {
namespace {

constexpr int kMargin = 16;
constexpr int kRight = 600;  // where a line of the legend ends; no map is narrower
constexpr int kLine = 18;
constexpr int kSample = 26;
constexpr int kGap = 18;
constexpr int kBaseLine = 4;  // of a text below the middle of its sample
constexpr std::size_t kMostIslands = 8;
constexpr std::size_t kMostVoltages = 3;

/// Puts entries one behind the other.
class Legend {
 public:
  Legend(int top, Picture& picture) : m_y(top + kLine / 2), m_picture(picture) {}

  int Bottom() const { return m_y + kLine / 2; }

  void AddLine(const std::string& classes, const std::string& text) {
    Element& element = Begin(classes, text);
    element.wires.push_back({{m_x, m_y}, {m_x + kSample, m_y}});
    End(element, text);
  }

  void AddDisc(const std::string& classes, const std::string& symbol, const std::string& text) {
    Element& element = Begin(classes, text);
    element.symbols.push_back(MakeSymbol(symbol, {m_x + kSample / 2, m_y}));
    End(element, text);
  }

 private:
  Element& Begin(const std::string& classes, const std::string& text) {
    if (m_x > kMargin && m_x + kSample + TextWidth(text) > kRight) {
      m_x = kMargin;
      m_y += kLine;
    }
    Element& element = m_picture.elements.emplace_back();
    element.id = fmt::format("legend-{}", m_count++);
    element.classes = "legend " + classes;
    element.title = text;
    return element;
  }

  void End(Element& element, const std::string& text) {
    element.labels.push_back(MakeLabel(text, {m_x + kSample + 5, m_y + kBaseLine}, Anchor::kStart));
    m_x += kSample + TextWidth(text) + kGap;
  }

  int m_x = kMargin;
  int m_y;
  int m_count = 0;
  Picture& m_picture;
};

/// "400 kV, 380 kV", or "110 to 150 kV" for many.
std::string VoltagesText(const std::set<float>& voltages) {
  if (voltages.size() > kMostVoltages) return fmt::format("{:g} to {:g} kV", *voltages.begin(), *voltages.rbegin());
  std::vector<std::string> texts;
  for (auto voltage = voltages.rbegin(); voltage != voltages.rend(); ++voltage) texts.push_back(VoltageText(*voltage));
  return fmt::format("{}", fmt::join(texts, ", "));
}

void AddVoltages(const Grid& grid, Legend& legend) {
  std::map<int, std::set<float>> voltagesOf;  // by tier
  for (const GridLine& line : grid.lines) voltagesOf[TierOf(line.voltage)].insert(line.voltage);
  for (const auto& [tier, voltages] : voltagesOf) legend.AddLine("line " + TierClass(tier), VoltagesText(voltages));
}

void AddIslands(const Grid& grid, Legend& legend) {
  std::map<int, int> stationsOf;  // by island
  for (const GridStation& station : grid.stations) ++stationsOf[station.island];
  std::vector<std::pair<int, int>> islands(stationsOf.begin(), stationsOf.end());
  std::stable_sort(islands.begin(), islands.end(), [](const auto& a, const auto& b) {
    return (a.first < 0) != (b.first < 0) ? b.first < 0 : a.second > b.second;
  });
  std::size_t shown = 0;
  for (const auto& [island, stations] : islands) {
    if (island >= 0 && ++shown > kMostIslands) continue;
    legend.AddDisc("on-map " + IslandClass(island), PlaceSymbol(kTiers / 2),
                   fmt::format("{}: {}", IslandText(island), tools::Counted(stations, "station")));
  }
}

}  // namespace

int DrawMapLegend(const Grid& grid, int top, Picture& picture) {
  Legend legend(top, picture);
  AddVoltages(grid, legend);
  AddIslands(grid, legend);
  const bool hasBorder =
      std::any_of(grid.stations.begin(), grid.stations.end(), [](const auto& each) { return each.linesBeyond > 0; });
  if (hasBorder) legend.AddDisc("on-map border", PlaceSymbol(kTiers / 2), "further lines that aren't shown");
  return legend.Bottom();
}

}  // namespace dtsdb::pictures::internal
