/// \file
/// The exchange of a model that is to be validated, or has been, with the realtime database.
#pragma once

#include "model/dtsdb.h"

namespace dtsdb::internal {

/// Loads the sixteen input tables in one transaction. Without a database, or a model, nothing happens.
void ReadInput(DTSDB* model, dbDatabase* db);

/// Stores all but the measurements and what the topology makes, and commits.
void WriteValidated(DTSDB* model, dbDatabase* db);

}  // namespace dtsdb::internal
