#include "pictures/internal/tier_stack.h"

#include <algorithm>
#include <cstdlib>
#include <limits>
#include <utility>

#include "pictures/internal/transformer_drawing.h"

namespace dtsdb::pictures::internal {

constexpr int kMostTried = 100;  // windings that a tier is tried in line with

/// A column with a winding at the edge of a tier.
struct TierStack::Side {
  int x = 0;
  std::size_t transformer = 0;
  bool isNext = false;  ///< in the channel between the two tiers
};

TierStack::TierStack(const Station& station, TransformerPlan plan, bool flows)
    : m_plan(std::move(plan)), m_tierOf(station.levels.size(), -1) {
  for (std::size_t i = 0; i < station.levels.size(); ++i) {
    if (m_plan.IsStar(static_cast<int>(i))) continue;
    const StationLevel& level = station.levels[i];
    const WordingRules rules{{level.name.identity, station.name.identity}, flows};
    m_tierOf[i] = static_cast<int>(m_tiers.size());
    m_tiers.emplace_back(level, m_plan, i, rules);
  }
  for (std::size_t i = 0; i < m_tiers.size(); ++i) m_tiers[i].MoveTo(i == 0 ? 0 : BestOffset(i), 0);
  for (Transformer& transformer : m_plan.transformers) {
    std::vector<WindingEnd>& others = transformer.others;
    if (others.size() == 2 && ColumnOf(others[0]) > ColumnOf(others[1])) std::swap(others[0], others[1]);
  }
}

const GridFeeder& TierStack::FeederOf(const WindingEnd& end) const {
  const auto& feeders = m_tiers[static_cast<std::size_t>(TierOf(end.level))].Grid().feeders;
  return *std::find_if(feeders.begin(), feeders.end(),
                       [&](const GridFeeder& feeder) { return feeder.number == end.device; });
}

int TierStack::ColumnOf(const WindingEnd& end) const {
  return m_tiers[static_cast<std::size_t>(TierOf(end.level))].X(FeederOf(end).from.column);
}

/// Where a tier stands so that its wires meet those from above best: in line with one of them or half a step beside it,
/// or else half a step beside all.
int TierStack::BestOffset(std::size_t tier) {
  std::vector<Side> above;
  std::vector<Side> below;
  for (std::size_t i = 0; i < m_plan.transformers.size(); ++i) {
    const Transformer& transformer = m_plan.transformers[i];
    const int top = TierOf(transformer.primary.level);
    const bool isNext = top + 1 == static_cast<int>(tier);
    if (top < static_cast<int>(tier)) above.push_back({ColumnOf(transformer.primary), i, isNext});
    for (const WindingEnd& end : transformer.others) {
      if (TierOf(end.level) == static_cast<int>(tier)) below.push_back({ColumnOf(end), i, true});
    }
  }
  int best = m_tiers[tier - 1].Left() % kStep == 0 ? kStep / 2 : 0;
  int bestCost = std::numeric_limits<int>::max();
  int tried = 0;
  for (const Side& one : above) {
    for (const Side& other : below) {
      if (one.transformer != other.transformer || ++tried > kMostTried) continue;
      for (const int offset : {one.x - other.x, one.x - other.x + kStep / 2}) {
        const int cost = CostOf(offset, above, below);
        if (cost >= bestCost) continue;
        bestCost = cost;
        best = offset;
      }
    }
  }
  return best;
}

/// How far wires go sideways with this offset; no value where two of them would meet.
int TierStack::CostOf(int offset, const std::vector<Side>& above, const std::vector<Side>& below) {
  int cost = 0;
  for (const Side& one : above) {
    for (const Side& other : below) {
      const int distance = std::abs(other.x + offset - one.x);
      if (one.transformer == other.transformer) {
        cost += distance;
      } else if (one.isNext && distance < kStep / 2) {
        return std::numeric_limits<int>::max();
      }
    }
  }
  return cost;
}

std::vector<Connection> TierStack::Connections() const {
  const auto pinOf = [&](const WindingEnd& end, int aside) {
    const bool up = FeederOf(end).up;
    return ChannelPin{TierOf(end.level) + (up ? 0 : 1), ColumnOf(end) + aside, 0, !up};
  };
  std::vector<Connection> connections;
  for (const Transformer& transformer : m_plan.transformers) {
    for (std::size_t i = 0; i < transformer.others.size(); ++i) {
      const int aside = transformer.others.size() == 1 ? 0 : i == 0 ? -kAside : kAside;
      connections.push_back({pinOf(transformer.primary, aside), pinOf(transformer.others[i], 0)});
    }
  }
  return connections;
}

std::vector<int> TierStack::Place(const Channels& channels, int left, int top) {
  const int leftmost = Left();
  std::vector<int> tops = {top};
  int y = top + channels.HeightOf(0);
  for (std::size_t i = 0; i < m_tiers.size(); ++i) {
    m_tiers[i].MoveTo(m_tiers[i].Left() - leftmost + left, y);
    tops.push_back(m_tiers[i].Bottom());
    y = m_tiers[i].Bottom() + channels.HeightOf(static_cast<int>(i) + 1);
  }
  tops.push_back(y);
  return tops;
}

std::vector<Extent> TierStack::Extents() const {
  std::vector<Extent> extents;
  for (const Tier& tier : m_tiers) extents.push_back({tier.Left(), tier.Right()});
  return extents;
}

int TierStack::Left() const {
  int left = m_tiers.empty() ? 0 : m_tiers.front().Left();
  for (const Tier& tier : m_tiers) left = std::min(left, tier.Left());
  return left;
}

int TierStack::Right() const {
  int right = 0;
  for (const Tier& tier : m_tiers) right = std::max(right, tier.Right());
  return right;
}

}  // namespace dtsdb::pictures::internal
