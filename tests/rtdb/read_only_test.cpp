// Stores that may only be read: in folders and on media that can't be written, and with a lock file of somebody else.

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <cstdlib>
#include <fstream>
#include <iostream>

#include "samples.h"
#include "tests/support/process.h"

namespace fs = std::filesystem;

using dtsdb::test::Folder;
using dtsdb::test::Helper;
using dtsdb::test::RunHelper;

namespace {

struct ReadOnlyStore : ::testing::Test {
  void SetUp() override { ASSERT_EQ(RunHelper({"make", folder.File()}), ""); }
  void TearDown() override { Allow(0755, 0644, 0644); }
  std::string Lock() const { return folder.File() + "-lock"; }
  /// The permissions of the folder, the store and its lock file.
  void Allow(mode_t place, mode_t store, mode_t lock) const {
    ::chmod(fs::path(folder.File()).parent_path().c_str(), place);
    ::chmod(folder.File().c_str(), store);
    ::chmod(Lock().c_str(), lock);
  }
  /// What a program that may not write prints. A leak checker may add lines of its own, since it can't look into a
  /// process that has changed its user.
  std::string Viewed() const { return Helper({"view", folder.File()}).Line(); }
  /// Gives all rows another value and lets a reader that stays look again.
  void Change() const {
    struct stat store {};
    struct stat lock {};
    ::stat(folder.File().c_str(), &store);
    ::stat(Lock().c_str(), &lock);
    Allow(0755, 0644, 0644);
    EXPECT_NE(RunHelper({"full", folder.File(), "1000000000"}).find("whole 999999"), std::string::npos);
    Allow(0755, store.st_mode & 0777, lock.st_mode & 0777);
    std::ofstream(folder.File() + ".go") << "";
  }

  Folder folder;
};

TEST_F(ReadOnlyStore, IsReadWithoutALockFile) {
  fs::remove(Lock());
  Allow(0555, 0444, 0);
  EXPECT_EQ(Viewed(), "whole 7");
  EXPECT_FALSE(fs::exists(Lock()));
}

TEST_F(ReadOnlyStore, IsReadBesideALockFileThatMayNotBeWritten) {
  Allow(0555, 0444, 0444);
  EXPECT_EQ(Viewed(), "whole 7");
}

TEST_F(ReadOnlyStore, GetsNoLockFileFromOneWhoMayOnlyRead) {
  fs::remove(Lock());
  Allow(0777, 0444, 0);
  EXPECT_EQ(Viewed(), "whole 7");
  EXPECT_FALSE(fs::exists(Lock())) << "it would belong to the reader and keep the writers out";
}

TEST_F(ReadOnlyStore, IsFollowedWhereTheLockFileMayBeWritten) {
  Allow(0755, 0444, 0666);
  Helper reader({"stay", folder.File()});
  ASSERT_EQ(reader.Line(), "whole 7");
  Change();
  EXPECT_EQ(reader.Line(), "whole 999999");
  EXPECT_EQ(reader.Line(), "whole 999999");
}

TEST_F(ReadOnlyStore, IsShownAsItWasAtTheOpeningWhereTheLockFileMayNotBeWritten) {
  Allow(0755, 0444, 0444);
  Helper reader({"stay", folder.File()});
  ASSERT_EQ(reader.Line(), "whole 7");
  Change();
  EXPECT_EQ(reader.Line(), "whole 7");
  EXPECT_EQ(reader.Line(), "whole 999999");
}

/// CMake leaves this one out where the user may not mount.
TEST_F(ReadOnlyStore, IsReadOnAMediumThatCannotBeWritten) {
  for (const bool withLock : {true, false}) {
    if (!withLock) fs::remove(Lock());
    EXPECT_EQ(Helper({"medium", folder.File()}).Line(), "whole 7") << withLock;
  }
}

/// The copy that a reader takes is one whole state, whatever is written meanwhile. RTDB_COPIES in the environment sets
/// how many readers try.
TEST_F(ReadOnlyStore, IsReadWholeBesideAWriter) {
  Allow(0755, 0644, 0644);
  Helper writer({"write", folder.File()});
  ASSERT_EQ(writer.Line(), "writing");
  Allow(0755, 0444, 0444);  // the writer has them open
  const char* wish = std::getenv("RTDB_COPIES");
  const int readers = wish != nullptr ? std::atoi(wish) : 20;
  int whole = 0;
  for (int reader = 0; reader < readers; ++reader) {
    const std::string output = Viewed();
    whole += output.starts_with("whole ") ? 1 : 0;
    EXPECT_TRUE(output.starts_with("whole ") || output.find("write too fast for a copy") != std::string::npos)
        << output;
  }
  EXPECT_GT(whole, 0);
  std::cout << whole << " of " << readers << " readers have got a copy beside a writer that never rests\n";
}

TEST_F(ReadOnlyStore, WithoutTablesIsReported) {
  fs::resize_file(folder.File(), 0);
  Allow(0555, 0444, 0444);
  const std::string output = Viewed();
  EXPECT_NE(output.find(folder.File() + ": a store without tables"), std::string::npos) << output;
}

TEST_F(ReadOnlyStore, ThatIsDamagedIsRefused) {
  fs::resize_file(folder.File(), 3 * 4096);
  Allow(0555, 0444, 0444);
  const std::string output = Viewed();
  EXPECT_NE(output.find(folder.File() + ": the store is damaged"), std::string::npos) << output;
}

}  // namespace
