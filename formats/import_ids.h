/// \file
/// Which object a record stands for, kept beside a model that was made of a grid in an exchange format.
#pragma once

#include <string>

#include "formats/import_report.h"
#include "formats/model_name.h"
#include "formats/station_positions.h"

namespace dtsdb::tools {

/// The file in which the objects of `model` are listed: its path followed by ".ids.csv".
std::string IdsPath(const ModelName& model);

/// Writes the identities and parts of `report` beside `model`, as CSV with the columns table, identity, mrid and name;
/// nothing where there are none. Throws Failure, and leaves what stood there, when that can't be done.
void WriteIds(const ImportReport& report, const ModelName& model);

/// Copies what WriteIds wrote beside `from` to its place beside `to`; nothing where there is no such file. Throws
/// Failure when that can't be done.
void CopyIds(const ModelName& from, const ModelName& to);

/// Reads what WriteIds wrote beside `model`; nothing where there is no such file. Throws Failure with the line of the
/// first fault.
ImportReport ReadIds(const ModelName& model);

/// The positions of stations that WriteIds wrote beside `model`. None where that file isn't there or can't be read.
StationPositions PositionsBeside(const ModelName& model);

}  // namespace dtsdb::tools
