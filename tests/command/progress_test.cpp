// The line that shows how far a long work has come.

#include "command/progress.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdlib>

namespace dtsdb::tools::test {
namespace {

/// A terminal in the place of the standard error, as long as it lives.
class ErrorTerminal {
 public:
  ErrorTerminal() : m_own(::dup(STDERR_FILENO)), m_master(::posix_openpt(O_RDWR | O_NOCTTY | O_NONBLOCK)) {
    ::grantpt(m_master);
    ::unlockpt(m_master);
    const int terminal = ::open(::ptsname(m_master), O_RDWR | O_NOCTTY);
    ::dup2(terminal, STDERR_FILENO);
    ::close(terminal);
  }
  ErrorTerminal(const ErrorTerminal&) = delete;
  ErrorTerminal& operator=(const ErrorTerminal&) = delete;
  ~ErrorTerminal() {
    ::dup2(m_own, STDERR_FILENO);
    ::close(m_own);
    ::close(m_master);
  }

  /// What has been written since the last call.
  std::string Take() {
    std::string all;
    char bytes[256];
    for (ssize_t count = 0; (count = ::read(m_master, bytes, sizeof bytes)) > 0;) {
      all.append(bytes, static_cast<std::size_t>(count));
    }
    return all;
  }

 private:
  int m_own;
  int m_master;
};

constexpr const char* kErase = "\r\x1B[K";

TEST(Progress, IsALineOnTheTerminalThatIsErasedAtTheEnd) {
  ErrorTerminal terminal;
  {
    Progress progress(8, "things", std::chrono::milliseconds(0));
    progress.Show(2);
    EXPECT_EQ(terminal.Take(), std::string(kErase) + "2 of 8 things, 25 %");
  }
  EXPECT_EQ(terminal.Take(), kErase);
}

TEST(Progress, OfAShortWorkIsNothing) {
  ErrorTerminal terminal;
  {
    Progress progress(8, "things", std::chrono::hours(1));
    progress.Show(2);
  }
  EXPECT_EQ(terminal.Take(), "");
}

TEST(Progress, IsNothingWhereTheStandardErrorIsNoTerminal) {
  testing::internal::CaptureStderr();
  {
    Progress progress(8, "things", std::chrono::milliseconds(0));
    progress.Show(2);
  }
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

}  // namespace
}  // namespace dtsdb::tools::test
