// A signal that ends a program on one of its threads.

#include <gtest/gtest.h>

#include <filesystem>

#include "tests/support/process.h"
#include "tests/support/temporary_directory.h"

namespace dtsdb::test {
namespace {

TEST(Signals, ThatEndAProgramLeaveNoTemporaryFolderOfAnyThread) {
  for (int round = 0; round < 5; ++round) {
    const TemporaryDirectory here;
    const std::string place = here.Path().toStdString();
    EXPECT_EQ(RunHelper({"folders", place}), "ends\n");
    EXPECT_TRUE(std::filesystem::is_empty(place)) << "round " << round;
  }
}

}  // namespace
}  // namespace dtsdb::test
