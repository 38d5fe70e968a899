/// \file
/// Which rows of the trace are new, and in what order they hold, whatever the clocks of the programs that write them.
#pragma once

#include <cstdint>
#include <unordered_map>
#include <vector>

#include "command/trace_reader.h"

namespace dtsdb::tools {

/// The rows of the last minute, and those that a further reading gives again.
///
/// A row holds as of its stamp; one stamped more than a minute ahead of the clock as of the look that has found it. Of
/// rows that hold as of the same second the later arrived holds longer.
class TraceWindow {
 public:
  /// `lastRun`: the second of the last run of a task before this one. Rows are wanted from a minute before it on.
  TraceWindow(u32 lastRun, const TaskClock& clock);

  /// What a look has brought.
  struct Taken {
    std::vector<TPTRACE> fresh;    ///< rows that weren't there at the look before, or had other contents
    std::vector<TPTRACE> ahead;    ///< those of them that are stamped ahead of the clock
    std::vector<TPTRACE> holding;  ///< in the order in which they hold, the last one longest: the fresh rows, and those
                                   ///< of the last minute that hold after the first of them
    bool inTurn = false;  ///< each fresh row holds after all rows of the looks before, so they can be taken one by one
  };
  Taken Look(TraceReader& reader);

 private:
  struct Row {
    TPTRACE record;
    u32 time = 0;               ///< as of when it holds
    std::uint64_t arrival = 0;  ///< rises from row to row
  };

  /// Goes to the present time.
  void GoOn();
  TraceReading Read(TraceReader& reader) const;
  Taken Take(TraceReading reading);
  bool IsAhead(const TPTRACE& row) const;
  /// As of when the rows of a first reading hold that are stamped ahead of the clock, by their places.
  std::vector<u32> TimesAtStart(const std::vector<TraceRow>& rows) const;
  /// The rows in the order in which they hold.
  static std::vector<Row*> InOrder(std::unordered_map<oid_t, Row>& known);
  /// The rows that hold as of `earliest` or later.
  std::vector<TPTRACE> Holding(u32 earliest);
  void PutHolding(Taken& taken, const std::vector<u32>& times, u32 latestBefore);

  const TaskClock& m_clock;
  bool m_atStart = true;   ///< nothing was taken yet
  bool m_setBack = false;  ///< the clock was set back since the look before
  u32 m_since = 0;         ///< rows are wanted from this second on
  u32 m_now = 0;           ///< the time of this look
  double m_nowSteady = 0;  ///< the same by the steady clock
  u32 m_latest = 0;  ///< no known row holds as of a later second
  std::uint64_t m_arrived = 0;
  std::unordered_map<oid_t, Row> m_known;
};

}  // namespace dtsdb::tools
