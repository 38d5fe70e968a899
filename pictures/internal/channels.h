/// \file
/// The wires between the tiers of a station.
#pragma once

#include <vector>

#include "pictures/picture.h"

namespace dtsdb::pictures::internal {

inline constexpr int kTrack = 12;  ///< from one wire in a channel to the next

/// Where a wire enters a channel: channel 0 is above the first tier, channel k below tier k - 1.
struct ChannelPin {
  int channel = 0;
  int x = 0;
  int y = 0;
  bool fromAbove = true;
};

/// A wire from one pin to another.
struct Connection {
  ChannelPin first;
  ChannelPin second;
};

/// Gives each connection a track of its own in its channels, and one that leads past a tier a lane beside all tiers, on
/// the side that is nearer.
class Channels {
 public:
  /// The tiers stand between `left` and `right`.
  Channels(const std::vector<Connection>& connections, int channels, int left, int right);

  /// Height that channel `channel` needs.
  int HeightOf(int channel) const;
  /// Width that the lanes on one side need.
  int LeftWidth() const { return m_leftLanes * kTrack; }
  int RightWidth() const { return m_rightLanes * kTrack; }

  /// The wire of connection `number`, whose pins are where `connection` has them. `tops` are the upper edges of the
  /// channels, `left` and `right` the edges of the tiers, beside which the lanes are.
  Wire WireOf(std::size_t number, const Connection& connection, const std::vector<int>& tops, int left,
              int right) const;

 private:
  struct Tracks {
    int first = -1;
    int second = -1;
    int lane = 0;  // below 0 on the left, above 0 on the right
  };
  std::vector<Tracks> m_tracks;
  std::vector<int> m_used;  // tracks by channel
  int m_leftLanes = 0;
  int m_rightLanes = 0;
};

}  // namespace dtsdb::pictures::internal
