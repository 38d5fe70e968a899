#include "pictures/internal/channels.h"

#include <algorithm>
#include <cstdlib>
#include <iterator>
#include <limits>
#include <numeric>
#include <utility>

namespace dtsdb::pictures::internal {
namespace {

constexpr int kChannelMargin = 10;
constexpr int kFromPin = 6;  // of a lane from wires that leave tiers
constexpr int kLaneStep = 4;

bool IsStraight(const Connection& connection) {
  return connection.first.channel == connection.second.channel && connection.first.x == connection.second.x &&
         connection.first.fromAbove != connection.second.fromAbove;
}

bool HasLane(const Connection& connection) { return connection.first.channel != connection.second.channel; }

}  // namespace

Channels::Channels(const std::vector<Connection>& connections, const std::vector<Extent>& tiers)
    : m_tiers(tiers), m_tracks(connections.size()), m_used(tiers.size() + 1) {
  if (!tiers.empty()) m_all = tiers.front();
  for (const Extent& tier : tiers) m_all = {std::min(m_all.left, tier.left), std::max(m_all.right, tier.right)};
  ChooseSides(connections);
  const std::vector<std::size_t> order = Order(connections);
  for (const std::size_t number : order) {
    const Connection& connection = connections[number];
    if (!IsStraight(connection)) m_tracks[number].first = m_used[static_cast<std::size_t>(connection.first.channel)]++;
  }
  PutLanes(connections, order);
  std::vector<std::size_t> ends;
  std::copy_if(order.begin(), order.end(), std::back_inserter(ends),
               [&](std::size_t number) { return HasLane(connections[number]); });
  // Where lanes end it is the other way round: the wire of the pin nearest to the lane is the lowest.
  std::stable_sort(ends.begin(), ends.end(), [&](std::size_t a, std::size_t b) {
    const auto rank = [&](std::size_t number) {
      const int x = connections[number].second.x;
      return std::pair(!m_tracks[number].toRight, m_tracks[number].toRight ? x : -x);
    };
    return rank(a) < rank(b);
  });
  for (const std::size_t number : ends) {
    m_tracks[number].second = m_used[static_cast<std::size_t>(connections[number].second.channel)]++;
  }
}

/// The tiers that a connection leads past, as one.
Extent Channels::Passed(const Connection& connection) const {
  const auto [first, last] = std::minmax(connection.first.channel, connection.second.channel);
  Extent passed{std::numeric_limits<int>::max(), std::numeric_limits<int>::min()};
  for (int tier = first; tier < last; ++tier) {
    const Extent& extent = m_tiers[static_cast<std::size_t>(tier)];
    passed = {std::min(passed.left, extent.left), std::max(passed.right, extent.right)};
  }
  return passed;
}

void Channels::ChooseSides(const std::vector<Connection>& connections) {
  for (std::size_t i = 0; i < connections.size(); ++i) {
    const Connection& connection = connections[i];
    if (HasLane(connection)) {
      const Extent passed = Passed(connection);
      const auto way = [&](int x) { return std::abs(connection.first.x - x) + std::abs(connection.second.x - x); };
      m_tracks[i].toRight = way(passed.right) < way(passed.left);
    } else {
      m_tracks[i].toRight = connection.second.x >= connection.first.x;
    }
  }
}

/// Wires to the right from the rightmost on, then wires to the left from the leftmost on: so they don't cross twice.
std::vector<std::size_t> Channels::Order(const std::vector<Connection>& connections) const {
  std::vector<std::size_t> order(connections.size());
  std::iota(order.begin(), order.end(), std::size_t{0});
  std::stable_sort(order.begin(), order.end(), [&](std::size_t a, std::size_t b) {
    const auto rank = [&](std::size_t number) {
      const int x = connections[number].first.x;
      return std::pair(!m_tracks[number].toRight, m_tracks[number].toRight ? -x : x);
    };
    return rank(a) < rank(b);
  });
  return order;
}

/// The wire with the highest track gets the outermost lane.
void Channels::PutLanes(const std::vector<Connection>& connections, const std::vector<std::size_t>& order) {
  for (auto number = order.rbegin(); number != order.rend(); ++number) {
    const Connection& connection = connections[*number];
    if (!HasLane(connection)) continue;
    Tracks& tracks = m_tracks[*number];
    const Extent passed = Passed(connection);
    const auto [top, bottom] = std::minmax(connection.first.channel, connection.second.channel);
    Lane lane{tracks.toRight ? passed.right + kTrack : passed.left - kTrack, top, bottom};
    while (!IsFree(lane, connections)) lane.x += tracks.toRight ? kLaneStep : -kLaneStep;
    tracks.lane = lane.x;
    m_lanes.push_back(lane);
  }
}

bool Channels::IsFree(const Lane& lane, const std::vector<Connection>& connections) const {
  const auto isNear = [&](const ChannelPin& pin) {
    return pin.channel >= lane.top && pin.channel <= lane.bottom && std::abs(pin.x - lane.x) < kFromPin;
  };
  return std::none_of(m_lanes.begin(), m_lanes.end(),
                      [&](const Lane& other) {
                        return std::abs(other.x - lane.x) < kTrack && other.top <= lane.bottom &&
                               lane.top <= other.bottom;
                      }) &&
         std::none_of(connections.begin(), connections.end(), [&](const Connection& connection) {
           return isNear(connection.first) || isNear(connection.second);
         });
}

int Channels::HeightOf(int channel) const {
  const int used = m_used[static_cast<std::size_t>(channel)];
  return used == 0 ? kChannelMargin : (used - 1) * kTrack + 2 * kChannelMargin;
}

int Channels::LeftWidth() const {
  int width = 0;
  for (const Lane& lane : m_lanes) width = std::max(width, m_all.left - lane.x);
  return width;
}

int Channels::RightWidth() const {
  int width = 0;
  for (const Lane& lane : m_lanes) width = std::max(width, lane.x - m_all.right);
  return width;
}

Wire Channels::WireOf(std::size_t number, const Connection& connection, const std::vector<int>& tops, int left) const {
  const Tracks& tracks = m_tracks[number];
  const ChannelPin& first = connection.first;
  const ChannelPin& second = connection.second;
  if (tracks.first < 0) return {{first.x, first.y}, {second.x, second.y}};
  const auto yOf = [&](const ChannelPin& pin, int track) {
    return tops[static_cast<std::size_t>(pin.channel)] + kChannelMargin + track * kTrack;
  };
  const int y = yOf(first, tracks.first);
  if (tracks.second < 0) return {{first.x, first.y}, {first.x, y}, {second.x, y}, {second.x, second.y}};
  const int end = yOf(second, tracks.second);
  const int lane = tracks.lane + left - m_all.left;
  return {{first.x, first.y}, {first.x, y}, {lane, y}, {lane, end}, {second.x, end}, {second.x, second.y}};
}

}  // namespace dtsdb::pictures::internal
