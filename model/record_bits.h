/// \file
/// The bits of the records' status words, with the kinds of branch (model/branch_kinds.h).
#pragma once

#include "model/branch_kinds.h"

namespace dtsdb {

/// \name BS `status`
///@{
inline constexpr u32 BS_DEAD = 1;      ///< lies in no live island
inline constexpr u32 BS_ISOLATED = 2;  ///< not a proper section: the head of the dead ring, or a fragment
inline constexpr u32 BS_BROKEN = 32;   ///< fragment made for a branch end that is open
///@}

/// \name BS `flags`
///@{
inline constexpr u32 BS_BASE = 1;       ///< made by the first node pass, kept for the life of the work arrays
inline constexpr u32 BS_UNCLAIMED = 2;  ///< work mark: no node group has taken this section yet
///@}

/// \name BS `island` where it is no island number
///@{
inline constexpr i32 ISLAND_NOT_PLACED = -2;
inline constexpr i32 ISLAND_DEAD = -1;
///@}

/// \name ND `flags`
///@{
inline constexpr u32 ND_DEAD = 1;      ///< lies in a group that is no section
inline constexpr u32 ND_HAS_UN = 2;    ///< carries a generating unit
inline constexpr u32 ND_HAS_LD = 4;    ///< carries a load
inline constexpr u32 ND_HAS_CP = 8;    ///< carries a capacitor or reactor
inline constexpr u32 ND_HAS_BUS = 16;  ///< carries a physical bus
inline constexpr u32 ND_MARK = 64;     ///< work mark: not yet visited by the pass under way
///@}

/// \name ST `flag`: what stands in the station
///@{
inline constexpr u8 ST_HAS_UN = 1;
inline constexpr u8 ST_HAS_CP = 2;
inline constexpr u8 ST_HAS_XF = 4;
inline constexpr u8 ST_HAS_LD = 8;
inline constexpr u8 ST_HAS_CB = 16;
///@}

/// \name CB `flags`
///@{
inline constexpr u32 CB_BREAKER = 1;       ///< the breaker's type is a circuit breaker
inline constexpr u32 CB_DISCONNECTOR = 4;  ///< or a disconnector: exactly one of the two is set in a valid model
inline constexpr u32 CB_TYPES = CB_BREAKER | CB_DISCONNECTOR;
inline constexpr u32 CB_OPEN = 0x100;       ///< the breaker is open
inline constexpr u32 CB_READ_OPEN = 0x800;  ///< set by other programs: the realtime exchange reads the breaker as open
inline constexpr u32 CB_ZBR = 0x2000;       ///< a zero-impedance branch stands on the breaker
///@}

/// \name UN, LD, CP `status`
///@{
inline constexpr u32 SHUNT_OFF = 1;       ///< switched off
inline constexpr u32 SHUNT_ISOLATED = 4;  ///< isolated, worked out by the topology
inline constexpr u32 UN_REF_CHOSEN = 16;  ///< unit made the reference of its island by the system
///@}

/// UN, LD, CP, BUS `tp_status`: lies in a dead section.
inline constexpr u32 SHUNT_DEAD = 1;

/// \name CB, LN, XF, DLN, ZBR `tp_status`
///@{
inline constexpr u32 TP_END1_ISOLATED = 1;
inline constexpr u32 TP_END2_ISOLATED = 2;
inline constexpr u32 TP_BOTH_DEAD = 4;
///@}

/// ZBR `tp_status`: out of service together with the breaker that carries it, by the careful switching.
inline constexpr u32 ZBR_OUT_WITH_BREAKER = 0x100;

/// \name LN2, XF2, DLN2, ZBR2 `flags`
///@{
inline constexpr u32 END_IS_TO = 1;     ///< the to end; clear on the from end
inline constexpr u32 END_ISOLATED = 2;  ///< this end is isolated
///@}

/// LN `status`: the line's district is that of its to end only.
inline constexpr u32 LN_DISTRICT_OF_TO_END = 64;
/// DLN `status`: the line's district is that of its to end only.
inline constexpr u32 DLN_DISTRICT_OF_TO_END = 32;

}  // namespace dtsdb
