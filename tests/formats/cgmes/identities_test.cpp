// Identities of imported records: unique, fit for the model's texts, the same in every order of files.

#include "formats/import/identities.h"

#include <gtest/gtest.h>

#include "formats/csv.h"
#include "formats/files.h"
#include "formats/import_ids.h"
#include "tests/formats/cgmes/profile_text.h"
#include "tests/support/id_encoding.h"

namespace dtsdb::tools::cgmes::test {
namespace {

std::string Written(const char* text) { return Representable(QString::fromUtf8(text)).toStdString(); }

TEST(CgmesIdentities, LettersThatTheModelHoldsStayAndOthersLoseTheirAccent) {
  EXPECT_EQ(Written("北京220kV"), "北京220kV");
  EXPECT_EQ(Written("Łódź Strøm Straße"), "Lódz Strom Strasse");
  EXPECT_EQ(Written("  two   words\n"), "two words");
  EXPECT_EQ(Written("\xF0\x9F\x92\xA1 lamp"), "? lamp");
  EXPECT_EQ(Written("Eldalond\xC3\xAB"), "Eldalonde");
}

TEST(CgmesIdentities, InUtf8NoLetterIsLost) {
  const dtsdb::test::EncodingInEffect utf8(IdEncoding::kUtf8);
  EXPECT_EQ(Written("Łódź Strøm Straße 北京 💡"), "Łódź Strøm Straße 北京 💡");
  EXPECT_EQ(Written("Eldalonde\xCC\x88"), "Eldalond\xC3\xAB") << "one letter, however it is composed";
  ProfileText text;
  text.Node("N1").Node("N2").Equipment("Breaker", "b", {"N1", "N2"}, {{"IdentifiedObject.name", "Łódź 💡"}});
  Imported grid(text);
  EXPECT_EQ(IdToBytes(grid.Of<CB>("Łódź 💡").id), QByteArray("Łódź 💡"));
  EXPECT_EQ(grid.report.identities[0].identity, "Łódź 💡");
}

/// Two levels with a breaker of the same name in each, and two in the second.
ProfileText SameNames() {
  ProfileText text;
  text.Level("W", "S").Node("N1").Node("N2").Node("M1", "W").Node("M2", "W");
  const Values named = {{"IdentifiedObject.name", "Q0"}};
  text.Equipment("Breaker", "b3", {"M1", "M2"}, named).Equipment("Breaker", "b2", {"M1", "M2"}, named);
  return text.Equipment("Breaker", "b1", {"N1", "N2"}, named);
}

TEST(CgmesIdentities, ASharedNameGetsItsContainerAndThenANumber) {
  Imported grid(SameNames());
  EXPECT_EQ(grid.Count<CB>(), 3);
  EXPECT_EQ(grid.Of<CB>("V/Q0").nd, IdFromLiteral("N1"));
  EXPECT_EQ(grid.Of<CB>("W/Q0").id, IdFromLiteral("W/Q0"));
  EXPECT_EQ(grid.Of<CB>("W/Q0 (2)").id, IdFromLiteral("W/Q0 (2)"));
  const auto& identities = grid.report.identities;
  const auto found = std::find_if(identities.begin(), identities.end(),
                                  [](const ImportReport::Identity& row) { return row.identity == "W/Q0 (2)"; });
  ASSERT_NE(found, identities.end());
  EXPECT_EQ(found->mrid, "b3");  // in the order of the mRIDs, whatever that of the file
  EXPECT_EQ(found->name, "Q0");
  EXPECT_EQ(found->table, "CB");
}

TEST(CgmesIdentities, ANumberedNameDoesNotMeetAnother) {
  ProfileText text = SameNames();
  text.Equipment("Breaker", "W/Q0 (2)", {"N1", "N2"});
  Imported grid(text);
  EXPECT_EQ(grid.Count<CB>(), 4);
  EXPECT_EQ(grid.Of<CB>("W/Q0 (3)").kv, IdFromLiteral("W"));
}

TEST(CgmesIdentities, WithoutANameTheMridStands) {
  ProfileText text;
  text.Node("N1").Node("N2").Equipment("Breaker", "b", {"N1", "N2"}, {{"IdentifiedObject.name", ""}});
  EXPECT_EQ(Imported(text).Count<CB>(), 1);
  EXPECT_EQ(Imported(text).Of<CB>("b").id, IdFromLiteral("b"));
}

TEST(CgmesIdentities, MridsOnDemand) {
  Imported grid(SameNames(), {.idsAreMrids = true});
  for (const char* const id : {"b1", "b2", "b3"}) EXPECT_EQ(grid.Of<CB>(id).id, IdFromLiteral(id));
}

TEST(ImportIds, AreKeptBesideTheModel) {
  EXPECT_EQ(IdsPath(ModelName("tables/")), "tables.ids.csv");
  EXPECT_EQ(IdsPath(ModelName("rtdb:grid")), "grid.ids.csv");
  const SetFolder folder;
  const ModelName model(folder.Path() + "/grid.obj");
  WriteIds(Imported(SameNames()).report, model);
  std::vector<CsvRow> rows;
  ReadCsv(ReadFile(IdsPath(model)), [&rows](const CsvRow& row) { rows.push_back(row); });
  ASSERT_GT(rows.size(), 5U);
  EXPECT_EQ(rows[0].fields, (std::vector<CsvField>{"table", "identity", "mrid", "name"}));
  EXPECT_EQ(rows[1].fields, (std::vector<CsvField>{"CB", "V/Q0", "b1", "Q0"}));
}

}  // namespace
}  // namespace dtsdb::tools::cgmes::test
