/// \file
/// The fields of every record, each named once: type, name, meaning and, where it isn't 0 or null, the default.
///
/// Everything that walks over fields is made from these lists: the members of the classes, the object file, the
/// twin classes of the realtime database, the text tables, dumps, comparisons and tests. The order is the order of
/// the object file (docs/object-file.md): a field that is added, moved or retyped changes that format.
///
/// A list takes three macros. F(type, name, meaning, default) is a field. The other two belong to the twin class
/// alone (rtdb/volma_rtdb.h) and stand where they lie among its columns: G(name, size) is a range of bytes that no
/// record has, named after its offset in a 32-bit layout; X(type, name, meaning) is a column that no record has.
///
/// Names follow one rule. A field named after a table (`kv`, `nd`) holds an identity text; the prefix `i` makes
/// it the number of that record (`ind`); the prefix `z` marks the to end of a two-ended device (`znd`, `iznd`);
/// `ana_p` and `iana_p` are a measurement's identity and number; `r_...` are numbers of relation rows.
#pragma once

// clang-format off

/// company
#define DTSDB_FIELDS_CO(F, G, X) \
  F(QString, id, "company identity") \
  G(raw_4, 4) \
  F(f32, f1, "carried value") \
  F(f32, f2, "carried value") \
  F(f32, f3, "carried value") \
  F(f32, f4, "carried value") \
  F(f32, f5, "carried value") \
  F(f32, f6, "carried value") \
  F(f32, f7, "carried value") \
  F(f32, f8, "carried value") \
  F(i32, r_co_dv, "head of the R_CO_DV chain of this company, -1 none")

/// district (分区), part of a company
#define DTSDB_FIELDS_DV(F, G, X) \
  F(QString, id, "district identity") \
  G(raw_4, 4) \
  F(QString, co, "company identity") \
  F(f32, f1, "carried value") \
  F(f32, f2, "carried value") \
  F(f32, f3, "carried value") \
  F(f32, f4, "carried value") \
  F(f32, f5, "carried value") \
  F(f32, f6, "carried value") \
  F(f32, f7, "carried value") \
  F(f32, f8, "carried value") \
  F(i32, r_co_dv, "number of the R_CO_DV row") \
  F(i32, r_dv_st, "head of the R_DV_ST chain") \
  F(i32, r_dv_ln, "head of the R_DV_LN chain") \
  F(i32, r_dv_dln, "head of the R_DV_DLN chain")

/// station (厂站), part of a district
#define DTSDB_FIELDS_ST(F, G, X) \
  F(QString, id, "station identity") \
  G(raw_4, 4) \
  F(QString, dv, "district identity") \
  F(u8, type, "station type, 0 to 8 in a valid model") \
  F(u8, flag, "device mask of the station, reset by StartDetect: bit 1 a UN, 2 a CP, 4 a XF, 8 a LD, 16 a CB stands in it") \
  F(f32, f1, "carried value") \
  F(f32, f2, "carried value") \
  F(f32, f3, "carried value") \
  F(f32, f4, "carried value") \
  F(i32, r_dv_st, "R_DV_ST row") \
  F(i32, r_st_kv, "head of R_ST_KV chain") \
  F(i32, r_st_xf, "head of R_ST_XF chain")

/// voltage level of a station
#define DTSDB_FIELDS_KV(F, G, X) \
  G(raw_0, 80) \
  F(QString, id, "identity of the voltage level of a station (母线 in the messages)") \
  G(raw_84, 4) \
  F(QString, name, "second text of the KV; carried") \
  F(QString, st, "station identity") \
  F(i32, ibs, "number of the first bus-section of this KV") \
  F(i32, ibsl, "number of the BSL entry of this KV") \
  F(f32, vbase, "base voltage") \
  F(f32, vmax, "upper voltage limit") \
  F(f32, vmin, "lower voltage limit") \
  F(f32, f1, "carried value") \
  F(f32, f2, "carried value") \
  F(i32, n2, "carried integer") \
  F(i32, r_st_kv, "number of the R_ST_KV row") \
  F(i32, r_kv_un, "head of R_KV_UN chain") \
  F(i32, r_kv_cb, "head of R_KV_CB chain") \
  F(i32, r_kv_ld, "head of R_KV_LD chain") \
  F(i32, r_kv_cp, "head of R_KV_CP chain") \
  F(i32, r_kv_bus, "head of R_KV_BUS chain") \
  F(i32, r_kv_zbr, "head of R_KV_ZBR chain") \
  F(i32, r_kv_nd, "head of R_KV_ND chain")

/// physical bus on a KV
#define DTSDB_FIELDS_BUS(F, G, X) \
  G(raw_0, 80) \
  F(QString, id, "identity of the physical bus (物理母线 in the messages)") \
  G(raw_84, 4) \
  F(QString, kv, "identity of the owning KV") \
  F(QString, nd, "node identity of the bus") \
  F(i32, ind, "node number, into ND") \
  F(i32, ibs, "bus-section number") \
  F(QString, ana_v, "voltage measurement identity") \
  F(QString, ana_a, "angle measurement identity") \
  F(i32, iana_v, "index of ana_v in ANALOG, -1 absent") \
  F(i32, iana_a, "index of ana_a in ANALOG, -1 absent") \
  F(f64, v, "voltage value") \
  F(f64, a, "angle value") \
  F(f32, f1, "carried value") \
  F(f32, f2, "copy of KV.vmax, made by the validation") \
  F(f32, f3, "copy of KV.vmin, made by the validation") \
  G(raw_148, 4) \
  F(u32, tp_status, "bit 1: the bus lies in a dead section") \
  F(i32, r_kv_bus, "number of the R_KV_BUS row of this bus")

/// electrical node (结点)
#define DTSDB_FIELDS_ND(F, G, X) \
  F(QString, id, "node identity") \
  F(i32, ibs, "bus-section the node is in now") \
  F(i32, ibs0, "number of the structural bus-section of the node, set together with ibs by the first node pass") \
  F(u32, flags, "bit 1 node is dead, 2 carries a UN, 4 a LD, 8 a CP, 16 a BUS, 64 work mark of the node pass") \
  F(i32, next, "next node in the ring of nodes of the same group") \
  F(i32, n1, "work field of tpNodeConnect") \
  F(i32, r_kv_nd, "R_KV_ND row of the node") \
  F(i32, r_nd_cb2, "head of R_ND_CB2 chain") \
  F(i32, r_nd_ln2, "head of R_ND_LN2 chain") \
  F(i32, r_nd_xf2, "head of R_ND_XF2 chain") \
  F(i32, r_nd_zbr2, "head of R_ND_ZBR2 chain") \
  F(i32, r_nd_dln2, "head of R_ND_DLN2 chain")

/// breaker or switch between two nodes of a KV
#define DTSDB_FIELDS_CB(F, G, X) \
  G(raw_0, 40) \
  F(QString, id, "breaker identity") \
  G(raw_44, 8) \
  F(QString, kv, "KV identity") \
  F(u32, flags, "bits 1 and 4: breaker type, exactly one set in a valid model; 0x100: the breaker is open; 0x800: read as open by the realtime exchange; 0x2000: a ZBR stands on the breaker, set by the validation and by AddZBR") \
  F(QString, status_id, "identity of the STATUS point of the breaker") \
  F(i32, istatus, "index of status_id in STATUS, -1 absent") \
  F(i32, cb2, "number of the CB2 row of the from end") \
  F(i32, zcb2, "number of the CB2 row of the to end") \
  F(QString, nd, "from-end node identity") \
  F(i32, ind, "from-end node number") \
  F(QString, znd, "to-end node identity") \
  F(i32, iznd, "to-end node number") \
  F(i32, ibs, "from-end bus-section") \
  F(i32, izbs, "to-end bus-section") \
  F(u32, tp_status, "bit 1 from side isolated, 2 to side isolated, 4 both sides dead; bits 8, 16, 32: the breaker's class in the breaker flow") \
  X(f32, p, "active power through the breaker, a result of the breaker flow") \
  X(f32, q, "reactive power through the breaker, a result of the breaker flow") \
  F(i32, r_kv_cb, "number of the R_KV_CB row")

/// generating unit
#define DTSDB_FIELDS_UN(F, G, X) \
  G(raw_0, 80) \
  F(QString, id, "generating unit identity") \
  G(raw_84, 4) \
  F(QString, kv, "KV identity") \
  F(QString, nd, "node identity") \
  F(i32, ind, "node number") \
  F(i32, ibs, "bus-section") \
  F(f32, pmax, "upper output; the reference choice takes pmax - pcur as the margin of a unit") \
  F(f32, f1, "carried value") \
  F(f32, pcur, "lower term of that margin") \
  F(f32, f2, "carried value") \
  F(f32, f3, "carried value") \
  F(f32, f4, "carried value") \
  F(f32, f5, "carried value") \
  F(f32, f6, "carried value") \
  F(QString, ana_p, "P measurement") \
  F(i32, iana_p, "index in ANALOG") \
  F(QString, ana_q, "Q measurement") \
  F(i32, iana_q, "index in ANALOG") \
  F(QString, ana_v, "third measurement identity") \
  F(i32, iana_v, "index of ana_v in ANALOG, -1 when absent") \
  G(raw_160, 8) \
  F(f32, p, "active power, input of the breaker flow") \
  F(f32, q, "reactive power, input of the breaker flow") \
  F(f32, f7, "carried value") \
  F(f32, a, "value copied into ISLAND.ref_a when the unit becomes the reference") \
  F(f32, f8, "carried value") \
  F(i32, ref, "reference mark of the unit; default -1; the value 0 makes it a candidate", -1) \
  G(raw_192, 52) \
  F(f32, f9, "carried value") \
  F(f32, f10, "carried value") \
  G(raw_252, 16) \
  F(u32, status, "component status bits 1 and 4; bit 16: reference chosen by the system") \
  F(u32, tp_status, "bit 1: the unit lies in a dead section") \
  F(i32, r_kv_un, "R_KV_UN row")

/// load
#define DTSDB_FIELDS_LD(F, G, X) \
  G(raw_0, 120) \
  F(QString, id, "load identity") \
  G(raw_124, 8) \
  F(QString, kv, "KV identity") \
  F(QString, nd, "node identity") \
  F(i32, ind, "node number") \
  F(i32, ibs, "bus-section") \
  F(QString, ana_p, "P measurement") \
  F(QString, ana_q, "Q measurement") \
  F(QString, ana_i, "third measurement identity") \
  F(QString, ana_v, "V measurement") \
  F(i32, iana_p, "index in ANALOG") \
  F(i32, iana_q, "index in ANALOG") \
  F(i32, iana_i, "index of ana_i in ANALOG, -1 when absent") \
  F(i32, iana_v, "index in ANALOG") \
  F(u32, status, "component status bits 1 and 4") \
  F(u32, tp_status, "bit 1: the load lies in a dead section") \
  F(f32, f1, "carried value") \
  F(f32, f2, "carried value") \
  F(f32, p, "active power, input of the breaker flow") \
  F(f32, q, "reactive power, input of the breaker flow") \
  F(f32, f3, "carried value") \
  F(f32, f4, "carried value") \
  F(f32, f5, "carried value") \
  F(f32, f6, "carried value") \
  F(f32, f7, "carried value") \
  F(f32, a, "value copied into ISLAND.ref_a when the load becomes the reference") \
  F(f32, f9, "carried value") \
  F(i32, ref, "reference mark of the load; default -1; the value 0 makes it a candidate", -1) \
  G(raw_236, 32) \
  F(i32, r_kv_ld, "R_KV_LD row")

/// capacitor or reactor
#define DTSDB_FIELDS_CP(F, G, X) \
  G(raw_0, 160) \
  F(QString, id, "capacitor/reactor identity") \
  G(raw_164, 8) \
  F(QString, kv, "KV identity") \
  F(QString, nd, "node identity") \
  F(i32, ind, "node number") \
  F(i32, ibs, "bus-section") \
  F(QString, ana_q, "reactive measurement identity") \
  F(i32, iana_q, "index of ana_q in ANALOG") \
  F(u32, status, "component status bits 1 and 4") \
  F(u32, tp_status, "bit 1: the device lies in a dead section") \
  F(f32, f1, "carried value") \
  F(f32, f2, "carried value") \
  F(f32, f3, "carried value") \
  F(f32, f4, "carried value") \
  F(f32, p, "active power, input of the breaker flow") \
  F(f32, q, "reactive power, input of the breaker flow") \
  F(f32, f5, "carried value") \
  G(raw_232, 36) \
  F(i32, r_kv_cp, "number of the R_KV_CP row")

/// AC line between two stations
#define DTSDB_FIELDS_LN(F, G, X) \
  G(raw_0, 160) \
  F(QString, id, "line identity") \
  G(raw_164, 4) \
  F(i8, type, "carried byte") \
  F(QString, dv, "district identity") \
  F(QString, nd, "from node") \
  F(i32, ind, "from node number") \
  F(QString, znd, "to node") \
  F(i32, iznd, "to node number") \
  G(raw_192, 4) \
  F(i32, ibs, "from bus-section") \
  F(i32, izbs, "to bus-section") \
  F(i32, ln2, "LN2 row of from end") \
  F(i32, zln2, "LN2 row of to end") \
  F(QString, st, "from station") \
  F(QString, zst, "to station") \
  F(QString, kv, "from KV") \
  F(QString, zkv, "to KV") \
  F(QString, ana_p, "from P") \
  F(QString, ana_q, "from Q") \
  F(QString, ana_i, "from I") \
  F(QString, zana_p, "to P") \
  F(QString, zana_q, "to Q") \
  F(QString, zana_i, "to I") \
  F(i32, iana_p, "index") \
  F(i32, iana_q, "index") \
  F(i32, iana_i, "index") \
  F(i32, izana_p, "index") \
  F(i32, izana_q, "index") \
  F(i32, izana_i, "index") \
  F(f32, f1, "carried value") \
  F(f32, f2, "carried value") \
  F(f32, f3, "carried value") \
  F(f32, f4, "carried value") \
  F(f32, f5, "carried value") \
  F(f32, f6, "carried value") \
  F(f32, f7, "carried value") \
  F(f32, f8, "carried value") \
  F(f32, p, "from P, input of the breaker flow") \
  F(f32, q, "from Q, input of the breaker flow") \
  F(f32, i, "from I") \
  F(f32, zp, "to P, input of the breaker flow") \
  F(f32, zq, "to Q, input of the breaker flow") \
  F(f32, zi, "to I") \
  F(f32, f9, "carried value") \
  F(f32, f10, "carried value") \
  G(raw_340, 32) \
  F(u32, status, "bit 4 out of service, 1 from end open, 2 to end open; bit 64: the line's district is that of its to end only") \
  F(u32, tp_status, "bit 1 from end isolated, 2 to end isolated, 4 both dead") \
  F(i32, r_dv_ln, "R_DV_LN row")

/// DC line between two stations
#define DTSDB_FIELDS_DLN(F, G, X) \
  G(raw_0, 160) \
  F(QString, id, "DC line identity") \
  G(raw_164, 8) \
  F(QString, dv, "district identity") \
  F(QString, nd, "from node identity") \
  F(i32, ind, "from node number") \
  F(QString, znd, "to node identity") \
  F(i32, iznd, "to node number") \
  F(i32, ibs, "from bus-section") \
  F(i32, izbs, "to bus-section") \
  F(i32, dln2, "DLN2 row of from end") \
  F(i32, zdln2, "DLN2 row of to end") \
  F(QString, st, "from station identity") \
  F(QString, zst, "to station identity") \
  F(QString, kv, "from KV identity") \
  F(QString, zkv, "to KV identity") \
  F(QString, ana_p, "from P measurement") \
  F(QString, ana_q, "from Q measurement") \
  F(QString, ana_i, "from I measurement") \
  F(QString, zana_p, "to P measurement") \
  F(QString, zana_q, "to Q measurement") \
  F(QString, zana_i, "to I measurement") \
  F(i32, iana_p, "index in ANALOG") \
  F(i32, iana_q, "index in ANALOG") \
  F(i32, iana_i, "index in ANALOG") \
  F(i32, izana_p, "index in ANALOG") \
  F(i32, izana_q, "index in ANALOG") \
  F(i32, izana_i, "index in ANALOG") \
  F(u32, status, "bit 4 out of service, 1 from end open, 2 to end open; bit 32: the line's district is that of its to end only") \
  F(u32, tp_status, "bit 1 from end isolated, 2 to end isolated, 4 both dead") \
  F(i32, r_dv_dln, "R_DV_DLN row") \
  G(raw_284, 176) \
  X(f32, p, "from P, input of the breaker flow") \
  X(f32, q, "from Q, input of the breaker flow") \
  G(raw_468, 4) \
  X(f32, zp, "to P, input of the breaker flow") \
  X(f32, zq, "to Q, input of the breaker flow")

/// transformer winding between two KVs of a station
#define DTSDB_FIELDS_XF(F, G, X) \
  G(raw_0, 160) \
  F(QString, id, "transformer winding identity") \
  G(raw_164, 8) \
  F(u8, type, "winding type, 1, 2 or 3 in a valid model") \
  F(f32, f0, "carried value") \
  F(QString, st, "station identity") \
  F(QString, kv, "from KV") \
  F(QString, zkv, "to KV") \
  F(QString, nd, "from-end (high voltage) node identity") \
  F(QString, znd, "to-end (low voltage) node identity") \
  F(i32, ind, "from node number") \
  F(i32, iznd, "to node number") \
  F(i32, ibs, "from bus-section") \
  F(i32, izbs, "to bus-section") \
  F(i32, xf2, "XF2 row of from end") \
  F(i32, zxf2, "XF2 row of to end") \
  F(QString, ana_p, "from P") \
  F(QString, ana_q, "from Q") \
  F(QString, ana_i, "from I") \
  F(QString, ana_t, "fourth measurement identity of the from end; carried, not validated") \
  F(QString, zana_p, "to P") \
  F(QString, zana_q, "to Q") \
  F(QString, zana_i, "to I") \
  F(QString, zana_t, "fourth measurement identity of the to end; carried, not validated") \
  F(i32, iana_p, "index") \
  F(i32, iana_q, "index") \
  F(i32, iana_i, "index") \
  F(i32, iana_t, "carried integer") \
  F(i32, izana_p, "index") \
  F(i32, izana_q, "index") \
  F(i32, izana_i, "index") \
  F(i32, izana_t, "carried integer") \
  F(f32, p, "from P, input of the breaker flow") \
  F(f32, q, "from Q, input of the breaker flow") \
  F(f32, i, "from I") \
  F(f32, zp, "to P, input of the breaker flow") \
  F(f32, zq, "to Q, input of the breaker flow") \
  F(f32, zi, "to I") \
  F(f32, f1, "carried value") \
  F(f32, f2, "carried value") \
  F(u32, status, "bit 1 out of service, 4 from end open, 8 to end open") \
  F(u32, tp_status, "bit 1 from end isolated, 2 to end isolated, 4 both dead") \
  F(i32, r_st_xf, "R_ST_XF row") \
  G(raw_332, 12) \
  F(f32, f3, "carried value") \
  F(f32, f4, "carried value") \
  F(f32, f5, "carried value") \
  F(f32, f6, "carried value") \
  F(f32, f7, "carried value") \
  F(f32, f8, "carried value") \
  F(f32, f9, "carried value") \
  G(raw_372, 28) \
  F(f32, f10, "carried value") \
  F(i32, n1, "carried value") \
  F(i32, n2, "carried value") \
  F(f32, f11, "carried value") \
  F(f32, f12, "carried value") \
  F(i32, n3, "carried value") \
  F(i32, n4, "carried value") \
  F(i32, n5, "carried value") \
  F(i32, n6, "carried value") \
  F(f32, f13, "carried value") \
  F(f32, f14, "carried value") \
  F(i32, n7, "carried value") \
  F(i32, n8, "carried value") \
  F(i8, flag, "carried value")

/// zero-impedance branch, tied to a breaker
#define DTSDB_FIELDS_ZBR(F, G, X) \
  F(QString, id, "zero-impedance branch identity") \
  G(raw_4, 4) \
  F(QString, cb, "identity of the associated CB") \
  F(i32, icb, "number of the associated CB, -1 when it is not found") \
  F(i32, ind, "from node number, copied from CB") \
  F(i32, iznd, "to node number, copied from CB") \
  F(i32, ibs, "from bus-section") \
  F(i32, izbs, "to bus-section") \
  F(i32, zbr2, "ZBR2 row of from end") \
  F(i32, zzbr2, "ZBR2 row of to end") \
  F(QString, ana_p, "P measurement") \
  F(QString, ana_q, "Q measurement") \
  F(QString, ana_i, "I measurement") \
  F(i32, iana_p, "index") \
  F(i32, iana_q, "index") \
  F(i32, iana_i, "index") \
  F(f32, p, "P value") \
  F(f32, q, "Q value") \
  F(f32, i, "I value") \
  F(u32, status, "bit 1 out of service, 4 from end open, 16 to end open") \
  F(u32, tp_status, "bit 1 from end isolated, 2 to end isolated, 4 both dead") \
  F(i32, r_kv_zbr, "R_KV_ZBR row")

/// analog measurement point (遥测)
#define DTSDB_FIELDS_ANALOG(F, G, X) \
  F(QString, id, "measurement point identity; key of the table") \
  F(QString, name, "second text of the point; carried") \
  F(f32, value, "carried value") \
  F(u8, quality, "carried byte") \
  F(i32, idx, "carried integer, default -1", -1) \
  F(f32, f1, "carried value") \
  F(f32, f2, "carried value") \
  F(f32, f3, "carried value") \
  F(i8, flag, "carried byte")

/// status point (遥信)
#define DTSDB_FIELDS_STATUS(F, G, X) \
  F(QString, id, "status point identity") \
  F(QString, name, "second text of the point; carried") \
  F(i8, value, "position of the point: 1 closed, 2 open; read from the realtime table by tpReadStatus") \
  F(u8, quality, "carried byte")

/// Fields of a relation row that joins a `parent` record and a `child` record.
#define DTSDB_RELATION_FIELDS(F, parent, child) \
  F(QString, parent##_id, "identity of the parent") \
  F(QString, child##_id, "identity of the child") \
  F(i32, i##parent, "number of the parent record") \
  F(i32, i##child, "number of the child record") \
  F(i32, next, "next row of the parent's chain, -1 at the end") \
  F(i32, prev, "previous row of the parent's chain, -1 at the first row")

#define DTSDB_FIELDS_R_CO_DV(F, G, X) DTSDB_RELATION_FIELDS(F, co, dv)
#define DTSDB_FIELDS_R_DV_DLN(F, G, X) DTSDB_RELATION_FIELDS(F, dv, dln)
#define DTSDB_FIELDS_R_DV_LN(F, G, X) DTSDB_RELATION_FIELDS(F, dv, ln)
#define DTSDB_FIELDS_R_DV_ST(F, G, X) DTSDB_RELATION_FIELDS(F, dv, st)
#define DTSDB_FIELDS_R_KV_BUS(F, G, X) DTSDB_RELATION_FIELDS(F, kv, bus)
#define DTSDB_FIELDS_R_KV_CB(F, G, X) DTSDB_RELATION_FIELDS(F, kv, cb)
#define DTSDB_FIELDS_R_KV_CP(F, G, X) DTSDB_RELATION_FIELDS(F, kv, cp)
#define DTSDB_FIELDS_R_KV_LD(F, G, X) DTSDB_RELATION_FIELDS(F, kv, ld)
#define DTSDB_FIELDS_R_KV_ND(F, G, X) DTSDB_RELATION_FIELDS(F, kv, nd)
#define DTSDB_FIELDS_R_KV_UN(F, G, X) DTSDB_RELATION_FIELDS(F, kv, un)
#define DTSDB_FIELDS_R_KV_ZBR(F, G, X) DTSDB_RELATION_FIELDS(F, kv, zbr)
#define DTSDB_FIELDS_R_ND_CB2(F, G, X) DTSDB_RELATION_FIELDS(F, nd, cb2)
#define DTSDB_FIELDS_R_ND_DLN2(F, G, X) DTSDB_RELATION_FIELDS(F, nd, dln2)
#define DTSDB_FIELDS_R_ND_LN2(F, G, X) DTSDB_RELATION_FIELDS(F, nd, ln2)
#define DTSDB_FIELDS_R_ND_XF2(F, G, X) DTSDB_RELATION_FIELDS(F, nd, xf2)
#define DTSDB_FIELDS_R_ND_ZBR2(F, G, X) DTSDB_RELATION_FIELDS(F, nd, zbr2)
#define DTSDB_FIELDS_R_ST_KV(F, G, X) DTSDB_RELATION_FIELDS(F, st, kv)
#define DTSDB_FIELDS_R_ST_XF(F, G, X) DTSDB_RELATION_FIELDS(F, st, xf)

/// end of a breaker
#define DTSDB_FIELDS_CB2(F, G, X) \
  F(QString, id, "breaker identity plus end suffix") \
  F(i32, icb, "number of the owning CB") \
  F(i32, r_nd_cb2, "number of the R_ND_CB2 row")

/// Fields of a branch end (LN2, XF2, DLN2, ZBR2); `owner` is the name of the field that holds the branch's number.
#define DTSDB_BRANCH_END_FIELDS(F, owner) \
  F(QString, id, "branch identity plus end suffix") \
  F(f32, p, "flow at this end") \
  F(f32, q, "flow at this end") \
  F(f32, i, "current at this end") \
  F(i32, iana_p, "ANALOG index of the end P") \
  F(i32, iana_q, "ANALOG index of the end Q") \
  F(i32, owner, "number of the owning branch record") \
  F(u32, flags, "bit 1: 0 from end, 1 to end; bit 2: this end is isolated") \
  F(i32, r_nd, "number of the R_ND row of this end")

#define DTSDB_FIELDS_DLN2(F, G, X) DTSDB_BRANCH_END_FIELDS(F, idln)
#define DTSDB_FIELDS_LN2(F, G, X) DTSDB_BRANCH_END_FIELDS(F, iln)
#define DTSDB_FIELDS_XF2(F, G, X) DTSDB_BRANCH_END_FIELDS(F, ixf)
#define DTSDB_FIELDS_ZBR2(F, G, X) DTSDB_BRANCH_END_FIELDS(F, izbr)

/// bus-section
#define DTSDB_FIELDS_BS(F, G, X) \
  F(i32, id, "bus-section number = its array index") \
  F(QString, name, "section name") \
  F(i32, ikv, "physical KV number owning the section, -1 none") \
  G(raw_12, 4) \
  F(f64, f0, "carried value") \
  F(i32, island, "-2 unassigned/reclaimed, -1 dead, >=0 island number") \
  F(u32, status, "bits: 1 BS_DEAD, 2 BS_ISOLATED, 32 BS_BROKEN") \
  F(u32, flags, "bits: 1 BS_BASE, 2 BS_UNCLAIMED") \
  F(i32, next, "next in chain") \
  F(i32, prev, "previous in chain, -1 on free list") \
  F(i32, ibsl, "index of the section's BSL entry, -1 none") \
  F(f64, v, "voltage magnitude, input of the breaker flow") \
  F(f64, a, "voltage angle in degrees, input of the breaker flow") \
  F(f64, f1, "carried value") \
  F(f64, f2, "carried value") \
  F(f64, f3, "carried value") \
  F(f64, f4, "carried value") \
  F(i32, n1, "carried integer")

/// entry of the bus-section list
#define DTSDB_FIELDS_BSL(F, G, X) \
  F(i32, id, "own index") \
  F(i32, next, "next entry, free-list link") \
  F(i32, prev, "previous entry, -1 on free list") \
  F(u8, kind, "1-based table number of the referenced record") \
  F(i32, ref, "physical number of the referenced record; BS index for kind 2")

/// island
#define DTSDB_FIELDS_ISLAND(F, G, X) \
  F(i32, id, "island number") \
  F(i32, ref_ibs, "bus-section of the reference; -1 while the island has none") \
  F(i32, ref_un, "physical number of the reference UN") \
  F(f32, ref_a, "angle of the reference") \
  F(f32, f1, "carried value") \
  F(f32, f2, "carried value") \
  F(f32, f3, "carried value") \
  F(QString, ref_id, "identity of the reference UN") \
  F(QString, name, "carried text")

/// changed node
#define DTSDB_FIELDS_CHND(F, G, X) \
  F(i32, id, "change sequence number") \
  F(i32, ind, "node number") \
  F(i32, ibs_new, "new bus-section") \
  F(i32, ibs_old, "old bus-section") \
  F(i32, ikv, "KV number")

/// topology log row
#define DTSDB_FIELDS_TPL(F, G, X) \
  F(i32, id, "log row number") \
  F(i32, kind, "table number of the logged thing") \
  F(i32, n1, "status word given by the writer") \
  F(QString, name, "identity of the logged thing") \
  F(i32, n2, "new section, -1 for none") \
  F(i32, n3, "old section") \
  F(u32, time, "event time, QDateTime::toTime_t") \
  F(QString, event, "event word")

/// topology change trace row
#define DTSDB_FIELDS_TPTRACE(F, G, X) \
  F(i32, id, "row number") \
  F(QString, name, "component identity") \
  F(u8, type, "component type code of tpSetCompStatus") \
  F(i32, n1, "physical number of the component in its table; -1 when the row is to be passed over") \
  F(u8, status, "what was asked for: nonzero closed or in service, 0 open or out of service") \
  F(u32, time, "seconds from QDateTime::toTime_t")

/// the single row of global state
#define DTSDB_FIELDS_GLOBAL(F, G, X) \
  F(i32, id, "row number") \
  F(f32, f1, "carried value; a new validation keeps it, or starts it at 100.0 when the GLOBAL table is empty") \
  F(i32, bs_free, "head of BS free list") \
  F(i32, bs_dead, "BS index of dead head, 0") \
  F(i32, bs_live, "BS index of live head, 1") \
  F(i32, bsl_free, "head of BSL free list") \
  F(i32, bsl_head, "BSL list head") \
  F(i32, n1, "carried value") \
  F(u32, u1, "time of the last tpChange, in seconds from QDateTime::toTime_t") \
  F(u32, time, "time of the last tpAllnew, in the same seconds") \
  F(u8, valid, "1 after a validation run that ended with no error") \
  F(u32, check_time, "time of the end of the last validation run without errors") \
  F(u8, invalid, "1 from the start of a validation run until a run ends with no error; the editing operations refuse to run on a value other than 0") \
  F(i32, errors, "error count of the last validation")

// clang-format on

/// The fields of record class T alone, without what belongs to its twin: F(type, name, meaning, default).
#define DTSDB_RECORD_FIELDS(T, F) DTSDB_FIELDS_##T(F, DTSDB_NO_FIELD, DTSDB_NO_FIELD)
#define DTSDB_NO_FIELD(...)
