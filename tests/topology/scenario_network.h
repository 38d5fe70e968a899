/// \file
/// The network of a scenario.
#pragma once

#include <map>
#include <string>

#include "script/switch_events.h"
#include "tests/support/model_builder.h"
#include "tests/topology/scenario.h"

namespace dtsdb::test {

/// Builds the network from its statements.
class ScenarioNetwork {
 public:
  /// Takes a statement of the network. False when it is none; a ScenarioError when it can't be obeyed.
  bool Take(const Statement& statement);

  /// Validates the network and puts the components into their initial states. Repeated calls do nothing.
  void Finish();
  bool IsFinished() const { return m_finished; }

  ModelBuilder& Model() { return m_model; }

 private:
  struct Place {
    std::string station;
    std::string level;
  };
  using Words = std::vector<std::string>;

  const Place& PlaceOf(const std::string& node) const;
  const char* Name(const Words& words, std::size_t at) const;
  void AddLevel(const Words& words);
  void AddShunt(const Words& words);
  void AddBreaker(const Words& words);
  void AddZbr(const Words& words);
  void AddBranch(const Words& words);

  ModelBuilder m_model;
  std::string m_station;
  std::map<std::string, Place> m_nodes;
  std::vector<tools::SwitchEvent> m_initially;
  bool m_finished = false;
};

/// Throws a ScenarioError unless `words` has from `least` to `most` words behind the first.
void RequireWords(const std::vector<std::string>& words, std::size_t least, std::size_t most);

}  // namespace dtsdb::test
