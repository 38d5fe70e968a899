// Written by scripts/generate from the description in schema/: change it there.
/// \file
/// Rows of the realtime database. The two ends of each branch, which join it to its nodes.
///
/// The columns lie as in the installation's tables. A `raw_` range, named after its offset in a 32-bit program, belongs
/// to other programs: an update of the row carries it along. A new row is all zero.
#pragma once

#include <span>

#include "rtdb/backend.h"
#include "rtdb/column_info.h"

namespace dtsdb {

/// End of a breaker.
class cb2 {
 public:
  char const* id{};  ///< breaker identity plus end suffix (validation)
  int4 icb{};        ///< number of the owning CB (validation)
  int4 r_nd_cb2{};   ///< number of the R_ND_CB2 row (validation)

  /// The table's name in the database, and its columns in order.
  static constexpr const char* kTableName = "cb2";
  static std::span<const ColumnInfo> Columns();
  TYPE_DESCRIPTOR((KEY(id, INDEXED), FIELD(icb), FIELD(r_nd_cb2)));
};
static_assert(sizeof(void*) != 4 || sizeof(cb2) == 12, "the layout of cb2 is fixed");

/// End of an AC line.
class ln2 {
 public:
  char const* id{};  ///< branch identity plus end suffix (validation)
  real4 p{};         ///< flow at this end, in MW
  real4 q{};         ///< flow at this end, in Mvar
  real4 i{};         ///< current at this end, in A
  int4 iana_p{};     ///< ANALOG index of the end P (validation)
  int4 iana_q{};     ///< ANALOG index of the end Q (validation)
  int4 iln{};        ///< number of the owning branch record (validation)
  nat4 flags{};      ///< bit 1: 0 from end, 1 to end; bit 2: this end is isolated (validation, topology)
  int4 r_nd{};       ///< number of the R_ND row of this end (validation)

  /// The table's name in the database, and its columns in order.
  static constexpr const char* kTableName = "ln2";
  static std::span<const ColumnInfo> Columns();
  TYPE_DESCRIPTOR((KEY(id, INDEXED), FIELD(p), FIELD(q), FIELD(i), FIELD(iana_p), FIELD(iana_q), FIELD(iln),
                   FIELD(flags), FIELD(r_nd)));
};
static_assert(sizeof(void*) != 4 || sizeof(ln2) == 36, "the layout of ln2 is fixed");

/// End of a DC line.
class dln2 {
 public:
  char const* id{};  ///< branch identity plus end suffix (validation)
  real4 p{};         ///< flow at this end, in MW
  real4 q{};         ///< flow at this end, in Mvar
  real4 i{};         ///< current at this end, in A
  int4 iana_p{};     ///< ANALOG index of the end P (validation)
  int4 iana_q{};     ///< ANALOG index of the end Q (validation)
  int4 idln{};       ///< number of the owning branch record (validation)
  nat4 flags{};      ///< bit 1: 0 from end, 1 to end; bit 2: this end is isolated (validation, topology)
  int4 r_nd{};       ///< number of the R_ND row of this end (validation)

  /// The table's name in the database, and its columns in order.
  static constexpr const char* kTableName = "dln2";
  static std::span<const ColumnInfo> Columns();
  TYPE_DESCRIPTOR((KEY(id, INDEXED), FIELD(p), FIELD(q), FIELD(i), FIELD(iana_p), FIELD(iana_q), FIELD(idln),
                   FIELD(flags), FIELD(r_nd)));
};
static_assert(sizeof(void*) != 4 || sizeof(dln2) == 36, "the layout of dln2 is fixed");

/// End of a transformer winding.
class xf2 {
 public:
  char const* id{};  ///< branch identity plus end suffix (validation)
  real4 p{};         ///< flow at this end, in MW
  real4 q{};         ///< flow at this end, in Mvar
  real4 i{};         ///< current at this end, in A
  int4 iana_p{};     ///< ANALOG index of the end P (validation)
  int4 iana_q{};     ///< ANALOG index of the end Q (validation)
  int4 ixf{};        ///< number of the owning branch record (validation)
  nat4 flags{};      ///< bit 1: 0 from end, 1 to end; bit 2: this end is isolated (validation, topology)
  int4 r_nd{};       ///< number of the R_ND row of this end (validation)

  /// The table's name in the database, and its columns in order.
  static constexpr const char* kTableName = "xf2";
  static std::span<const ColumnInfo> Columns();
  TYPE_DESCRIPTOR((KEY(id, INDEXED), FIELD(p), FIELD(q), FIELD(i), FIELD(iana_p), FIELD(iana_q), FIELD(ixf),
                   FIELD(flags), FIELD(r_nd)));
};
static_assert(sizeof(void*) != 4 || sizeof(xf2) == 36, "the layout of xf2 is fixed");

/// End of a zero-impedance branch.
class zbr2 {
 public:
  char const* id{};  ///< branch identity plus end suffix (validation)
  real4 p{};         ///< flow at this end, in MW
  real4 q{};         ///< flow at this end, in Mvar
  real4 i{};         ///< current at this end, in A
  int4 iana_p{};     ///< ANALOG index of the end P (validation)
  int4 iana_q{};     ///< ANALOG index of the end Q (validation)
  int4 izbr{};       ///< number of the owning branch record (validation)
  nat4 flags{};      ///< bit 1: 0 from end, 1 to end; bit 2: this end is isolated (validation, topology)
  int4 r_nd{};       ///< number of the R_ND row of this end (validation)

  /// The table's name in the database, and its columns in order.
  static constexpr const char* kTableName = "zbr2";
  static std::span<const ColumnInfo> Columns();
  TYPE_DESCRIPTOR((KEY(id, INDEXED), FIELD(p), FIELD(q), FIELD(i), FIELD(iana_p), FIELD(iana_q), FIELD(izbr),
                   FIELD(flags), FIELD(r_nd)));
};
static_assert(sizeof(void*) != 4 || sizeof(zbr2) == 36, "the layout of zbr2 is fixed");

}  // namespace dtsdb
