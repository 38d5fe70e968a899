// Written by scripts/generate from the description in schema/: change it there.
/// \file
/// What the topology works out, its log, and the global state.
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

/// Bus-section.
class BS {
 public:
  i32 id = 0;      ///< bus-section number = its array index (topology)
  QString name;    ///< section name (topology)
  i32 ikv = 0;     ///< physical KV number owning the section, -1 none (topology)
  f64 f0 = 0;      ///< carried value
  i32 island = 0;  ///< -2 unassigned/reclaimed, -1 dead, >=0 island number (topology)
  u32 status = 0;  ///< bits: 1 BS_DEAD, 2 BS_ISOLATED, 32 BS_BROKEN (topology)
  u32 flags = 0;   ///< bits: 1 BS_BASE, 2 BS_UNCLAIMED (topology)
  i32 next = 0;    ///< next in chain (topology)
  i32 prev = 0;    ///< previous in chain, -1 on free list (topology)
  i32 ibsl = 0;    ///< index of the section's BSL entry, -1 none (topology)
  f64 v = 0;       ///< voltage magnitude, input of the breaker flow
  f64 a = 0;       ///< voltage angle in degrees, input of the breaker flow, in deg
  f64 f1 = 0;      ///< carried value
  f64 f2 = 0;      ///< carried value
  f64 f3 = 0;      ///< carried value
  f64 f4 = 0;      ///< carried value
  i32 n1 = 0;      ///< carried integer

  BS() = default;
  /// Implicit, so that a table can be searched by a number.
  BS(int number) : id(number) {}
  /// Records are compared by their number.
  bool operator==(const BS& other) const { return id == other.id; }
  bool operator<(const BS& other) const { return id < other.id; }
  /// Stores the record in an archive or loads it from there.
  void Serialize(QArchive& ar);

  /// The table's name and kind code, what its records are compared by, and their fields in order.
  static constexpr const char* kTableName = "BS";
  static constexpr TableKind kKind = KIND_BS;
  static constexpr RecordKey kKey = RecordKey::kNumbered;
  static std::span<const FieldInfo> Fields();
};

/// Entry of the bus-section list.
class BSL {
 public:
  i32 id = 0;    ///< own index (topology)
  i32 next = 0;  ///< next entry, free-list link (topology)
  i32 prev = 0;  ///< previous entry, -1 on free list (topology)
  u8 kind = 0;   ///< 1-based table number of the referenced record (topology)
  i32 ref = 0;   ///< physical number of the referenced record; BS index for kind 2 (topology)

  BSL() = default;
  /// Implicit, so that a table can be searched by a number.
  BSL(int number) : id(number) {}
  /// Records are compared by their number.
  bool operator==(const BSL& other) const { return id == other.id; }
  bool operator<(const BSL& other) const { return id < other.id; }
  /// Stores the record in an archive or loads it from there.
  void Serialize(QArchive& ar);

  /// The table's name and kind code, what its records are compared by, and their fields in order.
  static constexpr const char* kTableName = "BSL";
  static constexpr TableKind kKind = KIND_BSL;
  static constexpr RecordKey kKey = RecordKey::kNumbered;
  static std::span<const FieldInfo> Fields();
};

/// Live island.
class ISLAND {
 public:
  i32 id = 0;       ///< island number (topology)
  i32 ref_ibs = 0;  ///< bus-section of the reference; -1 while the island has none (topology)
  i32 ref_un = 0;   ///< physical number of the reference UN (topology)
  f32 ref_a = 0;    ///< angle of the reference (topology)
  f32 f1 = 0;       ///< carried value
  f32 f2 = 0;       ///< carried value
  f32 f3 = 0;       ///< carried value
  QString ref_id;   ///< identity of the reference UN (topology)
  QString name;     ///< carried text

  ISLAND() = default;
  /// Implicit, so that a table can be searched by a number.
  ISLAND(int number) : id(number) {}
  /// Records are compared by their number.
  bool operator==(const ISLAND& other) const { return id == other.id; }
  bool operator<(const ISLAND& other) const { return id < other.id; }
  /// Stores the record in an archive or loads it from there.
  void Serialize(QArchive& ar);

  /// The table's name and kind code, what its records are compared by, and their fields in order.
  static constexpr const char* kTableName = "ISLAND";
  static constexpr TableKind kKind = KIND_ISLAND;
  static constexpr RecordKey kKey = RecordKey::kNumbered;
  static std::span<const FieldInfo> Fields();
};

/// Node that changed section in an incremental run.
class CHND {
 public:
  i32 id = 0;       ///< change sequence number (topology)
  i32 ind = 0;      ///< node number (topology)
  i32 ibs_new = 0;  ///< new bus-section (topology)
  i32 ibs_old = 0;  ///< old bus-section (topology)
  i32 ikv = 0;      ///< KV number (topology)

  CHND() = default;
  /// Implicit, so that a table can be searched by a number.
  CHND(int number) : id(number) {}
  /// Records are compared by their number.
  bool operator==(const CHND& other) const { return id == other.id; }
  bool operator<(const CHND& other) const { return id < other.id; }
  /// Stores the record in an archive or loads it from there.
  void Serialize(QArchive& ar);

  /// The table's name and kind code, what its records are compared by, and their fields in order.
  static constexpr const char* kTableName = "CHND";
  static constexpr TableKind kKind = KIND_CHND;
  static constexpr RecordKey kKey = RecordKey::kNumbered;
  static std::span<const FieldInfo> Fields();
};

/// Topology log row.
class TPL {
 public:
  i32 id = 0;     ///< log row number (topology)
  i32 kind = 0;   ///< table number of the logged thing (topology)
  i32 n1 = 0;     ///< status word given by the writer (topology)
  QString name;   ///< identity of the logged thing (topology)
  i32 n2 = 0;     ///< new section, -1 for none (topology)
  i32 n3 = 0;     ///< old section (topology)
  u32 time = 0;   ///< event time, QDateTime::toTime_t, in s (topology)
  QString event;  ///< event word (topology)

  TPL() = default;
  /// Implicit, so that a table can be searched by a number.
  TPL(int number) : id(number) {}
  /// Records are compared by their number.
  bool operator==(const TPL& other) const { return id == other.id; }
  bool operator<(const TPL& other) const { return id < other.id; }
  /// Stores the record in an archive or loads it from there.
  void Serialize(QArchive& ar);

  /// The table's name and kind code, what its records are compared by, and their fields in order.
  static constexpr const char* kTableName = "TPL";
  static constexpr TableKind kKind = KIND_TPL;
  static constexpr RecordKey kKey = RecordKey::kNumbered;
  static std::span<const FieldInfo> Fields();
};

/// Component change that waits for the next topology run.
class TPTRACE {
 public:
  i32 id = 0;     ///< row number (topology)
  QString name;   ///< component identity (topology)
  u8 type = 0;    ///< component type code of tpSetCompStatus (topology)
  i32 n1 = 0;     ///< physical number of the component in its table; -1 when the row is to be passed over (topology)
  u8 status = 0;  ///< what was asked for: nonzero closed or in service, 0 open or out of service (topology)
  u32 time = 0;   ///< seconds from QDateTime::toTime_t, in s (topology)

  TPTRACE() = default;
  /// Implicit, so that a table can be searched by a number.
  TPTRACE(int number) : id(number) {}
  /// Records are compared by their number.
  bool operator==(const TPTRACE& other) const { return id == other.id; }
  bool operator<(const TPTRACE& other) const { return id < other.id; }
  /// Stores the record in an archive or loads it from there.
  void Serialize(QArchive& ar);

  /// The table's name and kind code, what its records are compared by, and their fields in order.
  static constexpr const char* kTableName = "TPTRACE";
  static constexpr TableKind kKind = KIND_TPTRACE;
  static constexpr RecordKey kKey = RecordKey::kNumbered;
  static std::span<const FieldInfo> Fields();
};

/// The single row of global state.
class GLOBAL {
 public:
  i32 id = 0;          ///< row number (validation)
  f32 f1 = 0;          ///< carried value; a new validation keeps it, or starts it at 100.0 when the GLOBAL table is
                       ///< empty (validation)
  i32 bs_free = 0;     ///< head of BS free list (topology)
  i32 bs_dead = 0;     ///< BS index of dead head, 0 (topology)
  i32 bs_live = 0;     ///< BS index of live head, 1 (topology)
  i32 bsl_free = 0;    ///< head of BSL free list (topology)
  i32 bsl_head = 0;    ///< BSL list head (topology)
  i32 n1 = 0;          ///< carried value
  u32 u1 = 0;          ///< time of the last tpChange, in seconds from QDateTime::toTime_t, in s (topology)
  u32 time = 0;        ///< time of the last tpAllnew, in the same seconds, in s (topology)
  u8 valid = 0;        ///< 1 after a validation run that ended with no error (validation)
  u32 check_time = 0;  ///< time of the end of the last validation run without errors, in s (validation)
  u8 invalid = 0;      ///< 1 from the start of a validation run until a run ends with no error; the editing operations
                       ///< refuse to run on a value other than 0 (validation)
  i32 errors = 0;      ///< error count of the last validation (validation)

  GLOBAL() = default;
  /// Implicit, so that a table can be searched by a number.
  GLOBAL(int number) : id(number) {}
  /// Records are compared by their number.
  bool operator==(const GLOBAL& other) const { return id == other.id; }
  bool operator<(const GLOBAL& other) const { return id < other.id; }
  /// Stores the record in an archive or loads it from there.
  void Serialize(QArchive& ar);

  /// The table's name and kind code, what its records are compared by, and their fields in order.
  static constexpr const char* kTableName = "GLOBAL";
  static constexpr TableKind kKind = KIND_GLOBAL;
  static constexpr RecordKey kKey = RecordKey::kNumbered;
  static std::span<const FieldInfo> Fields();
};

}  // namespace dtsdb
