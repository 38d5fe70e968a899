/// \file
/// The incremental run: which voltage levels the waiting changes reach, the stages on these alone, and the sections
/// that nobody needs any more.
#include <QDateTime>
#include <algorithm>
#include <cstdint>

#include "topology/component_types.h"
#include "topology/walks.h"

namespace dtsdb {

int TP::tpChange() {
  m_tplTable->Clear();
  const int waiting = m_tptraceTable->GetCount();
  if (m_allKvCount == 0 || waiting >= kMaxChanges) return tpAllnew() ? 1 : FailedIn("tpChange");
  if (waiting == 0) return 1;
  if (Global().valid == 0) {
    qDebug("TP:errors in real database at (%d).\n", __LINE__);
    return 1;
  }
  if (!tpChangedKv()) return FailedIn("tpChange");
  m_allnew = false;
  if (!RunIncrementalStages()) return 0;
  if (!NameAndStoreSections()) return FailedIn("tpChange");
  Global().u1 = static_cast<u32>(QDateTime::currentSecsSinceEpoch());
  return 1;
}

bool TP::RunIncrementalStages() {
  if (!tpNodeSort(m_allnew)) return FailedIn("tpChange");
  bool islandChanged = false;
  if (!tpComponentChanged(&islandChanged)) return FailedIn("tpChange");
  if (!tpBslBuild(m_allnew)) return FailedIn("tpChange");
  if (islandChanged) {
    islandChanged = false;
    if (!tpBsSort(&islandChanged)) return FailedIn("tpChange");
  }
  if (!tpBsRestore()) return FailedIn("tpChange");
  if (!tpUpdateStatus()) return FailedIn("tpChange");
  return true;
}

/// Puts the voltage levels that the waiting changes reach on the list of the run, logs the changes, and takes them from
/// the TPTRACE table. A failure leaves them there.
int TP::tpChangedKv() {
  m_changedKvCount = 0;
  for (int i = 0; i < m_tptraceTable->GetCount(); ++i) {
    const TPTRACE& row = (*m_tptraceTable)[i];
    if (row.n1 == -1) continue;
    bool followed = true;
    WithComponentType(row.type, [&](const auto& type) { followed = FollowChange(type, row.n1); });
    if (!followed) return FailedIn("tpChangedKv");
  }
  m_tptraceTable->Clear();
  return 1;
}

/// Follows up the change of component `number`. False when its voltage level isn't to be found.
template <class Component>
bool TP::FollowChange(const ComponentType<Component>& type, int number) {
  if (!HasSlot(Table<Component>(), number)) return false;
  const Component& component = Table<Component>().GetPh(number);
  if constexpr (std::is_same_v<Component, CB>) {
    const int kv = KvThrough<R_KV_CB>(component.r_kv_cb);
    if (kv != -1) ListBreakerKv(kv);
    return kv != -1;
  } else {
    int kv = -1;
    int otherKv = -1;
    if constexpr (std::is_same_v<Component, UN>) {
      kv = KvThrough<R_KV_UN>(component.r_kv_un);
    } else if constexpr (std::is_same_v<Component, LD>) {
      kv = KvThrough<R_KV_LD>(component.r_kv_ld);
    } else if constexpr (std::is_same_v<Component, CP>) {
      kv = KvThrough<R_KV_CP>(component.r_kv_cp);
    } else {
      kv = KvOfNode(component.ind);
      otherKv = KvOfNode(component.iznd);
      if (otherKv == -1) return false;
    }
    if (kv == -1 || !LogChange(type, number)) return false;
    ListKvs(kv, otherKv);
    return true;
  }
}

/// Logs what the status of a component now is, and the sections that it stood on until now.
template <class Component>
bool TP::LogChange(const ComponentType<Component>& type, int number) {
  const Component& component = Table<Component>().GetPh(number);
  const u32 status = component.*type.word;
  int otherBs = -1;
  if constexpr (requires { component.izbs; }) {
    if (type.bothEnds) otherBs = component.izbs;
  }
  const char* const event = status & type.bit ? type.whenSet : type.whenClear;
  return tpTpl(number, KindOf<Component>, static_cast<int>(status), component.ibs, otherBs, event) == 1;
}

namespace {

/// True when a list entry means voltage level `kv`: an entry may bear a minus sign.
bool Means(int entry, int kv) { return entry == kv || -static_cast<std::int64_t>(entry) == kv; }

}  // namespace

/// Lists the voltage level of a breaker, without a minus sign.
void TP::ListBreakerKv(int kv) {
  int* const end = m_changedKvs + m_changedKvCount;
  int* const found = std::find_if(m_changedKvs, end, [&](int entry) { return Means(entry, kv); });
  if (found == end) return AddChangedKv(kv);
  *found = kv;
}

/// Lists the voltage levels of a component, `otherKv` -1 for one with only one. They are compared with the list but
/// not, deliberately, with each other: a branch within one voltage level can put it on the list twice.
void TP::ListKvs(int kv, int otherKv) {
  const int* const end = m_changedKvs + m_changedKvCount;
  const auto isNew = [&](int wanted) {
    return wanted >= 0 &&
           std::none_of(static_cast<const int*>(m_changedKvs), end, [&](int entry) { return Means(entry, wanted); });
  };
  const bool addFirst = isNew(kv);
  const bool addOther = isNew(otherKv);
  if (addFirst) AddChangedKv(kv);
  if (addOther) AddChangedKv(otherKv);
}

/// Gives the sections that wait in the holding ring and that no group has claimed back to the free list, in ring
/// order in front of the others. Always 1.
int TP::tpBsRestore() {
  GLOBAL& global = Global();
  const auto sections = Sections();
  const int head = global.bs_live;
  const int first = sections[head].next;
  const int last = sections[head].prev;
  if (first == head) return 1;
  const bool whole = sections.Walk(first, head, [&](int bs) {
    BS& section = sections[bs];
    section.island = ISLAND_NOT_PLACED;
    section.ikv = -1;
    section.status = 0;
    section.flags &= ~BS_UNCLAIMED;
    section.prev = -1;
    return true;
  });
  sections[head].next = sections[head].prev = head;
  if (!whole) return 1;  // a damaged ring: its sections are lost to this run rather than the free list broken
  sections[last].next = global.bs_free;
  global.bs_free = first;
  return 1;
}

}  // namespace dtsdb
