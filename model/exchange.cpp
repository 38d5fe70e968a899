// Written by scripts/generate from the description in schema/: change it there.
#include "model/exchange.h"

#include "model/table_info.h"

namespace dtsdb {
namespace {

using TableExchange = bool (DTSDB::*)(dbDatabase* db);

// clang-format off

constexpr TableExchange kReaders[] = {
    &DTSDB::ReadANALOGFromFastdb,
    &DTSDB::ReadBSFromFastdb,
    &DTSDB::ReadBSLFromFastdb,
    &DTSDB::ReadBUSFromFastdb,
    &DTSDB::ReadCBFromFastdb,
    &DTSDB::ReadCB2FromFastdb,
    &DTSDB::ReadCHNDFromFastdb,
    &DTSDB::ReadCOFromFastdb,
    &DTSDB::ReadCPFromFastdb,
    &DTSDB::ReadDLNFromFastdb,
    &DTSDB::ReadDLN2FromFastdb,
    &DTSDB::ReadDVFromFastdb,
    &DTSDB::ReadGLOBALFromFastdb,
    &DTSDB::ReadISLANDFromFastdb,
    &DTSDB::ReadKVFromFastdb,
    &DTSDB::ReadLDFromFastdb,
    &DTSDB::ReadLNFromFastdb,
    &DTSDB::ReadLN2FromFastdb,
    &DTSDB::ReadNDFromFastdb,
    &DTSDB::ReadR_CO_DVFromFastdb,
    &DTSDB::ReadR_DV_DLNFromFastdb,
    &DTSDB::ReadR_DV_LNFromFastdb,
    &DTSDB::ReadR_DV_STFromFastdb,
    &DTSDB::ReadR_KV_BUSFromFastdb,
    &DTSDB::ReadR_KV_CBFromFastdb,
    &DTSDB::ReadR_KV_CPFromFastdb,
    &DTSDB::ReadR_KV_LDFromFastdb,
    &DTSDB::ReadR_KV_NDFromFastdb,
    &DTSDB::ReadR_KV_UNFromFastdb,
    &DTSDB::ReadR_KV_ZBRFromFastdb,
    &DTSDB::ReadR_ND_CB2FromFastdb,
    &DTSDB::ReadR_ND_DLN2FromFastdb,
    &DTSDB::ReadR_ND_LN2FromFastdb,
    &DTSDB::ReadR_ND_XF2FromFastdb,
    &DTSDB::ReadR_ND_ZBR2FromFastdb,
    &DTSDB::ReadR_ST_KVFromFastdb,
    &DTSDB::ReadR_ST_XFFromFastdb,
    &DTSDB::ReadSTFromFastdb,
    &DTSDB::ReadSTATUSFromFastdb,
    &DTSDB::ReadTPLFromFastdb,
    &DTSDB::ReadTPTRACEFromFastdb,
    &DTSDB::ReadUNFromFastdb,
    &DTSDB::ReadXFFromFastdb,
    &DTSDB::ReadXF2FromFastdb,
    &DTSDB::ReadZBRFromFastdb,
    &DTSDB::ReadZBR2FromFastdb,
};

constexpr TableExchange kWriters[] = {
    &DTSDB::WriteANALOGToFastdb,
    &DTSDB::WriteBSToFastdb,
    &DTSDB::WriteBSLToFastdb,
    &DTSDB::WriteBUSToFastdb,
    &DTSDB::WriteCBToFastdb,
    &DTSDB::WriteCB2ToFastdb,
    &DTSDB::WriteCHNDToFastdb,
    &DTSDB::WriteCOToFastdb,
    &DTSDB::WriteCPToFastdb,
    &DTSDB::WriteDLNToFastdb,
    &DTSDB::WriteDLN2ToFastdb,
    &DTSDB::WriteDVToFastdb,
    &DTSDB::WriteGLOBALToFastdb,
    &DTSDB::WriteISLANDToFastdb,
    &DTSDB::WriteKVToFastdb,
    &DTSDB::WriteLDToFastdb,
    &DTSDB::WriteLNToFastdb,
    &DTSDB::WriteLN2ToFastdb,
    &DTSDB::WriteNDToFastdb,
    &DTSDB::WriteR_CO_DVToFastdb,
    &DTSDB::WriteR_DV_DLNToFastdb,
    &DTSDB::WriteR_DV_LNToFastdb,
    &DTSDB::WriteR_DV_STToFastdb,
    &DTSDB::WriteR_KV_BUSToFastdb,
    &DTSDB::WriteR_KV_CBToFastdb,
    &DTSDB::WriteR_KV_CPToFastdb,
    &DTSDB::WriteR_KV_LDToFastdb,
    &DTSDB::WriteR_KV_NDToFastdb,
    &DTSDB::WriteR_KV_UNToFastdb,
    &DTSDB::WriteR_KV_ZBRToFastdb,
    &DTSDB::WriteR_ND_CB2ToFastdb,
    &DTSDB::WriteR_ND_DLN2ToFastdb,
    &DTSDB::WriteR_ND_LN2ToFastdb,
    &DTSDB::WriteR_ND_XF2ToFastdb,
    &DTSDB::WriteR_ND_ZBR2ToFastdb,
    &DTSDB::WriteR_ST_KVToFastdb,
    &DTSDB::WriteR_ST_XFToFastdb,
    &DTSDB::WriteSTToFastdb,
    &DTSDB::WriteSTATUSToFastdb,
    &DTSDB::WriteTPLToFastdb,
    &DTSDB::WriteTPTRACEToFastdb,
    &DTSDB::WriteUNToFastdb,
    &DTSDB::WriteXFToFastdb,
    &DTSDB::WriteXF2ToFastdb,
    &DTSDB::WriteZBRToFastdb,
    &DTSDB::WriteZBR2ToFastdb,
};

// clang-format on

}  // namespace

void ReadTables(DTSDB& model, dbDatabase* db, std::span<const TableKind> kinds) {
  for (const TableKind kind : kinds) (model.*kReaders[kind - 1])(db);
}

void WriteTables(DTSDB& model, dbDatabase* db, std::span<const TableKind> kinds) {
  for (const TableKind kind : kinds) (model.*kWriters[kind - 1])(db);
}

bool DTSDB::ReadFastdb(dbDatabase* db) {
  if (!DTSDB_ASSERT(db != nullptr, "db != NULL")) return true;
  for (const TableInfo& table : Tables()) {
    if (table.kind != KIND_TPL) (this->*kReaders[table.kind - 1])(db);  // the topology's log is not read back
  }
  db->commit();
  return true;
}

bool DTSDB::WriteFastdb(dbDatabase* db) {
  if (!DTSDB_ASSERT(db != nullptr, "db != NULL")) return true;
  for (const TableExchange write : kWriters) (this->*write)(db);
  db->commit();
  return true;
}

bool DTSDB::ReadANALOGFromFastdb(dbDatabase* db) { return ReadTable(db, *m_analogTable); }
bool DTSDB::WriteANALOGToFastdb(dbDatabase* db) { return WriteTable(db, *m_analogTable); }

bool DTSDB::ReadBSFromFastdb(dbDatabase* db) { return ReadTable(db, *m_bsTable); }
bool DTSDB::WriteBSToFastdb(dbDatabase* db) { return WriteTable(db, *m_bsTable); }

bool DTSDB::ReadBSLFromFastdb(dbDatabase* db) { return ReadTable(db, *m_bslTable); }
bool DTSDB::WriteBSLToFastdb(dbDatabase* db) { return WriteTable(db, *m_bslTable); }

bool DTSDB::ReadBUSFromFastdb(dbDatabase* db) { return ReadTable(db, *m_busTable); }
bool DTSDB::WriteBUSToFastdb(dbDatabase* db) { return WriteTable(db, *m_busTable); }

bool DTSDB::ReadCBFromFastdb(dbDatabase* db) { return ReadTable(db, *m_cbTable); }
bool DTSDB::WriteCBToFastdb(dbDatabase* db) { return WriteTable(db, *m_cbTable); }

bool DTSDB::ReadCB2FromFastdb(dbDatabase* db) { return ReadTable(db, *m_cb2Table); }
bool DTSDB::WriteCB2ToFastdb(dbDatabase* db) { return WriteTable(db, *m_cb2Table); }

bool DTSDB::ReadCHNDFromFastdb(dbDatabase* db) { return ReadTable(db, *m_chndTable); }
bool DTSDB::WriteCHNDToFastdb(dbDatabase* db) { return WriteTable(db, *m_chndTable); }

bool DTSDB::ReadCOFromFastdb(dbDatabase* db) { return ReadTable(db, *m_coTable); }
bool DTSDB::WriteCOToFastdb(dbDatabase* db) { return WriteTable(db, *m_coTable); }

bool DTSDB::ReadCPFromFastdb(dbDatabase* db) { return ReadTable(db, *m_cpTable); }
bool DTSDB::WriteCPToFastdb(dbDatabase* db) { return WriteTable(db, *m_cpTable); }

bool DTSDB::ReadDLNFromFastdb(dbDatabase* db) { return ReadTable(db, *m_dlnTable); }
bool DTSDB::WriteDLNToFastdb(dbDatabase* db) { return WriteTable(db, *m_dlnTable); }

bool DTSDB::ReadDLN2FromFastdb(dbDatabase* db) { return ReadTable(db, *m_dln2Table); }
bool DTSDB::WriteDLN2ToFastdb(dbDatabase* db) { return WriteTable(db, *m_dln2Table); }

bool DTSDB::ReadDVFromFastdb(dbDatabase* db) { return ReadTable(db, *m_dvTable); }
bool DTSDB::WriteDVToFastdb(dbDatabase* db) { return WriteTable(db, *m_dvTable); }

bool DTSDB::ReadGLOBALFromFastdb(dbDatabase* db) { return ReadTable(db, *m_globalTable); }
bool DTSDB::WriteGLOBALToFastdb(dbDatabase* db) { return WriteTable(db, *m_globalTable); }

bool DTSDB::ReadISLANDFromFastdb(dbDatabase* db) { return ReadTable(db, *m_islandTable); }
bool DTSDB::WriteISLANDToFastdb(dbDatabase* db) { return WriteTable(db, *m_islandTable); }

bool DTSDB::ReadKVFromFastdb(dbDatabase* db) { return ReadTable(db, *m_kvTable); }
bool DTSDB::WriteKVToFastdb(dbDatabase* db) { return WriteTable(db, *m_kvTable); }

bool DTSDB::ReadLDFromFastdb(dbDatabase* db) { return ReadTable(db, *m_ldTable); }
bool DTSDB::WriteLDToFastdb(dbDatabase* db) { return WriteTable(db, *m_ldTable); }

bool DTSDB::ReadLNFromFastdb(dbDatabase* db) { return ReadTable(db, *m_lnTable); }
bool DTSDB::WriteLNToFastdb(dbDatabase* db) { return WriteTable(db, *m_lnTable); }

bool DTSDB::ReadLN2FromFastdb(dbDatabase* db) { return ReadTable(db, *m_ln2Table); }
bool DTSDB::WriteLN2ToFastdb(dbDatabase* db) { return WriteTable(db, *m_ln2Table); }

bool DTSDB::ReadNDFromFastdb(dbDatabase* db) { return ReadTable(db, *m_ndTable); }
bool DTSDB::WriteNDToFastdb(dbDatabase* db) { return WriteTable(db, *m_ndTable); }

bool DTSDB::ReadR_CO_DVFromFastdb(dbDatabase* db) { return ReadTable(db, *m_rCoDvTable); }
bool DTSDB::WriteR_CO_DVToFastdb(dbDatabase* db) { return WriteTable(db, *m_rCoDvTable); }

bool DTSDB::ReadR_DV_DLNFromFastdb(dbDatabase* db) { return ReadTable(db, *m_rDvDlnTable); }
bool DTSDB::WriteR_DV_DLNToFastdb(dbDatabase* db) { return WriteTable(db, *m_rDvDlnTable); }

bool DTSDB::ReadR_DV_LNFromFastdb(dbDatabase* db) { return ReadTable(db, *m_rDvLnTable); }
bool DTSDB::WriteR_DV_LNToFastdb(dbDatabase* db) { return WriteTable(db, *m_rDvLnTable); }

bool DTSDB::ReadR_DV_STFromFastdb(dbDatabase* db) { return ReadTable(db, *m_rDvStTable); }
bool DTSDB::WriteR_DV_STToFastdb(dbDatabase* db) { return WriteTable(db, *m_rDvStTable); }

bool DTSDB::ReadR_KV_BUSFromFastdb(dbDatabase* db) { return ReadTable(db, *m_rKvBusTable); }
bool DTSDB::WriteR_KV_BUSToFastdb(dbDatabase* db) { return WriteTable(db, *m_rKvBusTable); }

bool DTSDB::ReadR_KV_CBFromFastdb(dbDatabase* db) { return ReadTable(db, *m_rKvCbTable); }
bool DTSDB::WriteR_KV_CBToFastdb(dbDatabase* db) { return WriteTable(db, *m_rKvCbTable); }

bool DTSDB::ReadR_KV_CPFromFastdb(dbDatabase* db) { return ReadTable(db, *m_rKvCpTable); }
bool DTSDB::WriteR_KV_CPToFastdb(dbDatabase* db) { return WriteTable(db, *m_rKvCpTable); }

bool DTSDB::ReadR_KV_LDFromFastdb(dbDatabase* db) { return ReadTable(db, *m_rKvLdTable); }
bool DTSDB::WriteR_KV_LDToFastdb(dbDatabase* db) { return WriteTable(db, *m_rKvLdTable); }

bool DTSDB::ReadR_KV_NDFromFastdb(dbDatabase* db) { return ReadTable(db, *m_rKvNdTable); }
bool DTSDB::WriteR_KV_NDToFastdb(dbDatabase* db) { return WriteTable(db, *m_rKvNdTable); }

bool DTSDB::ReadR_KV_UNFromFastdb(dbDatabase* db) { return ReadTable(db, *m_rKvUnTable); }
bool DTSDB::WriteR_KV_UNToFastdb(dbDatabase* db) { return WriteTable(db, *m_rKvUnTable); }

bool DTSDB::ReadR_KV_ZBRFromFastdb(dbDatabase* db) { return ReadTable(db, *m_rKvZbrTable); }
bool DTSDB::WriteR_KV_ZBRToFastdb(dbDatabase* db) { return WriteTable(db, *m_rKvZbrTable); }

bool DTSDB::ReadR_ND_CB2FromFastdb(dbDatabase* db) { return ReadTable(db, *m_rNdCb2Table); }
bool DTSDB::WriteR_ND_CB2ToFastdb(dbDatabase* db) { return WriteTable(db, *m_rNdCb2Table); }

bool DTSDB::ReadR_ND_DLN2FromFastdb(dbDatabase* db) { return ReadTable(db, *m_rNdDln2Table); }
bool DTSDB::WriteR_ND_DLN2ToFastdb(dbDatabase* db) { return WriteTable(db, *m_rNdDln2Table); }

bool DTSDB::ReadR_ND_LN2FromFastdb(dbDatabase* db) { return ReadTable(db, *m_rNdLn2Table); }
bool DTSDB::WriteR_ND_LN2ToFastdb(dbDatabase* db) { return WriteTable(db, *m_rNdLn2Table); }

bool DTSDB::ReadR_ND_XF2FromFastdb(dbDatabase* db) { return ReadTable(db, *m_rNdXf2Table); }
bool DTSDB::WriteR_ND_XF2ToFastdb(dbDatabase* db) { return WriteTable(db, *m_rNdXf2Table); }

bool DTSDB::ReadR_ND_ZBR2FromFastdb(dbDatabase* db) { return ReadTable(db, *m_rNdZbr2Table); }
bool DTSDB::WriteR_ND_ZBR2ToFastdb(dbDatabase* db) { return WriteTable(db, *m_rNdZbr2Table); }

bool DTSDB::ReadR_ST_KVFromFastdb(dbDatabase* db) { return ReadTable(db, *m_rStKvTable); }
bool DTSDB::WriteR_ST_KVToFastdb(dbDatabase* db) { return WriteTable(db, *m_rStKvTable); }

bool DTSDB::ReadR_ST_XFFromFastdb(dbDatabase* db) { return ReadTable(db, *m_rStXfTable); }
bool DTSDB::WriteR_ST_XFToFastdb(dbDatabase* db) { return WriteTable(db, *m_rStXfTable); }

bool DTSDB::ReadSTFromFastdb(dbDatabase* db) { return ReadTable(db, *m_stTable); }
bool DTSDB::WriteSTToFastdb(dbDatabase* db) { return WriteTable(db, *m_stTable); }

bool DTSDB::ReadSTATUSFromFastdb(dbDatabase* db) { return ReadTable(db, *m_statusTable); }
bool DTSDB::WriteSTATUSToFastdb(dbDatabase* db) { return WriteTable(db, *m_statusTable); }

bool DTSDB::ReadTPLFromFastdb(dbDatabase* db) { return ReadTable(db, *m_tplTable); }
bool DTSDB::WriteTPLToFastdb(dbDatabase* db) { return WriteTable(db, *m_tplTable); }

bool DTSDB::ReadTPTRACEFromFastdb(dbDatabase* db) { return ReadTable(db, *m_tptraceTable); }
bool DTSDB::WriteTPTRACEToFastdb(dbDatabase* db) { return WriteTable(db, *m_tptraceTable); }

bool DTSDB::ReadUNFromFastdb(dbDatabase* db) { return ReadTable(db, *m_unTable); }
bool DTSDB::WriteUNToFastdb(dbDatabase* db) { return WriteTable(db, *m_unTable); }

bool DTSDB::ReadXFFromFastdb(dbDatabase* db) { return ReadTable(db, *m_xfTable); }
bool DTSDB::WriteXFToFastdb(dbDatabase* db) { return WriteTable(db, *m_xfTable); }

bool DTSDB::ReadXF2FromFastdb(dbDatabase* db) { return ReadTable(db, *m_xf2Table); }
bool DTSDB::WriteXF2ToFastdb(dbDatabase* db) { return WriteTable(db, *m_xf2Table); }

bool DTSDB::ReadZBRFromFastdb(dbDatabase* db) { return ReadTable(db, *m_zbrTable); }
bool DTSDB::WriteZBRToFastdb(dbDatabase* db) { return WriteTable(db, *m_zbrTable); }

bool DTSDB::ReadZBR2FromFastdb(dbDatabase* db) { return ReadTable(db, *m_zbr2Table); }
bool DTSDB::WriteZBR2ToFastdb(dbDatabase* db) { return WriteTable(db, *m_zbr2Table); }

}  // namespace dtsdb
