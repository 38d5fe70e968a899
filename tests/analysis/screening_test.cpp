// Outage screening, held against two full runs for each outage: one without it, one with it, on a copy of its own.
#include "analysis/screening.h"

#include <gtest/gtest.h>
#include <cstdlib>
#include <map>
#include <set>

#include "analysis/careful_runner.h"
#include "analysis/internal/screener.h"
#include "formats/field_text.h"
#include "include/chain.h"
#include "model/any_table.h"
#include "model/table_info.h"
#include "script/switch_events.h"
#include "tests/support/cases.h"
#include "tests/support/messages.h"
#include "tests/support/model_builder.h"
#include "tests/support/places.h"
#include "tests/topology/random_network.h"

namespace dtsdb::analysis {
namespace {

using test::Cases;
using test::MessageCatcher;
using test::ModelBuilder;
using test::RandomNetwork;

/// Such as "BUS B dead; LD D dead".
std::string Text(const std::vector<Supplied>& things) {
  std::string text;
  for (const Supplied& thing : things) {
    text += fmt::format("{}{} {} at {}/{} {} {} {}", text.empty() ? "" : "; ", thing.table, thing.identity,
                        thing.station, thing.level, thing.state, thing.p, thing.q);
  }
  return text;
}

/// All that a result holds, for comparing.
std::string Text(const OutageResult& result) {
  std::string text = OutageText(result.outage) + ": " + Text(result.lost);
  for (const IslandLoss& loss : result.islands) {
    text += fmt::format(" | island {} of {} {}", loss.island, loss.reference, loss.lostReference);
    for (const IslandPart& part : loss.parts)
      text += fmt::format(", {} {} {}", part.station, part.node, part.reference);
  }
  return text + " " + result.run + " " + result.note + " " + result.failure;
}

std::string Text(const std::vector<OutageResult>& results) {
  std::string text;
  for (const OutageResult& result : results) text += Text(result) + "\n";
  return text;
}

/// What a screening must find, worked out by full runs alone.
class Judge {
 public:
  /// Makes a full run on a copy of the model, switches the components out, and makes another one.
  Judge(const Model& model, const Outage& outage) : m_copy(*model.Copy()) {
    CarefulRunner runner(Tables(), m_tp);
    EXPECT_TRUE(runner.RunFull().has_value());
    m_before = DescribeSupply(Tables());
    m_referencesBefore = References();
    for (const OutageComponent& component : outage) TakeOut(runner, component);
    m_works = runner.RunFull().has_value();
    if (!m_works) return;
    m_after = DescribeSupply(Tables());
    m_referencesAfter = References();
  }

  bool Works() const { return m_works; }

  Effect TheEffect() const { return EffectOf(m_before, m_after); }

  /// What differs between the islands of the result and those of the full runs; nothing when they agree.
  std::string IslandFault(const OutageResult& result) {
    std::map<int, const IslandLoss*> losses;
    for (const IslandLoss& loss : result.islands) losses[loss.island] = &loss;
    for (const auto& [island, parts] : Parts()) {
      const std::string before = m_referencesBefore.at(island);
      bool keeps = true;
      for (const int part : parts) keeps = keeps && KeepsReference(part, before);
      const bool lostReference = !before.empty() && !keeps;
      const bool isLoss = parts.size() != 1 || lostReference;
      if (isLoss != losses.contains(island)) return fmt::format("island {}: loss {}", island, isLoss);
      if (!isLoss) continue;
      const IslandLoss& loss = *losses[island];
      if (loss.reference != before) return "reference before: " + before;
      if (loss.lostReference != lostReference) return fmt::format("lost reference: {}", lostReference);
      const std::string fault = PartFault(loss, parts);
      if (!fault.empty()) return fault;
      losses.erase(island);
    }
    return losses.empty() ? "" : "an island that there isn't";
  }

 private:
  DTSDB& Tables() { return m_copy.Tables(); }

  void TakeOut(CarefulRunner& runner, const OutageComponent& component) {
    static const std::map<std::string, int> types = {{"CB", 1}, {"UN", 2},  {"LN", 5},
                                                     {"XF", 6}, {"ZBR", 7}, {"DLN", 8}};
    if (component.table == "BUS") {
      const BUS& bus = Tables().m_busTable->GetPh(Tables().m_busTable->Find(BUS(IdOf(component))));
      for (int i = 0; i < Tables().m_cbTable->GetCount(); ++i) {
        const CB& breaker = (*Tables().m_cbTable)[i];
        if (breaker.nd == bus.nd || breaker.znd == bus.nd) TakeOut(runner, {"CB", tools::IdText(breaker.id)});
      }
      return;
    }
    const SwitchEvent event{types.at(component.table), false, component.identity};
    const int number = tools::ComponentNumber(Tables(), event);
    if (!tools::Stands(Tables(), event, number)) runner.Put(event, number);
  }

  static QString IdOf(const OutageComponent& component) {
    return *IdFromText(QString::fromStdString(component.identity));
  }

  /// The reference of each live island as text.
  std::map<int, std::string> References() {
    std::map<int, std::string> references;
    for (int i = 0; i < Tables().m_islandTable->GetCount(); ++i) {
      const ISLAND& island = (*Tables().m_islandTable)[i];
      std::string& text = references[island.id];
      if (island.ref_un >= 0) text = "UN " + tools::IdText(island.ref_id);
      for (int j = 0; text.empty() && island.ref_ibs >= 0 && j < Tables().m_ldTable->GetCount(); ++j) {
        const LD& load = (*Tables().m_ldTable)[j];
        const bool inService = (load.status & (SHUNT_OFF | SHUNT_ISOLATED)) == 0;
        if (inService && load.ref == 0 && load.ibs == island.ref_ibs) text = "LD " + tools::IdText(load.id);
      }
    }
    return references;
  }

  /// The live islands of the first run, each with those that hold its nodes after the second.
  std::map<int, std::set<int>> Parts() const {
    std::map<int, std::set<int>> parts;
    for (std::size_t i = 0; i < m_before.islands.size(); ++i) {
      if (m_before.islands[i] < 0) continue;
      std::set<int>& met = parts[m_before.islands[i]];
      if (m_after.islands[i] >= 0) met.insert(m_after.islands[i]);
    }
    return parts;
  }

  /// True when the device that is the reference stands, in service, in live island `island`.
  bool KeepsReference(int island, const std::string& reference) {
    const QString id =
        *IdFromText(QString::fromStdString(reference.substr(std::min<std::size_t>(3, reference.size()))));
    const auto stands = [&](const auto& device) {
      return (device.status & (SHUNT_OFF | SHUNT_ISOLATED)) == 0 &&
             Tables().m_bsTable->GetPh(device.ibs).island == island;
    };
    if (reference.starts_with("UN")) return stands(Tables().m_unTable->GetPh(Tables().m_unTable->Find(UN(id))));
    return reference.starts_with("LD") && stands(Tables().m_ldTable->GetPh(Tables().m_ldTable->Find(LD(id))));
  }

  /// Each part is named once, by a node that lies in it, with its reference.
  std::string PartFault(const IslandLoss& loss, const std::set<int>& parts) {
    std::set<int> named;
    for (const IslandPart& part : loss.parts) {
      const int nd = Tables().m_ndTable->Find(ND(*IdFromText(QString::fromStdString(part.node))));
      const int island = m_after.islands[static_cast<std::size_t>(nd)];
      if (m_before.islands[static_cast<std::size_t>(nd)] != loss.island) return "not of the island: " + part.node;
      if (!named.insert(island).second) return "named twice: " + part.node;
      if (m_referencesAfter[island] != part.reference) return "reference of a part: " + m_referencesAfter[island];
    }
    return named == parts ? "" : "other parts";
  }

  Model m_copy;
  TP m_tp{&m_copy.Tables()};
  Supply m_before;
  Supply m_after;
  std::map<int, std::string> m_referencesBefore;
  std::map<int, std::string> m_referencesAfter;
  bool m_works = false;
};

/// What is wrong with a result, by two full runs.
std::string Fault(const Model& model, const OutageResult& result) {
  Judge judge(model, result.outage);
  if (judge.Works() != result.failure.empty()) return "works: " + std::to_string(judge.Works());
  if (!judge.Works()) return "";
  const Effect effect = judge.TheEffect();
  if (!effect.regained.empty()) return "regained: " + Text(effect.regained);
  if (Text(effect.lost) != Text(result.lost)) return "lost: " + Text(effect.lost);
  return judge.IslandFault(result);
}

/// A copy with a full run that has chosen the references; without what depends on the time and the runs before.
Model WithFullRun(const DTSDB& tables) {
  Model copy = *Model::Of(tables).Copy();
  EXPECT_TRUE(WorkOutTopology(copy).has_value());
  (*copy.Tables().m_globalTable)[0].u1 = 0;
  (*copy.Tables().m_globalTable)[0].time = 0;
  copy.Tables().m_chndTable->Clear();
  return copy;
}

/// The first field that differs in the two models; nothing when all fields of all tables are the same.
std::string FirstDifference(DTSDB& a, DTSDB& b) {
  const std::vector<AnyTable> tables = AllTables(a);
  const std::vector<AnyTable> others = AllTables(b);
  for (std::size_t i = 0; i < tables.size(); ++i) {
    const TableInfo& info = tables[i].Info();
    if (tables[i].GetCount() != others[i].GetCount()) return std::string(info.name) + ": another number";
    for (int row = 0; row < tables[i].GetCount(); ++row) {
      for (const FieldInfo& field : info.fields()) {
        const std::string here = tools::FieldText(field, tables[i][row]);
        const std::string there = tools::FieldText(field, others[i][row]);
        if (here != there) {
          return fmt::format("{} {} {}: {} / {}", info.name, tools::KeyText(info, tables[i][row]), field.name, here,
                             there);
        }
      }
    }
  }
  return "";
}

/// Goes through all outages with one screener, whose copy must be what it was after each.
template <class Check>
void TryEach(const Model& model, const std::vector<Outage>& outages, Check check) {
  const auto screener = internal::Screener::Make(model);
  ASSERT_TRUE(screener.has_value());
  const Model start = *Model::Of((*screener)->Tables()).Copy();
  for (const Outage& outage : outages) {
    const Result<OutageResult> result = (*screener)->Try(outage);
    ASSERT_TRUE(result.has_value()) << OutageText(outage) << ": " << result.error().message;
    check(*result);
    const auto differences = CompareTopology(start.Tables(), (*screener)->Tables());
    ASSERT_TRUE(differences.empty()) << OutageText(outage) << ": " << differences[0].identity;
  }
  const Model before = WithFullRun(start.Tables());
  const Model after = WithFullRun((*screener)->Tables());
  EXPECT_EQ(FirstDifference(before.Tables(), after.Tables()), "");
}

/// Station A with two units, B with two loads, and C with a unit and a load, joined in a row by lines; at B another
/// line that is open at its to end.
///
///     U, W a ---[Q]--- c ====L==== b D, E ====M==== d V, F
class SmallScreening : public testing::Test {
 protected:
  SmallScreening() {
    m.Station("A").Kv("KA").Unit("U", "KA", "a").Unit("W", "KA", "a").Bus("BA", "KA", "a").Breaker("Q", "KA", "a", "c");
    m.Station("B").Kv("KB").Bus("BB", "KB", "b").Load("D", "KB", "b").Load("E", "KB", "b");
    m.Station("C").Kv("KC").Bus("BC", "KC", "d").Unit("V", "KC", "d").Load("F", "KC", "d");
    m.Line("L", "DV", "A", "B", "KA", "KB", "c", "b").Line("M", "DV", "B", "C", "KB", "KC", "b", "d");
    m.Line("N", "DV", "A", "B", "KA", "KB", "c", "b");
    m.Of<LN>("N").status = BranchKind<LN>::kOpen2;
    m.Of<LD>("D").p = 120;
    m.Of<LD>("E").p = 30.5F;
    m.Of<LD>("F").p = 70;
    EXPECT_TRUE(m.Validate());
  }

  std::vector<OutageResult> Screened(const std::vector<Outage>& outages, ScreeningOptions options = {}) {
    const Result<Screening> screening = Screen(Model::Of(m.Db()), outages, options);
    EXPECT_TRUE(screening.has_value());
    return screening->outages;
  }
  OutageResult Tried(const Outage& outage) { return Screened(std::vector<Outage>(1, outage)).front(); }

  ModelBuilder m;
};

TEST_F(SmallScreening, NamesWhatIsLostAndWhereIslandsPart) {
  const OutageResult result = Tried({{"LN", "L"}, {"LN", "M"}});
  EXPECT_EQ(Text(result.lost),
            "ST B at B/ dead 0 0; BUS BB at B/KB dead 0 0; LD D at B/KB dead 120 0; "
            "LD E at B/KB dead 30.5 0");
  EXPECT_DOUBLE_EQ(result.totals.p, 150.5);
  ASSERT_EQ(result.islands.size(), 1U);
  const IslandLoss& loss = result.islands[0];
  EXPECT_EQ(loss.reference, "UN W");
  EXPECT_TRUE(loss.lostReference) << "by the part without it";
  ASSERT_EQ(loss.parts.size(), 2U);
  EXPECT_EQ(loss.parts[0].station + " " + loss.parts[0].node + " " + loss.parts[0].reference, "A a UN W");
  EXPECT_EQ(loss.parts[1].station + " " + loss.parts[1].node + " " + loss.parts[1].reference, "C d UN V");
}

TEST_F(SmallScreening, NamesTheReferenceThatTakesOver) {
  EXPECT_TRUE(Tried({{"UN", "V"}}).islands.empty()) << "the reference is W";
  const OutageResult result = Tried({{"UN", "W"}});
  EXPECT_EQ(Text(result.lost), "UN W at A/KA switched off 0 0");
  ASSERT_EQ(result.islands.size(), 1U);
  EXPECT_EQ(result.islands[0].reference, "UN W");
  EXPECT_EQ(result.islands[0].parts.at(0).reference, "UN V");
}

TEST_F(SmallScreening, NamesALoadThatIsTheReference) {
  ASSERT_EQ(m.Number<LD>("D"), 0);
  m.Of<LD>("D").ref = 0;
  const OutageResult result = Tried({{"LN", "L"}, {"LN", "M"}});
  ASSERT_EQ(result.islands.size(), 1U);
  EXPECT_EQ(result.islands[0].reference, "LD D") << "E, which marks nothing, stands on the same section";
  EXPECT_TRUE(result.islands[0].lostReference);
}

TEST_F(SmallScreening, APartMayHaveNoReference) {
  m.Of<UN>("V").pmax = 1;
  m.Of<UN>("V").pcur = 2;
  const OutageResult result = Tried({{"LN", "L"}, {"LN", "M"}});
  ASSERT_EQ(result.islands.size(), 1U);
  ASSERT_EQ(result.islands[0].parts.size(), 2U);
  EXPECT_EQ(result.islands[0].parts[1].reference, "");
}

TEST_F(SmallScreening, NamesIslandsThatDie) {
  const OutageResult result = Tried({{"UN", "U"}, {"UN", "V"}, {"UN", "W"}});
  ASSERT_EQ(result.islands.size(), 1U);
  EXPECT_TRUE(result.islands[0].parts.empty());
  EXPECT_EQ(result.totals.stations, 3);
}

TEST_F(SmallScreening, BusOpensTheBreakersOnIt) {
  EXPECT_EQ(Tried({{"BUS", "BA"}}).totals.units, 2);
  EXPECT_EQ(Tried({{"BUS", "BA"}}).totals.buses, 1);
  const OutageResult bare = Tried({{"BUS", "BB"}});
  EXPECT_FALSE(bare.HasEffect());
  EXPECT_EQ(bare.note, "no closed breaker on it");
}

TEST_F(SmallScreening, NothingIsLostWithWhatCarriesNothing) {
  EXPECT_EQ(Tried({{"LN", "N"}}).note, "an end is open already");
  m.Of<LN>("M").status = BranchKind<LN>::kOut;
  EXPECT_EQ(Tried({{"LN", "M"}}).note, "out already");
}

TEST_F(SmallScreening, WorstComesFirst) {
  std::string order;
  for (const OutageResult& result : Screened({{{"UN", "U"}},
                                              {{"LN", "M"}, {"UN", "V"}},
                                              {{"LN", "L"}, {"LN", "M"}},
                                              {{"BUS", "BC"}},
                                              {{"LN", "L"}, {"CB", "Q"}},
                                              {{"BUS", "BA"}}})) {
    order += OutageText(result.outage) + ", ";
  }
  EXPECT_EQ(order, "LN L + LN M, LN M + UN V, BUS BA, LN L + CB Q, BUS BC, UN U, ");
}

TEST_F(SmallScreening, LeavesTheModelAlone) {
  const Model before = *Model::Of(m.Db()).Copy();
  Screened(*SingleOutages(Model::Of(m.Db()), OutageTables()));
  EXPECT_EQ(FirstDifference(before.Tables(), m.Db()), "");
}

TEST_F(SmallScreening, ReportsHowFarItHasCome) {
  std::vector<std::size_t> done;
  ScreeningOptions options;
  options.progress = [&](std::size_t count) { done.push_back(count); };
  Screened({{{"LN", "L"}}, {{"LN", "M"}}, {{"UN", "U"}}}, options);
  EXPECT_EQ(done, (std::vector<std::size_t>{1, 2, 3}));
}

TEST_F(SmallScreening, EndsWithAnErrorWhenItIsCancelled) {
  int asked = 0;
  ScreeningOptions options;
  options.isCancelled = [&] { return ++asked == 2; };
  const Model model = Model::Of(m.Db());
  const std::vector<Outage> outages = *SingleOutages(model, OutageTables());
  ASSERT_GT(outages.size(), 2U);
  const Result<Screening> screening = Screen(model, outages, options);
  ASSERT_FALSE(screening.has_value());
  EXPECT_EQ(screening.error().message, "the screening was cancelled");
  EXPECT_EQ(asked, 2);
}

TEST_F(SmallScreening, RefusesWhatIsUnknown) {
  const Model model = Model::Of(m.Db());
  const auto component = Screen(model, {{{"LN", "L"}}, {{"BUS", "BX"}}});
  ASSERT_FALSE(component.has_value());
  EXPECT_EQ(component.error().code, ErrorCode::kUnknownComponent);
  EXPECT_EQ(component.error().message, "table BUS has no record 'BX'; did you mean BA, BB or BC?");
  const auto table = SingleOutages(model, {"LN", "LD"});
  ASSERT_FALSE(table.has_value());
  EXPECT_EQ(table.error().code, ErrorCode::kUsage);
  EXPECT_EQ(table.error().message, "'LD' is no table of outages; these are LN, XF, DLN, ZBR, CB, BUS, UN");
}

TEST_F(SmallScreening, NeedsAModelWithoutErrors) {
  m.Of<CB>("Q").nd = QString();
  m.Db().m_globalTable->Clear();
  const auto screening = Screen(Model::Of(m.Db()), {});
  const auto outages = SingleOutages(Model::Of(m.Db()), {"LN"});
  ASSERT_FALSE(screening.has_value() || outages.has_value());
  EXPECT_EQ(screening.error().code, ErrorCode::kFaultyModel);
  EXPECT_EQ(outages.error().code, ErrorCode::kFaultyModel);
}

TEST_F(SmallScreening, TakesWhatIsInService) {
  m.Of<CB>("Q").flags |= CB_OPEN;
  m.Of<UN>("U").status = SHUNT_OFF;
  std::string text;
  const std::vector<Outage> outages = *SingleOutages(Model::Of(m.Db()), {"UN", "CB", "BUS", "LN"});
  for (const Outage& outage : outages) text += OutageText(outage) + ", ";
  EXPECT_EQ(text, "UN V, UN W, BUS BA, BUS BB, BUS BC, LN L, LN M, LN N, ");
}

// docs/kept-behaviour.md, K15: each of the two names the ends of the other, and an incremental run goes wrong there.
TEST(Screening, IsByFullRunsWhereAnIdentityBeginsAnother) {
  ModelBuilder m;
  m.Station("A").Kv("KA").Unit("U", "KA", "a").Breaker("P", "KA", "a", "c").Breaker("Q", "KA", "a", "c");
  m.Zbr("Z8", "P").Zbr("Z81", "Q");
  m.Station("B").Kv("KB").Load("D", "KB", "b");
  m.Line("L", "DV", "A", "B", "KA", "KB", "c", "b").Line("M", "DV", "A", "B", "KA", "KB", "c", "b");
  ASSERT_TRUE(m.Validate());
  const Model model = Model::Of(m.Db());
  TryEach(model, *SingleOutages(model, {"LN", "CB", "ZBR"}), [&](const OutageResult& result) {
    EXPECT_EQ(Fault(model, result), "") << Text(result);
    EXPECT_TRUE(result.fullRun) << Text(result);
  });
}

// A model may be marked good and still hold numbers that lead nowhere, as an object file can: they were taken for
// places in the levels of nodes and in what stands on a level, and foreign memory was read.
TEST(Screening, OfADamagedModelLooksAtNothingThatIsNotThere) {
  const MessageCatcher catcher;
  ModelBuilder m;
  m.Station("A").Kv("KA").Unit("U", "KA", "a").Breaker("P", "KA", "a", "c");
  m.Station("B").Kv("KB").Load("D", "KB", "b").Breaker("Q", "KB", "b", "d");
  m.Line("L", "DV", "A", "B", "KA", "KB", "c", "d");
  ASSERT_TRUE(m.Validate());
  const Model model = Model::Of(m.Db());
  const std::vector<Outage> outages = *SingleOutages(model, OutageTables());
  m.Of<UN>("U").ind = 1 << 20;
  m.Of<LN>("L").iznd = -7;
  m.Of<CB>("Q").ind = 1 << 20;
  m.Table<R_KV_ND>().GetPh(m.Of<ND>("b").r_kv_nd).ikv = 1 << 20;
  ASSERT_TRUE(model.IsGood());
  const Result<Screening> screening = Screen(model, outages);
  if (screening) {
    EXPECT_EQ(screening->outages.size(), outages.size());
  } else {
    EXPECT_FALSE(screening.error().message.empty());
  }
}

// The level of node b has the number behind the last one.
TEST(Screening, OfALevelBehindTheLastOneLooksAtNothing) {
  const MessageCatcher catcher;
  ModelBuilder m;
  m.Station("A").Kv("KA").Unit("U", "KA", "a").Station("B").Kv("KB").Load("D", "KB", "b");
  m.Line("L", "DV", "A", "B", "KA", "KB", "a", "b");
  ASSERT_TRUE(m.Validate());
  ASSERT_EQ(TP(&m.Db()).tpAllnew(), 1);
  m.Table<R_KV_ND>().GetPh(m.Of<ND>("b").r_kv_nd).ikv = m.Table<KV>().GetCount();
  EXPECT_EQ(internal::SupplyRecord(m.Db()).LevelOf(m.Number<ND>("b")), -1);
  EXPECT_EQ(internal::SupplyRecord(m.Db()).LevelOf(m.Number<ND>("a")), m.Number<KV>("KA"));
}

TEST(Screening, SupplyThatComesBackIsInItsStateBefore) {
  ModelBuilder m;
  m.Station("A").Kv("KA").Unit("U", "KA", "a").Bus("BA", "KA", "a").Station("B").Kv("KB").Load("D", "KB", "b");
  m.Line("L", "DV", "A", "B", "KA", "KB", "a", "b");
  m.Of<UN>("U").status |= SHUNT_OFF;
  ASSERT_TRUE(m.Validate());
  ASSERT_EQ(TP(&m.Db()).tpAllnew(), 1);
  const internal::SupplyRecord record(m.Db());
  m.Of<UN>("U").status &= ~SHUNT_OFF;
  ASSERT_EQ(TP(&m.Db()).tpAllnew(), 1);
  EXPECT_EQ(Text(record.EffectOn(record.AllLevels()).regained),
            "ST A at A/ dead 0 0; ST B at B/ dead 0 0; BUS BA at A/KA dead 0 0; UN U at A/KA switched off 0 0; "
            "LD D at B/KB dead 0 0");
}

TEST(Pairs, AreAllOfTwoDifferentOutages) {
  std::string text;
  for (const Outage& pair : AllPairs({{{"LN", "1"}}, {{"LN", "2"}}, {{"CB", "3"}}})) text += OutageText(pair) + ", ";
  EXPECT_EQ(text, "LN 1 + LN 2, LN 1 + CB 3, LN 2 + CB 3, ");
  EXPECT_TRUE(AllPairs({{{"LN", "1"}}}).empty());
}

TEST(Pairs, OfASampleFollowFromTheSeed) {
  std::vector<Outage> outages;
  for (int i = 0; i < 100; ++i) outages.push_back({{"LN", std::to_string(i)}});
  const std::vector<Outage> sample = SamplePairs(outages, 50, 1);
  EXPECT_EQ(sample.size(), 50U);
  EXPECT_EQ(sample, SamplePairs(outages, 50, 1));
  EXPECT_NE(sample, SamplePairs(outages, 50, 2));
  std::set<std::string> texts;
  for (const Outage& pair : sample) texts.insert(OutageText(pair));
  EXPECT_EQ(texts.size(), 50U) << "each once";
  EXPECT_EQ(SamplePairs(outages, 5000, 1), AllPairs(outages)) << "there are 4950";
}

TEST(Screening, EqualsTwoFullRunsOnTheSample) {
  const Model model = *Model::Open(test::SourcePath("examples/ieee14"));
  const std::vector<Outage> outages = *SingleOutages(model, OutageTables());
  EXPECT_GT(outages.size(), 250U);
  int costing = 0;
  int incremental = 0;
  TryEach(model, outages, [&](const OutageResult& result) {
    EXPECT_EQ(Fault(model, result), "") << Text(result);
    costing += result.HasEffect();
    incremental += !result.fullRun;
  });
  EXPECT_GT(costing, 30);
  EXPECT_GT(incremental, 200) << "else full runs are held against themselves";
}

/// How many random networks are looked at; SCREENED_NETWORKS in the environment asks for more.
unsigned NetworkCount() {
  const char* const wish = std::getenv("SCREENED_NETWORKS");
  return wish != nullptr ? static_cast<unsigned>(std::atoi(wish)) : Cases(30);
}

TEST(Screening, EqualsTwoFullRunsOnRandomNetworks) {
  const MessageCatcher catcher;
  for (unsigned seed = 0; seed < NetworkCount() && !HasFailure(); ++seed) {
    RandomNetwork network(seed, seed % 2 == 0);
    ASSERT_TRUE(network.Model().Validate());
    const Model model = Model::Of(network.Model().Db());
    std::vector<Outage> outages = *SingleOutages(model, OutageTables());
    const std::vector<Outage> pairs = SamplePairs(outages, 5, seed);
    outages.insert(outages.end(), pairs.begin(), pairs.end());
    TryEach(model, outages, [&](const OutageResult& result) {
      EXPECT_EQ(Fault(model, result), "") << "network " << seed << ": " << Text(result);
    });
  }
}

TEST(Screening, DoesNotDependOnTheNumberOfThreads) {
  const MessageCatcher catcher;
  for (unsigned seed = 0; seed < Cases(10); ++seed) {
    RandomNetwork network(seed);
    ASSERT_TRUE(network.Model().Validate());
    const Model model = Model::Of(network.Model().Db());
    const std::vector<Outage> outages = *SingleOutages(model, OutageTables());
    const Result<Screening> alone = Screen(model, outages);
    ScreeningOptions options;
    options.jobs = 3;
    const Result<Screening> together = Screen(model, outages, options);
    ASSERT_TRUE(alone.has_value() && together.has_value());
    EXPECT_EQ(Text(alone->outages), Text(together->outages)) << "network " << seed;
  }
}

}  // namespace
}  // namespace dtsdb::analysis
