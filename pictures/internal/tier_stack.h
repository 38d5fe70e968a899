/// \file
/// The tiers of a station, side by side with the wires between them.
#pragma once

#include <vector>

#include "pictures/internal/channels.h"
#include "pictures/internal/tier.h"
#include "pictures/internal/transformers.h"

namespace dtsdb::pictures::internal {

/// The levels of a station but its star points, moved sideways so that transformers stand in line where that is
/// possible.
class TierStack {
 public:
  /// The station must outlive this.
  TierStack(const Station& station, TransformerPlan plan, bool flows);

  std::vector<Tier>& Tiers() { return m_tiers; }
  const TransformerPlan& Plan() const { return m_plan; }
  /// The tier of a level; -1 for a star point.
  int TierOf(int level) const { return m_tierOf[static_cast<std::size_t>(level)]; }

  /// The wires of the transformers from their symbols to their other windings, in order; only `x` of the pins holds.
  std::vector<Connection> Connections() const;

  /// Gives the tiers their places below `top`, with the channels between them, at least at `left`. Returns the upper
  /// edges of the channels; the last one ends behind them.
  std::vector<int> Place(const Channels& channels, int left, int top);
  int Left() const;
  int Right() const;
  /// From where to where each tier reaches.
  std::vector<Extent> Extents() const;

 private:
  struct Side;
  const GridFeeder& FeederOf(const WindingEnd& end) const;
  int ColumnOf(const WindingEnd& end) const;
  int BestOffset(std::size_t tier);
  static int CostOf(int offset, const std::vector<Side>& above, const std::vector<Side>& below);

  TransformerPlan m_plan;
  std::vector<Tier> m_tiers;
  std::vector<int> m_tierOf;
};

}  // namespace dtsdb::pictures::internal
