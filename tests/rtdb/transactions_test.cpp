#include <gtest/gtest.h>

#include <atomic>
#include <memory>
#include <thread>

#include "samples.h"

using dtsdb::test::AddEntry;
using dtsdb::test::Database;
using dtsdb::test::EntryIds;
using dtsdb::test::Folder;
using dtsdb::test::OpenStore;
using sample::entry;

namespace {

/// Runs in a thread that is attached for as long.
template <class Work>
void InThread(dbDatabase& db, Work work) {
  std::thread([&] {
    db.attach();
    work();
    db.detach();
  }).join();
}

std::vector<int> SeenByOthers(dbDatabase& db) {
  std::vector<int> ids;
  InThread(db, [&] { ids = EntryIds(db); });
  return ids;
}

TEST(Transactions, ChangesAreSeenByOthersAfterTheCommit) {
  OpenStore store;
  AddEntry(store.db, 1);
  EXPECT_EQ(EntryIds(store.db), std::vector<int>{1});
  EXPECT_EQ(SeenByOthers(store.db), std::vector<int>{});
  store.db.commit();
  EXPECT_EQ(SeenByOthers(store.db), std::vector<int>{1});
  AddEntry(store.db, 2);
  store.db.precommit();
  EXPECT_EQ(SeenByOthers(store.db), (std::vector<int>{1, 2}));
}

TEST(Transactions, RollbackForgetsAllChanges) {
  OpenStore store;
  AddEntry(store.db, 1);
  store.db.commit();
  AddEntry(store.db, 2);
  dbCursor<entry> cursor(&store.db, dbCursorForUpdate);
  cursor.select("id = 1");
  cursor.remove();
  store.db.rollback();
  EXPECT_EQ(EntryIds(store.db), std::vector<int>{1});
}

TEST(Transactions, ReadTransactionKeepsItsStateUntilItEnds) {
  OpenStore store;
  AddEntry(store.db, 1);
  store.db.commit();
  dbCursor<entry> cursor(&store.db);
  EXPECT_EQ(cursor.select("id = 77"), 0) << "begins the transaction although nothing is found";
  InThread(store.db, [&] { AddEntry(store.db, 2); });
  EXPECT_EQ(cursor.select(), 1);
  { dbCursor<entry> gone(&store.db); }
  EXPECT_EQ(cursor.select(), 1) << "a cursor's end does not end it";
  store.db.commit();
  EXPECT_EQ(cursor.select(), 2);
}

TEST(Transactions, StepFromReadingToWritingFetchesTheNewestState) {
  OpenStore store;
  AddEntry(store.db, 1, 10);
  store.db.commit();
  dbCursor<entry> view(&store.db);
  ASSERT_EQ(view.select("id = 1"), 1);
  InThread(store.db, [&] {
    dbCursor<entry> writer(&store.db, dbCursorForUpdate);
    writer.select("id = 1");
    writer->value = 20;
    writer.update();
  });
  dbCursor<entry> writer(&store.db, dbCursorForUpdate);
  ASSERT_EQ(writer.select("id = 1"), 1);
  EXPECT_EQ(writer->value, 20);
  EXPECT_EQ(view.first()->value, 20) << "everything goes through the write transaction now";
}

TEST(Transactions, CloseAndDetachCommit) {
  OpenStore store;
  InThread(store.db, [&] { AddEntry(store.db, 1); });
  EXPECT_EQ(EntryIds(store.db), std::vector<int>{1});
  store.db.commit();
  AddEntry(store.db, 2);
  store.db.close();
  ASSERT_TRUE(store.Open());
  EXPECT_EQ(EntryIds(store.db), (std::vector<int>{1, 2}));
}

TEST(Transactions, DetachWithoutCommitRollsBack) {
  OpenStore store;
  AddEntry(store.db, 1);
  store.db.detach(dbDatabase::DESTROY_CONTEXT);
  store.db.attach();
  EXPECT_EQ(EntryIds(store.db), std::vector<int>{});
  AddEntry(store.db, 2);
  store.db.detach(dbDatabase::COMMIT);
  EXPECT_EQ(EntryIds(store.db), std::vector<int>{2}) << "still attached";
}

TEST(Transactions, DatabaseThatGoesUnclosedLosesWhatIsUncommitted) {
  Folder folder;
  for (int round = 0; round < 2; ++round) {
    auto db = std::make_unique<Database>();
    ASSERT_TRUE(db->open(folder.File().c_str(), folder.File().c_str()));
    EXPECT_EQ(EntryIds(*db), std::vector<int>{});
    AddEntry(*db, 1);
  }
}

TEST(Transactions, ThreadThatIsNotAttachedIsReported) {
  OpenStore store;
  std::thread([&] {
    dbCursor<entry> cursor(&store.db);
    EXPECT_EQ(cursor.select(), 0);
    EXPECT_EQ(AddEntry(store.db, 1).getOid(), 0U);
    store.db.commit();
    store.db.rollback();
    store.db.detach();
  }).join();
  EXPECT_EQ(store.db.errors.size(), 4U);
  EXPECT_NE(store.db.Reported().find("not attached"), std::string::npos);
}

TEST(Transactions, ThreadThatEndsWithoutDetachLetsTheNextWriterIn) {
  OpenStore store;
  std::thread([&] {
    store.db.attach();
    AddEntry(store.db, 1);
  }).join();
  AddEntry(store.db, 2);
  store.db.commit();
  EXPECT_EQ(EntryIds(store.db), std::vector<int>{2});
}

TEST(Transactions, WritersOfOneProcessFollowOneAnother) {
  OpenStore store;
  AddEntry(store.db, 0, 0);
  store.db.commit();
  std::vector<std::thread> threads;
  for (int i = 0; i < 4; ++i) {
    threads.emplace_back([&] {
      store.db.attach();
      dbCursor<entry> cursor(&store.db, dbCursorForUpdate);
      for (int round = 0; round < 100; ++round) {
        cursor.select("id = 0");
        cursor->value += 1;
        cursor.update();
        store.db.commit();
      }
      store.db.detach();
    });
  }
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(EntryIds(store.db, "value = 400"), std::vector<int>{0});
}

TEST(Transactions, ReadersOfOneProcessComeForwardBesideAnOpenWriteTransaction) {
  OpenStore store;
  AddEntry(store.db, 1);
  store.db.commit();
  AddEntry(store.db, 2);  // stays open
  std::atomic<int> reads = 0;
  std::vector<std::thread> threads;
  for (int i = 0; i < 3; ++i) {
    threads.emplace_back([&] {
      store.db.attach();
      for (int round = 0; round < 200; ++round) {
        if (EntryIds(store.db) == std::vector<int>{1}) ++reads;
        store.db.commit();
      }
      store.db.detach();
    });
  }
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(reads, 600);
  store.db.commit();
  EXPECT_EQ(EntryIds(store.db), (std::vector<int>{1, 2}));
}

TEST(Transactions, FileOpenedTwiceInOneProcessIsOneStore) {
  OpenStore store;
  Database second;
  ASSERT_TRUE(second.open(store.folder.File().c_str(), store.folder.File().c_str()));
  AddEntry(store.db, 1);
  EXPECT_EQ(EntryIds(second), std::vector<int>{});
  store.db.commit();
  second.commit();
  EXPECT_EQ(EntryIds(second), std::vector<int>{1});
  store.db.close();
  second.commit();
  EXPECT_EQ(EntryIds(second), std::vector<int>{1});
}

TEST(Transactions, SecondWriterInOneThreadIsRefusedInsteadOfHanging) {
  OpenStore store;
  Database second;
  ASSERT_TRUE(second.open(store.folder.File().c_str(), store.folder.File().c_str()));
  AddEntry(store.db, 1);
  EXPECT_EQ(AddEntry(second, 2).getOid(), 0U);
  EXPECT_EQ(second.errors, std::vector{dbDatabase::Deadlock});
  store.db.commit();
  EXPECT_NE(AddEntry(second, 2).getOid(), 0U);
}

TEST(Transactions, DatabaseClosedByAnotherThreadIsGoneForThisOne) {
  OpenStore store;
  std::atomic<int> step = 0;
  std::thread other([&] {
    store.db.attach();
    AddEntry(store.db, 1);
    step = 1;
    while (step != 2) std::this_thread::yield();
    EXPECT_EQ(AddEntry(store.db, 2).getOid(), 0U);
  });
  while (step != 1) std::this_thread::yield();
  store.db.close();
  step = 2;
  other.join();
  EXPECT_NE(store.db.Reported().find("not open"), std::string::npos);
  ASSERT_TRUE(store.Open());
  EXPECT_EQ(EntryIds(store.db), std::vector<int>{}) << "what the other thread had not committed is lost";
}

TEST(Transactions, OpenForReadingOnlyRefusesChanges) {
  OpenStore store;
  AddEntry(store.db, 1);
  store.db.close();
  Database reader(dbDatabase::dbReadOnly);
  ASSERT_TRUE(reader.open(store.folder.File().c_str(), store.folder.File().c_str()));
  EXPECT_EQ(EntryIds(reader), std::vector<int>{1});
  EXPECT_EQ(AddEntry(reader, 2).getOid(), 0U);
  dbCursor<entry> cursor(&reader, dbCursorForUpdate);
  EXPECT_EQ(cursor.select(), 0);
  EXPECT_EQ(reader.errors, (std::vector{dbDatabase::DatabaseReadOnly, dbDatabase::DatabaseReadOnly}));
}

TEST(Errors, HandlerIsCalledWithItsContext) {
  dbDatabase db;
  std::string reported;
  const auto before =
      db.setErrorHandler([](int error, char const* message, int,
                            void* context) { *static_cast<std::string*>(context) = std::to_string(error) + message; },
                         &reported);
  EXPECT_EQ(before, nullptr);
  EXPECT_FALSE(db.open("x", "/no/such/folder/x.fdb"));
  EXPECT_EQ(reported.find(std::to_string(dbDatabase::DatabaseOpenError)), 0U);
  EXPECT_NE(db.setErrorHandler(nullptr), nullptr);
}

TEST(Errors, GoToStandardErrorAsOneLine) {
  dbDatabase db;
  ::testing::internal::CaptureStderr();
  EXPECT_FALSE(db.open("x", "/no/such/folder/x.fdb"));
  const std::string reported = ::testing::internal::GetCapturedStderr();
  EXPECT_NE(reported.find("/no/such/folder/x.fdb"), std::string::npos);
  EXPECT_EQ(reported.find('\n'), reported.size() - 1);
}

}  // namespace
