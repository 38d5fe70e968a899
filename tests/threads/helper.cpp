// A program of several threads that a test runs beside itself:
//
//     log TIMES       each thread writes so many times into the log of the breaker flow
//     folders PLACE   the threads make temporary folders at PLACE until a signal ends the program on one of them

#include <pthread.h>
#include <unistd.h>

#include <chrono>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <thread>

#include "breakerflow/internal/log.h"
#include "formats/temporary_folder.h"
#include "tests/support/helper_program.h"
#include "tests/threads/side_by_side.h"

namespace dtsdb::test {
namespace {

int WriteLogs(int times) {
  SideBySide(kThreads, [times](int thread) {
    for (int i = 0; i < times; ++i) {
      internal::OpenFlowLog();
      internal::FlowLogLines lines;
      lines << "begin " << thread << '\n';
      for (int line = 0; line < 20; ++line) lines << "line " << thread << '\n';
      lines << "end " << thread << '\n';
    }
  });
  return PrintLine("done");
}

/// Lets the signal come on another thread than this.
[[noreturn]] void EndOnAnotherThread() {
  sigset_t ends;
  ::sigemptyset(&ends);
  ::sigaddset(&ends, SIGTERM);
  ::pthread_sigmask(SIG_BLOCK, &ends, nullptr);
  std::this_thread::sleep_for(std::chrono::milliseconds(50));
  PrintLine("ends");
  ::kill(::getpid(), SIGTERM);
  for (;;) ::pause();
}

int MakeFolders(const std::filesystem::path& place) {
  SideBySide(kThreads, [&place](int thread) {
    if (thread == 0) EndOnAnotherThread();
    for (;;) {
      const tools::TemporaryFolder folder(place, "", 0700, place / "target");
      std::ofstream(folder.Path() / "file") << "bytes";
    }
  });
  return PrintLine("not ended", 1);
}

}  // namespace
}  // namespace dtsdb::test

int main(int argc, char** argv) {
  dtsdb::test::LimitLife();
  if (argc != 3) return dtsdb::test::PrintLine("wrong usage", 2);
  if (argv[1] == std::string("log")) return dtsdb::test::WriteLogs(std::atoi(argv[2]));
  return dtsdb::test::MakeFolders(argv[2]);
}
