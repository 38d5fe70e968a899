#include "topology/internal/fastdb.h"

#include <algorithm>
#include <tuple>
#include <type_traits>
#include <vector>

#include "model/exchange.h"
#include "topology/internal/stored_rows.h"

namespace dtsdb::internal {
namespace {

/// What a run works on. The tables that a run produces and the changes that wait for one are not read.
constexpr TableKind kReaders[] = {
    KIND_ANALOG,   KIND_BUS,      KIND_CB,        KIND_CB2,     KIND_CO,       KIND_CP,       KIND_DLN,
    KIND_DLN2,     KIND_DV,       KIND_GLOBAL,    KIND_KV,      KIND_LD,       KIND_LN,       KIND_LN2,
    KIND_ND,       KIND_R_CO_DV,  KIND_R_DV_DLN,  KIND_R_DV_LN, KIND_R_DV_ST,  KIND_R_KV_BUS, KIND_R_KV_CB,
    KIND_R_KV_CP,  KIND_R_KV_LD,  KIND_R_KV_ND,   KIND_R_KV_UN, KIND_R_KV_ZBR, KIND_R_ND_CB2, KIND_R_ND_DLN2,
    KIND_R_ND_LN2, KIND_R_ND_XF2, KIND_R_ND_ZBR2, KIND_R_ST_KV, KIND_R_ST_XF,  KIND_ST,       KIND_STATUS,
    KIND_UN,       KIND_XF,       KIND_XF2,       KIND_ZBR,     KIND_ZBR2,
};

/// The results of a full run, but the four tables of which the topology owns only some columns.
constexpr TableKind kWriters[] = {
    KIND_BSL, KIND_CB, KIND_CB2, KIND_CHND, KIND_CP, KIND_DLN, KIND_DLN2, KIND_GLOBAL, KIND_ISLAND,
    KIND_KV,  KIND_LN, KIND_LN2, KIND_ND,   KIND_XF, KIND_XF2, KIND_ZBR,  KIND_ZBR2,
};

/// Of rows that exist only these columns change, the rest belongs to others.
constexpr std::tuple kSectionFields{&BS::name,  &BS::ikv,  &BS::f0,   &BS::island, &BS::status,
                                    &BS::flags, &BS::next, &BS::prev, &BS::ibsl};
constexpr std::tuple kUnitFields{&UN::ibs, &UN::ref, &UN::status, &UN::tp_status};

/// Stores the given fields of `table`, or with none given all: where its rows stand as they were stored, those of the
/// records that have changed since, else the whole table.
template <class T, class... Values>
void WriteChangedRows(dbDatabase* db, tTable<T>& table, StoredRows<T>& stored, Values T::*... fields) {
  if (stored.Begin(db, table)) {
    TwinWriter<T> writer(db);
    for (int i = 0; i < table.GetCount(); ++i) {
      if (stored.Note(i, table[i], fields...)) writer.Merge(table[i], fields...);
    }
    return;
  }
  if constexpr (sizeof...(fields) > 0) {
    MergeRows(db, table, fields...);
  } else {
    WriteTable(db, table);
  }
  stored.NoteAll(db, table);
}

/// The same for the section list, where the record of changes has what is to be looked at.
void WriteChangedEntries(dbDatabase* db, tTable<BSL>& table, StoredRows<BSL>& stored, const Changes& changes) {
  if (!changes.KnowsUnstored(table) || !stored.Begin(db, table, true)) return WriteChangedRows(db, table, stored);
  std::vector<int> numbers = changes.unstored.Numbers();
  std::sort(numbers.begin(), numbers.end());
  TwinWriter<BSL> writer(db);
  for (const int n : numbers) {
    if (stored.Note(n, table[n])) writer.Merge(table[n]);
  }
}

}  // namespace

void Exchange::Read(dbDatabase* db) const {
  if (!DTSDB_ASSERT(db != nullptr, "db != NULL")) return;
  ReadTables(m_model, db, kReaders);
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
  WriteTables(m_model, db, kWriters);
  const std::shared_ptr<StoredResults> stored = Stored();
  stored->units.NoteAll(db, m_network.Table<UN>());
  stored->sections.NoteAll(db, m_network.Table<BS>());
  stored->entries.NoteAll(db, TableOf<BSL>(m_model));
  stored->islands.NoteAll(db, TableOf<ISLAND>(m_model));
  NoteStored();
  stored->Commit(db);
}

/// Without work arrays nothing is kept.
std::shared_ptr<StoredResults> Exchange::Stored() const {
  if (m_arrays == nullptr) return std::make_shared<StoredResults>();
  if (m_arrays->stored == nullptr) m_arrays->stored = std::make_shared<StoredResults>();
  return m_arrays->stored;
}

void Exchange::NoteStored() const {
  if (m_arrays != nullptr) m_arrays->changes.NoteStored();
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

/// GLOBAL isn't written, nor is a record outside the levels of the run, such as a breaker that was opened without a
/// trace row. Kept: K55.
void Exchange::WriteChanges(dbDatabase* db, LogNumbers* numbers) const {
  if (!DTSDB_ASSERT(db != nullptr, "db != NULL")) return;
  ChangedRows rows(db);
  const std::shared_ptr<StoredResults> stored = Stored();
  WriteChangedResults(db, *stored);
  WriteTable(db, TableOf<CHND>(m_model));
  *numbers = WriteLog(db);
  for (int k = 0; k < m_levels.ChangedCount(); ++k) {
    if (m_levels.Changed(k) >= 0) WriteLevel(m_levels.Changed(k), rows);
  }
  NoteStored();
  stored->Commit(db);
}

void Exchange::WriteChangedResults(dbDatabase* db, StoredResults& stored) const {
  auto& sections = m_network.Table<BS>();
  auto& entries = TableOf<BSL>(m_model);
  const auto write = [db](auto& table, auto& rows) {
    return [db, &table, &rows](auto... fields) { WriteChangedRows(db, table, rows, fields...); };
  };
  std::apply(write(m_network.Table<UN>(), stored.units), kUnitFields);
  std::apply(write(sections, stored.sections), kSectionFields);
  RemoveRowsBeyond(db, sections);
  if (m_arrays != nullptr && &entries == &m_network.Table<BSL>()) {
    WriteChangedEntries(db, entries, stored.entries, m_arrays->changes);
  } else {
    WriteChangedRows(db, entries, stored.entries);
  }
  RemoveRowsBeyond(db, entries);
  WriteChangedRows(db, TableOf<ISLAND>(m_model), stored.islands);
}

/// Adds the log of the run behind the rows that are there. By their numbers other programs know which rows are new.
LogNumbers Exchange::WriteLog(dbDatabase* db) const {
  u32 base = 0;
  {
    dbCursor<Twin<TPL>::Row> stored(db, dbCursorViewOnly);
    const int count = stored.select(Twin<TPL>::kReadingOrder);
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
  writer.Update(branch, &Branch::ibs, &Branch::izbs, &Branch::status, &Branch::tp_status);
}
template <class Device>
void WriteDevice(TwinWriter<Device>& writer, const Device& device) {
  writer.Update(device, &Device::ibs, &Device::status, &Device::tp_status);
}

}  // namespace

/// Updates the rows of one voltage level's records. Units have been written before, as a whole table.
void Exchange::WriteLevel(int kv, ChangedRows& rows) const {
  const KV& level = m_network.Level(kv);
  const auto forEach = [&]<class Row>(tTable<Row>& chained, auto write) {
    auto& children = m_network.Table<typename Relation<Row>::Child>();
    for (const Row& row : Chain(chained, level.*Relation<Row>::kHead)) write(children.GetPh(row.ChildNumber()));
  };
  forEach(m_network.Table<R_KV_CB>(),
          [&](const CB& cb) { rows.Of<CB>().Update(cb, &CB::ibs, &CB::izbs, &CB::flags, &CB::tp_status); });
  forEach(m_network.Table<R_KV_BUS>(), [&](const BUS& bus) { rows.Of<BUS>().Update(bus, &BUS::ibs, &BUS::tp_status); });
  forEach(m_network.Table<R_KV_LD>(), [&](const LD& load) { WriteDevice(rows.Of<LD>(), load); });
  forEach(m_network.Table<R_KV_CP>(), [&](const CP& device) { WriteDevice(rows.Of<CP>(), device); });
  m_network.ForEachNode(kv, [&](int nd) {
    rows.Of<ND>().Update(m_network.NodeRecord(nd), &ND::ibs, &ND::next, &ND::n1, &ND::flags);
    return m_network.ForEachEnd<LN, XF, ZBR, DLN>(nd, [&](const auto& branch, int, const auto& end, int) {
      using Branch = std::remove_cvref_t<decltype(branch)>;
      using End = std::remove_cvref_t<decltype(end)>;
      rows.Of<End>().Update(end, &End::flags);
      WriteBranch(rows.Of<Branch>(), branch);
      return true;
    });
  });
}

void Exchange::WriteSections(dbDatabase* db) const {
  auto& sections = m_network.Table<BS>();
  std::apply([&](auto... fields) { MergeRows(db, sections, fields...); }, kSectionFields);
  RemoveRowsBeyond(db, sections);
}

void Exchange::WriteLoads(dbDatabase* db) const {
  MergeRows(db, m_network.Table<LD>(), &LD::ibs, &LD::status, &LD::tp_status);
}

void Exchange::WriteUnits(dbDatabase* db) const {
  std::apply([&](auto... fields) { MergeRows(db, m_network.Table<UN>(), fields...); }, kUnitFields);
}

void Exchange::WriteBuses(dbDatabase* db) const { MergeRows(db, m_network.Table<BUS>(), &BUS::ibs, &BUS::tp_status); }

}  // namespace dtsdb::internal
