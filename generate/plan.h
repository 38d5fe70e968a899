/// \file
/// A utility while it is being thought out: plain numbers, before names and rows are made from them.
///
/// Powers are whole numbers of eighths of a MW or Mvar. Single precision holds such values and their sums exactly, so
/// what balances here balances in the model to the last bit.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "generate/arrangements.h"
#include "generate/voltage_tiers.h"

namespace dtsdb::tools {

inline constexpr int kEighths = 8;

/// Numbers of levels, points and the like, as the vectors take them.
constexpr std::size_t Index(int number) { return static_cast<std::size_t>(number); }

/// Eighths of a MW and of a Mvar.
struct Power {
  int64_t p = 0;
  int64_t q = 0;

  Power& operator+=(const Power& other) { return p += other.p, q += other.q, *this; }
  Power& operator-=(const Power& other) { return p -= other.p, q -= other.q, *this; }
  friend Power operator+(Power one, const Power& other) { return one += other; }
  friend Power operator-(Power one, const Power& other) { return one -= other; }
};

/// A circuit of a level: where one branch ends or one device stands.
struct CircuitEnd {
  int level = -1;
  int circuit = -1;
};

struct Level {
  int station = 0;
  Tier tier = Tier::k10;
  /// Its circuits are the star points of transformers with three windings; there are no busbars.
  bool isStar = false;
  /// It has lines or units; else it feeds loads only, and may go dead alone.
  bool isGrid = false;
  int circuits = 0;

  Arrangement arrangement = Arrangement::kSingleBus;
  bool couplerOpen = false;
  bool couplerHasZbr = false;
  int openCircuit = -1;  ///< whose breaker is open, -1 for none

  int voltage = 1000;  ///< in thousandths of the base voltage
  int angle = 0;       ///< in tenths of a degree
};

struct Station {
  int firstLevel = 0;
  int levels = 0;        ///< the highest voltage first, star points last
  int transformers = 0;  ///< so far
};

enum class DeviceKind { kUnit, kLoad, kCapacitor, kConverter };

/// What stands on a circuit. The power of a unit is what it gives, of all others what they take.
struct Device {
  DeviceKind kind = DeviceKind::kLoad;
  CircuitEnd at;
  bool isOff = false;
  bool isReference = false;
  int size = 0;  ///< of a unit: its greatest output in MW
  Power power{};
};

enum class BranchState { kIn, kOut, kFromOpen, kToOpen };

/// A line or winding.
struct Branch {
  CircuitEnd from;
  CircuitEnd to;
  BranchState state = BranchState::kIn;
  int transformer = -1;  ///< of a winding; -1 for a line
  int parallel = 0;      ///< of a line: the number of those before it between the same stations
  Power in{};            ///< into it at the from end
  Power out{};           ///< out of it at the to end
};

struct Transformer {
  int station = 0;
  int number = 0;  ///< in its station, from 1
  int firstBranch = 0;
  int windings = 1;  ///< 1, or 3 that meet in a star point
};

/// A DC line. What its converters take is in two devices, one on the circuit of either end.
struct DcLine {
  int fromConverter = 0;
  int toConverter = 0;
};

struct Plan {
  std::vector<Station> stations;
  std::vector<Level> levels;
  std::vector<Device> devices;
  std::vector<Branch> branches;
  std::vector<Transformer> transformers;
  std::vector<DcLine> dcLines;
  /// Of each level, where in `points` those of its busbars, or star points, begin.
  std::vector<int> firstPoint;
  /// Of each point: it is part of the network that the reference unit feeds.
  std::vector<char> isLive;

  std::size_t PointCount() const { return isLive.size(); }

  /// A level's coupler is open, and so it has two points.
  static bool IsSplit(const Level& level) { return !level.isStar && level.couplerOpen; }
  /// The circuit's breaker is open and leaves it without connection.
  static bool IsCutOff(const Level& level, int circuit) {
    return circuit == level.openCircuit && HangsOnOneBreaker(level.arrangement);
  }

  /// The electrical point of `end` as the switches stand: circuits that closed breakers join are one point. -1 where
  /// it is cut off.
  int PointOf(const CircuitEnd& end) const;
  /// The point that `branch` connects at this end, -1 where it or the circuit is open.
  int FromPoint(const Branch& branch) const;
  int ToPoint(const Branch& branch) const;
  bool IsLive(const CircuitEnd& end) const;
};

}  // namespace dtsdb::tools
