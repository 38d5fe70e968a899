/// \file
/// What the processes of a load note about themselves, in memory that all of them share.
#pragma once

#include <atomic>
#include <chrono>
#include <cstddef>
#include <cstdint>

namespace dtsdb::load {

/// Nanoseconds of the steady clock, which is the same in all processes of the machine.
inline std::int64_t NowNs() {
  return std::chrono::steady_clock::now().time_since_epoch() / std::chrono::nanoseconds(1);
}

/// Raises `most` to `value` where that is more.
inline void NoteMost(std::atomic<std::int64_t>& most, std::int64_t value) {
  if (value > most) most = value;
}

struct WriterNotes {
  std::atomic<std::int64_t> events = 0;  ///< committed
  std::atomic<std::int64_t> slowest_ns =
      0;  ///< from the first call to the end of the commit, the wait for the turn included
  std::atomic<bool> failed = false;
};

struct ReaderNotes {
  std::atomic<std::int64_t> rows = 0;             ///< transactions that read two rows
  std::atomic<std::int64_t> tables = 0;           ///< transactions that read a whole table
  std::atomic<std::int64_t> slowestRow_ns = 0;    ///< from the beginning of the transaction to its first row
  std::atomic<std::int64_t> slowestTable_ns = 0;  ///< for a whole table
  std::atomic<std::int64_t> torn = 0;             ///< transactions whose rows contradicted each other
  std::atomic<bool> failed = false;
};

struct ViewerNotes {
  std::atomic<std::int64_t> events = 0;
  std::atomic<std::int64_t> bytes = 0;
  std::atomic<std::int64_t> last_ns = 0;  ///< when the last event came
  std::atomic<bool> connected = false;
};

inline constexpr int kMostActors = 64;  ///< of a kind

/// Lives in shared memory; all zero at the beginning.
struct Notes {
  std::atomic<bool> writersStop = false;
  std::atomic<bool> stop = false;
  char page[256] = "";  ///< the address of the page, once hasPage is set
  std::atomic<bool> hasPage = false;
  WriterNotes writers[kMostActors];
  ReaderNotes readers[kMostActors];
  ViewerNotes viewers[kMostActors];

  /// The notes of a load, which its later children share.
  static Notes& Shared();
};

}  // namespace dtsdb::load
