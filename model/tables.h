// Written by scripts/generate from the description in schema/: change it there.
/// \file
/// The tables of a model by record class.
#pragma once

#include <type_traits>

#include "include/template.h"
#include "model/records.h"

namespace dtsdb {

// The tables are compiled once, in model/tables_*.cpp.
extern template class tTable<ANALOG>;
extern template class tTable<BS>;
extern template class tTable<BSL>;
extern template class tTable<BUS>;
extern template class tTable<CB>;
extern template class tTable<CB2>;
extern template class tTable<CHND>;
extern template class tTable<CO>;
extern template class tTable<CP>;
extern template class tTable<DLN>;
extern template class tTable<DLN2>;
extern template class tTable<DV>;
extern template class tTable<GLOBAL>;
extern template class tTable<ISLAND>;
extern template class tTable<KV>;
extern template class tTable<LD>;
extern template class tTable<LN>;
extern template class tTable<LN2>;
extern template class tTable<ND>;
extern template class tTable<R_CO_DV>;
extern template class tTable<R_DV_DLN>;
extern template class tTable<R_DV_LN>;
extern template class tTable<R_DV_ST>;
extern template class tTable<R_KV_BUS>;
extern template class tTable<R_KV_CB>;
extern template class tTable<R_KV_CP>;
extern template class tTable<R_KV_LD>;
extern template class tTable<R_KV_ND>;
extern template class tTable<R_KV_UN>;
extern template class tTable<R_KV_ZBR>;
extern template class tTable<R_ND_CB2>;
extern template class tTable<R_ND_DLN2>;
extern template class tTable<R_ND_LN2>;
extern template class tTable<R_ND_XF2>;
extern template class tTable<R_ND_ZBR2>;
extern template class tTable<R_ST_KV>;
extern template class tTable<R_ST_XF>;
extern template class tTable<ST>;
extern template class tTable<STATUS>;
extern template class tTable<TPL>;
extern template class tTable<TPTRACE>;
extern template class tTable<UN>;
extern template class tTable<XF>;
extern template class tTable<XF2>;
extern template class tTable<ZBR>;
extern template class tTable<ZBR2>;

/// The member of class `Tables` that points to the table of record class `T`. `Tables` is DTSDB, or a class that holds
/// copies of its pointers under the same names.
template <class T, class Tables>
inline constexpr int kTableMember = 0;
template <class Tables>
inline constexpr auto kTableMember<ANALOG, Tables> = &Tables::m_analogTable;
template <class Tables>
inline constexpr auto kTableMember<BS, Tables> = &Tables::m_bsTable;
template <class Tables>
inline constexpr auto kTableMember<BSL, Tables> = &Tables::m_bslTable;
template <class Tables>
inline constexpr auto kTableMember<BUS, Tables> = &Tables::m_busTable;
template <class Tables>
inline constexpr auto kTableMember<CB, Tables> = &Tables::m_cbTable;
template <class Tables>
inline constexpr auto kTableMember<CB2, Tables> = &Tables::m_cb2Table;
template <class Tables>
inline constexpr auto kTableMember<CHND, Tables> = &Tables::m_chndTable;
template <class Tables>
inline constexpr auto kTableMember<CO, Tables> = &Tables::m_coTable;
template <class Tables>
inline constexpr auto kTableMember<CP, Tables> = &Tables::m_cpTable;
template <class Tables>
inline constexpr auto kTableMember<DLN, Tables> = &Tables::m_dlnTable;
template <class Tables>
inline constexpr auto kTableMember<DLN2, Tables> = &Tables::m_dln2Table;
template <class Tables>
inline constexpr auto kTableMember<DV, Tables> = &Tables::m_dvTable;
template <class Tables>
inline constexpr auto kTableMember<GLOBAL, Tables> = &Tables::m_globalTable;
template <class Tables>
inline constexpr auto kTableMember<ISLAND, Tables> = &Tables::m_islandTable;
template <class Tables>
inline constexpr auto kTableMember<KV, Tables> = &Tables::m_kvTable;
template <class Tables>
inline constexpr auto kTableMember<LD, Tables> = &Tables::m_ldTable;
template <class Tables>
inline constexpr auto kTableMember<LN, Tables> = &Tables::m_lnTable;
template <class Tables>
inline constexpr auto kTableMember<LN2, Tables> = &Tables::m_ln2Table;
template <class Tables>
inline constexpr auto kTableMember<ND, Tables> = &Tables::m_ndTable;
template <class Tables>
inline constexpr auto kTableMember<R_CO_DV, Tables> = &Tables::m_rCoDvTable;
template <class Tables>
inline constexpr auto kTableMember<R_DV_DLN, Tables> = &Tables::m_rDvDlnTable;
template <class Tables>
inline constexpr auto kTableMember<R_DV_LN, Tables> = &Tables::m_rDvLnTable;
template <class Tables>
inline constexpr auto kTableMember<R_DV_ST, Tables> = &Tables::m_rDvStTable;
template <class Tables>
inline constexpr auto kTableMember<R_KV_BUS, Tables> = &Tables::m_rKvBusTable;
template <class Tables>
inline constexpr auto kTableMember<R_KV_CB, Tables> = &Tables::m_rKvCbTable;
template <class Tables>
inline constexpr auto kTableMember<R_KV_CP, Tables> = &Tables::m_rKvCpTable;
template <class Tables>
inline constexpr auto kTableMember<R_KV_LD, Tables> = &Tables::m_rKvLdTable;
template <class Tables>
inline constexpr auto kTableMember<R_KV_ND, Tables> = &Tables::m_rKvNdTable;
template <class Tables>
inline constexpr auto kTableMember<R_KV_UN, Tables> = &Tables::m_rKvUnTable;
template <class Tables>
inline constexpr auto kTableMember<R_KV_ZBR, Tables> = &Tables::m_rKvZbrTable;
template <class Tables>
inline constexpr auto kTableMember<R_ND_CB2, Tables> = &Tables::m_rNdCb2Table;
template <class Tables>
inline constexpr auto kTableMember<R_ND_DLN2, Tables> = &Tables::m_rNdDln2Table;
template <class Tables>
inline constexpr auto kTableMember<R_ND_LN2, Tables> = &Tables::m_rNdLn2Table;
template <class Tables>
inline constexpr auto kTableMember<R_ND_XF2, Tables> = &Tables::m_rNdXf2Table;
template <class Tables>
inline constexpr auto kTableMember<R_ND_ZBR2, Tables> = &Tables::m_rNdZbr2Table;
template <class Tables>
inline constexpr auto kTableMember<R_ST_KV, Tables> = &Tables::m_rStKvTable;
template <class Tables>
inline constexpr auto kTableMember<R_ST_XF, Tables> = &Tables::m_rStXfTable;
template <class Tables>
inline constexpr auto kTableMember<ST, Tables> = &Tables::m_stTable;
template <class Tables>
inline constexpr auto kTableMember<STATUS, Tables> = &Tables::m_statusTable;
template <class Tables>
inline constexpr auto kTableMember<TPL, Tables> = &Tables::m_tplTable;
template <class Tables>
inline constexpr auto kTableMember<TPTRACE, Tables> = &Tables::m_tptraceTable;
template <class Tables>
inline constexpr auto kTableMember<UN, Tables> = &Tables::m_unTable;
template <class Tables>
inline constexpr auto kTableMember<XF, Tables> = &Tables::m_xfTable;
template <class Tables>
inline constexpr auto kTableMember<XF2, Tables> = &Tables::m_xf2Table;
template <class Tables>
inline constexpr auto kTableMember<ZBR, Tables> = &Tables::m_zbrTable;
template <class Tables>
inline constexpr auto kTableMember<ZBR2, Tables> = &Tables::m_zbr2Table;

/// The table of record class `T` among `tables`, a DTSDB or another holder of pointers to its tables.
template <class T, class Tables>
tTable<T>& TableOf(Tables& tables) {
  return *(tables.*kTableMember<T, Tables>);
}
template <class T, class Tables>
const tTable<T>& TableOf(const Tables& tables) {
  return *(tables.*kTableMember<T, Tables>);
}

/// Calls `visit` with each of the tables, in order.
template <class Tables, class Visitor>
void ForEachTable(Tables& tables, Visitor&& visit) {
  ForEachRecordClass([&]<class T> { visit(TableOf<T>(tables)); });
}

/// Makes `to` point to the tables that `from` points to.
template <class From, class To>
void PointToTables(const From& from, To& to) {
  ForEachRecordClass([&]<class T> { to.*kTableMember<T, To> = from.*kTableMember<T, From>; });
}

/// Pointers to the tables of a model, which belong to its DTSDB.
struct TablePointers {
  tTable<ANALOG>* m_analogTable = nullptr;      ///< analog measurement point (遥测)
  tTable<BS>* m_bsTable = nullptr;              ///< bus-section
  tTable<BSL>* m_bslTable = nullptr;            ///< entry of the bus-section list
  tTable<BUS>* m_busTable = nullptr;            ///< physical bus on a voltage level
  tTable<CB>* m_cbTable = nullptr;              ///< breaker or switch between two nodes of a voltage level
  tTable<CB2>* m_cb2Table = nullptr;            ///< end of a breaker
  tTable<CHND>* m_chndTable = nullptr;          ///< node that changed section in an incremental run
  tTable<CO>* m_coTable = nullptr;              ///< company
  tTable<CP>* m_cpTable = nullptr;              ///< capacitor or reactor
  tTable<DLN>* m_dlnTable = nullptr;            ///< DC line between two stations
  tTable<DLN2>* m_dln2Table = nullptr;          ///< end of a DC line
  tTable<DV>* m_dvTable = nullptr;              ///< district (分区), part of a company
  tTable<GLOBAL>* m_globalTable = nullptr;      ///< the single row of global state
  tTable<ISLAND>* m_islandTable = nullptr;      ///< live island
  tTable<KV>* m_kvTable = nullptr;              ///< voltage level of a station
  tTable<LD>* m_ldTable = nullptr;              ///< load
  tTable<LN>* m_lnTable = nullptr;              ///< AC line between two stations
  tTable<LN2>* m_ln2Table = nullptr;            ///< end of an AC line
  tTable<ND>* m_ndTable = nullptr;              ///< electrical node (结点)
  tTable<R_CO_DV>* m_rCoDvTable = nullptr;      ///< company to its districts
  tTable<R_DV_DLN>* m_rDvDlnTable = nullptr;    ///< district to its DC lines
  tTable<R_DV_LN>* m_rDvLnTable = nullptr;      ///< district to its AC lines
  tTable<R_DV_ST>* m_rDvStTable = nullptr;      ///< district to its stations
  tTable<R_KV_BUS>* m_rKvBusTable = nullptr;    ///< voltage level to its buses
  tTable<R_KV_CB>* m_rKvCbTable = nullptr;      ///< voltage level to its breakers
  tTable<R_KV_CP>* m_rKvCpTable = nullptr;      ///< voltage level to its capacitors and reactors
  tTable<R_KV_LD>* m_rKvLdTable = nullptr;      ///< voltage level to its loads
  tTable<R_KV_ND>* m_rKvNdTable = nullptr;      ///< voltage level to its nodes
  tTable<R_KV_UN>* m_rKvUnTable = nullptr;      ///< voltage level to its units
  tTable<R_KV_ZBR>* m_rKvZbrTable = nullptr;    ///< voltage level to its zero-impedance branches
  tTable<R_ND_CB2>* m_rNdCb2Table = nullptr;    ///< node to the breaker ends on it
  tTable<R_ND_DLN2>* m_rNdDln2Table = nullptr;  ///< node to the DC line ends on it
  tTable<R_ND_LN2>* m_rNdLn2Table = nullptr;    ///< node to the line ends on it
  tTable<R_ND_XF2>* m_rNdXf2Table = nullptr;    ///< node to the winding ends on it
  tTable<R_ND_ZBR2>* m_rNdZbr2Table = nullptr;  ///< node to the zero-impedance branch ends on it
  tTable<R_ST_KV>* m_rStKvTable = nullptr;      ///< station to its voltage levels
  tTable<R_ST_XF>* m_rStXfTable = nullptr;      ///< station to its transformer windings
  tTable<ST>* m_stTable = nullptr;              ///< station (厂站), part of a district
  tTable<STATUS>* m_statusTable = nullptr;      ///< status point (遥信)
  tTable<TPL>* m_tplTable = nullptr;            ///< topology log row
  tTable<TPTRACE>* m_tptraceTable = nullptr;    ///< component change that waits for the next topology run
  tTable<UN>* m_unTable = nullptr;              ///< generating unit
  tTable<XF>* m_xfTable = nullptr;              ///< transformer winding between two voltage levels of a station
  tTable<XF2>* m_xf2Table = nullptr;            ///< end of a transformer winding
  tTable<ZBR>* m_zbrTable = nullptr;            ///< zero-impedance branch, tied to a breaker
  tTable<ZBR2>* m_zbr2Table = nullptr;          ///< end of a zero-impedance branch
};

}  // namespace dtsdb
