// Written by scripts/generate from the description in schema/: change it there.
/// \file
/// The network model as a whole.
#pragma once

#include <QString>
#include <memory>
#include <vector>

#include "model/relations.h"
#include "model/tables.h"

class dbDatabase;

namespace dtsdb {

class QArchive;

/// The tables of a network model, one for each record class, in the alphabetical order of the classes.
///
/// The container owns the tables. NMD and TP hold copies of these pointers and must go before it. Copying or
/// assigning a container shares the tables: afterwards both use the same ones, each table goes with the last
/// container that has used it, and the tables that an assigned container held stay alive until it goes.
///
/// One thread at a time may use a container that changes. Several threads may read one through a const reference, once
/// SettleTables has been called; they reach the tables by TableOf, since the pointers below allow changes.
class DTSDB {
 public:
  /// Makes 46 empty tables.
  DTSDB();
  DTSDB(const DTSDB&) = default;
  DTSDB& operator=(const DTSDB& other);
  ~DTSDB() = default;

  /// Reads an object file (docs/object-file.md) into the tables, with all numbering. False, with one line on the
  /// standard output and every table as it was, when the file can't be opened or isn't a whole and sound image.
  bool ReadObject(const QString& fileName);
  /// Writes the tables to an object file, which takes the place of an old one only when it is complete. False,
  /// with one line on the standard output, when that can't be done.
  bool WriteObject(const QString& fileName);
  /// Stores or loads the 46 tables, in order. An archive that is refused leaves every table as it was.
  void Serialize(QArchive& ar);

  /// Loads all tables but the topology's log TPL from the realtime database (docs/realtime-exchange.md), in one
  /// transaction. Always true: failures go to the database's own error handling.
  bool ReadFastdb(dbDatabase* db);
  /// Stores all tables to the realtime database and commits. Always true, as above.
  bool WriteFastdb(dbDatabase* db);

  /// \name One table from its rows in the realtime database. Doesn't commit; always true.
  ///@{
  bool ReadANALOGFromFastdb(dbDatabase* db);
  bool ReadBSFromFastdb(dbDatabase* db);
  bool ReadBSLFromFastdb(dbDatabase* db);
  bool ReadBUSFromFastdb(dbDatabase* db);
  bool ReadCBFromFastdb(dbDatabase* db);
  bool ReadCB2FromFastdb(dbDatabase* db);
  bool ReadCHNDFromFastdb(dbDatabase* db);
  bool ReadCOFromFastdb(dbDatabase* db);
  bool ReadCPFromFastdb(dbDatabase* db);
  bool ReadDLNFromFastdb(dbDatabase* db);
  bool ReadDLN2FromFastdb(dbDatabase* db);
  bool ReadDVFromFastdb(dbDatabase* db);
  bool ReadGLOBALFromFastdb(dbDatabase* db);
  bool ReadISLANDFromFastdb(dbDatabase* db);
  bool ReadKVFromFastdb(dbDatabase* db);
  bool ReadLDFromFastdb(dbDatabase* db);
  bool ReadLNFromFastdb(dbDatabase* db);
  bool ReadLN2FromFastdb(dbDatabase* db);
  bool ReadNDFromFastdb(dbDatabase* db);
  bool ReadR_CO_DVFromFastdb(dbDatabase* db);
  bool ReadR_DV_DLNFromFastdb(dbDatabase* db);
  bool ReadR_DV_LNFromFastdb(dbDatabase* db);
  bool ReadR_DV_STFromFastdb(dbDatabase* db);
  bool ReadR_KV_BUSFromFastdb(dbDatabase* db);
  bool ReadR_KV_CBFromFastdb(dbDatabase* db);
  bool ReadR_KV_CPFromFastdb(dbDatabase* db);
  bool ReadR_KV_LDFromFastdb(dbDatabase* db);
  bool ReadR_KV_NDFromFastdb(dbDatabase* db);
  bool ReadR_KV_UNFromFastdb(dbDatabase* db);
  bool ReadR_KV_ZBRFromFastdb(dbDatabase* db);
  bool ReadR_ND_CB2FromFastdb(dbDatabase* db);
  bool ReadR_ND_DLN2FromFastdb(dbDatabase* db);
  bool ReadR_ND_LN2FromFastdb(dbDatabase* db);
  bool ReadR_ND_XF2FromFastdb(dbDatabase* db);
  bool ReadR_ND_ZBR2FromFastdb(dbDatabase* db);
  bool ReadR_ST_KVFromFastdb(dbDatabase* db);
  bool ReadR_ST_XFFromFastdb(dbDatabase* db);
  bool ReadSTFromFastdb(dbDatabase* db);
  bool ReadSTATUSFromFastdb(dbDatabase* db);
  bool ReadTPLFromFastdb(dbDatabase* db);
  bool ReadTPTRACEFromFastdb(dbDatabase* db);
  bool ReadUNFromFastdb(dbDatabase* db);
  bool ReadXFFromFastdb(dbDatabase* db);
  bool ReadXF2FromFastdb(dbDatabase* db);
  bool ReadZBRFromFastdb(dbDatabase* db);
  bool ReadZBR2FromFastdb(dbDatabase* db);
  ///@}

  /// \name One table to its rows in the realtime database. Doesn't commit; always true.
  ///@{
  bool WriteANALOGToFastdb(dbDatabase* db);
  bool WriteBSToFastdb(dbDatabase* db);
  bool WriteBSLToFastdb(dbDatabase* db);
  bool WriteBUSToFastdb(dbDatabase* db);
  bool WriteCBToFastdb(dbDatabase* db);
  bool WriteCB2ToFastdb(dbDatabase* db);
  bool WriteCHNDToFastdb(dbDatabase* db);
  bool WriteCOToFastdb(dbDatabase* db);
  bool WriteCPToFastdb(dbDatabase* db);
  bool WriteDLNToFastdb(dbDatabase* db);
  bool WriteDLN2ToFastdb(dbDatabase* db);
  bool WriteDVToFastdb(dbDatabase* db);
  bool WriteGLOBALToFastdb(dbDatabase* db);
  bool WriteISLANDToFastdb(dbDatabase* db);
  bool WriteKVToFastdb(dbDatabase* db);
  bool WriteLDToFastdb(dbDatabase* db);
  bool WriteLNToFastdb(dbDatabase* db);
  bool WriteLN2ToFastdb(dbDatabase* db);
  bool WriteNDToFastdb(dbDatabase* db);
  bool WriteR_CO_DVToFastdb(dbDatabase* db);
  bool WriteR_DV_DLNToFastdb(dbDatabase* db);
  bool WriteR_DV_LNToFastdb(dbDatabase* db);
  bool WriteR_DV_STToFastdb(dbDatabase* db);
  bool WriteR_KV_BUSToFastdb(dbDatabase* db);
  bool WriteR_KV_CBToFastdb(dbDatabase* db);
  bool WriteR_KV_CPToFastdb(dbDatabase* db);
  bool WriteR_KV_LDToFastdb(dbDatabase* db);
  bool WriteR_KV_NDToFastdb(dbDatabase* db);
  bool WriteR_KV_UNToFastdb(dbDatabase* db);
  bool WriteR_KV_ZBRToFastdb(dbDatabase* db);
  bool WriteR_ND_CB2ToFastdb(dbDatabase* db);
  bool WriteR_ND_DLN2ToFastdb(dbDatabase* db);
  bool WriteR_ND_LN2ToFastdb(dbDatabase* db);
  bool WriteR_ND_XF2ToFastdb(dbDatabase* db);
  bool WriteR_ND_ZBR2ToFastdb(dbDatabase* db);
  bool WriteR_ST_KVToFastdb(dbDatabase* db);
  bool WriteR_ST_XFToFastdb(dbDatabase* db);
  bool WriteSTToFastdb(dbDatabase* db);
  bool WriteSTATUSToFastdb(dbDatabase* db);
  bool WriteTPLToFastdb(dbDatabase* db);
  bool WriteTPTRACEToFastdb(dbDatabase* db);
  bool WriteUNToFastdb(dbDatabase* db);
  bool WriteXFToFastdb(dbDatabase* db);
  bool WriteXF2ToFastdb(dbDatabase* db);
  bool WriteZBRToFastdb(dbDatabase* db);
  bool WriteZBR2ToFastdb(dbDatabase* db);
  ///@}

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

 private:
  struct OwnTables;
  std::vector<std::shared_ptr<OwnTables>> m_owned;
};

}  // namespace dtsdb
