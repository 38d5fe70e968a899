// Files that take their place when they are whole.

#include "model/whole_file.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <QTemporaryDir>
#include <set>

#include "include/write_whole.h"
#include "tests/support/bytes.h"

namespace dtsdb {
namespace {

namespace fs = std::filesystem;

class WholeFileTest : public testing::Test {
 protected:
  fs::path At(const std::string& name) const { return fs::path(m_folder.path().toStdString()) / name; }
  static QString Text(const fs::path& path) { return QString::fromStdString(path.string()); }

  /// Writes a file. Returns the error, empty for none.
  static std::string Write(const fs::path& path, const char* bytes) {
    WholeFile file(Text(path));
    if (!file.Open()) return file.Error().toStdString();
    file.Device().write(bytes);
    return file.Finish() ? "" : file.Error().toStdString();
  }

  std::set<std::string> Names() const {
    std::set<std::string> names;
    for (const fs::directory_entry& entry : fs::directory_iterator(m_folder.path().toStdString())) {
      names.insert(entry.path().filename());
    }
    return names;
  }

 private:
  QTemporaryDir m_folder;
};

TEST_F(WholeFileTest, TakesThePlaceOfTheOldOneAtItsEnd) {
  test::WriteBytes(At("f"), "old");
  WholeFile file(Text(At("f")));
  ASSERT_TRUE(file.Open());
  file.Device().write("new");
  EXPECT_EQ(test::ReadBytes(At("f")), "old");
  EXPECT_TRUE(file.Finish());
  EXPECT_EQ(test::ReadBytes(At("f")), "new");
  EXPECT_EQ(Names(), std::set<std::string>{"f"});
}

TEST_F(WholeFileTest, HasNoNameBeforeItsEnd) {
  WholeFile file(Text(At("f")));
  ASSERT_TRUE(file.Open());
  file.Device().write("new");
  EXPECT_EQ(Names(), std::set<std::string>());
  EXPECT_TRUE(file.Finish());
  EXPECT_EQ(Names(), std::set<std::string>{"f"});
}

TEST_F(WholeFileTest, ForgottenOneLeavesTheOld) {
  test::WriteBytes(At("f"), "old");
  {
    WholeFile file(Text(At("f")));
    ASSERT_TRUE(file.Open());
    file.Device().write("new");
  }
  EXPECT_EQ(test::ReadBytes(At("f")), "old");
  EXPECT_EQ(Names(), std::set<std::string>{"f"});
}

TEST_F(WholeFileTest, KeepsPermissions) {
  test::WriteBytes(At("f"), "old");
  fs::permissions(At("f"), fs::perms(0640));
  EXPECT_EQ(Write(At("f"), "new"), "");
  EXPECT_EQ(fs::status(At("f")).permissions(), fs::perms(0640));
}

TEST_F(WholeFileTest, NewOneHasWhatTheUserAllows) {
  const mode_t before = ::umask(027);
  EXPECT_EQ(Write(At("f"), "new"), "");
  ::umask(before);
  EXPECT_EQ(fs::status(At("f")).permissions(), fs::perms(0640));
}

TEST_F(WholeFileTest, LinkLeadsToTheFileThatIsReplaced) {
  fs::create_directory(At("d"));
  test::WriteBytes(At("d/f"), "old");
  fs::create_symlink("d/f", At("link"));
  EXPECT_EQ(Write(At("link"), "new"), "");
  EXPECT_TRUE(fs::is_symlink(At("link")));
  EXPECT_EQ(test::ReadBytes(At("d/f")), "new");
}

// As many links as the system follows; behind them the next link is replaced.
TEST_F(WholeFileTest, FortyLinksAreFollowed) {
  for (int i = 0; i < 41; ++i) fs::create_symlink(std::to_string(i + 1), At(std::to_string(i).c_str()));
  EXPECT_EQ(Write(At("1"), "of forty"), "");
  EXPECT_EQ(test::ReadBytes(At("41")), "of forty");
  EXPECT_EQ(Write(At("0"), "of forty-one"), "");
  EXPECT_FALSE(fs::is_symlink(At("40")));
  EXPECT_EQ(test::ReadBytes(At("41")), "of forty");
}

TEST_F(WholeFileTest, LinkMayLeadToAFileThatIsNotThere) {
  fs::create_symlink("f", At("link"));
  EXPECT_EQ(Write(At("link"), "new"), "");
  EXPECT_EQ(test::ReadBytes(At("f")), "new");
}

TEST_F(WholeFileTest, DeviceIsWrittenDirectly) {
  EXPECT_EQ(Write("/dev/null", "new"), "");
  EXPECT_TRUE(fs::is_character_file("/dev/null"));
  EXPECT_EQ(Write("/dev/full", "new"), "No space left on device");
}

TEST_F(WholeFileTest, FolderIsRefused) {
  fs::create_directory(At("d"));
  EXPECT_EQ(Write(At("d"), "new"), "Is a directory");
  EXPECT_EQ(Write(At("missing/f"), "new"), "No such file or directory");
}

// QFile forgets a failed write with the next one.
TEST_F(WholeFileTest, FailedWriteIsNotForgotten) {
  WholeFile file(QStringLiteral("/dev/full"));
  ASSERT_TRUE(file.Open());
  const QByteArray much(1 << 20, 'x');
  EXPECT_EQ(file.Device().write(much), -1);
  EXPECT_EQ(file.Device().write("x"), -1);
  EXPECT_FALSE(file.Finish());
  EXPECT_EQ(file.Error(), QStringLiteral("No space left on device"));
}

TEST_F(WholeFileTest, WhatAKilledProgramHasLeftIsRemoved) {
  const std::string left = NewTemporaryName(".f.");
  test::WriteBytes(At(left), "half");
  fs::create_directory(At(".d.dtsdb-0123ab"));
  test::WriteBytes(At(".f.dtsdb-0123"), "of the user");
  EXPECT_EQ(Write(At("f"), "new"), "");
  EXPECT_EQ(Names(), (std::set<std::string>{"f", ".d.dtsdb-0123ab", ".f.dtsdb-0123"}));
}

TEST_F(WholeFileTest, WhatALivingProgramWritesIsLeft) {
  const std::string busy = NewTemporaryName(".f.");
  test::WriteBytes(At(busy), "half");
  const int other = ::open(At(busy).c_str(), O_RDONLY | O_CLOEXEC);
  ASSERT_EQ(::flock(other, LOCK_EX), 0);
  EXPECT_EQ(Write(At("g"), "new"), "");
  EXPECT_TRUE(Names().contains(busy));
  ::close(other);
}

}  // namespace
}  // namespace dtsdb
