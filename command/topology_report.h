/// \file
/// What a topology run found out, laid out as sheets.
#pragma once

#include "command/render.h"
#include "model/dtsdb.h"

namespace dtsdb::tools {

/// The results in `database` of the last full topology run: the sheets
///  - islands: the live islands, what they hold and their reference;
///  - sections: every bus section, live or dead, with the number of things on it;
///  - contents: what hangs on each section: nodes, buses, devices, ends of branches;
///  - dead: the nodes and equipment that are dead, isolated, switched off or out of service.
Report TopologyReport(DTSDB& database);

/// The sheet islands alone.
Sheet IslandSheet(DTSDB& database);

}  // namespace dtsdb::tools
