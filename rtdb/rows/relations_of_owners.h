// Written by scripts/generate from the description in schema/: change it there.
/// \file
/// Rows of the realtime database. The relations along the tree of owners down to voltage levels, lines and windings.
///
/// The columns lie as in the installation's tables. A `raw_` range, named after its offset in a 32-bit program, belongs
/// to other programs: an update of the row carries it along. A new row is all zero.
#pragma once

#include <span>

#include "rtdb/backend.h"
#include "rtdb/column_info.h"

namespace dtsdb {

/// Company to its districts.
class r_co_dv {
 public:
  char const* co_id{};  ///< identity of the parent (validation)
  char const* dv_id{};  ///< identity of the child (validation)
  int4 ico{};           ///< number of the parent record (validation)
  int4 idv{};           ///< number of the child record (validation)
  int4 next{};          ///< next row of the parent's chain, -1 at the end (validation)
  int4 prev{};          ///< previous row of the parent's chain, -1 at the first row (validation)

  /// The table's name in the database, and its columns in order.
  static constexpr const char* kTableName = "r_co_dv";
  static std::span<const ColumnInfo> Columns();
  TYPE_DESCRIPTOR((KEY(co_id, INDEXED), KEY(dv_id, INDEXED), FIELD(ico), FIELD(idv), FIELD(next), FIELD(prev)));
};
static_assert(sizeof(void*) != 4 || sizeof(r_co_dv) == 24, "the layout of r_co_dv is fixed");

/// District to its DC lines.
class r_dv_dln {
 public:
  char const* dv_id{};   ///< identity of the parent (validation)
  char const* dln_id{};  ///< identity of the child (validation)
  int4 idv{};            ///< number of the parent record (validation)
  int4 idln{};           ///< number of the child record (validation)
  int4 next{};           ///< next row of the parent's chain, -1 at the end (validation)
  int4 prev{};           ///< previous row of the parent's chain, -1 at the first row (validation)

  /// The table's name in the database, and its columns in order.
  static constexpr const char* kTableName = "r_dv_dln";
  static std::span<const ColumnInfo> Columns();
  TYPE_DESCRIPTOR((KEY(dv_id, INDEXED), KEY(dln_id, INDEXED), FIELD(idv), FIELD(idln), FIELD(next), FIELD(prev)));
};
static_assert(sizeof(void*) != 4 || sizeof(r_dv_dln) == 24, "the layout of r_dv_dln is fixed");

/// District to its AC lines.
class r_dv_ln {
 public:
  char const* dv_id{};  ///< identity of the parent (validation)
  char const* ln_id{};  ///< identity of the child (validation)
  int4 idv{};           ///< number of the parent record (validation)
  int4 iln{};           ///< number of the child record (validation)
  int4 next{};          ///< next row of the parent's chain, -1 at the end (validation)
  int4 prev{};          ///< previous row of the parent's chain, -1 at the first row (validation)

  /// The table's name in the database, and its columns in order.
  static constexpr const char* kTableName = "r_dv_ln";
  static std::span<const ColumnInfo> Columns();
  TYPE_DESCRIPTOR((KEY(dv_id, INDEXED), KEY(ln_id, INDEXED), FIELD(idv), FIELD(iln), FIELD(next), FIELD(prev)));
};
static_assert(sizeof(void*) != 4 || sizeof(r_dv_ln) == 24, "the layout of r_dv_ln is fixed");

/// District to its stations.
class r_dv_st {
 public:
  char const* dv_id{};  ///< identity of the parent (validation)
  char const* st_id{};  ///< identity of the child (validation)
  int4 idv{};           ///< number of the parent record (validation)
  int4 ist{};           ///< number of the child record (validation)
  int4 next{};          ///< next row of the parent's chain, -1 at the end (validation)
  int4 prev{};          ///< previous row of the parent's chain, -1 at the first row (validation)

  /// The table's name in the database, and its columns in order.
  static constexpr const char* kTableName = "r_dv_st";
  static std::span<const ColumnInfo> Columns();
  TYPE_DESCRIPTOR((KEY(dv_id, INDEXED), KEY(st_id, INDEXED), FIELD(idv), FIELD(ist), FIELD(next), FIELD(prev)));
};
static_assert(sizeof(void*) != 4 || sizeof(r_dv_st) == 24, "the layout of r_dv_st is fixed");

/// Station to its voltage levels.
class r_st_kv {
 public:
  char const* st_id{};  ///< identity of the parent (validation)
  char const* kv_id{};  ///< identity of the child (validation)
  int4 ist{};           ///< number of the parent record (validation)
  int4 ikv{};           ///< number of the child record (validation)
  int4 next{};          ///< next row of the parent's chain, -1 at the end (validation)
  int4 prev{};          ///< previous row of the parent's chain, -1 at the first row (validation)

  /// The table's name in the database, and its columns in order.
  static constexpr const char* kTableName = "r_st_kv";
  static std::span<const ColumnInfo> Columns();
  TYPE_DESCRIPTOR((KEY(st_id, INDEXED), KEY(kv_id, INDEXED), FIELD(ist), FIELD(ikv), FIELD(next), FIELD(prev)));
};
static_assert(sizeof(void*) != 4 || sizeof(r_st_kv) == 24, "the layout of r_st_kv is fixed");

/// Station to its transformer windings.
class r_st_xf {
 public:
  char const* st_id{};  ///< identity of the parent (validation)
  char const* xf_id{};  ///< identity of the child (validation)
  int4 ist{};           ///< number of the parent record (validation)
  int4 ixf{};           ///< number of the child record (validation)
  int4 next{};          ///< next row of the parent's chain, -1 at the end (validation)
  int4 prev{};          ///< previous row of the parent's chain, -1 at the first row (validation)

  /// The table's name in the database, and its columns in order.
  static constexpr const char* kTableName = "r_st_xf";
  static std::span<const ColumnInfo> Columns();
  TYPE_DESCRIPTOR((KEY(st_id, INDEXED), KEY(xf_id, INDEXED), FIELD(ist), FIELD(ixf), FIELD(next), FIELD(prev)));
};
static_assert(sizeof(void*) != 4 || sizeof(r_st_xf) == 24, "the layout of r_st_xf is fixed");

}  // namespace dtsdb
