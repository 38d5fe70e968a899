// Random sequences of switching on random networks: what holds after every incremental run, and where its result is
// that of a full one.
#include <gtest/gtest.h>
#include <rapidcheck.h>

#include <rapidcheck/gtest.h>

#include "analysis/careful_runner.h"
#include "tests/topology/list_checks.h"
#include "tests/topology/switched_network.h"

namespace dtsdb::test {
namespace {

/// What is wrong with the lists, in one line.
std::string ListFaults(SwitchedNetwork& network) {
  std::vector<int> kvs(static_cast<std::size_t>(network.tp.getAllKVCount()));
  RC_ASSERT(network.tp.getAllKVs(kvs.data(), static_cast<int>(kvs.size())));
  const ListChecks checks(network.Model(), network.probe, kvs);
  std::string faults;
  for (const std::string& fault : network.HasEndAstray() ? checks.LinkFaults() : checks.Faults())
    faults += fault + "; ";
  return faults;
}

/// The differences from a full run, in one line. `matters` chooses among them. Made of each twentieth run only: a full
/// run on a copy takes its time.
template <class Matters>
std::string Differences(SwitchedNetwork& network, Matters matters) {
  std::string text;
  if (!network.Chance(5)) return text;
  for (const auto& difference : analysis::CompareWithFullRun(network.Model().Db(), analysis::Rules::kAsIs)) {
    if (!matters(difference)) continue;
    text += difference.table + " " + difference.identity + ": " + difference.here + " / " + difference.there + "; ";
  }
  return text;
}

std::string AllDifferences(SwitchedNetwork& network) {
  return Differences(network, [](const analysis::Difference&) { return true; });
}

RC_GTEST_PROP(IncrementalProperty, ListsHoldAfterAnySwitching, ()) {
  SwitchedNetwork network(true, Switching::All);
  network.Switch(200, [&] { RC_ASSERT(ListFaults(network) == ""); });
}

/// The isolation bit of a branch end as its state and its node's section ask for.
template <class Branch>
void CheckMemories(SwitchedNetwork& network) {
  using Kind = BranchKind<Branch>;
  auto& branches = network.Model().Table<Branch>();
  auto& ends = network.Model().Table<typename Kind::End>();
  auto& nodes = network.Model().Table<ND>();
  for (int i = 0; i < branches.GetCount(); ++i) {
    const Branch& branch = branches[i];
    const auto isCut = [&](int nd, u32 openBit) {
      const BS& section = network.probe.Section(nodes.GetPh(nd).ibs);
      return (branch.status & (openBit | Kind::kOut)) != 0 || (section.status & BS_ISOLATED) != 0;
    };
    const bool cut1 = isCut(branch.ind, Kind::kOpen1);
    const bool cut2 = isCut(branch.iznd, Kind::kOpen2);
    RC_ASSERT(static_cast<bool>(ends.GetPh(branch.*Kind::kFromEnd).flags & END_ISOLATED) == cut1);
    RC_ASSERT(static_cast<bool>(ends.GetPh(branch.*Kind::kToEnd).flags & END_ISOLATED) == cut2);
    RC_ASSERT(static_cast<bool>(branch.tp_status & TP_END1_ISOLATED) == cut1);
    RC_ASSERT(static_cast<bool>(branch.tp_status & TP_END2_ISOLATED) == cut2);
  }
}

/// The isolation bit of a device likewise.
template <class Device>
void CheckIsolation(SwitchedNetwork& network) {
  auto& devices = network.Model().Table<Device>();
  auto& nodes = network.Model().Table<ND>();
  for (int i = 0; i < devices.GetCount(); ++i) {
    const Device& device = devices[i];
    const BS& section = network.probe.Section(nodes.GetPh(device.ind).ibs);
    const bool isolated = (device.status & SHUNT_OFF) != 0 || (section.status & BS_ISOLATED) != 0;
    RC_ASSERT(static_cast<bool>(device.status & SHUNT_ISOLATED) == isolated);
  }
}

RC_GTEST_PROP(IncrementalProperty, IsolationBitsAgreeWithTheStatesAfterAnySwitching, ()) {
  SwitchedNetwork network(true, Switching::All);
  network.Switch(200, [&] {
    CheckMemories<LN>(network);
    CheckMemories<DLN>(network);
    CheckMemories<XF>(network);
    CheckMemories<ZBR>(network);
    CheckIsolation<UN>(network);
    CheckIsolation<LD>(network);
    CheckIsolation<CP>(network);
  });
}

// Without open ends and without zero-impedance branches no run fails and none differs from a full one.
RC_GTEST_PROP(IncrementalProperty, ResultIsThatOfAFullRunWithoutOpenEnds, ()) {
  SwitchedNetwork network(false, Switching::WithoutBreaks);
  network.Switch(200, [&] { RC_ASSERT(AllDifferences(network) == ""); });
}

RC_GTEST_PROP(IncrementalProperty, NoRunFailsWithoutOpenEnds, ()) {
  SwitchedNetwork network(false, Switching::WithoutBreaks);
  int runs = 0;
  const MessageCatcher catcher;
  network.Switch(200, [&] { ++runs; });
  RC_ASSERT(runs > 0);
  RC_ASSERT(MessageCatcher::Lines().isEmpty());
}

// With zero-impedance branches, whose ends fail the run that would move them, the same holds of the runs that succeed,
// but for a breaker beside one: opening it leaves no row, since the zero-impedance branch's breaker counts as a
// parallel path, and yet parts the nodes.
RC_GTEST_PROP(IncrementalProperty, ResultIsThatOfAFullRunBesideZeroImpedanceBranches, ()) {
  SwitchedNetwork network(true, Switching::WithoutBreaks);
  network.Switch(200, [&] {
    if (network.HasUntraced()) {
      RC_ASSERT(network.tp.tpAllnew() == 1);
    } else {
      RC_ASSERT(AllDifferences(network) == "");
    }
  });
}

// With open ends what is live may differ (docs/topology.md describes how), but never which nodes are one section.
RC_GTEST_PROP(IncrementalProperty, SectionsOfNodesAreThoseOfAFullRunAfterAnySwitching, ()) {
  SwitchedNetwork network(false, Switching::All);
  const auto withoutLife = [](std::string state) { return state.substr(0, state.find(',')); };
  network.Switch(200, [&] {
    const std::string differences = Differences(network, [&](const analysis::Difference& difference) {
      const bool fragment = difference.here.find("fragment") != std::string::npos ||
                            difference.there.find("fragment") != std::string::npos;
      return difference.table == "ND" && !fragment && withoutLife(difference.here) != withoutLife(difference.there);
    });
    RC_ASSERT(differences == "");
  });
}

}  // namespace
}  // namespace dtsdb::test
