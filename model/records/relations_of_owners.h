// Written by scripts/generate from the description in schema/: change it there.
/// \file
/// The relations along the tree of owners down to voltage levels, lines and windings.
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

/// Company to its districts.
class R_CO_DV {
 public:
  QString co_id;  ///< identity of the parent (validation)
  QString dv_id;  ///< identity of the child (validation)
  i32 ico = 0;    ///< number of the parent record (validation)
  i32 idv = 0;    ///< number of the child record (validation)
  i32 next = 0;   ///< next row of the parent's chain, -1 at the end (validation)
  i32 prev = 0;   ///< previous row of the parent's chain, -1 at the first row (validation)

  R_CO_DV() = default;
  /// A row that joins the two; its numbers are still 0.
  R_CO_DV(const QString& parentId, const QString& childId) : co_id(parentId), dv_id(childId) {}
  /// Rows are compared by the identity of the parent, then of the child.
  bool operator==(const R_CO_DV& other) const { return co_id == other.co_id && dv_id == other.dv_id; }
  bool operator<(const R_CO_DV& other) const {
    const int order = co_id.compare(other.co_id);
    return order != 0 ? order < 0 : dv_id.compare(other.dv_id) < 0;
  }
  /// The number of the child record.
  int ChildNumber() const { return idv; }
  /// Stores the record in an archive or loads it from there.
  void Serialize(QArchive& ar);

  /// The table's name and kind code, what its records are compared by, and their fields in order.
  static constexpr const char* kTableName = "R_CO_DV";
  static constexpr TableKind kKind = KIND_R_CO_DV;
  static constexpr RecordKey kKey = RecordKey::kRelation;
  static std::span<const FieldInfo> Fields();
};

/// District to its DC lines.
class R_DV_DLN {
 public:
  QString dv_id;   ///< identity of the parent (validation)
  QString dln_id;  ///< identity of the child (validation)
  i32 idv = 0;     ///< number of the parent record (validation)
  i32 idln = 0;    ///< number of the child record (validation)
  i32 next = 0;    ///< next row of the parent's chain, -1 at the end (validation)
  i32 prev = 0;    ///< previous row of the parent's chain, -1 at the first row (validation)

  R_DV_DLN() = default;
  /// A row that joins the two; its numbers are still 0.
  R_DV_DLN(const QString& parentId, const QString& childId) : dv_id(parentId), dln_id(childId) {}
  /// Rows are compared by the identity of the parent, then of the child.
  bool operator==(const R_DV_DLN& other) const { return dv_id == other.dv_id && dln_id == other.dln_id; }
  bool operator<(const R_DV_DLN& other) const {
    const int order = dv_id.compare(other.dv_id);
    return order != 0 ? order < 0 : dln_id.compare(other.dln_id) < 0;
  }
  /// The number of the child record.
  int ChildNumber() const { return idln; }
  /// Stores the record in an archive or loads it from there.
  void Serialize(QArchive& ar);

  /// The table's name and kind code, what its records are compared by, and their fields in order.
  static constexpr const char* kTableName = "R_DV_DLN";
  static constexpr TableKind kKind = KIND_R_DV_DLN;
  static constexpr RecordKey kKey = RecordKey::kRelation;
  static std::span<const FieldInfo> Fields();
};

/// District to its AC lines.
class R_DV_LN {
 public:
  QString dv_id;  ///< identity of the parent (validation)
  QString ln_id;  ///< identity of the child (validation)
  i32 idv = 0;    ///< number of the parent record (validation)
  i32 iln = 0;    ///< number of the child record (validation)
  i32 next = 0;   ///< next row of the parent's chain, -1 at the end (validation)
  i32 prev = 0;   ///< previous row of the parent's chain, -1 at the first row (validation)

  R_DV_LN() = default;
  /// A row that joins the two; its numbers are still 0.
  R_DV_LN(const QString& parentId, const QString& childId) : dv_id(parentId), ln_id(childId) {}
  /// Rows are compared by the identity of the parent, then of the child.
  bool operator==(const R_DV_LN& other) const { return dv_id == other.dv_id && ln_id == other.ln_id; }
  bool operator<(const R_DV_LN& other) const {
    const int order = dv_id.compare(other.dv_id);
    return order != 0 ? order < 0 : ln_id.compare(other.ln_id) < 0;
  }
  /// The number of the child record.
  int ChildNumber() const { return iln; }
  /// Stores the record in an archive or loads it from there.
  void Serialize(QArchive& ar);

  /// The table's name and kind code, what its records are compared by, and their fields in order.
  static constexpr const char* kTableName = "R_DV_LN";
  static constexpr TableKind kKind = KIND_R_DV_LN;
  static constexpr RecordKey kKey = RecordKey::kRelation;
  static std::span<const FieldInfo> Fields();
};

/// District to its stations.
class R_DV_ST {
 public:
  QString dv_id;  ///< identity of the parent (validation)
  QString st_id;  ///< identity of the child (validation)
  i32 idv = 0;    ///< number of the parent record (validation)
  i32 ist = 0;    ///< number of the child record (validation)
  i32 next = 0;   ///< next row of the parent's chain, -1 at the end (validation)
  i32 prev = 0;   ///< previous row of the parent's chain, -1 at the first row (validation)

  R_DV_ST() = default;
  /// A row that joins the two; its numbers are still 0.
  R_DV_ST(const QString& parentId, const QString& childId) : dv_id(parentId), st_id(childId) {}
  /// Rows are compared by the identity of the parent, then of the child.
  bool operator==(const R_DV_ST& other) const { return dv_id == other.dv_id && st_id == other.st_id; }
  bool operator<(const R_DV_ST& other) const {
    const int order = dv_id.compare(other.dv_id);
    return order != 0 ? order < 0 : st_id.compare(other.st_id) < 0;
  }
  /// The number of the child record.
  int ChildNumber() const { return ist; }
  /// Stores the record in an archive or loads it from there.
  void Serialize(QArchive& ar);

  /// The table's name and kind code, what its records are compared by, and their fields in order.
  static constexpr const char* kTableName = "R_DV_ST";
  static constexpr TableKind kKind = KIND_R_DV_ST;
  static constexpr RecordKey kKey = RecordKey::kRelation;
  static std::span<const FieldInfo> Fields();
};

/// Station to its voltage levels.
class R_ST_KV {
 public:
  QString st_id;  ///< identity of the parent (validation)
  QString kv_id;  ///< identity of the child (validation)
  i32 ist = 0;    ///< number of the parent record (validation)
  i32 ikv = 0;    ///< number of the child record (validation)
  i32 next = 0;   ///< next row of the parent's chain, -1 at the end (validation)
  i32 prev = 0;   ///< previous row of the parent's chain, -1 at the first row (validation)

  R_ST_KV() = default;
  /// A row that joins the two; its numbers are still 0.
  R_ST_KV(const QString& parentId, const QString& childId) : st_id(parentId), kv_id(childId) {}
  /// Rows are compared by the identity of the parent, then of the child.
  bool operator==(const R_ST_KV& other) const { return st_id == other.st_id && kv_id == other.kv_id; }
  bool operator<(const R_ST_KV& other) const {
    const int order = st_id.compare(other.st_id);
    return order != 0 ? order < 0 : kv_id.compare(other.kv_id) < 0;
  }
  /// The number of the child record.
  int ChildNumber() const { return ikv; }
  /// Stores the record in an archive or loads it from there.
  void Serialize(QArchive& ar);

  /// The table's name and kind code, what its records are compared by, and their fields in order.
  static constexpr const char* kTableName = "R_ST_KV";
  static constexpr TableKind kKind = KIND_R_ST_KV;
  static constexpr RecordKey kKey = RecordKey::kRelation;
  static std::span<const FieldInfo> Fields();
};

/// Station to its transformer windings.
class R_ST_XF {
 public:
  QString st_id;  ///< identity of the parent (validation)
  QString xf_id;  ///< identity of the child (validation)
  i32 ist = 0;    ///< number of the parent record (validation)
  i32 ixf = 0;    ///< number of the child record (validation)
  i32 next = 0;   ///< next row of the parent's chain, -1 at the end (validation)
  i32 prev = 0;   ///< previous row of the parent's chain, -1 at the first row (validation)

  R_ST_XF() = default;
  /// A row that joins the two; its numbers are still 0.
  R_ST_XF(const QString& parentId, const QString& childId) : st_id(parentId), xf_id(childId) {}
  /// Rows are compared by the identity of the parent, then of the child.
  bool operator==(const R_ST_XF& other) const { return st_id == other.st_id && xf_id == other.xf_id; }
  bool operator<(const R_ST_XF& other) const {
    const int order = st_id.compare(other.st_id);
    return order != 0 ? order < 0 : xf_id.compare(other.xf_id) < 0;
  }
  /// The number of the child record.
  int ChildNumber() const { return ixf; }
  /// Stores the record in an archive or loads it from there.
  void Serialize(QArchive& ar);

  /// The table's name and kind code, what its records are compared by, and their fields in order.
  static constexpr const char* kTableName = "R_ST_XF";
  static constexpr TableKind kKind = KIND_R_ST_XF;
  static constexpr RecordKey kKey = RecordKey::kRelation;
  static std::span<const FieldInfo> Fields();
};

}  // namespace dtsdb
