#include "tests/load/actors.h"

#include <poll.h>

#include <algorithm>
#include <ctime>
#include <random>
#include <string_view>
#include <thread>
#include <vector>

#include "model/record_bits.h"
#include "tests/load/page_stream.h"

namespace dtsdb::load {
namespace {

constexpr int kLoadType = 3;  // of a row of the trace, as a breaker's is 1
constexpr nat4 kDead = 1;     // of a load's tp_status
constexpr int kRowsForATable = 200;

/// Waits until a moment; false when the writers have to stop before.
bool WaitUntil(std::int64_t moment_ns, const std::atomic<bool>& stop) {
  constexpr std::int64_t kPart = 50'000'000;
  for (std::int64_t left = moment_ns - NowNs(); left > 0 && !stop; left = moment_ns - NowNs()) {
    std::this_thread::sleep_for(std::chrono::nanoseconds(std::min(left, kPart)));
  }
  return !stop;
}

/// One read transaction on a breaker and its load: false where they contradict each other.
bool ReadPair(dbDatabase& database, const Switchable& pair, ReaderNotes& notes) {
  const std::int64_t begun = NowNs();
  dbCursor<cb> breaker(&database);
  dbQuery named;
  named = "id = ", pair.name.c_str();
  const bool found = breaker.select(named) == 1;
  NoteMost(notes.slowestRow_ns, NowNs() - begun);
  const bool isOpen = found && (breaker->flags & CB_OPEN) != 0;
  dbCursor<ld> load(&database);
  named = "id = ", pair.load.c_str();
  const bool whole = found && load.select(named) == 1 && ((load->tp_status & kDead) != 0) == isOpen;
  database.commit();
  return whole;
}

/// Reads the longest table of results, what hangs on the sections, in one transaction.
void ReadTables(dbDatabase& database, ReaderNotes& notes) {
  const std::int64_t begun = NowNs();
  std::int64_t rows = 0;
  dbCursor<bsl> list(&database);
  if (list.select("order by id") > 0) {
    for (const bsl* row = list.first(); row != nullptr; row = list.next()) ++rows;
  }
  database.commit();
  if (rows == 0) ++notes.torn;
  NoteMost(notes.slowestTable_ns, NowNs() - begun);
}

}  // namespace

void WriteEvents(const std::string& store, const Plan& plan, const Timetable& timetable, int writer, Notes& notes) {
  WriterNotes& mine = notes.writers[writer];
  dbDatabase database;
  if (!database.open(store.c_str())) {
    mine.failed = true;
    return;
  }
  for (int number = 0; WaitUntil(timetable.DueNs(writer, number), notes.writersStop); ++number) {
    const std::int64_t begun = NowNs();
    tptrace row;
    row.id = plan.RowOf(writer, number);
    const Switchable& component = plan.Component(plan.ComponentOf(row.id));
    row.name = component.name.c_str();
    row.type = component.isBreaker ? 1 : kLoadType;
    row.n1 = -1;
    row.status = plan.IsOn(row.id) ? 1 : 0;
    row.time = static_cast<nat4>(std::time(nullptr));
    database.insert(row);
    database.commit();
    NoteMost(mine.slowest_ns, NowNs() - begun);
    ++mine.events;
  }
  database.close();
}

void ReadRows(const std::string& store, const Plan& plan, int reader, Notes& notes) {
  ReaderNotes& mine = notes.readers[reader];
  dbDatabase database(dbDatabase::dbReadOnly);
  if (!database.open(store.c_str())) {
    mine.failed = true;
    return;
  }
  std::mt19937 random(static_cast<unsigned>(reader));
  std::uniform_int_distribution<int> places(0, plan.Components() - 1);
  while (!notes.stop) {
    const Switchable& component = plan.Component(places(random));
    if (component.isBreaker) {
      if (!ReadPair(database, component, mine)) ++mine.torn;
      if (++mine.rows % kRowsForATable == 0) {
        ReadTables(database, mine);
        ++mine.tables;
      }
    }
    std::this_thread::sleep_for(std::chrono::milliseconds(2));
  }
  database.close();
}

void WatchPage(int viewers, Notes& notes) {
  while (!notes.hasPage && !notes.stop) std::this_thread::sleep_for(std::chrono::milliseconds(10));
  std::vector<PageStream> streams;
  for (int i = 0; i < viewers; ++i) streams.emplace_back(notes.page);
  std::vector<pollfd> waiting;
  for (const PageStream& stream : streams) waiting.push_back({stream.Socket(), POLLIN, 0});
  for (int i = 0; i < viewers; ++i) notes.viewers[i].connected = streams[static_cast<std::size_t>(i)].IsOpen();
  while (!notes.stop) {
    if (::poll(waiting.data(), waiting.size(), 200) <= 0) continue;
    for (std::size_t i = 0; i < streams.size(); ++i) {
      if (waiting[i].revents == 0) continue;
      ViewerNotes& viewer = notes.viewers[i];
      const PageStream::Taken taken = streams[i].Take();
      viewer.bytes += taken.bytes;
      viewer.events += taken.events;
      if (taken.events > 0) viewer.last_ns = NowNs();
      if (!streams[i].IsOpen()) {
        viewer.connected = false;
        waiting[i].fd = -1;
      }
    }
  }
}

}  // namespace dtsdb::load
