/// \file
/// The account of a load: each row of the trace, and what became of it.
#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <map>
#include <string>
#include <vector>

#include "tests/load/actors.h"
#include "tests/load/network.h"

namespace dtsdb::load {

/// A row of the trace, in the order in which the rows were inserted.
struct TracedEvent {
  int row = 0;             ///< its number, as the plan gave it
  std::uint32_t time = 0;  ///< its stamp
};

/// What a row of the log is about.
enum class LogMatter {
  kOther,
  kState,  ///< a load was taken out or put back
  kMove,   ///< a load has left the dead section or come there
};

/// A row of the log.
struct LogRow {
  int number = 0;
  LogMatter matter = LogMatter::kOther;
  bool isOn = false;  ///< the load was put back, or has left the dead section
  std::string load;   ///< its identity
};

/// A line of the topology task about a run.
struct RunLine {
  bool isIncremental = false;
  bool failed = false;
  int rows = 0;       ///< of the trace
  int logFirst = -1;  ///< its rows in the log, -1 for none
  int logLast = -1;
  std::int64_t at_ns = 0;
};

/// Follows the task through its lives. Within a life every row of the trace is taken by one run, in the order of
/// insertion but for a few that were stamped in the second before; an incremental run logs for each event what
/// Switchable has. At the start of a life the rows from a minute before the last run on are taken again, which is
/// documented.
class Account {
 public:
  struct Sums {
    std::int64_t written = 0;     ///< rows of the trace
    std::int64_t logged = 0;      ///< events whose rows stand in the log once
    std::int64_t inFullRuns = 0;  ///< events that a full run has followed up, which keeps no log
    std::int64_t repeated = 0;    ///< rows taken again at the start of a life
    std::int64_t lost = 0;        ///< events that no run has taken, or whose rows the log lacks
    std::int64_t doubled = 0;     ///< rows of the log about our components that no event accounts for
    std::int64_t runs = 0;        ///< all of them
    std::int64_t fullRuns = 0;    ///< of these, those behind a start not counted
    std::int64_t failedRuns = 0;
    std::int64_t logRows = 0;
    std::int64_t unreported = 0;  ///< events of runs that were committed but not reported, for the task was killed
  };

  /// The plan must outlive it.
  Account(const Plan& plan, Timetable timetable);

  void AddTraced(const std::vector<TracedEvent>& events);
  void AddLog(const std::vector<LogRow>& rows);
  /// A life begins: rows are taken again that are stamped from `since` on.
  void Begin(std::uint32_t since);
  /// All rows of the trace and the log that the run has seen must have been added.
  void AddRun(const RunLine& run);
  /// A life has ended, all its lines have been added and all that it left in the log. What is left there over belongs
  /// to a run that was committed before its line was written.
  void End();

  const Sums& Result() const { return m_sums; }
  /// True when each row of the trace has been accounted for.
  bool IsUpToDate() const { return m_next == m_events.size(); }
  /// From when an event was due to the line of the run that has followed it up, in microseconds.
  const std::vector<std::uint32_t>& Latencies() const { return m_latencies; }
  /// The same of the events that the first run of a life has followed up: they had to wait for a task.
  const std::vector<std::uint32_t>& LatenciesOverStarts() const { return m_latenciesOverStarts; }
  /// What was wrong, a line each; the first few.
  const std::vector<std::string>& Faults() const { return m_faults; }

 private:
  /// What a run has logged about one of our components.
  struct Logged {
    int rows = 0;
    bool lastOn = false;
  };
  using LoggedByPlace = std::map<int, Logged>;

  LoggedByPlace TakeLog(int first, int last);
  void TakeFirst(const RunLine& run);
  std::vector<TracedEvent> Claim(int count, const LoggedByPlace& logged);
  std::vector<TracedEvent> ClaimUpTo(std::size_t end);
  void Check(const std::vector<TracedEvent>& events, LoggedByPlace& logged, bool isExact);
  void NoteLatencies(const std::vector<TracedEvent>& events, std::int64_t at_ns, std::vector<std::uint32_t>& latencies);
  void Fault(const std::string& text);

  const Plan& m_plan;
  Timetable m_timetable;
  std::vector<TracedEvent> m_events;
  std::vector<bool> m_isTaken;  ///< the events, by a run
  std::size_t m_next = 0;       ///< the first event that no run has taken
  std::deque<LogRow> m_log;
  bool m_isFirst = true;  ///< the next run is the first one of its life
  std::uint32_t m_since = 0;
  std::map<std::string, int> m_places;  ///< of our components in the plan, by their loads
  std::vector<std::uint32_t> m_latencies;
  std::vector<std::uint32_t> m_latenciesOverStarts;
  std::vector<std::string> m_faults;
  Sums m_sums;
};

}  // namespace dtsdb::load
