/// \file
/// Random utilities, for tests, benchmarks and trying things out.
#pragma once

#include <QtGlobal>
#include <optional>

#include "generate/arrangements.h"
#include "model/dtsdb.h"

namespace dtsdb::tools {

struct GeneratorOptions {
  int stations = 10;  ///< below 0 counts as 0
  quint64 seed = 1;
  /// On every voltage, in place of UsualShares. A level takes none of those that its number of circuits forbids, and a
  /// single busbar where no other is left.
  std::optional<ArrangementShares> arrangements{};
  int threeWindings = 70;  ///< percent of the stations with three voltages that join them by three windings each
  int dcLines = 10;        ///< percent of the stations of 220 kV and more that have a DC line to one before them
  int zeroImpedance = 10;  ///< percent of the closed couplers that carry a zero-impedance branch
};

/// Fills the input tables of the empty model `database` with a random utility that passes the validation without a
/// finding, and whose live parts are one island.
///
/// Stations stand twenty to a district. They have one to three voltages of 500, 220, 110, 35 and 10 kV, the higher ones
/// being rarer, joined by transformers with two or three windings. About 1.3 lines a station join those near each other
/// to one meshed network. Some switches are open, some lines and transformers out of service, some devices off.
///
/// The powers fit each other: what flows into the nodes that closed breakers join sums to zero, exactly, at every
/// voltage; lines and transformers lose a little. The measurements are the values. It is no power flow: how the power
/// spreads over meshes doesn't follow from voltages.
///
/// The same options give the same tables, on every platform. Cost: linear in the stations, but for sorting.
void GenerateUtility(DTSDB& database, const GeneratorOptions& options);

}  // namespace dtsdb::tools
