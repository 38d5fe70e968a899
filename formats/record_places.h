/// \file
/// Which stations and voltage levels a record belongs to.
#pragma once

#include <QString>
#include <vector>

#include "model/dtsdb.h"
#include "model/table_kinds.h"

namespace dtsdb::tools {

/// The stations and voltage levels to which a record belongs, by what it names itself, or through the record that it is
/// an end or a row of. Before a validation the latter lead nowhere. Identities are raw bytes. A branch belongs to the
/// places of both its ends, the one of its from end first; what lies in no station, such as a company, to none.
struct RecordPlaces {
  std::vector<QString> stations;
  std::vector<QString> levels;
};

/// The places of a record of table `kind`.
RecordPlaces PlacesOf(DTSDB& database, TableKind kind, const void* record);

}  // namespace dtsdb::tools
