#include "topology/internal/full_run.h"

#include <QDateTime>
#include <optional>

#include "model/text.h"
#include "topology/internal/chain_bound.h"
#include "topology/internal/failure.h"
#include "topology/internal/islands.h"
#include "topology/internal/node_pass.h"
#include "topology/internal/section_list.h"
#include "topology/internal/section_store.h"
#include "topology/internal/status.h"

namespace dtsdb::internal {

bool FullRun::Run() const {
  if (!IsValid()) return true;
  std::optional<FlatNetwork> flat = FlatNetwork::Of(m_state.network.Tables());
  if (!flat) return RunAlongChains();
  const bool done = FullRun(m_state.Over(*flat)).WorkOut();
  flat->Store(m_state.network.Tables());  // after a failure as well: the results are as far as the run came
  return done;
}

bool FullRun::RunAlongChains() const {
  if (!IsValid()) return true;
  const ChainLimit limit(StepsOfFullRun(m_state.network.Tables()));
  return WorkOut();
}

/// Without a validated model nothing is done, with success. Kept: K36.
bool FullRun::IsValid() const {
  const Network& network = m_state.network;
  if (network.Table<GLOBAL>().GetCount() == 0) {
    PrintText(QStringLiteral("请首先运行网络校验程序!"));
    return false;
  }
  if (network.Global().valid == 0) PrintText(QStringLiteral("请首先运行网络校验程序并成功!"));
  return network.Global().valid != 0;
}

bool FullRun::WorkOut() const {
  const Network& network = m_state.network;
  network.Table<GLOBAL>().NoteChange();  // for the records of other TPs, whose arrays no longer count
  network.Table<BS>().Clear();
  network.Table<BSL>().Clear();
  m_state.Clear();
  m_state.Make();
  if (m_state.Sections().Size() < 3) return true;
  ResetSections();
  ResetEntries();
  if (!BuildSkeleton() || !RunStages()) return false;
  if (!SectionStore(m_state).NameAndStore()) return FailedIn("tpAllnew");
  network.Global().time = static_cast<u32>(QDateTime::currentSecsSinceEpoch());
  return true;
}

/// Makes two of the sections the heads, and lets no branch stand on any.
void FullRun::ResetSections() const {
  const Network& network = m_state.network;
  GLOBAL& global = network.Global();
  global.bs_dead = 0;
  global.bs_live = 1;
  global.bs_free = 2;
  network.ForEachBranch<LN, XF, DLN, ZBR>([&](auto& branch) { branch.ibs = branch.izbs = global.bs_dead; });
}

/// Makes one of the list entries the head, a ring of one.
void FullRun::ResetEntries() const {
  BSL& head = m_state.Entries().Edit(0);
  head.next = head.prev = 0;
  GLOBAL& global = m_state.network.Global();
  global.bsl_head = 0;
  global.bsl_free = 1;
  m_state.levels.Empty();
}

/// Lists the stations, each with its voltage levels that have nodes: the fixed marks of the list, and the order of all
/// levels.
bool FullRun::BuildSkeleton() const {
  const Network& network = m_state.network;
  const Entries entries = m_state.Entries();
  auto& stations = network.Table<ST>();
  int cursor = entries.Head();
  for (int i = 0; i < stations.GetCount(); ++i) {
    const int st = stations.LgToPh(i);
    if (!entries.Insert(&cursor, KIND_ST, st)) return FailedIn("tpAllnew");
    for (const R_ST_KV& row : Chain(network.Table<R_ST_KV>(), stations.GetPh(st).r_st_kv)) ListLevel(row.ikv, &cursor);
  }
  return true;
}

/// Lists voltage level `kv` behind `*cursor`. One that has no node is passed over, and so, without a word, is one
/// for which no entry is left or that stands in the list already.
void FullRun::ListLevel(int kv, int* cursor) const {
  const Network& network = m_state.network;
  if (!network.HasLevel(kv) || network.Level(kv).r_kv_nd == -1 || m_state.levels.PlaceOf(kv) != -1) return;
  if (!m_state.Entries().Insert(cursor, KIND_KV, kv)) return;
  network.Level(kv).ibsl = *cursor;
  m_state.levels.Add(kv);
}

bool FullRun::RunStages() const {
  if (!NodePass(m_state).LayBaseSections()) return FailedIn("tpAllnew");
  m_state.allnew = true;
  if (!NodePass(m_state).Sort(true)) return FailedIn("tpAllnew");
  if (!SectionList(m_state).Build(true)) return FailedIn("tpAllnew");
  bool changed = false;
  if (!Islands(m_state).Sort(&changed)) return FailedIn("tpAllnew");
  if (!EquipmentStatus(m_state).Update()) return FailedIn("tpAllnew");
  return true;
}

}  // namespace dtsdb::internal
