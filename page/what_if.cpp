#include "page/what_if.h"

#include <utility>

namespace dtsdb::page {

using analysis::Error;
using analysis::ErrorCode;
using analysis::Model;
using analysis::Result;
using analysis::Switching;

Result<std::unique_ptr<WhatIf>> WhatIf::Begin(std::shared_ptr<const LiveState> state) {
  Result<Model> copy = state->InTurn([](const Model& model, const Documents& documents) -> Result<Model> {
    if (documents.HasPictures()) return model.Copy();
    return tl::unexpected(
        Error{ErrorCode::kNoTopology, "the model has no topology, so nothing can be tried out", model.Name()});
  });
  if (!copy) return tl::unexpected(copy.error());
  Result<Switching> switching = Switching::Begin(*copy);
  if (!switching) return tl::unexpected(switching.error());
  std::unique_ptr<WhatIf> whatIf(new WhatIf(std::move(state), *copy, std::move(*switching)));
  whatIf->Describe();
  return whatIf;
}

Result<void> WhatIf::Try(const std::vector<SwitchEvent>& events) {
  m_documents.reset();
  if (!Continues(events)) {
    if (const Result<void> back = GoBack(); !back) return back;
  }
  for (std::size_t i = m_events.size(); i < events.size(); ++i) {
    Result<TriedEvent> tried = Request(events[i]);
    if (!tried) return tl::unexpected(tried.error());
    m_events.push_back(std::move(*tried));
  }
  if (const auto run = m_switching.Run(); !run) return tl::unexpected(run.error());
  Describe();
  return {};
}

/// True when the events so far are the first of `events`.
bool WhatIf::Continues(const std::vector<SwitchEvent>& events) const {
  if (events.size() < m_events.size()) return false;
  for (std::size_t i = 0; i < m_events.size(); ++i) {
    const SwitchEvent& known = m_events[i].event;
    if (known.type != events[i].type || known.on != events[i].on || known.id != events[i].id) return false;
  }
  return true;
}

/// Asks for the states of the beginning. They hold with the next run.
Result<void> WhatIf::GoBack() {
  for (const SwitchEvent& event : m_switching.WayBack()) {
    if (const auto requested = m_switching.Request(event); !requested) return tl::unexpected(requested.error());
  }
  m_events.clear();
  return {};
}

Result<TriedEvent> WhatIf::Request(const SwitchEvent& event) {
  const std::string words = analysis::EventText(event);
  const auto requested = m_switching.Request(event);
  if (requested) return TriedEvent{event, !requested->stood, requested->stood ? words + ": it is so already" : words};
  if (requested.error().code != ErrorCode::kUnknownComponent) return tl::unexpected(requested.error());
  return TriedEvent{event, false, requested.error().message};
}

void WhatIf::Describe() {
  SettleTables(m_copy.Tables());
  m_documents = m_state->InTurn(
      [this](const Model&, const Documents& documents) { return std::optional(documents.Tried(m_copy)); });
}

Changes WhatIf::ChangesSinceState() const {
  return m_state->InTurn(
      [this](const Model&, const Documents& documents) { return m_documents->ChangesSince(documents); });
}

Result<std::string> WhatIf::Script() const {
  std::vector<SwitchEvent> events;
  for (const TriedEvent& tried : m_events) {
    if (tried.applied) events.push_back(tried.event);
  }
  return analysis::ScriptOf(events);
}

}  // namespace dtsdb::page
