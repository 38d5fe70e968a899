#include "topology/internal/fastdb.h"

#include <type_traits>

#include "model/exchange.h"

namespace dtsdb::internal {
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

void Exchange::Read(dbDatabase* db) const {
  if (!DTSDB_ASSERT(db != nullptr, "db != NULL")) return;
  ExchangeTables(m_model, db, kReaders);
  auto& breakers = m_network.Table<CB>();
  for (int i = 0; i < breakers.GetCount(); ++i) {
    CB& cb = breakers[i];
    if ((cb.flags & CB_READ_OPEN) != 0) cb.flags |= CB_OPEN;
  }
  db->commit();
}

void Exchange::WriteAll(dbDatabase* db) const {
  if (!DTSDB_ASSERT(db != nullptr, "db != NULL")) return;
  WriteLoads(db);
  WriteUnits(db);
  WriteBuses(db);
  WriteSections(db);
  ExchangeTables(m_model, db, kWriters);
  db->commit();
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
struct Exchange::ChangedRows : TwinWriters<CB, LD, CP, LN, ND, BUS, LN2, XF, XF2, DLN, DLN2, ZBR, ZBR2> {
  using TwinWriters::TwinWriters;
};

void Exchange::WriteChanges(dbDatabase* db, LogNumbers* numbers) const {
  if (!DTSDB_ASSERT(db != nullptr, "db != NULL")) return;
  ChangedRows rows(db);
  WriteUnits(db);
  WriteSections(db);
  ExchangeTables(m_model, db, kChangeWriters);
  *numbers = WriteLog(db);
  for (int k = 0; k < m_levels.ChangedCount(); ++k) {
    if (m_levels.Changed(k) >= 0) WriteLevel(m_levels.Changed(k), rows);
  }
  db->commit();
}

/// Adds the log of the run behind the rows that are there. By their numbers other programs know which rows are new.
LogNumbers Exchange::WriteLog(dbDatabase* db) const {
  u32 base = 0;
  {
    dbCursor<Twin<TPL>::Row> stored(db, dbCursorViewOnly);
    const int count = stored.select(kReadingOrder<TPL>);
    const auto* last = count > 0 ? stored.last() : nullptr;
    if (last != nullptr) base = static_cast<u32>(last->id) + 1;
  }
  LogNumbers numbers;
  TwinWriter<TPL> writer(db);
  auto& log = m_network.Table<TPL>();
  for (int i = 0; i < log.GetCount(); ++i) {
    TPL row = log[i];
    row.id = static_cast<i32>(base + static_cast<u32>(row.id));
    writer.Insert(row);
    if (i == 0) numbers.first = row.id;
    numbers.last = row.id;
  }
  return numbers;
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
void Exchange::WriteLevel(int kv, ChangedRows& rows) const {
  const KV& level = m_network.Level(kv);
  const auto forEach = [&]<class Row>(tTable<Row>& chained, auto write) {
    auto& children = m_network.Table<typename Relation<Row>::Child>();
    for (const Row& row : Chain(chained, level.*Relation<Row>::head)) write(children.GetPh(row.ChildNumber()));
  };
  forEach(m_network.Table<R_KV_CB>(), [&](const CB& cb) {
    rows.Of<CB>().Update(cb, Twin<CB>::ibs, Twin<CB>::izbs, Twin<CB>::flags, Twin<CB>::tp_status);
  });
  forEach(m_network.Table<R_KV_BUS>(),
          [&](const BUS& bus) { rows.Of<BUS>().Update(bus, Twin<BUS>::ibs, Twin<BUS>::tp_status); });
  forEach(m_network.Table<R_KV_LD>(), [&](const LD& load) { WriteDevice(rows.Of<LD>(), load); });
  forEach(m_network.Table<R_KV_CP>(), [&](const CP& device) { WriteDevice(rows.Of<CP>(), device); });
  m_network.ForEachNode(kv, [&](int nd) {
    rows.Of<ND>().Update(m_network.Node(nd), Twin<ND>::ibs, Twin<ND>::next, Twin<ND>::n1, Twin<ND>::flags);
    return m_network.ForEachEnd<LN, XF, ZBR, DLN>(nd, [&](const auto& branch, int, const auto& end, int) {
      using Branch = std::remove_cvref_t<decltype(branch)>;
      using End = std::remove_cvref_t<decltype(end)>;
      rows.Of<End>().Update(end, Twin<End>::flags);
      WriteBranch(rows.Of<Branch>(), branch);
      return true;
    });
  });
}

// Of a row that exists only the topology's columns change, the rest belongs to others.

void Exchange::WriteSections(dbDatabase* db) const {
  using Columns = Twin<BS>;
  auto& sections = m_network.Table<BS>();
  MergeRows(db, sections, Columns::name, Columns::ikv, Columns::f0, Columns::island, Columns::status, Columns::flags,
            Columns::next, Columns::prev, Columns::ibsl);
  RemoveRowsBeyond(db, sections);
}

void Exchange::WriteLoads(dbDatabase* db) const {
  MergeRows(db, m_network.Table<LD>(), Twin<LD>::ibs, Twin<LD>::status, Twin<LD>::tp_status);
}

void Exchange::WriteUnits(dbDatabase* db) const {
  MergeRows(db, m_network.Table<UN>(), Twin<UN>::ibs, Twin<UN>::ref, Twin<UN>::status, Twin<UN>::tp_status);
}

void Exchange::WriteBuses(dbDatabase* db) const {
  MergeRows(db, m_network.Table<BUS>(), Twin<BUS>::ibs, Twin<BUS>::tp_status);
}

}  // namespace dtsdb::internal
