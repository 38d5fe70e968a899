// Reading the trace of a realtime database, with clocks that the tests set.

#include <gtest/gtest.h>

#include <QTemporaryDir>
#include <algorithm>
#include <optional>
#include <string>
#include <vector>

#include "command/trace_reader.h"
#include "command/trace_window.h"
#include "formats/realtime.h"
#include "model/text.h"
#include "rtdb/volma_rtdb.h"

namespace dtsdb::tools {
namespace {

using Ids = std::vector<int>;

constexpr u32 kNoon = 1'700'000'000;

/// The table tptrace, other programs that write into it, and clocks.
class Trace : public testing::Test {
 protected:
  /// Lets so many seconds go by.
  void Wait(int seconds) {
    m_day += static_cast<u32>(seconds);
    m_steady += seconds;
  }
  void SetClock(u32 day) { m_day = day; }

  void Add(int id, u32 time, const char* name = "B", int status = 0) {
    tptrace row;
    row.id = id;
    row.name = name;
    row.type = 1;
    row.status = static_cast<nat1>(status);
    row.time = time;
    m_database.Db()->insert(row);
    m_database.Db()->commit();
  }
  /// Changes the rows of that id in their places.
  void Change(int id, u32 time, int status = 0) {
    dbCursor<tptrace> cursor(m_database.Db(), dbCursorForUpdate);
    dbQuery query;
    query = "id = ", id;
    cursor.select(query);
    for (tptrace* row = cursor.get(); row != nullptr; row = cursor.next()) {
      row->time = time;
      row->status = static_cast<nat1>(status);
      cursor.update();
    }
    m_database.Db()->commit();
  }
  void Remove(int id) {
    dbCursor<tptrace> cursor(m_database.Db(), dbCursorForUpdate);
    dbQuery query;
    query = "id = ", id;
    cursor.select(query);
    cursor.removeAllSelected();
    m_database.Db()->commit();
  }

  static Ids IdsOf(const std::vector<TPTRACE>& rows) {
    Ids ids;
    for (const TPTRACE& row : rows) ids.push_back(row.id);
    return ids;
  }

  QTemporaryDir m_folder;
  RealtimeDatabase m_database{m_folder.filePath(QStringLiteral("x")).toStdString(), dbDatabase::dbAllAccess};
  u32 m_day = kNoon;
  double m_steady = 5000;
  TaskClock m_clock{[this] { return m_day; }, [this] { return m_steady; }};
};

// The reader

class TraceReading : public Trace {
 protected:
  /// Reading the whole table takes a second by the steady clock, so it isn't read again for twenty.
  TraceReading() {
    m_clock.steady = [this] { return m_steady += 1; };
  }

  Ids Read(bool whole = false) {
    const tools::TraceReading reading = m_reader.Read(0, whole);
    m_whole = reading.whole;
    m_continued = reading.continued;
    m_added = 0;
    Ids ids;
    for (const TraceRow& row : reading.rows) {
      ids.push_back(row.record.id);
      if (row.added) ++m_added;
    }
    return ids;
  }

  TraceReader m_reader{m_database.Db(), m_clock};
  bool m_whole = false;
  bool m_continued = false;
  int m_added = 0;
};

TEST_F(TraceReading, FirstTakesTheWholeTableAndTheNextWhatWasAdded) {
  for (const int id : {30, 10, 20}) Add(id, kNoon);
  EXPECT_EQ(Read(), (Ids{30, 10, 20}));
  EXPECT_TRUE(m_whole);
  Add(5, kNoon);
  Add(40, kNoon);
  EXPECT_EQ(Read(), (Ids{5, 40}));
  EXPECT_FALSE(m_whole);
  EXPECT_TRUE(m_continued);
  EXPECT_EQ(m_added, 2);
  EXPECT_EQ(Read(), Ids{});
}

TEST_F(TraceReading, ChangeInTheMiddleIsFoundWhenTheWholeTableIsDue) {
  for (const int id : {1, 2, 3}) Add(id, kNoon);
  Read();
  Change(2, kNoon + 1);
  EXPECT_EQ(Read(), Ids{});
  m_steady += 20;
  EXPECT_EQ(Read(), (Ids{1, 2, 3}));
  EXPECT_TRUE(m_whole && m_continued);
  EXPECT_EQ(m_added, 0);
}

TEST_F(TraceReading, TableIsReadAnewWhenItsLastRowIsAnotherOneNow) {
  for (const int id : {1, 2, 3}) Add(id, kNoon);
  Read();
  Change(3, kNoon + 1);
  EXPECT_EQ(Read(), (Ids{1, 2, 3})) << "changed";
  Remove(3);
  EXPECT_EQ(Read(), (Ids{1, 2})) << "removed";
  EXPECT_FALSE(m_continued);
  Remove(1);
  Remove(2);
  EXPECT_EQ(Read(), Ids{});
  Add(4, kNoon);
  EXPECT_EQ(Read(), Ids{4}) << "emptied";
}

TEST_F(TraceReading, ManyRowsAreReadAsAWholeTable) {
  Add(-1, kNoon);
  Read();
  for (int id = 0; id < 10001; ++id) {
    tptrace row;
    row.id = id;
    row.name = "B";
    m_database.Db()->insert(row);
  }
  m_database.Db()->commit();
  EXPECT_EQ(Read().size(), 10002U);
  EXPECT_TRUE(m_whole);
}

TEST_F(TraceReading, WholeOnRequestMarksWhatWasAdded) {
  Add(1, kNoon);
  Read();
  Add(2, kNoon);
  EXPECT_EQ(Read(true), (Ids{1, 2}));
  EXPECT_EQ(m_added, 1);
}

TEST_F(TraceReading, LateTimesAreNotNegative) {
  Add(1, 0x90000000U);
  Add(2, kNoon);
  const tools::TraceReading reading = m_reader.Read(0x80000000U, true);
  ASSERT_EQ(reading.rows.size(), 1U);
  EXPECT_EQ(reading.rows[0].record.id, 1);
}

// The window

class Window : public Trace {
 protected:
  /// Begins a task whose forerunner ran last at `lastRun`.
  void Start(u32 lastRun) {
    m_reader.emplace(m_database.Db(), m_clock);
    m_window.emplace(lastRun, m_clock);
  }
  /// One look: the ids of the rows taken.
  Ids Look() {
    m_taken = m_window->Look(*m_reader);
    return IdsOf(m_taken.fresh);
  }
  /// The row that holds for B.
  int Holds() const { return Order().empty() ? -1 : Order().back(); }
  /// The ids of the rows that are put, in the order in which they hold.
  Ids Order() const {
    Ids ids = IdsOf(m_taken.holding);
    for (const TPTRACE& row : m_taken.inTurn) ids.push_back(row.id);
    return ids;
  }

  std::optional<TraceReader> m_reader;
  std::optional<TraceWindow> m_window;
  TraceWindow::Taken m_taken;
};

TEST_F(Window, RowIsTakenOnceAndAgainWhenItHasChanged) {
  Start(kNoon);
  EXPECT_EQ(Look(), Ids{});
  Add(1, kNoon);
  Add(2, kNoon - 59);
  EXPECT_EQ(Look(), (Ids{1, 2}));
  EXPECT_EQ(Holds(), 1) << "stamped later";
  Wait(1);
  EXPECT_EQ(Look(), Ids{});
  Change(1, kNoon, 1);
  EXPECT_EQ(Look(), Ids{1});
}

TEST_F(Window, WithinASecondTheLaterInsertedRowHolds) {
  Start(kNoon);
  Look();
  for (const int id : {9, 7, 8}) Add(id, kNoon);
  EXPECT_EQ(Look(), (Ids{9, 7, 8}));
  EXPECT_EQ(Order(), (Ids{9, 7, 8}));
  Add(1, kNoon);
  EXPECT_EQ(Look(), Ids{1});
  EXPECT_EQ(Holds(), 1);
}

TEST_F(Window, RowsOfTheLastMinuteComeBeforeTheOnesOfNow) {
  Start(kNoon);
  Look();
  Add(1, kNoon);
  Look();
  Wait(30);
  Look();
  Add(2, kNoon - 10);
  EXPECT_EQ(Look(), Ids{2});
  EXPECT_EQ(Order(), (Ids{2, 1})) << "row 2 happened before row 1";
}

TEST_F(Window, LateRowsAreKeptApartFromThoseThatHoldInTurn) {
  Start(kNoon);
  Look();
  Add(1, kNoon);
  Look();
  EXPECT_EQ(IdsOf(m_taken.inTurn), Ids{1});
  Wait(1);
  Add(2, kNoon + 1);
  Add(3, kNoon - 1);
  Add(4, kNoon);
  EXPECT_EQ(Look(), (Ids{2, 3, 4}));
  EXPECT_EQ(IdsOf(m_taken.late), Ids{3});
  EXPECT_EQ(IdsOf(m_taken.holding), (Ids{3, 1}));
  EXPECT_EQ(IdsOf(m_taken.inTurn), (Ids{4, 2}));
}

TEST_F(Window, RowsThatWereThereBeforeTheStartAreAllLate) {
  Add(1, kNoon);
  Add(2, kNoon);
  Start(kNoon);
  EXPECT_EQ(Look(), (Ids{1, 2}));
  EXPECT_EQ(IdsOf(m_taken.late), (Ids{1, 2}));
  EXPECT_EQ(IdsOf(m_taken.inTurn), Ids{});
}

TEST_F(Window, RowsFromLongAgoAreNotTaken) {
  Add(1, kNoon - 3600);
  Add(2, kNoon - 60);
  Start(kNoon);
  EXPECT_EQ(Look(), Ids{2});
  Wait(1);
  Look();
  Add(3, kNoon - 3600);
  EXPECT_EQ(Look(), Ids{});
}

TEST_F(Window, RowAheadOfTheClockIsTakenOnceAndHoldsAsOfNow) {
  Start(kNoon);
  Look();
  Add(1, kNoon + 60);
  EXPECT_EQ(Look(), Ids{1});
  EXPECT_EQ(m_taken.ahead.size(), 0U) << "up to a minute is no matter";
  Add(2, kNoon + 86400);
  EXPECT_EQ(Look(), Ids{2});
  EXPECT_EQ(IdsOf(m_taken.ahead), Ids{2});
  for (int i = 0; i < 100; ++i) {
    Wait(10);
    EXPECT_EQ(Look(), Ids{}) << i;
  }
  Add(3, m_day);
  EXPECT_EQ(Look(), Ids{3});
  EXPECT_EQ(Holds(), 3) << "row 2 is not in its way";
}

TEST_F(Window, RowsAheadOfTheClockHoldInTheOrderOfTheirArrival) {
  Start(kNoon);
  Look();
  Add(5, kNoon + 9000);
  Add(4, kNoon + 7000);
  EXPECT_EQ(Look(), (Ids{5, 4}));
  EXPECT_EQ(Order(), (Ids{5, 4}));
  Wait(1);
  Add(3, kNoon + 8000);
  EXPECT_EQ(Look(), Ids{3});
  EXPECT_EQ(Order(), Ids{3}) << "after rows 5 and 4";
}

TEST_F(Window, OldRowAheadOfTheClockDoesNotHoldAgainAtTheNextStart) {
  Add(1, kNoon + 86400);
  Add(2, kNoon - 5000);
  Add(3, kNoon - 10);
  Start(kNoon - 20);
  EXPECT_EQ(Look(), Ids{3}) << "row 1 was there before row 2";
  EXPECT_EQ(m_taken.ahead.size(), 0U);
  EXPECT_EQ(Holds(), 3);
  Wait(1);
  EXPECT_EQ(Look(), Ids{});
}

TEST_F(Window, LastRowAheadOfTheClockIsTakenAtTheStart) {
  Add(1, kNoon - 10);
  Add(2, kNoon + 86400);
  Start(kNoon - 20);
  EXPECT_EQ(Look(), (Ids{1, 2}));
  EXPECT_EQ(IdsOf(m_taken.ahead), Ids{2});
  EXPECT_EQ(Holds(), 2);
}

TEST_F(Window, ClockSetBackLosesNothing) {
  Start(kNoon);
  Look();
  Add(1, kNoon);
  EXPECT_EQ(Look(), Ids{1});
  Wait(1);
  SetClock(kNoon - 3600);
  Add(2, kNoon - 3600);
  EXPECT_EQ(Look(), Ids{2});
  EXPECT_EQ(Holds(), 2) << "it came after row 1";
  for (int id = 3; id < 10; ++id) {
    Wait(20);
    Add(id, m_day);
    EXPECT_EQ(Look(), Ids{id});
    EXPECT_EQ(Holds(), id);
  }
}

TEST_F(Window, ClockSetBackBringsNoOldRowBack) {
  for (int id = 0; id < 60; ++id) Add(id, kNoon - 60 * static_cast<u32>(60 - id));
  Start(kNoon);
  Look();
  Wait(1);
  SetClock(kNoon - 3000);
  EXPECT_EQ(Look(), Ids{});
  Add(100, kNoon - 3000);
  Wait(1);
  EXPECT_EQ(Look(), Ids{100});
  EXPECT_EQ(IdsOf(m_taken.ahead), Ids{});
  EXPECT_EQ(Holds(), 100);
  Change(7, m_day);
  Wait(1);
  EXPECT_EQ(Look(), Ids{7}) << "changed in its place after the clock was set";
}

TEST_F(Window, ClockSetBackKeepsTheOrderOfWhatWasTaken) {
  Start(kNoon);
  Look();
  Add(1, kNoon, "B");
  Look();
  Add(2, kNoon - 30, "B");
  Look();
  Wait(1);
  SetClock(kNoon - 1000);
  Add(3, m_day, "C");
  EXPECT_EQ(Look(), Ids{3});
  EXPECT_EQ(Order(), Ids{3}) << "after rows 2 and 1";
  Add(4, m_day - 30, "C");
  EXPECT_EQ(Look(), Ids{4});
  EXPECT_EQ(Order(), (Ids{4, 2, 1, 3}));
}

TEST_F(Window, ClockSetBackBetweenRareLooksLosesNothing) {
  Start(kNoon);
  Look();
  m_steady += 3600;  // an hour in which the clock was set back by two
  SetClock(kNoon - 3600);
  Add(1, kNoon - 7000);
  EXPECT_EQ(Look(), Ids{1});
}

TEST_F(Window, ClockThatJumpsAheadAndBackLosesNothing) {
  Start(kNoon);
  Look();
  Wait(1);
  SetClock(kNoon + 1'000'000);
  Add(1, kNoon);
  EXPECT_EQ(Look(), Ids{1});
  Wait(1);
  SetClock(kNoon + 2);
  Add(2, kNoon + 2);
  EXPECT_EQ(Look(), Ids{2});
  EXPECT_EQ(Holds(), 2);
}

TEST_F(Window, LastRunAheadOfTheClockKeepsNoRowOut) {
  Start(kNoon + 5000);
  Add(1, kNoon);
  EXPECT_EQ(Look(), Ids{1});
}

}  // namespace
}  // namespace dtsdb::tools
