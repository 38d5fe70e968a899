#include "generate/arrangements.h"

#include <cstddef>
#include <limits>

namespace dtsdb::tools {
namespace {

constexpr int kAny = std::numeric_limits<int>::max();

using enum Point;
using enum SwitchKind;

// bus ----+----        I ----+------  CQ1-CQ0-CQ2  ------+---- II
//         Q1                 Q1                          Q1
//         Q0                 Q0                          Q0
//      circuit            circuit                     circuit
constexpr BaySwitch kPlainBay[] = {
    {"Q1", kDisconnector, kOwnBus, kInner},
    {"Q0", kBreaker, kInner, kCircuit},
};
constexpr Bay kPlainRow[] = {kPlainBay};

// I  ----+------------+----
// II ----|---+--------|---+----
//        Q1  Q2      CQ1  |
//        +-+-+        |  CQ2
//          Q0         +CQ0+
//       circuit
constexpr BaySwitch kDoubleBay[] = {
    {"Q1", kSelector, kBus1, kInner},
    {"Q2", kSelector, kBus2, kInner},
    {"Q0", kBreaker, kInner, kCircuit},
};
constexpr Bay kDoubleRow[] = {kDoubleBay};
constexpr BaySwitch kCoupler[] = {
    {"Q1", kDisconnector, kBus1, kInner},
    {"Q0", kBreaker, kInner, kOuter},
    {"Q2", kDisconnector, kOuter, kBus2},
};

// I --Q1-Q0--+--Q1-Q0--+--ZQ1-ZQ0-- II, a row of three breakers; the last may have but one circuit and two breakers
//            |         |
//         circuit   circuit
constexpr BaySwitch kFromBus[] = {
    {"Q1", kDisconnector, kBus1, kInner},
    {"Q0", kBreaker, kInner, kCircuit},
};
constexpr BaySwitch kFromPrevious[] = {
    {"Q1", kDisconnector, kPrevious, kInner},
    {"Q0", kBreaker, kInner, kCircuit},
};
constexpr BaySwitch kToBus[] = {
    {"Q1", kDisconnector, kPrevious, kInner},
    {"Q0", kBreaker, kInner, kBus2},
};
constexpr Bay kRowOfThree[] = {kFromBus, kFromPrevious};

// +--circuit--Q1-Q0--circuit--Q1-Q0--circuit--Q1-Q0--+
// +--------------------------------------------------+
constexpr BaySwitch kRingBay[] = {
    {"Q1", kDisconnector, kCircuit, kInner},
    {"Q0", kBreaker, kInner, kNext},
};
constexpr Bay kRingRow[] = {kRingBay};

constexpr std::array<ArrangementData, kArrangements> kData{{
    {"single", 1, kAny, 1, kPlainRow, {}, {}},
    {"sectioned", 3, kAny, 2, kPlainRow, {}, kCoupler},
    {"double", 3, kAny, 2, kDoubleRow, {}, kCoupler},
    {"breaker-and-a-half", 3, kAny, 2, kRowOfThree, kToBus, {}},
    {"ring", 3, 6, 0, kRingRow, {}, {}},
}};

// single, sectioned, double, breaker and a half, ring
constexpr std::array<ArrangementShares, kTiers> kUsual{{
    {0, 0, 15, 70, 15},   // 500 kV
    {5, 10, 60, 15, 10},  // 220 kV
    {35, 20, 30, 5, 10},  // 110 kV
    {60, 40, 0, 0, 0},    // 35 kV
    {70, 30, 0, 0, 0},    // 10 kV
}};

}  // namespace

const ArrangementData& DataOf(Arrangement arrangement) { return kData[static_cast<std::size_t>(arrangement)]; }

const ArrangementShares& UsualShares(Tier tier) { return kUsual[static_cast<std::size_t>(tier)]; }

}  // namespace dtsdb::tools
