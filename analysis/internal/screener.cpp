#include "analysis/internal/screener.h"

#include <algorithm>
#include <utility>

#include "formats/field_text.h"
#include "model/table_info.h"
#include "script/switch_events.h"
#include "topology/component_types.h"

namespace dtsdb::analysis::internal {
namespace {

void SortOnce(std::vector<int>& numbers) {
  std::sort(numbers.begin(), numbers.end());
  numbers.erase(std::unique(numbers.begin(), numbers.end()), numbers.end());
}

bool IsNothing(const Effect& effect) {
  return effect.lost.empty() && effect.regained.empty() && effect.islands.empty();
}

}  // namespace

Screener::Screener(Model copy) : m_model(std::move(copy)) {}

Result<std::unique_ptr<Screener>> Screener::Make(const Model& model) {
  Result<Model> copy = model.Copy();
  if (!copy) return tl::unexpected(copy.error());
  std::unique_ptr<Screener> screener(new Screener(std::move(*copy)));
  if (Result<void> begun = screener->Begin(); !begun) {
    begun.error().message = model.Name() + ": " + begun.error().message;
    return tl::unexpected(begun.error());
  }
  return screener;
}

Result<void> Screener::Begin() {
  Result<RunReport> run = m_runner.RunFull();
  if (!run) return tl::unexpected(run.error());
  m_first = std::move(*run);
  m_start = std::make_unique<SupplyRecord>(Tables());
  m_references = std::make_unique<References>(Tables());
  m_runner.LeaveReferencesAndFindings();
  return TakeOpenEndedOut();
}

/// A branch with an open end supplies nothing, yet no run over its levels is certain to be incremental. So in the copy
/// it counts as out of service. Where anything had another supply then, all would stay as it is.
Result<void> Screener::TakeOpenEndedOut() {
  SetOpenEndedOut<LN>(true);
  SetOpenEndedOut<XF>(true);
  SetOpenEndedOut<DLN>(true);
  if (m_openEnded.empty() || (m_runner.RunFull() && IsNothing(m_start->EffectOn(m_start->AllLevels())))) return {};
  SetOpenEndedOut<LN>(false);
  SetOpenEndedOut<XF>(false);
  SetOpenEndedOut<DLN>(false);
  m_openEnded.clear();
  const Result<RunReport> run = m_runner.RunFull();
  if (!run) return tl::unexpected(run.error());
  return {};
}

template <class Branch>
void Screener::SetOpenEndedOut(bool out) {
  using Kind = BranchKind<Branch>;
  tTable<Branch>& branches = TableOf<Branch>(Tables());
  for (int i = 0; i < branches.GetCount(); ++i) {
    Branch& branch = branches.GetPh(i);
    if (!out && m_openEnded.contains({Branch::kKind, i})) branch.status &= ~Kind::kOut;
    if (!out || (branch.status & Kind::kOut) != 0 || (branch.status & (Kind::kOpen1 | Kind::kOpen2)) == 0) continue;
    branch.status |= Kind::kOut;
    m_openEnded.emplace(Branch::kKind, i);
  }
}

Result<OutageResult> Screener::Try(const Outage& outage) {
  OutageResult result;
  result.outage = outage;
  const std::vector<NumberedEvent> events = EventsOf(Tables(), outage);
  const Result<RunReport> run = Switch(events, false);
  std::vector<int> levels;
  if (run) {
    result.run = run->Text();
    result.fullRun = run->kind == RunKind::kFull;
    levels = LevelsOf(*run);
    Describe(events, levels, result);
  } else {
    result.failure = run.error().message;
  }
  if (events.empty()) result.note = WhyNothing(outage.front());
  const Result<void> back = GoBack(events, std::move(levels));
  if (!back) return tl::unexpected(back.error());
  return result;
}

/// Switches the components out or, in the opposite order, back, and follows it up.
Result<RunReport> Screener::Switch(const std::vector<NumberedEvent>& events, bool on) {
  for (std::size_t i = 0; i < events.size(); ++i) {
    NumberedEvent next = on ? events[events.size() - 1 - i] : events[i];
    next.event.on = on;
    m_runner.Request(next.event, next.number);
  }
  return m_runner.Run();
}

/// Takes the events back. What their runs have reached, `levels` and those of the run back, is looked at; where it
/// isn't as it was, a full run has to bring it back.
Result<void> Screener::GoBack(const std::vector<NumberedEvent>& events, std::vector<int> levels) {
  const Result<RunReport> run = Switch(events, true);
  if (run) {
    const std::vector<int> more = LevelsOf(*run);
    levels.insert(levels.end(), more.begin(), more.end());
    SortOnce(levels);
    if (IsBack(events, levels)) return {};
  }
  if (m_runner.RunFull() && IsBack(events, m_start->AllLevels())) return {};
  return tl::unexpected(
      Error{ErrorCode::kInternal, m_model.Name() + ": the model isn't what it was before the outage", m_model.Name()});
}

bool Screener::IsBack(const std::vector<NumberedEvent>& events, const std::vector<int>& levels) {
  const auto isOn = [&](const NumberedEvent& numbered) {
    SwitchEvent event = numbered.event;
    event.on = true;
    return tools::Stands(Tables(), event, numbered.number);
  };
  return std::all_of(events.begin(), events.end(), isOn) && IsNothing(m_start->EffectOn(levels));
}

void Screener::Describe(const std::vector<NumberedEvent>& events, const std::vector<int>& levels,
                        OutageResult& result) {
  result.lost = m_start->EffectOn(levels).lost;
  result.totals = TotalsOf(result.lost);
  DescribeIslands(m_start->PartsOn(LevelsOf(events)), result);
}

/// An island splits and dies where something went out, so that all its parts have nodes on the levels of the events.
void Screener::DescribeIslands(const IslandParts& parts, OutageResult& result) {
  std::vector<Reference> chosen;
  for (const auto& [island, met] : parts) {
    const Reference before = m_references->AtStart(island);
    const auto has = [&](const auto& part) { return m_references->Has(part.first, before); };
    IslandLoss loss{island, m_references->Text(before), {}, false};
    loss.lostReference = !before.IsNothing() && !std::all_of(met.begin(), met.end(), has);
    if (met.size() == 1 && !loss.lostReference) continue;
    if (chosen.empty() && !met.empty()) chosen = m_references->Choose(m_tp);
    loss.parts = PartsIn(met, chosen);
    result.islands.push_back(std::move(loss));
  }
}

/// The live parts, by island, of an island; in the order of their first nodes.
std::vector<IslandPart> Screener::PartsIn(const std::map<int, int>& firstNodes, const std::vector<Reference>& chosen) {
  std::vector<std::pair<int, int>> byNode;
  byNode.reserve(firstNodes.size());
  for (const auto& [island, nd] : firstNodes) byNode.emplace_back(nd, island);
  std::sort(byNode.begin(), byNode.end());
  std::vector<IslandPart> parts;
  for (const auto& [nd, island] : byNode) {
    const KV& level = Tables().m_kvTable->GetPh(m_start->LevelOf(nd));
    parts.push_back({tools::IdText(level.st), tools::IdText(Tables().m_ndTable->GetPh(nd).id),
                     m_references->Text(chosen[static_cast<std::size_t>(island)])});
  }
  return parts;
}

/// What a reader should know of an outage with nothing to switch.
std::string Screener::WhyNothing(const OutageComponent& component) {
  if (component.table == BUS::kTableName) return "no closed breaker on it";
  const int number = NumberOf(Tables(), component);
  const auto isIt = [&](const auto& branch) {
    return TableName(branch.first) == component.table && branch.second == number;
  };
  const bool isOpenEnded = std::any_of(m_openEnded.begin(), m_openEnded.end(), isIt);
  return isOpenEnded ? "an end is open already" : "out already";
}

/// The voltage levels that the run has processed, ascending.
std::vector<int> Screener::LevelsOf(const RunReport& run) const {
  if (run.kind == RunKind::kNothing) return {};
  std::vector<int> levels(static_cast<std::size_t>(m_tp.getChangedKVCount()));
  m_tp.getChangedKVs(levels.data(), static_cast<int>(levels.size()));
  std::erase_if(levels, [](int level) { return level < 0; });
  SortOnce(levels);
  return levels;
}

/// The voltage levels on which the components stand, ascending.
std::vector<int> Screener::LevelsOf(const std::vector<NumberedEvent>& events) {
  std::vector<int> levels;
  for (const NumberedEvent& numbered : events) {
    WithComponentType(numbered.event.type, [&](const auto& type) {
      const auto& record =
          TableOf<typename std::remove_cvref_t<decltype(type)>::Record>(Tables()).GetPh(numbered.number);
      levels.push_back(m_start->LevelOf(record.ind));
      if constexpr (requires { record.iznd; }) levels.push_back(m_start->LevelOf(record.iznd));
    });
  }
  SortOnce(levels);
  return levels;
}

}  // namespace dtsdb::analysis::internal
