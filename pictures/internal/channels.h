/// \file
/// The wires between the tiers of a station.
#pragma once

#include <cstddef>
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

/// From where to where a tier reaches.
struct Extent {
  int left = 0;
  int right = 0;
};

/// Gives each connection a track of its own in its channels, and one that leads past tiers a lane right beside these,
/// on the side that is nearer.
class Channels {
 public:
  Channels(const std::vector<Connection>& connections, const std::vector<Extent>& tiers);

  /// Height that channel `channel` needs.
  int HeightOf(int channel) const;
  /// How far lanes reach out of all tiers.
  int LeftWidth() const;
  int RightWidth() const;

  /// The wire of connection `number`, whose pins are where `connection` has them. `tops` are the upper edges of the
  /// channels, `left` is where the leftmost tier begins by now.
  Wire WireOf(std::size_t number, const Connection& connection, const std::vector<int>& tops, int left) const;

 private:
  struct Tracks {
    int first = -1;
    int second = -1;
    int lane = 0;  // its x
    bool toRight = false;
  };
  /// A lane from one channel to another.
  struct Lane {
    int x = 0;
    int top = 0;
    int bottom = 0;
  };

  void ChooseSides(const std::vector<Connection>& connections);
  std::vector<std::size_t> Order(const std::vector<Connection>& connections) const;
  void PutLanes(const std::vector<Connection>& connections, const std::vector<std::size_t>& order);
  bool IsFree(const Lane& lane, const std::vector<Connection>& connections) const;
  Extent Passed(const Connection& connection) const;

  std::vector<Extent> m_tiers;
  Extent m_all;
  std::vector<Tracks> m_tracks;
  std::vector<int> m_used;  // tracks by channel
  std::vector<Lane> m_lanes;
};

}  // namespace dtsdb::pictures::internal
