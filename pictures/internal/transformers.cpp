#include "pictures/internal/transformers.h"

#include <algorithm>
#include <map>

#include "pictures/internal/place.h"
#include "pictures/internal/wording.h"

namespace dtsdb::pictures::internal {
namespace {

using EndsOfWinding = std::map<QString, std::vector<WindingEnd>>;

EndsOfWinding EndsOf(const Station& station) {
  EndsOfWinding ends;
  for (std::size_t level = 0; level < station.levels.size(); ++level) {
    const std::vector<StationDevice>& devices = station.levels[level].devices;
    for (std::size_t device = 0; device < devices.size(); ++device) {
      if (devices[device].kind != DeviceKind::kWinding) continue;
      ends[devices[device].name.id].push_back({static_cast<int>(level), static_cast<int>(device)});
    }
  }
  return ends;
}

/// A level of one node on which three windings end and nothing else but a bus.
bool LooksLikeStar(const StationLevel& level) {
  return level.nodes.size() == 1 && level.switches.empty() && level.buses.size() <= 1 && level.devices.size() == 3 &&
         std::all_of(level.devices.begin(), level.devices.end(),
                     [](const StationDevice& device) { return device.kind == DeviceKind::kWinding; });
}

}  // namespace

TransformerPlan::TransformerPlan(const Station& station) : isStar(station.levels.size()) {
  for (const StationLevel& level : station.levels) {
    roles.emplace_back(level.devices.size(), Role::kAlone);
    isUp.emplace_back(level.devices.size());
  }
  FindTransformers(station);
  for (const Transformer& transformer : transformers) {
    roles[Place(transformer.primary.level)][Place(transformer.primary.device)] = Role::kPrimary;
    for (const WindingEnd& end : transformer.others) {
      roles[Place(end.level)][Place(end.device)] = Role::kSecondary;
      isUp[Place(end.level)][Place(end.device)] = end.level > transformer.primary.level;
    }
  }
  NameDevices(station);
  if (station.levels.empty()) return;
  for (std::size_t device = 0; device < station.levels[0].devices.size(); ++device) {
    const DeviceKind kind = station.levels[0].devices[device].kind;
    if (kind == DeviceKind::kLine || kind == DeviceKind::kDcLine) isUp[0][device] = true;
  }
}

/// Star points with their three windings, then what joins two levels.
void TransformerPlan::FindTransformers(const Station& station) {
  const EndsOfWinding ends = EndsOf(station);
  for (std::size_t level = 0; level < station.levels.size(); ++level) {
    if (!LooksLikeStar(station.levels[level])) continue;
    std::vector<WindingEnd> far;
    for (const StationDevice& device : station.levels[level].devices) {
      for (const WindingEnd& end : ends.at(device.name.id)) {
        if (end.level != static_cast<int>(level) && !LooksLikeStar(station.levels[Place(end.level)]))
          far.push_back(end);
      }
    }
    if (far.size() != 3) continue;
    std::stable_sort(far.begin(), far.end(),
                     [](const WindingEnd& a, const WindingEnd& b) { return a.level < b.level; });
    isStar[level] = true;
    transformers.push_back({far[0], {far[1], far[2]}, static_cast<int>(level)});
  }
  for (const auto& [id, both] : ends) {
    const bool isWhole = both.size() == 2 && !IsStar(both[0].level) && !IsStar(both[1].level);
    if (isWhole) transformers.push_back({both[0], {both[1]}, -1});
  }
}

/// Three windings are named at the primary one.
void TransformerPlan::NameDevices(const Station& station) {
  for (std::size_t level = 0; level < station.levels.size(); ++level) {
    std::vector<std::vector<std::string>>& ofLevel = names.emplace_back();
    for (const StationDevice& device : station.levels[level].devices) ofLevel.push_back(Wrapped(device.name.identity));
  }
  for (const Transformer& transformer : transformers) {
    std::vector<std::string>& primary = names[Place(transformer.primary.level)][Place(transformer.primary.device)];
    for (const WindingEnd& end : transformer.others) {
      std::vector<std::string>& other = names[Place(end.level)][Place(end.device)];
      const StationDevice& device = station.levels[Place(end.level)].devices[Place(end.device)];
      if (transformer.star >= 0) primary.push_back(ShortName(device.name.identity, {station.name.identity}));
      other.clear();
    }
  }
}

}  // namespace dtsdb::pictures::internal
