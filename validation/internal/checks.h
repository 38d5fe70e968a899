/// \file
/// The checks of a run, in families of records that are checked alike.
///
/// Each ties the records of its table to their parents (but for zero-impedance branches, which name none), walks them
/// in logical order and reports what it finds. Reads the input tables; writes the records' numbers, the relation of
/// the table, and for devices the node graph and the marks of stations. False: a table takes no more rows, and the
/// last error is set; the run ends.
#pragma once

#include "validation/internal/row_checks.h"

namespace dtsdb::internal {

// The administrative tree: hierarchy_checks.cpp

/// Companies too.
bool CheckDistricts(RowChecks& checks);
bool CheckStations(RowChecks& checks);
bool CheckLevels(RowChecks& checks);

// Devices on one node: shunt_checks.cpp

bool CheckLoads(RowChecks& checks);
bool CheckUnits(RowChecks& checks);
bool CheckCapacitors(RowChecks& checks);
bool CheckBuses(RowChecks& checks);

// Branches inside a station: branch_checks.cpp

bool CheckBreakers(RowChecks& checks);
bool CheckZbrs(RowChecks& checks);
bool CheckWindings(RowChecks& checks);

// Lines between stations: line_checks.cpp

bool CheckLines(RowChecks& checks);
bool CheckDcLines(RowChecks& checks);

}  // namespace dtsdb::internal
