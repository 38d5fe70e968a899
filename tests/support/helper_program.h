/// \file
/// What the programs that run beside a test are made of. They talk to the test in lines (tests/support/process.h).
#pragma once

#include <sys/resource.h>
#include <unistd.h>

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <string>

namespace dtsdb::test {

/// Ends the program in any case after two minutes, so that none outlives a test that went wrong.
inline void LimitLife() {
  std::signal(SIGALRM, SIG_DFL);  // FastDB has a handler of its own, which does nothing
  ::alarm(120);
}

/// Prints one line. Returns `result`, for the end of the program.
inline int PrintLine(const std::string& text, int result = 0) {
  std::printf("%s\n", text.c_str());
  std::fflush(stdout);
  return result;
}

/// Prints one line and waits to be killed.
inline int PrintAndWait(const std::string& text) {
  PrintLine(text);
  for (;;) ::pause();
}

/// Lets no file of the program grow beyond `bytes`, as if the disk were full; until it ends, since then it may still
/// write how often its lines ran.
inline void LimitFileSize(rlim_t bytes) {
  std::signal(SIGXFSZ, SIG_IGN);
  rlimit limit{};
  ::getrlimit(RLIMIT_FSIZE, &limit);
  limit.rlim_cur = bytes;
  ::setrlimit(RLIMIT_FSIZE, &limit);
  std::atexit([] {
    rlimit none{};
    ::getrlimit(RLIMIT_FSIZE, &none);
    none.rlim_cur = none.rlim_max;
    ::setrlimit(RLIMIT_FSIZE, &none);
  });
}

}  // namespace dtsdb::test
