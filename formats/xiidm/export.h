/// \file
/// A model as an XIIDM file (docs/formats.md has the mapping).
#pragma once

#include <QIODevice>
#include <string>

#include "model/dtsdb.h"

namespace dtsdb::tools::xiidm {

/// Writes the XIIDM text of a model to `output`. The same model gives the same bytes. Throws Failure, with the record,
/// where one names a station, level or breaker that isn't there.
void WriteNetwork(const DTSDB& model, QIODevice& output);

/// The same into the file `path`, packed by gzip where its name ends in .gz. Throws Failure, and leaves what stood
/// there, when that can't be done, and where an XIIDM file stands that another program has written.
void Export(DTSDB& model, const std::string& path);

}  // namespace dtsdb::tools::xiidm
