/// \file
/// The attributes of XIIDM that the import reads.
#pragma once

#include <QStringView>
#include <cstdint>

namespace dtsdb::tools::xiidm {

/// What belongs to an end of equipment stands four times: for the one end of a device, and for the ends 1, 2 and 3.
enum Attribute : std::uint8_t {
  kId,
  kName,
  kCountry,
  kTso,
  kTags,
  kNominalV,
  kLowLimit,
  kHighLimit,
  kNode,
  kNode1,
  kNode2,
  kNode3,
  kBus,
  kBus1,
  kBus2,
  kBus3,
  kConnectableBus,
  kConnectableBus1,
  kConnectableBus2,
  kConnectableBus3,
  kLevel,
  kLevel1,
  kLevel2,
  kLevel3,
  kP,
  kP1,
  kP2,
  kP3,
  kQ,
  kQ1,
  kQ2,
  kQ3,
  kKind,
  kOpen,
  kRetained,
  kV,
  kAngle,
  kTargetP,
  kTargetQ,
  kMaxP,
  kP0,
  kQ0,
  kGenerationP,
  kGenerationQ,
  kSections,
  kSolvedSections,
  kBPerSection,
  kB,  ///< of a section, which counts for all sections up to it
  kBoundary1,
  kBoundary2,
  kConverter1,
  kConverter2,
  kOwnVoltage,  ///< the first of our own properties (own_properties.h)
  kOwnZeroImpedance,
  kOwnZeroImpedanceP,
  kOwnZeroImpedanceQ,
  kOwnDisconnects,
  kOwnOut,
  kOwnWinding,
  kOwnReference,
  kAttributeCount
};

/// The attribute of this name, in whatever version; kAttributeCount for one that the import doesn't read.
Attribute AttributeOf(QStringView name);

/// The attribute `first` of the end `side`, 0 for that of a device.
constexpr Attribute AtSide(Attribute first, int side) { return static_cast<Attribute>(first + side); }

}  // namespace dtsdb::tools::xiidm
