// The file beside a converted model that names the objects behind its records.

#include "formats/import_ids.h"

#include <gtest/gtest.h>

#include <QTemporaryDir>

#include "formats/failure.h"
#include "formats/files.h"

namespace dtsdb::tools {
namespace {

/// A model's name in a folder of its own.
class ImportIds : public testing::Test {
 protected:
  ModelName Model() const { return ModelName(m_folder.path().toStdString() + "/grid.obj"); }

  void Write(const std::string& lines) const { WriteFile(IdsPath(Model()), "table,identity,mrid,name\r\n" + lines); }

  /// The end of the message on the file, behind its path.
  std::string FaultOf() const {
    try {
      ReadIds(Model());
    } catch (const Failure& failure) {
      EXPECT_EQ(failure.Code(), kExitFile);
      return std::string(failure.what()).substr(IdsPath(Model()).size());
    }
    return "";
  }

 private:
  QTemporaryDir m_folder;
};

TEST_F(ImportIds, WhatIsWrittenReadsBack) {
  ImportReport report;
  report.identities = {{"CB", "Q, \"1\"", "m1", "Q"}, {"ND", "N", "m2", ""}};
  report.parts = {{part_of::kTerminal, "N", "m3", "T"}, {part_of::kProfile, "SSH 3.0 2026-11-22T08:00:00Z", "m4", ""}};
  WriteIds(report, Model());
  const ImportReport read = ReadIds(Model());
  ASSERT_EQ(read.identities.size(), 2U);
  EXPECT_EQ(read.identities[0].identity, "Q, \"1\"");
  EXPECT_EQ(read.identities[1].mrid, "m2");
  ASSERT_EQ(read.parts.size(), 2U);
  EXPECT_EQ(read.parts[0].table, part_of::kTerminal);
  EXPECT_EQ(read.parts[1].identity, "SSH 3.0 2026-11-22T08:00:00Z");
}

TEST_F(ImportIds, KeepsThePositionsOfStations) {
  ImportReport report;
  report.identities = {{"ST", "S", "m1", "S"}};
  report.parts = {{part_of::kPosition, "S", "m2", PositionText({8.25, -50.5})}};
  WriteIds(report, Model());
  EXPECT_EQ(PositionsBeside(Model()), (StationPositions{{"S", {8.25, -50.5}}}));
  Write("CB,Q1,m1\r\n");
  EXPECT_TRUE(PositionsBeside(Model()).empty());
}

TEST_F(ImportIds, TheFileLiesBesideTheModel) {
  EXPECT_EQ(IdsPath(ModelName("/grid/")), "/grid.ids.csv");
  EXPECT_EQ(IdsPath(ModelName("/")), "/.ids.csv");
}

// A name in a table isn't an identity.
TEST_F(ImportIds, AnIdentityIsFoundByTableAndIdentity) {
  ImportReport report;
  report.identities = {{"CB", "Z", "m1", ""}, {"LN", "B", "m2", ""}, {"LN", "C", "m3", ""}, {"ND", "A", "m4", ""}};
  for (const ImportReport::Identity& row : report.identities) {
    ASSERT_NE(report.Find(row.table, row.identity), nullptr) << row.identity;
    EXPECT_EQ(report.Find(row.table, row.identity)->mrid, row.mrid);
  }
  EXPECT_EQ(report.Find("LN", "A"), nullptr);
  EXPECT_EQ(report.Find("CB", "B"), nullptr);
}

TEST_F(ImportIds, AModelWithoutTheFileHasNone) { EXPECT_TRUE(ReadIds(Model()).identities.empty()); }

TEST_F(ImportIds, AFaultIsNamedWithItsLine) {
  Write("CB,Q1,m1,\r\nCBX,Q2,m2,\r\n");
  EXPECT_EQ(FaultOf(), ", line 3: there is no table 'CBX'; did you mean CB or CB2?");
  Write("CB,Q1,m1\r\n");
  EXPECT_EQ(FaultOf(), ", line 2: a line has the four fields table, identity, mrid and name");
  Write("CB,Q1,,\r\n");
  EXPECT_EQ(FaultOf(), ", line 2: the mrid is missing");
  WriteFile(IdsPath(Model()), "CB,Q1,m1,\r\n");
  EXPECT_EQ(FaultOf(), ", line 1: the header isn't table,identity,mrid,name");
  EXPECT_EQ(FaultOf(), ", line 1: the header isn't table,identity,mrid,name");
  WriteFile(IdsPath(Model()), "CB,Q1,m1,name\r\n");
  EXPECT_EQ(FaultOf(), ", line 1: the header isn't table,identity,mrid,name");
}

}  // namespace
}  // namespace dtsdb::tools
