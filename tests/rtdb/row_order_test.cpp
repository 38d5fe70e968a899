// The order of insertion, in which rows come without "order by", and the numbers that it stands on.

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>

#include "file_change.h"
#include "rtdb/internal/context.h"
#include "rtdb/internal/row_order.h"
#include "samples.h"

using dtsdb::internal::rtdb::Context;
using dtsdb::internal::rtdb::OrderTreeName;
using dtsdb::internal::rtdb::Status;
using dtsdb::internal::rtdb::Store;
using dtsdb::test::AddEntry;
using dtsdb::test::Database;
using dtsdb::test::EntryIds;
using dtsdb::test::FileChange;
using dtsdb::test::Folder;
using dtsdb::test::OpenStore;
using sample::entry;
using sample::item;
using sample::relation;

namespace {

using Ids = std::vector<int>;

void AddItem(dbDatabase& db, char const* id, int number = 0) {
  item row;
  row.id = id;
  row.i4 = number;
  db.insert(row);
}

std::string ItemIds(dbDatabase& db, char const* query) {
  dbCursor<item> cursor(&db);
  cursor.select(query);
  std::string ids;
  for (const item* row = cursor.get(); row != nullptr; row = cursor.next()) ids += row->id;
  return ids;
}

/// Removes the order of the entries, or with `keep` only what is in it.
void DropOrder(FileChange& file, bool keep) {
  EXPECT_EQ(mdb_drop(file.Transaction(), file.Tree(OrderTreeName("entry").c_str()), keep ? 0 : 1), 0);
}

/// Takes a store back to file format 1: without the order of rows.
void MakeOld(const std::string& path) {
  FileChange file(path);
  file.SetFormat(1);
  DropOrder(file, false);
}

/// Leaves a table's rows without an order, as a program that knows only format 1 does.
void LoseOrder(const std::string& path) {
  FileChange file(path);
  DropOrder(file, true);
}

TEST(RowOrder, TableFoundByANumber) {
  OpenStore store;
  for (const int id : {30, 10, 20}) AddEntry(store.db, id, id);
  EXPECT_EQ(EntryIds(store.db, ""), (Ids{30, 10, 20})) << "within the transaction";
  store.db.commit();
  for (const int id : {5, 40, 10}) AddEntry(store.db, id, id);
  store.db.commit();
  EXPECT_EQ(EntryIds(store.db, ""), (Ids{30, 10, 20, 5, 40, 10}));
  EXPECT_EQ(EntryIds(store.db, "value >= 10"), (Ids{30, 10, 20, 40, 10}));
  EXPECT_EQ(EntryIds(store.db, "id > 5 and id < 40"), (Ids{30, 10, 20, 10})) << "a range of keys";
  EXPECT_EQ(EntryIds(store.db, "id = 10"), (Ids{10, 10}));
  EXPECT_EQ(EntryIds(store.db), (Ids{5, 10, 10, 20, 30, 40}));
}

TEST(RowOrder, TableFoundByATextOrSeveralColumns) {
  OpenStore store;
  for (char const* id : {"c", "a", "b"}) AddItem(store.db, id, *id);
  for (char const* child : {"z", "x", "y"}) {
    relation row;
    row.parent = "p";
    row.child = child;
    store.db.insert(row);
  }
  store.db.commit();
  EXPECT_EQ(ItemIds(store.db, ""), "cab");
  EXPECT_EQ(ItemIds(store.db, "i4 > 97"), "cb");
  EXPECT_EQ(ItemIds(store.db, "id >= 'a'"), "cab");
  dbCursor<relation> cursor(&store.db);
  ASSERT_EQ(cursor.select("parent = 'p'"), 3);
  EXPECT_EQ(dtsdb::test::Walk(cursor, [](const relation& row) { return std::string(row.child); }),
            (std::vector<std::string>{"z", "x", "y"}));
}

TEST(RowOrder, UpdateKeepsTheRowsPlaceAlsoThatOfAKey) {
  OpenStore store;
  for (const int id : {3, 1, 2}) AddEntry(store.db, id);
  store.db.commit();
  dbCursor<entry> cursor(&store.db, dbCursorForUpdate);
  ASSERT_EQ(cursor.select("id = 3"), 1);
  cursor->value = 7;
  cursor.update();
  ASSERT_EQ(cursor.select("id = 1"), 1);
  cursor->id = 9;
  cursor.update();
  EXPECT_EQ(EntryIds(store.db, ""), (Ids{3, 9, 2}));
  store.db.commit();
  EXPECT_EQ(EntryIds(store.db, ""), (Ids{3, 9, 2}));
  EXPECT_EQ(EntryIds(store.db, "value >= 0"), (Ids{3, 9, 2}));
}

TEST(RowOrder, RemovedRowsLeaveItAndARowInsertedAgainIsTheLast) {
  OpenStore store;
  for (const int id : {3, 1, 2}) AddEntry(store.db, id);
  store.db.commit();
  dbCursor<entry> cursor(&store.db, dbCursorForUpdate);
  ASSERT_EQ(cursor.select("id = 3"), 1);
  cursor.remove();
  AddEntry(store.db, 3);
  store.db.commit();
  EXPECT_EQ(EntryIds(store.db, ""), (Ids{1, 2, 3}));
  cursor.removeAll();
  AddEntry(store.db, 5);
  AddEntry(store.db, 4);
  EXPECT_EQ(EntryIds(store.db, ""), (Ids{5, 4}));
  store.db.rollback();
  EXPECT_EQ(EntryIds(store.db, ""), (Ids{1, 2, 3}));
}

TEST(RowOrder, WalkGoesBothWaysAndOnWhenItsThreadWrites) {
  OpenStore store;
  for (const int id : {3, 1, 2}) AddEntry(store.db, id);
  store.db.commit();
  dbCursor<entry> cursor(&store.db);
  ASSERT_EQ(cursor.select(), 3);
  EXPECT_EQ(cursor.last()->id, 2);
  EXPECT_EQ(cursor.prev()->id, 1);
  AddEntry(store.db, 4);
  EXPECT_EQ(cursor.get()->id, 1);
  EXPECT_EQ(cursor.next()->id, 2);
  EXPECT_EQ(cursor.next(), nullptr) << "the selection is fixed";
  EXPECT_EQ(cursor.first()->id, 3);
}

TEST(RowOrder, ReferencesLeadToRowsByTheirNumber) {
  OpenStore store;
  const dbReference<entry> first = AddEntry(store.db, 3);
  AddEntry(store.db, 1);
  store.db.commit();
  dbCursor<entry> cursor(&store.db, dbCursorForUpdate);
  ASSERT_EQ(cursor.select("id = 3"), 1);
  cursor->id = 8;
  cursor.update();
  ASSERT_NE(cursor.at(first), nullptr);
  EXPECT_EQ(cursor->id, 8);
  cursor.remove();
  EXPECT_EQ(cursor.at(first), nullptr);
}

TEST(RowOrder, OlderFileIsReadAsItIsAndBroughtUpToDateWhenWritten) {
  Folder folder;
  {
    Database db;
    ASSERT_TRUE(db.open("store", folder.File().c_str()));
    for (const int id : {3, 1, 2}) AddEntry(db, id);
    for (char const* id : {"c", "a"}) AddItem(db, id);
    db.close();
  }
  MakeOld(folder.File());
  {
    Database reader(dbDatabase::dbReadOnly);
    ASSERT_TRUE(reader.open("store", folder.File().c_str())) << reader.Reported();
    EXPECT_EQ(EntryIds(reader, ""), (Ids{3, 1, 2}));
    EXPECT_EQ(ItemIds(reader, ""), "ca");
    dbCursor<entry> cursor(&reader);
    cursor.select();
    const dbReference<entry> reference = cursor.currentId();
    ASSERT_NE(cursor.at(reference), nullptr);
    EXPECT_EQ(cursor->id, 3);
    reader.close();
  }
  Database db;
  ASSERT_TRUE(db.open("store", folder.File().c_str())) << db.Reported();
  AddEntry(db, 0);
  db.commit();
  EXPECT_EQ(EntryIds(db, ""), (Ids{3, 1, 2, 0}));
  EXPECT_EQ(db.Reported(), "");
}

TEST(RowOrder, OrderThatLacksRowsIsMadeAnew) {
  OpenStore store;
  for (const int id : {3, 1, 2}) AddEntry(store.db, id);
  store.db.close();
  LoseOrder(store.folder.File());
  Database reader(dbDatabase::dbReadOnly);
  ASSERT_TRUE(reader.open("store", store.folder.File().c_str())) << reader.Reported();
  EXPECT_EQ(EntryIds(reader, ""), (Ids{3, 1, 2}));
  reader.close();
  ASSERT_TRUE(store.db.open("store", store.folder.File().c_str())) << store.db.Reported();
  AddEntry(store.db, 0);
  dbCursor<entry> cursor(&store.db, dbCursorForUpdate);
  ASSERT_EQ(cursor.select("id = 1"), 1);
  cursor.remove();
  store.db.commit();
  EXPECT_EQ(EntryIds(store.db, ""), (Ids{3, 2, 0}));
  EXPECT_EQ(store.db.Reported(), "");
}

// Row numbers

/// A store whose transactions have four row numbers each.
class FewNumbers : public testing::Test {
 protected:
  static constexpr std::uint64_t kRows = 4;

  void Open() {
    Status status;
    m_store = Store::Open(m_folder.File(), Store::Use::kChange, 0, {&entry::dbDescriptor}, status);
    ASSERT_NE(m_store, nullptr) << status.text;
    m_store->SetRowsPerTransaction(kRows);
    Context::Attach(m_store);
  }
  void Close() {
    Context::Detach(m_store.get());
    m_store->Close();
    m_store = nullptr;
  }
  void TearDown() override {
    if (m_store != nullptr) Close();
  }
  /// Inserts so many rows in one transaction, with ids that fall. Returns the first number, 0 after an error.
  oid_t Insert(int count, bool commit = true) {
    Context& context = *Context::Find(m_store.get());
    oid_t first = 0;
    for (int i = 0; i < count; ++i) {
      entry row;
      row.id = --m_nextId;
      oid_t number = 0;
      if (!context.Insert(m_store->At(0), &row, number)) return 0;
      if (i == 0) first = number;
      EXPECT_EQ(number, first + static_cast<oid_t>(i));
    }
    if (!commit) {
      context.Rollback();
      m_nextId += count;
      return first;
    }
    return context.Commit() ? first : 0;
  }
  /// The ids in the order of insertion.
  Ids Stored() {
    Database db;
    EXPECT_TRUE(db.open("store", m_folder.File().c_str()));
    Ids ids = EntryIds(db, "");
    db.close();
    return ids;
  }

  Folder m_folder;
  std::shared_ptr<Store> m_store;
  int m_nextId = 100;
};

TEST_F(FewNumbers, TransactionThatNeedsMoreTakesThoseOfTheNext) {
  Open();
  const oid_t first = Insert(11);
  const oid_t second = Insert(2);
  const oid_t third = Insert(2);
  ASSERT_NE(first, 0U);
  EXPECT_EQ(second, first + 11);
  EXPECT_GE(third, second + 2);
  const oid_t fourth = Insert(3);
  EXPECT_GE(fourth, third + 2);
  Ids expected(18);
  std::generate(expected.begin(), expected.end(), [id = 100]() mutable { return --id; });
  EXPECT_EQ(Stored(), expected);
}

TEST_F(FewNumbers, CountIsKeptWhenTheStoreIsOpenedAgain) {
  Open();
  const oid_t first = Insert(50);
  Close();
  Open();
  EXPECT_EQ(Insert(1), first + 50);
}

TEST_F(FewNumbers, RolledBackNumbersAreFreeAgain) {
  Open();
  const oid_t first = Insert(20, false);
  EXPECT_EQ(Insert(3), first);
  EXPECT_EQ(Stored().size(), 3U);
}

TEST_F(FewNumbers, TransactionsCatchUpWithTheirOwnNumbers) {
  Open();
  const oid_t first = Insert(4 * kRows);
  oid_t last = first + 4 * kRows;
  for (int i = 0; i < 8; ++i) {
    const oid_t number = Insert(1);
    EXPECT_GE(number, last);
    last = number + 1;
  }
  EXPECT_EQ((last - 1) % kRows, 0U) << "the first of its own";
}

}  // namespace
