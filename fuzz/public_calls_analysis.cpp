#include "analysis/flows.h"
#include "analysis/screening.h"
#include "fuzz/any_model.h"
#include "fuzz/public_calls.h"

namespace dtsdb::fuzz {

namespace {

analysis::Model AnyAnalysis(Workplace& w) { return analysis::Model::Of(w.AnyModel()); }

std::vector<SwitchEvent> AnyEvents(Workplace& w) {
  std::vector<SwitchEvent> events;
  for (int left = w.bytes.Below(5); left > 0; --left) events.push_back(w.AnyEvent());
  return events;
}

/// On a copy: the records under a session stay, which its user answers for.
void Begin(Workplace& w) {
  const auto copy = AnyAnalysis(w).Copy();
  if (!copy) return;
  const auto rules = w.bytes.Chance(50) ? analysis::Rules::kCareful : analysis::Rules::kAsIs;
  auto begun = analysis::Switching::Begin(*copy, rules);
  if (begun) w.switching = std::move(*begun);
}

template <class Call>
void OnSession(Workplace& w, Call call) {
  if (w.switching) call(*w.switching);
}

std::vector<analysis::Outage> AnyOutages(Workplace& w) {
  const auto outages = analysis::SingleOutages(AnyAnalysis(w), analysis::OutageTables());
  return outages ? *outages : std::vector<analysis::Outage>();
}

void Screen(Workplace& w) {
  std::vector<analysis::Outage> outages = AnyOutages(w);
  if (outages.size() > 8) outages.resize(8);
  analysis::Screen(AnyAnalysis(w), outages);
}

constexpr PublicCall kAnalysisCalls[] = {
    {"analysis::Switching::Begin", Begin},
    {"analysis::Switching::First", [](Workplace& w) { OnSession(w, [](auto& s) { s.First(); }); }},
    {"analysis::Switching::Request", [](Workplace& w) { OnSession(w, [&](auto& s) { s.Request(w.AnyEvent()); }); }},
    {"analysis::Switching::Run", [](Workplace& w) { OnSession(w, [](auto& s) { s.Run(); }); }},
    {"analysis::Switching::Apply", [](Workplace& w) { OnSession(w, [&](auto& s) { s.Apply(AnyEvents(w)); }); }},
    {"analysis::Switching::Now", [](Workplace& w) { OnSession(w, [](auto& s) { s.Now(); }); }},
    {"analysis::Switching::EffectSoFar", [](Workplace& w) { OnSession(w, [](auto& s) { s.EffectSoFar(); }); }},
    {"analysis::Switching::WayBack", [](Workplace& w) { OnSession(w, [](auto& s) { s.WayBack(); }); }},
    {"analysis::Switching::CompareWithFullRun",
     [](Workplace& w) { OnSession(w, [](auto& s) { s.CompareWithFullRun(); }); }},
    {"analysis::ParseEvent", [](Workplace& w) { analysis::ParseEvent(analysis::EventText(w.AnyEvent())); }},
    {"analysis::EventText", [](Workplace& w) { analysis::EventText(w.AnyEvent()); }},
    {"analysis::ScriptOf", [](Workplace& w) { analysis::ScriptOf(AnyEvents(w)); }},
    {"analysis::FindWay", [](Workplace& w) { analysis::FindWay(AnyAnalysis(w), AnyAnalysis(w)); }},
    {"analysis::TryOut", [](Workplace& w) { analysis::TryOut(AnyAnalysis(w), AnyEvents(w)); }},
    {"analysis::SingleOutages", [](Workplace& w) { AnyOutages(w); }},
    {"analysis::AllPairs", [](Workplace& w) { analysis::AllPairs(AnyOutages(w)); }},
    {"analysis::SamplePairs", [](Workplace& w) { analysis::SamplePairs(AnyOutages(w), 5, 7); }},
    {"analysis::Screen", Screen},
    {"analysis::Model::Validate", [](Workplace& w) { AnyAnalysis(w).Validate(); }},
    {"analysis::Model::IsGood", [](Workplace& w) { AnyAnalysis(w).IsGood(); }},
    {"analysis::Model::RequireGood", [](Workplace& w) { AnyAnalysis(w).RequireGood(); }},
    {"analysis::Model::Copy", [](Workplace& w) { AnyAnalysis(w).Copy(); }},
    {"analysis::Model::Save", [](Workplace& w) { AnyAnalysis(w).Save(w.folder.File("saved.obj")); }},
    {"analysis::Model::Open", [](Workplace& w) { analysis::Model::Open(w.folder.File("saved.obj")); }},
    {"analysis::WorkOutTopology",
     [](Workplace& w) {
       analysis::Model model = AnyAnalysis(w);
       analysis::WorkOutTopology(model);
     }},
    {"analysis::WorkOutFlows",
     [](Workplace& w) {
       analysis::Model model = AnyAnalysis(w);
       analysis::WorkOutFlows(model);
     }},
    {"analysis::HasTopology", [](Workplace& w) { analysis::HasTopology(AnyAnalysis(w)); }},
    {"analysis::DescribeTopology", [](Workplace& w) { analysis::DescribeTopology(w.AnyModel()); }},
    {"analysis::DescribeIslands", [](Workplace& w) { analysis::DescribeIslands(w.AnyModel()); }},
    {"analysis::DescribeSupply", [](Workplace& w) { analysis::DescribeSupply(w.AnyModel()); }},
    {"analysis::CompareTopology", [](Workplace& w) { analysis::CompareTopology(w.AnyModel(), w.AnyModel()); }},
};

}  // namespace

std::span<const PublicCall> AnalysisCalls() { return kAnalysisCalls; }

}  // namespace dtsdb::fuzz
