// Random sequences of switching on random networks: what holds after every incremental run, and where its result is
// that of a full one.
#include <gtest/gtest.h>
#include <rapidcheck.h>

#include <rapidcheck/gtest.h>

#include "tests/support/messages.h"
#include "tests/topology/list_checks.h"
#include "tests/topology/random_network.h"
#include "tests/topology/tp_probe.h"
#include "tools/topology_compare.h"
#include "topology/component_types.h"

namespace dtsdb::test {
namespace {

/// Which changes are asked for.
enum class Switching {
  All,            ///< every type of change
  WithoutBreaks,  ///< no end of a branch is opened, and none is open from the start
};

/// A network whose breakers and components are switched at random, each few events followed by an incremental run.
/// When one fails a full run follows, as a careful operator would have it.
class SwitchedNetwork {
 public:
  SwitchedNetwork(bool withZbrs, Switching switching)
      : m_switching(switching),
        m_network(*rc::gen::arbitrary<unsigned>(), withZbrs),
        tp(&m_network.Model().Db()),
        probe(tp) {
    if (switching == Switching::WithoutBreaks) CloseAllEnds();
    RC_ASSERT(Model().Validate());
    RC_ASSERT(tp.tpAllnew() == 1);
  }

  ModelBuilder& Model() { return m_network.Model(); }
  bool Chance(int percent) { return m_network.Chance(percent); }

  /// Up to 200 events; after each few of them a run, and `check` where it succeeded. Ends when a full run fails: what a
  /// zero-impedance branch open at end 2 alone brings about.
  template <class Check>
  void Switch(Check check) {
    for (int left = m_network.Number(1, 200); left > 0;) {
      m_untraced = false;
      int count = std::min(left, m_network.Number(1, 8));
      left -= count;
      for (; count > 0; --count) Event();
      if (tp.tpChange() == 1) {
        m_endAstray = m_endAstray || IsAnEndAstray();
        check();
      } else if (tp.tpAllnew() == 1) {
        m_endAstray = false;
      } else {
        return;
      }
    }
  }

  /// Since the last full run a branch end has named a section given back, perhaps one of another voltage level by now:
  /// what is done to that section is then done without its level being listed anew.
  bool HasEndAstray() const { return m_endAstray; }

  /// A breaker was opened since the last run that left no row: its nodes were joined all the same.
  bool HasUntraced() const { return m_untraced; }

 private:
  void Event() {
    const int lastType = m_switching == Switching::All ? 16 : 8;
    WithComponentType(m_network.Number(1, lastType), [&](const auto& type) {
      auto& table = Model().Table<typename std::remove_cvref_t<decltype(type)>::Record>();
      if (table.GetCount() == 0) return;
      auto& component = table[m_network.Number(0, table.GetCount() - 1)];
      const u32 before = component.*type.word;
      const int traced = tp.tpSetCompStatus(IdToBytes(component.id).constData(), type.code, Chance(50));
      m_untraced = m_untraced || (traced == 0 && component.*type.word != before);
    });
  }

  template <class Branch>
  bool IsAnEndOfAstray() {
    auto& branches = Model().Table<Branch>();
    const auto isAstray = [&](int nd, int bs) {
      const int row = Model().Table<ND>().GetPh(nd).r_kv_nd;
      return bs != 0 && probe.Section(bs).ikv != Model().Table<R_KV_ND>().GetPh(row).ikv;
    };
    for (int i = 0; i < branches.GetCount(); ++i) {
      const Branch& branch = branches[i];
      if (isAstray(branch.ind, branch.ibs) || isAstray(branch.iznd, branch.izbs)) return true;
    }
    return false;
  }
  bool IsAnEndAstray() {
    return IsAnEndOfAstray<LN>() || IsAnEndOfAstray<XF>() || IsAnEndOfAstray<DLN>() || IsAnEndOfAstray<ZBR>();
  }

  template <class Branch>
  void CloseEnds() {
    auto& table = Model().Table<Branch>();
    for (int i = 0; i < table.GetCount(); ++i) {
      table[i].status &= ~(BranchKind<Branch>::open1 | BranchKind<Branch>::open2);
    }
  }
  void CloseAllEnds() {
    CloseEnds<LN>();
    CloseEnds<XF>();
    CloseEnds<DLN>();
    CloseEnds<ZBR>();
  }

  MessageCatcher m_catcher;
  Switching m_switching;
  RandomNetwork m_network;
  bool m_untraced = false;
  bool m_endAstray = false;

 public:
  TP tp;
  TpProbe probe;
};

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
  for (const auto& difference : tools::CompareWithFullRun(network.Model().Db())) {
    if (!matters(difference)) continue;
    text += difference.table + " " + difference.identity + ": " + difference.here + " / " + difference.there + "; ";
  }
  return text;
}

std::string AllDifferences(SwitchedNetwork& network) {
  return Differences(network, [](const tools::TopologyDifference&) { return true; });
}

RC_GTEST_PROP(IncrementalProperty, ListsHoldAfterAnySwitching, ()) {
  SwitchedNetwork network(true, Switching::All);
  network.Switch([&] { RC_ASSERT(ListFaults(network) == ""); });
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
      return (branch.status & (openBit | Kind::out)) != 0 || (section.status & BS_ISOLATED) != 0;
    };
    const bool cut1 = isCut(branch.ind, Kind::open1);
    const bool cut2 = isCut(branch.iznd, Kind::open2);
    RC_ASSERT(static_cast<bool>(ends.GetPh(branch.*Kind::fromEnd).flags & END_ISOLATED) == cut1);
    RC_ASSERT(static_cast<bool>(ends.GetPh(branch.*Kind::toEnd).flags & END_ISOLATED) == cut2);
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
  network.Switch([&] {
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
  network.Switch([&] { RC_ASSERT(AllDifferences(network) == ""); });
}

RC_GTEST_PROP(IncrementalProperty, NoRunFailsWithoutOpenEnds, ()) {
  SwitchedNetwork network(false, Switching::WithoutBreaks);
  int runs = 0;
  const MessageCatcher catcher;
  network.Switch([&] { ++runs; });
  RC_ASSERT(runs > 0);
  RC_ASSERT(MessageCatcher::Lines().isEmpty());
}

// With zero-impedance branches, whose ends fail the run that would move them, the same holds of the runs that succeed,
// but for a breaker beside one: opening it leaves no row, since the zero-impedance branch's breaker counts as a
// parallel path, and yet parts the nodes.
RC_GTEST_PROP(IncrementalProperty, ResultIsThatOfAFullRunBesideZeroImpedanceBranches, ()) {
  SwitchedNetwork network(true, Switching::WithoutBreaks);
  network.Switch([&] {
    if (network.HasUntraced()) {
      RC_ASSERT(network.tp.tpAllnew() == 1);
    } else {
      RC_ASSERT(AllDifferences(network) == "");
    }
  });
}

// With open ends what is live may differ (docs/topology.md tells how), but never which nodes are one section.
RC_GTEST_PROP(IncrementalProperty, SectionsOfNodesAreThoseOfAFullRunAfterAnySwitching, ()) {
  SwitchedNetwork network(false, Switching::All);
  const auto withoutLife = [](std::string state) { return state.substr(0, state.find(',')); };
  network.Switch([&] {
    const std::string differences = Differences(network, [&](const tools::TopologyDifference& difference) {
      const bool fragment = difference.here.find("fragment") != std::string::npos ||
                            difference.there.find("fragment") != std::string::npos;
      return difference.table == "ND" && !fragment && withoutLife(difference.here) != withoutLife(difference.there);
    });
    RC_ASSERT(differences == "");
  });
}

}  // namespace
}  // namespace dtsdb::test
