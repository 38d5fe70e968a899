#include "command/trace_window.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

namespace dtsdb::tools {
namespace {

/// So many seconds a row may be stamped before it is committed: its program may have had to wait for its turn to
/// write. A stamp may be as far ahead of the clock.
constexpr u32 kMinute = 60;
/// The two clocks may differ by so many seconds without one having been set: they are read one after the other.
constexpr u32 kTolerance = 2;

/// A second that no row holds as of.
constexpr u32 kNever = std::numeric_limits<u32>::max();

u32 Before(u32 time, u32 seconds) { return time - std::min(time, seconds); }

}  // namespace

TraceWindow::TraceWindow(u32 lastRun, const TaskClock& clock)
    : m_clock(clock), m_now(clock.day()), m_nowSteady(clock.steady()) {
  m_since = Before(std::min(lastRun, m_now), kMinute);
}

TraceWindow::Taken TraceWindow::Look(TraceReader& reader) {
  GoOn();
  return Take(Read(reader));
}

void TraceWindow::GoOn() {
  const u32 now = m_clock.day();
  const double steady = m_clock.steady();
  // The look before, by the clock as it goes now.
  const u32 before = Before(now, static_cast<u32>(std::ceil(steady - std::exchange(m_nowSteady, steady))));
  m_setBack = before + kTolerance < std::exchange(m_now, now) && !m_atStart;
  if (!m_setBack) return;
  // What is known was there at the look before. Rows that come now hold after it, whatever its stamps.
  for (Row* row : InOrder(m_known)) {
    row->time = std::min(row->time, before);
    row->arrival = ++m_arrived;
  }
  m_latest = std::min(m_latest, before);
  m_since = Before(before, kMinute);
}

TraceReading TraceWindow::Read(TraceReader& reader) const {
  TraceReading reading = reader.Read(m_since, m_atStart || m_setBack);
  const auto isAhead = [this](const TraceRow& row) { return IsAhead(row.record); };
  if (!m_atStart || std::none_of(reading.rows.begin(), reading.rows.end(), isAhead)) return reading;
  return reader.Read(0, true);  // the rows behind it show when such a row was written
}

bool TraceWindow::IsAhead(const TPTRACE& row) const { return row.time > m_now && row.time - m_now > kMinute; }

/// Such a row may be from long ago: it was there before any row that was inserted behind it.
std::vector<u32> TraceWindow::TimesAtStart(const std::vector<TraceRow>& rows) const {
  std::vector<u32> times(rows.size());
  u32 next = m_now;
  for (std::size_t i = rows.size(); i-- > 0;) {
    if (!IsAhead(rows[i].record)) next = rows[i].record.time;
    times[i] = next;
  }
  return times;
}

TraceWindow::Taken TraceWindow::Take(TraceReading reading) {
  Taken taken;
  std::vector<u32> times;  // as of when the fresh rows hold
  const std::uint64_t arrivedBefore = m_arrived;
  // At a start, and when the clock was set back, all rows are put at once: those from before may be among them.
  const u32 latestBefore = m_atStart || m_setBack ? kNever : m_latest;
  const std::vector<u32> atStart = m_atStart ? TimesAtStart(reading.rows) : std::vector<u32>();
  std::unordered_map<oid_t, Row> known;
  if (!reading.whole) known.swap(m_known);
  for (std::size_t i = 0; i < reading.rows.size(); ++i) {
    TraceRow& row = reading.rows[i];
    if (row.record.time < m_since) continue;
    auto& seenBefore = reading.whole ? m_known : known;
    const auto seen = seenBefore.find(row.number);
    if (seen != seenBefore.end() && SameContents(seen->second.record, row.record)) {
      if (reading.whole) known.insert(m_known.extract(seen));
      continue;
    }
    const bool ahead = IsAhead(row.record);
    u32 time = !ahead ? row.record.time : m_atStart ? atStart[i] : m_now;
    // With the clock set back, rows of long ago are wanted again. They were there before, and don't hold any more.
    if (m_setBack && reading.continued && !row.added) time = 0;
    known[row.number] = {row.record, time, ++m_arrived};
    if (time < m_since) continue;
    m_latest = std::max(m_latest, time);
    times.push_back(time);
    if (ahead) taken.ahead.push_back(row.record);
    taken.fresh.push_back(std::move(row.record));
  }
  m_known = std::move(known);
  Part(taken, times, arrivedBefore, latestBefore);
  m_atStart = false;
  m_since = Before(m_now, kMinute);
  return taken;
}

std::vector<TraceWindow::Row*> TraceWindow::InOrder(std::unordered_map<oid_t, Row>& known) {
  std::vector<Row*> rows;
  rows.reserve(known.size());
  for (auto& [number, row] : known) rows.push_back(&row);
  // Compared by hand: an installed FastDB has an order of its own for whatever is compared by operator<.
  const auto holdsBefore = [](const Row* a, const Row* b) {
    return a->time != b->time ? a->time < b->time : a->arrival < b->arrival;
  };
  std::sort(rows.begin(), rows.end(), holdsBefore);
  return rows;
}

/// Rows that hold before the first late one were put when they came, so they needn't be put again. As a rule no row is
/// late: two programs must have written at the turn of a second, or one have waited for its turn to write.
void TraceWindow::Part(Taken& taken, const std::vector<u32>& times, std::uint64_t arrivedBefore, u32 latestBefore) {
  u32 earliest = kNever;
  std::vector<std::pair<u32, std::size_t>> inTurn;
  for (std::size_t i = 0; i < times.size(); ++i) {
    if (times[i] >= latestBefore) {
      inTurn.emplace_back(times[i], i);
      continue;
    }
    earliest = std::min(earliest, times[i]);
    taken.late.push_back(taken.fresh[i]);
  }
  std::sort(inTurn.begin(), inTurn.end());
  for (const auto& [time, place] : inTurn) taken.inTurn.push_back(taken.fresh[place]);
  if (!taken.late.empty()) taken.holding = Holding(earliest, arrivedBefore, latestBefore);
}

std::vector<TPTRACE> TraceWindow::Holding(u32 earliest, std::uint64_t arrivedBefore, u32 latestBefore) {
  std::vector<TPTRACE> records;
  for (const Row* row : InOrder(m_known)) {
    const bool isInTurn = row->arrival > arrivedBefore && row->time >= latestBefore;
    if (row->time >= std::max(m_since, earliest) && !isInTurn) records.push_back(row->record);
  }
  return records;
}

}  // namespace dtsdb::tools
