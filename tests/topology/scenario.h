/// \file
/// Test cases in the scenario language, which tests/scenarios/README.md describes.
#pragma once

#include <ostream>
#include <stdexcept>
#include <string>
#include <vector>

namespace dtsdb::test {

/// One statement: its words, and where it stands.
struct Statement {
  std::vector<std::string> words;
  std::string text;  ///< the words behind the first one
  int line = 0;
};

/// One case: a network, what happens to it, and what is expected.
struct Scenario {
  std::string file;  ///< path
  std::string name;
  std::vector<Statement> statements;
};

/// How GoogleTest shows a scenario.
void PrintTo(const Scenario& scenario, std::ostream* out);

/// What is wrong with a statement itself.
class ScenarioError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// All scenarios of the files DIRECTORY/*.txt, by file name and in their order in the file. A line that belongs to no
/// scenario is a failure of the test.
std::vector<Scenario> ReadScenarios(const std::string& directory);

/// Runs one scenario. What is wrong with it, and every expectation that isn't met, is a failure at its line.
void RunScenario(const Scenario& scenario);

}  // namespace dtsdb::test
