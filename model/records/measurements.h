// Written by scripts/generate from the description in schema/: change it there.
/// \file
/// The points of telemetry.
///
/// In parentheses behind a field's meaning: who writes it, when it isn't part of what a model comes with.
#pragma once

#include <QString>
#include <span>

#include "model/basic_types.h"
#include "model/field_info.h"
#include "model/table_kinds.h"

namespace dtsdb {

class QArchive;

/// Analog measurement point (遥测).
class ANALOG {
 public:
  QString id;      ///< measurement point identity; key of the table
  QString name;    ///< second text of the point; carried
  f32 value = 0;   ///< carried value
  u8 quality = 0;  ///< carried byte
  i32 idx = -1;    ///< carried integer, default -1
  f32 f1 = 0;      ///< carried value
  f32 f2 = 0;      ///< carried value
  f32 f3 = 0;      ///< carried value
  i8 flag = 0;     ///< carried byte

  ANALOG() = default;
  /// Implicit, so that a table can be searched by an identity.
  ANALOG(const QString& identity) : id(identity) {}
  /// Records are compared by their identity.
  bool operator==(const ANALOG& other) const { return id == other.id; }
  bool operator<(const ANALOG& other) const { return id < other.id; }
  /// Stores the record in an archive or loads it from there.
  void Serialize(QArchive& ar);

  /// The table's name and kind code, what its records are compared by, and their fields in order.
  static constexpr const char* kTableName = "ANALOG";
  static constexpr TableKind kKind = KIND_ANALOG;
  static constexpr RecordKey kKey = RecordKey::kIdentified;
  static std::span<const FieldInfo> Fields();
};

/// Status point (遥信).
class STATUS {
 public:
  QString id;      ///< status point identity
  QString name;    ///< second text of the point; carried
  i8 value = 0;    ///< position of the point: 1 closed, 2 open; read from the realtime table by tpReadStatus
  u8 quality = 0;  ///< carried byte

  STATUS() = default;
  /// Implicit, so that a table can be searched by an identity.
  STATUS(const QString& identity) : id(identity) {}
  /// Records are compared by their identity.
  bool operator==(const STATUS& other) const { return id == other.id; }
  bool operator<(const STATUS& other) const { return id < other.id; }
  /// Stores the record in an archive or loads it from there.
  void Serialize(QArchive& ar);

  /// The table's name and kind code, what its records are compared by, and their fields in order.
  static constexpr const char* kTableName = "STATUS";
  static constexpr TableKind kKind = KIND_STATUS;
  static constexpr RecordKey kKey = RecordKey::kIdentified;
  static std::span<const FieldInfo> Fields();
};

}  // namespace dtsdb
