// What strangers may send: endless tags, names and numbers that are none, terminals that are missing or doubled, things
// in a folder that aren't files. Each is read as far as it makes sense or refused in one line, in bounded time.

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>

#include "formats/cgmes/reader.h"
#include "formats/cgmes/source.h"
#include "formats/import/guarded_device.h"
#include "formats/model_io.h"
#include "tests/formats/cgmes/profile_text.h"

namespace dtsdb::tools::cgmes::test {
namespace {

/// What stands in front of a tag or text that has no end.
class EndlessDevice : public QIODevice {
 public:
  explicit EndlessDevice(const std::string& beginning) : m_beginning(beginning) { open(QIODevice::ReadOnly); }

  qint64 Given() const { return m_given; }
  bool isSequential() const override { return true; }

 protected:
  qint64 readData(char* data, qint64 size) override {
    for (qint64 i = 0; i < size; ++i, ++m_given) {
      const auto at = static_cast<std::size_t>(m_given);
      data[i] = at < m_beginning.size() ? m_beginning[at] : 'x';
    }
    return size;
  }
  qint64 writeData(const char* /*data*/, qint64 /*size*/) override { return -1; }

 private:
  std::string m_beginning;
  qint64 m_given = 0;
};

TEST(CgmesStranger, WhatHasNoEndIsLeftSoon) {
  const std::string begin(ProfileText::kBegin);
  for (const char* const opened : {"<cim:Breaker rdf:ID=\"_", "<cim:Breaker ", "<cim:", "<!--", "<![CDATA[", "<?a ",
                                   "</", "<cim:Breaker rdf:ID=\"_1\"><cim:IdentifiedObject.name>"}) {
    EndlessDevice device(begin + opened);
    Objects objects;
    const std::string fault = FailureOf([&] { ReadProfile(device, "a.xml", 0, objects); });
    EXPECT_TRUE(fault.starts_with("a.xml, line ")) << opened << ": " << fault;
    EXPECT_LT(device.Given(), 4 * GuardedDevice::kLongest) << opened;
  }
}

TEST(CgmesStranger, LongNamesAreCutAndStayUnique) {
  const std::string longName(60'000, 'n');
  const Values named = {{"IdentifiedObject.name", longName}};
  ProfileText text;
  text.Node("N1").Node("N2");
  for (const char* const id : {"b1", "b2", "b3"}) text.Equipment("Breaker", id, {"N1", "N2"}, named);
  Imported grid(text);
  ASSERT_EQ(grid.Count<CB>(), 3);
  for (int i = 0; i < 3; ++i) EXPECT_LT((*grid.model.m_cbTable)[i].id.size(), 300);
}

TEST(CgmesStranger, LongNamesAndMridsAreShownInPart) {
  ProfileText text;
  text.Node("N1").Equipment("Breaker", std::string(20'000, 'n'), {"N1"});
  Imported grid(text);
  ASSERT_EQ(grid.report.leftOut.size(), 1U);
  EXPECT_LT(grid.report.leftOut[0].names[0].size(), 500U);
}

TEST(CgmesStranger, NamesWithoutALetterAreThoseOfTheMrid) {
  for (const char* const name : {"", " ", "\n\t ", "\xC2\xA0"}) {
    ProfileText text;
    text.Node("N1").Node("N2").Equipment("Breaker", "b", {"N1", "N2"}, {{"IdentifiedObject.name", name}});
    EXPECT_EQ(Imported(text).Of<CB>("b").id, IdFromLiteral("b")) << name;
  }
}

TEST(CgmesStranger, NumbersThatAreNoneCountAsMissing) {
  for (const char* const number : {"nan", "inf", "-inf", "1e999", "-1e999", "1,5", "0x10", "12 MW", "+", "--1", "1e"}) {
    ProfileText text;
    text.Node("N").Equipment("EnergyConsumer", "L", {"N"}, {{"EnergyConsumer.p", number}, {"EnergyConsumer.q", "+3"}});
    Imported grid(text);
    EXPECT_EQ(grid.Of<LD>("L").p, 0.0F) << number;
    EXPECT_EQ(grid.Of<LD>("L").q, 3.0F) << number;
  }
  ProfileText text;
  text.Node("N").Equipment("EnergyConsumer", "L", {"N"}, {{"EnergyConsumer.p", "1e300"}});
  EXPECT_EQ(Imported(text).Of<LD>("L").p, std::numeric_limits<float>::max())
      << "what a field can't hold is its greatest";
}

/// A breaker between N1 and N2 whose terminals have these numbers, none where empty.
Imported Numbered(const std::string& first, const std::string& second) {
  ProfileText text;
  text.Node("N1").Node("N2").Add("Breaker", "B");
  for (const auto& [name, number, node] : {std::tuple("t1", first, "#N1"), std::tuple("t2", second, "#N2")}) {
    Values values = {{"Terminal.ConductingEquipment", "#B"}, {"Terminal.ConnectivityNode", node}};
    if (!number.empty()) values.emplace_back("ACDCTerminal.sequenceNumber", number);
    text.Add("Terminal", name, values);
  }
  return Imported(text);
}

TEST(CgmesStranger, TerminalsWithoutOrderStandAsInTheFile) {
  for (const auto& [first, second] :
       {std::pair("", ""), std::pair("1", "1"), std::pair("x", "y"), std::pair("", "2")}) {
    EXPECT_EQ(Numbered(first, second).Of<CB>("B").nd, IdFromLiteral("N1")) << first << ", " << second;
  }
  EXPECT_EQ(Numbered("2", "").Of<CB>("B").nd, IdFromLiteral("N2"));
}

TEST(CgmesStranger, TerminalsThatAreMissingOrDoubledLeaveEquipmentOut) {
  ProfileText text;
  text.Node("N1").Node("N2").Node("N3").Equipment("Breaker", "One", {"N1"}).Equipment("Fuse", "None", {});
  text.Equipment("Disconnector", "Three", {"N1", "N2", "N3"}).Equipment("PowerTransformer", "T", {"N1"});
  text.Equipment("BusbarSection", "Bus", {"N1", "N2"});
  Imported grid(text);
  std::map<std::string, std::string> whys;
  for (const ImportReport::Exception& exception : grid.report.leftOut) whys[exception.type] = exception.why;
  EXPECT_EQ(whys, (std::map<std::string, std::string>{{"Breaker", "it has 1 terminal, not 2"},
                                                      {"Fuse", "it has 0 terminals, not 2"},
                                                      {"Disconnector", "it has 3 terminals, not 2"},
                                                      {"PowerTransformer", "it has 1 terminal, not 2"},
                                                      {"BusbarSection", "it has 2 terminals, not 1"}}));
  EXPECT_EQ(grid.Count<CB>() + grid.Count<XF>() + grid.Count<BUS>(), 0);
}

TEST(CgmesStranger, AnObjectThatStandsTwiceCountsOnce) {
  ProfileText text;
  text.Node("N1").Node("N2").Equipment("Breaker", "B", {"N1", "N2"}).Equipment("Breaker", "B", {"N1", "N2"});
  EXPECT_EQ(Imported(text).Count<CB>(), 1);
  EXPECT_EQ(Imported(std::vector<std::string>{text.Text(), text.Text()}).Count<CB>(), 1);
}

TEST(CgmesStranger, AnMridOfTwoClassesIsReported) {
  ProfileText text;
  text.Node("N1").Node("N2").Equipment("Breaker", "B", {"N1", "N2"}).Add("EnergyConsumer", "B");
  Imported grid(text);
  EXPECT_EQ(grid.Count<CB>(), 1);
  EXPECT_EQ(grid.Count<LD>(), 0);
  ASSERT_EQ(grid.report.leftOut.size(), 1U);
  EXPECT_EQ(grid.report.leftOut[0].type, "EnergyConsumer");
  EXPECT_EQ(grid.report.leftOut[0].why, "its mRID is that of an object of another class");
  const std::string& named = grid.report.leftOut[0].names[0];
  EXPECT_TRUE(named.starts_with("EnergyConsumer (mRID B, ")) << named;
  EXPECT_NE(named.find("), first a Breaker 'B' (mRID B, "), std::string::npos) << named;
}

TEST(CgmesStranger, EndsOfATransformerMayBeMissing) {
  ProfileText text;
  text.Level("W", "S").Node("N1").Node("N2", "W").Equipment("PowerTransformer", "T", {"N1", "N2"});
  text.Add("PowerTransformerEnd", "e",
           {{"TransformerEnd.Terminal", "#nowhere"}, {"PowerTransformerEnd.ratedU", "nan"}});
  EXPECT_EQ(Imported(text).Of<XF>("T").nd, IdFromLiteral("N1"));
}

TEST(CgmesStranger, ContainersInCirclesEnd) {
  ProfileText text;
  text.Add("Substation", "X", {{"Substation.Region", "#X"}});
  text.Add("VoltageLevel", "K", {{"VoltageLevel.Substation", "#N1"}, {"VoltageLevel.BaseVoltage", "#K"}});
  text.Add("Bay", "Bay1", {{"Bay.VoltageLevel", "#Bay2"}}).Add("Bay", "Bay2", {{"Bay.VoltageLevel", "#Bay1"}});
  text.Node("N1", "Bay1").Node("N2", "K").Node("N3", "N3");
  text.Equipment("Breaker", "B", {"N1", "N2"}, {{"Equipment.EquipmentContainer", "#B"}});
  text.Equipment("PowerTransformer", "T", {"N1", "N2", "N3"}, {{"Equipment.EquipmentContainer", "#T"}});
  EXPECT_EQ(Imported(text).Count<XF>(), 3);
}

TEST(CgmesStranger, Latin1ThatIsNotDeclaredIsRefusedWithItsLine) {
  ProfileText text;
  text.Add("Substation", "Z", {{"IdentifiedObject.name", "Li\xE8ge"}});
  const SetFolder folder;
  const std::string path = folder.Write("a.xml", text.Text());
  EXPECT_TRUE(FailureOf([&] { Import({path}, {}, *std::make_unique<DTSDB>()); }).starts_with(path + ", line "));
}

TEST(CgmesStranger, Utf16ThatIsCutInACharacterIsRefused) {
  const QString text =
      QString::fromStdString(ProfileText().Text()).replace(QLatin1String(" encoding=\"UTF-8\""), QString());
  const std::string bytes(reinterpret_cast<const char*>(text.utf16()), static_cast<std::size_t>(text.size()) * 2);
  const SetFolder folder;
  const std::string path = folder.Write("a.xml", "\xFF\xFE" + bytes.substr(0, bytes.size() / 2 | 1));
  EXPECT_TRUE(FailureOf([&] { Import({path}, {}, *std::make_unique<DTSDB>()); }).starts_with(path + ", line "));
}

/// A folder with a set, and things in it that are no files.
class FolderOfAll {
 public:
  FolderOfAll() {
    ProfileText text;
    text.Node("N1").Node("N2").Equipment("Breaker", "B", {"N1", "N2"});
    folder.Write("eq.xml", text.Text());
    mkfifo((folder.Path() + "/fifo").c_str(), 0600);
    std::filesystem::create_symlink("nowhere", folder.Path() + "/dangling");
    std::filesystem::create_symlink("loop", folder.Path() + "/loop");
    std::filesystem::create_symlink("/dev/zero", folder.Path() + "/device");
    std::filesystem::create_symlink("fifo", folder.Path() + "/link");
    std::filesystem::create_directory(folder.Path() + "/sub.xml");
  }

  SetFolder folder;
};

TEST(CgmesStranger, WhatIsNoFileInAFolderIsPassedOver) {
  const FolderOfAll all;
  EXPECT_TRUE(IsSet(all.folder.Path()));
  EXPECT_EQ(LoadModel(ModelName(all.folder.Path())).m_cbTable->GetCount(), 1);
}

TEST(CgmesStranger, APipeOrDeviceAsASetIsRefused) {
  const FolderOfAll all;
  for (const char* const name : {"/fifo", "/device", "/link"}) {
    const std::string path = all.folder.Path() + name;
    EXPECT_FALSE(IsSet(path));
    EXPECT_EQ(FailureOf([&] { LoadModel(ModelName("cgmes:" + path)); }), path + ": is neither a file nor a folder");
  }
}

/// The rights of a user who owns nothing, as long as this lives.
class AsNobody {
 public:
  AsNobody() : m_isRoot(geteuid() == 0) {
    if (m_isRoot) m_isRoot = seteuid(65534) == 0;
  }
  AsNobody(const AsNobody&) = delete;
  AsNobody& operator=(const AsNobody&) = delete;
  ~AsNobody() {
    if (m_isRoot && seteuid(0) != 0) std::abort();
  }

 private:
  bool m_isRoot;
};

TEST(CgmesStranger, WhatMayNotBeReadIsRefusedInOneLine) {
  using std::filesystem::perms;
  const FolderOfAll all;
  const std::string file = all.folder.Path() + "/eq.xml";
  std::filesystem::permissions(all.folder.Path(), perms::all);
  std::filesystem::permissions(file, perms::none);
  {
    const AsNobody nobody;
    EXPECT_EQ(FailureOf([&] { LoadModel(ModelName("cgmes:" + file)); }), file + ": can't be read: Permission denied");
    EXPECT_EQ(FailureOf([&] { LoadModel(ModelName("cgmes:" + all.folder.Path())); }),
              file + ": can't be read: Permission denied")
        << "the set would be another without it";
  }
  std::filesystem::permissions(all.folder.Path(), perms::none);
  {
    const AsNobody nobody;
    const std::string fault = FailureOf([&] { LoadModel(ModelName("cgmes:" + all.folder.Path())); });
    EXPECT_TRUE(fault.starts_with(all.folder.Path() + ": can't be read: ")) << fault;
  }
  std::filesystem::permissions(all.folder.Path(), perms::owner_all);
}

}  // namespace
}  // namespace dtsdb::tools::cgmes::test
