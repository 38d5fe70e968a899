/// \file
/// Looking into the maps of cbFlow.
#pragma once

#include "breakerflow/cbflow.h"

namespace dtsdb::internal {

/// The entry of `map` under `key`, null when there is none. It stays where it is until it is removed.
template <class Map>
typename Map::mapped_type* Find(Map& map, int key) {
  const auto found = map.find(key);
  return found == map.end() ? nullptr : &found.value();
}
template <class Map>
const typename Map::mapped_type* Find(const Map& map, int key) {
  const auto found = map.constFind(key);
  return found == map.constEnd() ? nullptr : &found.value();
}

/// The node at the other end of `breaker`.
inline int OtherEnd(const cbBreaker& breaker, int nd) { return breaker.ind != nd ? breaker.ind : breaker.iznd; }

}  // namespace dtsdb::internal
