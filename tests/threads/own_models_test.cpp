// A thread that has a model of its own gets what it would get alone, whatever the other threads do with theirs.

#include <gtest/gtest.h>

#include <array>
#include <filesystem>
#include <string>

#include "model/threads.h"
#include "tests/support/temporary_directory.h"
#include "tests/threads/side_by_side.h"
#include "tests/threads/whole_path.h"

namespace dtsdb::test {
namespace {

class OwnModels : public testing::Test {
 protected:
  OwnModels() {
    for (int i = 0; i < kThreads; ++i) Of(alone, i) = WholePath(Folder("alone", i), Seed(i));
  }

  static std::string& Of(std::array<std::string, kThreads>& results, int i) {
    return results.at(static_cast<std::size_t>(i));
  }
  /// Two threads have the same grid.
  static quint64 Seed(int i) { return static_cast<quint64>(i % (kThreads - 1)) + 1; }
  std::string Folder(const char* round, int i) const {
    const std::string folder = here.Path().toStdString() + "/" + round + std::to_string(i);
    std::filesystem::create_directories(folder);
    return folder;
  }
  void ExpectTheSameSideBySide(const char* round) {
    std::array<std::string, kThreads> together;
    SideBySide(kThreads, [&](int i) { Of(together, i) = WholePath(Folder(round, i), Seed(i)); });
    for (int i = 0; i < kThreads; ++i) {
      EXPECT_GT(Of(alone, i).size(), 10'000U);
      EXPECT_TRUE(Of(together, i) == Of(alone, i)) << "model " << i;
    }
  }

  TemporaryDirectory here;
  std::array<std::string, kThreads> alone;
};

TEST_F(OwnModels, GiveTheSameAsOnOneThread) { ExpectTheSameSideBySide("side-by-side"); }

TEST_F(OwnModels, GiveTheSameWhenEachWorksOnSeveralThreadsItself) {
  SetThreadCount(2);
  ExpectTheSameSideBySide("each-on-two");
  SetThreadCount(1);
}

TEST_F(OwnModels, GiveTheSameWhileTheNumberOfThreadsIsChanged) {
  std::array<std::string, kThreads> together;
  SideBySide(kThreads, [&](int i) {
    SetThreadCount(i + 1);
    Of(together, i) = WholePath(Folder("changed", i), Seed(i));
  });
  SetThreadCount(1);
  EXPECT_TRUE(together == alone);
}

}  // namespace
}  // namespace dtsdb::test
