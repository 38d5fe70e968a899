/// \file
/// The programs beside the topology task: those that write events, those that read, those that watch the page. Each
/// runs in a process of its own, with a database of its own, until the notes have it stop.
#pragma once

#include <cstdint>
#include <string>

#include "tests/load/network.h"
#include "tests/load/notes.h"

namespace dtsdb::load {

/// When the events of a load are due.
struct Timetable {
  std::int64_t begin_ns = 0;  ///< by the steady clock
  double rate = 0;            ///< events a second, of all writers together
  int writers = 0;

  /// When event `number` of a writer is due. Those of the writers fall between each other.
  std::int64_t DueNs(int writer, int number) const {
    const double place = static_cast<double>(number) * writers + writer;
    return begin_ns + static_cast<std::int64_t>(place / rate * 1e9);
  }
};

/// Puts a row into the trace for each event when it is due, one transaction each. One that is late is made up for.
void WriteEvents(const std::string& store, const Plan& plan, const Timetable& timetable, int writer, Notes& notes);

/// Reads breakers with their loads, and now and then whole tables, each in one transaction. A breaker that is open and
/// whose load is live, or the other way round, is half a commit.
void ReadRows(const std::string& store, const Plan& plan, int reader, Notes& notes);

/// Follows the events of the page as so many viewers, once its address is noted.
void WatchPage(int viewers, Notes& notes);

}  // namespace dtsdb::load
