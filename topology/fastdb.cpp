// The exchange of what the topology works on, and of its results, with the realtime database.

#include "model/exchange.h"
#include "model/record_bits.h"
#include "topology/walks.h"

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

/// What an incremental run writes as a whole besides the sections and the units.
constexpr TableExchange kChangeWriters[] = {DTSDB_WRITER(BSL), DTSDB_WRITER(ISLAND), DTSDB_WRITER(CHND)};

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

namespace {

/// A writer for each of several classes, every one with its cursor.
template <class... Records>
struct TwinWriters : TwinWriter<Records>... {
  explicit TwinWriters(dbDatabase* db) : TwinWriter<Records>(db)... {}
  template <class Record>
  TwinWriter<Record>& Of() {
    return *this;
  }
};

}  // namespace

/// The writers for the records of a voltage level. They stay open for the whole of one call.
struct TP::ChangedRows : TwinWriters<CB, LD, CP, LN, ND, BUS, LN2, XF, XF2, DLN, DLN2, ZBR, ZBR2> {
  using TwinWriters::TwinWriters;
};

int TP::tpWriteChangedData(dbDatabase* db) {
  if (!DTSDB_ASSERT(db != nullptr, "db != NULL")) return 1;
  ChangedRows rows(db);
  WriteUNToFastdb(db);
  WriteBSToFastdb(db);
  ExchangeTables(Model(), db, kChangeWriters);
  WriteLog(db);
  for (int k = 0; k < m_changedKvCount; ++k) {
    if (m_changedKvs[k] >= 0) WriteKv(m_changedKvs[k], rows);
  }
  db->commit();
  return 1;
}

/// Adds the log of the run behind the rows that are there. Their numbers tell other programs which rows are new.
void TP::WriteLog(dbDatabase* db) {
  u32 base = 0;
  {
    dbCursor<Twin<TPL>::Row> stored(db, dbCursorViewOnly);
    const int count = stored.select(kReadingOrder<TPL>);
    const auto* last = count > 0 ? stored.last() : nullptr;
    if (last != nullptr) base = static_cast<u32>(last->id) + 1;
  }
  m_startNo = m_endNo = -1;
  TwinWriter<TPL> writer(db);
  for (int i = 0; i < m_tplTable->GetCount(); ++i) {
    TPL row = (*m_tplTable)[i];
    row.id = static_cast<i32>(base + static_cast<u32>(row.id));
    writer.Insert(row);
    if (i == 0) m_startNo = row.id;
    m_endNo = row.id;
  }
}

namespace {

/// Writes the columns that a run changes in a breaker or branch, in a device, in a bus.
template <class Branch>
void WriteBranch(TwinWriter<Branch>& writer, const Branch& branch) {
  using Columns = Twin<Branch>;
  writer.Update(branch, Columns::ibs, Columns::izbs, Columns::status, Columns::tp_status);
}
template <class Device>
void WriteDevice(TwinWriter<Device>& writer, const Device& device) {
  writer.Update(device, Twin<Device>::ibs, Twin<Device>::status, Twin<Device>::tp_status);
}

}  // namespace

/// Updates the rows of one voltage level's records. Units have been written before, as a whole table.
void TP::WriteKv(int kv, ChangedRows& rows) {
  const KV& level = m_kvTable->GetPh(kv);
  for (const R_KV_CB& row : Chain(*m_rKvCbTable, level.r_kv_cb)) {
    rows.Of<CB>().Update(m_cbTable->GetPh(row.icb), Twin<CB>::ibs, Twin<CB>::izbs, Twin<CB>::flags,
                         Twin<CB>::tp_status);
  }
  for (const R_KV_BUS& row : Chain(*m_rKvBusTable, level.r_kv_bus)) {
    rows.Of<BUS>().Update(m_busTable->GetPh(row.ibus), Twin<BUS>::ibs, Twin<BUS>::tp_status);
  }
  for (const R_KV_LD& row : Chain(*m_rKvLdTable, level.r_kv_ld)) WriteDevice(rows.Of<LD>(), m_ldTable->GetPh(row.ild));
  for (const R_KV_CP& row : Chain(*m_rKvCpTable, level.r_kv_cp)) WriteDevice(rows.Of<CP>(), m_cpTable->GetPh(row.icp));
  ForEachNode(kv, [&](int nd) {
    rows.Of<ND>().Update(Node(nd), Twin<ND>::ibs, Twin<ND>::next, Twin<ND>::n1, Twin<ND>::flags);
    return ForEachEnd<LN, XF, ZBR, DLN>(nd, [&](const auto& branch, int, const auto& end, int) {
      using Branch = std::remove_cvref_t<decltype(branch)>;
      using End = std::remove_cvref_t<decltype(end)>;
      rows.Of<End>().Update(end, Twin<End>::flags);
      WriteBranch(rows.Of<Branch>(), branch);
      return true;
    });
  });
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
