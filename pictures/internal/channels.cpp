#include "pictures/internal/channels.h"

#include <algorithm>
#include <cstdlib>
#include <numeric>

namespace dtsdb::pictures::internal {
namespace {

constexpr int kChannelMargin = 10;

bool IsStraight(const Connection& connection) {
  return connection.first.channel == connection.second.channel && connection.first.x == connection.second.x &&
         connection.first.fromAbove != connection.second.fromAbove;
}

}  // namespace

Channels::Channels(const std::vector<Connection>& connections, int channels, int left, int right)
    : m_tracks(connections.size()), m_used(static_cast<std::size_t>(channels)) {
  std::vector<std::size_t> order(connections.size());
  std::iota(order.begin(), order.end(), 0);
  // Wires to the right from the rightmost on, then wires to the left from the leftmost on: so they don't cross twice.
  std::stable_sort(order.begin(), order.end(), [&](std::size_t a, std::size_t b) {
    const Connection& one = connections[a];
    const Connection& other = connections[b];
    const bool oneGoesRight = one.second.x >= one.first.x;
    const bool otherGoesRight = other.second.x >= other.first.x;
    if (oneGoesRight != otherGoesRight) return oneGoesRight;
    return oneGoesRight ? one.first.x > other.first.x : one.first.x < other.first.x;
  });
  for (const std::size_t number : order) {
    const Connection& connection = connections[number];
    Tracks& tracks = m_tracks[number];
    if (IsStraight(connection)) continue;
    tracks.first = m_used[static_cast<std::size_t>(connection.first.channel)]++;
    if (connection.first.channel == connection.second.channel) continue;
    tracks.second = m_used[static_cast<std::size_t>(connection.second.channel)]++;
    const int twiceMiddle = connection.first.x + connection.second.x;
    tracks.lane = twiceMiddle < left + right ? -++m_leftLanes : ++m_rightLanes;
  }
}

int Channels::HeightOf(int channel) const {
  const int used = m_used[static_cast<std::size_t>(channel)];
  return used == 0 ? kChannelMargin : (used - 1) * kTrack + 2 * kChannelMargin;
}

Wire Channels::WireOf(std::size_t number, const Connection& connection, const std::vector<int>& tops, int left,
                      int right) const {
  const Tracks& tracks = m_tracks[number];
  const ChannelPin& first = connection.first;
  const ChannelPin& second = connection.second;
  if (tracks.first < 0) return {{first.x, first.y}, {second.x, second.y}};
  const auto yOf = [&](const ChannelPin& pin, int track) {
    return tops[static_cast<std::size_t>(pin.channel)] + kChannelMargin + track * kTrack;
  };
  const int y = yOf(first, tracks.first);
  if (tracks.lane == 0) return {{first.x, first.y}, {first.x, y}, {second.x, y}, {second.x, second.y}};
  const int end = yOf(second, tracks.second);
  const int lane = (tracks.lane < 0 ? left : right) + tracks.lane * kTrack;
  return {{first.x, first.y}, {first.x, y}, {lane, y}, {lane, end}, {second.x, end}, {second.x, second.y}};
}

}  // namespace dtsdb::pictures::internal
