#include "include/internal/standard_streams.h"

#include <gtest/gtest.h>

#include <atomic>
#include <optional>
#include <thread>
#include <vector>

#include "tests/support/closed_streams.h"

namespace dtsdb {
namespace {

using internal::StandardStreamsKept;
using test::InProcessWithoutStreams;
using test::StreamsAreClosed;

int OpenSomething() { return ::open("/dev/null", O_RDWR | O_CLOEXEC); }

TEST(StandardStreams, FilesGetOtherDescriptorsAndTheStreamsStayClosed) {
  EXPECT_EQ(InProcessWithoutStreams([] {
              std::optional<StandardStreamsKept> kept(std::in_place);
              const bool off = OpenSomething() > STDERR_FILENO;
              const bool closed = ::write(STDOUT_FILENO, "x", 1) == -1 && errno == EBADF;
              char byte = 0;
              const bool empty = ::read(STDIN_FILENO, &byte, 1) == -1 && errno == EBADF;
              kept.reset();
              return off && closed && empty && StreamsAreClosed() ? 0 : 1;
            }),
            0);
}

TEST(StandardStreams, OneClosedStreamIsEnough) {
  for (int stream = 0; stream <= STDERR_FILENO; ++stream) {
    EXPECT_EQ(InProcessWithoutStreams([stream] {
                while (OpenSomething() < STDERR_FILENO) {
                }
                ::close(stream);
                {
                  const StandardStreamsKept kept;
                  if (OpenSomething() <= STDERR_FILENO) return 1;
                }
                return OpenSomething() == stream ? 0 : 2;
              }),
              0)
        << stream;
  }
}

TEST(StandardStreams, OpenStreamsAreLeftAlone) {
  int ends[2];
  ASSERT_EQ(::pipe(ends), 0);
  const int before = ::dup(STDIN_FILENO);
  ::dup2(ends[0], STDIN_FILENO);
  {
    const StandardStreamsKept kept;
    EXPECT_EQ(::write(ends[1], "x", 1), 1);
    char byte = 0;
    EXPECT_EQ(::read(STDIN_FILENO, &byte, 1), 1);
  }
  EXPECT_NE(::fcntl(STDIN_FILENO, F_GETFD), -1);
  ::dup2(before, STDIN_FILENO);
  for (const int descriptor : {before, ends[0], ends[1]}) ::close(descriptor);
}

TEST(StandardStreams, StreamThatTheProgramOpensMeanwhileStays) {
  EXPECT_EQ(InProcessWithoutStreams([] {
              {
                const StandardStreamsKept kept;
                const int opened = OpenSomething();
                ::dup2(opened, STDOUT_FILENO);
              }
              return ::write(STDOUT_FILENO, "x", 1) == 1 && ::fcntl(STDIN_FILENO, F_GETFD) == -1 ? 0 : 1;
            }),
            0);
}

TEST(StandardStreams, AreKeptUntilTheLastThreadIsDone) {
  EXPECT_EQ(InProcessWithoutStreams([] {
              std::atomic<bool> good = true;
              std::vector<std::thread> threads;
              for (int i = 0; i < 4; ++i) {
                threads.emplace_back([&good] {
                  for (int round = 0; round < 5000; ++round) {
                    const StandardStreamsKept kept;
                    const int opened = OpenSomething();
                    if (opened <= STDERR_FILENO) good = false;
                    ::close(opened);
                  }
                });
              }
              for (std::thread& thread : threads) thread.join();
              return good && StreamsAreClosed() ? 0 : 1;
            }),
            0);
}

}  // namespace
}  // namespace dtsdb
