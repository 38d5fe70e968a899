/// \file
/// Reading breakers and injections from the realtime database, and writing the flows there.
#pragma once

#include "breakerflow/internal/network.h"

class dbDatabase;

namespace dtsdb::internal {

/// Fills nodes, breakers, their lists and the devices, all empty before, and ends the transaction.
void LoadFlowData(dbDatabase* db, const FlowNetwork& network, const FlowDevices& devices);

/// Writes the flows and classes of `breakers` into their rows, and commits.
void StoreFlows(dbDatabase* db, const QMap<int, cbBreaker>& breakers);

}  // namespace dtsdb::internal
