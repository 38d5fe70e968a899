// Files from strangers: what is refused, in which words, and what is passed over.

#include <gtest/gtest.h>

#include "formats/cgmes/reader.h"
#include "formats/cgmes/set.h"
#include "formats/cgmes/source.h"
#include "formats/import/guarded_device.h"
#include "tests/formats/cgmes/profile_text.h"

namespace dtsdb::tools::cgmes::test {
namespace {

/// How reading one file with these bytes fails, without the folder.
std::string FaultOf(const std::string& bytes) {
  const SetFolder folder;
  const std::string path = folder.Write("a.xml", bytes);
  std::string failure = FailureOf([&] { ReadSet({path}); });
  const std::size_t begin = failure.find("a.xml");
  return begin == std::string::npos ? failure : failure.substr(begin);
}

std::string Replaced(std::string text, const std::string& what, const std::string& by) {
  const std::size_t begin = text.find(what);
  EXPECT_NE(begin, std::string::npos) << what;
  return text.replace(begin, what.size(), by);
}

const std::string kEnd = "</rdf:RDF>\n";

TEST(CgmesReader, BothVersionsAreRead) {
  const std::string three = ProfileText().Text();
  EXPECT_EQ(FaultOf(three), "");
  const std::string two = Replaced(three, "CIM100#", "2013/CIM-schema-cim16#");
  const SetFolder folder;
  const ProfileSet set = ReadSet({folder.Write("a.xml", two)});
  EXPECT_EQ(set.profiles[0].version, "2.4.15");
}

TEST(CgmesReader, AnotherVersionIsRefused) {
  EXPECT_EQ(FaultOf(Replaced(ProfileText().Text(), "CIM100#", "2009/CIM-schema-cim14#")),
            "a.xml, line 2: its CIM namespace is neither that of CGMES 2.4.15 nor of 3.0");
}

TEST(CgmesReader, KindsOfProfileInBothVersions) {
  const auto kind = [](const char* uri) { return std::string(ShortName(KindOfProfile(QString::fromLatin1(uri)))); };
  EXPECT_EQ(kind("http://entsoe.eu/CIM/EquipmentCore/3/1"), "EQ");
  EXPECT_EQ(kind("http://entsoe.eu/CIM/EquipmentOperation/3/1"), "EQ");
  EXPECT_EQ(kind("http://entsoe.eu/CIM/EquipmentBoundary/3/1"), "EQBD");
  EXPECT_EQ(kind("http://entsoe.eu/CIM/TopologyBoundary/3/1"), "TPBD");
  EXPECT_EQ(kind("http://entsoe.eu/CIM/SteadyStateHypothesis/1/1"), "SSH");
  EXPECT_EQ(kind("http://entsoe.eu/CIM/Topology/4/1"), "TP");
  EXPECT_EQ(kind("http://entsoe.eu/CIM/StateVariables/4/1"), "SV");
  EXPECT_EQ(kind("http://entsoe.eu/CIM/DiagramLayout/3/1"), "other");
  EXPECT_EQ(kind("http://iec.ch/TC57/ns/CIM/CoreEquipment-EU/3.0"), "EQ");
  EXPECT_EQ(kind("http://iec.ch/TC57/ns/CIM/ShortCircuit-EU/3.0"), "EQ");
  EXPECT_EQ(kind("http://iec.ch/TC57/ns/CIM/EquipmentBoundary-EU/3.0"), "EQBD");
  EXPECT_EQ(kind("http://iec.ch/TC57/ns/CIM/Topology-EU/3.0"), "TP");
  EXPECT_EQ(kind("http://iec.ch/TC57/ns/CIM/GeographicalLocation-EU/3.0"), "GL");
  EXPECT_EQ(kind("http://entsoe.eu/CIM/GeographicalLocation/2/1"), "GL");
  EXPECT_EQ(kind("http://iec.ch/TC57/ns/CIM/Dynamics-EU/3.0"), "other");
}

TEST(CgmesReader, AFileWithoutAHeaderIsRefused) {
  const std::string text = ProfileText().Text();
  const std::size_t begin = text.find("<md:FullModel");
  const std::size_t end = text.find("</md:FullModel>") + 15;
  EXPECT_NE(FaultOf(text.substr(0, begin) + text.substr(end)).find("has no header (md:FullModel)"), std::string::npos);
}

TEST(CgmesReader, ADifferenceModelIsRefused) {
  const std::string begin(ProfileText::kBegin);
  EXPECT_NE(FaultOf(begin + "<md:DifferenceModel rdf:about=\"#_d\"/>" + kEnd).find("is a difference model"),
            std::string::npos);
}

TEST(CgmesReader, ADocumentTypeDeclarationIsRefused) {
  const std::string laughs =
      "<!DOCTYPE rdf:RDF [<!ENTITY a \"ha\"><!ENTITY b \"&a;&a;&a;&a;&a;&a;&a;&a;\"><!ENTITY c "
      "\"&b;&b;&b;&b;&b;\">]>\n";
  EXPECT_EQ(FaultOf(Replaced(ProfileText().Text(), "<rdf:RDF", laughs + "<rdf:RDF")),
            "a.xml, line 2: a document type declaration or an entity, which no profile has, is refused");
}

TEST(CgmesReader, AnEntityThatNothingDeclaresIsRefused) {
  EXPECT_NE(FaultOf(Replaced(ProfileText().Text(), ">220<", ">&file;<")).find("a.xml, line "), std::string::npos);
}

TEST(CgmesReader, ElementsThatAreNestedTooDeepAreRefused) {
  std::string text = ProfileText::kBegin;
  for (int i = 0; i < 100'000; ++i) text += "<a rdf:ID=\"_1\">";
  EXPECT_NE(FaultOf(text).find("elements are nested deeper than in any profile"), std::string::npos);
}

TEST(CgmesReader, WhatIsNestedInAPropertyIsPassedOver) {
  ProfileText text;
  text.Node("N1").Node("N2").Equipment("Breaker", "B", {"N1", "N2"}, {{"Switch.open", "true<a>false</a>"}});
  EXPECT_TRUE(Imported(text).Of<CB>("B").flags & 0x100);
}

TEST(CgmesReader, TagsAndTextsThatAreTooLongAreRefused) {
  const std::string tooLong(GuardedDevice::kLongest * 3, 'x');
  const std::string text = ProfileText().Text();
  const std::string fault = "a tag or text is longer than 64 KiB";
  EXPECT_NE(FaultOf(Replaced(text, "\"_C\"", "\"_" + tooLong + "\"")).find(fault), std::string::npos);
  EXPECT_NE(FaultOf(Replaced(text, ">220<", ">" + tooLong + "<")).find(fault), std::string::npos);
  EXPECT_NE(FaultOf(Replaced(text, "<cim:", "<!--" + tooLong + "--><cim:")).find(fault), std::string::npos);
}

TEST(CgmesReader, AsManyAttributesAsATagMayHaveEndSoon) {
  std::string tag = "<cim:Breaker rdf:ID=\"_1\"";
  for (int i = 0; tag.size() < GuardedDevice::kLongest - 100; ++i) tag += " a" + std::to_string(i) + "=\"\"";
  EXPECT_EQ(FaultOf(ProfileText::kBegin + tag + "/>" + kEnd), "");
}

TEST(CgmesReader, AFileThatIsCutOffIsRefusedWithItsLine) {
  const std::string text = ProfileText().Text();
  for (const std::size_t length : {text.size() / 2, text.size() - 5}) {
    const std::string fault = FaultOf(text.substr(0, length));
    EXPECT_TRUE(fault.starts_with("a.xml, line ")) << fault;
  }
}

TEST(CgmesReader, AWrongEncodingIsRefused) {
  EXPECT_NE(FaultOf(Replaced(ProfileText().Text(), ">S<", ">\xFF\xFE\xC3<")), "");
  EXPECT_NE(FaultOf(Replaced(ProfileText().Text(), "UTF-8", "no-such")), "");
}

TEST(CgmesReader, Utf16AndLatin1AreRead) {
  ProfileText profile;
  profile.Node("N1").Node("N2").Equipment("Breaker", "B", {"N1", "N2"});
  const QString text = QString::fromStdString(Replaced(profile.Text(), "encoding=\"UTF-8\"", ""));
  const QByteArray bytes(reinterpret_cast<const char*>(text.utf16()), text.size() * 2);
  EXPECT_EQ(Imported(std::vector<std::string>{"\xFF\xFE" + bytes.toStdString()}).Count<CB>(), 1);
  const std::string latin = Replaced(profile.Text(), "UTF-8", "ISO-8859-1");
  EXPECT_EQ(Imported(std::vector<std::string>{Replaced(latin, ">B<", ">\xE9<")}).report.identities[0].name, "é");
}

TEST(CgmesReader, AnObjectWithoutIdentityIsRefused) {
  EXPECT_NE(FaultOf(ProfileText::kBegin + std::string("<cim:Breaker/>") + kEnd)
                .find("an object has neither rdf:ID nor rdf:about"),
            std::string::npos);
}

TEST(CgmesReader, ReferencesInCirclesEnd) {
  ProfileText text;
  text.Add("Bay", "Bay", {{"Bay.VoltageLevel", "#Bay"}}).Node("N1", "Bay").Node("N2", "N2");
  text.Add("VoltageLevel", "W", {{"VoltageLevel.Substation", "#W"}}).Node("N3", "W");
  text.About("SubGeographicalRegion", "D", {{"SubGeographicalRegion.Region", "#D"}});
  text.Equipment("ACLineSegment", "L", {"N1", "N2"}).Equipment("Breaker", "B", {"N3", "N3"});
  Imported grid(text);
  EXPECT_EQ(grid.Count<LN>(), 1);
  EXPECT_EQ(grid.Count<CB>(), 0);
}

TEST(CgmesReader, MridsAreTheSameHoweverTheyAreWritten) {
  for (const char* const written : {"#_a", "_a", "a", "#a", "urn:uuid:a", "http://grid/model#_a"}) {
    EXPECT_EQ(MridOf(QString::fromLatin1(written)).toString(), QStringLiteral("a")) << written;
  }
}

TEST(CgmesReader, AProfileThatIsNotReadIsLeftBehindItsHeader) {
  std::string text = ProfileText().Text();
  for (const char* const name : {"CoreEquipment", "SteadyStateHypothesis", "StateVariables", "Topology"}) {
    text = Replaced(text, std::string("CIM/") + name, "CIM/DiagramLayout");
  }
  const SetFolder folder;
  const ProfileSet set = ReadSet({folder.Write("a.xml", text.substr(0, text.size() - 100))});  // its end isn't reached
  EXPECT_FALSE(set.profiles[0].isRead);
  EXPECT_EQ(set.objects.Count(), 0);
}

TEST(CgmesSet, ProfilesAddToObjectsInAnyOrder) {
  ProfileText equipment;
  equipment.Node("N1").Node("N2").Equipment("Breaker", "B", {"N1", "N2"});
  const std::string state = ProfileText::kBegin +
                            std::string(
                                "<cim:Switch rdf:about=\"#_B\"><cim:Switch.open>true</cim:Switch.open>"
                                "</cim:Switch>") +
                            kEnd;
  for (const auto& texts : {std::vector{equipment.Text(), state}, std::vector{state, equipment.Text()}}) {
    EXPECT_EQ(Imported(texts).Of<CB>("B").flags, 0x101U);
  }
}

TEST(CgmesSet, TwoStatesOfOneGridAreRefused) {
  const auto at = [](const char* time) {
    return Replaced(ProfileText().Text(), "<md:Model.profile>",
                    std::string("<md:Model.scenarioTime>") + time + "</md:Model.scenarioTime><md:Model.profile>");
  };
  EXPECT_NE(FailureOf([&] {
              Imported grid(std::vector{at("08:00"), at("09:00")});
            }).find("are two states of one grid"),
            std::string::npos);
  EXPECT_EQ(FailureOf([&] {
              Imported grid(std::vector{at("08:00"), at("08:00")});
            }).find("two states"),
            std::string::npos);
}

TEST(CgmesSource, ContentsAreRecognisedByTheirBeginning) {
  EXPECT_EQ(ContentOf(std::string_view(ProfileText::kBegin)), Content::kRdf);
  EXPECT_EQ(ContentOf("\xEF\xBB\xBF <?xml version='1.0'?><!-- a > b --> <RDF xmlns='x'>"), Content::kRdf);
  EXPECT_EQ(ContentOf("<iidm:network xmlns:iidm='x'>"), Content::kOther);
  EXPECT_EQ(ContentOf("<RDFS>"), Content::kOther);
  EXPECT_EQ(ContentOf("PK\x03\x04"), Content::kZip);
  EXPECT_EQ(ContentOf("id,kv\r\n"), Content::kOther);
  EXPECT_EQ(ContentOf(""), Content::kOther);
}

TEST(CgmesSource, AFolderIsASetUnlessItHasTextTables) {
  const SetFolder folder;
  EXPECT_FALSE(IsSet(folder.Path()));
  folder.Write("readme.txt", "about the grid");
  EXPECT_FALSE(IsSet(folder.Path()));
  const std::string file = folder.Write("eq", ProfileText().Text());  // its name doesn't count
  EXPECT_TRUE(IsSet(folder.Path()));
  EXPECT_TRUE(IsSet(file));
  folder.Write("KV.csv", "id\r\n");
  EXPECT_FALSE(IsSet(folder.Path()));
}

TEST(CgmesSource, WhatIsNotThereIsRefused) {
  EXPECT_EQ(FailureOf([] { ReadSet({"no-such-file"}); }), "no-such-file: there is no such file or folder");
  const SetFolder folder;
  EXPECT_EQ(FailureOf([&] { ReadSet({folder.Path()}); }), folder.Path() + ": there are no CGMES profiles");
}

}  // namespace
}  // namespace dtsdb::tools::cgmes::test
