// A run that fills its tables at the end, beside one that makes addition after addition.
#include <gtest/gtest.h>
#include <rapidcheck.h>
#include <rapidcheck/gtest.h>

#include <QBuffer>

#include "model/qarchive.h"
#include "tests/support/image.h"
#include "tests/support/messages.h"
#include "tests/validation/random_model.h"
#include "tests/validation/run.h"
#include "validation/internal/name_order.h"

namespace dtsdb::test {
namespace {

using internal::Making;

/// What lies in the slots of all tables, the free ones included. A null text and an empty one differ.
QByteArray SlotsOf(DTSDB& model) {
  QBuffer buffer;
  buffer.open(QIODevice::WriteOnly);
  QArchive ar(&buffer, false);
  ForEachTable(model, [&ar](auto& table) {
    ar << i32{table.GetSize()};
    for (int i = 0; i < table.GetSize(); ++i) table.GetPh(i).Serialize(ar);
  });
  return buffer.data();
}

/// One of two models that go through the same runs, each in its own way.
class Side {
 public:
  Side(const QByteArray& image, Making making) : m_making(making) { LoadImage(model, image); }

  /// What a run does and reports, but for the tables.
  Texts Run() {
    const MessageCatcher catcher;
    const TemporaryDirectory directory;
    NMD nmd(&model);
    Texts seen{NmdAccess::Run(nmd, m_making) ? "went" : "stopped", Utf8(nmd.GetLastError())};
    for (const Finding& finding : nmd.Findings()) {
      seen.push_back(std::string(finding.code) + " " + Utf8(finding.id) + " " + Utf8(finding.text));
    }
    for (const QByteArray& line : directory.Read(QStringLiteral("nmd.log")).split('\n')) {
      seen.push_back(line.mid(line.indexOf("--NMD")).toStdString());  // without the stamp
    }
    QStringList warnings = MessageCatcher::Lines();
    warnings.sort();
    for (const QString& warning : warnings) seen.push_back(Utf8(warning));
    model.m_globalTable->GetPh(0).check_time = 0;
    return seen;
  }

  DTSDB model;

 private:
  Making m_making;
};

/// Expects that both ways lead to the same, twice over and again after each change.
template <class Change>
void ExpectSameRuns(DTSDB& start, int changes, Change change) {
  Side atOnce(ImageOf(start), Making::kAtOnce);
  Side oneByOne(ImageOf(start), Making::kOneByOne);
  for (int i = 0; i <= changes; ++i) {
    for (int run = 0; run < 2; ++run) {
      const Texts expected = oneByOne.Run();
      RC_ASSERT(atOnce.Run() == expected);
      RC_ASSERT(ImageOf(atOnce.model) == ImageOf(oneByOne.model));
      RC_ASSERT(SlotsOf(atOnce.model) == SlotsOf(oneByOne.model));
    }
    change(oneByOne.model);
    const QByteArray image = ImageOf(oneByOne.model);
    LoadImage(oneByOne.model, image);
    LoadImage(atOnce.model, image);
  }
}

RC_GTEST_PROP(RunMadeAtOnce, EqualsOneOfSingleAdditionsOnDamagedModels, ()) {
  ModelBuilder m = RandomModel(*rc::gen::inRange(1, 5));
  // Mostly without doubled keys, with which a run is made addition by addition.
  const int first = *rc::gen::weightedElement<int>({{1, 0}, {5, 1}});
  ForEachTable(m.Db(), [first](auto& table) { Damage(table, first); });
  ExpectSameRuns(m.Db(), 1,
                 [first](DTSDB& model) { ForEachTable(model, [first](auto& table) { Damage(table, first); }); });
}

/// Branches whose identities begin with those of others, and texts of any characters.
RC_GTEST_PROP(RunMadeAtOnce, EqualsOneOfSingleAdditionsWithAnyIdentities, ()) {
  ModelBuilder m;
  m.Station("S").Kv("K");
  const auto unit = rc::gen::element<char16_t>(u'A', u'h', u'i', u'j', u'z', u'{', 0, 0xB1, 0x4E2D);
  std::vector<CB> breakers;
  std::vector<LD> loads;
  for (const auto& units :
       *rc::gen::unique<std::vector<std::u16string>>(rc::gen::scale(0.3, rc::gen::container<std::u16string>(unit)))) {
    CB cb(QString::fromStdU16String(units));
    cb.kv = Id("K");
    cb.nd = cb.id.left(2);
    cb.znd = QChar(u'n') + cb.id.mid(1);
    cb.flags = 1;
    breakers.push_back(cb);
    LD ld(cb.id);
    ld.kv = cb.kv;
    ld.nd = cb.id.right(2);
    loads.push_back(ld);
  }
  if (!breakers.empty()) {
    m.Table<CB>().SetData(breakers.data(), static_cast<int>(breakers.size()), false);
    m.Table<LD>().SetData(loads.data(), static_cast<int>(loads.size()), false);
  }
  ExpectSameRuns(m.Db(), 0, [](DTSDB&) {});
}

TEST(RunMadeAtOnce, TakesModelsWithoutDoubledKeysOnly) {
  ModelBuilder m = GoodModel();
  internal::StartRun(m.Db());
  EXPECT_TRUE(internal::BulkGraph::Takes(m.Db()));
  std::vector<ANALOG> points{ANALOG(Id("A")), ANALOG(Id("A"))};
  m.Table<ANALOG>().SetData(points.data(), 2, false);
  internal::StartRun(m.Db());
  EXPECT_FALSE(internal::BulkGraph::Takes(m.Db()));
}

TEST(RunMadeAtOnce, TakesNoModelWithATableThatMayNotGrow) {
  ModelBuilder m = GoodModel();
  m.Table<R_ND_CB2>().SetGrowBy(0);
  internal::StartRun(m.Db());
  EXPECT_FALSE(internal::BulkGraph::Takes(m.Db()));
}

// The numbers that a dropped breaker comes with reach its zero-impedance branch.
TEST(RunMadeAtOnce, IsMadeAnewForABranchOnABreakerWithoutNodes) {
  ModelBuilder m = GoodModel();
  m.Breaker("B2", "K1", "", "").Zbr("Z1", "B2");
  m.Of<CB>("B2").ind = 700;
  m.Of<CB>("B2").iznd = 1;
  Side atOnce(ImageOf(m.Db()), Making::kAtOnce);
  Side oneByOne(ImageOf(m.Db()), Making::kOneByOne);
  EXPECT_EQ(atOnce.Run(), oneByOne.Run());
  EXPECT_TRUE(SlotsOf(atOnce.model) == SlotsOf(oneByOne.model));
  EXPECT_EQ(atOnce.model.m_zbr2Table->GetCount(), 2);
}

RC_GTEST_PROP(NameOrder, IsThatOfTheTexts, ()) {
  const auto unit = rc::gen::element<char16_t>(u'a', u'b', 0, 0xFF, 0x100, 0xFFFF);
  const auto names =
      *rc::gen::unique<std::vector<std::u16string>>(rc::gen::scale(3.0, rc::gen::container<std::u16string>(unit)));
  const std::u16string front = *rc::gen::element<std::u16string>(u"", u"a", u"aaaaaaaaaa", u"\u4E2Daaaaaaaaa");
  std::vector<QString> texts;
  for (const std::u16string& name : names) texts.push_back(QString::fromStdU16String(front + name));
  const std::vector<QStringView> views(texts.begin(), texts.end());
  std::vector<QString> ordered;
  for (const int place : internal::NameOrder(views)) ordered.push_back(texts[static_cast<std::size_t>(place)]);
  std::sort(texts.begin(), texts.end());
  RC_ASSERT(ordered == texts);
}

}  // namespace
}  // namespace dtsdb::test
