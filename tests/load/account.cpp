#include "tests/load/account.h"

#include <fmt/format.h>

#include <algorithm>
#include <utility>

namespace dtsdb::load {
namespace {

constexpr std::size_t kMostFaults = 20;

}  // namespace

Account::Account(const Plan& plan, Timetable timetable) : m_plan(plan), m_timetable(timetable) {
  for (int i = 0; i < plan.Components(); ++i) m_places[plan.Component(i).load] = i;
}

void Account::AddTraced(const std::vector<TracedEvent>& events) {
  m_events.insert(m_events.end(), events.begin(), events.end());
  m_isTaken.resize(m_events.size(), false);
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
  LoggedByPlace logged = TakeLog(run.logFirst, run.logLast);
  const std::vector<TracedEvent> events = Claim(run.rows, logged);
  const int surplus = run.rows - static_cast<int>(events.size());
  if (surplus > 0) {
    m_sums.doubled += surplus;
    Fault(fmt::format("a run has taken {} rows where {} were new", run.rows, events.size()));
  }
  if (run.isIncremental) {
    Check(events, logged, true);
  } else {
    ++m_sums.fullRuns;
    m_sums.inFullRuns += static_cast<std::int64_t>(events.size());
  }
  NoteLatencies(events, run.at_ns, m_latencies);
}

/// Takes the events of a run of so many rows: the next ones of the components that it has logged, then the next ones of
/// all.
std::vector<TracedEvent> Account::Claim(int count, const LoggedByPlace& logged) {
  constexpr std::size_t kFurthest = 5000;
  const std::size_t end = std::min(m_events.size(), m_next + kFurthest + static_cast<std::size_t>(count));
  std::map<int, int> wanted;
  for (const auto& [place, got] : logged) wanted[place] = got.rows;
  std::vector<TracedEvent> events;
  const auto claimIf = [&](auto isMeant) {
    for (std::size_t i = m_next; i < end && static_cast<int>(events.size()) < count; ++i) {
      if (m_isTaken[i] || !isMeant(m_plan.ComponentOf(m_events[i].row))) continue;
      m_isTaken[i] = true;
      events.push_back(m_events[i]);
    }
  };
  claimIf([&](int place) { return wanted.contains(place) && wanted[place]-- > 0; });
  claimIf([](int) { return true; });
  while (m_next < m_events.size() && m_isTaken[m_next]) ++m_next;
  return events;
}

std::vector<TracedEvent> Account::ClaimUpTo(std::size_t end) {
  std::vector<TracedEvent> events;
  for (; m_next < end; ++m_next) {
    if (!m_isTaken[m_next]) events.push_back(m_events[m_next]);
    m_isTaken[m_next] = true;
  }
  return events;
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
  LoggedByPlace logged = TakeLog(run.logFirst, run.logLast);
  const std::vector<TracedEvent> events = ClaimUpTo(std::max(at, m_next));
  if (run.isIncremental) {
    Check(events, logged, false);
  } else {
    m_sums.inFullRuns += static_cast<std::int64_t>(events.size());
  }
  NoteLatencies(events, run.at_ns, m_latenciesOverStarts);
}

/// Takes the rows up to `last` off the log.
Account::LoggedByPlace Account::TakeLog(int first, int last) {
  LoggedByPlace logged;
  if (first == -1) return logged;
  for (; !m_log.empty() && m_log.front().number <= last; m_log.pop_front()) {
    const LogRow& row = m_log.front();
    if (row.number < first) Fault(fmt::format("log row {} belongs to no run", row.number));
    const auto place = m_places.find(row.load);
    if (row.matter == LogMatter::kOther || place == m_places.end()) continue;
    // A load that is off leaves the dead section with the next run of its level, so its moves don't count.
    const bool isBreaker = m_plan.Component(place->second).isBreaker;
    if (isBreaker != (row.matter == LogMatter::kMove)) continue;
    Logged& component = logged[place->second];
    ++component.rows;
    component.lastOn = row.isOn;
  }
  return logged;
}

/// Compares the events of a run with what it has logged. `isExact`: it has taken these and no others.
void Account::Check(const std::vector<TracedEvent>& events, LoggedByPlace& logged, bool isExact) {
  std::map<int, Logged> expected;
  for (const TracedEvent& event : events) {
    Logged& component = expected[m_plan.ComponentOf(event.row)];
    ++component.rows;
    component.lastOn = m_plan.IsOn(event.row);
  }
  for (const auto& [place, wrote] : expected) {
    const Switchable& component = m_plan.Component(place);
    const auto found = logged.extract(place);
    const Logged got = found ? found.mapped() : Logged();
    // A run that takes several events of a breaker moves its load once, or, when it ends as it was, not at all.
    const int wanted = component.isBreaker ? wrote.rows % 2 : wrote.rows;
    const bool isWrong = got.rows > 0 && got.lastOn != wrote.lastOn;
    const int missing = std::max(isWrong ? 1 : 0, wanted - got.rows);
    const int surplus = isExact ? std::max(0, got.rows - wanted) : 0;
    m_sums.lost += missing;
    m_sums.doubled += surplus;
    m_sums.logged += wrote.rows - missing;
    if (missing + surplus == 0) continue;
    Fault(fmt::format("{}: {} events, {} rows in the log", component.name, wrote.rows, got.rows));
  }
  if (!isExact) return;
  for (const auto& [place, got] : logged) {
    m_sums.doubled += got.rows;
    Fault(fmt::format("{}: no event, {} rows in the log", m_plan.Component(place).name, got.rows));
  }
}

void Account::End() {
  if (m_log.empty()) return;
  const int first = m_log.front().number;
  LoggedByPlace logged = TakeLog(first, m_log.back().number);
  int rows = 0;
  for (const auto& [place, got] : logged) rows += got.rows;
  const std::vector<TracedEvent> events = Claim(rows, logged);
  m_sums.unreported += static_cast<std::int64_t>(events.size());
  Check(events, logged, true);
}

void Account::NoteLatencies(const std::vector<TracedEvent>& events, std::int64_t at_ns,
                            std::vector<std::uint32_t>& latencies) {
  for (const TracedEvent& event : events) {
    const std::int64_t due = m_timetable.DueNs(event.row % m_plan.Writers(), event.row / m_plan.Writers());
    latencies.push_back(static_cast<std::uint32_t>(std::max<std::int64_t>(0, at_ns - due) / 1000));
  }
}

void Account::Fault(const std::string& text) {
  if (m_faults.size() < kMostFaults) m_faults.push_back(text);
}

}  // namespace dtsdb::load
