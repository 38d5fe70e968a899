/// \file
/// CGMES profiles as a model (docs/formats.md has the mapping).
#pragma once

#include <string>
#include <vector>

#include "formats/cgmes/set.h"
#include "formats/import_options.h"
#include "formats/import_report.h"
#include "formats/reading_progress.h"
#include "model/dtsdb.h"

namespace dtsdb::tools::cgmes {

/// Fills the empty tables of `model` from a set. Returns what became of the objects. Throws Failure for a set without
/// connectivity nodes.
ImportReport ImportSet(const ProfileSet& set, const ImportOptions& options, DTSDB& model);

/// The same for the profiles in the files, folders and zip archives `paths`, read as one set (ReadSet).
ImportReport Import(const std::vector<std::string>& paths, const ImportOptions& options, DTSDB& model,
                    const ReadingProgress& progress = {});

}  // namespace dtsdb::tools::cgmes
