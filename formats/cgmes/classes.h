/// \file
/// The classes of CGMES and what becomes of their objects.
#pragma once

#include <span>
#include <string_view>

#include "formats/cgmes/properties.h"

namespace dtsdb::tools::cgmes {

/// What an object becomes.
enum class Role {
  kUnknown,  ///< nothing: no table has room for it
  kPart,     ///< part of what others become
  kCompany,
  kDistrict,
  kStation,
  kLevel,
  kBreaker,
  kDisconnector,
  kBus,
  kLine,
  kTransformer,
  kUnit,
  kTie,  ///< equivalent injection: load or unit, as the options have it
  kLoad,
  kShunt,
  kConverter,  ///< between AC and DC
  kAnalog,
  kDiscrete,
  kPoint,  ///< of a location on the map
};

/// How the objects of a class are mapped. The properties are those of the steady-state hypothesis, kPropertyCount for
/// none; their powers count into the equipment.
struct ClassRow {
  const char* name;
  Role role;
  const char* tables;  ///< that they become records of; empty for parts
  Property p = kPropertyCount;
  Property q = kPropertyCount;
  Property maxP = kPropertyCount;
  Property priority = kPropertyCount;
};

/// The classes that the import knows.
std::span<const ClassRow> Classes();

/// The row of a class; one with Role::kUnknown for any other.
const ClassRow& RowOfClass(std::string_view name);

}  // namespace dtsdb::tools::cgmes
