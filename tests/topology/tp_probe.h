/// \file
/// Reaching the private stages and the state of a TP, for tests.
#pragma once

#include <string>
#include <vector>

#include "topology/internal/section_store.h"
#include "topology/tp.h"

namespace dtsdb {

/// A TP's friend. The members are named as the stages are, without the prefix.
class TpProbe {
 public:
  explicit TpProbe(TP& tp) : m_tp(tp) {}

  internal::State Lend() { return m_tp.Lend(); }
  void Clear() { m_tp.tpClear(); }
  int ListInsert(int kind, int* cursor) { return m_tp.tpListInsert(kind, cursor); }
  int ListDelete(int kind, int* cursor) { return m_tp.tpListDelete(kind, cursor); }
  int NodeInit() { return m_tp.tpNodeInit(); }
  int NodeSort(bool allnew) { return m_tp.tpNodeSort(allnew); }
  int LegalBs(int nd, int kv, int end, bool allnew) { return m_tp.tpLegalBs(nd, kv, end, allnew); }
  int IllegalBs(int nd, int kv, int end, bool allnew) { return m_tp.tpIllegalBs(nd, kv, end, allnew); }
  int NodeConnect(int kv, int nd, int* bs) { return m_tp.tpNodeConnect(kv, nd, bs); }
  int BslBuild(bool allnew) { return m_tp.tpBslBuild(allnew); }
  int BslShunt(int kv, int ref, int nd, int* bs, int kind, unsigned* status, unsigned* tpStatus) {
    return m_tp.tpBslShunt(kv, ref, nd, bs, kind, status, SHUNT_OFF, SHUNT_ISOLATED, tpStatus, SHUNT_DEAD);
  }
  int BslBranch(int kv, int nd, int ref, int kind, int ind, int iznd, int* ibs, int* izbs) {
    return m_tp.tpBslBranch(kv, nd, ref, kind, ind, iznd, ibs, izbs);
  }
  void AssignBsToDouble() { m_tp.tpAssignBsToDouble(); }
  int BsFragment(int kv, int nd, int* bs, bool open) { return m_tp.tpBsFragment(kv, nd, bs, open); }
  int BsFragment(int kv, int nd) { return m_tp.tpBsFragment(kv, nd); }
  int AddBrokenBs(int kv, int nd, int& bs) { return m_tp.tpAddBrokenBs(kv, nd, bs); }
  int BsNeighbor(int bs, int* un, int* devices, int* count, int* neighbours) {
    return m_tp.tpBsNeighbor(bs, un, devices, count, neighbours);
  }
  int Tpl(int ref, int kind, int status, int oldValue, int newValue, const char* text) {
    return m_tp.tpTpl(ref, kind, status, oldValue, newValue, text);
  }
  int BsSort(bool* changed) { return m_tp.tpBsSort(changed); }
  int UpdateStatus() { return m_tp.tpUpdateStatus(); }
  void NameSections() { internal::SectionStore(m_tp.Lend()).Name(); }
  int ChangedKv() { return m_tp.tpChangedKv(); }
  int ComponentChanged(bool* islandChanged) { return m_tp.tpComponentChanged(islandChanged); }
  /// Follows up the end of a line on node `nd` of level `kv`.
  int BranchChanged(int kv, int nd, LN& line, bool* islandChanged, bool* kvChanged) {
    using Kind = BranchKind<LN>;
    auto& ends = *m_tp.m_tables->m_ln2Table;
    return m_tp.tpBranchChanged(kv, nd, line.ln2, KIND_LN2, END_ISOLATED, &ends.GetPh(line.ln2).flags,
                                &ends.GetPh(line.zln2).flags, line.ind, line.iznd, &line.ibs, &line.izbs, &line.status,
                                Kind::kOut, Kind::kOpen1, Kind::kOpen2, &line.tp_status, TP_END1_ISOLATED,
                                TP_END2_ISOLATED, TP_BOTH_DEAD, islandChanged, kvChanged);
  }
  int ShuntChanged(int number, LD& load, bool* kvChanged, bool* islandChanged) {
    return m_tp.tpShuntChanged(number, load.ind, &load.ibs, KIND_LD, &load.status, SHUNT_OFF, SHUNT_ISOLATED,
                               &load.tp_status, SHUNT_DEAD, kvChanged, islandChanged);
  }
  int BsRestore() { return m_tp.tpBsRestore(); }
  bool FindPassPath(int cb) { return m_tp.tpFindPassPath(cb); }

  /// The entries of the work arrays. The number is in range.
  BS& Section(int n) { return m_tp.m_arrays->sections.Reach(n); }
  BSL& Entry(int n) { return m_tp.m_arrays->entries.Reach(n); }
  bool HasArrays() const { return m_tp.m_bs != nullptr; }
  int SectionCount() { return m_tp.Lend().Sections().Size(); }
  int EntryCount() { return m_tp.Lend().Entries().Size(); }
  GLOBAL& Global() { return m_tp.m_tables->m_globalTable->GetPh(0); }

  void SetAllnew(bool allnew) { m_tp.m_allnew = allnew; }
  bool IsAllnew() const { return m_tp.m_allnew; }
  /// Makes `kvs` the voltage levels of the run.
  void SetChangedKvs(const std::vector<int>& kvs) {
    m_tp.m_changedKvCount = 0;
    for (const int kv : kvs) m_tp.Lend().levels.AddChanged(kv);
  }
  std::vector<int> ChangedKvs() const { return {m_tp.m_changedKvs, m_tp.m_changedKvs + m_tp.m_changedKvCount}; }

  /// The sections of the ring through `head` in ring order, without the head.
  std::vector<int> Ring(int head = 0) {
    std::vector<int> ring;
    for (int bs = Section(head).next; bs != head; bs = Section(bs).next) ring.push_back(bs);
    return ring;
  }
  /// The free sections in the order of the free list.
  std::vector<int> FreeSections() {
    std::vector<int> free;
    for (int bs = Global().bs_free; bs != -1; bs = Section(bs).next) free.push_back(bs);
    return free;
  }
  /// Leaves `left` sections in the free list.
  void KeepFreeSections(int left) {
    const std::vector<int> free = FreeSections();
    if (left == 0) {
      Global().bs_free = -1;
    } else {
      Section(free[static_cast<std::size_t>(left - 1)]).next = -1;
    }
  }

 private:
  TP& m_tp;
};

}  // namespace dtsdb
