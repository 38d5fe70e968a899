// What tpWriteChangedData stores after an incremental run: as little as will do, under new log numbers, in one commit.
#include <gtest/gtest.h>
#include <rapidcheck.h>

#include <rapidcheck/gtest.h>
#include <tuple>

#include "include/chain.h"
#include "model/exchange.h"
#include "tests/support/process.h"
#include "tests/support/random_records.h"
#include "tests/support/realtime_store.h"
#include "tests/topology/results.h"
#include "tests/topology/switched_network.h"

namespace dtsdb::test {
namespace {

/// The fields of a record class that the topology owns and that tpWriteChangedData stores.
template <class Record>
inline constexpr int kChangedFields = 0;
template <>
inline constexpr std::tuple kChangedFields<CB>{&CB::ibs, &CB::izbs, &CB::flags, &CB::tp_status};
template <>
inline constexpr std::tuple kChangedFields<BUS>{&BUS::ibs, &BUS::tp_status};
template <>
inline constexpr std::tuple kChangedFields<LD>{&LD::ibs, &LD::status, &LD::tp_status};
template <>
inline constexpr std::tuple kChangedFields<CP>{&CP::ibs, &CP::status, &CP::tp_status};
template <>
inline constexpr std::tuple kChangedFields<ND>{&ND::ibs, &ND::next, &ND::n1, &ND::flags};
template <>
inline constexpr std::tuple kChangedFields<LN2>{&LN2::flags};
template <>
inline constexpr std::tuple kChangedFields<XF2>{&XF2::flags};
template <>
inline constexpr std::tuple kChangedFields<ZBR2>{&ZBR2::flags};
template <>
inline constexpr std::tuple kChangedFields<DLN2>{&DLN2::flags};
template <>
inline constexpr std::tuple kChangedFields<LN>{&LN::ibs, &LN::izbs, &LN::status, &LN::tp_status};
template <>
inline constexpr std::tuple kChangedFields<XF>{&XF::ibs, &XF::izbs, &XF::status, &XF::tp_status};
template <>
inline constexpr std::tuple kChangedFields<ZBR>{&ZBR::ibs, &ZBR::izbs, &ZBR::status, &ZBR::tp_status};
template <>
inline constexpr std::tuple kChangedFields<DLN>{&DLN::ibs, &DLN::izbs, &DLN::status, &DLN::tp_status};
template <>
inline constexpr std::tuple kChangedFields<BS>{&BS::name,  &BS::ikv,  &BS::f0,   &BS::island, &BS::status,
                                               &BS::flags, &BS::next, &BS::prev, &BS::ibsl};
template <>
inline constexpr std::tuple kChangedFields<UN>{&UN::ibs, &UN::ref, &UN::status, &UN::tp_status};
template <>
inline constexpr std::tuple kChangedFields<BSL>{&BSL::next, &BSL::prev, &BSL::kind, &BSL::ref};
template <>
inline constexpr std::tuple kChangedFields<ISLAND>{&ISLAND::name, &ISLAND::ref_ibs, &ISLAND::ref_un, &ISLAND::ref_id};
template <>
inline constexpr std::tuple kChangedFields<CHND>{&CHND::ind, &CHND::ibs_new, &CHND::ibs_old, &CHND::ikv};

/// One of everything on two levels, joined by one of each branch; run from nothing and stored.
class ChangedData : public TopologyTest {
 protected:
  void SetUp() override {
    m.Station("A").Kv("A220").Unit("U", "A220", "a").Load("D", "A220", "a").Cap("C", "A220", "a");
    m.Bus("M", "A220", "a").Bus("N", "A220", "b").Breaker("B", "A220", "a", "b").Load("E", "A220", "b");
    m.Breaker("Y", "A220", "b", "c").Zbr("Z", "Y").Load("F", "A220", "c");
    m.Kv("A110", 110).Load("G", "A110", "d").Breaker("H", "A110", "d", "e").Load("I", "A110", "e");
    m.Winding("X", "A", "A220", "A110", "a", "d").Winding("W", "A", "A220", "A110", "b", "e");
    m.Station("S").Kv("S220").Load("J", "S220", "f").Bus("O", "S220", "f");
    m.Line("L", "DV", "A", "S", "A220", "S220", "a", "f").DcLine("P", "DV", "A", "S", "A220", "S220", "b", "f");
    m.Line("K", "DV", "A", "S", "A220", "S220", "b", "f").Line("Q", "DV", "A", "S", "A220", "S220", "c", "f");
    Run();
    tp.tpWriteFastdb(Db());
  }
  dbDatabase* Db() { return m_store.Db(); }

  /// A run after one event, stored.
  void Switch(const char* id, int type, bool on) {
    ASSERT_EQ(tp.tpSetCompStatus(id, type, on), 1);
    ASSERT_EQ(tp.tpChange(), 1);
    ASSERT_EQ(tp.tpWriteChangedData(Db()), 1);
  }

  std::vector<int> LogNumbers() {
    return m_store.Values<tpl>([](const tpl& row) { return int{row.id}; });
  }
  void StoreLogRow(int id) {
    tpl row;
    row.id = id;
    m_store.Insert(row);
    Db()->commit();
  }

  /// Stores a row for record `id` that differs from it in everything else, has the run of level `kv` written, and
  /// checks that exactly the kChangedFields took the record's values.
  template <class Record>
  void ExpectUpdatesOnly(const char* id, const char* kv) {
    const Record& record = m.Of<Record>(id);
    Record expected = RandomRecords(11).Record<Record>(0);
    expected.id = record.id;
    TwinWriter<Record>(Db()).Merge(expected);
    probe.SetChangedKvs({Kv(kv)});

    tp.tpWriteChangedData(Db());

    std::apply([&](auto... fields) { ((expected.*fields = record.*fields), ...); }, kChangedFields<Record>);
    tTable<Record> stored;
    ReadTable(Db(), stored);
    tTable<Record> found;
    found.Add(stored.GetPh(stored.Find(expected)));
    tTable<Record> wanted;
    wanted.Add(expected);
    ExpectEqualTables(wanted, found);
  }

  RealtimeStore m_store;
};

TEST_F(ChangedData, LogNumbersGoOnBehindTheHighestWhateverTheGaps) {
  StoreLogRow(7);
  StoreLogRow(41);
  m.Db().m_tplTable->Clear();
  for (int i = 0; i < 3; ++i) probe.Tpl(Nd("a"), KIND_BS, 0, i, i, "BS");
  tp.tpWriteChangedData(Db());
  EXPECT_EQ(LogNumbers(), (std::vector<int>{7, 41, 42, 43, 44}));
  EXPECT_EQ(tp.tpGetStartNo(), 42);
  EXPECT_EQ(tp.tpGetEndNo(), 44);
}

TEST_F(ChangedData, FirstLogNumberIsZero) {
  Switch("U", 2, false);
  ASSERT_GT(m.Db().m_tplTable->GetCount(), 1);
  EXPECT_EQ(tp.tpGetStartNo(), 0);
  EXPECT_EQ(tp.tpGetEndNo(), m.Db().m_tplTable->GetCount() - 1);
  EXPECT_EQ(static_cast<int>(LogNumbers().size()), m.Db().m_tplTable->GetCount());
}

TEST_F(ChangedData, LogRowsKeepEverythingButTheirNumber) {
  Switch("U", 2, false);
  Switch("U", 2, true);
  auto& log = *m.Db().m_tplTable;
  ASSERT_GT(tp.tpGetStartNo(), 0);
  tTable<TPL> stored;
  ReadTable(Db(), stored);
  for (int i = 0; i < log.GetCount(); ++i) {
    TPL expected = log[i];
    expected.id += tp.tpGetStartNo();
    const TPL& row = stored.GetPh(stored.Find(expected));
    EXPECT_EQ(row.name, expected.name);
    EXPECT_EQ(row.event, expected.event);
    EXPECT_EQ(row.kind, expected.kind);
    EXPECT_EQ(row.n1, expected.n1);
    EXPECT_EQ(row.n2, expected.n2);
    EXPECT_EQ(row.n3, expected.n3);
    EXPECT_EQ(row.time, expected.time);
  }
}

TEST_F(ChangedData, OneLogRowStartsAndEndsTheRange) {
  m.Db().m_tplTable->Clear();
  probe.Tpl(3, KIND_BS, 0, 3, 3, "BSDEAD");
  tp.tpWriteChangedData(Db());
  EXPECT_EQ(tp.tpGetStartNo(), 0);
  EXPECT_EQ(tp.tpGetEndNo(), 0);
}

TEST_F(ChangedData, WithoutALogNothingIsAddedAndTheRangeIsNone) {
  Switch("L", 5, false);
  const std::vector<int> before = LogNumbers();
  m.Db().m_tplTable->Clear();
  tp.tpWriteChangedData(Db());
  EXPECT_EQ(LogNumbers(), before);
  EXPECT_EQ(tp.tpGetStartNo(), -1);
  EXPECT_EQ(tp.tpGetEndNo(), -1);
}

TEST_F(ChangedData, RangeStaysDuringTheNextRun) {
  Switch("L", 5, false);
  const int end = tp.tpGetEndNo();
  tp.tpSetCompStatus("L", 5, true);
  tp.tpChange();
  EXPECT_EQ(tp.tpGetStartNo(), 0);
  EXPECT_EQ(tp.tpGetEndNo(), end);
}

TEST_F(ChangedData, RecordsOfAChangedLevelUpdateTheirTopologyColumnsOnly) {
  ExpectUpdatesOnly<CB>("B", "A220");
  ExpectUpdatesOnly<BUS>("M", "A220");
  ExpectUpdatesOnly<LD>("D", "A220");
  ExpectUpdatesOnly<CP>("C", "A220");
  ExpectUpdatesOnly<ND>("a", "A220");
  ExpectUpdatesOnly<UN>("U", "A220");
}

TEST_F(ChangedData, BranchesAndEndsOfAChangedLevelUpdateTheirTopologyColumnsOnly) {
  ExpectUpdatesOnly<LN>("L", "S220");
  ExpectUpdatesOnly<DLN>("P", "S220");
  ExpectUpdatesOnly<XF>("X", "A110");
  ExpectUpdatesOnly<ZBR>("Z", "A220");
  const auto endId = [&](const auto& table, int number) {
    return IdToBytes(const_cast<std::remove_cvref_t<decltype(table)>&>(table).GetPh(number).id);
  };
  ExpectUpdatesOnly<LN2>(endId(*m.Db().m_ln2Table, m.Of<LN>("L").zln2).constData(), "S220");
  ExpectUpdatesOnly<DLN2>(endId(*m.Db().m_dln2Table, m.Of<DLN>("P").zdln2).constData(), "S220");
  ExpectUpdatesOnly<XF2>(endId(*m.Db().m_xf2Table, m.Of<XF>("X").zxf2).constData(), "A110");
  ExpectUpdatesOnly<ZBR2>(endId(*m.Db().m_zbr2Table, m.Of<ZBR>("Z").zbr2).constData(), "A220");
}

TEST_F(ChangedData, MissingAndDoubledRowsAreLeftAlone) {
  dbCursor<cp> capacitors(Db(), dbCursorForUpdate);
  capacitors.select("id = 'C'");
  capacitors.removeAllSelected();
  cp twice;
  twice.id = "C";
  twice.ibs = 77;
  m_store.Insert(twice);
  m_store.Insert(twice);
  dbCursor<ld> loads(Db(), dbCursorForUpdate);
  loads.select("id = 'D'");
  loads.removeAllSelected();
  Db()->commit();

  Switch("L", 5, false);

  EXPECT_EQ(m_store.Values<cp>([](const cp& row) { return int{row.ibs}; }), (std::vector<int>{77, 77}));
  m_store.ForEachRow<ld>("", [](const ld& row) { EXPECT_STRNE(row.id, "D"); });
}

TEST_F(ChangedData, LevelListedTwiceIsStoredAsOnce) {
  probe.SetChangedKvs({Kv("A220"), Kv("A220"), -1, Kv("S220")});
  m.Of<LN>("L").tp_status = 77;
  EXPECT_EQ(tp.tpWriteChangedData(Db()), 1);
  int lines = 0;
  m_store.ForEachRow<ln>("id = 'L'", [&](const ln& row) {
    ++lines;
    EXPECT_EQ(row.tp_status, 77U);
  });
  EXPECT_EQ(lines, 1);
}

TEST_F(ChangedData, AfterAFullRunInsteadEveryRecordIsStoredAndNothingLogged) {
  m_store.Change<ln>([](ln& row) { row.ibs = 77; });
  m_store.Change<ld>([](ld& row) { row.ibs = 77; });
  for (int i = 0; i < 50; ++i) tp.tpSetCompStatus("L", 5, true);
  ASSERT_EQ(tp.tpChange(), 1);
  tp.tpWriteChangedData(Db());
  EXPECT_EQ(tp.tpGetStartNo(), -1);
  EXPECT_EQ(tp.tpGetEndNo(), -1);
  m_store.ForEachRow<ln>("", [](const ln& row) { EXPECT_NE(row.ibs, 77); });
  m_store.ForEachRow<ld>("", [](const ld& row) { EXPECT_NE(row.ibs, 77); });
}

TEST_F(ChangedData, SectionsBeyondTheTableLeaveTheDatabase) {
  bs beyond;
  beyond.id = 5000;
  m_store.Insert(beyond);
  Db()->commit();
  Switch("L", 5, false);
  EXPECT_EQ(m_store.Count<bs>(), m.Db().m_bsTable->GetCount());
}

TEST_F(ChangedData, CommitsAndLeavesNothingOpen) {
  Switch("L", 5, false);
  Db()->rollback();
  EXPECT_EQ(static_cast<int>(LogNumbers().size()), m.Db().m_tplTable->GetCount());
}

TEST_F(ChangedData, WithoutADatabaseThereIsAWarning) {
  const MessageCatcher catcher;
  EXPECT_EQ(tp.tpWriteChangedData(nullptr), 1);
  EXPECT_EQ(MessageCatcher::Lines().size(), 1);
}

// What doesn't reach the database with an incremental run.

// Kept: K55.
TEST_F(ChangedData, BreakerThatChangedWithoutATraceRowKeepsItsStoredFlags) {
  m.Breaker("B2", "A220", "a", "b");
  Run();
  tp.tpWriteFastdb(Db());
  ASSERT_EQ(tp.tpSetCompStatus("B2", 1, false), 0);
  ASSERT_NE(m.Of<CB>("B2").flags & CB_OPEN, 0U);
  Switch("H", 1, false);
  m_store.ForEachRow<cb>("id = 'B2'", [](const cb& row) { EXPECT_EQ(row.flags & CB_OPEN, 0U); });
}

// Kept: K55.
TEST_F(ChangedData, RecordsOfALevelThatIsNotOnTheListKeepTheirRows) {
  m_store.Change<ld>([](ld& row) { row.ibs = 77; });
  Switch("H", 1, false);
  ASSERT_EQ(probe.ChangedKvs(), std::vector<int>{Kv("A110")});
  m_store.ForEachRow<ld>("id = 'J'", [](const ld& row) { EXPECT_EQ(row.ibs, 77); });
  m_store.ForEachRow<ld>("id = 'G'", [](const ld& row) { EXPECT_NE(row.ibs, 77); });
}

// Kept: K55.
TEST_F(ChangedData, GlobalStaysAsTheFullRunLeftIt) {
  m_store.Change<global>([](global& row) { row.u1 = 5; });
  Switch("L", 5, false);
  ASSERT_GT(m.Db().m_globalTable->GetPh(0).u1, 5U);
  EXPECT_EQ(m_store.Values<global>([](const global& row) { return row.u1; }), std::vector<nat4>{5});
}

// Kept: K55.
TEST_F(ChangedData, WorkMarksOfALevelThatIsNotOnTheListStayInTheModel) {
  m.Breaker("R", "S220", "f", "g").Load("T", "S220", "g").Line("V", "DV", "A", "S", "A220", "S220", "a", "g");
  Run();
  tp.tpWriteFastdb(Db());
  probe.FindPassPath(m.Number<CB>("R"));
  ASSERT_NE(m.Of<ND>("f").flags & ND_MARK, m.Of<ND>("g").flags & ND_MARK);
  Switch("H", 1, false);
  m_store.ForEachRow<nd>("id = 'f'", [](const nd& row) { EXPECT_EQ(row.flags & ND_MARK, 0U); });
  m_store.ForEachRow<nd>("id = 'g'", [](const nd& row) { EXPECT_EQ(row.flags & ND_MARK, 0U); });
}

// Random switching

/// The records of one class as they are stored, and the comparison of some with the model's.
template <class Record>
class StoredRows {
 public:
  explicit StoredRows(dbDatabase* db) { ReadTable(db, m_stored); }
  void ExpectStored(const Record& record) {
    const int number = m_stored.Find(record);
    RC_ASSERT(number != -1);
    const Record& stored = m_stored.GetPh(number);
    const auto expectStored = [&](auto field) { RC_ASSERT((stored.*field) == (record.*field)); };
    std::apply([&](auto... fields) { (expectStored(fields), ...); }, kChangedFields<Record>);
  }
  void ExpectAllStored(tTable<Record>& table) {
    for (int i = 0; i < table.GetCount(); ++i) ExpectStored(table[i]);
  }
  int Count() const { return m_stored.GetCount(); }

 private:
  tTable<Record> m_stored;
};

/// The same for a branch class with its ends, on one node.
template <class Branch>
class StoredBranches {
 public:
  explicit StoredBranches(dbDatabase* db) : m_branches(db), m_ends(db) {}
  void ExpectStored(ModelBuilder& model, const ND& node) {
    using Kind = BranchKind<Branch>;
    using Row = typename Kind::Row;
    for (const Row& row : Chain(model.Table<Row>(), node.*Relation<Row>::kHead)) {
      const auto& end = model.Table<typename Kind::End>().GetPh(row.ChildNumber());
      m_ends.ExpectStored(end);
      m_branches.ExpectStored(model.Table<Branch>().GetPh(end.*Kind::kOwner));
    }
  }

 private:
  StoredRows<Branch> m_branches;
  StoredRows<typename BranchKind<Branch>::End> m_ends;
};

/// Checks the rows of the records that hang on a level in relation `Row`.
template <class Row>
void ExpectChildrenStored(ModelBuilder& model, const KV& level, dbDatabase* db) {
  using Child = typename Relation<Row>::Child;
  StoredRows<Child> rows(db);
  for (const Row& row : Chain(model.Table<Row>(), level.*Relation<Row>::kHead)) {
    rows.ExpectStored(model.Table<Child>().GetPh(row.ChildNumber()));
  }
}

RC_GTEST_PROP(ChangedDataProperty, StoredLevelsAreTheModelsAfterAnySwitching, ()) {
  SwitchedNetwork network(true, Switching::All);
  ModelBuilder& model = network.Model();
  RealtimeStore store;
  network.tp.tpWriteFastdb(store.Db());
  network.Switch(10, [&] {
    RC_ASSERT(network.tp.tpWriteChangedData(store.Db()) == 1);
    StoredRows<BS> sections(store.Db());
    sections.ExpectAllStored(model.Table<BS>());
    RC_ASSERT(sections.Count() == model.Table<BS>().GetCount());
    StoredRows<UN>(store.Db()).ExpectAllStored(model.Table<UN>());
    StoredRows<BSL>(store.Db()).ExpectAllStored(model.Table<BSL>());
    StoredRows<ISLAND>(store.Db()).ExpectAllStored(model.Table<ISLAND>());
    StoredRows<CHND>(store.Db()).ExpectAllStored(model.Table<CHND>());
    for (const int kv : network.probe.ChangedKvs()) {
      const KV& level = model.Table<KV>().GetPh(kv);
      ExpectChildrenStored<R_KV_CB>(model, level, store.Db());
      ExpectChildrenStored<R_KV_BUS>(model, level, store.Db());
      ExpectChildrenStored<R_KV_LD>(model, level, store.Db());
      ExpectChildrenStored<R_KV_CP>(model, level, store.Db());
      ExpectChildrenStored<R_KV_ND>(model, level, store.Db());
      StoredBranches<LN> lines(store.Db());
      StoredBranches<XF> windings(store.Db());
      StoredBranches<ZBR> zbrs(store.Db());
      StoredBranches<DLN> dcLines(store.Db());
      for (const R_KV_ND& row : Chain(model.Table<R_KV_ND>(), level.r_kv_nd)) {
        const ND& node = model.Table<ND>().GetPh(row.ind);
        lines.ExpectStored(model, node);
        windings.ExpectStored(model, node);
        zbrs.ExpectStored(model, node);
        dcLines.ExpectStored(model, node);
      }
    }
  });
}

// Another process

TEST_F(ChangedData, AnotherProcessNeverSeesHalfARun) {
  Helper reader({m_store.Path().toStdString()});
  ASSERT_EQ(reader.Line(), "reading");
  for (int i = 0; i < 40; ++i) Switch("B", 1, i % 2 != 0);
  m_store.Change<global>([](global& row) { row.valid = 0; });
  EXPECT_EQ(reader.Line(), "whole");
}

}  // namespace
}  // namespace dtsdb::test
