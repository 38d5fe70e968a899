// A program that writes versions is killed at random moments, by kill -9. Whatever the moment, the version that was
// written last stands there whole, or the one that was being written; the next writer goes on, and clears away what the
// killed one has left. The short form kills 20 times, FAULTS=all in the environment 1,000 times.

#include <gtest/gtest.h>
#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

#include <QTemporaryDir>
#include <atomic>
#include <chrono>
#include <csignal>
#include <iostream>
#include <random>
#include <set>
#include <thread>

#include "tests/faults/power/versions.h"
#include "tests/support/long_form.h"

namespace dtsdb::test {
namespace {

namespace fs = std::filesystem;

/// A number that two processes see.
class SharedNumber {
 public:
  SharedNumber()
      : m_number(static_cast<std::atomic<int>*>(
            ::mmap(nullptr, sizeof(std::atomic<int>), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0))) {}
  SharedNumber(const SharedNumber&) = delete;
  SharedNumber& operator=(const SharedNumber&) = delete;
  ~SharedNumber() { ::munmap(m_number, sizeof(std::atomic<int>)); }
  std::atomic<int>& operator*() const { return *m_number; }

 private:
  std::atomic<int>* m_number;
};

class KilledWriter : public testing::TestWithParam<Kept> {
 protected:
  /// Lets a process write versions from `first` on until it is killed after `life`. Returns the last that it has
  /// written, or 0.
  int WriteAndKill(int first, std::chrono::microseconds life) {
    *m_written = 0;
    const pid_t process = ::fork();
    if (process == 0) {
      ::alarm(60);
      VersionWriter writer(GetParam(), Folder());
      for (int version = first;; ++version) {
        writer.Write(version);
        *m_written = version;
      }
    }
    std::this_thread::sleep_for(life);
    ::kill(process, SIGKILL);
    int status = 0;
    ::waitpid(process, &status, 0);
    EXPECT_TRUE(WIFSIGNALED(status) && WTERMSIG(status) == SIGKILL) << "it has ended by itself";
    return *m_written;
  }

  fs::path Folder() const { return m_folder.path().toStdString(); }
  std::set<std::string> Names() const {
    std::set<std::string> names;
    for (const fs::directory_entry& entry : fs::directory_iterator(Folder())) names.insert(entry.path().filename());
    return names;
  }

  QTemporaryDir m_folder;
  SharedNumber m_written;
};

TEST_P(KilledWriter, LeavesAWholeVersion) {
  constexpr int kLongestLife = 60'000;  // microseconds
  std::minstd_rand random(2611);
  int last = 0;
  int between = 0;
  const int kills = IsLongForm() ? 1000 : 20;
  for (int i = 0; i < kills && !HasFailure(); ++i) {
    const int first = last + 1;
    const int written = WriteAndKill(first, std::chrono::microseconds(random() % kLongestLife));
    const FoundVersion found = ReadVersion(GetParam(), Folder());
    EXPECT_EQ(found.wrong, "") << "kill " << i;
    last = std::max(written, last);
    EXPECT_TRUE(found.version == last || found.version == last + 1) << found.version << ", written " << last;
    between += found.version > last ? 1 : 0;
    last = found.version;
    {
      VersionWriter next(GetParam(), Folder());
      next.Write(++last);
    }
    EXPECT_EQ(ReadVersion(GetParam(), Folder()).version, last) << "of the next writer";
    std::set<std::string> names = Names();
    names.erase("store.fdb-lock");
    EXPECT_EQ(names.size(), 1U) << "something is left: " << *names.begin();
  }
  std::cout << kills << " kills, " << last << " versions, " << between << " times the next one was there already\n";
}

INSTANTIATE_TEST_SUITE_P(All, KilledWriter, testing::Values(Kept::kObjectFile, Kept::kTextTables, Kept::kStore),
                         [](const auto& about) {
                           const std::string name = NameOf(about.param);
                           return name.substr(0, name.find('.'));
                         });

}  // namespace
}  // namespace dtsdb::test
