// Written by scripts/generate from the description in schema/: change it there.
/// \file
/// Rows of the realtime database. The relations from a node to the branch ends on it.
///
/// The columns lie as in the installation's tables. A `raw_` range, named after its offset in a 32-bit program, belongs
/// to other programs: an update of the row carries it along. A new row is all zero.
#pragma once

#include <span>

#include "rtdb/backend.h"
#include "rtdb/column_info.h"

namespace dtsdb {

/// Node to the breaker ends on it.
class r_nd_cb2 {
 public:
  char const* nd_id{};   ///< identity of the parent (validation)
  char const* cb2_id{};  ///< identity of the child (validation)
  int4 ind{};            ///< number of the parent record (validation)
  int4 icb2{};           ///< number of the child record (validation)
  int4 next{};           ///< next row of the parent's chain, -1 at the end (validation)
  int4 prev{};           ///< previous row of the parent's chain, -1 at the first row (validation)

  /// The table's name in the database, and its columns in order.
  static constexpr const char* kTableName = "r_nd_cb2";
  static std::span<const ColumnInfo> Columns();
  TYPE_DESCRIPTOR((KEY(nd_id, INDEXED), KEY(cb2_id, INDEXED), FIELD(ind), FIELD(icb2), FIELD(next), FIELD(prev)));
};
static_assert(sizeof(void*) != 4 || sizeof(r_nd_cb2) == 24, "the layout of r_nd_cb2 is fixed");

/// Node to the DC line ends on it.
class r_nd_dln2 {
 public:
  char const* nd_id{};    ///< identity of the parent (validation)
  char const* dln2_id{};  ///< identity of the child (validation)
  int4 ind{};             ///< number of the parent record (validation)
  int4 idln2{};           ///< number of the child record (validation)
  int4 next{};            ///< next row of the parent's chain, -1 at the end (validation)
  int4 prev{};            ///< previous row of the parent's chain, -1 at the first row (validation)

  /// The table's name in the database, and its columns in order.
  static constexpr const char* kTableName = "r_nd_dln2";
  static std::span<const ColumnInfo> Columns();
  TYPE_DESCRIPTOR((KEY(nd_id, INDEXED), KEY(dln2_id, INDEXED), FIELD(ind), FIELD(idln2), FIELD(next), FIELD(prev)));
};
static_assert(sizeof(void*) != 4 || sizeof(r_nd_dln2) == 24, "the layout of r_nd_dln2 is fixed");

/// Node to the line ends on it.
class r_nd_ln2 {
 public:
  char const* nd_id{};   ///< identity of the parent (validation)
  char const* ln2_id{};  ///< identity of the child (validation)
  int4 ind{};            ///< number of the parent record (validation)
  int4 iln2{};           ///< number of the child record (validation)
  int4 next{};           ///< next row of the parent's chain, -1 at the end (validation)
  int4 prev{};           ///< previous row of the parent's chain, -1 at the first row (validation)

  /// The table's name in the database, and its columns in order.
  static constexpr const char* kTableName = "r_nd_ln2";
  static std::span<const ColumnInfo> Columns();
  TYPE_DESCRIPTOR((KEY(nd_id, INDEXED), KEY(ln2_id, INDEXED), FIELD(ind), FIELD(iln2), FIELD(next), FIELD(prev)));
};
static_assert(sizeof(void*) != 4 || sizeof(r_nd_ln2) == 24, "the layout of r_nd_ln2 is fixed");

/// Node to the winding ends on it.
class r_nd_xf2 {
 public:
  char const* nd_id{};   ///< identity of the parent (validation)
  char const* xf2_id{};  ///< identity of the child (validation)
  int4 ind{};            ///< number of the parent record (validation)
  int4 ixf2{};           ///< number of the child record (validation)
  int4 next{};           ///< next row of the parent's chain, -1 at the end (validation)
  int4 prev{};           ///< previous row of the parent's chain, -1 at the first row (validation)

  /// The table's name in the database, and its columns in order.
  static constexpr const char* kTableName = "r_nd_xf2";
  static std::span<const ColumnInfo> Columns();
  TYPE_DESCRIPTOR((KEY(nd_id, INDEXED), KEY(xf2_id, INDEXED), FIELD(ind), FIELD(ixf2), FIELD(next), FIELD(prev)));
};
static_assert(sizeof(void*) != 4 || sizeof(r_nd_xf2) == 24, "the layout of r_nd_xf2 is fixed");

/// Node to the zero-impedance branch ends on it.
class r_nd_zbr2 {
 public:
  char const* nd_id{};    ///< identity of the parent (validation)
  char const* zbr2_id{};  ///< identity of the child (validation)
  int4 ind{};             ///< number of the parent record (validation)
  int4 izbr2{};           ///< number of the child record (validation)
  int4 next{};            ///< next row of the parent's chain, -1 at the end (validation)
  int4 prev{};            ///< previous row of the parent's chain, -1 at the first row (validation)

  /// The table's name in the database, and its columns in order.
  static constexpr const char* kTableName = "r_nd_zbr2";
  static std::span<const ColumnInfo> Columns();
  TYPE_DESCRIPTOR((KEY(nd_id, INDEXED), KEY(zbr2_id, INDEXED), FIELD(ind), FIELD(izbr2), FIELD(next), FIELD(prev)));
};
static_assert(sizeof(void*) != 4 || sizeof(r_nd_zbr2) == 24, "the layout of r_nd_zbr2 is fixed");

}  // namespace dtsdb
