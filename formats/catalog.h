/// \file
/// The tables of a model by name.
#pragma once

#include <string>
#include <vector>

#include "model/table_info.h"

namespace dtsdb::tools {

/// The names of all tables, in the order of their kind codes.
std::vector<std::string> TableNames();

/// The table called `name`, KIND_NONE when there is none.
TableKind FindTable(const std::string& name);

/// The same for a name that a user gave; upper and lower case count as equal. A Failure of usage with the nearest
/// names when there is no such table.
TableKind NamedTable(const std::string& name);

}  // namespace dtsdb::tools
