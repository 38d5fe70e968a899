/// \file
/// The arrangements of busbars, breakers and disconnectors found in stations, as data.
#pragma once

#include <array>
#include <span>

#include "generate/voltage_tiers.h"

namespace dtsdb::tools {

enum class Arrangement {
  kSingleBus,        ///< every circuit through one bay on the one busbar
  kSectionedBus,     ///< a busbar in two sections, joined by a coupler; a circuit can reach one of them
  kDoubleBus,        ///< every circuit on one of two busbars, joined by a coupler; it can be moved to the other
  kBreakerAndAHalf,  ///< two circuits share three breakers in a row between two busbars
  kRing,             ///< as many breakers as circuits, in a ring
};
inline constexpr int kArrangements = 5;

/// How often each arrangement is chosen against the others, by its number.
using ArrangementShares = std::array<int, kArrangements>;

/// Where a switch of a bay ends.
enum class Point {
  kBus1,
  kBus2,
  kOwnBus,    ///< circuits take turns with the busbars
  kInner,     ///< the bay's own node
  kOuter,     ///< a second one
  kCircuit,   ///< where the bay's circuit ends
  kPrevious,  ///< where the circuit before it ends
  kNext,      ///< where the one behind it ends; the first behind the last
};

enum class SwitchKind {
  kBreaker,
  kDisconnector,
  kSelector,  ///< a disconnector that is closed towards the circuit's own busbar only
};

/// A switch as each bay has it.
struct BaySwitch {
  const char* suffix;  ///< of its identity
  SwitchKind kind;
  Point from;
  Point to;
};

using Bay = std::span<const BaySwitch>;

struct ArrangementData {
  const char* name;  ///< as the command line spells it
  int leastCircuits;
  int mostCircuits;
  int busbars;               ///< 0 in a ring, where the node of circuit 0 serves for one
  std::span<const Bay> row;  ///< the bays of circuits 0, 1 and so on; the circuits behind them begin another row
  Bay rowEnd;                ///< behind the last circuit of a row; may be empty
  Bay coupler;               ///< once in a level; may be empty
};

const ArrangementData& DataOf(Arrangement arrangement);

/// A circuit hangs on one breaker alone, whose opening cuts it off; else another still holds it.
constexpr bool HangsOnOneBreaker(Arrangement arrangement) {
  return arrangement != Arrangement::kBreakerAndAHalf && arrangement != Arrangement::kRing;
}

/// How often each arrangement is found at a voltage, of 100.
const ArrangementShares& UsualShares(Tier tier);

}  // namespace dtsdb::tools
