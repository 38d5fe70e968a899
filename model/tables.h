// Written by scripts/generate from the description in schema/: change it there.
/// \file
/// The tables of a model by record class.
#pragma once

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

/// The pointer to the table of record class `T`: Of(tables) returns that of `tables`, a DTSDB or another class that
/// holds pointers to its tables under the same names.
template <class T>
struct TableMember;
template <>
struct TableMember<ANALOG> {
  template <class Tables>
  static auto& Of(Tables& tables) {
    return tables.m_analogTable;
  }
};
template <>
struct TableMember<BS> {
  template <class Tables>
  static auto& Of(Tables& tables) {
    return tables.m_bsTable;
  }
};
template <>
struct TableMember<BSL> {
  template <class Tables>
  static auto& Of(Tables& tables) {
    return tables.m_bslTable;
  }
};
template <>
struct TableMember<BUS> {
  template <class Tables>
  static auto& Of(Tables& tables) {
    return tables.m_busTable;
  }
};
template <>
struct TableMember<CB> {
  template <class Tables>
  static auto& Of(Tables& tables) {
    return tables.m_cbTable;
  }
};
template <>
struct TableMember<CB2> {
  template <class Tables>
  static auto& Of(Tables& tables) {
    return tables.m_cb2Table;
  }
};
template <>
struct TableMember<CHND> {
  template <class Tables>
  static auto& Of(Tables& tables) {
    return tables.m_chndTable;
  }
};
template <>
struct TableMember<CO> {
  template <class Tables>
  static auto& Of(Tables& tables) {
    return tables.m_coTable;
  }
};
template <>
struct TableMember<CP> {
  template <class Tables>
  static auto& Of(Tables& tables) {
    return tables.m_cpTable;
  }
};
template <>
struct TableMember<DLN> {
  template <class Tables>
  static auto& Of(Tables& tables) {
    return tables.m_dlnTable;
  }
};
template <>
struct TableMember<DLN2> {
  template <class Tables>
  static auto& Of(Tables& tables) {
    return tables.m_dln2Table;
  }
};
template <>
struct TableMember<DV> {
  template <class Tables>
  static auto& Of(Tables& tables) {
    return tables.m_dvTable;
  }
};
template <>
struct TableMember<GLOBAL> {
  template <class Tables>
  static auto& Of(Tables& tables) {
    return tables.m_globalTable;
  }
};
template <>
struct TableMember<ISLAND> {
  template <class Tables>
  static auto& Of(Tables& tables) {
    return tables.m_islandTable;
  }
};
template <>
struct TableMember<KV> {
  template <class Tables>
  static auto& Of(Tables& tables) {
    return tables.m_kvTable;
  }
};
template <>
struct TableMember<LD> {
  template <class Tables>
  static auto& Of(Tables& tables) {
    return tables.m_ldTable;
  }
};
template <>
struct TableMember<LN> {
  template <class Tables>
  static auto& Of(Tables& tables) {
    return tables.m_lnTable;
  }
};
template <>
struct TableMember<LN2> {
  template <class Tables>
  static auto& Of(Tables& tables) {
    return tables.m_ln2Table;
  }
};
template <>
struct TableMember<ND> {
  template <class Tables>
  static auto& Of(Tables& tables) {
    return tables.m_ndTable;
  }
};
template <>
struct TableMember<R_CO_DV> {
  template <class Tables>
  static auto& Of(Tables& tables) {
    return tables.m_rCoDvTable;
  }
};
template <>
struct TableMember<R_DV_DLN> {
  template <class Tables>
  static auto& Of(Tables& tables) {
    return tables.m_rDvDlnTable;
  }
};
template <>
struct TableMember<R_DV_LN> {
  template <class Tables>
  static auto& Of(Tables& tables) {
    return tables.m_rDvLnTable;
  }
};
template <>
struct TableMember<R_DV_ST> {
  template <class Tables>
  static auto& Of(Tables& tables) {
    return tables.m_rDvStTable;
  }
};
template <>
struct TableMember<R_KV_BUS> {
  template <class Tables>
  static auto& Of(Tables& tables) {
    return tables.m_rKvBusTable;
  }
};
template <>
struct TableMember<R_KV_CB> {
  template <class Tables>
  static auto& Of(Tables& tables) {
    return tables.m_rKvCbTable;
  }
};
template <>
struct TableMember<R_KV_CP> {
  template <class Tables>
  static auto& Of(Tables& tables) {
    return tables.m_rKvCpTable;
  }
};
template <>
struct TableMember<R_KV_LD> {
  template <class Tables>
  static auto& Of(Tables& tables) {
    return tables.m_rKvLdTable;
  }
};
template <>
struct TableMember<R_KV_ND> {
  template <class Tables>
  static auto& Of(Tables& tables) {
    return tables.m_rKvNdTable;
  }
};
template <>
struct TableMember<R_KV_UN> {
  template <class Tables>
  static auto& Of(Tables& tables) {
    return tables.m_rKvUnTable;
  }
};
template <>
struct TableMember<R_KV_ZBR> {
  template <class Tables>
  static auto& Of(Tables& tables) {
    return tables.m_rKvZbrTable;
  }
};
template <>
struct TableMember<R_ND_CB2> {
  template <class Tables>
  static auto& Of(Tables& tables) {
    return tables.m_rNdCb2Table;
  }
};
template <>
struct TableMember<R_ND_DLN2> {
  template <class Tables>
  static auto& Of(Tables& tables) {
    return tables.m_rNdDln2Table;
  }
};
template <>
struct TableMember<R_ND_LN2> {
  template <class Tables>
  static auto& Of(Tables& tables) {
    return tables.m_rNdLn2Table;
  }
};
template <>
struct TableMember<R_ND_XF2> {
  template <class Tables>
  static auto& Of(Tables& tables) {
    return tables.m_rNdXf2Table;
  }
};
template <>
struct TableMember<R_ND_ZBR2> {
  template <class Tables>
  static auto& Of(Tables& tables) {
    return tables.m_rNdZbr2Table;
  }
};
template <>
struct TableMember<R_ST_KV> {
  template <class Tables>
  static auto& Of(Tables& tables) {
    return tables.m_rStKvTable;
  }
};
template <>
struct TableMember<R_ST_XF> {
  template <class Tables>
  static auto& Of(Tables& tables) {
    return tables.m_rStXfTable;
  }
};
template <>
struct TableMember<ST> {
  template <class Tables>
  static auto& Of(Tables& tables) {
    return tables.m_stTable;
  }
};
template <>
struct TableMember<STATUS> {
  template <class Tables>
  static auto& Of(Tables& tables) {
    return tables.m_statusTable;
  }
};
template <>
struct TableMember<TPL> {
  template <class Tables>
  static auto& Of(Tables& tables) {
    return tables.m_tplTable;
  }
};
template <>
struct TableMember<TPTRACE> {
  template <class Tables>
  static auto& Of(Tables& tables) {
    return tables.m_tptraceTable;
  }
};
template <>
struct TableMember<UN> {
  template <class Tables>
  static auto& Of(Tables& tables) {
    return tables.m_unTable;
  }
};
template <>
struct TableMember<XF> {
  template <class Tables>
  static auto& Of(Tables& tables) {
    return tables.m_xfTable;
  }
};
template <>
struct TableMember<XF2> {
  template <class Tables>
  static auto& Of(Tables& tables) {
    return tables.m_xf2Table;
  }
};
template <>
struct TableMember<ZBR> {
  template <class Tables>
  static auto& Of(Tables& tables) {
    return tables.m_zbrTable;
  }
};
template <>
struct TableMember<ZBR2> {
  template <class Tables>
  static auto& Of(Tables& tables) {
    return tables.m_zbr2Table;
  }
};

/// The table of record class `T` among `tables`.
template <class T, class Tables>
tTable<T>& TableOf(Tables& tables) {
  return *TableMember<T>::Of(tables);
}
template <class T, class Tables>
const tTable<T>& TableOf(const Tables& tables) {
  return *TableMember<T>::Of(tables);
}

/// Calls `visit` with each of the tables, in order.
template <class Tables, class Visitor>
void ForEachTable(Tables& tables, Visitor&& visit) {
  ForEachRecordClass([&]<class T> { visit(TableOf<T>(tables)); });
}

/// Writes the numbers that are put off, in all tables. From then on, and until a table is changed, several threads may
/// read the tables at once through a const reference: TableOf, ForEachTable and Chain then give const access.
template <class Tables>
void SettleTables(Tables& tables) {
  ForEachTable(tables, [](auto& table) { table.Settle(); });
}

/// Makes `to` point to the tables that `from` points to.
template <class From, class To>
void PointToTables(const From& from, To& to) {
  ForEachRecordClass([&]<class T> { TableMember<T>::Of(to) = TableMember<T>::Of(from); });
}

}  // namespace dtsdb
