#include "tests/topology/scenario.h"

#include <algorithm>
#include <filesystem>
#include <fstream>

#include "formats/failure.h"
#include "script/script_lines.h"
#include "tests/topology/scenario_run.h"

namespace dtsdb::test {
namespace {

namespace fs = std::filesystem;

/// The words behind the first one.
std::string Rest(const std::vector<std::string>& words) {
  std::string text;
  for (std::size_t i = 1; i < words.size(); ++i) text += (i > 1 ? " " : "") + words[i];
  return text;
}

Scenario Broken(const fs::path& path, int line, const std::string& what) {
  return {path.string(), "broken at line " + std::to_string(line), {{{"broken"}, what, line}}};
}

void ReadFile(const fs::path& path, std::vector<Scenario>& scenarios) {
  std::ifstream file(path);
  std::string line;
  for (int number = 1; std::getline(file, line); ++number) {
    std::vector<std::string> words;
    try {
      words = tools::SplitWords(line);
    } catch (const tools::Failure& failure) {
      scenarios.push_back(Broken(path, number, failure.what()));
      continue;
    }
    if (words.empty()) continue;
    if (words.front() == "scenario") {
      scenarios.push_back({path.string(), Rest(words), {}});
    } else if (scenarios.empty() || scenarios.back().file != path) {
      scenarios.push_back(Broken(path, number, "stands in front of the first scenario"));
    } else {
      scenarios.back().statements.push_back({words, Rest(words), number});
    }
  }
}

}  // namespace

void PrintTo(const Scenario& scenario, std::ostream* out) { *out << scenario.file << ": " << scenario.name; }

std::vector<Scenario> ReadScenarios(const std::string& directory) {
  std::vector<fs::path> files;
  for (const auto& entry : fs::directory_iterator(directory)) {
    if (entry.path().extension() == ".txt") files.push_back(entry.path());
  }
  std::sort(files.begin(), files.end());
  std::vector<Scenario> scenarios;
  for (const fs::path& file : files) ReadFile(file, scenarios);
  return scenarios;
}

void RunScenario(const Scenario& scenario) {
  ScenarioRun run(scenario.file);
  for (const Statement& statement : scenario.statements) {
    if (!run.Do(statement)) return;
  }
  run.End();
}

}  // namespace dtsdb::test
