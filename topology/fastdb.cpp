// The exchange of what the topology works on, and of its results, with the realtime database.

#include "model/exchange.h"
#include "model/record_bits.h"
#include "topology/tp.h"

namespace dtsdb {
namespace {

/// What a run works on. The tables that a run produces and the changes that wait for one are not read.
constexpr TableExchange kReaders[] = {
    DTSDB_READER(ANALOG),   DTSDB_READER(BUS),      DTSDB_READER(CB),        DTSDB_READER(CB2),
    DTSDB_READER(CO),       DTSDB_READER(CP),       DTSDB_READER(DLN),       DTSDB_READER(DLN2),
    DTSDB_READER(DV),       DTSDB_READER(GLOBAL),   DTSDB_READER(KV),        DTSDB_READER(LD),
    DTSDB_READER(LN),       DTSDB_READER(LN2),      DTSDB_READER(ND),        DTSDB_READER(R_CO_DV),
    DTSDB_READER(R_DV_DLN), DTSDB_READER(R_DV_LN),  DTSDB_READER(R_DV_ST),   DTSDB_READER(R_KV_BUS),
    DTSDB_READER(R_KV_CB),  DTSDB_READER(R_KV_CP),  DTSDB_READER(R_KV_LD),   DTSDB_READER(R_KV_ND),
    DTSDB_READER(R_KV_UN),  DTSDB_READER(R_KV_ZBR), DTSDB_READER(R_ND_CB2),  DTSDB_READER(R_ND_DLN2),
    DTSDB_READER(R_ND_LN2), DTSDB_READER(R_ND_XF2), DTSDB_READER(R_ND_ZBR2), DTSDB_READER(R_ST_KV),
    DTSDB_READER(R_ST_XF),  DTSDB_READER(ST),       DTSDB_READER(STATUS),    DTSDB_READER(UN),
    DTSDB_READER(XF),       DTSDB_READER(XF2),      DTSDB_READER(ZBR),       DTSDB_READER(ZBR2),
};

/// The results of a full run, but the four tables of which the topology owns only some columns.
constexpr TableExchange kWriters[] = {
    DTSDB_WRITER(BSL), DTSDB_WRITER(CB),   DTSDB_WRITER(CB2),    DTSDB_WRITER(CHND),   DTSDB_WRITER(CP),
    DTSDB_WRITER(DLN), DTSDB_WRITER(DLN2), DTSDB_WRITER(GLOBAL), DTSDB_WRITER(ISLAND), DTSDB_WRITER(KV),
    DTSDB_WRITER(LN),  DTSDB_WRITER(LN2),  DTSDB_WRITER(ND),     DTSDB_WRITER(XF),     DTSDB_WRITER(XF2),
    DTSDB_WRITER(ZBR), DTSDB_WRITER(ZBR2),
};

}  // namespace

int TP::tpReadFastdb(dbDatabase* db) {
  if (!DTSDB_ASSERT(db != nullptr, "db != NULL")) return 1;
  ExchangeTables(Model(), db, kReaders);
  for (int i = 0; i < m_cbTable->GetCount(); ++i) {
    CB& cb = (*m_cbTable)[i];
    if ((cb.flags & CB_READ_OPEN) != 0) cb.flags |= CB_OPEN;
  }
  db->commit();
  return 1;
}

int TP::tpWriteFastdb(dbDatabase* db) {
  if (!DTSDB_ASSERT(db != nullptr, "db != NULL")) return 1;
  WriteLDToFastdb(db);
  WriteUNToFastdb(db);
  WriteBUSToFastdb(db);
  WriteBSToFastdb(db);
  ExchangeTables(Model(), db, kWriters);
  db->commit();
  return 1;
}

// The topology's own writers: of a row that exists only the topology's columns change, the rest belongs to others.

bool TP::WriteBSToFastdb(dbDatabase* db) {
  using Columns = Twin<BS>;
  MergeRows(db, *m_bsTable, Columns::name, Columns::ikv, Columns::f0, Columns::island, Columns::status, Columns::flags,
            Columns::next, Columns::prev, Columns::ibsl);
  RemoveRowsBeyond(db, *m_bsTable);
  return true;
}

bool TP::WriteLDToFastdb(dbDatabase* db) {
  MergeRows(db, *m_ldTable, Twin<LD>::ibs, Twin<LD>::status, Twin<LD>::tp_status);
  return true;
}

bool TP::WriteUNToFastdb(dbDatabase* db) {
  MergeRows(db, *m_unTable, Twin<UN>::ibs, Twin<UN>::ref, Twin<UN>::status, Twin<UN>::tp_status);
  return true;
}

bool TP::WriteBUSToFastdb(dbDatabase* db) {
  MergeRows(db, *m_busTable, Twin<BUS>::ibs, Twin<BUS>::tp_status);
  return true;
}

}  // namespace dtsdb
