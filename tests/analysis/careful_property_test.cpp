// Careful switching on random networks with open ends and zero-impedance branches: its result is that of a full run.
#include <gtest/gtest.h>
#include <rapidcheck.h>

#include <rapidcheck/gtest.h>

#include <QRegularExpression>
#include <map>

#include "analysis/switching.h"
#include "formats/field_text.h"
#include "tests/support/cases.h"
#include "tests/support/messages.h"
#include "tests/topology/random_network.h"
#include "topology/component_types.h"

namespace dtsdb::analysis {
namespace {

using test::Cases;
using test::MessageCatcher;
using test::RandomNetwork;
using test::UnionFind;

/// Any change of any component of the network; of type 0 where the model has none of the class chosen.
SwitchEvent RandomEvent(RandomNetwork& network) {
  SwitchEvent event;
  WithComponentType(network.Number(1, 16), [&](const auto& type) {
    auto& table = network.Model().Table<typename std::remove_cvref_t<decltype(type)>::Record>();
    if (table.GetCount() == 0) return;
    const auto& component = table[network.Number(0, table.GetCount() - 1)];
    event = {type.code, network.Chance(50), tools::IdText(component.id)};
  });
  return event;
}

/// Sets or clears "out of service" of zero-impedance branches.
void SetOut(DTSDB& tables, const std::vector<std::string>& branches, bool out) {
  for (const std::string& id : branches) {
    const int number = tables.m_zbrTable->Find(ZBR(*IdFromText(QString::fromStdString(id))));
    u32& status = tables.m_zbrTable->GetPh(number).status;
    status = out ? status | BranchKind<ZBR>::kOut : status & ~BranchKind<ZBR>::kOut;
  }
}

/// What differs from a full run by TP itself on a copy, in which the branches that were left out are out of service.
std::string Differences(const Model& model, const std::vector<std::string>& leftOut) {
  const Model copy = *model.Copy();
  SetOut(copy.Tables(), leftOut, true);
  TP tp(&copy.Tables());
  if (tp.tpAllnew() != 1) return "the full run fails";
  SetOut(copy.Tables(), leftOut, false);
  std::string text;
  for (const Difference& difference : CompareTopology(model.Tables(), copy.Tables())) {
    text += difference.table + " " + difference.identity + ": " + difference.here + " / " + difference.there + "; ";
  }
  return text;
}

/// The lines by which stages of the topology report a failure.
QStringList FailureLines() { return MessageCatcher::Lines().filter(QRegularExpression(QStringLiteral("^TP:"))); }

/// The nodes that are live by plain reasoning, in the order of their numbers: those that branches in service join to a
/// section with a unit in service.
std::vector<bool> LiveByReasoning(RandomNetwork& network) {
  const test::PlainTopology plain(network.Model());
  std::vector<bool> live;
  for (int nd = 0; nd < plain.NodeCount(); ++nd) live.push_back(plain.IsLive(nd));
  return live;
}

/// The nodes on live sections that are no fragments, as the model has them.
std::vector<bool> LiveInModel(RandomNetwork& network) {
  std::vector<bool> live;
  for (int i = 0; i < network.Model().Table<ND>().GetCount(); ++i) {
    const BS& section = network.Model().Table<BS>().GetPh(network.Model().Table<ND>()[i].ibs);
    live.push_back(section.island >= 0 && !(section.status & BS_ISOLATED));
  }
  return live;
}

/// Up to `most` events on the network, each few of them followed up; `look` at the report of each run.
template <class Look>
void SwitchAtRandom(RandomNetwork& network, int most, Look look) {
  RC_ASSERT(network.Model().Validate());
  const Model model = Model::Of(network.Model().Db());
  Result<Switching> session = Switching::Begin(model);
  RC_ASSERT(session.has_value());
  look(model, session->First().run);
  for (int left = network.Number(1, most); left > 0;) {
    for (int count = std::min(left, network.Number(1, 5)); count > 0; --count, --left) {
      const SwitchEvent event = RandomEvent(network);
      if (event.type != 0) RC_ASSERT(session->Request(event).has_value());
    }
    const Result<Outcome> outcome = session->Run();
    RC_ASSERT(outcome.has_value());
    look(model, outcome->run);
  }
}

RC_GTEST_PROP(CarefulSwitching, GivesWhatAFullRunGives, (unsigned seed, bool withZbrs)) {
  RandomNetwork network(seed, withZbrs);
  const MessageCatcher catcher;
  SwitchAtRandom(network, 60, [&](const Model& model, const RunReport& run) {
    RC_ASSERT(run.reason != RunReason::kIncrementalFailed);
    RC_ASSERT(Differences(model, run.leftOut) == "");
    RC_ASSERT(LiveInModel(network) == LiveByReasoning(network));
  });
  RC_ASSERT(FailureLines().isEmpty());
}

// The rule of when a run may be incremental would hold trivially if none ever were.
TEST(CarefulSwitching, ManyRunsAreIncremental) {
  std::map<RunReason, unsigned> runs;
  const MessageCatcher catcher;
  for (unsigned seed = 0; seed < Cases(400); ++seed) {
    RandomNetwork network(seed, seed % 4 == 0);
    SwitchAtRandom(network, 20, [&](const Model&, const RunReport& run) { ++runs[run.reason]; });
  }
  EXPECT_GT(runs[RunReason::kCertain], Cases(100));
  EXPECT_GT(runs[RunReason::kOpenEnd], Cases(100));
  EXPECT_GT(runs[RunReason::kZeroImpedance], Cases(100));
}

RC_GTEST_PROP(CarefulSwitching, WayBackLeadsToWhatWasBefore, (unsigned seed, bool withZbrs)) {
  const MessageCatcher catcher;
  RandomNetwork network(seed, withZbrs);
  SwitchAtRandom(network, 20, [](const Model&, const RunReport&) {});
  const Model model = Model::Of(network.Model().Db());
  Switching session = std::move(*Switching::Begin(model));
  const Model before = *model.Copy();
  for (int left = network.Number(1, 30); left > 0; --left) {
    const SwitchEvent event = RandomEvent(network);
    if (event.type != 0) RC_ASSERT(session.Apply({event}).has_value());
  }
  RC_ASSERT(session.Apply(session.WayBack()).has_value());
  RC_ASSERT(session.WayBack().empty());
  RC_ASSERT(CompareTopology(before.Tables(), model.Tables()).empty());
  const Effect effect = session.EffectSoFar();
  RC_ASSERT(effect.lost.empty() && effect.regained.empty() && effect.islands.empty());
}

// A breaker that was opened takes its zero-impedance branch along, and brings back what it has taken.
RC_GTEST_PROP(CarefulSwitching, OpenedBreakersPartTheirNodes, (unsigned seed)) {
  const MessageCatcher catcher;
  RandomNetwork network(seed, true);
  SwitchAtRandom(network, 20, [](const Model&, const RunReport&) {});
  const Model model = Model::Of(network.Model().Db());
  Switching session = std::move(*Switching::Begin(model));
  tTable<ZBR>& branches = network.Model().Table<ZBR>();
  for (int i = 0; i < branches.GetCount(); ++i) {
    const ZBR& branch = branches[i];
    const u32 before = branch.status;
    const bool wasOpen = (network.Model().Table<CB>().GetPh(branch.icb).flags & CB_OPEN) != 0;
    const std::string breaker = tools::IdText(branch.cb);
    RC_ASSERT(session.Apply({SwitchEvent{1, false, breaker}}).has_value());
    RC_ASSERT((branch.status & BranchKind<ZBR>::kOut) != 0);
    RC_ASSERT(session.Apply({SwitchEvent{1, true, breaker}}).has_value());
    const bool wasOutWithBreaker = wasOpen && before != branch.status;
    RC_ASSERT(wasOutWithBreaker || branch.status == before);
  }
}

}  // namespace
}  // namespace dtsdb::analysis
