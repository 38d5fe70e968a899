// Realtime databases of several threads of one program.

#include <gtest/gtest.h>

#include <atomic>
#include <barrier>
#include <filesystem>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include "rtdb/backend.h"
#include "tests/rtdb/samples.h"
#include "tests/threads/side_by_side.h"

REGISTER_UNASSIGNED(sample::entry);

namespace sample {

/// A table that only one database at a time has.
struct claimed {
  int4 id = 0;
  TYPE_DESCRIPTOR((KEY(id, INDEXED)));
};
REGISTER(claimed);

}  // namespace sample

namespace dtsdb::test {
namespace {

using sample::entry;

constexpr int kRounds = 20;

class Stores : public testing::Test {
 protected:
  bool Open(dbDatabase& database, const std::string& name = "store.fdb") const {
    return database.open(folder.File(name).c_str(), folder.File(name).c_str());
  }
  static void Add(dbDatabase& database, int id, int value) {
    entry row;
    row.id = id;
    row.value = value;
    row.text = "text";
    EXPECT_NE(database.insert(row).getOid(), 0U);
  }
  static long long Sum(dbDatabase& database) {
    long long sum = 0;
    dbCursor<entry> cursor(&database);
    cursor.select("order by id");
    for (const entry* row = cursor.get(); row != nullptr; row = cursor.next()) sum += row->value;
    return sum;
  }

  Folder folder;
};

TEST_F(Stores, OfDifferentFilesDoNotMeet) {
  SideBySide(kThreads, [&](int thread) {
    const std::string name = std::to_string(thread) + ".fdb";
    for (int round = 0; round < kRounds; ++round) {
      dbDatabase database;
      ASSERT_TRUE(Open(database, name));
      Add(database, round, thread);
      database.commit();
      EXPECT_EQ(Sum(database), (round + 1) * thread);
      database.close();
    }
  });
}

TEST_F(Stores, OfOneFileAreOpenedAndClosedAtTheSameTime) {
  SideBySide(kThreads, [&](int thread) {
    for (int round = 0; round < kRounds; ++round) {
      dbDatabase database;
      ASSERT_TRUE(Open(database));
      Add(database, thread * kRounds + round, 1);
      database.commit();
      database.close();
    }
  });
  dbDatabase database;
  ASSERT_TRUE(Open(database));
  EXPECT_EQ(Sum(database), kThreads * kRounds);
}

TEST_F(Stores, ShowReadersWholeCommitsBesideAWriter) {
  dbDatabase database;
  ASSERT_TRUE(Open(database));
  Add(database, 0, 1000);
  Add(database, 1, -1000);
  database.commit();
  std::atomic<bool> hasEnded = false;
  SideBySide(kThreads, [&](int thread) {
    database.attach();
    if (thread == 0) {
      dbCursor<entry> cursor(&database, dbCursorForUpdate);
      for (int round = 0; round < 10 * kRounds; ++round) {
        cursor.select("order by id");
        cursor->value += round;
        cursor.update();
        cursor.next();
        cursor->value -= round;
        cursor.update();
        database.commit();
      }
      hasEnded = true;
    }
    do {
      EXPECT_EQ(Sum(database), 0);
      database.commit();
    } while (!hasEnded);
    database.detach();
  });
}

TEST_F(Stores, AreAttachedToAndLeftByThreads) {
  dbDatabase database;
  ASSERT_TRUE(Open(database));
  SideBySide(kThreads, [&](int thread) {
    for (int round = 0; round < kRounds; ++round) {
      database.attach();
      Add(database, thread * kRounds + round, 1);
      database.detach(round % 2 == 0 ? dbDatabase::COMMIT | dbDatabase::DESTROY_CONTEXT : dbDatabase::DESTROY_CONTEXT);
    }
  });
  database.attach();
  EXPECT_EQ(Sum(database), kThreads * kRounds / 2) << "half of them were rolled back";
}

TEST_F(Stores, MayBeClosedBeforeTheThreadsThatWereAttachedEnd) {
  auto database = std::make_unique<dbDatabase>();
  ASSERT_TRUE(Open(*database));
  Add(*database, 0, 5);
  database->commit();
  std::barrier read(kThreads + 1);
  std::barrier closed(kThreads + 1);
  {
    std::vector<std::jthread> threads;
    for (int i = 0; i < kThreads; ++i) {
      threads.emplace_back([&] {
        database->attach();
        EXPECT_EQ(Sum(*database), 5);  // the transaction stays open
        read.arrive_and_wait();
        closed.arrive_and_wait();
      });
    }
    read.arrive_and_wait();
    database->close();
    database.reset();
    closed.arrive_and_wait();
  }
  dbDatabase again;
  EXPECT_TRUE(Open(again));
  EXPECT_EQ(Sum(again), 5);
}

TEST_F(Stores, ReportErrorsToTheirOwnHandlers) {
  SideBySide(kThreads, [&](int thread) {
    const std::string name = std::to_string(thread) + ".fdb";
    std::vector<std::string> messages;
    dbDatabase database;
    database.setErrorHandler(
        [](int, char const* message, int, void* context) {
          static_cast<std::vector<std::string>*>(context)->emplace_back(message);
        },
        &messages);
    ASSERT_TRUE(Open(database, name));
    dbCursor<entry> cursor(&database);
    for (int round = 0; round < kRounds; ++round) EXPECT_EQ(cursor.select("no such column"), 0);
    EXPECT_EQ(messages.size(), static_cast<std::size_t>(kRounds));
    EXPECT_FALSE(Open(database, name));
    EXPECT_EQ(messages.back(), "the database is already open");
    database.close();
  });
}

TEST_F(Stores, GiveATableThatIsRegisteredForTheFirstToOneOfThem) {
  std::atomic<int> owners = 0;
  std::barrier<> opened(kThreads);
  SideBySide(kThreads, [&](int thread) {
    for (int round = 0; round < kRounds; ++round) {
      dbDatabase database;
      ASSERT_TRUE(Open(database, std::to_string(thread) + ".fdb"));
      if (database.findTableByName("claimed") != nullptr) ++owners;
      opened.arrive_and_wait();
      database.close();
      opened.arrive_and_wait();
    }
  });
  EXPECT_EQ(owners, kRounds);
}

TEST_F(Stores, AreCopiedWhileTheyAreWritten) {
  dbDatabase database;
  ASSERT_TRUE(Open(database));
  SideBySide(2, [&](int thread) {
    database.attach();
    for (int round = 0; round < kRounds / 2; ++round) {
      if (thread == 0) {
        Add(database, 2 * round, 1);
        Add(database, 2 * round + 1, -1);
        database.commit();
      } else {
        EXPECT_TRUE(database.backup(folder.File("copy.fdb").c_str(), round % 2 == 0));
      }
    }
    database.detach();
  });
  dbDatabase copy;
  ASSERT_TRUE(Open(copy, "copy.fdb"));
  EXPECT_EQ(Sum(copy), 0);
}

}  // namespace
}  // namespace dtsdb::test
