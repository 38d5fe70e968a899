/// \file
/// What if: events tried out on a viewer's own copy of a model.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "analysis/error.h"
#include "analysis/model.h"
#include "analysis/switching.h"
#include "page/documents.h"
#include "page/live_state.h"
#include "topology/switch_event.h"

namespace dtsdb::page {

/// What became of an event.
struct TriedEvent {
  SwitchEvent event;
  bool applied = false;  ///< it has changed something
  std::string text;      ///< the event in words; where it wasn't applied, why
};

/// A copy of a state in which a list of events is tried out, always from the state on: taking back the last event is
/// handing over the list without it.
///
/// Events that are new at the end of the list are followed up by themselves (analysis::Switching). For any other list
/// all components are first switched back as they were; one run then follows all of it up. Either way the copy has the
/// topology of a full run. The state is not changed. One thread at a time.
class WhatIf {
 public:
  /// Copies the model of `state`. An Error when it has no topology.
  static analysis::Result<std::unique_ptr<WhatIf>> Begin(std::shared_ptr<const LiveState> state);

  /// Tries `events` out, in their order and in one run. An unknown component is reported in its place and does nothing.
  /// After an Error the copy is of no use any more.
  analysis::Result<void> Try(const std::vector<SwitchEvent>& events);

  const LiveState& State() const { return *m_state; }
  const std::vector<TriedEvent>& Events() const { return m_events; }
  /// What differs from the state.
  Changes ChangesSinceState() const;
  /// The events that could be applied, as a script for `dtsdb switch`.
  analysis::Result<std::string> Script() const;

  /// Calls `use(documents)` with the documents of the copy. No other thread works on this grid meanwhile.
  template <class Use>
  decltype(auto) InTurn(Use use) const {
    return m_state->InTurn([&](const analysis::Model&, const Documents&) { return use(*m_documents); });
  }

  /// The copy, for comparison.
  const analysis::Model& Copy() const { return m_copy; }

 private:
  WhatIf(std::shared_ptr<const LiveState> state, analysis::Model copy, analysis::Switching switching)
      : m_state(std::move(state)), m_copy(std::move(copy)), m_switching(std::move(switching)) {}

  bool Continues(const std::vector<SwitchEvent>& events) const;
  analysis::Result<void> GoBack();
  analysis::Result<TriedEvent> Request(const SwitchEvent& event);
  void Describe();

  std::shared_ptr<const LiveState> m_state;
  analysis::Model m_copy;
  analysis::Switching m_switching;
  std::vector<TriedEvent> m_events;
  std::optional<Documents> m_documents;  // of the copy; none while it is switched
};

}  // namespace dtsdb::page
