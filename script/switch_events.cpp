#include "script/switch_events.h"

#include <fmt/format.h>

#include <algorithm>

#include "formats/failure.h"
#include "formats/field_text.h"
#include "topology/component_types.h"

namespace dtsdb::tools {
namespace {

/// How the two directions of a kind of event are called.
struct EventVerbs {
  const char* off;      ///< opens, takes out of service
  const char* on;       ///< closes, returns to service
  const char* wentOff;  ///< what has happened then
  const char* wentOn;
};

constexpr EventVerbs kBreaker{"open", "close", "opened", "closed"};
constexpr EventVerbs kDevice{"off", "on", "switched off", "switched on"};
constexpr EventVerbs kBranch{"out", "in", "out of service", "back in service"};
constexpr EventVerbs kFromEnd{"break", "join", "from end opened", "from end joined"};
constexpr EventVerbs kToEnd{"break", "join", "to end opened", "to end joined"};

/// The words of a component type.
struct EventWords : EventVerbs {
  int type;
  const char* table;  ///< of the component
  const char* end;    ///< of a branch, "" for the whole component
};

constexpr EventWords kEvents[] = {
    {kBreaker, 1, "CB", ""},      {kDevice, 2, "UN", ""},   {kDevice, 3, "LD", ""},        {kDevice, 4, "CP", ""},
    {kBranch, 5, "LN", ""},       {kBranch, 6, "XF", ""},   {kBranch, 7, "ZBR", ""},       {kBranch, 8, "DLN", ""},
    {kFromEnd, 9, "LN", "from"},  {kToEnd, 10, "LN", "to"}, {kFromEnd, 11, "DLN", "from"}, {kToEnd, 12, "DLN", "to"},
    {kFromEnd, 13, "XF", "from"}, {kToEnd, 14, "XF", "to"}, {kFromEnd, 15, "ZBR", "from"}, {kToEnd, 16, "ZBR", "to"},
};

bool HasVerb(const EventWords& event, const std::string& verb) { return verb == event.off || verb == event.on; }

/// The different texts that `text` returns for the events that `fits`, in order.
template <class Fits, class Text>
std::vector<std::string> Choices(Fits fits, Text text) {
  std::vector<std::string> choices;
  for (const EventWords& event : kEvents) {
    for (const std::string& choice : text(event)) {
      if (fits(event) && std::find(choices.begin(), choices.end(), choice) == choices.end()) choices.push_back(choice);
    }
  }
  return choices;
}

std::vector<std::string> Verbs() {
  return Choices([](const EventWords&) { return true; },
                 [](const EventWords& event) {
                   return std::vector<std::string>{event.off, event.on};
                 });
}

/// The word at `at`, and `at` one further. A Failure that names `what` when the words are at their end.
const std::string& TakeWord(const std::vector<std::string>& words, std::size_t& at, const std::string& what) {
  if (at >= words.size()) {
    const std::string behind = words.empty() ? "the event" : Quoted(words.back());
    throw Failure(kExitUsage, "behind " + behind + " " + what + " is missing");
  }
  return words[at++];
}

/// A word that must be one of `choices`.
const std::string& TakeChoice(const std::vector<std::string>& words, std::size_t& at, const std::string& what,
                              const std::vector<std::string>& choices) {
  const std::string expected = fmt::format("{} ({})", what, fmt::join(choices, ", "));
  const std::string& word = TakeWord(words, at, expected);
  if (std::find(choices.begin(), choices.end(), word) != choices.end()) return word;
  throw Failure(kExitUsage, Quoted(word) + " is not " + expected);
}

const EventWords* EventOfType(int type) {
  const auto* const found = std::find_if(std::begin(kEvents), std::end(kEvents),
                                         [type](const EventWords& event) { return event.type == type; });
  return found != std::end(kEvents) ? found : nullptr;
}

/// Calls `visit` with the component type of that code and its table.
template <class Visit>
void WithTable(DTSDB& database, int type, Visit visit) {
  WithComponentType(type, [&](const auto& component) {
    using Record = typename std::remove_cvref_t<decltype(component)>::Record;
    visit(component, TableOf<Record>(database));
  });
}

}  // namespace

const char* const kSwitchEventHelp =
    "  open CB ID, close CB ID               a breaker\n"
    "  off UN|LD|CP ID, on UN|LD|CP ID       a unit, load, capacitor or reactor\n"
    "  out LN|XF|ZBR|DLN ID, in ... ID       a branch, out of service and back\n"
    "  break LN|XF|ZBR|DLN ID from|to, join ... ID from|to\n"
    "                                        one end of a branch";

bool IsSwitchVerb(const std::string& word) {
  const std::vector<std::string> verbs = Verbs();
  return std::find(verbs.begin(), verbs.end(), word) != verbs.end();
}

SwitchEvent TakeSwitchEvent(const std::vector<std::string>& words, std::size_t& at) {
  const std::string& verb = TakeChoice(words, at, "a verb", Verbs());
  const auto hasVerb = [&](const EventWords& event) { return HasVerb(event, verb); };
  const std::string& table =
      TakeChoice(words, at, "a table that goes with '" + verb + "'",
                 Choices(hasVerb, [](const EventWords& event) { return std::vector<std::string>{event.table}; }));
  const std::string& id = TakeWord(words, at, "the identity");
  const auto fits = [&](const EventWords& event) { return hasVerb(event) && table == event.table; };
  std::string end;
  const std::vector<std::string> ends =
      Choices(fits, [](const EventWords& event) { return std::vector<std::string>{event.end}; });
  if (ends.size() > 1) end = TakeChoice(words, at, "an end", ends);
  for (const EventWords& event : kEvents) {
    if (fits(event) && end == event.end) return {event.type, verb == event.on, id};
  }
  throw Failure(kExitUsage, "there is no event '" + verb + " " + table + "'");
}

std::optional<SwitchEvent> FindSwitchEvent(const std::string& table, const std::string& id, const std::string& end,
                                           bool on) {
  for (const EventWords& event : kEvents) {
    if (table == event.table && end == event.end) return SwitchEvent{event.type, on, id};
  }
  return std::nullopt;
}

std::string WhatHappened(int type, bool on) {
  const EventWords* const words = EventOfType(type);
  if (words == nullptr) return "";
  return on ? words->wentOn : words->wentOff;
}

std::string SwitchEventText(const SwitchEvent& event) {
  const EventWords* const words = EventOfType(event.type);
  if (words == nullptr) return fmt::format("type {} {}", event.type, event.id);
  const std::string end = *words->end != '\0' ? std::string(" ") + words->end : "";
  return fmt::format("{} {} {}{}", event.on ? words->on : words->off, words->table, event.id, end);
}

int ComponentNumber(DTSDB& database, const SwitchEvent& event) {
  const auto id = IdFromUtf8(event.id);
  return id ? ComponentNumber(database, event.type, *id) : -1;
}

int ComponentNumber(DTSDB& database, int type, const QString& id) {
  int number = -1;
  WithTable(database, type, [&](const auto&, auto& table) {
    using Record = std::remove_cvref_t<decltype(table.GetPh(0))>;
    number = table.Find(Record(id));
  });
  return number;
}

std::string WhyUnknown(DTSDB& database, const SwitchEvent& event) {
  if (ComponentNumber(database, event) != -1) return "";
  std::string why = fmt::format("there is no component type {}", event.type);
  WithTable(database, event.type, [&](const auto&, auto& table) { why = WhyUnknownRecord(table, event.id); });
  return why;
}

void RequireComponent(DTSDB& database, const SwitchEvent& event) {
  const std::string why = WhyUnknown(database, event);
  if (!why.empty()) throw Failure(kExitUsage, why);
}

bool Stands(DTSDB& database, const SwitchEvent& event, int number) {
  bool stands = false;
  WithTable(database, event.type, [&](const auto& type, auto& table) {
    stands = ((table.GetPh(number).*type.word & type.bit) == 0) == event.on;
  });
  return stands;
}

void PutInState(DTSDB& database, const SwitchEvent& event, int number) {
  WithTable(database, event.type, [&](const auto& type, auto& table) {
    auto& word = table.GetPh(number).*type.word;
    word = event.on ? word & ~type.bit : word | type.bit;
  });
}

}  // namespace dtsdb::tools
