// Written by scripts/generate from the description in schema/: change it there.
/// \file
/// The relations from a voltage level to its nodes and devices.
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

/// Voltage level to its buses.
class R_KV_BUS {
 public:
  QString kv_id;   ///< identity of the parent (validation)
  QString bus_id;  ///< identity of the child (validation)
  i32 ikv = 0;     ///< number of the parent record (validation)
  i32 ibus = 0;    ///< number of the child record (validation)
  i32 next = 0;    ///< next row of the parent's chain, -1 at the end (validation)
  i32 prev = 0;    ///< previous row of the parent's chain, -1 at the first row (validation)

  R_KV_BUS() = default;
  /// A row that joins the two; its numbers are still 0.
  R_KV_BUS(const QString& parentId, const QString& childId) : kv_id(parentId), bus_id(childId) {}
  /// Rows are compared by the identity of the parent, then of the child.
  bool operator==(const R_KV_BUS& other) const { return kv_id == other.kv_id && bus_id == other.bus_id; }
  bool operator<(const R_KV_BUS& other) const {
    const int order = kv_id.compare(other.kv_id);
    return order != 0 ? order < 0 : bus_id.compare(other.bus_id) < 0;
  }
  /// The number of the child record.
  int ChildNumber() const { return ibus; }
  /// Stores the record in an archive or loads it from there.
  void Serialize(QArchive& ar);

  /// The table's name and kind code, what its records are compared by, and their fields in order.
  static constexpr const char* kTableName = "R_KV_BUS";
  static constexpr TableKind kKind = KIND_R_KV_BUS;
  static constexpr RecordKey kKey = RecordKey::kRelation;
  static std::span<const FieldInfo> Fields();
};

/// Voltage level to its breakers.
class R_KV_CB {
 public:
  QString kv_id;  ///< identity of the parent (validation)
  QString cb_id;  ///< identity of the child (validation)
  i32 ikv = 0;    ///< number of the parent record (validation)
  i32 icb = 0;    ///< number of the child record (validation)
  i32 next = 0;   ///< next row of the parent's chain, -1 at the end (validation)
  i32 prev = 0;   ///< previous row of the parent's chain, -1 at the first row (validation)

  R_KV_CB() = default;
  /// A row that joins the two; its numbers are still 0.
  R_KV_CB(const QString& parentId, const QString& childId) : kv_id(parentId), cb_id(childId) {}
  /// Rows are compared by the identity of the parent, then of the child.
  bool operator==(const R_KV_CB& other) const { return kv_id == other.kv_id && cb_id == other.cb_id; }
  bool operator<(const R_KV_CB& other) const {
    const int order = kv_id.compare(other.kv_id);
    return order != 0 ? order < 0 : cb_id.compare(other.cb_id) < 0;
  }
  /// The number of the child record.
  int ChildNumber() const { return icb; }
  /// Stores the record in an archive or loads it from there.
  void Serialize(QArchive& ar);

  /// The table's name and kind code, what its records are compared by, and their fields in order.
  static constexpr const char* kTableName = "R_KV_CB";
  static constexpr TableKind kKind = KIND_R_KV_CB;
  static constexpr RecordKey kKey = RecordKey::kRelation;
  static std::span<const FieldInfo> Fields();
};

/// Voltage level to its capacitors and reactors.
class R_KV_CP {
 public:
  QString kv_id;  ///< identity of the parent (validation)
  QString cp_id;  ///< identity of the child (validation)
  i32 ikv = 0;    ///< number of the parent record (validation)
  i32 icp = 0;    ///< number of the child record (validation)
  i32 next = 0;   ///< next row of the parent's chain, -1 at the end (validation)
  i32 prev = 0;   ///< previous row of the parent's chain, -1 at the first row (validation)

  R_KV_CP() = default;
  /// A row that joins the two; its numbers are still 0.
  R_KV_CP(const QString& parentId, const QString& childId) : kv_id(parentId), cp_id(childId) {}
  /// Rows are compared by the identity of the parent, then of the child.
  bool operator==(const R_KV_CP& other) const { return kv_id == other.kv_id && cp_id == other.cp_id; }
  bool operator<(const R_KV_CP& other) const {
    const int order = kv_id.compare(other.kv_id);
    return order != 0 ? order < 0 : cp_id.compare(other.cp_id) < 0;
  }
  /// The number of the child record.
  int ChildNumber() const { return icp; }
  /// Stores the record in an archive or loads it from there.
  void Serialize(QArchive& ar);

  /// The table's name and kind code, what its records are compared by, and their fields in order.
  static constexpr const char* kTableName = "R_KV_CP";
  static constexpr TableKind kKind = KIND_R_KV_CP;
  static constexpr RecordKey kKey = RecordKey::kRelation;
  static std::span<const FieldInfo> Fields();
};

/// Voltage level to its loads.
class R_KV_LD {
 public:
  QString kv_id;  ///< identity of the parent (validation)
  QString ld_id;  ///< identity of the child (validation)
  i32 ikv = 0;    ///< number of the parent record (validation)
  i32 ild = 0;    ///< number of the child record (validation)
  i32 next = 0;   ///< next row of the parent's chain, -1 at the end (validation)
  i32 prev = 0;   ///< previous row of the parent's chain, -1 at the first row (validation)

  R_KV_LD() = default;
  /// A row that joins the two; its numbers are still 0.
  R_KV_LD(const QString& parentId, const QString& childId) : kv_id(parentId), ld_id(childId) {}
  /// Rows are compared by the identity of the parent, then of the child.
  bool operator==(const R_KV_LD& other) const { return kv_id == other.kv_id && ld_id == other.ld_id; }
  bool operator<(const R_KV_LD& other) const {
    const int order = kv_id.compare(other.kv_id);
    return order != 0 ? order < 0 : ld_id.compare(other.ld_id) < 0;
  }
  /// The number of the child record.
  int ChildNumber() const { return ild; }
  /// Stores the record in an archive or loads it from there.
  void Serialize(QArchive& ar);

  /// The table's name and kind code, what its records are compared by, and their fields in order.
  static constexpr const char* kTableName = "R_KV_LD";
  static constexpr TableKind kKind = KIND_R_KV_LD;
  static constexpr RecordKey kKey = RecordKey::kRelation;
  static std::span<const FieldInfo> Fields();
};

/// Voltage level to its nodes.
class R_KV_ND {
 public:
  QString kv_id;  ///< identity of the parent (validation)
  QString nd_id;  ///< identity of the child (validation)
  i32 ikv = 0;    ///< number of the parent record (validation)
  i32 ind = 0;    ///< number of the child record (validation)
  i32 next = 0;   ///< next row of the parent's chain, -1 at the end (validation)
  i32 prev = 0;   ///< previous row of the parent's chain, -1 at the first row (validation)

  R_KV_ND() = default;
  /// A row that joins the two; its numbers are still 0.
  R_KV_ND(const QString& parentId, const QString& childId) : kv_id(parentId), nd_id(childId) {}
  /// Rows are compared by the identity of the parent, then of the child.
  bool operator==(const R_KV_ND& other) const { return kv_id == other.kv_id && nd_id == other.nd_id; }
  bool operator<(const R_KV_ND& other) const {
    const int order = kv_id.compare(other.kv_id);
    return order != 0 ? order < 0 : nd_id.compare(other.nd_id) < 0;
  }
  /// The number of the child record.
  int ChildNumber() const { return ind; }
  /// Stores the record in an archive or loads it from there.
  void Serialize(QArchive& ar);

  /// The table's name and kind code, what its records are compared by, and their fields in order.
  static constexpr const char* kTableName = "R_KV_ND";
  static constexpr TableKind kKind = KIND_R_KV_ND;
  static constexpr RecordKey kKey = RecordKey::kRelation;
  static std::span<const FieldInfo> Fields();
};

/// Voltage level to its units.
class R_KV_UN {
 public:
  QString kv_id;  ///< identity of the parent (validation)
  QString un_id;  ///< identity of the child (validation)
  i32 ikv = 0;    ///< number of the parent record (validation)
  i32 iun = 0;    ///< number of the child record (validation)
  i32 next = 0;   ///< next row of the parent's chain, -1 at the end (validation)
  i32 prev = 0;   ///< previous row of the parent's chain, -1 at the first row (validation)

  R_KV_UN() = default;
  /// A row that joins the two; its numbers are still 0.
  R_KV_UN(const QString& parentId, const QString& childId) : kv_id(parentId), un_id(childId) {}
  /// Rows are compared by the identity of the parent, then of the child.
  bool operator==(const R_KV_UN& other) const { return kv_id == other.kv_id && un_id == other.un_id; }
  bool operator<(const R_KV_UN& other) const {
    const int order = kv_id.compare(other.kv_id);
    return order != 0 ? order < 0 : un_id.compare(other.un_id) < 0;
  }
  /// The number of the child record.
  int ChildNumber() const { return iun; }
  /// Stores the record in an archive or loads it from there.
  void Serialize(QArchive& ar);

  /// The table's name and kind code, what its records are compared by, and their fields in order.
  static constexpr const char* kTableName = "R_KV_UN";
  static constexpr TableKind kKind = KIND_R_KV_UN;
  static constexpr RecordKey kKey = RecordKey::kRelation;
  static std::span<const FieldInfo> Fields();
};

/// Voltage level to its zero-impedance branches.
class R_KV_ZBR {
 public:
  QString kv_id;   ///< identity of the parent (validation)
  QString zbr_id;  ///< identity of the child (validation)
  i32 ikv = 0;     ///< number of the parent record (validation)
  i32 izbr = 0;    ///< number of the child record (validation)
  i32 next = 0;    ///< next row of the parent's chain, -1 at the end (validation)
  i32 prev = 0;    ///< previous row of the parent's chain, -1 at the first row (validation)

  R_KV_ZBR() = default;
  /// A row that joins the two; its numbers are still 0.
  R_KV_ZBR(const QString& parentId, const QString& childId) : kv_id(parentId), zbr_id(childId) {}
  /// Rows are compared by the identity of the parent, then of the child.
  bool operator==(const R_KV_ZBR& other) const { return kv_id == other.kv_id && zbr_id == other.zbr_id; }
  bool operator<(const R_KV_ZBR& other) const {
    const int order = kv_id.compare(other.kv_id);
    return order != 0 ? order < 0 : zbr_id.compare(other.zbr_id) < 0;
  }
  /// The number of the child record.
  int ChildNumber() const { return izbr; }
  /// Stores the record in an archive or loads it from there.
  void Serialize(QArchive& ar);

  /// The table's name and kind code, what its records are compared by, and their fields in order.
  static constexpr const char* kTableName = "R_KV_ZBR";
  static constexpr TableKind kKind = KIND_R_KV_ZBR;
  static constexpr RecordKey kKey = RecordKey::kRelation;
  static std::span<const FieldInfo> Fields();
};

}  // namespace dtsdb
