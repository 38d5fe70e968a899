// Storing only what has changed since: the database gets row for row what a storing of the whole tables gives.
#include "topology/internal/stored_rows.h"

#include <gtest/gtest.h>
#include <rapidcheck.h>

#include <rapidcheck/gtest.h>

#include "model/exchange.h"
#include "tests/support/realtime_store.h"
#include "tests/topology/results.h"
#include "tests/topology/switched_network.h"

namespace dtsdb::test {
namespace {

/// Units in a model and, as a TP stores them, in a database.
class StoredUnits : public ::testing::Test {
 protected:
  void SetUp() override {
    for (const char* id : {"U1", "U2", "U3"}) Add(id);
    EXPECT_FALSE(Begin()) << "nothing was stored yet";
    StoreAll();
    Commit();
  }
  dbDatabase* Db() { return m_store.Db(); }
  void Add(const char* id) {
    UN unit;
    unit.id = IdFromBytes(id);
    m_units.Add(unit);
  }

  // A storing in its steps.
  bool Begin() { return m_stored.Begin(Db(), m_units); }
  void StoreAll() {
    MergeRows(Db(), m_units);
    m_stored.NoteAll(Db(), m_units);
  }
  /// Stores what has changed; the numbers of the records.
  std::vector<int> StoreChanged() {
    std::vector<int> stored;
    TwinWriter<UN> writer(Db());
    for (int i = 0; i < m_units.GetCount(); ++i) {
      if (!m_stored.Note(i, m_units[i], &UN::ibs, &UN::status)) continue;
      writer.Merge(m_units[i], &UN::ibs, &UN::status);
      stored.push_back(i);
    }
    return stored;
  }
  void Commit() {
    m_stored.Seal(Db());
    Db()->commit();
    m_stored.End(Db());
  }

  RealtimeStore m_store;
  tTable<UN> m_units;
  internal::StoredRows<UN> m_stored;
};

TEST_F(StoredUnits, OnlyWhatHasChangedIsStoredAgain) {
  m_units[1].ibs = 7;
  m_units[2].tp_status = 5;  // not one of the fields
  ASSERT_TRUE(Begin());
  EXPECT_EQ(StoreChanged(), std::vector<int>{1});
  Commit();
  m_units[0].status = 5;
  ASSERT_TRUE(Begin()) << "the TP's own change";
  EXPECT_EQ(StoreChanged(), std::vector<int>{0});
  Commit();
  ASSERT_TRUE(Begin());
  EXPECT_EQ(StoreChanged(), std::vector<int>());
  EXPECT_EQ(m_store.Values<un>([](const un& row) { return int{row.ibs}; }), (std::vector<int>{0, 7, 0}));
}

TEST_F(StoredUnits, AllIsStoredAfterAnotherProgramHasChangedTheTable) {
  m_store.Change<un>([](un& row) { row.ibs = 77; });
  EXPECT_FALSE(Begin());
}

TEST_F(StoredUnits, AllIsStoredAfterAChangeInTheSameTransaction) {
  un row;
  row.id = "another";
  m_store.Insert(row);
  EXPECT_FALSE(Begin());
}

TEST_F(StoredUnits, ChangeOfAnotherTableDoesNotMatter) {
  m_store.Insert(ld());
  Db()->commit();
  EXPECT_TRUE(Begin());
}

TEST_F(StoredUnits, AllIsStoredAfterAStoringThatWasNotCommitted) {
  m_units[1].ibs = 7;
  ASSERT_TRUE(Begin());
  StoreChanged();
  m_stored.Seal(Db());
  Db()->rollback();
  m_stored.End(Db());
  EXPECT_FALSE(Begin());
}

TEST_F(StoredUnits, AllIsStoredAfterAStoringThatWasBrokenOff) {
  ASSERT_TRUE(Begin());
  StoreChanged();
  Db()->rollback();
  EXPECT_FALSE(Begin());
}

TEST_F(StoredUnits, AllIsStoredWhenTheDatabaseWasOpenedAnew) {
  Db()->close();
  ASSERT_TRUE(Db()->open(m_store.Path().constData(), m_store.Path().constData()));
  EXPECT_FALSE(Begin());
}

TEST_F(StoredUnits, AllIsStoredInAnotherDatabase) {
  RealtimeStore other;
  EXPECT_FALSE(m_stored.Begin(other.Db(), m_units));
}

TEST_F(StoredUnits, AllIsStoredWhenRecordsHaveComeOrGoneOrOtherIdentities) {
  Add("U4");
  EXPECT_FALSE(Begin());
  StoreAll();
  Commit();
  m_units.Remove(0);
  EXPECT_FALSE(Begin());
  StoreAll();
  Commit();
  m_units[0].id = QStringLiteral("other");
  EXPECT_FALSE(Begin());
  StoreAll();
  Commit();
  EXPECT_TRUE(Begin());
}

TEST_F(StoredUnits, RecordsThatShareARowAreAlwaysStored) {
  m_units[2].id = m_units[0].id;
  StoreAll();
  Commit();
  EXPECT_FALSE(Begin());
}

TEST(StoredRowsOfSections, ZerosOfBothSignsDiffer) {
  BS before;
  BS after;
  after.f0 = -0.0;
  EXPECT_FALSE(internal::AreSameIn(before, after, &BS::f0));
  EXPECT_FALSE(internal::AreSameIn(before, after));
  EXPECT_TRUE(internal::AreSameIn(before, after, &BS::name, &BS::next));
}

// The judge

template <class Record>
void ExpectSameRows(RealtimeStore& one, RealtimeStore& other) {
  tTable<Record> rows;
  tTable<Record> expected;
  ReadTable(one.Db(), rows);
  ReadTable(other.Db(), expected);
  RC_ASSERT(rows.GetCount() == expected.GetCount());
  for (int i = 0; i < rows.GetCount(); ++i) RC_ASSERT(internal::AreSameIn(rows[i], expected[i]));
}

void StoreWhole(DTSDB& model, dbDatabase* db) {
  MergeRows(db, *model.m_unTable, &UN::ibs, &UN::ref, &UN::status, &UN::tp_status);
  MergeRows(db, *model.m_bsTable, &BS::name, &BS::ikv, &BS::f0, &BS::island, &BS::status, &BS::flags, &BS::next,
            &BS::prev, &BS::ibsl);
  RemoveRowsBeyond(db, *model.m_bsTable);
  WriteTable(db, *model.m_bslTable);
  WriteTable(db, *model.m_islandTable);
  db->commit();
}

/// The same in both stores: what other programs and the caller may do between two storings.
void Disturb(SwitchedNetwork& network, RealtimeStore& one, RealtimeStore& other) {
  const auto inBoth = [&](auto change) {
    change(one);
    change(other);
  };
  if (network.Chance(10)) inBoth([](auto& store) { store.template Change<un>([](un& row) { row.ibs = 77; }); });
  if (network.Chance(10)) inBoth([](auto& store) { store.template Change<bs>([](bs& row) { row.island = 77; }); });
  if (network.Chance(10)) inBoth([](auto& store) { store.template Change<bs>([](bs& row) { row.v = 220; }); });
  if (network.Chance(10)) inBoth([](auto& store) { store.template Change<bsl>([](bsl& row) { row.ref = 77; }); });
  if (network.Chance(10)) {
    inBoth([](auto& store) {
      dbCursor<island> rows(store.Db(), dbCursorForUpdate);
      rows.removeAll();
      store.Db()->commit();
    });
  }
  if (network.Chance(10)) {
    one.Db()->close();
    RC_ASSERT(one.Db()->open(one.Path().constData(), one.Path().constData()));
  }
  // It can fail where a zero-impedance branch is open at its to end alone; what it leaves is stored all the same.
  if (network.Chance(10)) network.tp.tpAllnew();
  if (network.Chance(10)) network.tp.tpWriteFastdb(one.Db());
  auto& sections = network.Model().Table<BS>();
  if (network.Chance(10) && sections.GetCount() > 1) sections[1].name = QStringLiteral("renamed");
}

RC_GTEST_PROP(StoredRowsProperty, DatabaseIsThatOfAWholeStoringAfterAnySwitching, ()) {
  SwitchedNetwork network(true, Switching::All);
  DTSDB& model = network.Model().Db();
  RealtimeStore store;
  RealtimeStore whole;
  network.tp.tpWriteFastdb(whole.Db());
  network.tp.tpWriteFastdb(store.Db());
  network.Switch(40, [&] {
    if (network.Chance(30)) Disturb(network, store, whole);
    RC_ASSERT(network.tp.tpWriteChangedData(store.Db()) == 1);
    StoreWhole(model, whole.Db());
    ExpectSameRows<UN>(store, whole);
    ExpectSameRows<BS>(store, whole);
    ExpectSameRows<BSL>(store, whole);
    ExpectSameRows<ISLAND>(store, whole);
  });
}

}  // namespace
}  // namespace dtsdb::test
