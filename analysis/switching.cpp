#include "analysis/switching.h"

#include <fmt/format.h>

#include <utility>

#include "analysis/internal/guard.h"
#include "analysis/internal/way_back.h"
#include "analysis/internal/way_between.h"
#include "formats/field_text.h"
#include "model/table_info.h"
#include "script/script_lines.h"
#include "script/switch_events.h"
#include "script/switch_script.h"

namespace dtsdb::analysis {
namespace {

using tools::IdText;

/// The name of the table whose kind code is `kind`; the number when there is none.
std::string KindTable(int kind) {
  const std::string name = TableName(kind);
  return name.empty() ? std::to_string(kind) : name;
}

int SectionOrNone(int section) { return section > 0 ? section : -1; }

std::vector<LogRow> LogOf(DTSDB& tables) {
  std::vector<LogRow> log;
  for (int i = 0; i < tables.m_tplTable->GetCount(); ++i) {
    const TPL& row = (*tables.m_tplTable)[i];
    log.push_back({KindTable(row.kind), IdText(row.name), IdText(row.event), row.n1, SectionOrNone(row.n3),
                   SectionOrNone(row.n2)});
  }
  return log;
}

std::vector<MovedNode> MovedOf(DTSDB& tables) {
  std::vector<MovedNode> moved;
  for (int i = 0; i < tables.m_chndTable->GetCount(); ++i) {
    const CHND& row = (*tables.m_chndTable)[i];
    moved.push_back({IdText(tables.m_ndTable->GetPh(row.ind).id), IdText(tables.m_kvTable->GetPh(row.ikv).id),
                     SectionOrNone(row.ibs_old), SectionOrNone(row.ibs_new)});
  }
  return moved;
}

}  // namespace

Result<SwitchEvent> ParseEvent(const std::string& words) {
  return internal::Guarded(words, [&]() -> Result<SwitchEvent> {
    const std::vector<std::string> split = tools::SplitWords(words);
    std::size_t at = 0;
    SwitchEvent event = tools::TakeSwitchEvent(split, at);
    if (at == split.size()) return event;
    return tl::unexpected(Error{ErrorCode::kUsage, "behind the event " + words + " there are more words", words});
  });
}

std::string EventText(const SwitchEvent& event) { return tools::SwitchEventText(event); }

Result<std::string> ScriptOf(const std::vector<SwitchEvent>& events) {
  return internal::Guarded("", [&]() -> Result<std::string> { return tools::SwitchScriptText(events); });
}

struct Moment::States {
  explicit States(DTSDB& tables) : switches(tables), supply(DescribeSupply(tables)) {}

  internal::SwitchStates switches;
  Supply supply;
};

Moment::Moment(const Model& model) : m_states(std::make_unique<const States>(model.Tables())) {}
Moment::Moment(Moment&&) noexcept = default;
Moment& Moment::operator=(Moment&&) noexcept = default;
Moment::~Moment() = default;

std::vector<SwitchEvent> Moment::WayBack(const Model& model, Rules rules) const {
  return m_states->switches.EventsBack(model.Tables(), rules == Rules::kCareful);
}

Effect Moment::EffectUntil(const Model& model) const {
  return EffectOf(m_states->supply, DescribeSupply(model.Tables()));
}

/// What a session works on: the TP and its runner need the model at one place.
struct Switching::Session {
  Session(const Model& target, Rules rules)
      : model(target), runner(model.Tables(), tp, rules), statesAtFirst(model.Tables()) {}

  Outcome OutcomeOf(RunReport run) {
    Outcome outcome;
    outcome.run = std::move(run);
    outcome.islands = DescribeIslands(model.Tables());
    if (outcome.run.kind == RunKind::kNothing) return outcome;
    outcome.levels = tp.getChangedKVCount();
    if (outcome.run.kind == RunKind::kFull) return outcome;
    outcome.log = LogOf(model.Tables());
    outcome.moved = MovedOf(model.Tables());
    return outcome;
  }

  Result<Outcome> Finish(Result<RunReport> run) {
    if (run) return OutcomeOf(std::move(*run));
    Error error = std::move(run.error());
    error.message = model.Name() + ": " + error.message;
    return tl::unexpected(std::move(error));
  }

  Model model;
  TP tp{&model.Tables()};
  CarefulRunner runner;
  Outcome first;
  Supply supplyAtFirst;
  internal::SwitchStates statesAtFirst;
};

Switching::Switching(std::unique_ptr<Session> session) : m_session(std::move(session)) {}
Switching::Switching(Switching&&) noexcept = default;
Switching& Switching::operator=(Switching&&) noexcept = default;
Switching::~Switching() = default;

Result<Switching> Switching::Begin(const Model& model, Rules rules) {
  return internal::Guarded(model.Name(), [&]() -> Result<Switching> {
    Model target = model;
    if (const Result<void> good = target.RequireGood(); !good) return tl::unexpected(good.error());
    Switching switching(std::make_unique<Session>(target, rules));
    Session& session = *switching.m_session;
    Result<Outcome> first = session.Finish(session.runner.RunFull());
    if (!first) return tl::unexpected(first.error());
    session.first = std::move(*first);
    session.supplyAtFirst = DescribeSupply(target.Tables());
    return switching;
  });
}

const Outcome& Switching::First() const { return m_session->first; }

Result<EventResult> Switching::Request(const SwitchEvent& event) {
  return internal::Guarded(event.id, [&]() -> Result<EventResult> {
    const int number = tools::ComponentNumber(m_session->model.Tables(), event);
    if (number != -1) return m_session->runner.Request(event, number);
    const std::string message = tools::WhyUnknown(m_session->model.Tables(), event);
    return tl::unexpected(Error{ErrorCode::kUnknownComponent, message, event.id});
  });
}

Result<Outcome> Switching::Run() {
  return internal::Guarded(m_session->model.Name(), [&] { return m_session->Finish(m_session->runner.Run()); });
}

Result<Outcome> Switching::Apply(const std::vector<SwitchEvent>& events) {
  for (const SwitchEvent& event : events) {
    if (tools::ComponentNumber(m_session->model.Tables(), event) != -1) continue;
    const std::string message = tools::WhyUnknown(m_session->model.Tables(), event);
    return tl::unexpected(Error{ErrorCode::kUnknownComponent, message, event.id});
  }
  for (const SwitchEvent& event : events) {
    if (const auto requested = Request(event); !requested) return tl::unexpected(requested.error());
  }
  return Run();
}

Result<Outcome> Switching::Apply(const std::string& words) {
  const Result<SwitchEvent> event = ParseEvent(words);
  if (!event) return tl::unexpected(event.error());
  return Apply(std::vector<SwitchEvent>{*event});
}

Topology Switching::Now() const { return DescribeTopology(m_session->model.Tables()); }

Effect Switching::EffectSoFar() const {
  return EffectOf(m_session->supplyAtFirst, DescribeSupply(m_session->model.Tables()));
}

std::vector<SwitchEvent> Switching::WayBack() const {
  const bool followsBreakers = m_session->runner.WhichRules() == Rules::kCareful;
  return m_session->statesAtFirst.EventsBack(m_session->model.Tables(), followsBreakers);
}

std::vector<Difference> Switching::CompareWithFullRun() const {
  return analysis::CompareWithFullRun(m_session->model.Tables(), m_session->runner.WhichRules());
}

Result<Way> FindWay(const Model& a, const Model& b) {
  Model from = a;
  Model to = b;
  for (Model* const model : {&from, &to}) {
    if (const Result<void> good = model->RequireGood(); !good) return tl::unexpected(good.error());
  }
  const Result<Model> copy = from.Copy();
  if (!copy) return tl::unexpected(copy.error());
  return internal::Guarded(
      a.Name(), [&]() -> Result<Way> { return internal::WayBetween(from.Tables(), to.Tables(), copy->Tables()); });
}

Result<WhatIf> TryOut(const Model& model, const std::vector<SwitchEvent>& events) {
  Model target = model;
  if (const Result<void> good = target.RequireGood(); !good) return tl::unexpected(good.error());
  const Result<Model> without = target.Copy();
  const Result<Model> with = target.Copy();
  if (!without || !with) return tl::unexpected((without ? with : without).error());
  const Result<Switching> before = Switching::Begin(*without);
  Result<Switching> after = Switching::Begin(*with);
  if (!before || !after) return tl::unexpected((before ? after : before).error());
  Result<Outcome> outcome = after->Apply(events);
  if (!outcome) return tl::unexpected(outcome.error());
  return WhatIf{std::move(*outcome), after->Now(), after->EffectSoFar(),
                CompareTopology(without->Tables(), with->Tables())};
}

}  // namespace dtsdb::analysis
