// dtsdb check: what is damaged, in one table for people, and what is saved of it.

#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "tests/support/command_runner.h"

namespace dtsdb::tools {
namespace {

using test::CommandResult;
using test::Contains;
using test::IsOneLine;
using test::Workplace;

class CheckCommand : public testing::Test {
 protected:
  CheckCommand() {
    here.CopyModel("m", test::kSample);
    EXPECT_EQ(here.Run("convert m m.obj").code, 0);
  }
  /// Sets the highest bit of a byte in the numbers of the first table of m.obj.
  void Damage() const {
    std::string bytes = here.Read("m.obj");
    bytes[40] = static_cast<char>(bytes[40] ^ 0x80);
    here.Write("m.obj", bytes);
  }

  Workplace here;
};

TEST_F(CheckCommand, SoundModelsOfEachFormAreSound) {
  EXPECT_EQ(here.Run("convert m rtdb:s").code, 0);
  for (const char* name : {"m", "m.obj", "rtdb:s", "s.fdb"}) {
    const CommandResult result = here.Run((std::string("check ") + name).c_str());
    EXPECT_EQ(result.code, 0) << name;
    EXPECT_EQ(result.err, "") << name;
    EXPECT_TRUE(result.out.starts_with(std::string(name) + ": sound: 822 records in 15 of 46 tables.\n")) << result.out;
    EXPECT_FALSE(Contains(result.out, "lost")) << name;
  }
}

TEST_F(CheckCommand, DamageIsNamedAndTheRestSaved) {
  Damage();
  const CommandResult result = here.Run("check m.obj --repair saved.obj");
  EXPECT_EQ(result.code, 1);
  EXPECT_TRUE(result.out.starts_with("m.obj: damaged in 1 place: 822 records can be saved, 0 records lost.\n"))
      << result.out;
  EXPECT_TRUE(Contains(result.out, "a number leads out of the table"));
  EXPECT_EQ(here.Run("check saved.obj").code, 0);
  EXPECT_EQ(here.Run("diff m saved.obj").code, 0);
}

TEST_F(CheckCommand, JsonHasCountsAndPlaces) {
  here.Write("m/LD.csv", here.Read("m/LD.csv") + "\"broken\r\n");
  const auto result = nlohmann::json::parse(here.Run("check m --format json").out);
  EXPECT_EQ(result.at("sound"), false);
  EXPECT_EQ(result.at("saved"), 822);
  EXPECT_EQ(result.at("lost"), 1);
  EXPECT_EQ(result.at("damage").at(0).at("table"), "LD");
  EXPECT_EQ(result.at("damage").at(0).at("what"), "the closing quote is missing");
}

TEST_F(CheckCommand, NeitherTheModelNorAnExistingOutIsWrittenOver) {
  Damage();
  const std::string damaged = here.Read("m.obj");
  for (const char* arguments : {"check m.obj --repair m.obj", "check m.obj --repair ./m.obj --replace",
                                "check m.obj --repair m", "check none.obj", "check m.obj --repair"}) {
    const CommandResult result = here.Run(arguments);
    EXPECT_NE(result.code, 0) << arguments;
    EXPECT_TRUE(IsOneLine(result.err)) << arguments << ": " << result.err;
    EXPECT_EQ(result.out, "") << arguments;
  }
  EXPECT_EQ(here.Read("m.obj"), damaged);
  here.Write("old.obj", "old");
  EXPECT_EQ(here.Run("check m.obj --repair old.obj --replace").code, 1);
  EXPECT_EQ(here.Run("check old.obj").code, 0);
}

TEST_F(CheckCommand, ADamagedStoreIsSavedIntoAnotherForm) {
  EXPECT_EQ(here.Run("convert m rtdb:s").code, 0);
  std::string bytes = here.Read("s.fdb");
  for (std::size_t page = 10; page < 14; ++page) bytes[4096 * page + 12] = '\x7F';
  here.Write("s.fdb", bytes);
  EXPECT_EQ(here.Run("rtdb check s").code, 3);
  const CommandResult result = here.Run("check rtdb:s --repair saved");
  EXPECT_EQ(result.code, 1) << result.err;
  EXPECT_TRUE(Contains(result.out, "page 1")) << result.out;
  EXPECT_EQ(here.Run("check saved").code, 0);
}

TEST_F(CheckCommand, GridsInExchangeFormatsAreForInfo) {
  EXPECT_EQ(here.Run("convert m g.xiidm").code, 0);
  const CommandResult result = here.Run("check g.xiidm");
  EXPECT_EQ(result.code, 2);
  EXPECT_TRUE(Contains(result.err, "'dtsdb info'"));
}

}  // namespace
}  // namespace dtsdb::tools
