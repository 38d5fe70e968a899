// Every scenario of tests/scenarios as a test of its own.
#include "tests/topology/scenario.h"

#include <gtest/gtest.h>

#include <cctype>
#include <filesystem>

namespace dtsdb::test {
namespace {

class Scenarios : public testing::TestWithParam<Scenario> {};

TEST_P(Scenarios, GoesAsExpected) { RunScenario(GetParam()); }

/// "breakers.txt", "A ring opened" becomes "breakers_A_ring_opened".
std::string TestName(const testing::TestParamInfo<Scenario>& test) {
  std::string name = std::filesystem::path(test.param.file).stem().string() + "_" + test.param.name;
  std::string clean;
  for (const char c : name) {
    const bool letter = std::isalnum(static_cast<unsigned char>(c)) != 0;
    if (letter) clean += c;
    if (!letter && !clean.empty() && clean.back() != '_') clean += '_';
  }
  while (!clean.empty() && clean.back() == '_') clean.pop_back();
  return clean;
}

INSTANTIATE_TEST_SUITE_P(Topology, Scenarios, testing::ValuesIn(ReadScenarios(DTSDB_SOURCE_DIR "/tests/scenarios")),
                         TestName);

}  // namespace
}  // namespace dtsdb::test
