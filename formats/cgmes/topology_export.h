/// \file
/// The topology of a model as CGMES profiles: TP, and the part of SV on topological islands.
#pragma once

#include <string>
#include <vector>

#include "formats/import_report.h"
#include "model/dtsdb.h"

namespace dtsdb::tools::cgmes {

/// What an export has written.
struct ExportedTopology {
  std::vector<std::string> files;  ///< their paths: TP, SV
  int nodes = 0;                   ///< topological nodes, those of a boundary set included
  int islands = 0;                 ///< live islands
  int withoutVoltage = 0;          ///< topological nodes without a base voltage, which the profile asks for
};

/// Writes the topology that a run has left in `tables` into the folder `folder`, which is made where there is none.
/// `objects` are those that the records stand for; without them all mRIDs are derived from the records. `created` is
/// the time that the files are of, as in 2022-06-16T23:30:00Z: the same model, state and time give the same bytes.
/// Throws Failure when it can't be written.
ExportedTopology ExportTopology(DTSDB& tables, const ImportReport& objects, const std::string& folder,
                                const std::string& created);

}  // namespace dtsdb::tools::cgmes
