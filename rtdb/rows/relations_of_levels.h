// Written by scripts/generate from the description in schema/: change it there.
/// \file
/// Rows of the realtime database. The relations from a voltage level to its nodes and devices.
///
/// The columns lie as in the installation's tables. A `raw_` range, named after its offset in a 32-bit program, belongs
/// to other programs: an update of the row carries it along. A new row is all zero.
#pragma once

#include <span>

#include "rtdb/backend.h"
#include "rtdb/column_info.h"

namespace dtsdb {

/// Voltage level to its buses.
class r_kv_bus {
 public:
  char const* kv_id{};   ///< identity of the parent (validation)
  char const* bus_id{};  ///< identity of the child (validation)
  int4 ikv{};            ///< number of the parent record (validation)
  int4 ibus{};           ///< number of the child record (validation)
  int4 next{};           ///< next row of the parent's chain, -1 at the end (validation)
  int4 prev{};           ///< previous row of the parent's chain, -1 at the first row (validation)

  /// The table's name in the database, and its columns in order.
  static constexpr const char* kTableName = "r_kv_bus";
  static std::span<const ColumnInfo> Columns();
  TYPE_DESCRIPTOR((KEY(kv_id, INDEXED), KEY(bus_id, INDEXED), FIELD(ikv), FIELD(ibus), FIELD(next), FIELD(prev)));
};
static_assert(sizeof(void*) != 4 || sizeof(r_kv_bus) == 24, "the layout of r_kv_bus is fixed");

/// Voltage level to its breakers.
class r_kv_cb {
 public:
  char const* kv_id{};  ///< identity of the parent (validation)
  char const* cb_id{};  ///< identity of the child (validation)
  int4 ikv{};           ///< number of the parent record (validation)
  int4 icb{};           ///< number of the child record (validation)
  int4 next{};          ///< next row of the parent's chain, -1 at the end (validation)
  int4 prev{};          ///< previous row of the parent's chain, -1 at the first row (validation)

  /// The table's name in the database, and its columns in order.
  static constexpr const char* kTableName = "r_kv_cb";
  static std::span<const ColumnInfo> Columns();
  TYPE_DESCRIPTOR((KEY(kv_id, INDEXED), KEY(cb_id, INDEXED), FIELD(ikv), FIELD(icb), FIELD(next), FIELD(prev)));
};
static_assert(sizeof(void*) != 4 || sizeof(r_kv_cb) == 24, "the layout of r_kv_cb is fixed");

/// Voltage level to its capacitors and reactors.
class r_kv_cp {
 public:
  char const* kv_id{};  ///< identity of the parent (validation)
  char const* cp_id{};  ///< identity of the child (validation)
  int4 ikv{};           ///< number of the parent record (validation)
  int4 icp{};           ///< number of the child record (validation)
  int4 next{};          ///< next row of the parent's chain, -1 at the end (validation)
  int4 prev{};          ///< previous row of the parent's chain, -1 at the first row (validation)

  /// The table's name in the database, and its columns in order.
  static constexpr const char* kTableName = "r_kv_cp";
  static std::span<const ColumnInfo> Columns();
  TYPE_DESCRIPTOR((KEY(kv_id, INDEXED), KEY(cp_id, INDEXED), FIELD(ikv), FIELD(icp), FIELD(next), FIELD(prev)));
};
static_assert(sizeof(void*) != 4 || sizeof(r_kv_cp) == 24, "the layout of r_kv_cp is fixed");

/// Voltage level to its loads.
class r_kv_ld {
 public:
  char const* kv_id{};  ///< identity of the parent (validation)
  char const* ld_id{};  ///< identity of the child (validation)
  int4 ikv{};           ///< number of the parent record (validation)
  int4 ild{};           ///< number of the child record (validation)
  int4 next{};          ///< next row of the parent's chain, -1 at the end (validation)
  int4 prev{};          ///< previous row of the parent's chain, -1 at the first row (validation)

  /// The table's name in the database, and its columns in order.
  static constexpr const char* kTableName = "r_kv_ld";
  static std::span<const ColumnInfo> Columns();
  TYPE_DESCRIPTOR((KEY(kv_id, INDEXED), KEY(ld_id, INDEXED), FIELD(ikv), FIELD(ild), FIELD(next), FIELD(prev)));
};
static_assert(sizeof(void*) != 4 || sizeof(r_kv_ld) == 24, "the layout of r_kv_ld is fixed");

/// Voltage level to its nodes.
class r_kv_nd {
 public:
  char const* kv_id{};  ///< identity of the parent (validation)
  char const* nd_id{};  ///< identity of the child (validation)
  int4 ikv{};           ///< number of the parent record (validation)
  int4 ind{};           ///< number of the child record (validation)
  int4 next{};          ///< next row of the parent's chain, -1 at the end (validation)
  int4 prev{};          ///< previous row of the parent's chain, -1 at the first row (validation)

  /// The table's name in the database, and its columns in order.
  static constexpr const char* kTableName = "r_kv_nd";
  static std::span<const ColumnInfo> Columns();
  TYPE_DESCRIPTOR((KEY(kv_id, INDEXED), KEY(nd_id, INDEXED), FIELD(ikv), FIELD(ind), FIELD(next), FIELD(prev)));
};
static_assert(sizeof(void*) != 4 || sizeof(r_kv_nd) == 24, "the layout of r_kv_nd is fixed");

/// Voltage level to its units.
class r_kv_un {
 public:
  char const* kv_id{};  ///< identity of the parent (validation)
  char const* un_id{};  ///< identity of the child (validation)
  int4 ikv{};           ///< number of the parent record (validation)
  int4 iun{};           ///< number of the child record (validation)
  int4 next{};          ///< next row of the parent's chain, -1 at the end (validation)
  int4 prev{};          ///< previous row of the parent's chain, -1 at the first row (validation)

  /// The table's name in the database, and its columns in order.
  static constexpr const char* kTableName = "r_kv_un";
  static std::span<const ColumnInfo> Columns();
  TYPE_DESCRIPTOR((KEY(kv_id, INDEXED), KEY(un_id, INDEXED), FIELD(ikv), FIELD(iun), FIELD(next), FIELD(prev)));
};
static_assert(sizeof(void*) != 4 || sizeof(r_kv_un) == 24, "the layout of r_kv_un is fixed");

/// Voltage level to its zero-impedance branches.
class r_kv_zbr {
 public:
  char const* kv_id{};   ///< identity of the parent (validation)
  char const* zbr_id{};  ///< identity of the child (validation)
  int4 ikv{};            ///< number of the parent record (validation)
  int4 izbr{};           ///< number of the child record (validation)
  int4 next{};           ///< next row of the parent's chain, -1 at the end (validation)
  int4 prev{};           ///< previous row of the parent's chain, -1 at the first row (validation)

  /// The table's name in the database, and its columns in order.
  static constexpr const char* kTableName = "r_kv_zbr";
  static std::span<const ColumnInfo> Columns();
  TYPE_DESCRIPTOR((KEY(kv_id, INDEXED), KEY(zbr_id, INDEXED), FIELD(ikv), FIELD(izbr), FIELD(next), FIELD(prev)));
};
static_assert(sizeof(void*) != 4 || sizeof(r_kv_zbr) == 24, "the layout of r_kv_zbr is fixed");

}  // namespace dtsdb
