/// \file
/// Reading and writing a model by its name.
#pragma once

#include <optional>

#include "formats/import_report.h"
#include "formats/model_name.h"
#include "formats/reading_progress.h"
#include "model/dtsdb.h"

namespace dtsdb::tools {

/// Reads a model. Throws Failure with one line that names what is wrong and where. What became of a grid in an exchange
/// format is reported in `report`; while its files are read `progress` is called.
DTSDB LoadModel(const ModelName& name, ImportReport* report = nullptr, const ReadingProgress& progress = {});

/// Writes a model, in the form of ModelName::FormAsOutput unless `form` is given, which it can't be for a realtime
/// database. Throws Failure, and leaves what stood there, when that can't be done. A realtime database isn't replaced:
/// its rows are updated.
void SaveModel(DTSDB& database, const ModelName& name, std::optional<ModelForm> form = std::nullopt);

}  // namespace dtsdb::tools
