// Written by scripts/generate from the description in schema/: change it there.
/// \file
/// Rows of the realtime database. The points of telemetry.
///
/// The columns lie as in the installation's tables. A `raw_` range, named after its offset in a 32-bit program, belongs
/// to other programs: an update of the row carries it along. A new row is all zero.
#pragma once

#include <span>

#include "rtdb/backend.h"
#include "rtdb/column_info.h"

namespace dtsdb {

/// Analog measurement point (遥测).
class analog {
 public:
  char const* id{};    ///< measurement point identity; key of the table
  char const* name{};  ///< second text of the point; carried
  real4 value{};       ///< carried value
  int4 quality{};      ///< carried byte
  int4 idx{};          ///< carried integer, default -1
  real4 f1{};          ///< carried value
  real4 f2{};          ///< carried value
  real4 f3{};          ///< carried value
  int4 flag{};         ///< carried byte

  /// The table's name in the database, and its columns in order.
  static constexpr const char* kTableName = "analog";
  static std::span<const ColumnInfo> Columns();
  TYPE_DESCRIPTOR((KEY(id, INDEXED), FIELD(name), FIELD(value), FIELD(quality), FIELD(idx), FIELD(f1), FIELD(f2),
                   FIELD(f3), FIELD(flag)));
};
static_assert(sizeof(void*) != 4 || sizeof(analog) == 36, "the layout of analog is fixed");

/// Status point (遥信).
class status {
 public:
  char const* id{};    ///< status point identity
  char const* name{};  ///< second text of the point; carried
  int4 value{};        ///< position of the point: 1 closed, 2 open; read from the realtime table by tpReadStatus
  int4 quality{};      ///< carried byte

  /// The table's name in the database, and its columns in order.
  static constexpr const char* kTableName = "status";
  static std::span<const ColumnInfo> Columns();
  TYPE_DESCRIPTOR((KEY(id, INDEXED), FIELD(name), FIELD(value), FIELD(quality)));
};
static_assert(sizeof(void*) != 4 || sizeof(status) == 16, "the layout of status is fixed");

}  // namespace dtsdb
