/// \file
/// Switching in a model, and what would become of it.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "analysis/careful_runner.h"
#include "analysis/effect.h"
#include "analysis/error.h"
#include "analysis/model.h"
#include "analysis/topology.h"
#include "topology/switch_event.h"

namespace dtsdb::analysis {

/// Reads an event in words: "open CB B1", "out LN 'Line 7'", "break LN L1 from" (docs/command.md).
Result<SwitchEvent> ParseEvent(const std::string& words);

/// The words of an event.
std::string EventText(const SwitchEvent& event);

/// Events as a script for `dtsdb switch`, one a line. An Error when an identity can't stand in one: it has a line feed,
/// or bytes that are not valid in its encoding.
Result<std::string> ScriptOf(const std::vector<SwitchEvent>& events);

/// The states of all components and the supply at one moment, to come back to.
class Moment {
 public:
  /// Notes how things are in a good model.
  explicit Moment(const Model& model);
  Moment(Moment&&) noexcept;
  Moment& operator=(Moment&&) noexcept;
  ~Moment();

  /// The events, for one run by `rules`, that bring all components of `model` back into their states. It must have the
  /// records that the model had at the moment; it may be a copy.
  std::vector<SwitchEvent> WayBack(const Model& model, Rules rules = Rules::kCareful) const;

  /// What has happened to the supply since, when `model` has a topology now and had one at the moment.
  Effect EffectUntil(const Model& model) const;

 private:
  struct States;
  std::unique_ptr<const States> m_states;
};

/// A row of the log of an incremental run; docs/topology.md has the meanings.
struct LogRow {
  std::string table;     ///< of the record
  std::string identity;  ///< of the record, real text
  std::string event;     ///< word for what happened
  int status = 0;        ///< position or state after it
  int oldSection = -1;   ///< -1 for none
  int newSection = -1;   ///< likewise
};

/// A node that went to another section in an incremental run.
struct MovedNode {
  std::string node;     ///< identity of the node
  std::string level;    ///< its voltage level
  int oldSection = -1;  ///< -1 for none
  int newSection = -1;  ///< likewise
};

/// What a run has brought.
struct Outcome {
  RunReport run;                 ///< what the run was, and why
  int levels = 0;                ///< number of voltage levels that the run processed
  std::vector<LogRow> log;       ///< of an incremental run; a full one keeps none
  std::vector<MovedNode> moved;  ///< likewise
  std::vector<Island> islands;   ///< the live islands as they now are
};

/// Switching in a model, one run after the other. After each run the model has the topology of a full one
/// (CarefulRunner), unless Rules::kAsIs is chosen.
class Switching {
 public:
  /// Validates the model where it isn't good, and works out the topology to begin with.
  static Result<Switching> Begin(const Model& model, Rules rules = Rules::kCareful);

  /// The run that Begin has made.
  const Outcome& First() const;

  /// Switches one component, for the next run to follow up.
  Result<EventResult> Request(const SwitchEvent& event);
  /// Follows up what was requested. After an Error the next run is a full one.
  Result<Outcome> Run();
  /// Several events and the run behind them. Nothing is switched when a component is unknown.
  Result<Outcome> Apply(const std::vector<SwitchEvent>& events);
  /// One event in words and the run behind it.
  Result<Outcome> Apply(const std::string& words);

  /// The topology as it now is.
  Topology Now() const;
  /// What all runs since Begin have done together.
  Effect EffectSoFar() const;
  /// The events, for one run by the same rules, that bring all components back into the states that they had at Begin.
  std::vector<SwitchEvent> WayBack() const;
  /// What differs from a full run, which is made on a copy; nothing, unless the rules are kAsIs.
  std::vector<Difference> CompareWithFullRun() const;

 private:
  struct Session;
  explicit Switching(std::unique_ptr<Session> session);

 public:
  /// The session goes over; what is left can only be assigned to or destroyed.
  Switching(Switching&&) noexcept;
  Switching& operator=(Switching&&) noexcept;
  ~Switching();

 private:
  std::unique_ptr<Session> m_session;
};

/// A component whose state in another model no event brings about.
struct Unreachable {
  std::string table;     ///< of the record
  std::string identity;  ///< of the record, real text
  std::string why;       ///< why it can't be brought there, for people
};

/// The way from the states of a model A to those of a model B.
struct Way {
  std::vector<SwitchEvent> events;       ///< for one run by Rules::kCareful
  std::vector<Unreachable> unreachable;  ///< table by table; empty where A is then as B in all that can be switched
};

/// Finds the way between two states of one grid; components are the same where they have one identity. Both models are
/// validated where they aren't good, and stay as they are otherwise.
Result<Way> FindWay(const Model& a, const Model& b);

/// What events would do.
struct WhatIf {
  Outcome outcome;                  ///< of the last run
  Topology topology;                ///< as it would be
  Effect effect;                    ///< on the supply
  std::vector<Difference> changes;  ///< `here` without, `there` with the events
};

/// Tries events out on a copy; the model stays as it is, but for being validated where it wasn't good.
Result<WhatIf> TryOut(const Model& model, const std::vector<SwitchEvent>& events);

}  // namespace dtsdb::analysis
