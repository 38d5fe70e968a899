#include "topology/internal/changes.h"

#include <algorithm>

#include "include/chain.h"

namespace dtsdb::internal {
namespace {

template <class... T>
std::uint64_t SumOfCounts(const Network& network) {
  return (network.Table<T>().ChangeCount() + ...);
}

}  // namespace

void Changes::Begin(const Network& network) {
  const Counts counts = CountsOf(network);
  if (counts.input != m_counts.input) GiveUp();
  if (!(counts == m_counts)) all = true;
  // Until End the counts fit neither this record, should the run fail, nor that of another TP.
  network.Table<GLOBAL>().NoteChange();
}

void Changes::End(const Network& network, int sectionCount, int entryCount) {
  sections.Reset(sectionCount);
  entries.Reset(entryCount);
  m_entryCount = entryCount;
  levels.Reset(network.Table<KV>().GetSize());
  m_counts = CountsOf(network);
  all = m_givenUp;
}

void Changes::NoteStored() {
  unstored.Reset(m_entryCount);
  allUnstored = false;
}

std::vector<int> Changes::BusesOfLevels(const Network& network) const {
  auto& buses = network.Table<BUS>();
  std::vector<int> ranks;
  for (const int kv : levels.Numbers()) {
    for (const R_KV_BUS& row : Chain(network.Table<R_KV_BUS>(), network.Level(kv).r_kv_bus)) {
      if (HasSlot(buses, row.ibus)) ranks.push_back(buses.PhToLg(row.ibus));
    }
  }
  std::sort(ranks.begin(), ranks.end());
  return ranks;
}

/// The tables that a run reads, and the two that it stores. Of the other results none is read before it is written.
Changes::Counts Changes::CountsOf(const Network& network) {
  return {SumOfCounts<BUS, CB, CB2, CP, DLN, DLN2, GLOBAL, KV, LD, LN, LN2, ND, R_KV_BUS, R_KV_CB, R_KV_CP, R_KV_LD,
                      R_KV_ND, R_KV_UN, R_ND_CB2, R_ND_DLN2, R_ND_LN2, R_ND_XF2, R_ND_ZBR2, R_ST_KV, ST, UN, XF, XF2,
                      ZBR, ZBR2>(network),
          network.Table<BS>().ChangeCount(), network.Table<BSL>().ChangeCount()};
}

}  // namespace dtsdb::internal
