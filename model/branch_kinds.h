// Written by scripts/generate from the description in schema/: change it there.
/// \file
/// How the kinds of branch differ.
#pragma once

#include "model/records.h"

namespace dtsdb {

/// How branch class `Branch` differs from the other four: its end records, the relation that chains them on a node, the
/// fields that hold their numbers; of all but breakers the measurements that the ends take over and, in the `status`
/// word, the bits for out of service and for an open from end and to end.
template <class Branch>
struct BranchKind;

template <>
struct BranchKind<CB> {
  using End = CB2;
  using Row = R_ND_CB2;
  static constexpr auto kFromEnd = &CB::cb2;
  static constexpr auto kToEnd = &CB::zcb2;
  static constexpr auto kOwner = &CB2::icb;
  static constexpr bool kMeasured = false;
};

template <>
struct BranchKind<LN> {
  using End = LN2;
  using Row = R_ND_LN2;
  static constexpr auto kFromEnd = &LN::ln2;
  static constexpr auto kToEnd = &LN::zln2;
  static constexpr auto kOwner = &LN2::iln;
  static constexpr bool kMeasured = true;
  static constexpr auto kFromP = &LN::iana_p;
  static constexpr auto kFromQ = &LN::iana_q;
  static constexpr auto kToP = &LN::izana_p;
  static constexpr auto kToQ = &LN::izana_q;
  static constexpr u32 kOut = 4;
  static constexpr u32 kOpen1 = 1;
  static constexpr u32 kOpen2 = 2;
};

template <>
struct BranchKind<DLN> {
  using End = DLN2;
  using Row = R_ND_DLN2;
  static constexpr auto kFromEnd = &DLN::dln2;
  static constexpr auto kToEnd = &DLN::zdln2;
  static constexpr auto kOwner = &DLN2::idln;
  static constexpr bool kMeasured = true;
  static constexpr auto kFromP = &DLN::iana_p;
  static constexpr auto kFromQ = &DLN::iana_q;
  static constexpr auto kToP = &DLN::izana_p;
  static constexpr auto kToQ = &DLN::izana_q;
  static constexpr u32 kOut = 4;
  static constexpr u32 kOpen1 = 1;
  static constexpr u32 kOpen2 = 2;
};

template <>
struct BranchKind<XF> {
  using End = XF2;
  using Row = R_ND_XF2;
  static constexpr auto kFromEnd = &XF::xf2;
  static constexpr auto kToEnd = &XF::zxf2;
  static constexpr auto kOwner = &XF2::ixf;
  static constexpr bool kMeasured = true;
  static constexpr auto kFromP = &XF::iana_p;
  static constexpr auto kFromQ = &XF::iana_q;
  static constexpr auto kToP = &XF::izana_p;
  static constexpr auto kToQ = &XF::izana_q;
  static constexpr u32 kOut = 1;
  static constexpr u32 kOpen1 = 4;
  static constexpr u32 kOpen2 = 8;
};

template <>
struct BranchKind<ZBR> {
  using End = ZBR2;
  using Row = R_ND_ZBR2;
  static constexpr auto kFromEnd = &ZBR::zbr2;
  static constexpr auto kToEnd = &ZBR::zzbr2;
  static constexpr auto kOwner = &ZBR2::izbr;
  static constexpr bool kMeasured = true;
  static constexpr auto kFromP = &ZBR::iana_p;
  static constexpr auto kFromQ = &ZBR::iana_q;
  static constexpr auto kToP = &ZBR::iana_p;
  static constexpr auto kToQ = &ZBR::iana_q;
  static constexpr u32 kOut = 1;
  static constexpr u32 kOpen1 = 4;
  static constexpr u32 kOpen2 = 16;
};

}  // namespace dtsdb
