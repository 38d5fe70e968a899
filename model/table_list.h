/// \file
/// The tables of a network model and the relations between them, as data.
#pragma once

// clang-format off

/// The 46 tables in the alphabetical order of their record classes: T(class, table member, key, meaning).
///
/// The order is the order of the members of DTSDB, of the object file and of every "all tables" loop, and a
/// table's place in it, counted from 1, is its kind code: it reaches the disk and other programs.
/// The key says how a record is compared: Identified by its text `id`, Numbered by its integer `id`, Relation by
/// the identity texts of parent and child.
#define DTSDB_TABLES(T) \
  T(ANALOG, m_analogTable, Identified, "analog measurement point (遥测)") \
  T(BS, m_bsTable, Numbered, "bus-section") \
  T(BSL, m_bslTable, Numbered, "entry of the bus-section list") \
  T(BUS, m_busTable, Identified, "physical bus on a voltage level") \
  T(CB, m_cbTable, Identified, "breaker or switch between two nodes of a voltage level") \
  T(CB2, m_cb2Table, Identified, "end of a breaker") \
  T(CHND, m_chndTable, Numbered, "node that changed section in an incremental run") \
  T(CO, m_coTable, Identified, "company") \
  T(CP, m_cpTable, Identified, "capacitor or reactor") \
  T(DLN, m_dlnTable, Identified, "DC line between two stations") \
  T(DLN2, m_dln2Table, Identified, "end of a DC line") \
  T(DV, m_dvTable, Identified, "district (分区), part of a company") \
  T(GLOBAL, m_globalTable, Numbered, "the single row of global state") \
  T(ISLAND, m_islandTable, Numbered, "live island") \
  T(KV, m_kvTable, Identified, "voltage level of a station") \
  T(LD, m_ldTable, Identified, "load") \
  T(LN, m_lnTable, Identified, "AC line between two stations") \
  T(LN2, m_ln2Table, Identified, "end of an AC line") \
  T(ND, m_ndTable, Identified, "electrical node (结点)") \
  T(R_CO_DV, m_rCoDvTable, Relation, "company to its districts") \
  T(R_DV_DLN, m_rDvDlnTable, Relation, "district to its DC lines") \
  T(R_DV_LN, m_rDvLnTable, Relation, "district to its AC lines") \
  T(R_DV_ST, m_rDvStTable, Relation, "district to its stations") \
  T(R_KV_BUS, m_rKvBusTable, Relation, "voltage level to its buses") \
  T(R_KV_CB, m_rKvCbTable, Relation, "voltage level to its breakers") \
  T(R_KV_CP, m_rKvCpTable, Relation, "voltage level to its capacitors and reactors") \
  T(R_KV_LD, m_rKvLdTable, Relation, "voltage level to its loads") \
  T(R_KV_ND, m_rKvNdTable, Relation, "voltage level to its nodes") \
  T(R_KV_UN, m_rKvUnTable, Relation, "voltage level to its units") \
  T(R_KV_ZBR, m_rKvZbrTable, Relation, "voltage level to its zero-impedance branches") \
  T(R_ND_CB2, m_rNdCb2Table, Relation, "node to the breaker ends on it") \
  T(R_ND_DLN2, m_rNdDln2Table, Relation, "node to the DC line ends on it") \
  T(R_ND_LN2, m_rNdLn2Table, Relation, "node to the line ends on it") \
  T(R_ND_XF2, m_rNdXf2Table, Relation, "node to the winding ends on it") \
  T(R_ND_ZBR2, m_rNdZbr2Table, Relation, "node to the zero-impedance branch ends on it") \
  T(R_ST_KV, m_rStKvTable, Relation, "station to its voltage levels") \
  T(R_ST_XF, m_rStXfTable, Relation, "station to its transformer windings") \
  T(ST, m_stTable, Identified, "station (厂站), part of a district") \
  T(STATUS, m_statusTable, Identified, "status point (遥信)") \
  T(TPL, m_tplTable, Numbered, "topology log row") \
  T(TPTRACE, m_tptraceTable, Numbered, "component change that waits for the next topology run") \
  T(UN, m_unTable, Identified, "generating unit") \
  T(XF, m_xfTable, Identified, "transformer winding between two voltage levels of a station") \
  T(XF2, m_xf2Table, Identified, "end of a transformer winding") \
  T(ZBR, m_zbrTable, Identified, "zero-impedance branch, tied to a breaker") \
  T(ZBR2, m_zbr2Table, Identified, "end of a zero-impedance branch")

/// The 18 relations: R(class, parent class, child class, parent name, child name, head, own).
///
/// `head` is the field of the parent that holds the first row of its chain, `own` the field of the child that
/// holds the number of the child's row.
#define DTSDB_RELATIONS(R) \
  R(R_CO_DV, CO, DV, co, dv, r_co_dv, r_co_dv) \
  R(R_DV_DLN, DV, DLN, dv, dln, r_dv_dln, r_dv_dln) \
  R(R_DV_LN, DV, LN, dv, ln, r_dv_ln, r_dv_ln) \
  R(R_DV_ST, DV, ST, dv, st, r_dv_st, r_dv_st) \
  R(R_KV_BUS, KV, BUS, kv, bus, r_kv_bus, r_kv_bus) \
  R(R_KV_CB, KV, CB, kv, cb, r_kv_cb, r_kv_cb) \
  R(R_KV_CP, KV, CP, kv, cp, r_kv_cp, r_kv_cp) \
  R(R_KV_LD, KV, LD, kv, ld, r_kv_ld, r_kv_ld) \
  R(R_KV_ND, KV, ND, kv, nd, r_kv_nd, r_kv_nd) \
  R(R_KV_UN, KV, UN, kv, un, r_kv_un, r_kv_un) \
  R(R_KV_ZBR, KV, ZBR, kv, zbr, r_kv_zbr, r_kv_zbr) \
  R(R_ND_CB2, ND, CB2, nd, cb2, r_nd_cb2, r_nd_cb2) \
  R(R_ND_DLN2, ND, DLN2, nd, dln2, r_nd_dln2, r_nd) \
  R(R_ND_LN2, ND, LN2, nd, ln2, r_nd_ln2, r_nd) \
  R(R_ND_XF2, ND, XF2, nd, xf2, r_nd_xf2, r_nd) \
  R(R_ND_ZBR2, ND, ZBR2, nd, zbr2, r_nd_zbr2, r_nd) \
  R(R_ST_KV, ST, KV, st, kv, r_st_kv, r_st_kv) \
  R(R_ST_XF, ST, XF, st, xf, r_st_xf, r_st_xf)

// clang-format on
