// Written by scripts/generate from the description in schema/: change it there.
/// \file
/// The tree of owners: companies, districts, stations and their voltage levels.
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

/// Company.
class CO {
 public:
  QString id;       ///< company identity
  f32 f1 = 0;       ///< carried value
  f32 f2 = 0;       ///< carried value
  f32 f3 = 0;       ///< carried value
  f32 f4 = 0;       ///< carried value
  f32 f5 = 0;       ///< carried value
  f32 f6 = 0;       ///< carried value
  f32 f7 = 0;       ///< carried value
  f32 f8 = 0;       ///< carried value
  i32 r_co_dv = 0;  ///< head of the R_CO_DV chain of this company, -1 none (validation)

  CO() = default;
  /// Implicit, so that a table can be searched by an identity.
  CO(const QString& identity) : id(identity) {}
  /// Records are compared by their identity.
  bool operator==(const CO& other) const { return id == other.id; }
  bool operator<(const CO& other) const { return id < other.id; }
  /// Stores the record in an archive or loads it from there.
  void Serialize(QArchive& ar);

  /// The table's name and kind code, what its records are compared by, and their fields in order.
  static constexpr const char* kTableName = "CO";
  static constexpr TableKind kKind = KIND_CO;
  static constexpr RecordKey kKey = RecordKey::kIdentified;
  static std::span<const FieldInfo> Fields();
};

/// District (分区), part of a company.
class DV {
 public:
  QString id;        ///< district identity
  QString co;        ///< company identity
  f32 f1 = 0;        ///< carried value
  f32 f2 = 0;        ///< carried value
  f32 f3 = 0;        ///< carried value
  f32 f4 = 0;        ///< carried value
  f32 f5 = 0;        ///< carried value
  f32 f6 = 0;        ///< carried value
  f32 f7 = 0;        ///< carried value
  f32 f8 = 0;        ///< carried value
  i32 r_co_dv = 0;   ///< number of the R_CO_DV row (validation)
  i32 r_dv_st = 0;   ///< head of the R_DV_ST chain (validation)
  i32 r_dv_ln = 0;   ///< head of the R_DV_LN chain (validation)
  i32 r_dv_dln = 0;  ///< head of the R_DV_DLN chain (validation)

  DV() = default;
  /// Implicit, so that a table can be searched by an identity.
  DV(const QString& identity) : id(identity) {}
  /// Records are compared by their identity.
  bool operator==(const DV& other) const { return id == other.id; }
  bool operator<(const DV& other) const { return id < other.id; }
  /// Stores the record in an archive or loads it from there.
  void Serialize(QArchive& ar);

  /// The table's name and kind code, what its records are compared by, and their fields in order.
  static constexpr const char* kTableName = "DV";
  static constexpr TableKind kKind = KIND_DV;
  static constexpr RecordKey kKey = RecordKey::kIdentified;
  static std::span<const FieldInfo> Fields();
};

/// Station (厂站), part of a district.
class ST {
 public:
  QString id;       ///< station identity
  QString dv;       ///< district identity
  u8 type = 0;      ///< station type, 0 to 8 in a valid model
  u8 flag = 0;      ///< device mask of the station, reset by StartDetect: bit 1 a UN, 2 a CP, 4 a XF, 8 a LD, 16 a CB
                    ///< stands in it (validation)
  f32 f1 = 0;       ///< carried value
  f32 f2 = 0;       ///< carried value
  f32 f3 = 0;       ///< carried value
  f32 f4 = 0;       ///< carried value
  i32 r_dv_st = 0;  ///< R_DV_ST row (validation)
  i32 r_st_kv = 0;  ///< head of R_ST_KV chain (validation)
  i32 r_st_xf = 0;  ///< head of R_ST_XF chain (validation)

  ST() = default;
  /// Implicit, so that a table can be searched by an identity.
  ST(const QString& identity) : id(identity) {}
  /// Records are compared by their identity.
  bool operator==(const ST& other) const { return id == other.id; }
  bool operator<(const ST& other) const { return id < other.id; }
  /// Stores the record in an archive or loads it from there.
  void Serialize(QArchive& ar);

  /// The table's name and kind code, what its records are compared by, and their fields in order.
  static constexpr const char* kTableName = "ST";
  static constexpr TableKind kKind = KIND_ST;
  static constexpr RecordKey kKey = RecordKey::kIdentified;
  static std::span<const FieldInfo> Fields();
};

/// Voltage level of a station.
class KV {
 public:
  QString id;        ///< identity of the voltage level of a station (母线 in the messages)
  QString name;      ///< second text of the KV; carried
  QString st;        ///< station identity
  i32 ibs = 0;       ///< number of the first bus-section of this KV (topology)
  i32 ibsl = 0;      ///< number of the BSL entry of this KV (topology)
  f32 vbase = 0;     ///< base voltage, in kV
  f32 vmax = 0;      ///< upper voltage limit, in kV
  f32 vmin = 0;      ///< lower voltage limit, in kV
  f32 f1 = 0;        ///< carried value
  f32 f2 = 0;        ///< carried value
  i32 n2 = 0;        ///< carried integer
  i32 r_st_kv = 0;   ///< number of the R_ST_KV row (validation)
  i32 r_kv_un = 0;   ///< head of R_KV_UN chain (validation)
  i32 r_kv_cb = 0;   ///< head of R_KV_CB chain (validation)
  i32 r_kv_ld = 0;   ///< head of R_KV_LD chain (validation)
  i32 r_kv_cp = 0;   ///< head of R_KV_CP chain (validation)
  i32 r_kv_bus = 0;  ///< head of R_KV_BUS chain (validation)
  i32 r_kv_zbr = 0;  ///< head of R_KV_ZBR chain (validation)
  i32 r_kv_nd = 0;   ///< head of R_KV_ND chain (validation)

  KV() = default;
  /// Implicit, so that a table can be searched by an identity.
  KV(const QString& identity) : id(identity) {}
  /// Records are compared by their identity.
  bool operator==(const KV& other) const { return id == other.id; }
  bool operator<(const KV& other) const { return id < other.id; }
  /// Stores the record in an archive or loads it from there.
  void Serialize(QArchive& ar);

  /// The table's name and kind code, what its records are compared by, and their fields in order.
  static constexpr const char* kTableName = "KV";
  static constexpr TableKind kKind = KIND_KV;
  static constexpr RecordKey kKey = RecordKey::kIdentified;
  static std::span<const FieldInfo> Fields();
};

}  // namespace dtsdb
