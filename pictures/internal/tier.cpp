#include "pictures/internal/tier.h"

#include <algorithm>
#include <set>
#include <utility>

#include "pictures/internal/level_layout.h"
#include "pictures/internal/wording.h"

namespace dtsdb::pictures::internal {
namespace {

constexpr int kNarrowHalf = 8;       // of a column with wires only
constexpr int kSymbolHalf = 16;      // of one with a symbol
constexpr int kWithBranchHalf = 30;  // of one with a zero-impedance branch beside its breaker
constexpr int kLabelMargin = 8;
constexpr int kPlainSlot = 26;
constexpr int kSymbolSlot = 48;
constexpr int kLevelSlot = 56;  // with a switch on its upper row, whose label stands below it

int WidestOf(const std::vector<std::string>& lines, const Font& font) {
  int widest = 0;
  for (const std::string& line : lines) widest = std::max(widest, TextWidth(line, font));
  return widest;
}

/// Names one behind the other.
int WidthOf(const std::vector<std::string>& names) {
  int width = 0;
  for (const std::string& name : names) width += TextWidth(name, kBoldFont) + kLabelMargin;
  return width;
}

}  // namespace

/// What a column needs on both sides of its middle.
struct Tier::Half {
  int left = kNarrowHalf;
  int right = kNarrowHalf;

  void Need(int onLeft, int onRight) {
    left = std::max(left, onLeft);
    right = std::max(right, onRight);
  }
};

Tier::Tier(const StationLevel& level, const TransformerPlan& plan, std::size_t number, const WordingRules& rules)
    : m_level(&level), m_roles(plan.roles[number]), m_grid(LayOutLevel(LevelShape(level, plan.isUp[number]))) {
  FindWords(plan.names[number], rules);
  SizeColumns();
  SizeRows();
}

void Tier::FindWords(const std::vector<std::vector<std::string>>& names, const WordingRules& rules) {
  for (const StationSwitch& item : m_level->switches) {
    std::vector<std::string>& lines = m_words.ofSwitches.emplace_back();
    lines.push_back(ShortName(item.name.identity, rules.owners));
    if (rules.flows && ShowsFlow(item)) lines.push_back(ShortPowerText(*item.flow));
  }
  for (std::size_t i = 0; i < m_level->devices.size(); ++i) {
    const StationDevice& device = m_level->devices[i];
    std::vector<std::string>& lines = m_words.ofDevices.emplace_back(names[i]);
    if (!rules.flows || !device.flow) continue;
    for (const std::string& line : PowerTexts(*device.flow)) lines.push_back(line);
  }
  m_words.ofBars.resize(m_level->nodes.size());
  for (const StationBus& bus : m_level->buses) {
    m_words.ofBars[static_cast<std::size_t>(bus.node)].push_back(ShortName(bus.name.identity, rules.owners));
  }
}

void Tier::SizeColumns() {
  std::vector<Half> halves(static_cast<std::size_t>(m_grid.columns));
  for (const GridSwitch& item : m_grid.switches) {
    const auto number = static_cast<std::size_t>(item.number);
    const int label = WidestOf(m_words.ofSwitches[number], kSmallFont) + kLabelMargin;
    const bool hasBranch = !m_level->switches[number].branches.empty();
    Half& half = halves[static_cast<std::size_t>(item.at.column)];
    if (item.upright) {
      half.Need(hasBranch ? kWithBranchHalf : kSymbolHalf, kLabelGap + label);
    } else {
      half.Need(std::max(label / 2 + 1, kSymbolHalf), std::max(label / 2 + 1, kSymbolHalf));
    }
  }
  for (const GridFeeder& feeder : m_grid.feeders) {
    const int label = WidestOf(m_words.ofDevices[static_cast<std::size_t>(feeder.number)], kUsualFont) + kLabelMargin;
    Half& half = halves[static_cast<std::size_t>(feeder.from.column)];
    if (RoleOf(feeder.number) != Role::kAlone) {
      half.Need(kSymbolHalf + 8, kSymbolHalf + 8 + label);
    } else {
      half.Need(std::max(label / 2 + 1, kSymbolHalf + 8), std::max(label / 2 + 1, kSymbolHalf + 8));
    }
  }
  for (const GridBar& bar : m_grid.bars) {
    halves[static_cast<std::size_t>(bar.first)].Need(kNarrowHalf,
                                                     WidthOf(m_words.ofBars[static_cast<std::size_t>(bar.node)]));
  }
  PlaceColumns(halves);
}

/// Columns stand behind each other on their side, on multiples of kStep. Those above and below bars don't share one.
void Tier::PlaceColumns(const std::vector<Half>& halves) {
  int above = 0;  // where the next column begins
  int below = 0;
  std::set<int> taken;  // by columns on one side only
  for (std::size_t i = 0; i < halves.size(); ++i) {
    const ColumnSide side = m_grid.sides[i];
    const int begin = side == ColumnSide::kAbove ? above : side == ColumnSide::kBelow ? below : std::max(above, below);
    int middle = (begin + halves[i].left + kStep - 1) / kStep * kStep;
    while (taken.contains(middle)) middle += kStep;
    const int end = middle + halves[i].right;
    if (side == ColumnSide::kBoth) {
      taken.clear();
    } else {
      taken.insert(middle);
    }
    if (side != ColumnSide::kBelow) above = end;
    if (side != ColumnSide::kAbove) below = end;
    m_columns.push_back(middle);
  }
  m_width = std::max(above, below);
}

int Tier::RightmostOf(int first, int last) const {
  return m_x + *std::max_element(m_columns.begin() + first, m_columns.begin() + last + 1);
}

void Tier::SizeRows() {
  std::vector<int> gaps(static_cast<std::size_t>(m_grid.rows), kPlainSlot);
  for (const GridSwitch& item : m_grid.switches) {
    int& gap = gaps[static_cast<std::size_t>(item.at.row)];
    gap = std::max(gap, item.upright ? kSymbolSlot : kLevelSlot);
  }
  int above = 0;
  int below = 0;
  for (const GridFeeder& feeder : m_grid.feeders) {
    const auto number = static_cast<std::size_t>(feeder.number);
    const bool isBeside = m_roles[number] != Role::kAlone;  // its label stands beside the symbol, else behind it
    const bool isWinding = m_level->devices[number].kind == DeviceKind::kWinding;
    const int symbol = isWinding ? kWindingHeight : kDeviceHeight;
    const int lines = static_cast<int>(m_words.ofDevices[number].size());
    const int room =
        kFeederWire + (isBeside ? std::max(symbol, lines * kLineHeight) : symbol + 4 + lines * kLineHeight);
    int& side = feeder.up ? above : below;
    side = std::max(side, room + 4);
  }
  int y = std::max(above, kLineHeight + 8);
  for (int row = 0; row < m_grid.rows; ++row) {
    m_rows.push_back(y);
    y += row + 1 < m_grid.rows ? gaps[static_cast<std::size_t>(row)] : 0;
  }
  m_height = y + std::max(below, m_grid.rows > 0 && gaps.back() > kPlainSlot ? kLevelSlot : kLineHeight);
}

}  // namespace dtsdb::pictures::internal
