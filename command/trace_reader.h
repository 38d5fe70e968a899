/// \file
/// Reading the trace of a realtime database, look for look, without going through all of it each time.
#pragma once

#include <functional>
#include <optional>
#include <vector>

#include "model/exchange.h"

namespace dtsdb::tools {

/// The clocks that a task goes by.
struct TaskClock {
  std::function<u32()> day;        ///< seconds since 1970, as the rows of the trace are stamped; it may be set
  std::function<double()> steady;  ///< seconds since some moment; it only goes on

  /// This machine's.
  static TaskClock OfMachine();
};

/// A row of the trace as it is stored.
struct TraceRow {
  oid_t number = 0;    ///< of the row in the database
  bool added = false;  ///< inserted since the reading before
  TPTRACE record;
};

/// True when both hold the same; the numbers of components don't count.
bool SameContents(const TPTRACE& a, const TPTRACE& b);

/// What one reading has found, in the order in which the rows were inserted.
struct TraceReading {
  std::vector<TraceRow> rows;
  bool whole = false;     ///< all rows of the table that are stamped from the given second on; else those added
  bool continued = true;  ///< the place where the reading before ended was found: `added` can be trusted
};

/// Reads the table tptrace, from the last place on: back from the table's end to the row that was the last one before.
///
/// A row that another program changes in its place is found by reading the whole table. That is done so often that it
/// takes at most a twentieth of the time; and whenever the last row of the reading before isn't there any more, or
/// isn't what it was. So a table of a few thousand rows is read as a whole at each look.
class TraceReader {
 public:
  /// Both must outlive it.
  TraceReader(dbDatabase* db, const TaskClock& clock) : m_db(db), m_clock(clock) {}

  /// Reads rows stamped from `since` on; those added whatever their stamp. With `whole` the whole table. Ends its
  /// transaction.
  TraceReading Read(u32 since, bool whole);

 private:
  /// Puts what was added behind the last place into the reading, and notes the new place.
  void ReadAdded(TraceReading& reading);
  /// Puts all rows stamped from `since` on into the reading.
  void ReadWhole(TraceReading& reading, u32 since);

  dbDatabase* m_db;
  const TaskClock& m_clock;
  std::optional<TraceRow> m_last;  ///< the last row of the table at the reading before
  double m_wholeDue = 0;           ///< the whole table is read from this moment on
};

}  // namespace dtsdb::tools
