/// \file
/// Single errors in the sources, of which a run of a program has at most one. scripts/mutate has every source begin
/// with it.
#pragma once

#include <fcntl.h>
#include <sys/mman.h>
#include <unistd.h>

#include <cstdlib>

namespace dtsdb_mutation {

/// So many errors and tests there are at most.
constexpr int kErrors = 4096;
constexpr int kTests = 4096;

/// Which errors each test comes by, in a file that all processes of a test share. Row 0 is for what isn't in a test.
struct SeenErrors {
  int test;
  char by_test[kTests][kErrors];
};

/// The number of the error that this run has, from the environment; 0 for none.
inline int Chosen() {
  static const int chosen = std::getenv("DTSDB_MUTANT") != nullptr ? std::atoi(std::getenv("DTSDB_MUTANT")) : 0;
  return chosen;
}

/// The file that DTSDB_MUTANTS_SEEN names; null without it.
inline SeenErrors* Seen() {
  static SeenErrors* const seen = [] {
    const char* const path = std::getenv("DTSDB_MUTANTS_SEEN");
    const int file = path != nullptr ? ::open(path, O_RDWR | O_CLOEXEC) : -1;
    if (file < 0) return static_cast<SeenErrors*>(nullptr);
    void* const bytes = ::mmap(nullptr, sizeof(SeenErrors), PROT_READ | PROT_WRITE, MAP_SHARED, file, 0);
    ::close(file);
    return bytes == MAP_FAILED ? nullptr : static_cast<SeenErrors*>(bytes);
  }();
  return seen;
}

/// True where this run has the error of that number.
inline bool Is(int number) {
  if (SeenErrors* const seen = Seen(); seen != nullptr) seen->by_test[seen->test][number] = 1;
  return number == Chosen();
}

}  // namespace dtsdb_mutation
