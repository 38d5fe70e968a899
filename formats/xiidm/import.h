/// \file
/// An XIIDM file as a model (docs/formats.md has the mapping).
#pragma once

#include <filesystem>

#include "formats/import_options.h"
#include "formats/import_report.h"
#include "formats/reading_progress.h"
#include "formats/xiidm/network.h"
#include "model/dtsdb.h"

namespace dtsdb::tools::xiidm {

/// True for a file of XIIDM, packed by gzip or not, seen from its beginning.
bool IsNetworkFile(const std::filesystem::path& file);

/// True for such a file that our export hasn't written.
bool IsOfOtherProgram(const std::filesystem::path& file);

/// Fills the empty tables of `model` from a network. Returns what became of the objects. Throws Failure, with file,
/// line and id, for a reference to what isn't there.
ImportReport ImportNetwork(const Network& network, const ImportOptions& options, DTSDB& model);

/// The same for the file `file` (ReadNetwork); while it is read `progress` is called.
ImportReport Import(const std::filesystem::path& file, const ImportOptions& options, DTSDB& model,
                    const ReadingProgress& progress = {});

}  // namespace dtsdb::tools::xiidm
