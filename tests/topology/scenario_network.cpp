#include "tests/topology/scenario_network.h"

#include <cstdlib>

namespace dtsdb::test {

void RequireWords(const std::vector<std::string>& words, std::size_t least, std::size_t most) {
  const std::size_t count = words.size() - 1;
  if (count < least) throw ScenarioError("'" + words.front() + "' needs more words");
  if (count > most) throw ScenarioError("'" + words.front() + "' doesn't take '" + words[most + 1] + "'");
}

bool ScenarioNetwork::Take(const Statement& statement) {
  using Statements = void (ScenarioNetwork::*)(const Words&);
  static const std::map<std::string, Statements> kStatements = {
      {"level", &ScenarioNetwork::AddLevel},   {"unit", &ScenarioNetwork::AddShunt},
      {"load", &ScenarioNetwork::AddShunt},    {"capacitor", &ScenarioNetwork::AddShunt},
      {"bus", &ScenarioNetwork::AddShunt},     {"breaker", &ScenarioNetwork::AddBreaker},
      {"zbr", &ScenarioNetwork::AddZbr},       {"line", &ScenarioNetwork::AddBranch},
      {"dcline", &ScenarioNetwork::AddBranch}, {"winding", &ScenarioNetwork::AddBranch},
  };
  const Words& words = statement.words;
  const bool isStation = words.front() == "station";
  const bool isState = words.front() == "initially";
  const auto found = kStatements.find(words.front());
  if (!isStation && !isState && found == kStatements.end()) return false;
  if (m_finished) throw ScenarioError("the network must stand in front of the first run");
  if (isStation) {
    RequireWords(words, 1, 1);
    m_station = words[1];
    m_model.Station(Name(words, 1));
  } else if (isState) {
    std::size_t at = 1;
    m_initially.push_back(tools::TakeSwitchEvent(words, at));
    RequireWords(words, 1, at - 1);
  } else {
    (this->*found->second)(words);
  }
  return true;
}

void ScenarioNetwork::Finish() {
  if (m_finished) return;
  if (!m_model.Validate()) throw ScenarioError("the network doesn't pass the validation");
  for (const tools::SwitchEvent& event : m_initially) {
    tools::RequireComponent(m_model.Db(), event);
    tools::PutInState(m_model.Db(), event, tools::ComponentNumber(m_model.Db(), event));
  }
  m_finished = true;
}

const ScenarioNetwork::Place& ScenarioNetwork::PlaceOf(const std::string& node) const {
  const auto found = m_nodes.find(node);
  if (found == m_nodes.end()) throw ScenarioError("node '" + node + "' belongs to no level");
  return found->second;
}

const char* ScenarioNetwork::Name(const Words& words, std::size_t at) const { return words.at(at).c_str(); }

/// level NAME NODE...: the base voltage is the number at the end of the name.
void ScenarioNetwork::AddLevel(const Words& words) {
  RequireWords(words, 1, words.size());
  if (m_station.empty()) throw ScenarioError("a level needs a station in front of it");
  const std::size_t digits = words[1].find_last_not_of("0123456789") + 1;
  const float vbase = std::strtof(words[1].c_str() + digits, nullptr);
  if (vbase <= 0) throw ScenarioError("the name of a level ends in its base voltage");
  m_model.Kv(Name(words, 1), vbase);
  for (std::size_t i = 2; i < words.size(); ++i) m_nodes[words[i]] = {m_station, words[1]};
}

/// unit|load|capacitor|bus NAME NODE
void ScenarioNetwork::AddShunt(const Words& words) {
  RequireWords(words, 2, 2);
  const char* const level = PlaceOf(words[2]).level.c_str();
  const std::string& what = words[0];
  if (what == "unit") m_model.Unit(Name(words, 1), level, Name(words, 2));
  if (what == "load") m_model.Load(Name(words, 1), level, Name(words, 2));
  if (what == "capacitor") m_model.Cap(Name(words, 1), level, Name(words, 2));
  if (what == "bus") m_model.Bus(Name(words, 1), level, Name(words, 2));
}

/// breaker NAME NODE NODE
void ScenarioNetwork::AddBreaker(const Words& words) {
  RequireWords(words, 3, 3);
  m_model.Breaker(Name(words, 1), PlaceOf(words[2]).level.c_str(), Name(words, 2), Name(words, 3));
}

/// zbr NAME BREAKER
void ScenarioNetwork::AddZbr(const Words& words) {
  RequireWords(words, 2, 2);
  m_model.Zbr(Name(words, 1), Name(words, 2));
}

/// line|dcline|winding NAME NODE NODE
void ScenarioNetwork::AddBranch(const Words& words) {
  RequireWords(words, 3, 3);
  const Place& from = PlaceOf(words[2]);
  const Place& to = PlaceOf(words[3]);
  const char* const name = Name(words, 1);
  const char* const level = from.level.c_str();
  const char* const toLevel = to.level.c_str();
  if (words[0] == "winding") {
    m_model.Winding(name, from.station.c_str(), level, toLevel, Name(words, 2), Name(words, 3));
    return;
  }
  const auto add = words[0] == "line" ? &ModelBuilder::Line : &ModelBuilder::DcLine;
  (m_model.*add)(name, "DV", from.station.c_str(), to.station.c_str(), level, toLevel, Name(words, 2), Name(words, 3));
}

}  // namespace dtsdb::test
