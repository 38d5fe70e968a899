/// \file
/// Measuring in a process of one's own, so that the memory of one operation isn't that of another.
#pragma once

#include <malloc.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <exception>
#include <stdexcept>
#include <type_traits>

namespace dtsdb::bench {

/// What `measure` returns, called in a process of its own. Throws when that process fails; it has then written why.
template <class Measure>
auto InOwnProcess(Measure measure) {
  using Result = decltype(measure());
  static_assert(std::is_trivially_copyable_v<Result>);
  int ends[2];
  if (::pipe(ends) != 0) throw std::runtime_error("no pipe to another process");
  const pid_t child = ::fork();
  if (child == 0) {
    try {
      const Result result = measure();
      ::_exit(::write(ends[1], &result, sizeof(result)) == ssize_t{sizeof(result)} ? 0 : 1);
    } catch (const std::exception& error) {
      std::fprintf(stderr, "%s\n", error.what());
      ::_exit(1);
    }
  }
  ::close(ends[1]);
  Result result{};
  const bool whole = ::read(ends[0], &result, sizeof(result)) == ssize_t{sizeof(result)};
  ::close(ends[0]);
  int status = 0;
  if (child > 0) ::waitpid(child, &status, 0);
  if (child < 0 || !whole || status != 0) throw std::runtime_error("a measurement failed");
  return result;
}

/// Kilobytes that the process holds in memory, without what it has released.
inline long ResidentKilobytes() {
  ::malloc_trim(0);
  long pages[2] = {0, 0};
  if (FILE* file = std::fopen("/proc/self/statm", "r")) {
    if (std::fscanf(file, "%ld %ld", &pages[0], &pages[1]) != 2) pages[1] = 0;
    std::fclose(file);
  }
  return pages[1] * (::sysconf(_SC_PAGESIZE) / 1024);
}

/// Makes PeakKilobytes begin anew.
inline void ResetPeak() {
  ::malloc_trim(0);
  if (FILE* file = std::fopen("/proc/self/clear_refs", "w")) {
    std::fputs("5", file);
    std::fclose(file);
  }
}

/// The most kilobytes that the process has held since the last ResetPeak.
inline long PeakKilobytes() {
  FILE* file = std::fopen("/proc/self/status", "r");
  if (file == nullptr) return 0;
  char line[256];
  long peak = 0;
  while (std::fgets(line, sizeof(line), file) != nullptr && std::sscanf(line, "VmHWM: %ld", &peak) != 1) {
  }
  std::fclose(file);
  return peak;
}

}  // namespace dtsdb::bench
