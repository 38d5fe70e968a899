#include "topology/tp.h"

#include <algorithm>

#include "topology/internal/branch_ends.h"
#include "topology/internal/changed_levels.h"
#include "topology/internal/component_change.h"
#include "topology/internal/fastdb.h"
#include "topology/internal/fragments.h"
#include "topology/internal/full_run.h"
#include "topology/internal/incremental_run.h"
#include "topology/internal/islands.h"
#include "topology/internal/neighbours.h"
#include "topology/internal/node_pass.h"
#include "topology/internal/parallel_path.h"
#include "topology/internal/references.h"
#include "topology/internal/section_list.h"
#include "topology/internal/state.h"
#include "topology/internal/status.h"
#include "topology/internal/trace.h"

namespace dtsdb {

using internal::Network;

TP::TP(DTSDB* pDatabase) : m_pDatabase(pDatabase) {
  const bool given = DTSDB_ASSERT(pDatabase != nullptr, "pDatabase != 0");
  m_tables = given ? std::make_shared<DTSDB>(*pDatabase) : std::make_shared<DTSDB>();
  m_tables->m_chndTable->SetGrowBy(100);
  m_tables->m_tplTable->SetSize(1000);
}

TP::~TP() { tpClear(); }

internal::State TP::Lend() {
  return {Network(*m_tables),
          m_pDatabase != nullptr ? *m_pDatabase : *m_tables,
          m_arrays,
          m_bs,
          m_bsl,
          m_allnew,
          {{m_allKvs, m_allKvCount, m_changedKvs, m_changedKvCount, m_changedKvsOwner}, m_arrays}};
}

// The runs

int TP::tpAllnew() { return internal::FullRun(Lend()).Run(); }
int TP::tpChange() { return internal::IncrementalRun(Lend()).Run(); }
int TP::tpSetRefUN() { return internal::SetReferences(Network(*m_tables)); }

// Component states

int TP::tpSetCompStatus(const char* id, int type, bool on) {
  return internal::ComponentStates(Network(*m_tables)).Switch(id, type, on);
}

int TP::tpRefreshCB() {
  internal::ComponentStates(Network(*m_tables)).RefreshBreakers();
  return 1;
}

int TP::tpReadStatus(dbDatabase* db) {
  internal::ComponentStates(Network(*m_tables)).ReadStates(db);
  return 1;
}

int TP::tpReadTptrace(dbDatabase* db) {
  internal::ComponentStates(Network(*m_tables)).ReadTrace(db);
  return 1;
}

bool TP::tpFindPassPath(int cb) { return internal::HasParallelPath(Network(*m_tables), cb); }

// Realtime database

int TP::tpReadFastdb(dbDatabase* db) {
  internal::Exchange(Lend()).Read(db);
  return 1;
}

int TP::tpWriteFastdb(dbDatabase* db) {
  internal::Exchange(Lend()).WriteAll(db);
  return 1;
}

int TP::tpWriteChangedData(dbDatabase* db) {
  internal::LogNumbers numbers{m_startNo, m_endNo};
  internal::Exchange(Lend()).WriteChanges(db, &numbers);
  m_startNo = numbers.first;
  m_endNo = numbers.last;
  return 1;
}

bool TP::WriteBSToFastdb(dbDatabase* db) {
  internal::Exchange(Lend()).WriteSections(db);
  return true;
}

bool TP::WriteLDToFastdb(dbDatabase* db) {
  internal::Exchange(Lend()).WriteLoads(db);
  return true;
}

bool TP::WriteUNToFastdb(dbDatabase* db) {
  internal::Exchange(Lend()).WriteUnits(db);
  return true;
}

bool TP::WriteBUSToFastdb(dbDatabase* db) {
  internal::Exchange(Lend()).WriteBuses(db);
  return true;
}

// What a run has left

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

int TP::tpBsChanged() const { return m_tables->m_tplTable->GetCount() > 0 ? 1 : 0; }

// State

void TP::tpClear() { Lend().Clear(); }
void TP::tpInit() { Lend().Make(); }

int TP::tpListInsert(int kind, int* cursor) {
  if (kind == KIND_BS) return Lend().Sections().Insert(cursor);
  if (kind == KIND_BSL) return Lend().Entries().Insert(cursor);
  return 1;
}

int TP::tpListDelete(int kind, int* cursor) {
  if (kind == KIND_BS) Lend().Sections().Delete(cursor);
  if (kind == KIND_BSL) Lend().Entries().Delete(cursor);
  return 1;
}

// Node pass

int TP::tpNodeInit() { return internal::NodePass(Lend()).LayBaseSections(); }
int TP::tpNodeSort(bool allnew) { return internal::NodePass(Lend()).Sort(allnew); }

int TP::tpLegalBs(int nd, int kv, int end, bool allnew) {
  return internal::NodePass(Lend()).GiveSection(nd, kv, end, allnew);
}

int TP::tpIllegalBs(int nd, int kv, [[maybe_unused]] int end, bool allnew) {
  return internal::NodePass(Lend()).TakeSection(nd, kv, allnew);
}

int TP::tpNodeConnect(int kv, int nd, int* bs) {
  *bs = internal::NodePass(Lend()).SectionNear(kv, nd);
  return 1;
}

// Bus-section list

namespace {

/// A branch as the interface hands it over, field by field and bit by bit.
internal::BranchView BranchOf(int ind, int iznd, int* ibs, int* izbs, u32 status, int outBit, int open1Bit,
                              int open2Bit, u32* tpStatus, int iso1Bit, int iso2Bit, int bothBit) {
  const auto has = [status](int bit) { return (status & static_cast<u32>(bit)) != 0; };
  return {
      {{ind, ibs, has(open1Bit), static_cast<u32>(iso1Bit)}, {iznd, izbs, has(open2Bit), static_cast<u32>(iso2Bit)}},
      has(outBit),
      tpStatus,
      static_cast<u32>(bothBit)};
}

/// The same for a shunt device.
internal::ShuntView ShuntOf(int number, int kind, int nd, int* bs, u32* status, int offBit, int isolatedBit,
                            u32* tpStatus, int deadBit) {
  const bool off = (*status & static_cast<u32>(offBit)) != 0;
  return {number, kind, nd, bs, off, status, static_cast<u32>(isolatedBit), tpStatus, static_cast<u32>(deadBit)};
}

}  // namespace

int TP::tpBslBuild(bool allnew) { return internal::SectionList(Lend()).Build(allnew); }

int TP::tpBsBranch(int kv, int nd, unsigned* endFlags, int endBit, int ind, int iznd, unsigned* status, int outBit,
                   int open1Bit, int open2Bit, unsigned* tpStatus, int iso1Bit, int iso2Bit, int bothBit, int* ibs,
                   int* izbs) {
  return internal::BranchEnds(Lend()).WorkOut(
      kv, nd, BranchOf(ind, iznd, ibs, izbs, *status, outBit, open1Bit, open2Bit, tpStatus, iso1Bit, iso2Bit, bothBit),
      {endFlags, static_cast<u32>(endBit)});
}

void TP::tpAssignBsToDouble() { internal::BranchEnds(Lend()).AssignSections(); }

int TP::tpBslShunt([[maybe_unused]] int kv, int ref, int nd, int* bs, int kind, unsigned* status, int offBit,
                   int isoBit, unsigned* tpStatus, int deadBit) {
  return internal::SectionList(Lend()).HangShunt(ShuntOf(ref, kind, nd, bs, status, offBit, isoBit, tpStatus, deadBit));
}

int TP::tpBslBranch([[maybe_unused]] int kv, int nd, int ref, int kind, int ind, [[maybe_unused]] int iznd, int* ibs,
                    int* izbs) {
  return internal::SectionList(Lend()).HangBranchEnd(kind, ref, nd != ind ? *izbs : *ibs);
}

// Fragments, neighbours, run log

int TP::tpBsFragment(int kv, int nd, int* bs, bool open) {
  return internal::Fragments(Lend()).Toggle(kv, {nd, bs, open, 0});
}

int TP::tpBsFragment(int kv, int nd) { return internal::Fragments(Lend()).ToggleGroup(kv, nd); }

int TP::tpAddBrokenBs(int kv, [[maybe_unused]] int nd, int& bs) {
  return internal::Fragments(Lend()).AddBroken(kv, &bs);
}

int TP::tpBsNeighbor(int bs, int* un, int* devices, int* count, int* neighbours) {
  const internal::State state = Lend();
  internal::Neighbours found;
  const bool done = internal::FindNeighbours(state.network, state.Sections(), state.Entries(), bs, &found);
  *un = found.unit;
  *devices = found.devices;
  *count = found.count;
  std::copy_n(found.sections, found.count, neighbours);
  return done;
}

int TP::tpTpl(int ref, int kind, int status, int oldValue, int newValue, const char* text) {
  return Lend().Log().Record({kind, ref, static_cast<u32>(status), oldValue, newValue, text});
}

// Islands and status

int TP::tpBsSort(bool* changed) { return internal::Islands(Lend()).Sort(changed); }
int TP::tpUpdateStatus() { return internal::EquipmentStatus(Lend()).Update(); }

// Incremental run

int TP::tpChangedKv() { return internal::ChangedLevels(Lend()).Find(); }

int TP::tpBsRestore() {
  Lend().Sections().GiveBackHeld();
  return 1;
}

int TP::tpComponentChanged(bool* islandChanged) { return internal::ComponentChange(Lend()).FollowAll(islandChanged); }

int TP::tpBranchChanged(int kv, int nd, int end, int kind, int endBit, unsigned* endFlags1, unsigned* endFlags2,
                        int nd1, int nd2, int* bs1, int* bs2, unsigned* status, int offBit, int open1Bit, int open2Bit,
                        unsigned* tpStatus, int tp1Bit, int tp2Bit, int tpBothBit, bool* islandChanged,
                        bool* kvChanged) {
  const u32 bit = static_cast<u32>(endBit);
  return internal::ComponentChange(Lend()).FollowBranch(
      kv, nd, BranchOf(nd1, nd2, bs1, bs2, *status, offBit, open1Bit, open2Bit, tpStatus, tp1Bit, tp2Bit, tpBothBit),
      {end, kind, {{endFlags1, bit}, {endFlags2, bit}}}, {islandChanged, kvChanged});
}

int TP::tpShuntChanged(int device, int nd, int* bs, int kind, unsigned* status, int offBit, int isolatedBit,
                       unsigned* tpStatus, int tpDeadBit, bool* kvChanged, bool* islandChanged) {
  return internal::ComponentChange(Lend()).FollowShunt(
      ShuntOf(device, kind, nd, bs, status, offBit, isolatedBit, tpStatus, tpDeadBit), {islandChanged, kvChanged});
}

}  // namespace dtsdb
