// The power fails while versions are written: the fault library has written down what a program has written and
// synchronised, and every moment of it is played again, with what the disk had not confirmed on it or not. What stands
// there then is a whole version, no older one than is promised. The short form plays some moments, FAULTS=all in the
// environment each, with many choices of what has reached the disk.

#include <gtest/gtest.h>

#include <QDir>
#include <QProcess>
#include <QTemporaryDir>
#include <iostream>

#include "include/write_whole.h"
#include "tests/faults/faulted_command.h"
#include "tests/faults/power/disk.h"
#include "tests/faults/power/versions.h"
#include "tests/support/bytes.h"
#include "tests/support/long_form.h"
#include "tests/support/places.h"

namespace dtsdb::test {
namespace {

namespace fs = std::filesystem;

/// What a program that writes versions does to a disk. The folder is where the tests run, since in a memory file system
/// a store synchronises nothing.
std::vector<Change> Record(Kept kept, int versions) {
  const QTemporaryDir place(QDir::currentPath() + QStringLiteral("/power-XXXXXX"));
  const QTemporaryDir notes(QStringLiteral("/dev/shm/power-XXXXXX"));
  const fs::path record = notes.filePath(QStringLiteral("record")).toStdString();
  WriteBytes(record, "");
  {
    const tools::test::FaultLibraryLoaded loaded(place.path().toStdString(), {}, record);
    QProcess writer;
    writer.start(QString::fromUtf8(TestProgram()),
                 {place.path(), QString::fromUtf8(NameOf(kept)), QString::number(versions)});
    writer.waitForFinished();
    EXPECT_EQ(writer.exitCode(), 0) << writer.readAllStandardError().toStdString();
  }
  return ReadChanges(record);
}

class PowerFailure : public testing::TestWithParam<Kept> {
 protected:
  /// How many versions may be lost that were written: a store doesn't wait for the head of its last commit.
  int MayLose() const { return GetParam() == Kept::kStore ? 1 : 0; }

  /// Looks at what is left on `disk`. An empty text, or what is wrong.
  std::string Judge(const Disk& disk, const Survival& survival, bool goesOn) {
    const QTemporaryDir folder(QStringLiteral("/dev/shm/power-XXXXXX"));
    const fs::path path = folder.path().toStdString();
    disk.Make(survival, path);
    ++m_looks;
    const FoundVersion found = ReadVersion(GetParam(), path);
    if (!found.wrong.empty()) return found.wrong;
    if (found.version < disk.Mark() - MayLose()) return "version " + std::to_string(found.version) + " is too old";
    if (found.version > disk.Mark() + 1) return "version " + std::to_string(found.version) + " isn't written yet";
    return goesOn ? GoOn(path, disk.Mark() + 2) : "";
  }

  /// The next writer after the failure.
  std::string GoOn(const fs::path& path, int version) {
    try {
      VersionWriter writer(GetParam(), path);
      writer.Write(version);
    } catch (const std::exception& error) {
      return std::string("the next writer: ") + error.what();
    }
    const FoundVersion found = ReadVersion(GetParam(), path);
    if (!found.wrong.empty() || found.version != version) return "after the next writer: " + found.wrong;
    for (const fs::directory_entry& entry : fs::directory_iterator(path)) {
      if (IsTemporaryName(entry.path().filename().string())) return "something is left";
    }
    return "";
  }

  /// The ways in which the changes that aren't confirmed reach the disk at one moment.
  static std::vector<Survival> WaysAt(const Disk& disk, unsigned seed) {
    std::vector<Survival> ways = {Survival::Whole(true), Survival::Whole(false)};
    const auto most = static_cast<int>(IsLongForm() ? 24 : 1);
    for (const long place : Spread(disk.Pending(), most)) {
      ways.push_back(Survival::Single(static_cast<int>(place) - 1, true));
      ways.push_back(Survival::Single(static_cast<int>(place) - 1, false));
    }
    for (unsigned i = 0; i < (IsLongForm() ? 24U : 2U); ++i) ways.push_back(Survival::Chance(seed * 1000 + i));
    return ways;
  }

  /// Plays all moments, and returns the first fault.
  std::string Play(const std::vector<Change>& changes) {
    const long moments = IsLongForm() ? 100'000 : 60;
    for (const long count : Spread(static_cast<long>(changes.size()), moments)) {
      const Disk disk(changes, static_cast<std::size_t>(count));
      int number = 0;
      for (const Survival& survival : WaysAt(disk, static_cast<unsigned>(count))) {
        const std::string wrong = Judge(disk, survival, number++ % 8 == 0);
        if (!wrong.empty()) {
          return "after " + std::to_string(count) + " changes, way " + std::to_string(number) + ", mark " +
                 std::to_string(disk.Mark()) + ": " + wrong;
        }
      }
    }
    return "";
  }

  int m_looks = 0;
};

TEST_P(PowerFailure, LeavesAWholeVersionThatIsNotTooOld) {
  const std::vector<Change> changes = Record(GetParam(), IsLongForm() ? 30 : 6);
  ASSERT_GT(changes.size(), 20U);
  EXPECT_EQ(Play(changes), "");
  std::cout << changes.size() << " changes, " << m_looks << " looks\n";
}

// A judge that finds nothing wrong where nothing was synchronised would be no judge.
TEST_P(PowerFailure, IsNoticedWhereNothingIsSynchronised) {
  std::vector<Change> changes = Record(GetParam(), 6);
  std::erase_if(changes, [](const Change& change) { return change.head.kind == ChangeKind::kSync; });
  EXPECT_NE(Play(changes), "");
}

INSTANTIATE_TEST_SUITE_P(All, PowerFailure, testing::Values(Kept::kObjectFile, Kept::kTextTables, Kept::kStore),
                         [](const auto& about) {
                           const std::string name = NameOf(about.param);
                           return name.substr(0, name.find('.'));
                         });

}  // namespace
}  // namespace dtsdb::test
