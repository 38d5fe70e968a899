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

  /// What a look has brought. The fresh rows are in the order of their insertion, the others in that in which they
  /// hold.
  struct Taken {
    std::vector<TPTRACE> fresh;    ///< rows that weren't there at the look before, or had other contents
    std::vector<TPTRACE> ahead;    ///< those of them that are stamped ahead of the clock
    std::vector<TPTRACE> late;     ///< those that don't hold after all rows of the looks before
    std::vector<TPTRACE> holding;  ///< where there are late ones: these and all rows of the looks before that hold
                                   ///< after the first of them; the last one holds
    std::vector<TPTRACE> inTurn;   ///< the other fresh rows: they hold after all of these
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
  /// Parts the fresh rows, which hold as of `times`, into late ones and others.
  void Part(Taken& taken, const std::vector<u32>& times, std::uint64_t arrivedBefore, u32 latestBefore);
  /// The known rows that hold as of a second from `earliest` on, but those that hold in turn.
  std::vector<TPTRACE> Holding(u32 earliest, std::uint64_t arrivedBefore, u32 latestBefore);

  const TaskClock& m_clock;
  bool m_atStart = true;   ///< nothing was taken yet
  bool m_setBack = false;  ///< the clock was set back since the look before
  u32 m_since = 0;         ///< rows are wanted from this second on
  u32 m_now = 0;           ///< the time of this look
  double m_nowSteady = 0;  ///< the same by the steady clock
  u32 m_latest = 0;        ///< no known row holds as of a later second
  std::uint64_t m_arrived = 0;
  std::unordered_map<oid_t, Row> m_known;
};

}  // namespace dtsdb::tools
