/// \file
/// Random utilities, for tests, benchmarks and trying things out.
#pragma once

#include <QtGlobal>

#include "model/dtsdb.h"

namespace dtsdb::tools {

struct GeneratorOptions {
  int stations = 10;  ///< below 0 counts as 0
  quint64 seed = 1;
};

/// Fills the input tables of the empty model `database` with a random utility that passes the validation without a
/// finding.
///
/// Stations stand on a grid, twenty to a district, each with one or two voltage levels joined by transformer
/// windings; about 1.3 lines a station join neighbours of equal base voltage to one meshed network. Some switches
/// are open, some lines and windings out of service, some devices off. The measurements are believable one by one;
/// together they solve no power flow.
///
/// The same options give the same tables, on every platform. Cost: linear in the stations.
void GenerateUtility(DTSDB& database, const GeneratorOptions& options);

}  // namespace dtsdb::tools
