// Written by scripts/generate from the description in schema/: change it there.
/// \file
/// Nodes, and what stands on one node: buses, units, loads, capacitors and reactors.
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

/// Electrical node (结点).
class ND {
 public:
  QString id;         ///< node identity (validation)
  i32 ibs = 0;        ///< bus-section the node is in now (topology)
  i32 ibs0 = 0;       ///< number of the structural bus-section of the node, set together with ibs by the first node
                      ///< pass (topology)
  u32 flags = 0;      ///< bit 1 node is dead, 2 carries a UN, 4 a LD, 8 a CP, 16 a BUS, 64 work mark of the node pass
                      ///< (validation, topology)
  i32 next = 0;       ///< next node in the ring of nodes of the same group (topology)
  i32 n1 = 0;         ///< work field of tpNodeConnect (topology)
  i32 r_kv_nd = 0;    ///< R_KV_ND row of the node (validation)
  i32 r_nd_cb2 = 0;   ///< head of R_ND_CB2 chain (validation)
  i32 r_nd_ln2 = 0;   ///< head of R_ND_LN2 chain (validation)
  i32 r_nd_xf2 = 0;   ///< head of R_ND_XF2 chain (validation)
  i32 r_nd_zbr2 = 0;  ///< head of R_ND_ZBR2 chain (validation)
  i32 r_nd_dln2 = 0;  ///< head of R_ND_DLN2 chain (validation)

  ND() = default;
  /// Implicit, so that a table can be searched by an identity.
  ND(const QString& identity) : id(identity) {}
  /// Records are compared by their identity.
  bool operator==(const ND& other) const { return id == other.id; }
  bool operator<(const ND& other) const { return id < other.id; }
  /// Stores the record in an archive or loads it from there.
  void Serialize(QArchive& ar);

  /// The table's name and kind code, what its records are compared by, and their fields in order.
  static constexpr const char* kTableName = "ND";
  static constexpr TableKind kKind = KIND_ND;
  static constexpr RecordKey kKey = RecordKey::kIdentified;
  static std::span<const FieldInfo> Fields();
};

/// Physical bus on a voltage level.
class BUS {
 public:
  QString id;         ///< identity of the physical bus (物理母线 in the messages)
  QString kv;         ///< identity of the owning KV
  QString nd;         ///< node identity of the bus
  i32 ind = 0;        ///< node number, into ND (validation)
  i32 ibs = 0;        ///< bus-section number (topology)
  QString ana_v;      ///< voltage measurement identity
  QString ana_a;      ///< angle measurement identity
  i32 iana_v = 0;     ///< index of ana_v in ANALOG, -1 absent (validation)
  i32 iana_a = 0;     ///< index of ana_a in ANALOG, -1 absent (validation)
  f64 v = 0;          ///< voltage value
  f64 a = 0;          ///< angle value
  f32 f1 = 0;         ///< carried value
  f32 f2 = 0;         ///< copy of KV.vmax, made by the validation, in kV (validation)
  f32 f3 = 0;         ///< copy of KV.vmin, made by the validation, in kV (validation)
  u32 tp_status = 0;  ///< bit 1: the bus lies in a dead section (topology)
  i32 r_kv_bus = 0;   ///< number of the R_KV_BUS row of this bus (validation)

  BUS() = default;
  /// Implicit, so that a table can be searched by an identity.
  BUS(const QString& identity) : id(identity) {}
  /// Records are compared by their identity.
  bool operator==(const BUS& other) const { return id == other.id; }
  bool operator<(const BUS& other) const { return id < other.id; }
  /// Stores the record in an archive or loads it from there.
  void Serialize(QArchive& ar);

  /// The table's name and kind code, what its records are compared by, and their fields in order.
  static constexpr const char* kTableName = "BUS";
  static constexpr TableKind kKind = KIND_BUS;
  static constexpr RecordKey kKey = RecordKey::kIdentified;
  static std::span<const FieldInfo> Fields();
};

/// Generating unit.
class UN {
 public:
  QString id;         ///< generating unit identity
  QString kv;         ///< KV identity
  QString nd;         ///< node identity
  i32 ind = 0;        ///< node number (validation)
  i32 ibs = 0;        ///< bus-section (topology)
  f32 pmax = 0;       ///< upper output; the reference choice takes pmax - pcur as the margin of a unit, in MW
  f32 f1 = 0;         ///< carried value
  f32 pcur = 0;       ///< lower term of that margin, in MW
  f32 f2 = 0;         ///< carried value
  f32 f3 = 0;         ///< carried value
  f32 f4 = 0;         ///< carried value
  f32 f5 = 0;         ///< carried value
  f32 f6 = 0;         ///< carried value
  QString ana_p;      ///< P measurement
  i32 iana_p = 0;     ///< index in ANALOG (validation)
  QString ana_q;      ///< Q measurement
  i32 iana_q = 0;     ///< index in ANALOG (validation)
  QString ana_v;      ///< third measurement identity
  i32 iana_v = 0;     ///< index of ana_v in ANALOG, -1 when absent (validation)
  f32 p = 0;          ///< active power, input of the breaker flow, in MW
  f32 q = 0;          ///< reactive power, input of the breaker flow, in Mvar
  f32 f7 = 0;         ///< carried value
  f32 a = 0;          ///< value copied into ISLAND.ref_a when the unit becomes the reference
  f32 f8 = 0;         ///< carried value
  i32 ref = -1;       ///< reference mark of the unit; default -1; the value 0 makes it a candidate (topology)
  f32 f9 = 0;         ///< carried value
  f32 f10 = 0;        ///< carried value
  u32 status = 0;     ///< component status bits 1 and 4; bit 16: reference chosen by the system (topology)
  u32 tp_status = 0;  ///< bit 1: the unit lies in a dead section (topology)
  i32 r_kv_un = 0;    ///< R_KV_UN row (validation)

  UN() = default;
  /// Implicit, so that a table can be searched by an identity.
  UN(const QString& identity) : id(identity) {}
  /// Records are compared by their identity.
  bool operator==(const UN& other) const { return id == other.id; }
  bool operator<(const UN& other) const { return id < other.id; }
  /// Stores the record in an archive or loads it from there.
  void Serialize(QArchive& ar);

  /// The table's name and kind code, what its records are compared by, and their fields in order.
  static constexpr const char* kTableName = "UN";
  static constexpr TableKind kKind = KIND_UN;
  static constexpr RecordKey kKey = RecordKey::kIdentified;
  static std::span<const FieldInfo> Fields();
};

/// Load.
class LD {
 public:
  QString id;         ///< load identity
  QString kv;         ///< KV identity
  QString nd;         ///< node identity
  i32 ind = 0;        ///< node number (validation)
  i32 ibs = 0;        ///< bus-section (topology)
  QString ana_p;      ///< P measurement
  QString ana_q;      ///< Q measurement
  QString ana_i;      ///< third measurement identity
  QString ana_v;      ///< V measurement
  i32 iana_p = 0;     ///< index in ANALOG (validation)
  i32 iana_q = 0;     ///< index in ANALOG (validation)
  i32 iana_i = 0;     ///< index of ana_i in ANALOG, -1 when absent (validation)
  i32 iana_v = 0;     ///< index in ANALOG (validation)
  u32 status = 0;     ///< component status bits 1 and 4 (topology)
  u32 tp_status = 0;  ///< bit 1: the load lies in a dead section (topology)
  f32 f1 = 0;         ///< carried value
  f32 f2 = 0;         ///< carried value
  f32 p = 0;          ///< active power, input of the breaker flow, in MW
  f32 q = 0;          ///< reactive power, input of the breaker flow, in Mvar
  f32 f3 = 0;         ///< carried value
  f32 f4 = 0;         ///< carried value
  f32 f5 = 0;         ///< carried value
  f32 f6 = 0;         ///< carried value
  f32 f7 = 0;         ///< carried value
  f32 a = 0;          ///< value copied into ISLAND.ref_a when the load becomes the reference
  f32 f9 = 0;         ///< carried value
  i32 ref = -1;       ///< reference mark of the load; default -1; the value 0 makes it a candidate
  i32 r_kv_ld = 0;    ///< R_KV_LD row (validation)

  LD() = default;
  /// Implicit, so that a table can be searched by an identity.
  LD(const QString& identity) : id(identity) {}
  /// Records are compared by their identity.
  bool operator==(const LD& other) const { return id == other.id; }
  bool operator<(const LD& other) const { return id < other.id; }
  /// Stores the record in an archive or loads it from there.
  void Serialize(QArchive& ar);

  /// The table's name and kind code, what its records are compared by, and their fields in order.
  static constexpr const char* kTableName = "LD";
  static constexpr TableKind kKind = KIND_LD;
  static constexpr RecordKey kKey = RecordKey::kIdentified;
  static std::span<const FieldInfo> Fields();
};

/// Capacitor or reactor.
class CP {
 public:
  QString id;         ///< capacitor/reactor identity
  QString kv;         ///< KV identity
  QString nd;         ///< node identity
  i32 ind = 0;        ///< node number (validation)
  i32 ibs = 0;        ///< bus-section (topology)
  QString ana_q;      ///< reactive measurement identity
  i32 iana_q = 0;     ///< index of ana_q in ANALOG (validation)
  u32 status = 0;     ///< component status bits 1 and 4 (topology)
  u32 tp_status = 0;  ///< bit 1: the device lies in a dead section (topology)
  f32 f1 = 0;         ///< carried value
  f32 f2 = 0;         ///< carried value
  f32 f3 = 0;         ///< carried value
  f32 f4 = 0;         ///< carried value
  f32 p = 0;          ///< active power, input of the breaker flow, in MW
  f32 q = 0;          ///< reactive power, input of the breaker flow, in Mvar
  f32 f5 = 0;         ///< carried value
  i32 r_kv_cp = 0;    ///< number of the R_KV_CP row (validation)

  CP() = default;
  /// Implicit, so that a table can be searched by an identity.
  CP(const QString& identity) : id(identity) {}
  /// Records are compared by their identity.
  bool operator==(const CP& other) const { return id == other.id; }
  bool operator<(const CP& other) const { return id < other.id; }
  /// Stores the record in an archive or loads it from there.
  void Serialize(QArchive& ar);

  /// The table's name and kind code, what its records are compared by, and their fields in order.
  static constexpr const char* kTableName = "CP";
  static constexpr TableKind kKind = KIND_CP;
  static constexpr RecordKey kKey = RecordKey::kIdentified;
  static std::span<const FieldInfo> Fields();
};

}  // namespace dtsdb
