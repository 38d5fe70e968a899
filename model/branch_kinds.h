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
  static constexpr auto fromEnd = &CB::cb2;
  static constexpr auto toEnd = &CB::zcb2;
  static constexpr auto owner = &CB2::icb;
  static constexpr bool kMeasured = false;
};

template <>
struct BranchKind<LN> {
  using End = LN2;
  using Row = R_ND_LN2;
  static constexpr auto fromEnd = &LN::ln2;
  static constexpr auto toEnd = &LN::zln2;
  static constexpr auto owner = &LN2::iln;
  static constexpr bool kMeasured = true;
  static constexpr auto fromP = &LN::iana_p;
  static constexpr auto fromQ = &LN::iana_q;
  static constexpr auto toP = &LN::izana_p;
  static constexpr auto toQ = &LN::izana_q;
  static constexpr u32 out = 4;
  static constexpr u32 open1 = 1;
  static constexpr u32 open2 = 2;
};

template <>
struct BranchKind<DLN> {
  using End = DLN2;
  using Row = R_ND_DLN2;
  static constexpr auto fromEnd = &DLN::dln2;
  static constexpr auto toEnd = &DLN::zdln2;
  static constexpr auto owner = &DLN2::idln;
  static constexpr bool kMeasured = true;
  static constexpr auto fromP = &DLN::iana_p;
  static constexpr auto fromQ = &DLN::iana_q;
  static constexpr auto toP = &DLN::izana_p;
  static constexpr auto toQ = &DLN::izana_q;
  static constexpr u32 out = 4;
  static constexpr u32 open1 = 1;
  static constexpr u32 open2 = 2;
};

template <>
struct BranchKind<XF> {
  using End = XF2;
  using Row = R_ND_XF2;
  static constexpr auto fromEnd = &XF::xf2;
  static constexpr auto toEnd = &XF::zxf2;
  static constexpr auto owner = &XF2::ixf;
  static constexpr bool kMeasured = true;
  static constexpr auto fromP = &XF::iana_p;
  static constexpr auto fromQ = &XF::iana_q;
  static constexpr auto toP = &XF::izana_p;
  static constexpr auto toQ = &XF::izana_q;
  static constexpr u32 out = 1;
  static constexpr u32 open1 = 4;
  static constexpr u32 open2 = 8;
};

template <>
struct BranchKind<ZBR> {
  using End = ZBR2;
  using Row = R_ND_ZBR2;
  static constexpr auto fromEnd = &ZBR::zbr2;
  static constexpr auto toEnd = &ZBR::zzbr2;
  static constexpr auto owner = &ZBR2::izbr;
  static constexpr bool kMeasured = true;
  static constexpr auto fromP = &ZBR::iana_p;
  static constexpr auto fromQ = &ZBR::iana_q;
  static constexpr auto toP = &ZBR::iana_p;
  static constexpr auto toQ = &ZBR::iana_q;
  static constexpr u32 out = 1;
  static constexpr u32 open1 = 4;
  static constexpr u32 open2 = 16;
};

}  // namespace dtsdb
