// Written by scripts/generate from the description in schema/: change it there.
/// \file
/// The relations from a node to the branch ends on it.
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

/// Node to the breaker ends on it.
class R_ND_CB2 {
 public:
  QString nd_id;   ///< identity of the parent (validation)
  QString cb2_id;  ///< identity of the child (validation)
  i32 ind = 0;     ///< number of the parent record (validation)
  i32 icb2 = 0;    ///< number of the child record (validation)
  i32 next = 0;    ///< next row of the parent's chain, -1 at the end (validation)
  i32 prev = 0;    ///< previous row of the parent's chain, -1 at the first row (validation)

  R_ND_CB2() = default;
  /// A row that joins the two; its numbers are still 0.
  R_ND_CB2(const QString& parentId, const QString& childId) : nd_id(parentId), cb2_id(childId) {}
  /// Rows are compared by the identity of the parent, then of the child.
  bool operator==(const R_ND_CB2& other) const { return nd_id == other.nd_id && cb2_id == other.cb2_id; }
  bool operator<(const R_ND_CB2& other) const {
    const int order = nd_id.compare(other.nd_id);
    return order != 0 ? order < 0 : cb2_id.compare(other.cb2_id) < 0;
  }
  /// The number of the child record.
  int ChildNumber() const { return icb2; }
  /// Stores the record in an archive or loads it from there.
  void Serialize(QArchive& ar);

  /// The table's name and kind code, what its records are compared by, and their fields in order.
  static constexpr const char* kTableName = "R_ND_CB2";
  static constexpr TableKind kKind = KIND_R_ND_CB2;
  static constexpr RecordKey kKey = RecordKey::kRelation;
  static std::span<const FieldInfo> Fields();
};

/// Node to the DC line ends on it.
class R_ND_DLN2 {
 public:
  QString nd_id;    ///< identity of the parent (validation)
  QString dln2_id;  ///< identity of the child (validation)
  i32 ind = 0;      ///< number of the parent record (validation)
  i32 idln2 = 0;    ///< number of the child record (validation)
  i32 next = 0;     ///< next row of the parent's chain, -1 at the end (validation)
  i32 prev = 0;     ///< previous row of the parent's chain, -1 at the first row (validation)

  R_ND_DLN2() = default;
  /// A row that joins the two; its numbers are still 0.
  R_ND_DLN2(const QString& parentId, const QString& childId) : nd_id(parentId), dln2_id(childId) {}
  /// Rows are compared by the identity of the parent, then of the child.
  bool operator==(const R_ND_DLN2& other) const { return nd_id == other.nd_id && dln2_id == other.dln2_id; }
  bool operator<(const R_ND_DLN2& other) const {
    const int order = nd_id.compare(other.nd_id);
    return order != 0 ? order < 0 : dln2_id.compare(other.dln2_id) < 0;
  }
  /// The number of the child record.
  int ChildNumber() const { return idln2; }
  /// Stores the record in an archive or loads it from there.
  void Serialize(QArchive& ar);

  /// The table's name and kind code, what its records are compared by, and their fields in order.
  static constexpr const char* kTableName = "R_ND_DLN2";
  static constexpr TableKind kKind = KIND_R_ND_DLN2;
  static constexpr RecordKey kKey = RecordKey::kRelation;
  static std::span<const FieldInfo> Fields();
};

/// Node to the line ends on it.
class R_ND_LN2 {
 public:
  QString nd_id;   ///< identity of the parent (validation)
  QString ln2_id;  ///< identity of the child (validation)
  i32 ind = 0;     ///< number of the parent record (validation)
  i32 iln2 = 0;    ///< number of the child record (validation)
  i32 next = 0;    ///< next row of the parent's chain, -1 at the end (validation)
  i32 prev = 0;    ///< previous row of the parent's chain, -1 at the first row (validation)

  R_ND_LN2() = default;
  /// A row that joins the two; its numbers are still 0.
  R_ND_LN2(const QString& parentId, const QString& childId) : nd_id(parentId), ln2_id(childId) {}
  /// Rows are compared by the identity of the parent, then of the child.
  bool operator==(const R_ND_LN2& other) const { return nd_id == other.nd_id && ln2_id == other.ln2_id; }
  bool operator<(const R_ND_LN2& other) const {
    const int order = nd_id.compare(other.nd_id);
    return order != 0 ? order < 0 : ln2_id.compare(other.ln2_id) < 0;
  }
  /// The number of the child record.
  int ChildNumber() const { return iln2; }
  /// Stores the record in an archive or loads it from there.
  void Serialize(QArchive& ar);

  /// The table's name and kind code, what its records are compared by, and their fields in order.
  static constexpr const char* kTableName = "R_ND_LN2";
  static constexpr TableKind kKind = KIND_R_ND_LN2;
  static constexpr RecordKey kKey = RecordKey::kRelation;
  static std::span<const FieldInfo> Fields();
};

/// Node to the winding ends on it.
class R_ND_XF2 {
 public:
  QString nd_id;   ///< identity of the parent (validation)
  QString xf2_id;  ///< identity of the child (validation)
  i32 ind = 0;     ///< number of the parent record (validation)
  i32 ixf2 = 0;    ///< number of the child record (validation)
  i32 next = 0;    ///< next row of the parent's chain, -1 at the end (validation)
  i32 prev = 0;    ///< previous row of the parent's chain, -1 at the first row (validation)

  R_ND_XF2() = default;
  /// A row that joins the two; its numbers are still 0.
  R_ND_XF2(const QString& parentId, const QString& childId) : nd_id(parentId), xf2_id(childId) {}
  /// Rows are compared by the identity of the parent, then of the child.
  bool operator==(const R_ND_XF2& other) const { return nd_id == other.nd_id && xf2_id == other.xf2_id; }
  bool operator<(const R_ND_XF2& other) const {
    const int order = nd_id.compare(other.nd_id);
    return order != 0 ? order < 0 : xf2_id.compare(other.xf2_id) < 0;
  }
  /// The number of the child record.
  int ChildNumber() const { return ixf2; }
  /// Stores the record in an archive or loads it from there.
  void Serialize(QArchive& ar);

  /// The table's name and kind code, what its records are compared by, and their fields in order.
  static constexpr const char* kTableName = "R_ND_XF2";
  static constexpr TableKind kKind = KIND_R_ND_XF2;
  static constexpr RecordKey kKey = RecordKey::kRelation;
  static std::span<const FieldInfo> Fields();
};

/// Node to the zero-impedance branch ends on it.
class R_ND_ZBR2 {
 public:
  QString nd_id;    ///< identity of the parent (validation)
  QString zbr2_id;  ///< identity of the child (validation)
  i32 ind = 0;      ///< number of the parent record (validation)
  i32 izbr2 = 0;    ///< number of the child record (validation)
  i32 next = 0;     ///< next row of the parent's chain, -1 at the end (validation)
  i32 prev = 0;     ///< previous row of the parent's chain, -1 at the first row (validation)

  R_ND_ZBR2() = default;
  /// A row that joins the two; its numbers are still 0.
  R_ND_ZBR2(const QString& parentId, const QString& childId) : nd_id(parentId), zbr2_id(childId) {}
  /// Rows are compared by the identity of the parent, then of the child.
  bool operator==(const R_ND_ZBR2& other) const { return nd_id == other.nd_id && zbr2_id == other.zbr2_id; }
  bool operator<(const R_ND_ZBR2& other) const {
    const int order = nd_id.compare(other.nd_id);
    return order != 0 ? order < 0 : zbr2_id.compare(other.zbr2_id) < 0;
  }
  /// The number of the child record.
  int ChildNumber() const { return izbr2; }
  /// Stores the record in an archive or loads it from there.
  void Serialize(QArchive& ar);

  /// The table's name and kind code, what its records are compared by, and their fields in order.
  static constexpr const char* kTableName = "R_ND_ZBR2";
  static constexpr TableKind kKind = KIND_R_ND_ZBR2;
  static constexpr RecordKey kKey = RecordKey::kRelation;
  static std::span<const FieldInfo> Fields();
};

}  // namespace dtsdb
