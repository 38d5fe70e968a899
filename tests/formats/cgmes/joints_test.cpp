// Joints of voltage levels: switches between two levels, lines between two voltages.

#include <gtest/gtest.h>

#include <algorithm>

#include "model/record_bits.h"
#include "tests/formats/cgmes/profile_text.h"
#include "validation/nmd.h"

namespace dtsdb::tools::cgmes::test {
namespace {

const Values kClosed = {{"Switch.open", "false"}};
const Values kOpened = {{"Switch.open", "true"}};

std::string RealText(const QString& id) { return TextFromId(id).toStdString(); }

/// The reasons that the report has for an object of this name.
std::vector<std::string> WhysOf(const std::vector<ImportReport::Exception>& exceptions, const std::string& name) {
  std::vector<std::string> whys;
  for (const ImportReport::Exception& exception : exceptions) {
    const auto names = [&name](const std::string& text) { return text.find("'" + name + "'") != std::string::npos; };
    if (std::any_of(exception.names.begin(), exception.names.end(), names)) whys.push_back(exception.why);
  }
  return whys;
}

/// Without an error, as the validation finds.
bool IsGood(DTSDB& model) {
  NMD nmd(&model, [](LogKind, std::string_view) {});
  return nmd.DetectAll() && model.m_globalTable->GetCount() > 0 && (*model.m_globalTable)[0].valid != 0;
}

/// Levels V and W of station S, both of 220 kV, with node N1 in the one and N2 in the other.
ProfileText TwoLevels() {
  ProfileText text;
  text.Level("W", "S").Node("N1").Node("N2", "W");
  return text;
}

TEST(CgmesJoints, AClosedSwitchMakesTwoLevelsOfOneVoltageOne) {
  Imported grid(TwoLevels().Equipment("Breaker", "B", {"N1", "N2"}, kClosed).Equipment("EnergyConsumer", "L", {"N2"}));
  EXPECT_EQ(grid.Count<KV>(), 1);
  EXPECT_EQ(RealText(grid.Of<CB>("B").kv), "V");
  EXPECT_EQ(RealText(grid.Of<LD>("L").kv), "V");
  EXPECT_TRUE(grid.report.leftOut.empty());
  EXPECT_EQ(WhysOf(grid.report.changed, "B"),
            std::vector<std::string>{"it is closed between voltage levels of one nominal voltage: they are one level"});
  const std::vector<std::string> whys = WhysOf(grid.report.changed, "W");
  ASSERT_EQ(whys.size(), 1U);
  EXPECT_TRUE(whys[0].starts_with("a closed switch joins it to VoltageLevel 'V' (mRID V, ")) << whys[0];
  EXPECT_TRUE(whys[0].ends_with("): it is part of that level")) << whys[0];
}

TEST(CgmesJoints, OtherSwitchesBetweenLevelsAreLeftOutAndReported) {
  ProfileText text = TwoLevels();
  text.Add("BaseVoltage", "110kV", {{"BaseVoltage.nominalVoltage", "110"}}).Level("X", "S", "110kV").Node("N3", "X");
  text.Level("Y", "S", "nowhere").Level("Z", "S", "nowhere").Node("N4", "Y").Node("N5", "Z");
  text.Equipment("Breaker", "Open", {"N1", "N2"}, kOpened);
  text.Equipment("Breaker", "Out", {"N1", "N2"}, {{"Switch.open", "false"}, {"Equipment.inService", "false"}});
  text.Equipment("Disconnector", "Unequal", {"N1", "N3"}, kClosed);
  text.Equipment("Disconnector", "Unknown", {"N4", "N5"}, kClosed);
  Imported grid(text);
  EXPECT_EQ(grid.Count<CB>(), 0);
  EXPECT_EQ(grid.Count<KV>(), 5);
  const std::vector<std::string> isOpen = {"it is open between two voltage levels"};
  const std::vector<std::string> differs = {"it joins voltage levels whose nominal voltages differ or aren't known"};
  EXPECT_EQ(WhysOf(grid.report.leftOut, "Open"), isOpen);
  EXPECT_EQ(WhysOf(grid.report.leftOut, "Out"), isOpen);
  EXPECT_EQ(WhysOf(grid.report.leftOut, "Unequal"), differs);
  EXPECT_EQ(WhysOf(grid.report.leftOut, "Unknown"), differs);
}

TEST(CgmesJoints, AnOpenSwitchInALevelThatAnotherSwitchMakesIsABreaker) {
  ProfileText text = TwoLevels();
  text.Equipment("Breaker", "B", {"N1", "N2"}, kClosed).Equipment("Breaker", "Open", {"N1", "N2"}, kOpened);
  Imported grid(text);
  EXPECT_EQ(RealText(grid.Of<CB>("Open").kv), "V");
  EXPECT_TRUE(grid.Of<CB>("Open").flags & CB_OPEN);
  EXPECT_TRUE(grid.report.leftOut.empty());
}

/// W - V - A, of which A lies in station T; switches and levels in the order of `forward` or the other one.
ProfileText Chain(bool forward) {
  ProfileText text;
  text.Station("T");
  const auto level = [&text](const char* name, const char* station) { text.Level(name, station); };
  if (forward) level("A", "T");
  level("W", "S");
  if (!forward) level("A", "T");
  text.Node("N1", "W").Node("N2", "V").Node("N3", "A");
  const auto first = [&text] { text.Equipment("Breaker", "B1", {"N1", "N2"}, kClosed); };
  const auto second = [&text] { text.Equipment("Disconnector", "B2", {"N2", "N3"}, kClosed); };
  if (!forward) second();
  first();
  if (forward) second();
  return text;
}

TEST(CgmesJoints, AChainOfLevelsIsOneInTheStationOfTheFirstWhateverTheOrder) {
  for (const bool forward : {true, false}) {
    Imported grid(Chain(forward));
    EXPECT_EQ(grid.Count<KV>(), 1);
    EXPECT_EQ(RealText(grid.Of<KV>("A").st), "T");
    EXPECT_EQ(RealText(grid.Of<CB>("B1").kv), "A");
    EXPECT_EQ(RealText(grid.Of<CB>("B2").kv), "A");
    EXPECT_EQ(RealText(grid.Of<ST>("S").dv), "D") << "the other station stays";
    for (const char* const joined : {"V", "W"}) {
      const std::vector<std::string> whys = WhysOf(grid.report.changed, joined);
      ASSERT_EQ(whys.size(), 1U) << joined;
      EXPECT_NE(whys[0].find("it is part of that level, in Substation 'T' (mRID T, "), std::string::npos) << whys[0];
    }
  }
}

TEST(CgmesJoints, ABorderBecomesPartOfAVoltageLevel) {
  ProfileText text;
  text.Add("Line", "A").Node("X", "A").Node("N");
  text.Equipment("ACLineSegment", "L", {"N", "X"}, {{"ConductingEquipment.BaseVoltage", "#220kV"}});
  text.Node("N2").Equipment("Breaker", "B", {"N2", "X"}, kClosed);
  Imported grid(text);
  EXPECT_EQ(grid.Count<KV>(), 1);
  EXPECT_EQ(RealText(grid.Of<CB>("B").kv), "V") << "though the mRID of the border comes first";
  EXPECT_EQ(RealText(grid.Of<LN>("L").zst), "S");
}

TEST(CgmesJoints, AJoinedModelIsGood) {
  ProfileText text = Chain(true);
  text.Equipment("BusbarSection", "Bus", {"N1"}).Equipment("SynchronousMachine", "G", {"N1"});
  text.Equipment("EnergyConsumer", "L", {"N3"});
  Imported grid(text);
  EXPECT_TRUE(IsGood(grid.model));
}

/// Stations in a row with a line between each and the next. Voltages are the levels' in kV; levels are K0, K1 and so
/// on.
ProfileText Row(const std::vector<int>& voltages) {
  ProfileText text;
  for (const int voltage : {380, 400}) {
    const std::string number = std::to_string(voltage);
    text.Add("BaseVoltage", number + "kV", {{"BaseVoltage.nominalVoltage", number}});
  }
  for (std::size_t i = 0; i < voltages.size(); ++i) {
    const std::string number = std::to_string(i);
    text.Station("S" + number).Level("K" + number, "S" + number, std::to_string(voltages[i]) + "kV");
    text.Node("N" + number, "K" + number).Equipment("BusbarSection", "Bus" + number, {"N" + number});
    if (i > 0) text.Equipment("ACLineSegment", "L" + number, {"N" + std::to_string(i - 1), "N" + number});
  }
  return text;
}

std::vector<float> BaseVoltages(Imported& grid, std::size_t count) {
  std::vector<float> voltages;
  for (std::size_t i = 0; i < count; ++i) voltages.push_back(grid.Of<KV>(("K" + std::to_string(i)).c_str()).vbase);
  return voltages;
}

TEST(CgmesJoints, LinesOfOneVoltageLeaveTheLevelsAsTheyAre) {
  Imported grid(Row({380, 380, 380}));
  EXPECT_EQ(BaseVoltages(grid, 3), (std::vector<float>{380, 380, 380}));
  EXPECT_TRUE(grid.report.changed.empty());
}

TEST(CgmesJoints, InARowOfTwoVoltagesAnEndOfEachUnequalLineHasNone) {
  for (const auto& [voltages, expected] : std::initializer_list<std::pair<std::vector<int>, std::vector<float>>>{
           {{380, 400}, {380, 0}},
           {{380, 400, 380}, {380, 0, 380}},
           {{380, 400, 400}, {380, 0, 400}},
           {{380, 380, 400, 380, 400}, {380, 380, 0, 380, 0}}}) {
    Imported grid(Row(voltages));
    EXPECT_EQ(BaseVoltages(grid, voltages.size()), expected);
    const auto lost = std::count(expected.begin(), expected.end(), 0.0F);
    ASSERT_EQ(grid.report.changed.size(), 1U);
    EXPECT_EQ(grid.report.changed[0].count, lost) << "each is reported once";
    EXPECT_EQ(grid.report.changed[0].why, "a line leads from it to a level of another nominal voltage: vbase is 0");
    EXPECT_TRUE(IsGood(grid.model));
  }
}

}  // namespace
}  // namespace dtsdb::tools::cgmes::test
