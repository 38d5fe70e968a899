#include "topology/tp.h"

#include <QDateTime>
#include <algorithm>

#include "model/text.h"
#include "topology/chain_bound.h"
#include "topology/walks.h"

namespace dtsdb {

TP::TP(DTSDB* pDatabase) : m_pDatabase(pDatabase) {
  if (!DTSDB_ASSERT(pDatabase != nullptr, "pDatabase != 0")) {
    m_emptyModel = std::make_shared<DTSDB>();
    pDatabase = m_emptyModel.get();
  }
#define DTSDB_TAKE_TABLE(T, table, key, meaning) table = pDatabase->table;
  DTSDB_TABLES(DTSDB_TAKE_TABLE)
#undef DTSDB_TAKE_TABLE
  m_chndTable->SetGrowBy(100);
  m_tplTable->SetSize(1000);
}

TP::~TP() { tpClear(); }

void TP::tpClear() {
  m_work.reset();
  m_changedKvsOwner.reset();
  m_bs = nullptr;
  m_bsl = nullptr;
  m_allKvs = nullptr;
  m_changedKvs = nullptr;
  m_allKvCount = m_changedKvCount = 0;
  m_bsSize = m_bslSize = 0;
}

/// Sizes the BS and BSL tables and makes the work arrays. Every node can have a section of its own and every voltage
/// level a fragment beside the two heads and two spares; every device, end, section, station and voltage level its
/// list entry: the free lists can't run out in normal use.
void TP::tpInit() {
  m_bsTable->SetSize(m_ndTable->GetSize() + m_kvTable->GetSize() + 4);
  m_bslTable->SetSize(m_stTable->GetSize() + m_kvTable->GetSize() + m_bsTable->GetSize() + m_ln2Table->GetSize() +
                      m_xf2Table->GetSize() + m_zbr2Table->GetSize() + m_ldTable->GetSize() + m_unTable->GetSize() +
                      m_cpTable->GetSize() + m_dln2Table->GetSize() + 3);
  m_bsSize = m_bsTable->GetSize();
  m_bslSize = m_bslTable->GetSize();
  const auto kvs = static_cast<std::size_t>(m_kvTable->GetSize());

  m_work = std::make_shared<WorkArrays>();
  m_work->bs.resize(static_cast<std::size_t>(m_bsSize));
  m_work->bsl.resize(static_cast<std::size_t>(m_bslSize));
  m_work->allKvs.resize(kvs + 1);
  m_work->placeOfKv.assign(kvs, -1);
  m_work->markedNodes.assign(static_cast<std::size_t>(m_bsSize), 0);
  m_changedKvsOwner = std::make_shared<std::vector<int>>(kvs + 1);

  m_bs = m_work->bs.data();
  m_bsl = m_work->bsl.data();
  m_allKvs = m_work->allKvs.data();
  m_changedKvs = m_changedKvsOwner->data();
  m_allKvCount = m_changedKvCount = 0;
}

int TP::tpListInsert(int kind, int* cursor) {
  if (kind == KIND_BS) return Sections().Insert(&Global().bs_free, cursor) ? 1 : 0;
  if (kind == KIND_BSL) return Entries().Insert(&Global().bsl_free, cursor) ? 1 : 0;
  return 1;
}

int TP::tpListDelete(int kind, int* cursor) {
  if (kind == KIND_BS) Sections().Delete(&Global().bs_free, cursor);
  if (kind == KIND_BSL) Entries().Delete(&Global().bsl_free, cursor);
  return 1;
}

int TP::tpAllnew() {
  if (m_globalTable->GetCount() == 0) {
    PrintText(QStringLiteral("请首先运行网络校验程序!"));
    return 1;
  }
  if (Global().valid == 0) {
    PrintText(QStringLiteral("请首先运行网络校验程序并成功!"));
    return 1;
  }
  const ChainLimit limit(StepsOfFullRun(m_pDatabase != nullptr ? *m_pDatabase : *m_emptyModel));
  m_bsTable->Clear();
  m_bslTable->Clear();
  tpClear();
  tpInit();
  if (m_bsSize < 3) return 1;
  ResetSections();
  ResetEntries();
  if (!BuildSkeleton() || !RunStages()) return 0;
  if (!NameAndStoreSections()) return FailedIn("tpAllnew");
  Global().time = static_cast<u32>(QDateTime::currentSecsSinceEpoch());
  return 1;
}

namespace {

/// Numbers the entries of `list` and chains them all as free. Everything else in them is as in a new entry.
template <class Entry>
void ResetEntry(Entry& entry, int n, int size) {
  entry.id = n;
  entry.next = n + 1 < size ? n + 1 : -1;
  entry.prev = -1;
}

/// Puts both ends of every branch in `table` on section `bs`.
template <class Branch>
void PutBranchesOn(tTable<Branch>& table, int bs) {
  for (int i = 0; i < table.GetCount(); ++i) table[i].ibs = table[i].izbs = bs;
}

}  // namespace

/// Makes all sections but the two heads free, and lets no branch stand on any.
void TP::ResetSections() {
  for (int n = 0; n < m_bsSize; ++n) {
    BS& section = m_bs[n];
    ResetEntry(section, n, m_bsSize);
    section.name = QStringLiteral("");
    section.ikv = -1;
    section.island = ISLAND_NOT_PLACED;
    section.ibsl = -1;
    section.status = section.flags = 0;
  }
  GLOBAL& global = Global();
  global.bs_dead = 0;
  global.bs_live = 1;
  global.bs_free = 2;
  PutBranchesOn(*m_lnTable, global.bs_dead);
  PutBranchesOn(*m_xfTable, global.bs_dead);
  PutBranchesOn(*m_dlnTable, global.bs_dead);
  PutBranchesOn(*m_zbrTable, global.bs_dead);
}

/// Makes all list entries but the head free, and the head a ring of one.
void TP::ResetEntries() {
  for (int n = 0; n < m_bslSize; ++n) {
    BSL& entry = m_bsl[n];
    ResetEntry(entry, n, m_bslSize);
    entry.kind = KIND_NONE;
    entry.ref = -1;
  }
  m_bsl[0].next = m_bsl[0].prev = 0;
  Global().bsl_head = 0;
  Global().bsl_free = 1;
  m_allKvCount = m_changedKvCount = 0;
}

/// Lists the stations, each with its voltage levels that have nodes: the fixed marks of the list, and the order of
/// m_allKvs.
bool TP::BuildSkeleton() {
  int cursor = Global().bsl_head;
  for (int i = 0; i < m_stTable->GetCount(); ++i) {
    if (!tpListInsert(KIND_BSL, &cursor)) return FailedIn("tpAllnew");
    const int st = m_stTable->LgToPh(i);
    Entries()[cursor].kind = KIND_ST;
    Entries()[cursor].ref = st;
    for (const R_ST_KV& row : Chain(*m_rStKvTable, m_stTable->GetPh(st).r_st_kv)) ListKv(row.ikv, &cursor);
  }
  return true;
}

/// Lists voltage level `kv` behind `*cursor`. One that has no node is passed over, and so, without a word, is one
/// for which no entry is left or that stands in the list already.
void TP::ListKv(int kv, int* cursor) {
  if (!HasSlot(*m_kvTable, kv) || m_kvTable->GetPh(kv).r_kv_nd == -1) return;
  int& place = m_work->placeOfKv[static_cast<std::size_t>(kv)];
  if (place != -1 || !tpListInsert(KIND_BSL, cursor)) return;
  Entries()[*cursor].kind = KIND_KV;
  Entries()[*cursor].ref = kv;
  m_kvTable->GetPh(kv).ibsl = *cursor;
  place = m_allKvCount;
  m_allKvs[m_allKvCount++] = kv;
  AddChangedKv(kv);
}

bool TP::RunStages() {
  if (!tpNodeInit()) return FailedIn("tpAllnew");
  m_allnew = true;
  if (!tpNodeSort(m_allnew)) return FailedIn("tpAllnew");
  if (!tpBslBuild(m_allnew)) return FailedIn("tpAllnew");
  bool changed = false;
  if (!tpBsSort(&changed)) return FailedIn("tpAllnew");
  if (!tpUpdateStatus()) return FailedIn("tpAllnew");
  return true;
}

/// The section that ends the stretch of `kv` in the ring: the first one of the voltage level that follows in
/// m_allKvs, or the head. -1 when `kv` isn't listed or the one that follows has no section.
int TP::EndOfKv(int kv) const {
  if (m_allKvCount > 0 && m_allKvs[m_allKvCount - 1] == kv) return Global().bs_dead;
  if (!m_work || kv < 0 || static_cast<std::size_t>(kv) >= m_work->placeOfKv.size()) return -1;
  const int place = m_work->placeOfKv[static_cast<std::size_t>(kv)];
  if (place < 0 || place + 1 >= m_allKvCount) return -1;
  const int end = m_kvTable->GetPh(m_allKvs[place + 1]).ibs;
  return Sections().Has(end) ? end : -1;
}

void TP::AddChangedKv(int kv) {
  if (!m_changedKvsOwner) return;
  if (static_cast<std::size_t>(m_changedKvCount) == m_changedKvsOwner->size()) {
    auto grown = std::make_shared<std::vector<int>>(*m_changedKvsOwner);
    grown->resize(2 * grown->size());
    m_changedKvsOwner = std::move(grown);
    m_changedKvs = m_changedKvsOwner->data();
  }
  m_changedKvs[m_changedKvCount++] = kv;
}

/// Names the sections and stores the work arrays in the tables, BS without most of the never used entries at its end.
bool TP::NameAndStoreSections() {
  NameSections();
  const int count = UsedSectionCount();
  if (count < 0) return false;
  return m_bsTable->SetData(m_bs, count, true) && m_bslTable->SetData(m_bsl, m_bslSize, true);
}

/// A section is named after the last bus in it, else after what hangs on it.
void TP::NameSections() {
  for (int i = 0; i < m_busTable->GetCount(); ++i) {
    const BUS& bus = (*m_busTable)[i];
    if (bus.ibs > 0) Section(bus.ibs).name = bus.id;
  }
  for (BS& section : m_work->bs) {
    if (section.name.isEmpty() && section.ibsl != -1) NameByEquipment(section);
  }
}

/// Names a section after the first line or winding end behind its entry in the list, else after the first unit,
/// load or shunt device. The search goes on to the next section's entry and so can, deliberately, leave the voltage
/// level when the section is its last; other kinds of entry are passed over. Without any the name stays as it is.
void TP::NameByEquipment(BS& section) const {
  const auto entries = Entries();
  const QString* device = nullptr;
  const QString* end = nullptr;
  bool atNext = false;
  const bool around = entries.Walk(entries[section.ibsl].next, section.ibsl, [&](int n) {
    const BSL& entry = entries[n];
    atNext = entry.kind == KIND_BS;
    if (entry.kind == KIND_LN2) end = &m_ln2Table->GetPh(entry.ref).id;
    if (entry.kind == KIND_XF2) end = &m_xf2Table->GetPh(entry.ref).id;
    if (device == nullptr) {
      if (entry.kind == KIND_UN) device = &m_unTable->GetPh(entry.ref).id;
      if (entry.kind == KIND_LD) device = &m_ldTable->GetPh(entry.ref).id;
      if (entry.kind == KIND_CP) device = &m_cpTable->GetPh(entry.ref).id;
    }
    return !atNext && end == nullptr;
  });
  if (end != nullptr) {
    section.name = *end;
  } else if ((atNext || around) && device != nullptr) {
    section.name = *device;
  }
}

/// How many sections the BS table shows: up to the first free one above all that are in use, and one more. -1 when
/// the ring is damaged.
int TP::UsedSectionCount() const {
  const GLOBAL& global = Global();
  int highest = 0;
  const bool whole = Sections().Walk(Section(global.bs_dead).next, global.bs_dead, [&](int bs) {
    highest = std::max(highest, bs);
    return true;
  });
  if (!whole) return -1;
  int firstFree = m_bsSize;
  Sections().Walk(global.bs_free, -1, [&](int bs) {
    if (bs > highest) firstFree = bs;
    return bs <= highest;
  });
  return std::min(firstFree + 2, m_bsSize);
}

bool TP::getAllKVs(int* out, int size) const {
  if (size < m_allKvCount) return false;
  std::copy_n(m_allKvs, m_allKvCount, out);
  return true;
}

bool TP::getChangedKVs(int* out, int size) const {
  if (size < m_changedKvCount) return false;
  std::copy_n(m_changedKvs, m_changedKvCount, out);
  return true;
}

int TP::tpBsChanged() const { return m_tplTable->GetCount() > 0 ? 1 : 0; }

}  // namespace dtsdb
