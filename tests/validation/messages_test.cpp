// The messages of the validation and of the editing: codes, texts in both languages, what to do.
//
// With DTSDB_UPDATE_GOLDEN=1 in the environment the files in tests/validation/golden are written anew instead of
// compared.
#include <cstdlib>
#include <map>
#include <set>

#include "tests/support/bytes.h"
#include "tests/support/places.h"
#include "tests/validation/edit.h"
#include "validation/message_catalog.h"

namespace dtsdb::test {
namespace {

void ExpectGolden(const std::string& file, const std::string& text) {
  const std::string path = SourcePath("tests/validation/golden/") + file;
  if (std::getenv("DTSDB_UPDATE_GOLDEN") != nullptr) {
    WriteBytes(path, text);
    return;
  }
  EXPECT_EQ(text, ReadBytes(path)) << path;
}

std::string Shown(const char* text) {
  return text == nullptr ? "nothing" : Utf8(QString::fromUtf8(text).replace(QLatin1Char('\n'), QLatin1String("\\n")));
}

std::string TextsOf(const MessageInfo& message) {
  return "  " + Shown(message.chinese) + "\n    " + Shown(message.chineseRemedy) + "\n  " + Shown(message.english) +
         "\n    " + Shown(message.englishRemedy) + "\n";
}

TEST(Messages, AreAsKept) {
  std::string text;
  for (const MessageInfo& message : AllMessages()) text += message.code + ("\n" + TextsOf(message));
  ExpectGolden("messages.txt", text);
}

TEST(Messages, AreFoundByTheirCodes) {
  for (const MessageInfo& message : AllMessages()) EXPECT_EQ(FindMessage(message.code), &message) << message.code;
  for (const char* code : {"", "A", "CB", "CB_TYPE_INVALI", "CB_TYPE_INVALIDX", "ZZZ"}) {
    EXPECT_EQ(FindMessage(code), nullptr) << code;
  }
}

TEST(Messages, OfAFailureHaveSomethingToDoInBothLanguages) {
  for (const MessageInfo& message : AllMessages()) {
    if (message.severity == Severity::kNotice) continue;
    EXPECT_NE(message.Remedy(Language::kEnglish), nullptr) << message.code;
    EXPECT_NE(message.Remedy(Language::kChinese), nullptr) << message.code;
  }
}

// Findings

template <class... Record>
void PutNameless(ModelBuilder& m) {
  (m.Put(Record()), ...);
}

using PutShunt = ModelBuilder& (ModelBuilder::*)(const char*, const char*, const char*);
using PutLine = ModelBuilder& (ModelBuilder::*)(const char*, const char*, const char*, const char*, const char*,
                                                const char*, const char*, const char*);

/// Station S1 with the levels K1 (node N1) and K2 (node M1), station S2 with K3 (node P1) and K4, all without
/// measurements, and node N3 with one device. Its names come in front of those of the faults, so that its nodes are
/// made in their levels.
void AddNetwork(ModelBuilder& m) {
  m.District("D2").Station("S1").Kv("K1", 220).Kv("K2", 110).Station("S2").Kv("K3", 220).Kv("K4", 110);
  m.Unit("0", "K1", "N1").Load("0", "K1", "N1").Cap("0", "K1", "N1").Bus("0", "K1", "N1").Load("01", "K1", "N3");
  m.Breaker("0", "K1", "N1", "N2").Zbr("0", "0").Winding("0", "S1", "K1", "K2", "N1", "M1");
  m.Line("0", "DV", "S1", "S2", "K1", "K3", "N1", "P1").DcLine("0", "DV", "S1", "S2", "K1", "K3", "N1", "P1");
}

void AddFaultsOfTheTree(ModelBuilder& m) {
  m.District("D9", "nowhere").Station("S9", "nowhere").Kv("K9");
  m.Of<ST>("S9").type = 9;
  KV& kv = m.Of<KV>("K9");
  kv.st = Id("nowhere");
  kv.vbase = -1.0F;
  kv.vmax = -3.0F;
  kv.vmin = -2.0F;
}

void AddFaultsOfBreakers(ModelBuilder& m) {
  m.Breaker("1", "nowhere", "N1", "N2").Breaker("2", "K1", "", "N2").Breaker("3", "K1", "N1", "");
  m.Breaker("4", "K1", "N1", "N2").Breaker("5", "K1", "M1", "N2").Breaker("6", "K1", "N1", "M1");
  m.Breaker("7", "K1", "N1", "N1").Zbr("7", "7").Zbr("8", "nowhere");
  m.Of<CB>("4").flags = 0;
}

void AddFaultsOfWindings(ModelBuilder& m) {
  m.Winding("1", "nowhere", "K1", "K2", "N1", "M1").Winding("2", "S1", "K1", "K2", "", "M1");
  m.Winding("3", "S1", "K1", "K2", "N1", "").Winding("4", "S1", "", "K2", "N1", "M1");
  m.Winding("5", "S1", "K1", "", "N1", "M1").Winding("6", "S1", "K1", "K2", "N1", "M1");
  m.Winding("7", "S1", "K1", "K2", "M1", "M1").Winding("8", "S1", "K1", "K2", "N1", "N1");
  m.Winding("90", "S1", "nowhere", "K2", "Q1", "M1").Winding("91", "S1", "K1", "nowhere", "N1", "Q2");
  m.Winding("92", "S1", "K1", "K1", "N1", "N1");
  m.Of<XF>("6").type = 4;
}

void AddFaultsOfLines(ModelBuilder& m, PutLine put) {
  const auto line = [&](const char* id, const char* dv, const char* st, const char* zst, const char* kv,
                        const char* zkv, const char* nd,
                        const char* znd) { (m.*put)(id, dv, st, zst, kv, zkv, nd, znd); };
  line("1", "DV", "", "S2", "K1", "K3", "N1", "P1");
  line("2", "DV", "S1", "", "K1", "K3", "N1", "P1");
  line("3", "DV", "S1", "S2", "K2", "K3", "N1", "P1");
  line("4", "DV", "S1", "S2", "nowhere", "K3", "Q3", "P1");
  line("5", "DV", "S1", "S2", "K1", "K4", "N1", "P1");
  line("6", "DV", "S1", "S2", "K1", "nowhere", "N1", "Q4");
  line("7", "DV", "S1", "S1", "K1", "K1", "N1", "N1");
  line("8", "nowhere", "S1", "S2", "K1", "K3", "N1", "P1");
  line("90", "DV", "S2", "S2", "K1", "K3", "N1", "P1");
  line("91", "D2", "S1", "S2", "K1", "K3", "N1", "P1");
  line("92", "DV", "S1", "S2", "K1", "K4", "N1", "P4");
}

/// Every fault that a run can find.
ModelBuilder Faulty() {
  ModelBuilder m;
  AddNetwork(m);
  AddFaultsOfTheTree(m);
  for (const PutShunt put : {PutShunt(&ModelBuilder::Unit), PutShunt(&ModelBuilder::Load), PutShunt(&ModelBuilder::Cap),
                             PutShunt(&ModelBuilder::Bus)}) {
    (m.*put)("1", "nowhere", "N1");
    (m.*put)("2", "K1", "");
    (m.*put)("3", "K2", "N1");
  }
  AddFaultsOfBreakers(m);
  AddFaultsOfWindings(m);
  AddFaultsOfLines(m, &ModelBuilder::Line);
  AddFaultsOfLines(m, &ModelBuilder::DcLine);
  PutNameless<CO, DV, ST, KV, UN, LD, CP, BUS, CB, XF, LN, DLN>(m);
  return m;
}

// What an earlier step of a run keeps from being found: records without a parent are dropped before, and the nodes of
// lines are made before they are looked for.
const std::set<std::string> kNotInARun = {"UN_LEVEL_EMPTY",         "LD_LEVEL_EMPTY",        "CP_LEVEL_EMPTY",
                                          "BUS_LEVEL_EMPTY",        "CB_LEVEL_EMPTY",        "XF_STATION_EMPTY",
                                          "UN_NODE_LEVEL_UNKNOWN",  "LD_NODE_LEVEL_UNKNOWN", "CP_NODE_LEVEL_UNKNOWN",
                                          "BUS_NODE_LEVEL_UNKNOWN", "CB_NODE_LEVEL_UNKNOWN", "LN_FROM_NODE_UNKNOWN",
                                          "LN_TO_NODE_UNKNOWN",     "DLN_FROM_NODE_UNKNOWN", "DLN_TO_NODE_UNKNOWN"};

bool IsOfACheck(const MessageInfo& message) {
  const std::string_view code = message.code;
  return message.table != KIND_NONE && !code.starts_with("ADD_") && !code.starts_with("REMOVE_") &&
         !code.starts_with("TOPOLOGY_");
}

TEST(Findings, OfEveryKindBearTheirCode) {
  ModelBuilder m = Faulty();
  const ValidationRun run(m.Db());
  std::map<std::string, Finding> found;
  for (const Finding& finding : run.nmd.Findings()) {
    if (finding.severity != Severity::kNotice) found.try_emplace(finding.code, finding);
  }
  std::set<std::string> missing;
  for (const MessageInfo& message : AllMessages()) {
    if (IsOfACheck(message) && !found.contains(message.code)) missing.insert(message.code);
  }
  EXPECT_EQ(missing, kNotInARun);
  std::string text;
  for (const auto& [code, finding] : found) {
    const MessageInfo& message = *FindMessage(code);
    text += code + " '" + Utf8(TextFromId(finding.id)) + "' " + (finding.field == nullptr ? "" : finding.field) + "\n" +
            TextsOf(message);
  }
  ExpectGolden("findings.txt", text);
}

// The last error

TEST(LastErrorCode, IsNoneBeforeTheFirstFailureAndGoesWithACopy) {
  ModelBuilder m = GoodModel();
  const TemporaryDirectory directory;
  NMD nmd(&m.Db());
  EXPECT_TRUE(nmd.DetectAll());
  EXPECT_EQ(nmd.LastErrorCode(), nullptr);
  EXPECT_FALSE(nmd.IsValid(CO(Id("CO"))));
  EXPECT_STREQ(nmd.LastErrorCode(), "ADD_CO_EXISTS");
  const NMD copy(nmd);
  EXPECT_STREQ(copy.LastErrorCode(), "ADD_CO_EXISTS");
}

TEST(LastErrorCode, DistinguishesRecordClassesThatShareAText) {
  ModelBuilder m = GoodModel();
  Editing edit(m);
  m.Kv("K2", 110);
  EXPECT_EQ(edit.Why(NewShunt<UN>("X", "K2", "N1")), "结点的母线与指定的矛盾.\n");
  EXPECT_STREQ(edit.nmd.LastErrorCode(), "ADD_UN_NODE_IN_OTHER_LEVEL");
  EXPECT_EQ(edit.Why(NewBreaker("X", "K2", "N1", "N9")), "结点的母线与指定的矛盾.\n");
  EXPECT_STREQ(edit.nmd.LastErrorCode(), "ADD_CB_NODE_IN_OTHER_LEVEL");
}

TEST(LastErrorCode, IsSetWhereARemovalLeavesTheText) {
  ModelBuilder m = GoodModel().Kv("K2", 110);
  m.Winding("X", "S1", "K1", "K2", "N8", "N9");
  Editing edit(m);
  EXPECT_NE(edit.Why(CO(Id("CO"))), "");
  m.Of<XF>("X").xf2 = -1;
  EXPECT_FALSE(edit.nmd.RemoveXF(Id("X")));
  EXPECT_EQ(edit.LastError(), "已经存在该公司记录.\n");
  EXPECT_STREQ(edit.nmd.LastErrorCode(), "REMOVE_XF_FROM_END_MISSING");
}

TEST(LastErrorCode, IsThatOfATableThatStopsARun) {
  ModelBuilder m = GoodModel();
  Duplicate<DV>(m, "DV");
  const ValidationRun run(m.Db());
  EXPECT_FALSE(run.result);
  EXPECT_STREQ(run.nmd.LastErrorCode(), "R_CO_DV_FULL");
}

}  // namespace
}  // namespace dtsdb::test
