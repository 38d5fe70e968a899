// The number of the transaction that changed a table last.

#include <gtest/gtest.h>

#include <random>
#include <thread>

#include "file_change.h"
#include "rtdb/internal/change_number.h"
#include "samples.h"
#include "tests/support/process.h"

using dtsdb::internal::rtdb::kChangesKey;
using dtsdb::rtdb::ChangeNumber;
using dtsdb::rtdb::LastCommitNumber;
using dtsdb::test::AddEntry;
using dtsdb::test::Database;
using dtsdb::test::FileChange;
using dtsdb::test::Folder;
using dtsdb::test::Helper;
using dtsdb::test::RunHelper;
using sample::entry;
using sample::note;

namespace {

using Number = std::uint64_t;

template <class Row>
Number NumberIn(Database& db) {
  return ChangeNumber(&db, db.lookupTable(&Row::dbDescriptor));
}

/// The number in a transaction of its own.
template <class Row = entry>
Number Now(Database& db) {
  const Number number = NumberIn<Row>(db);
  db.commit();
  return number;
}

struct ChangeNumbers : ::testing::Test {
  void SetUp() override {
    ASSERT_TRUE(Open());
    for (const int id : {1, 2, 3}) AddEntry(db, id, id);
    db.insert(note());
    db.commit();
  }
  void TearDown() override { EXPECT_EQ(db.Reported(), ""); }
  bool Open() { return db.open("store", folder.File().c_str()); }

  /// The work and a commit give the entries another, higher number, which is the commit's own, and leave the notes
  /// alone.
  template <class Work>
  void ExpectRaised(const char* what, Work work) {
    const Number before = Now(db);
    const Number notes = Now<note>(db);
    work();
    const Number within = NumberIn<entry>(db);
    EXPECT_GT(within, before) << what;
    db.commit();
    EXPECT_EQ(Now(db), within) << what;
    EXPECT_EQ(LastCommitNumber(&db), within) << what;
    EXPECT_EQ(Now<note>(db), notes) << what;
  }
  /// After the work and a commit all is as it was.
  template <class Work>
  void ExpectKept(const char* what, Work work) {
    const Number before = Now(db);
    const Number last = LastCommitNumber(&db);
    work();
    EXPECT_EQ(NumberIn<entry>(db), before) << what;
    db.commit();
    EXPECT_EQ(Now(db), before) << what;
    EXPECT_EQ(LastCommitNumber(&db), last) << what;
  }
  /// Takes the closed store back to format 2, which has no numbers of changes.
  void MakeOld() {
    FileChange file(folder.File());
    file.SetFormat(2);
    EXPECT_TRUE(file.Remove(nullptr, std::string(kChangesKey)));
    EXPECT_TRUE(file.Remove("@schema", "@places"));
    for (const char* table : {"entry", "item", "note", "relation"}) {
      std::string columns = file.Get("@schema", table);
      const std::size_t begin = columns.find("changes ");
      ASSERT_NE(begin, std::string::npos) << table;
      columns.erase(begin, columns.find('\n', begin) + 1 - begin);
      file.Put("@schema", table, columns);
    }
  }

  Folder folder;
  Database db;
};

TEST_F(ChangeNumbers, RiseWithEveryKindOfChange) {
  dbCursor<entry> cursor(&db, dbCursorForUpdate);
  dbTableDescriptor* const table = db.lookupTable(&entry::dbDescriptor);
  ExpectRaised("insert", [&] { AddEntry(db, 4); });
  ExpectRaised("update", [&] {
    cursor.select("id = 1");
    cursor->value = 77;
    cursor.update();
  });
  ExpectRaised("update of a key", [&] {
    cursor.select("id = 1");
    cursor->id = 11;
    cursor.update();
  });
  ExpectRaised("update by a reference", [&] {
    cursor.select("id = 2");
    entry row;
    row.id = 2;
    row.value = 5;
    db.update(cursor.currentId().getOid(), table, &row);
  });
  ExpectRaised("remove", [&] {
    cursor.select("id = 2");
    cursor.remove();
  });
  ExpectRaised("removeAllSelected", [&] {
    cursor.select("id = 3");
    cursor.removeAllSelected();
  });
  ExpectRaised("removeAll", [&] { cursor.removeAll(); });
  AddEntry(db, 1);
  db.commit();
  ExpectRaised("deleteTable", [&] { db.deleteTable(table); });
}

TEST_F(ChangeNumbers, StayWhereNothingIsChanged) {
  dbCursor<entry> cursor(&db, dbCursorForUpdate);
  ExpectKept("select for an update", [&] { cursor.select(); });
  ExpectKept("update with the same values", [&] {
    cursor.select("id = 1");
    cursor.update();
  });
  ExpectKept("removal of no rows", [&] {
    cursor.select("id = 99");
    cursor.removeAllSelected();
  });
  dbCursor<sample::relation> none(&db, dbCursorForUpdate);
  ExpectKept("emptying of another table that is empty", [&] { none.removeAll(); });
  EXPECT_EQ(Now<sample::relation>(db), 0U) << "never changed";
}

TEST_F(ChangeNumbers, StayWhenAnotherTableChanges) {
  const Number before = Now(db);
  const Number notes = Now<note>(db);
  db.insert(note());
  db.commit();
  EXPECT_EQ(Now(db), before);
  EXPECT_GT(Now<note>(db), notes);
}

TEST_F(ChangeNumbers, StayWhenAChangeIsRolledBack) {
  ExpectKept("rollback", [&] {
    AddEntry(db, 4);
    db.rollback();
  });
  ExpectKept("the unchanged transaction after it", [&] {
    dbCursor<entry> cursor(&db, dbCursorForUpdate);
    cursor.select();
  });
}

TEST_F(ChangeNumbers, RiseWhicheverProgramChangesTheTable) {
  const Number first = Now(db);
  const Number own = LastCommitNumber(&db);
  ASSERT_EQ(RunHelper({"add", folder.File(), "4"}), "added\n");
  const Number second = Now(db);
  EXPECT_GT(second, first);
  ASSERT_EQ(RunHelper({"full", folder.File(), "1000000000"}), "torn\n") << "all rows updated, ids don't start at 0";
  const Number third = Now(db);
  EXPECT_GT(third, second);
  ASSERT_EQ(RunHelper({"check", folder.File()}), "torn\n") << "reads only";
  EXPECT_EQ(Now(db), third);
  EXPECT_EQ(LastCommitNumber(&db), own) << "of this thread's commits only";
}

TEST_F(ChangeNumbers, ReaderSeesTheOneOfItsState) {
  const Number before = NumberIn<entry>(db);
  ASSERT_EQ(RunHelper({"add", folder.File(), "4"}), "added\n");
  EXPECT_EQ(NumberIn<entry>(db), before);
  db.commit();
  EXPECT_GT(NumberIn<entry>(db), before);
}

TEST_F(ChangeNumbers, OtherThreadsSeeThemAfterTheCommit) {
  const Number before = Now(db);
  AddEntry(db, 4);
  const auto seen = [this] {
    Number number = 0;
    std::thread([&] {
      db.attach();
      number = Now(db);
      EXPECT_EQ(LastCommitNumber(&db), 0U) << "it has committed nothing";
      db.detach();
    }).join();
    return number;
  };
  EXPECT_EQ(seen(), before);
  db.commit();
  EXPECT_GT(seen(), before);
}

TEST_F(ChangeNumbers, AreKeptWhenTheStoreIsOpenedAgain) {
  const Number before = Now(db);
  db.close();
  {
    Database reader(dbDatabase::dbReadOnly);
    ASSERT_TRUE(reader.open("store", folder.File().c_str())) << reader.Reported();
    EXPECT_EQ(Now(reader), before);
    reader.close();
  }
  ASSERT_TRUE(Open());
  EXPECT_EQ(Now(db), before);
}

TEST_F(ChangeNumbers, AreOfOneOpening) {
  const Number first = dtsdb::rtdb::OpeningNumber(&db);
  EXPECT_NE(first, 0U);
  Database second;
  ASSERT_TRUE(second.open("store", folder.File().c_str()));
  EXPECT_GT(dtsdb::rtdb::OpeningNumber(&second), first);
  EXPECT_EQ(dtsdb::rtdb::OpeningNumber(&db), first);
  second.close();
  EXPECT_EQ(dtsdb::rtdb::OpeningNumber(&second), 0U);
  db.close();
  ASSERT_TRUE(Open());
  EXPECT_GT(dtsdb::rtdb::OpeningNumber(&db), first + 1);
}

TEST_F(ChangeNumbers, KilledWriterLeavesThemAsTheyWere) {
  const Number before = Now(db);
  Helper writer({"hold", folder.File()});
  ASSERT_EQ(writer.Line(), "holding");
  EXPECT_EQ(Now(db), before);
  writer.Kill();
  EXPECT_EQ(Now(db), before);
  AddEntry(db, 4);
  db.commit();
  EXPECT_GT(Now(db), before);
}

/// Rows and their number are of one commit, wherever a writer is killed.
TEST_F(ChangeNumbers, KilledWriterLeavesTheNumberOfItsLastCommit) {
  std::mt19937 random(20261122);
  std::uniform_int_distribution<int> pause(0, 10000);
  for (int round = 0; round < 20; ++round) {
    const auto state = [this] {
      dbCursor<entry> cursor(&db);
      cursor.select("order by id");
      const std::pair<Number, int> found(NumberIn<entry>(db), cursor->value);
      db.commit();
      return found;
    };
    const auto before = state();
    Helper writer({"write", folder.File()});
    ASSERT_EQ(writer.Line(), "writing");
    std::this_thread::sleep_for(std::chrono::microseconds(pause(random)));
    writer.Kill();
    const auto after = state();
    EXPECT_EQ(after.first - before.first, static_cast<Number>(after.second - before.second))
        << "each of its transactions raises every value by one";
  }
}

// Files without numbers

TEST_F(ChangeNumbers, AreUnknownInAFileWithoutThemUntilATableIsChanged) {
  db.close();
  MakeOld();
  {
    Database reader(dbDatabase::dbReadOnly);
    ASSERT_TRUE(reader.open("store", folder.File().c_str())) << reader.Reported();
    EXPECT_EQ(Now(reader), 0U);
    EXPECT_EQ(dtsdb::test::EntryIds(reader).size(), 3U);
    reader.close();
  }
  ASSERT_TRUE(Open()) << db.Reported();
  EXPECT_EQ(Now(db), 0U);
  ExpectRaised("the first change", [&] { AddEntry(db, 4); });
  EXPECT_EQ(Now<note>(db), 0U);
}

/// A program of before may be the other one, and would change rows without a number.
TEST_F(ChangeNumbers, AreNotBegunInAFileThatAnotherProgramHasOpen) {
  db.close();
  MakeOld();
  Helper other({"look", folder.File()});
  ASSERT_EQ(other.Line(), "reading");
  ASSERT_TRUE(Open()) << db.Reported();
  AddEntry(db, 4);
  EXPECT_EQ(NumberIn<entry>(db), 0U);
  db.commit();
  EXPECT_EQ(Now(db), 0U);
  EXPECT_NE(LastCommitNumber(&db), 0U);
  db.close();
  ASSERT_TRUE(Open()) << "again beside the other program";
  db.close();
  other.Kill();
  ASSERT_TRUE(Open());
  ExpectRaised("the first change of a program alone", [&] { AddEntry(db, 5); });
}

TEST_F(ChangeNumbers, AreNotBegunWhileAnotherDatabaseOfTheProgramHasTheFileOpen) {
  db.close();
  MakeOld();
  Database reader(dbDatabase::dbReadOnly);
  ASSERT_TRUE(reader.open("store", folder.File().c_str())) << reader.Reported();
  ASSERT_TRUE(Open()) << db.Reported();
  AddEntry(db, 4);
  db.commit();
  EXPECT_EQ(Now(db), 0U);
}

TEST_F(ChangeNumbers, DamagedListIsUnknownUntilTheNextChange) {
  const Number whole = Now(db);
  for (const std::string& list :
       {std::string(), std::string("short"), std::string(33, '\1'), std::string(32, '\xff')}) {
    db.close();
    FileChange(folder.File()).Put(nullptr, std::string(kChangesKey), list);
    ASSERT_TRUE(Open()) << db.Reported();
    EXPECT_EQ(Now(db), 0U);
    EXPECT_EQ(Now<note>(db), 0U);
    ExpectRaised("the next change", [&] { AddEntry(db, 4); });
    EXPECT_GT(Now(db), whole);
    EXPECT_EQ(Now<note>(db), 0U) << "still unknown";
  }
}

TEST_F(ChangeNumbers, OfAllTablesThatATransactionChangesAreItsOwn) {
  AddEntry(db, 4);
  db.insert(note());
  db.insert(sample::relation());
  db.commit();
  const Number last = LastCommitNumber(&db);
  EXPECT_EQ(Now(db), last);
  EXPECT_EQ(Now<note>(db), last);
  EXPECT_EQ(Now<sample::relation>(db), last);
  EXPECT_EQ(Now<sample::item>(db), 0U);
}

TEST_F(ChangeNumbers, OfNoTableAndOfAClosedDatabaseAreReported) {
  EXPECT_EQ(ChangeNumber(&db, nullptr), 0U);
  EXPECT_NE(db.Reported().find("no such table"), std::string::npos);
  dbTableDescriptor* const table = db.lookupTable(&entry::dbDescriptor);
  db.close();
  EXPECT_EQ(ChangeNumber(&db, table), 0U);
  EXPECT_NE(db.Reported().find("not open"), std::string::npos);
}

}  // namespace
