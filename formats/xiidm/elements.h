/// \file
/// The elements of XIIDM and what becomes of them.
#pragma once

#include <QStringView>

namespace dtsdb::tools::xiidm {

/// What an element is.
enum class Role {
  kUnknown,   ///< nothing that the import reads
  kWithout,   ///< an object that no table has room for
  kNetwork,   ///< a network in a network: its objects are those of the whole
  kTopology,  ///< the nodes or buses of a level
  kConnection,
  kSection,  ///< of a shunt compensator
  kModel,    ///< of one: its sections, or what is the same for all of them
  kProperty,
  kExtension,
  kStation,  ///< the first role of an object with a row
  kLevel,
  kBus,
  kBusbarSection,
  kSwitch,
  kGenerator,
  kBattery,
  kLoad,
  kShunt,
  kStaticVar,
  kBoundaryLine,
  kConverterStation,
  kConverter,
  kLine,
  kTieLine,
  kDcLine,
  kTwoWindings,
  kThreeWindings,
};

struct ElementRow {
  const char* name;
  Role role;
  const char* tables;  ///< what the model has of it, empty for nothing
  int ends;            ///< 1 for a device, else the number of numbered ends; of some fewer are given
  bool isInLevel;      ///< stands in a voltage level
};

/// True for what becomes an object.
constexpr bool IsObject(Role role) { return role == Role::kWithout || role >= Role::kStation; }

/// The row of an element's name; one with Role::kUnknown for a name that isn't known.
const ElementRow& RowOf(QStringView name);

}  // namespace dtsdb::tools::xiidm
