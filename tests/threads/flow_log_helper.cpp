// A program of whose threads each writes into the log of the breaker flow. Its arguments: how many threads, and how
// many times each writes.

#include <cstdlib>

#include "breakerflow/internal/log.h"
#include "tests/support/helper_program.h"
#include "tests/threads/side_by_side.h"

int main(int argc, char** argv) {
  using namespace dtsdb::test;
  LimitLife();
  const int threads = argc > 1 ? std::atoi(argv[1]) : 1;
  const int times = argc > 2 ? std::atoi(argv[2]) : 1;
  SideBySide(threads, [times](int thread) {
    for (int i = 0; i < times; ++i) {
      dtsdb::internal::OpenFlowLog();
      dtsdb::internal::FlowLogLines lines;
      lines << "begin " << thread << '\n';
      for (int line = 0; line < 20; ++line) lines << "line " << thread << '\n';
      lines << "end " << thread << '\n';
    }
  });
  return PrintLine("done");
}
