/// \file
/// Switching operations in the words of a user: "open CB B1", "break LN L1 from".
#pragma once

#include <fmt/format.h>

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "formats/field_text.h"
#include "formats/nearest.h"
#include "model/dtsdb.h"
#include "topology/switch_event.h"

namespace dtsdb::tools {

using dtsdb::SwitchEvent;

/// The verbs and what they take, for a help text.
extern const char* const kSwitchEventHelp;

/// True when an event can begin with `word`.
bool IsSwitchVerb(const std::string& word);

/// Reads the event that begins at `words[at]` and moves `at` behind it. A Failure of usage when there is none.
SwitchEvent TakeSwitchEvent(const std::vector<std::string>& words, std::size_t& at);

/// The event that switches `end` ("from" or "to") of a branch, or with an empty one the component as a whole. None for
/// a table without switching, or an end that it doesn't have.
std::optional<SwitchEvent> FindSwitchEvent(const std::string& table, const std::string& id, const std::string& end,
                                           bool on);

/// What has happened to a component of that type code, such as "opened" or "back in service"; empty for another code.
std::string WhatHappened(int type, bool on);

/// The words of an event.
std::string SwitchEventText(const SwitchEvent& event);

/// The component's number in its table, -1 when it isn't there.
int ComponentNumber(DTSDB& database, const SwitchEvent& event);
/// The same by the type code and the identity as records have it.
int ComponentNumber(DTSDB& database, int type, const QString& id);

/// That `table` has no record `id`, with the nearest identities.
template <class Record>
std::string WhyUnknownRecord(const tTable<Record>& table, const std::string& id) {
  std::vector<std::string> known;
  known.reserve(static_cast<std::size_t>(table.GetCount()));
  for (int i = 0; i < table.GetCount(); ++i) known.push_back(IdText(table[i].id));
  return fmt::format("table {} has no record {}{}", Record::kTableName, Quoted(id), DidYouMean(id, known));
}

/// That the component isn't there, with the nearest identities; empty when it is.
std::string WhyUnknown(DTSDB& database, const SwitchEvent& event);

/// The same as a Failure of usage.
void RequireComponent(DTSDB& database, const SwitchEvent& event);

/// True when component `number` is in the state that the event asks for.
bool Stands(DTSDB& database, const SwitchEvent& event, int number);

/// Puts component `number` into that state, behind the topology's back.
void PutInState(DTSDB& database, const SwitchEvent& event, int number);

}  // namespace dtsdb::tools
