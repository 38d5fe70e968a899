// Written by scripts/generate from the description in schema/: change it there.
/// \file
/// The two ends of each branch, which join it to its nodes.
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

/// End of a breaker.
class CB2 {
 public:
  QString id;        ///< breaker identity plus end suffix (validation)
  i32 icb = 0;       ///< number of the owning CB (validation)
  i32 r_nd_cb2 = 0;  ///< number of the R_ND_CB2 row (validation)

  CB2() = default;
  /// Implicit, so that a table can be searched by an identity.
  CB2(const QString& identity) : id(identity) {}
  /// Records are compared by their identity.
  bool operator==(const CB2& other) const { return id == other.id; }
  bool operator<(const CB2& other) const { return id < other.id; }
  /// Stores the record in an archive or loads it from there.
  void Serialize(QArchive& ar);

  /// The table's name and kind code, what its records are compared by, and their fields in order.
  static constexpr const char* kTableName = "CB2";
  static constexpr TableKind kKind = KIND_CB2;
  static constexpr RecordKey kKey = RecordKey::kIdentified;
  static std::span<const FieldInfo> Fields();
};

/// End of an AC line.
class LN2 {
 public:
  QString id;      ///< branch identity plus end suffix (validation)
  f32 p = 0;       ///< flow at this end, in MW
  f32 q = 0;       ///< flow at this end, in Mvar
  f32 i = 0;       ///< current at this end, in A
  i32 iana_p = 0;  ///< ANALOG index of the end P (validation)
  i32 iana_q = 0;  ///< ANALOG index of the end Q (validation)
  i32 iln = 0;     ///< number of the owning branch record (validation)
  u32 flags = 0;   ///< bit 1: 0 from end, 1 to end; bit 2: this end is isolated (validation, topology)
  i32 r_nd = 0;    ///< number of the R_ND row of this end (validation)

  LN2() = default;
  /// Implicit, so that a table can be searched by an identity.
  LN2(const QString& identity) : id(identity) {}
  /// Records are compared by their identity.
  bool operator==(const LN2& other) const { return id == other.id; }
  bool operator<(const LN2& other) const { return id < other.id; }
  /// Stores the record in an archive or loads it from there.
  void Serialize(QArchive& ar);

  /// The table's name and kind code, what its records are compared by, and their fields in order.
  static constexpr const char* kTableName = "LN2";
  static constexpr TableKind kKind = KIND_LN2;
  static constexpr RecordKey kKey = RecordKey::kIdentified;
  static std::span<const FieldInfo> Fields();
};

/// End of a DC line.
class DLN2 {
 public:
  QString id;      ///< branch identity plus end suffix (validation)
  f32 p = 0;       ///< flow at this end, in MW
  f32 q = 0;       ///< flow at this end, in Mvar
  f32 i = 0;       ///< current at this end, in A
  i32 iana_p = 0;  ///< ANALOG index of the end P (validation)
  i32 iana_q = 0;  ///< ANALOG index of the end Q (validation)
  i32 idln = 0;    ///< number of the owning branch record (validation)
  u32 flags = 0;   ///< bit 1: 0 from end, 1 to end; bit 2: this end is isolated (validation, topology)
  i32 r_nd = 0;    ///< number of the R_ND row of this end (validation)

  DLN2() = default;
  /// Implicit, so that a table can be searched by an identity.
  DLN2(const QString& identity) : id(identity) {}
  /// Records are compared by their identity.
  bool operator==(const DLN2& other) const { return id == other.id; }
  bool operator<(const DLN2& other) const { return id < other.id; }
  /// Stores the record in an archive or loads it from there.
  void Serialize(QArchive& ar);

  /// The table's name and kind code, what its records are compared by, and their fields in order.
  static constexpr const char* kTableName = "DLN2";
  static constexpr TableKind kKind = KIND_DLN2;
  static constexpr RecordKey kKey = RecordKey::kIdentified;
  static std::span<const FieldInfo> Fields();
};

/// End of a transformer winding.
class XF2 {
 public:
  QString id;      ///< branch identity plus end suffix (validation)
  f32 p = 0;       ///< flow at this end, in MW
  f32 q = 0;       ///< flow at this end, in Mvar
  f32 i = 0;       ///< current at this end, in A
  i32 iana_p = 0;  ///< ANALOG index of the end P (validation)
  i32 iana_q = 0;  ///< ANALOG index of the end Q (validation)
  i32 ixf = 0;     ///< number of the owning branch record (validation)
  u32 flags = 0;   ///< bit 1: 0 from end, 1 to end; bit 2: this end is isolated (validation, topology)
  i32 r_nd = 0;    ///< number of the R_ND row of this end (validation)

  XF2() = default;
  /// Implicit, so that a table can be searched by an identity.
  XF2(const QString& identity) : id(identity) {}
  /// Records are compared by their identity.
  bool operator==(const XF2& other) const { return id == other.id; }
  bool operator<(const XF2& other) const { return id < other.id; }
  /// Stores the record in an archive or loads it from there.
  void Serialize(QArchive& ar);

  /// The table's name and kind code, what its records are compared by, and their fields in order.
  static constexpr const char* kTableName = "XF2";
  static constexpr TableKind kKind = KIND_XF2;
  static constexpr RecordKey kKey = RecordKey::kIdentified;
  static std::span<const FieldInfo> Fields();
};

/// End of a zero-impedance branch.
class ZBR2 {
 public:
  QString id;      ///< branch identity plus end suffix (validation)
  f32 p = 0;       ///< flow at this end, in MW
  f32 q = 0;       ///< flow at this end, in Mvar
  f32 i = 0;       ///< current at this end, in A
  i32 iana_p = 0;  ///< ANALOG index of the end P (validation)
  i32 iana_q = 0;  ///< ANALOG index of the end Q (validation)
  i32 izbr = 0;    ///< number of the owning branch record (validation)
  u32 flags = 0;   ///< bit 1: 0 from end, 1 to end; bit 2: this end is isolated (validation, topology)
  i32 r_nd = 0;    ///< number of the R_ND row of this end (validation)

  ZBR2() = default;
  /// Implicit, so that a table can be searched by an identity.
  ZBR2(const QString& identity) : id(identity) {}
  /// Records are compared by their identity.
  bool operator==(const ZBR2& other) const { return id == other.id; }
  bool operator<(const ZBR2& other) const { return id < other.id; }
  /// Stores the record in an archive or loads it from there.
  void Serialize(QArchive& ar);

  /// The table's name and kind code, what its records are compared by, and their fields in order.
  static constexpr const char* kTableName = "ZBR2";
  static constexpr TableKind kKind = KIND_ZBR2;
  static constexpr RecordKey kKey = RecordKey::kIdentified;
  static std::span<const FieldInfo> Fields();
};

}  // namespace dtsdb
