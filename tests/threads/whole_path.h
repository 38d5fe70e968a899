/// \file
/// All that a control centre does with a model, on whichever thread calls it.
#pragma once

#include <QtGlobal>
#include <string>

#include "include/log_sink.h"

namespace dtsdb::test {

/// Makes a utility of its own, writes and reads it as text tables, validates it, works out its topology, follows up
/// some switching, computes the flows in a realtime database, reads that again, and writes an object file. All files
/// stand in `folder`, which is there. The log goes to `log`. Returns the bytes of the object file and the flows.
std::string WholePath(const std::string& folder, quint64 seed, const LogSink& log);

/// The same with no log.
std::string WholePath(const std::string& folder, quint64 seed);

}  // namespace dtsdb::test
