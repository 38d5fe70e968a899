#include "command/trace_reader.h"

#include <QDateTime>
#include <algorithm>
#include <chrono>
#include <unordered_set>

namespace dtsdb::tools {
namespace {

using Row = Twin<TPTRACE>::Row;

/// Further back from the end than so many rows the whole table is read: a row costs less there.
constexpr std::size_t kMostAdded = 10000;
/// So many times as long as the whole table took to read it isn't read again.
constexpr double kTracePause = 20;

TraceRow RowOf(dbCursor<Row>& cursor, const Row& stored) {
  TraceRow row;
  row.number = cursor.currentId().getOid();
  LoadSome(row.record, stored, &TPTRACE::id, &TPTRACE::name, &TPTRACE::type, &TPTRACE::status, &TPTRACE::time);
  return row;
}

}  // namespace

TaskClock TaskClock::OfMachine() {
  return {[] { return static_cast<u32>(QDateTime::currentSecsSinceEpoch()); },
          [] { return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch()).count(); }};
}

bool SameContents(const TPTRACE& a, const TPTRACE& b) {
  return a.id == b.id && a.name == b.name && a.type == b.type && a.status == b.status && a.time == b.time;
}

TraceReading TraceReader::Read(u32 since, bool whole) {
  TraceReading reading;
  const double begun = m_clock.steady();
  ReadAdded(reading);
  if (whole || !reading.continued || begun >= m_wholeDue) {
    ReadWhole(reading, since);
    const double ended = m_clock.steady();
    m_wholeDue = ended + kTracePause * (ended - begun);
  }
  m_db->commit();
  return reading;
}

void TraceReader::ReadAdded(TraceReading& reading) {
  dbCursor<Row> cursor(m_db, dbCursorViewOnly);
  const bool empty = cursor.select() <= 0;
  const Row* stored = empty ? nullptr : cursor.last();
  std::optional<TraceRow> last;
  if (stored != nullptr) last = RowOf(cursor, *stored);

  reading.continued = false;
  for (; m_last && stored != nullptr && reading.rows.size() <= kMostAdded; stored = cursor.prev()) {
    TraceRow& row = reading.rows.emplace_back(RowOf(cursor, *stored));
    row.added = true;
    if (row.number != m_last->number) continue;
    reading.continued = SameContents(row.record, m_last->record);
    reading.rows.pop_back();
    break;
  }
  if (!reading.continued) reading.rows.clear();
  std::reverse(reading.rows.begin(), reading.rows.end());
  m_last = std::move(last);
}

void TraceReader::ReadWhole(TraceReading& reading, u32 since) {
  std::unordered_set<oid_t> added;
  for (const TraceRow& row : reading.rows) added.insert(row.number);
  reading.rows.clear();
  reading.whole = true;
  dbCursor<Row> cursor(m_db, dbCursorViewOnly);
  dbQuery query;
  // A store without unsigned columns takes late times for negative ones. It then gives too many rows, and no row less.
  query = "time >= ", since, "or time < 0";
  if (cursor.select(query) <= 0) return;
  for (const auto* stored = cursor.get(); stored != nullptr; stored = cursor.next()) {
    TraceRow row = RowOf(cursor, *stored);
    if (row.record.time < since) continue;
    row.added = added.contains(row.number);
    reading.rows.push_back(std::move(row));
  }
}

}  // namespace dtsdb::tools
