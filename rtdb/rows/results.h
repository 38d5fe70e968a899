// Written by scripts/generate from the description in schema/: change it there.
/// \file
/// Rows of the realtime database. What the topology works out, its log, and the global state.
///
/// The columns lie as in the installation's tables. A `raw_` range, named after its offset in a 32-bit program, belongs
/// to other programs: an update of the row carries it along. A new row is all zero.
#pragma once

#include <span>

#include "rtdb/backend.h"
#include "rtdb/column_info.h"

namespace dtsdb {

/// Bus-section.
class bs {
 public:
  int4 id{};           ///< bus-section number = its array index (topology)
  char const* name{};  ///< section name (topology)
  int4 ikv{};          ///< physical KV number owning the section, -1 none (topology)
  char raw_12[4]{};    ///< bytes that other programs keep here
  real8 f0{};          ///< carried value
  int4 island{};       ///< -2 unassigned/reclaimed, -1 dead, >=0 island number (topology)
  nat4 status{};       ///< bits: 1 BS_DEAD, 2 BS_ISOLATED, 32 BS_BROKEN (topology)
  nat4 flags{};        ///< bits: 1 BS_BASE, 2 BS_UNCLAIMED (topology)
  int4 next{};         ///< next in chain (topology)
  int4 prev{};         ///< previous in chain, -1 on free list (topology)
  int4 ibsl{};         ///< index of the section's BSL entry, -1 none (topology)
  real8 v{};           ///< voltage magnitude, input of the breaker flow
  real8 a{};           ///< voltage angle in degrees, input of the breaker flow, in deg
  real8 f1{};          ///< carried value
  real8 f2{};          ///< carried value
  real8 f3{};          ///< carried value
  real8 f4{};          ///< carried value
  int4 n1{};           ///< carried integer

  /// The table's name in the database, and its columns in order.
  static constexpr const char* kTableName = "bs";
  static std::span<const ColumnInfo> Columns();
  TYPE_DESCRIPTOR((KEY(id, INDEXED), FIELD(name), FIELD(ikv), RAWFIELD(raw_12), FIELD(f0), FIELD(island), FIELD(status),
                   FIELD(flags), FIELD(next), FIELD(prev), FIELD(ibsl), FIELD(v), FIELD(a), FIELD(f1), FIELD(f2),
                   FIELD(f3), FIELD(f4), FIELD(n1)));
};
static_assert(sizeof(void*) != 4 || sizeof(bs) == 100, "the layout of bs is fixed");

/// Entry of the bus-section list.
class bsl {
 public:
  int4 id{};    ///< own index (topology)
  int4 next{};  ///< next entry, free-list link (topology)
  int4 prev{};  ///< previous entry, -1 on free list (topology)
  int4 kind{};  ///< 1-based table number of the referenced record (topology)
  int4 ref{};   ///< physical number of the referenced record; BS index for kind 2 (topology)

  /// The table's name in the database, and its columns in order.
  static constexpr const char* kTableName = "bsl";
  static std::span<const ColumnInfo> Columns();
  TYPE_DESCRIPTOR((KEY(id, INDEXED), FIELD(next), FIELD(prev), FIELD(kind), FIELD(ref)));
};
static_assert(sizeof(void*) != 4 || sizeof(bsl) == 20, "the layout of bsl is fixed");

/// Live island.
class island {
 public:
  int4 id{};             ///< island number (topology)
  int4 ref_ibs{};        ///< bus-section of the reference; -1 while the island has none (topology)
  int4 ref_un{};         ///< physical number of the reference UN (topology)
  real4 ref_a{};         ///< angle of the reference (topology)
  real4 f1{};            ///< carried value
  real4 f2{};            ///< carried value
  real4 f3{};            ///< carried value
  char const* ref_id{};  ///< identity of the reference UN (topology)
  char const* name{};    ///< carried text

  /// The table's name in the database, and its columns in order.
  static constexpr const char* kTableName = "island";
  static std::span<const ColumnInfo> Columns();
  TYPE_DESCRIPTOR((KEY(id, INDEXED), FIELD(ref_ibs), FIELD(ref_un), FIELD(ref_a), FIELD(f1), FIELD(f2), FIELD(f3),
                   FIELD(ref_id), FIELD(name)));
};
static_assert(sizeof(void*) != 4 || sizeof(island) == 36, "the layout of island is fixed");

/// Node that changed section in an incremental run.
class chnd {
 public:
  int4 id{};       ///< change sequence number (topology)
  int4 ind{};      ///< node number (topology)
  int4 ibs_new{};  ///< new bus-section (topology)
  int4 ibs_old{};  ///< old bus-section (topology)
  int4 ikv{};      ///< KV number (topology)

  /// The table's name in the database, and its columns in order.
  static constexpr const char* kTableName = "chnd";
  static std::span<const ColumnInfo> Columns();
  TYPE_DESCRIPTOR((KEY(id, INDEXED), FIELD(ind), FIELD(ibs_new), FIELD(ibs_old), FIELD(ikv)));
};
static_assert(sizeof(void*) != 4 || sizeof(chnd) == 20, "the layout of chnd is fixed");

/// Topology log row.
class tpl {
 public:
  int4 id{};            ///< log row number (topology)
  int4 kind{};          ///< table number of the logged thing (topology)
  int4 n1{};            ///< status word given by the writer (topology)
  char const* name{};   ///< identity of the logged thing (topology)
  int4 n2{};            ///< new section, -1 for none (topology)
  int4 n3{};            ///< old section (topology)
  nat4 time{};          ///< event time, QDateTime::toTime_t, in s (topology)
  char const* event{};  ///< event word (topology)

  /// The table's name in the database, and its columns in order.
  static constexpr const char* kTableName = "tpl";
  static std::span<const ColumnInfo> Columns();
  TYPE_DESCRIPTOR((KEY(id, INDEXED), FIELD(kind), FIELD(n1), FIELD(name), FIELD(n2), FIELD(n3), FIELD(time),
                   FIELD(event)));
};
static_assert(sizeof(void*) != 4 || sizeof(tpl) == 32, "the layout of tpl is fixed");

/// Component change that waits for the next topology run.
class tptrace {
 public:
  int4 id{};           ///< row number (topology)
  char const* name{};  ///< component identity (topology)
  int4 type{};         ///< component type code of tpSetCompStatus (topology)
  int4 n1{};           ///< physical number of the component in its table; -1 when the row is to be passed over
                       ///< (topology)
  int4 status{};       ///< what was asked for: nonzero closed or in service, 0 open or out of service (topology)
  nat4 time{};         ///< seconds from QDateTime::toTime_t, in s (topology)

  /// The table's name in the database, and its columns in order.
  static constexpr const char* kTableName = "tptrace";
  static std::span<const ColumnInfo> Columns();
  TYPE_DESCRIPTOR((KEY(id, INDEXED), FIELD(name), FIELD(type), FIELD(n1), FIELD(status), FIELD(time)));
};
static_assert(sizeof(void*) != 4 || sizeof(tptrace) == 24, "the layout of tptrace is fixed");

/// The single row of global state.
class global {
 public:
  int4 id{};          ///< row number (validation)
  real4 f1{};         ///< carried value; a new validation keeps it, or starts it at 100.0 when the GLOBAL table is
                      ///< empty (validation)
  int4 bs_free{};     ///< head of BS free list (topology)
  int4 bs_dead{};     ///< BS index of dead head, 0 (topology)
  int4 bs_live{};     ///< BS index of live head, 1 (topology)
  int4 bsl_free{};    ///< head of BSL free list (topology)
  int4 bsl_head{};    ///< BSL list head (topology)
  int4 n1{};          ///< carried value
  nat4 u1{};          ///< time of the last tpChange, in seconds from QDateTime::toTime_t, in s (topology)
  nat4 time{};        ///< time of the last tpAllnew, in the same seconds, in s (topology)
  int4 valid{};       ///< 1 after a validation run that ended with no error (validation)
  nat4 check_time{};  ///< time of the end of the last validation run without errors, in s (validation)
  int4 invalid{};     ///< 1 from the start of a validation run until a run ends with no error; the editing operations
                      ///< refuse to run on a value other than 0 (validation)
  int4 errors{};      ///< error count of the last validation (validation)

  /// The table's name in the database, and its columns in order.
  static constexpr const char* kTableName = "global";
  static std::span<const ColumnInfo> Columns();
  TYPE_DESCRIPTOR((KEY(id, INDEXED), FIELD(f1), FIELD(bs_free), FIELD(bs_dead), FIELD(bs_live), FIELD(bsl_free),
                   FIELD(bsl_head), FIELD(n1), FIELD(u1), FIELD(time), FIELD(valid), FIELD(check_time), FIELD(invalid),
                   FIELD(errors)));
};
static_assert(sizeof(void*) != 4 || sizeof(global) == 56, "the layout of global is fixed");

}  // namespace dtsdb
