/// \file
/// Running a scenario: its actions, and its expectations on the state that they leave.
#pragma once

#include <deque>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "tests/support/messages.h"
#include "tests/topology/scenario_network.h"
#include "tests/topology/tp_probe.h"
#include "topology/tp.h"

namespace dtsdb::test {

/// A scenario under way. An expectation is met when the words behind its first one are those that describe the state.
class ScenarioRun {
 public:
  explicit ScenarioRun(const std::string& file) : m_file(file) {}

  /// Obeys one statement. False when that can't be done, so that what follows makes no sense.
  bool Do(const Statement& statement);
  /// Checks that nothing is left over that no expectation has named.
  void End();

 private:
  using Words = std::vector<std::string>;
  /// Descriptions of what was left, one for each line of the scenario: rows of the log, messages.
  struct Queue {
    std::deque<std::string> texts;
    bool asked = false;  ///< an expectation has named the first of them
  };

  void Obey(const Statement& statement);
  bool Act(const Statement& statement);
  bool Expect(const Statement& statement);
  void Fail(const std::string& what) const;
  void ExpectText(const std::string& expected, const std::string& actual) const;
  void ExpectNext(Queue& queue, const std::string& expected);
  void ExpectNothingLeft(const std::string& name, Queue& queue);

  // Actions
  int CallAndCompare(Words words, int usual, const std::function<int()>& call);
  void Call(const std::function<void()>& call);
  void RunFull(const Words& words);
  void Change(const Words& words);
  void Switch(const Words& words);
  void Repeat(const Words& words);
  void AddRow(const Words& words);
  void Set(const Words& words);
  void LookAtRun(bool succeeded);
  void CheckLists();

  // Descriptions
  std::string Sections();
  std::string Ring();
  std::string Free(std::size_t count);
  std::string Islands();
  std::string Fragments();
  std::string Moved();
  std::string Changed();
  std::string At(const std::string& table, const std::string& id);
  std::string Cut(const std::string& table, const std::string& id);
  std::string Life(const std::string& table, const std::string& id);
  std::string Field(const Words& words);
  std::string LogRow(const TPL& row);
  std::string LevelName(int kv);
  std::string NodeName(int nd);

  std::string m_file;
  int m_line = 0;
  ScenarioNetwork m_network;
  MessageCatcher m_catcher;
  std::optional<TP> m_tp;
  Queue m_messages;
  Queue m_log;
  Queue m_differences;
};

}  // namespace dtsdb::test
