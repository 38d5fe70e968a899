// The flows as plain data, from a model's tables and from a realtime database.

#include "breakerflow/flows.h"

#include <gtest/gtest.h>

#include <cmath>

#include "formats/model_io.h"
#include "generate/generator.h"
#include "model/record_bits.h"
#include "tests/breakerflow/both_sources.h"
#include "tests/support/messages.h"
#include "tests/support/places.h"
#include "tests/support/random_records.h"
#include "topology/tp.h"
#include "validation/nmd.h"

namespace dtsdb::test {
namespace {

/// A model of one level "K" with section 2, built row by row. Nodes are named after their numbers.
class SmallModel {
 public:
  SmallModel() {
    KV level(QStringLiteral("K"));
    level.vbase = 110;
    model.m_kvTable->Add(level);
    Section(2, 220);
  }

  void Section(int number, double v) {
    BS section(number);
    section.v = v;
    section.a = 30;
    model.m_bsTable->Add(section);
  }

  void Bus(const char* id, int section, double v, double a = 0) {
    BUS bus(QString::fromLatin1(id));
    bus.ibs = section;
    bus.v = v;
    bus.a = a;
    model.m_busTable->Add(bus);
  }

  void Breaker(const char* id, int from, int to, int section = 2, u32 flags = 1) {
    CB breaker(QString::fromLatin1(id));
    breaker.kv = QStringLiteral("K");
    breaker.nd = QStringLiteral("N%1").arg(from);
    breaker.znd = QStringLiteral("N%1").arg(to);
    breaker.ind = from;
    breaker.iznd = to;
    breaker.ibs = section;
    breaker.flags = flags;
    model.m_cbTable->Add(breaker);
  }

  void Unit(int nd, float p) {
    UN unit(QStringLiteral("U%1").arg(nd));
    unit.ind = nd;
    unit.p = p;
    model.m_unTable->Add(unit);
  }

  /// Two breakers side by side that carry 10 MW, on section 2.
  void Pair() {
    Breaker("a", 1, 2);
    Breaker("b", 1, 2);
    Unit(1, 10);
    Unit(2, -10);
  }

  DTSDB model;
};

/// The node voltages that a flow would take.
double VoltageOfNode(const DTSDB& model, int nd, bool completes = true) {
  cbFlow flow(nullptr);
  const internal::FlowAccess access(flow);
  internal::LoadFlowData(internal::ModelRows(model),
                         completes ? internal::MissingVoltage::kCompleted : internal::MissingVoltage::kStays,
                         access.Network(), access.Devices());
  return flow.Nodes()[nd].v;
}

void MakeTopology(DTSDB& model) {
  ASSERT_TRUE(NMD(&model).DetectAll());
  ASSERT_NE(TP(&model).tpAllnew(), 0);
}

TEST(Flows, NameBreakersWithTheirSetClassAndPower) {
  SmallModel m;
  m.Pair();
  m.Breaker("c", 2, 3);
  m.Breaker("d", 3, 4, 2, 1 | CB_OPEN);
  m.Breaker("e", 8, 9);
  const Flows flows = ComputeFlows(m.model);
  ASSERT_EQ(flows.breakers.size(), 5U);
  EXPECT_EQ(flows.breakers[0].id, QStringLiteral("a"));
  EXPECT_EQ(flows.breakers[0].kv, QStringLiteral("K"));
  EXPECT_EQ(flows.breakers[0].nd, QStringLiteral("N1"));
  EXPECT_EQ(flows.breakers[0].znd, QStringLiteral("N2"));
  EXPECT_EQ(flows.breakers[0].where, FlowClass::kLoop);
  EXPECT_EQ(flows.breakers[0].state, BreakerState::kComputed);
  EXPECT_NEAR(flows.breakers[0].p, 5, 1e-4);
  EXPECT_EQ(flows.breakers[2].where, FlowClass::kRadial);
  EXPECT_EQ(flows.breakers[3].state, BreakerState::kOpen);
  EXPECT_EQ(flows.breakers[3].set, -1);
  EXPECT_EQ(flows.breakers[4].set, 1);
  ASSERT_EQ(flows.sets.size(), 2U);
  EXPECT_EQ(flows.sets[0].breakers, (std::vector<int>{0, 1, 2}));
  EXPECT_EQ(flows.sets[0].nodes, 3);
  EXPECT_EQ(flows.sets[0].kv, QStringLiteral("K"));
  EXPECT_EQ(flows.sets[0].state, FlowSetState::kBalanced);
}

TEST(Flows, DistinguishRefusedSetsFromThoseThatLackPower) {
  SmallModel m;
  m.Breaker("a", 1, 2);
  m.Unit(1, 10);
  m.Breaker("b", 3, 4);
  m.Unit(3, -10);
  const Flows flows = ComputeFlows(m.model);
  EXPECT_EQ(flows.sets[0].state, FlowSetState::kNotBalanced);
  EXPECT_EQ(flows.sets[0].surplus.p, 10);
  EXPECT_EQ(flows.breakers[0].state, BreakerState::kNotBalanced);
  EXPECT_EQ(flows.sets[1].state, FlowSetState::kLacksPower);
  EXPECT_EQ(flows.breakers[1].state, BreakerState::kComputed);
  EXPECT_EQ(flows.Count(FlowSetState::kNotBalanced), 1);
  EXPECT_EQ(flows.Count(BreakerState::kComputed), 1);
  EXPECT_EQ(ComputeFlows(m.model, {10}).Count(FlowSetState::kNotBalanced), 0);
}

TEST(Flows, SetWithALoopWithoutVoltageHasNoResultThere) {
  SmallModel m;
  m.Pair();
  m.Breaker("c", 2, 3);
  m.model.m_bsTable->GetPh(0).v = 0;
  const Flows flows = ComputeFlows(m.model, {0.01F, false});
  EXPECT_EQ(flows.sets[0].state, FlowSetState::kNoVoltage);
  EXPECT_EQ(flows.breakers[0].state, BreakerState::kNoVoltage);
  EXPECT_EQ(flows.breakers[1].state, BreakerState::kNoVoltage);
  EXPECT_EQ(flows.breakers[2].state, BreakerState::kComputed) << "no loop, no voltage needed";
  EXPECT_EQ(flows.Count(BreakerState::kNoVoltage), 2);
}

// The voltage of the group is that of another node: its flows would come out finite, and wrong.
TEST(Flows, OneNodeWithoutVoltageTakesTheResultFromItsWholeLoop) {
  for (const int without : {1, 2, 3}) {
    SmallModel m;
    m.Section(3, 0);
    m.Breaker("a", 1, 2, without == 1 ? 3 : 2);
    m.Breaker("b", 2, 3, without == 2 ? 3 : 2);
    m.Breaker("c", 3, 1, without == 3 ? 3 : 2);
    m.Unit(1, 10);
    m.Unit(3, -10);
    const Flows flows = ComputeFlows(m.model, {0.01F, false});
    // Of the third breaker both nodes have the voltage of those before.
    EXPECT_EQ(flows.Count(BreakerState::kNoVoltage), without == 3 ? 0 : 3) << without;
  }
}

TEST(Flows, InfiniteInjectionsGiveNoFiniteFlow) {
  SmallModel m;
  m.Breaker("a", 1, 2);
  m.Unit(1, -INFINITY);
  const Flows flows = ComputeFlows(m.model);
  EXPECT_EQ(flows.breakers[0].state, BreakerState::kNotFinite);
  EXPECT_EQ(flows.sets[0].state, FlowSetState::kLacksPower);
}

TEST(Flows, SectionWithoutVoltageGetsThatOfItsFirstBusThatHasOne) {
  SmallModel m;
  m.model.m_bsTable->GetPh(0).v = 0;
  m.Breaker("a", 1, 2);
  EXPECT_EQ(VoltageOfNode(m.model, 1, false), 0);
  EXPECT_EQ(VoltageOfNode(m.model, 1), 110) << "the level's base voltage";
  m.Bus("x", 7, 999);
  m.Bus("y", 2, 0);
  m.Bus("z1", 2, 118);
  m.Bus("z2", 2, 119);
  EXPECT_EQ(VoltageOfNode(m.model, 1), 118);
  m.model.m_bsTable->GetPh(0).v = 220;
  EXPECT_EQ(VoltageOfNode(m.model, 1), 220) << "it has one";
}

TEST(Flows, ComputingLeavesTheModelAsItWas) {
  SmallModel m;
  m.Pair();
  m.model.m_bsTable->GetPh(0).v = 0;
  ComputeFlows(m.model);
  EXPECT_EQ(m.model.m_bsTable->GetPh(0).v, 0);
  EXPECT_EQ(m.model.m_cbTable->GetPh(0).tp_status, 0U);
}

TEST(Flows, AreStoredAsTheClassStoresThem) {
  SmallModel m;
  m.Pair();
  m.Breaker("c", 2, 3);
  m.Breaker("d", 3, 4, 2, 1 | CB_OPEN);
  const auto stored = [&m](auto compute) {
    RealtimeStore store;
    m.model.WriteFastdb(store.Db());
    compute(store.Db());
    store.Db()->rollback();
    return store.Values<cb>([](const cb& row) { return std::tuple(row.p, row.q, row.tp_status); });
  };
  const auto byClass = stored([](dbDatabase* db) {
    cbFlow flow(db);
    flow.loadData();
    flow.calculate();
    flow.storeData();
  });
  ASSERT_EQ(byClass.size(), 4U);
  EXPECT_EQ(byClass, stored([](dbDatabase* db) { StoreFlows(db, ComputeFlows(db)); }));
  EXPECT_EQ(byClass, stored([&m](dbDatabase* db) { StoreFlows(db, ComputeFlows(m.model)); }));
}

TEST(Flows, OfNoDatabaseAreNoneWithAWarning) {
  const MessageCatcher catcher;
  EXPECT_TRUE(ComputeFlows(static_cast<dbDatabase*>(nullptr)).breakers.empty());
  StoreFlows(nullptr, {});
  EXPECT_EQ(MessageCatcher::Lines().size(), 2);
}

TEST(FlowSources, SampleGivesTheSame) {
  DTSDB model = tools::LoadModel(tools::ModelName(SourcePath("examples/ieee14")));
  MakeTopology(model);
  ExpectSameFlows(model);
}

TEST(FlowSources, GeneratedNetworksGiveTheSame) {
  for (const quint64 seed : {1, 2, 3}) {
    DTSDB model;
    tools::GenerateUtility(model, {60, seed});
    MakeTopology(model);
    ExpectSameFlows(model);
  }
}

/// Fills the tables that the flow reads with records whose numbers meet each other.
class DenseModel {
 public:
  explicit DenseModel(unsigned seed) : m_random(seed) {
    Fill<CB>(40);
    Fill<UN>(12);
    Fill<LD>(12);
    Fill<CP>(6);
    Fill<LN>(10);
    Fill<XF>(6);
    Fill<DLN>(4);
    Fill<BUS>(8);
    Fill<BS>(10);
    Fill<KV>(3);
  }

  DTSDB model;

 private:
  template <class T>
  void Fill(int count) {
    std::vector<T> records;
    for (int i = 0; i < count; ++i) {
      T record = m_random.Record<T>(i);
      Put(record);
      records.push_back(record);
    }
    if (m_random.Number(0, 1) == 1) records.push_back(records.front());  // doubled
    std::reverse(records.begin(), records.end());
    TableOf<T>(model).SetData(records.data(), static_cast<int>(records.size()), m_random.Number(0, 3) == 0);
  }

  /// Makes the links small, most records live, and some texts such that a row can't hold them.
  template <class T>
  void Put(T& record) {
    for (const FieldInfo& field : T::Fields()) {
      if (field.IsLink()) field.In<i32>(&record) = m_random.Number(-1, 12);
    }
    if constexpr (requires { record.tp_status; }) record.tp_status = m_random.Number(0, 5) == 0 ? 7 : 0;
    if constexpr (requires { record.flags; }) record.flags = m_random.Number(0, 4) == 0 ? CB_OPEN : 1;
    if constexpr (requires { record.v; }) {
      if (m_random.Number(0, 2) == 0) record.v = 0;
    }
    if constexpr (requires { record.kv; }) record.kv = QString::number(m_random.Number(0, 2));
    if constexpr (std::is_same_v<T, KV>) record.id = record.id.left(1);
    if constexpr (T::kKey == RecordKey::kIdentified && !std::is_same_v<T, KV>) {
      if (m_random.Number(0, 9) == 0) record.id.insert(1, QChar(u'\0'));
      if (m_random.Number(0, 9) == 0) record.id.insert(0, QChar(u'\x5317'));
    }
  }

  RandomRecords m_random;
};

TEST(FlowSources, RandomTablesGiveTheSame) {
  const MessageCatcher catcher;  // texts are cut off at their zero bytes
  int breakers = 0;
  for (unsigned seed = 0; seed < 100 && !testing::Test::HasFailure(); ++seed) {
    SCOPED_TRACE(seed);
    DenseModel dense(seed);
    ExpectSameFlows(dense.model);
    const Flows flows = ComputeFlows(dense.model, {1e6F});
    breakers += flows.Count(BreakerState::kComputed);
  }
  EXPECT_GT(breakers, 1000) << "the models are such that something is computed";
}

TEST(FlowClass, HasANameWhereThereIsOne) {
  EXPECT_STREQ(ClassName(FlowClass::kRadial), "radial");
  EXPECT_STREQ(ClassName(FlowClass::kBridge), "bridge");
  EXPECT_STREQ(ClassName(FlowClass::kLoop), "loop");
  EXPECT_STREQ(ClassName(FlowClass::kNone), "");
}

}  // namespace
}  // namespace dtsdb::test
