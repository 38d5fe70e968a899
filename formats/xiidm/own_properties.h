/// \file
/// Properties that the export writes where XIIDM has no place for what our tables hold, and that the import reads, so
/// that a model comes back as it was. Other programs carry them along.
#pragma once

#include <string_view>

#include "formats/xiidm/attributes.h"

namespace dtsdb::tools::xiidm {

struct OwnProperty {
  const char* name;
  Attribute attribute;
};

inline constexpr OwnProperty kOwnProperties[] = {
    {"dtsdb.vbase", kOwnVoltage},         // voltageLevel: the base voltage, which `nominalV` can't be
    {"dtsdb.zbr", kOwnZeroImpedance},     // switch: the identity of its zero-impedance branch
    {"dtsdb.zbr.p", kOwnZeroImpedanceP},  // its power
    {"dtsdb.zbr.q", kOwnZeroImpedanceQ},
    {"dtsdb.disconnects", kOwnDisconnects},  // switch: stands for no breaker, but for what is off or open at node2
    {"dtsdb.out", kOwnOut},                  // branch: it is out of service
    {"dtsdb.winding", kOwnWinding},          // twoWindingsTransformer: the winding of a larger one
    {"dtsdb.reference", kOwnReference},      // generator, load: a reference beside that of its level
};

/// voltageLevel: in front of a node's number, the name of a node.
inline constexpr const char* kOwnNodeName = "dtsdb.node.";

/// The name of one of our own properties.
constexpr const char* NameOf(Attribute attribute) {
  for (const OwnProperty& property : kOwnProperties) {
    if (property.attribute == attribute) return property.name;
  }
  return "";
}

}  // namespace dtsdb::tools::xiidm
