// Linked into every test program of scripts/mutate: notes which test comes by which errors, how long it takes, and
// whether it passes, a line for each in the file that DTSDB_MUTANTS_TESTS names.
#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>
#include <string>

namespace dtsdb_mutation {
namespace {

class TestNotes : public testing::EmptyTestEventListener {
 public:
  void OnTestStart(const testing::TestInfo&) override {
    ++tests_;
    if (SeenErrors* const seen = Seen(); seen != nullptr && tests_ < kTests) seen->test = tests_;
  }

  void OnTestEnd(const testing::TestInfo& test) override {
    if (SeenErrors* const seen = Seen(); seen != nullptr) seen->test = 0;
    const char* const path = std::getenv("DTSDB_MUTANTS_TESTS");
    if (path == nullptr) return;
    std::ofstream(path, std::ios::app) << test.test_suite_name() << "." << test.name() << " "
                                       << test.result()->elapsed_time() << " " << test.result()->Passed() << "\n";
  }

 private:
  int tests_ = 0;
};

// GoogleTest owns its listeners.
const bool kNoted = [] {
  testing::UnitTest::GetInstance()->listeners().Append(new TestNotes);
  return true;
}();

}  // namespace
}  // namespace dtsdb_mutation
