// What a file from a stranger can hold: each fault ends in one line that names file, line and object.

#include <gtest/gtest.h>

#include <QTemporaryDir>

#include "formats/files.h"
#include "formats/import/archive.h"
#include "formats/import/guarded_device.h"
#include "tests/formats/xiidm/network_text.h"

namespace dtsdb::tools::xiidm::test {
namespace {

std::string BusFault(const std::string& equipment) { return FaultOf(NetworkText(BusLevel(equipment))); }

std::string TopologyFault(const std::string& topology, const std::string& equipment = "") {
  return FaultOf(NetworkText(Level(topology, equipment)));
}

TEST(XiidmReader, AllVersionsAreRead) {
  for (int minor = 0; minor <= 17; ++minor) {
    const std::string version = "1_" + std::to_string(minor);
    for (const char* const uri : {"http://www.itesla_project.eu/schema/iidm/", "http://www.powsybl.org/schema/iidm/",
                                  "http://www.powsybl.org/schema/iidm/equipment/"}) {
      const Imported grid(NetworkText(BusLevel(""), uri + version));
      EXPECT_EQ(grid.report.files[0].version, "1." + std::to_string(minor));
      EXPECT_EQ(grid.report.files[0].time, "2026-01-01T00:00:00.000Z");
    }
  }
}

TEST(XiidmReader, OtherVersionsAreRefused) {
  EXPECT_EQ(FaultOf(NetworkText("", "http://www.powsybl.org/schema/iidm/1_18")),
            "a.xiidm, line 2: its version '1.18' isn't one of those that are read, 1.0 to 1.17");
  EXPECT_NE(FaultOf(NetworkText("", "http://www.powsybl.org/schema/iidm/2_0")), "");
}

TEST(XiidmReader, WhatIsNoNetworkIsRefused) {
  const std::string fault = "is no XIIDM file: its root element isn't a network of XIIDM";
  EXPECT_EQ(FaultOf("<network/>"), "a.xiidm, line 1: " + fault);
  EXPECT_EQ(FaultOf("<a xmlns=\"http://www.powsybl.org/schema/iidm/1_1\"/>"), "a.xiidm, line 1: " + fault);
  EXPECT_TRUE(FaultOf("").starts_with("a.xiidm, line 1: "));
}

TEST(XiidmReader, ADocumentTypeDeclarationIsRefused) {
  const std::string text = NetworkText("");
  const std::size_t root = text.find("<iidm");
  EXPECT_EQ(
      FaultOf(text.substr(0, root) + "<!DOCTYPE a [<!ENTITY b \"bb\"><!ENTITY c \"&b;&b;\">]>\n" + text.substr(root)),
      "a.xiidm, line 2: a document type declaration or an entity, which no XIIDM file has, is refused");
  EXPECT_TRUE(BusFault("<iidm:load id=\"&b;\"/>").starts_with("a.xiidm, line 8: "));
}

TEST(XiidmReader, WhatNoNetworkNeedsIsRefused) {
  std::string deep;
  for (int i = 0; i < 100'000; ++i) deep += "<iidm:network id=\"n\">";
  EXPECT_EQ(FaultOf(NetworkText(deep)), "a.xiidm, line 3: elements are nested deeper than in any network");
  const std::string tooLong(GuardedDevice::kLongest * 3, 'x');
  for (const std::string& text : {"<iidm:load id=\"" + tooLong + "\"/>", tooLong, "<!--" + tooLong + "-->"}) {
    EXPECT_EQ(BusFault(text), "a.xiidm, line 8: a tag or text is longer than 64 KiB");
  }
}

TEST(XiidmReader, MoreElementsThanAnyNetworkHasAreRefused) {
  QByteArray text = QByteArray::fromStdString(NetworkText(BusLevel("")));  // a level, its topology and two buses
  const auto read = [&text](int most) {
    QBuffer input(&text);
    input.open(QIODevice::ReadOnly);
    ReadNetwork(input, "a.xiidm", most);
  };
  EXPECT_NO_THROW(read(4));
  try {
    read(3);
    ADD_FAILURE() << "read";
  } catch (const Failure& failure) {
    EXPECT_STREQ(failure.what(), "a.xiidm, line 6: it has more elements than any network");
  }
  EXPECT_EQ(kMostElements, 20'000'000);
}

TEST(XiidmReader, AFileThatIsCutOffIsRefusedWithItsLine) {
  const std::string text = NetworkText(BusLevel(""));
  for (std::size_t length = text.find("<iidm"); length < text.size() - 2; length += 7) {
    const std::string fault = FaultOf(text.substr(0, length));
    EXPECT_TRUE(fault.starts_with("a.xiidm, line ")) << fault;
  }
}

TEST(XiidmReader, AWrongEncodingIsRefused) {
  EXPECT_TRUE(BusFault("<iidm:load id=\"\xFF\xFE\xC3\"/>").starts_with("a.xiidm, line "));
  std::string text = NetworkText("");
  text.replace(text.find("UTF-8"), 5, "no-such");
  EXPECT_TRUE(FaultOf(text).starts_with("a.xiidm, line "));
}

TEST(XiidmReader, AnIdThatStandsTwiceIsRefused) {
  EXPECT_EQ(BusFault("<iidm:load id=\"B2\"/>"), "a.xiidm, line 8: load 'B2' has the id of the bus in line 6");
  EXPECT_EQ(BusFault("<iidm:load name=\"x\"/>"), "a.xiidm, line 8: a load has no id");
}

TEST(XiidmReader, AReferenceToNothingIsRefused) {
  EXPECT_EQ(BusFault("<iidm:load id=\"L\" bus=\"b\"/>"),
            "a.xiidm, line 8: load 'L': the bus 'b' isn't in the voltage level 'V'");
  EXPECT_EQ(BusFault("<iidm:load id=\"L\" bus=\"V\"/>"),
            "a.xiidm, line 8: load 'L': the bus 'V' isn't in the voltage level 'V'");
  EXPECT_EQ(BusFault("<iidm:load id=\"L\"/>"), "a.xiidm, line 8: load 'L': it is on no node and on no bus");
  EXPECT_EQ(FaultOf(NetworkText("<iidm:line id=\"L\" voltageLevelId1=\"A\" bus1=\"b\"/>")),
            "a.xiidm, line 3: line 'L': the voltage level 'A' at end 1 isn't in the file");
  EXPECT_EQ(FaultOf(NetworkText("<iidm:tieLine id=\"L\" boundaryLineId1=\"L\" boundaryLineId2=\"L\"/>")),
            "a.xiidm, line 3: tieLine 'L': its half 'L' is no boundary line of the file");
  EXPECT_EQ(FaultOf(NetworkText("<iidm:hvdcLine id=\"L\" converterStation1=\"c\"/>")),
            "a.xiidm, line 3: hvdcLine 'L': its end 'c' is no converter station of the file");
}

TEST(XiidmReader, EquipmentOutsideOfALevelIsRefused) {
  EXPECT_EQ(FaultOf(NetworkText("<iidm:load id=\"L\" bus=\"b\"/>")),
            "a.xiidm, line 3: a load stands outside of a voltage level");
  EXPECT_EQ(FaultOf(NetworkText("<iidm:internalConnection node1=\"1\" node2=\"2\"/>")),
            "a.xiidm, line 3: an internalConnection stands outside of a voltage level");
}

TEST(XiidmReader, ANumberOfANodeIsFrom0To2147483647) {
  const auto load = [](const std::string& node) { return "<iidm:load id=\"L\" node=\"" + node + "\"/>"; };
  EXPECT_EQ(TopologyFault("", load("2147483647")), "");
  for (const char* const node : {"2147483648", "-1", "99999999999999999999", "1.0", "", "x"}) {
    EXPECT_EQ(TopologyFault("", load(node)),
              "a.xiidm, line 7: load 'L': '" + std::string(node) + "' is no number of a node, 0 to 2147483647");
    EXPECT_NE(TopologyFault("<iidm:internalConnection node1=\"0\" node2=\"" + std::string(node) + "\"/>"), "");
  }
}

TEST(XiidmReader, HalvesAndEndsThatMeetTwiceAreLeftOut) {
  Imported tie(
      NetworkText(BusLevel("<iidm:boundaryLine id=\"X\" bus=\"B1\"/><iidm:boundaryLine id=\"Y\" bus=\"B2\"/>") +
                  "<iidm:tieLine id=\"T\" boundaryLineId1=\"X\" boundaryLineId2=\"Y\"/>"
                  "<iidm:tieLine id=\"U\" boundaryLineId1=\"X\" boundaryLineId2=\"X\"/>"));
  EXPECT_EQ(tie.Count<LN>(), 1);
  EXPECT_EQ(WhyOf(tie.report.leftOut, "tieLine"), "one of its halves is a half already");
  Imported used(NetworkText(BusLevel("<iidm:boundaryLine id=\"X\" bus=\"B1\"/><iidm:boundaryLine id=\"Y\" bus=\"B2\"/>"
                                     "<iidm:boundaryLine id=\"Z\" bus=\"B2\"/>") +
                            "<iidm:tieLine id=\"T\" boundaryLineId1=\"X\" boundaryLineId2=\"Y\"/>"
                            "<iidm:tieLine id=\"U\" boundaryLineId1=\"X\" boundaryLineId2=\"Z\"/>"));
  EXPECT_EQ(WhyOf(used.report.leftOut, "tieLine"), "one of its halves is a half already");
  Imported dc(NetworkText(BusLevel("<iidm:vscConverterStation id=\"v\" bus=\"B1\"/>") +
                          "<iidm:hvdcLine id=\"D\" converterStation1=\"v\" converterStation2=\"v\"/>"));
  EXPECT_EQ(dc.Count<DLN>(), 0);
  EXPECT_NE(WhyOf(dc.report.leftOut, "hvdcLine"), "");
}

TEST(XiidmReader, ChainsOfJoinedNodesEndSoon) {
  constexpr int kNodes = 200'000;
  std::string text;
  for (int i = kNodes; i > 0; --i) {
    text += "<iidm:internalConnection node1=\"" + std::to_string(i) + "\" node2=\"" + std::to_string(i - 1) + "\"/>\n";
  }
  for (int i = 0; i < kNodes; ++i) {
    text += "<iidm:internalConnection node1=\"" + std::to_string(kNodes) + "\" node2=\"" + std::to_string(i) + "\"/>\n";
  }
  Imported grid(NetworkText(Level(text, "<iidm:load id=\"L\" node=\"" + std::to_string(kNodes) + "\"/>")));
  EXPECT_EQ(Real(grid.Of<LD>("L").nd), "V 0");
}

TEST(XiidmReader, NumbersThatAreNoneCountAsMissing) {
  Imported grid(
      NetworkText(BusLevel("<iidm:load id=\"L\" p0=\"NaN\" q0=\"1e999\" bus=\"B1\"/>"
                           "<iidm:load id=\"M\" p0=\"1e300\" q0=\"\" bus=\"B1\"/>")));
  EXPECT_EQ(grid.Of<LD>("L").p, 0.0F);
  EXPECT_EQ(grid.Of<LD>("L").q, 0.0F);
  EXPECT_EQ(grid.Of<LD>("M").p, std::numeric_limits<float>::max());
}

/// The line with which a file with these bytes is refused, without its path.
std::string FaultOfFile(const QByteArray& bytes) {
  const QTemporaryDir folder;
  const std::string path = folder.path().toStdString() + "/a.xiidm.gz";
  WriteFile(path, bytes.toStdString());
  try {
    DTSDB model;
    Import(path, {}, model);
  } catch (const Failure& failure) {
    return std::string(failure.what()).substr(path.size());
  }
  return "";
}

QByteArray Packed(const std::string& text) {
  QBuffer packed;
  packed.open(QIODevice::WriteOnly);
  EXPECT_TRUE(Pack(QByteArray::fromStdString(text), packed));
  return packed.data();
}

TEST(XiidmPacked, FilesAreRead) { EXPECT_EQ(FaultOfFile(Packed(NetworkText(BusLevel("")))), ""); }

TEST(XiidmFile, ShowsHowFarItIsRead) {
  const QTemporaryDir folder;
  const std::string path = folder.path().toStdString() + "/a";
  std::string loads;
  for (int i = 0; i < 3000; ++i) loads += "<iidm:load id=\"L" + std::to_string(i) + "\" bus=\"B1\"/>\n";
  const std::string text = NetworkText(BusLevel(loads));
  for (const std::string& bytes : {text, Packed(text).toStdString()}) {
    WriteFile(path, bytes);
    std::vector<std::uint64_t> done;
    DTSDB model;
    Import(path, {}, model, [&](std::uint64_t read, std::uint64_t total) {
      EXPECT_EQ(total, bytes.size());
      done.push_back(read);
    });
    ASSERT_FALSE(done.empty());
    EXPECT_TRUE(std::is_sorted(done.begin(), done.end()));
    EXPECT_LE(done.back(), bytes.size());
    EXPECT_GT(done.back(), bytes.size() / 2);
  }
}

TEST(XiidmFile, ThatIsNotThereIsRefused) {
  const QTemporaryDir folder;
  DTSDB model;
  for (const auto& [path, fault] : {std::pair{folder.path().toStdString() + "/a", ": there is no such file"},
                                    std::pair{folder.path().toStdString(), ": is no file"}}) {
    try {
      Import(path, {}, model);
      ADD_FAILURE() << path;
    } catch (const Failure& failure) {
      EXPECT_EQ(failure.what(), path + fault);
    }
  }
}

TEST(XiidmPacked, DamagedFilesAreRefused) {
  const QByteArray bytes = Packed(NetworkText(BusLevel("")));
  EXPECT_NE(FaultOfFile(bytes.first(bytes.size() / 2)), "");
  QByteArray damaged = bytes;
  damaged.replace(bytes.size() / 2, 20, QByteArray(20, '\x5A'));
  EXPECT_NE(FaultOfFile(damaged), "");
}

TEST(XiidmPacked, ABombIsNotReadToItsEnd) {
  std::string bomb = NetworkText("");
  bomb.resize(bomb.find("</iidm:network>"));
  while (bomb.size() < (std::size_t{96} << 20)) bomb += std::string(1 << 14, ' ') + "<iidm:a/>";
  EXPECT_EQ(FaultOfFile(Packed(bomb)), ": can't be read: it expands to more than any grid");
}

}  // namespace
}  // namespace dtsdb::tools::xiidm::test
