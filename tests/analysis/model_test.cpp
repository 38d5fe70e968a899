// Models opened, validated, copied and saved, and the errors in their place.
#include "analysis/model.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "analysis/topology.h"
#include "tests/formats/cgmes/profile_text.h"
#include "tests/support/model_builder.h"
#include "tests/support/temporary_directory.h"

namespace dtsdb::analysis {
namespace {

/// A folder of its own, as the current one, with a small model "grid.obj" that isn't validated.
class ModelTest : public testing::Test {
 protected:
  ModelTest() {
    builder.Station("A").Kv("KA").Bus("BA", "KA", "a").Unit("U", "KA", "a");
    builder.Station("B").Kv("KB").Bus("BB", "KB", "b").Load("D", "KB", "b");
    builder.Line("L", "DV", "A", "B", "KA", "KB", "a", "b");
    EXPECT_TRUE(builder.Db().WriteObject(QStringLiteral("grid.obj")));
  }

  test::TemporaryDirectory directory;
  test::ModelBuilder builder;
};

TEST_F(ModelTest, OpensWhatItHasSavedInEachForm) {
  const Result<Model> model = Model::Open("grid.obj");
  ASSERT_TRUE(model.has_value());
  EXPECT_EQ(model->Name(), "grid.obj");
  for (const char* name : {"copy.obj", "folder", "rtdb:base"}) {
    ASSERT_TRUE(Model(*model).Save(name).has_value()) << name;
    const Result<Model> again = Model::Open(name);
    ASSERT_TRUE(again.has_value()) << name << ": " << again.error().message;
    EXPECT_EQ(again->Tables().m_lnTable->GetCount(), 1) << name;
  }
}

TEST_F(ModelTest, OpensProfilesByTheOptionsOfAnImport) {
  tools::cgmes::test::ProfileText text;
  text.Node("N").Equipment("EquivalentInjection", "Tie", {"N"}, {{"IdentifiedObject.name", "Border"}});
  std::ofstream("grid.xml") << text.Text();
  std::uint64_t read = 0;
  const Result<Model> plain = Model::Open("grid.xml", {}, [&read](std::uint64_t done, std::uint64_t) { read = done; });
  ASSERT_TRUE(plain.has_value()) << plain.error().message;
  EXPECT_EQ((*plain->Tables().m_ldTable)[0].id, test::Id("Border"));
  EXPECT_EQ(read, std::filesystem::file_size("grid.xml"));
  const Result<Model> chosen = Model::Open("grid.xml", {.idsAreMrids = true, .tiesAreUnits = true});
  ASSERT_TRUE(chosen.has_value()) << chosen.error().message;
  EXPECT_EQ((*chosen->Tables().m_unTable)[0].id, test::Id("Tie"));
}

TEST_F(ModelTest, MissingFileIsAnError) {
  const Result<Model> model = Model::Open("none.obj");
  ASSERT_FALSE(model.has_value());
  EXPECT_EQ(model.error().code, ErrorCode::kFile);
  EXPECT_STREQ(CodeName(model.error().code), "FILE");
  EXPECT_EQ(model.error().message, "none.obj: there is no such file or folder");
  EXPECT_EQ(model.error().place, "none.obj");
}

TEST_F(ModelTest, FileThatIsNoModelIsAnError) {
  std::ofstream("text.obj") << "no model";
  const Result<Model> model = Model::Open("text.obj");
  ASSERT_FALSE(model.has_value());
  EXPECT_EQ(model.error().code, ErrorCode::kFile);
}

TEST_F(ModelTest, PlaceThatCannotBeWrittenIsAnError) {
  Model model = *Model::Open("grid.obj");
  const Result<void> saved = model.Save("no/such/folder/grid.obj");
  ASSERT_FALSE(saved.has_value());
  EXPECT_EQ(saved.error().code, ErrorCode::kFile);
}

TEST_F(ModelTest, ValidationLeavesNoLogAndIsNotRepeated) {
  Model model = *Model::Open("grid.obj");
  EXPECT_FALSE(model.IsGood());
  const Result<Validation> validation = model.Validate();
  ASSERT_TRUE(validation.has_value());
  EXPECT_TRUE(validation->good);
  EXPECT_EQ(validation->errors, 0);
  EXPECT_TRUE(model.IsGood());
  EXPECT_FALSE(std::filesystem::exists("nmd.log"));
  EXPECT_TRUE(model.RequireGood().has_value());
}

TEST_F(ModelTest, ModelWithErrorsHasAVerdictAndNoTopology) {
  builder.Breaker("Q", "KA", "a", "a");
  ASSERT_TRUE(builder.Db().WriteObject(QStringLiteral("faulty.obj")));
  Model model = *Model::Open("faulty.obj");
  const Result<Validation> validation = model.Validate();
  ASSERT_TRUE(validation.has_value());
  EXPECT_FALSE(validation->good);
  EXPECT_EQ(validation->errors, 1);

  const Result<Topology> topology = WorkOutTopology(model);
  ASSERT_FALSE(topology.has_value());
  EXPECT_EQ(topology.error().code, ErrorCode::kFaultyModel);
  EXPECT_EQ(topology.error().message, "faulty.obj: the model has 1 error; 'dtsdb validate faulty.obj' shows them");
}

TEST_F(ModelTest, CopyIsAModelOfItsOwn) {
  Model model = *Model::Open("grid.obj");
  const Result<Model> copy = model.Copy();
  ASSERT_TRUE(copy.has_value());
  copy->Tables().m_lnTable->Clear();
  EXPECT_EQ(model.Tables().m_lnTable->GetCount(), 1);
}

TEST_F(ModelTest, TopologyHasNames) {
  Model model = *Model::Open("grid.obj");
  const Result<Topology> topology = WorkOutTopology(model);
  ASSERT_TRUE(topology.has_value());
  ASSERT_EQ(topology->islands.size(), 1U);
  EXPECT_EQ(topology->islands[0].reference, "U");
  EXPECT_EQ(topology->islands[0].counts.loads, 1);
  ASSERT_EQ(topology->sections.size(), 2U);
  EXPECT_EQ(topology->sections[0].name, "BA");
  EXPECT_EQ(topology->sections[0].station, "A");
  EXPECT_EQ(topology->sections[0].level, "KA");
  EXPECT_EQ(topology->sections[0].kind, SectionKind::kSection);
  ASSERT_EQ(topology->nodes.size(), 2U);
  EXPECT_EQ(topology->nodes[1].identity, "b");
  EXPECT_TRUE(topology->nodes[1].live);
  EXPECT_TRUE(topology->findings.empty());
}

// The unit produces more than it can: it can't become the reference.
TEST_F(ModelTest, AnIslandWithoutAReferenceHasNoSectionOfIt) {
  Model model = *Model::Open("grid.obj");
  UN& unit = (*model.Tables().m_unTable)[0];
  unit.pmax = 1;
  unit.pcur = 2;
  const Result<Topology> topology = WorkOutTopology(model);
  ASSERT_TRUE(topology.has_value());
  ASSERT_EQ(topology->islands.size(), 1U);
  EXPECT_EQ(topology->islands[0].reference, "");
  EXPECT_EQ(topology->islands[0].referenceSection, -1);
}

}  // namespace
}  // namespace dtsdb::analysis
