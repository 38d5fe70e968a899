// Removing old rows from the logs in a realtime database.

#include <gtest/gtest.h>

#include "rtdb/volma_rtdb.h"
#include "tests/support/command_runner.h"

namespace dtsdb::tools {
namespace {

using test::CommandResult;
using test::Contains;
using test::IsOneLine;
using test::Workplace;

class PruneCommand : public testing::Test {
 protected:
  /// Stores the rows of both logs, numbered in their order, with these stamps.
  PruneCommand() {
    dbDatabase database;
    EXPECT_TRUE(database.open((here / "x").c_str()));
    int id = 0;
    for (const nat4 time : {100U, 300U, 200U, 300U, 300U, 1763683200U}) {
      tptrace change;
      change.id = id;
      change.time = time;
      database.insert(change);
      tpl entry;
      entry.id = id++;
      entry.time = time;
      database.insert(entry);
    }
    database.close();
  }

  std::string Prune(const char* arguments) {
    const CommandResult result = here.Run((std::string("rtdb prune x ") + arguments).c_str());
    EXPECT_EQ(result.code, 0) << result.err;
    EXPECT_EQ(result.err, "");
    return result.out;
  }

  /// The numbers of the rows that are left.
  template <class Row>
  std::vector<int> Left() {
    dbDatabase database(dbDatabase::dbReadOnly);
    EXPECT_TRUE(database.open((here / "x").c_str()));
    std::vector<int> ids;
    {
      dbCursor<Row> cursor(&database);
      cursor.select("order by id");
      for (const Row* row = cursor.get(); row != nullptr; row = cursor.next()) ids.push_back(row->id);
    }
    database.close();
    return ids;
  }

  void ExpectRefused(const char* arguments, const std::string& message) {
    const CommandResult result = here.Run((std::string("rtdb prune ") + arguments).c_str());
    EXPECT_EQ(result.code, 2) << arguments;
    EXPECT_EQ(result.out, "");
    EXPECT_EQ(result.err, "dtsdb: " + message + "\n");
    EXPECT_EQ(Left<tpl>().size(), 6U);
  }

  Workplace here;
};

TEST_F(PruneCommand, RemovesTheRowsStampedBeforeASecond) {
  EXPECT_EQ(Prune("TPL --before 300"), "TPL: 2 rows removed, 4 kept.\n");
  EXPECT_EQ(Left<tpl>(), (std::vector<int>{1, 3, 4, 5}));
  EXPECT_EQ(Left<tptrace>().size(), 6U) << "the other log stays";
  EXPECT_EQ(Prune("TPL --before 300"), "TPL: 0 rows removed, 4 kept.\n");
}

TEST_F(PruneCommand, TakesATimeOfDay) {
  EXPECT_EQ(Prune("tptrace --before 2025-11-21T00:00:00Z"), "TPTRACE: 5 rows removed, 1 kept.\n");
  EXPECT_EQ(Left<tptrace>(), std::vector<int>{5});
  EXPECT_EQ(Prune("tptrace --before 2025-11-21"), "TPTRACE: 0 rows removed, 1 kept.\n");
  EXPECT_EQ(Prune("tptrace --before 2025-11-21T00:00:01"), "TPTRACE: 1 row removed, 0 kept.\n");
}

TEST_F(PruneCommand, KeepsTheRowsStampedLast) {
  EXPECT_EQ(Prune("TPTRACE --keep 3"), "TPTRACE: 3 rows removed, 3 kept.\n");
  EXPECT_EQ(Left<tptrace>(), (std::vector<int>{3, 4, 5})) << "of one stamp the later ones";
  EXPECT_EQ(Prune("TPTRACE --keep 10"), "TPTRACE: 0 rows removed, 3 kept.\n");
  EXPECT_EQ(Prune("TPTRACE --keep 0"), "TPTRACE: 3 rows removed, 0 kept.\n");
  EXPECT_EQ(Prune("TPTRACE --keep 0"), "TPTRACE: 0 rows removed, 0 kept.\n");
}

TEST_F(PruneCommand, RefusesWhatIsNoLogOrNoRule) {
  ExpectRefused("x CB --keep 0", "table CB is no log; TPL and TPTRACE are");
  ExpectRefused("x TPL", "name the rows that go, by either --before TIME or --keep N");
  ExpectRefused("x TPL --keep 1 --before 3", "name the rows that go, by either --before TIME or --keep N");
  for (const char* time : {"yesterday", "-1", "4294967296", "2025-13-01"}) {
    ExpectRefused((std::string("x TPL --before=") + time).c_str(),
                  "'" + std::string(time) + "' is no time; write seconds since 1970 or one as in 2026-11-21T11:43:42Z");
  }
  const CommandResult negative = here.Run("rtdb prune x TPL --keep=-1");
  EXPECT_EQ(negative.code, 2);
  EXPECT_TRUE(IsOneLine(negative.err)) << negative.err;
  EXPECT_EQ(Left<tpl>().size(), 6U);
}

TEST_F(PruneCommand, MakesNoDatabase) {
  const CommandResult result = here.Run("rtdb prune y TPL --keep 1");
  EXPECT_EQ(result.code, 3);
  EXPECT_TRUE(Contains(result.err, "y.fdb: No such file or directory")) << result.err;
  EXPECT_FALSE(here.Exists("y.fdb"));
}

}  // namespace
}  // namespace dtsdb::tools
