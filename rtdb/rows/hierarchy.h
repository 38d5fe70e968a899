// Written by scripts/generate from the description in schema/: change it there.
/// \file
/// Rows of the realtime database. The tree of owners: companies, districts, stations and their voltage levels.
///
/// The columns lie as in the installation's tables. A `raw_` range, named after its offset in a 32-bit program, belongs
/// to other programs: an update of the row carries it along. A new row is all zero.
#pragma once

#include <span>

#include "rtdb/backend.h"
#include "rtdb/column_info.h"

namespace dtsdb {

/// Company.
class co {
 public:
  char const* id{};  ///< company identity
  char raw_4[4]{};   ///< bytes that other programs keep here
  real4 f1{};        ///< carried value
  real4 f2{};        ///< carried value
  real4 f3{};        ///< carried value
  real4 f4{};        ///< carried value
  real4 f5{};        ///< carried value
  real4 f6{};        ///< carried value
  real4 f7{};        ///< carried value
  real4 f8{};        ///< carried value
  int4 r_co_dv{};    ///< head of the R_CO_DV chain of this company, -1 none (validation)

  /// The table's name in the database, and its columns in order.
  static constexpr const char* kTableName = "co";
  static std::span<const ColumnInfo> Columns();
  TYPE_DESCRIPTOR((KEY(id, INDEXED), RAWFIELD(raw_4), FIELD(f1), FIELD(f2), FIELD(f3), FIELD(f4), FIELD(f5), FIELD(f6),
                   FIELD(f7), FIELD(f8), FIELD(r_co_dv)));
};
static_assert(sizeof(void*) != 4 || sizeof(co) == 44, "the layout of co is fixed");

/// District (分区), part of a company.
class dv {
 public:
  char const* id{};  ///< district identity
  char raw_4[4]{};   ///< bytes that other programs keep here
  char const* co{};  ///< company identity
  real4 f1{};        ///< carried value
  real4 f2{};        ///< carried value
  real4 f3{};        ///< carried value
  real4 f4{};        ///< carried value
  real4 f5{};        ///< carried value
  real4 f6{};        ///< carried value
  real4 f7{};        ///< carried value
  real4 f8{};        ///< carried value
  int4 r_co_dv{};    ///< number of the R_CO_DV row (validation)
  int4 r_dv_st{};    ///< head of the R_DV_ST chain (validation)
  int4 r_dv_ln{};    ///< head of the R_DV_LN chain (validation)
  int4 r_dv_dln{};   ///< head of the R_DV_DLN chain (validation)

  /// The table's name in the database, and its columns in order.
  static constexpr const char* kTableName = "dv";
  static std::span<const ColumnInfo> Columns();
  TYPE_DESCRIPTOR((KEY(id, INDEXED), RAWFIELD(raw_4), FIELD(co), FIELD(f1), FIELD(f2), FIELD(f3), FIELD(f4), FIELD(f5),
                   FIELD(f6), FIELD(f7), FIELD(f8), FIELD(r_co_dv), FIELD(r_dv_st), FIELD(r_dv_ln), FIELD(r_dv_dln)));
};
static_assert(sizeof(void*) != 4 || sizeof(dv) == 60, "the layout of dv is fixed");

/// Station (厂站), part of a district.
class st {
 public:
  char const* id{};  ///< station identity
  char raw_4[4]{};   ///< bytes that other programs keep here
  char const* dv{};  ///< district identity
  int4 type{};       ///< station type, 0 to 8 in a valid model
  int4 flag{};       ///< device mask of the station, reset by StartDetect: bit 1 a UN, 2 a CP, 4 a XF, 8 a LD, 16 a CB
                     ///< stands in it (validation)
  real4 f1{};        ///< carried value
  real4 f2{};        ///< carried value
  real4 f3{};        ///< carried value
  real4 f4{};        ///< carried value
  int4 r_dv_st{};    ///< R_DV_ST row (validation)
  int4 r_st_kv{};    ///< head of R_ST_KV chain (validation)
  int4 r_st_xf{};    ///< head of R_ST_XF chain (validation)

  /// The table's name in the database, and its columns in order.
  static constexpr const char* kTableName = "st";
  static std::span<const ColumnInfo> Columns();
  TYPE_DESCRIPTOR((KEY(id, INDEXED), RAWFIELD(raw_4), FIELD(dv), FIELD(type), FIELD(flag), FIELD(f1), FIELD(f2),
                   FIELD(f3), FIELD(f4), FIELD(r_dv_st), FIELD(r_st_kv), FIELD(r_st_xf)));
};
static_assert(sizeof(void*) != 4 || sizeof(st) == 48, "the layout of st is fixed");

/// Voltage level of a station.
class kv {
 public:
  char raw_0[80]{};    ///< bytes that other programs keep here
  char const* id{};    ///< identity of the voltage level of a station (母线 in the messages)
  char raw_84[4]{};    ///< bytes that other programs keep here
  char const* name{};  ///< second text of the KV; carried
  char const* st{};    ///< station identity
  int4 ibs{};          ///< number of the first bus-section of this KV (topology)
  int4 ibsl{};         ///< number of the BSL entry of this KV (topology)
  real4 vbase{};       ///< base voltage, in kV
  real4 vmax{};        ///< upper voltage limit, in kV
  real4 vmin{};        ///< lower voltage limit, in kV
  real4 f1{};          ///< carried value
  real4 f2{};          ///< carried value
  int4 n2{};           ///< carried integer
  int4 r_st_kv{};      ///< number of the R_ST_KV row (validation)
  int4 r_kv_un{};      ///< head of R_KV_UN chain (validation)
  int4 r_kv_cb{};      ///< head of R_KV_CB chain (validation)
  int4 r_kv_ld{};      ///< head of R_KV_LD chain (validation)
  int4 r_kv_cp{};      ///< head of R_KV_CP chain (validation)
  int4 r_kv_bus{};     ///< head of R_KV_BUS chain (validation)
  int4 r_kv_zbr{};     ///< head of R_KV_ZBR chain (validation)
  int4 r_kv_nd{};      ///< head of R_KV_ND chain (validation)

  /// The table's name in the database, and its columns in order.
  static constexpr const char* kTableName = "kv";
  static std::span<const ColumnInfo> Columns();
  TYPE_DESCRIPTOR((RAWFIELD(raw_0), KEY(id, INDEXED), RAWFIELD(raw_84), FIELD(name), FIELD(st), FIELD(ibs), FIELD(ibsl),
                   FIELD(vbase), FIELD(vmax), FIELD(vmin), FIELD(f1), FIELD(f2), FIELD(n2), FIELD(r_st_kv),
                   FIELD(r_kv_un), FIELD(r_kv_cb), FIELD(r_kv_ld), FIELD(r_kv_cp), FIELD(r_kv_bus), FIELD(r_kv_zbr),
                   FIELD(r_kv_nd)));
};
static_assert(sizeof(void*) != 4 || sizeof(kv) == 160, "the layout of kv is fixed");

}  // namespace dtsdb
