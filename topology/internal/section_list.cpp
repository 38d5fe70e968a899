#include "topology/internal/section_list.h"

#include <type_traits>

#include "topology/internal/failure.h"

namespace dtsdb::internal {

bool SectionList::Build(bool allnew) const {
  for (int k = 0; allnew && k < m_levels.ChangedCount(); ++k) {
    if (!m_branchEnds.WorkOutLevel(m_levels.Changed(k))) return FailedIn("tpBslBuild");
  }
  m_branchEnds.AssignSections();
  for (int k = 0; k < m_levels.ChangedCount(); ++k) {
    const int kv = m_levels.Changed(k);
    if (kv < 0) continue;
    if (!ClearLevel(kv) || !ListSections(kv) || !ListShunts(kv) || !ListBranchEnds(kv)) return FailedIn("tpBslBuild");
  }
  return true;
}

/// Deletes what stands behind the entry of a voltage level, up to the next fixed mark.
bool SectionList::ClearLevel(int kv) const {
  const int own = m_network.Level(kv).ibsl;
  int cursor = m_entries[own].next;
  for (int left = m_entries.Size(); left > 0 && m_entries.Has(cursor); --left) {
    const int kind = m_entries[cursor].kind;
    if (kind == KIND_ST || kind == KIND_KV || cursor == m_entries.Head()) return true;
    m_entries.Delete(&cursor);
  }
  return false;
}

/// Lists the sections of a voltage level in ring order behind its entry.
bool SectionList::ListSections(int kv) const {
  const KV& level = m_network.Level(kv);
  const int end = m_sections.EndOf(kv);
  int cursor = level.ibsl;
  return end != -1 && m_sections.Walk(level.ibs, end, [&](int bs) {
    if (!m_entries.Insert(&cursor, KIND_BS, bs)) return false;
    m_sections.Edit(bs).ibsl = cursor;
    return true;
  });
}

/// Lists an entry right behind that of section `bs`: what hangs on a section stands there newest first.
bool SectionList::Hang(int bs, int kind, int ref) const {
  int cursor = m_sections.Edit(bs).ibsl;
  if (cursor == -1) return false;
  const bool own = m_entries.Has(cursor) && m_entries[cursor].kind == KIND_BS && m_entries[cursor].ref == bs;
  if (!own) m_sections.GiveUpRecord();  // it hangs in the stretch of some other section. Kept: K50.
  return m_entries.Insert(&cursor, kind, ref);
}

bool SectionList::ListShunts(int kv) const {
  return m_network.ForEachShunt(kv, [&](auto& device, int number) { return HangShunt(ViewOf(device, number)); });
}

bool SectionList::HangShunt(const ShuntView& device) const {
  const int dead = m_sections.Dead();
  const int section = m_network.Node(device.nd).ibs;
  device.SetIsolated(section == dead || device.off || m_sections.IsIsolated(section));
  *device.bs = device.off ? dead : section;
  return section == dead || Hang(section, device.kind, device.number) || FailedIn("tpBslShunt");
}

bool SectionList::ListBranchEnds(int kv) const {
  return m_network.ForEachEndOnLevel(kv, [&](int nd, auto& branch, int, auto& end, int number) {
    using End = std::remove_reference_t<decltype(end)>;
    return HangBranchEnd(kKindOf<End>, number, nd != branch.ind ? branch.izbs : branch.ibs);
  });
}

/// Fails for a section that was given back, which an open end may still name. Kept: K50.
bool SectionList::HangBranchEnd(int kind, int ref, int bs) const {
  return bs == m_sections.Dead() || Hang(bs, kind, ref) || FailedIn("tpBslBranch");
}

}  // namespace dtsdb::internal
