#include "tests/load/account.h"

#include <fmt/format.h>

#include <algorithm>
#include <set>
#include <utility>

namespace dtsdb::load {
namespace {

constexpr std::size_t kMostFaults = 20;

}  // namespace

Account::Account(const Plan& plan, Timetable timetable) : m_plan(plan), m_timetable(timetable) {
  for (int i = 0; i < plan.Components(); ++i) m_isOurs[plan.Component(i).load] = true;
}

void Account::AddTraced(const std::vector<TracedEvent>& events) {
  m_events.insert(m_events.end(), events.begin(), events.end());
  m_sums.written += static_cast<std::int64_t>(events.size());
}

void Account::AddLog(const std::vector<LogRow>& rows) {
  m_log.insert(m_log.end(), rows.begin(), rows.end());
  m_sums.logRows += static_cast<std::int64_t>(rows.size());
}

void Account::Begin(std::uint32_t since) {
  m_since = since;
  m_isFirst = true;
}

void Account::AddRun(const RunLine& run) {
  ++m_sums.runs;
  if (run.failed) {
    ++m_sums.failedRuns;
    Fault(fmt::format("a run of {} rows failed", run.rows));
  }
  if (std::exchange(m_isFirst, false)) {
    TakeFirst(run);
    return;
  }
  if (!run.isIncremental) ++m_sums.fullRuns;
  const std::size_t end = m_next + static_cast<std::size_t>(run.rows);
  if (end > m_events.size()) {
    Fault(fmt::format("a run has taken {} rows where {} were new", run.rows, m_events.size() - m_next));
    m_sums.doubled += static_cast<std::int64_t>(end - m_events.size());
  }
  TakeEvents(std::min(end, m_events.size()), run, true);
}

/// The first run of a life takes every row stamped from m_since on that was there: the row at which their number is
/// reached is the last one that it has taken.
void Account::TakeFirst(const RunLine& run) {
  std::size_t at = m_events.size();
  constexpr std::uint32_t kOutOfOrder = 5;  // seconds by which the stamps of rows that follow each other may differ
  while (at > 0 && m_events[at - 1].time + kOutOfOrder >= m_since) --at;
  int left = run.rows;
  for (; at < m_events.size() && left > 0; ++at) {
    if (m_events[at].time >= m_since) {
      --left;
      if (at < m_next) ++m_sums.repeated;
      continue;
    }
    if (at < m_next) continue;
    ++m_sums.lost;
    Fault(fmt::format("row {} was stamped before those that a start takes", m_events[at].row));
  }
  if (left > 0 || at < m_next) {
    Fault(fmt::format("the first run has taken {} rows, of {} that were there", run.rows, run.rows - left));
    m_sums.doubled += left;
  }
  TakeEvents(std::max(at, m_next), run, false);
}

/// Accounts for all events up to `end`. `isExact`: the run has taken these and no others.
void Account::TakeEvents(std::size_t end, const RunLine& run, bool isExact) {
  LoggedByLoad logged = TakeLog(run.logFirst, run.logLast);
  if (run.isIncremental) {
    Check(m_next, end, logged, isExact);
  } else {
    m_sums.inFullRuns += static_cast<std::int64_t>(end - m_next);
  }
  NoteLatencies(end, run.at_ns, isExact ? m_latencies : m_latenciesOverStarts);
  m_next = end;
}

Account::LoggedByLoad Account::TakeLog(int first, int last) {
  LoggedByLoad logged;
  if (first == -1) return logged;
  while (!m_log.empty() && m_log.front().number <= last) {
    const LogRow& row = m_log.front();
    if (row.number < first) Fault(fmt::format("log row {} belongs to no run", row.number));
    if (row.isLoad && m_isOurs.contains(row.name)) {
      Logged& load = logged[row.name];
      const bool isSection = row.event == "BS";
      ++(isSection ? load.sections : load.changes);
      if (!isSection) load.lastOn = row.event == "UNREMOVE";
    }
    m_log.pop_front();
  }
  return logged;
}

void Account::Check(std::size_t begin, std::size_t end, LoggedByLoad& logged, bool isExact) {
  struct Events {
    int count = 0;
    bool lastOn = false;
  };
  std::map<int, Events> events;  // of the components
  for (std::size_t i = begin; i < end; ++i) {
    Events& of = events[m_plan.ComponentOf(m_events[i].row)];
    ++of.count;
    of.lastOn = m_plan.IsOn(m_events[i].row);
  }
  for (const auto& [place, of] : events) {
    const int count = of.count;
    const Switchable& component = m_plan.Component(place);
    const auto found = logged.extract(component.load);
    const Logged got = found ? found.mapped() : Logged();
    // The log has one change of section for all events that a run takes of a component, none for an even number.
    const int changes = component.isBreaker ? 0 : count;
    const int sections = count % 2;
    const bool isWrong = isExact && changes > 0 && got.changes > 0 && got.lastOn != of.lastOn;
    const int missing = std::max({isWrong ? 1 : 0, changes - got.changes, sections - got.sections});
    const int surplus = isExact ? std::max({0, got.changes - changes, got.sections - sections}) : 0;
    m_sums.lost += missing;
    m_sums.doubled += surplus;
    m_sums.logged += count - missing;
    if (missing + surplus == 0) continue;
    Fault(fmt::format("{}: {} events, in the log {} changes of state and {} of section", component.name, count,
                      got.changes, got.sections));
  }
  if (!isExact) return;
  for (const auto& [load, got] : logged) {
    ++m_sums.doubled;
    Fault(fmt::format("{}: no event, in the log {} changes of state and {} of section", load, got.changes,
                      got.sections));
  }
}

void Account::End() {
  if (m_log.empty()) return;
  const int first = m_log.front().number;
  const int last = m_log.back().number;
  LoggedByLoad logged = TakeLog(first, last);
  std::size_t end = m_next;
  std::set<std::string> found;
  for (; end < m_events.size() && found.size() < logged.size(); ++end) {
    const std::string& load = m_plan.Component(m_plan.ComponentOf(m_events[end].row)).load;
    if (!logged.contains(load)) break;
    found.insert(load);
  }
  m_sums.unreported += static_cast<std::int64_t>(end - m_next);
  Check(m_next, end, logged, true);
  m_next = end;
}

void Account::NoteLatencies(std::size_t end, std::int64_t at_ns, std::vector<std::uint32_t>& latencies) {
  for (std::size_t i = m_next; i < end; ++i) {
    const int row = m_events[i].row;
    const std::int64_t due = m_timetable.DueNs(row % m_plan.Writers(), row / m_plan.Writers());
    latencies.push_back(static_cast<std::uint32_t>(std::max<std::int64_t>(0, at_ns - due) / 1000));
  }
}

void Account::Fault(const std::string& text) {
  if (m_faults.size() < kMostFaults) m_faults.push_back(text);
}

}  // namespace dtsdb::load
