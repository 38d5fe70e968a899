/// \file
/// CGMES profiles as a model (docs/formats.md has the mapping).
#pragma once

#include <string>
#include <vector>

#include "formats/import_options.h"
#include "formats/import_report.h"
#include "model/dtsdb.h"

namespace dtsdb::tools::cgmes {

/// Reads the profiles in the files, folders and zip archives `paths` as one set and fills the empty tables of `model`.
/// Returns what became of the objects. Throws Failure for what can't be read and for a set without connectivity nodes.
ImportReport Import(const std::vector<std::string>& paths, const ImportOptions& options, DTSDB& model);

}  // namespace dtsdb::tools::cgmes
