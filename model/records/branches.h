// Written by scripts/generate from the description in schema/: change it there.
/// \file
/// What joins two nodes: breakers, lines, windings and zero-impedance branches.
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

/// Breaker or switch between two nodes of a voltage level.
class CB {
 public:
  QString id;         ///< breaker identity
  QString kv;         ///< KV identity
  u32 flags = 0;      ///< bits 1 and 4: breaker type, exactly one set in a valid model; 0x100: the breaker is open;
                      ///< 0x800: read as open by the realtime exchange; 0x2000: a ZBR stands on the breaker, set by the
                      ///< validation and by AddZBR (validation, topology)
  QString status_id;  ///< identity of the STATUS point of the breaker
  i32 istatus = 0;    ///< index of status_id in STATUS, -1 absent (validation)
  i32 cb2 = 0;        ///< number of the CB2 row of the from end (validation)
  i32 zcb2 = 0;       ///< number of the CB2 row of the to end (validation)
  QString nd;         ///< from-end node identity
  i32 ind = 0;        ///< from-end node number (validation)
  QString znd;        ///< to-end node identity
  i32 iznd = 0;       ///< to-end node number (validation)
  i32 ibs = 0;        ///< from-end bus-section (topology)
  i32 izbs = 0;       ///< to-end bus-section (topology)
  u32 tp_status = 0;  ///< bit 1 from side isolated, 2 to side isolated, 4 both sides dead; bits 8, 16, 32: the
                      ///< breaker's class in the breaker flow (topology, breaker flow)
  i32 r_kv_cb = 0;    ///< number of the R_KV_CB row (validation)

  CB() = default;
  /// Implicit, so that a table can be searched by an identity.
  CB(const QString& identity) : id(identity) {}
  /// Records are compared by their identity.
  bool operator==(const CB& other) const { return id == other.id; }
  bool operator<(const CB& other) const { return id < other.id; }
  /// Stores the record in an archive or loads it from there.
  void Serialize(QArchive& ar);

  /// The table's name and kind code, what its records are compared by, and their fields in order.
  static constexpr const char* kTableName = "CB";
  static constexpr TableKind kKind = KIND_CB;
  static constexpr RecordKey kKey = RecordKey::kIdentified;
  static std::span<const FieldInfo> Fields();
};

/// AC line between two stations.
class LN {
 public:
  QString id;         ///< line identity
  i8 type = 0;        ///< carried byte
  QString dv;         ///< district identity
  QString nd;         ///< from node
  i32 ind = 0;        ///< from node number (validation)
  QString znd;        ///< to node
  i32 iznd = 0;       ///< to node number (validation)
  i32 ibs = 0;        ///< from bus-section (topology)
  i32 izbs = 0;       ///< to bus-section (topology)
  i32 ln2 = 0;        ///< LN2 row of from end (validation)
  i32 zln2 = 0;       ///< LN2 row of to end (validation)
  QString st;         ///< from station
  QString zst;        ///< to station
  QString kv;         ///< from KV
  QString zkv;        ///< to KV
  QString ana_p;      ///< from P
  QString ana_q;      ///< from Q
  QString ana_i;      ///< from I
  QString zana_p;     ///< to P
  QString zana_q;     ///< to Q
  QString zana_i;     ///< to I
  i32 iana_p = 0;     ///< index (validation)
  i32 iana_q = 0;     ///< index (validation)
  i32 iana_i = 0;     ///< index (validation)
  i32 izana_p = 0;    ///< index (validation)
  i32 izana_q = 0;    ///< index (validation)
  i32 izana_i = 0;    ///< index (validation)
  f32 f1 = 0;         ///< carried value
  f32 f2 = 0;         ///< carried value
  f32 f3 = 0;         ///< carried value
  f32 f4 = 0;         ///< carried value
  f32 f5 = 0;         ///< carried value
  f32 f6 = 0;         ///< carried value
  f32 f7 = 0;         ///< carried value
  f32 f8 = 0;         ///< carried value
  f32 p = 0;          ///< from P, input of the breaker flow, in MW
  f32 q = 0;          ///< from Q, input of the breaker flow, in Mvar
  f32 i = 0;          ///< from I, in A
  f32 zp = 0;         ///< to P, input of the breaker flow, in MW
  f32 zq = 0;         ///< to Q, input of the breaker flow, in Mvar
  f32 zi = 0;         ///< to I, in A
  f32 f9 = 0;         ///< carried value
  f32 f10 = 0;        ///< carried value
  u32 status = 0;     ///< bit 4 out of service, 1 from end open, 2 to end open; bit 64: the line's district is that of
                      ///< its to end only (validation, topology)
  u32 tp_status = 0;  ///< bit 1 from end isolated, 2 to end isolated, 4 both dead (topology)
  i32 r_dv_ln = 0;    ///< R_DV_LN row (validation)

  LN() = default;
  /// Implicit, so that a table can be searched by an identity.
  LN(const QString& identity) : id(identity) {}
  /// Records are compared by their identity.
  bool operator==(const LN& other) const { return id == other.id; }
  bool operator<(const LN& other) const { return id < other.id; }
  /// Stores the record in an archive or loads it from there.
  void Serialize(QArchive& ar);

  /// The table's name and kind code, what its records are compared by, and their fields in order.
  static constexpr const char* kTableName = "LN";
  static constexpr TableKind kKind = KIND_LN;
  static constexpr RecordKey kKey = RecordKey::kIdentified;
  static std::span<const FieldInfo> Fields();
};

/// DC line between two stations.
class DLN {
 public:
  QString id;         ///< DC line identity
  QString dv;         ///< district identity
  QString nd;         ///< from node identity
  i32 ind = 0;        ///< from node number (validation)
  QString znd;        ///< to node identity
  i32 iznd = 0;       ///< to node number (validation)
  i32 ibs = 0;        ///< from bus-section (topology)
  i32 izbs = 0;       ///< to bus-section (topology)
  i32 dln2 = 0;       ///< DLN2 row of from end (validation)
  i32 zdln2 = 0;      ///< DLN2 row of to end (validation)
  QString st;         ///< from station identity
  QString zst;        ///< to station identity
  QString kv;         ///< from KV identity
  QString zkv;        ///< to KV identity
  QString ana_p;      ///< from P measurement
  QString ana_q;      ///< from Q measurement
  QString ana_i;      ///< from I measurement
  QString zana_p;     ///< to P measurement
  QString zana_q;     ///< to Q measurement
  QString zana_i;     ///< to I measurement
  i32 iana_p = 0;     ///< index in ANALOG (validation)
  i32 iana_q = 0;     ///< index in ANALOG (validation)
  i32 iana_i = 0;     ///< index in ANALOG (validation)
  i32 izana_p = 0;    ///< index in ANALOG (validation)
  i32 izana_q = 0;    ///< index in ANALOG (validation)
  i32 izana_i = 0;    ///< index in ANALOG (validation)
  u32 status = 0;     ///< bit 4 out of service, 1 from end open, 2 to end open; bit 32: the line's district is that of
                      ///< its to end only (validation, topology)
  u32 tp_status = 0;  ///< bit 1 from end isolated, 2 to end isolated, 4 both dead (topology)
  i32 r_dv_dln = 0;   ///< R_DV_DLN row (validation)

  DLN() = default;
  /// Implicit, so that a table can be searched by an identity.
  DLN(const QString& identity) : id(identity) {}
  /// Records are compared by their identity.
  bool operator==(const DLN& other) const { return id == other.id; }
  bool operator<(const DLN& other) const { return id < other.id; }
  /// Stores the record in an archive or loads it from there.
  void Serialize(QArchive& ar);

  /// The table's name and kind code, what its records are compared by, and their fields in order.
  static constexpr const char* kTableName = "DLN";
  static constexpr TableKind kKind = KIND_DLN;
  static constexpr RecordKey kKey = RecordKey::kIdentified;
  static std::span<const FieldInfo> Fields();
};

/// Transformer winding between two voltage levels of a station.
class XF {
 public:
  QString id;         ///< transformer winding identity
  u8 type = 0;        ///< winding type, 1, 2 or 3 in a valid model
  f32 f0 = 0;         ///< carried value
  QString st;         ///< station identity
  QString kv;         ///< from KV
  QString zkv;        ///< to KV
  QString nd;         ///< from-end (high voltage) node identity
  QString znd;        ///< to-end (low voltage) node identity
  i32 ind = 0;        ///< from node number (validation)
  i32 iznd = 0;       ///< to node number (validation)
  i32 ibs = 0;        ///< from bus-section (topology)
  i32 izbs = 0;       ///< to bus-section (topology)
  i32 xf2 = 0;        ///< XF2 row of from end (validation)
  i32 zxf2 = 0;       ///< XF2 row of to end (validation)
  QString ana_p;      ///< from P
  QString ana_q;      ///< from Q
  QString ana_i;      ///< from I
  QString ana_t;      ///< fourth measurement identity of the from end; carried, not validated
  QString zana_p;     ///< to P
  QString zana_q;     ///< to Q
  QString zana_i;     ///< to I
  QString zana_t;     ///< fourth measurement identity of the to end; carried, not validated
  i32 iana_p = 0;     ///< index (validation)
  i32 iana_q = 0;     ///< index (validation)
  i32 iana_i = 0;     ///< index (validation)
  i32 iana_t = 0;     ///< carried integer
  i32 izana_p = 0;    ///< index (validation)
  i32 izana_q = 0;    ///< index (validation)
  i32 izana_i = 0;    ///< index (validation)
  i32 izana_t = 0;    ///< carried integer
  f32 p = 0;          ///< from P, input of the breaker flow, in MW
  f32 q = 0;          ///< from Q, input of the breaker flow, in Mvar
  f32 i = 0;          ///< from I, in A
  f32 zp = 0;         ///< to P, input of the breaker flow, in MW
  f32 zq = 0;         ///< to Q, input of the breaker flow, in Mvar
  f32 zi = 0;         ///< to I, in A
  f32 f1 = 0;         ///< carried value
  f32 f2 = 0;         ///< carried value
  u32 status = 0;     ///< bit 1 out of service, 4 from end open, 8 to end open (topology)
  u32 tp_status = 0;  ///< bit 1 from end isolated, 2 to end isolated, 4 both dead (topology)
  i32 r_st_xf = 0;    ///< R_ST_XF row (validation)
  f32 f3 = 0;         ///< carried value
  f32 f4 = 0;         ///< carried value
  f32 f5 = 0;         ///< carried value
  f32 f6 = 0;         ///< carried value
  f32 f7 = 0;         ///< carried value
  f32 f8 = 0;         ///< carried value
  f32 f9 = 0;         ///< carried value
  f32 f10 = 0;        ///< carried value
  i32 n1 = 0;         ///< carried value
  i32 n2 = 0;         ///< carried value
  f32 f11 = 0;        ///< carried value
  f32 f12 = 0;        ///< carried value
  i32 n3 = 0;         ///< carried value
  i32 n4 = 0;         ///< carried value
  i32 n5 = 0;         ///< carried value
  i32 n6 = 0;         ///< carried value
  f32 f13 = 0;        ///< carried value
  f32 f14 = 0;        ///< carried value
  i32 n7 = 0;         ///< carried value
  i32 n8 = 0;         ///< carried value
  i8 flag = 0;        ///< carried value

  XF() = default;
  /// Implicit, so that a table can be searched by an identity.
  XF(const QString& identity) : id(identity) {}
  /// Records are compared by their identity.
  bool operator==(const XF& other) const { return id == other.id; }
  bool operator<(const XF& other) const { return id < other.id; }
  /// Stores the record in an archive or loads it from there.
  void Serialize(QArchive& ar);

  /// The table's name and kind code, what its records are compared by, and their fields in order.
  static constexpr const char* kTableName = "XF";
  static constexpr TableKind kKind = KIND_XF;
  static constexpr RecordKey kKey = RecordKey::kIdentified;
  static std::span<const FieldInfo> Fields();
};

/// Zero-impedance branch, tied to a breaker.
class ZBR {
 public:
  QString id;         ///< zero-impedance branch identity
  QString cb;         ///< identity of the associated CB
  i32 icb = 0;        ///< number of the associated CB, -1 when it is not found (validation)
  i32 ind = 0;        ///< from node number, copied from CB (validation)
  i32 iznd = 0;       ///< to node number, copied from CB (validation)
  i32 ibs = 0;        ///< from bus-section (topology)
  i32 izbs = 0;       ///< to bus-section (topology)
  i32 zbr2 = 0;       ///< ZBR2 row of from end (validation)
  i32 zzbr2 = 0;      ///< ZBR2 row of to end (validation)
  QString ana_p;      ///< P measurement
  QString ana_q;      ///< Q measurement
  QString ana_i;      ///< I measurement
  i32 iana_p = 0;     ///< index (validation)
  i32 iana_q = 0;     ///< index (validation)
  i32 iana_i = 0;     ///< index (validation)
  f32 p = 0;          ///< P value, in MW
  f32 q = 0;          ///< Q value, in Mvar
  f32 i = 0;          ///< I value, in A
  u32 status = 0;     ///< bit 1 out of service, 4 from end open, 16 to end open (topology)
  u32 tp_status = 0;  ///< bit 1 from end isolated, 2 to end isolated, 4 both dead; bit 256: out of service together
                      ///< with its breaker, by the careful switching (topology)
  i32 r_kv_zbr = 0;   ///< R_KV_ZBR row (validation)

  ZBR() = default;
  /// Implicit, so that a table can be searched by an identity.
  ZBR(const QString& identity) : id(identity) {}
  /// Records are compared by their identity.
  bool operator==(const ZBR& other) const { return id == other.id; }
  bool operator<(const ZBR& other) const { return id < other.id; }
  /// Stores the record in an archive or loads it from there.
  void Serialize(QArchive& ar);

  /// The table's name and kind code, what its records are compared by, and their fields in order.
  static constexpr const char* kTableName = "ZBR";
  static constexpr TableKind kKind = KIND_ZBR;
  static constexpr RecordKey kKey = RecordKey::kIdentified;
  static std::span<const FieldInfo> Fields();
};

}  // namespace dtsdb
