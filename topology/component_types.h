/// \file
/// The component changes that the topology knows: for each type code of TPTRACE the table, the bit that stands for
/// "open", "off" or "out of service", and the words that messages and the run log use.
#pragma once

#include <tuple>
#include <type_traits>

#include "model/record_bits.h"

namespace dtsdb {

/// One type code. `bit` set in `word` means open, switched off or out of service.
template <class Component>
struct ComponentType {
  using Record = Component;  ///< the record class of the component
  int code;                  ///< as it stands in the trace
  u32 Component::*word;      ///< the status word that has the bit
  u32 bit;                   ///< of the state
  /// What tpSetCompStatus writes behind an identity that the table doesn't have; nothing for "".
  const char* unknown;
  /// The event words of the run log for the bit set and the bit clear; breakers aren't logged.
  const char* whenSet = "";
  const char* whenClear = "";
  /// The change takes both ends of a branch out of service: the log then names both sections.
  bool bothEnds = false;
};

inline constexpr int kBreakerType = 1;     ///< a breaker that is open
inline constexpr int kZbrServiceType = 7;  ///< a zero-impedance branch out of service

/// The type codes in ascending order.
// Type 6, a transformer out of service, has no text for an unknown identity. Kept: K45.
inline constexpr std::tuple kComponentTypes{
    ComponentType<CB>{kBreakerType, &CB::flags, CB_OPEN, " not exists in cb table"},
    ComponentType<UN>{2, &UN::status, SHUNT_OFF, " not exists in un table", "REMOVE", "UNREMOVE"},
    ComponentType<LD>{3, &LD::status, SHUNT_OFF, " not exists in ld table", "REMOVE", "UNREMOVE"},
    ComponentType<CP>{4, &CP::status, SHUNT_OFF, " not exists in cp table", "REMOVE", "UNREMOVE"},
    ComponentType<LN>{5, &LN::status, BranchKind<LN>::kOut, " not exists in ln table", "REMOVE", "UNREMOVE", true},
    ComponentType<XF>{6, &XF::status, BranchKind<XF>::kOut, "", "REMOVE", "UNREMOVE", true},
    ComponentType<ZBR>{kZbrServiceType, &ZBR::status, BranchKind<ZBR>::kOut, " not exists in zbr table", "REMOVE",
                       "UNREMOVE", true},
    ComponentType<DLN>{8, &DLN::status, BranchKind<DLN>::kOut, " not exists in dln table", "REMOVE", "UNREMOVE", true},
    ComponentType<LN>{9, &LN::status, BranchKind<LN>::kOpen1, " not exists in ln table", "IBREAK", "UNIBREAK"},
    ComponentType<LN>{10, &LN::status, BranchKind<LN>::kOpen2, " not exists in ln table", "ZBREAK", "UNZBREAK"},
    ComponentType<DLN>{11, &DLN::status, BranchKind<DLN>::kOpen1, " not exists in dln table", "IBREAK", "UNIBREAK"},
    ComponentType<DLN>{12, &DLN::status, BranchKind<DLN>::kOpen2, " not exists in dln table", "ZBREAK", "UNZBREAK"},
    ComponentType<XF>{13, &XF::status, BranchKind<XF>::kOpen1, " not exists in xf table", "IBREAK", "UNIBREAK"},
    ComponentType<XF>{14, &XF::status, BranchKind<XF>::kOpen2, " not exists in xf table", "ZBREAK", "UNZBREAK"},
    ComponentType<ZBR>{15, &ZBR::status, BranchKind<ZBR>::kOpen1, " not exists in zbr table", "IBREAK", "UNIBREAK"},
    ComponentType<ZBR>{16, &ZBR::status, BranchKind<ZBR>::kOpen2, " not exists in zbr table", "ZBREAK", "UNZBREAK"},
};

/// Calls `visit` with the ComponentType of `code`. False, and no call, when there is none.
template <class Visit>
bool WithComponentType(int code, Visit visit) {
  const auto visitIfMeant = [&](const auto& type) {
    if (type.code != code) return false;
    visit(type);
    return true;
  };
  return std::apply([&](const auto&... types) { return (visitIfMeant(types) || ...); }, kComponentTypes);
}

/// All bits of one class of component that change the topology.
template <class Component>
constexpr u32 ComponentBits() {
  u32 bits = 0;
  const auto add = [&](const auto& type) {
    if constexpr (std::is_same_v<typename std::remove_cvref_t<decltype(type)>::Record, Component>) bits |= type.bit;
  };
  std::apply([&](const auto&... types) { (add(types), ...); }, kComponentTypes);
  return bits;
}

}  // namespace dtsdb
