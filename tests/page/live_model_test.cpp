// A model that is shown while other programs change the database that it comes from.
#include "page/live_model.h"

#include <algorithm>

#include "page/commit_log.h"
#include "rtdb/volma_rtdb.h"
#include "tests/page/live_place.h"

// A newer program's idea of a table: it has a column more.
namespace newer {
dbDatabase database;
struct r_co_dv {
  char const* co_id = "";
  char const* dv_id = "";
  int4 ico = 0;
  int4 idv = 0;
  int4 next = 0;
  int4 prev = 0;
  int4 colour = 0;
  TYPE_DESCRIPTOR((KEY(co_id, INDEXED), KEY(dv_id, INDEXED), FIELD(ico), FIELD(idv), FIELD(next), FIELD(prev),
                   FIELD(colour)));
};
REGISTER_IN(r_co_dv, &database);
}  // namespace newer

namespace dtsdb::page::test {
namespace {

using Json = nlohmann::json;

bool HasLine(const SeenEvent& commit, const char* table, const char* id, const char* text) {
  const Json line = {{"table", table}, {"id", id}, {"text", text}};
  const Json& lines = commit.data["changes"];
  return std::find(lines.begin(), lines.end(), line) != lines.end();
}

TEST_F(LivePlace, ShowsWhatIsStored) {
  Store();
  Follow();
  EXPECT_EQ(live->Now()->Version(), 1);
  const Json state = Document(&Documents::State);
  EXPECT_EQ(state["version"], 1);
  EXPECT_EQ(state["islands"].size(), 1U);
  EXPECT_TRUE(state["dead"].empty());
}

TEST_F(LivePlace, LooksWithoutCommitsChangeNothing) {
  Store();
  Follow();
  const auto before = live->Now();
  for (int i = 0; i < 3; ++i) live->Look();
  EXPECT_EQ(live->Now(), before);
  EXPECT_TRUE(TakeAll(*stream).empty());
}

TEST_F(LivePlace, ReportsACommitWithWhatItHasDone) {
  Store();
  Follow();
  Switch(1, false, "B2");
  live->Look();
  const std::vector<SeenEvent> events = TakeAll(*stream);
  ASSERT_EQ(events.size(), 1U);
  EXPECT_EQ(events[0].name, "commit");
  EXPECT_EQ(events[0].data["version"], 2);
  EXPECT_TRUE(HasLine(events[0], "CB", "B2", "opened")) << events[0].data;
  EXPECT_TRUE(HasLine(events[0], "LD", "D2", "dead")) << events[0].data;
  EXPECT_EQ(events[0].data["stations"], Json({"S1", "S2"})) << "the line is in both";
  EXPECT_EQ(Document(&Documents::State)["version"], 2);
  EXPECT_EQ(Document(&Documents::State)["dead"][0]["id"], "D2");
}

TEST_F(LivePlace, ReportsValuesWithTheirUnits) {
  Store();
  Follow();
  m.Of<LD>("D2").p = 62.5F;
  tools::SaveModel(m.Db(), tools::ModelName("rtdb:" + name));
  live->Look();
  const std::vector<SeenEvent> events = TakeAll(*stream);
  ASSERT_EQ(events.size(), 1U);
  EXPECT_TRUE(HasLine(events[0], "LD", "D2", "p 50 to 62.5 MW")) << events[0].data;
  EXPECT_EQ(events[0].data["count"], 1);
  EXPECT_EQ(events[0].data["stations"], Json::array({"S2"}));
}

TEST_F(LivePlace, StateOfBeforeStaysAsItWas) {
  Store();
  Follow();
  const auto before = live->Now();
  Switch(1, false, "B2");
  live->Look();
  const auto open = [](const analysis::Model& model, const Documents&) {
    return ((*model.Tables().m_cbTable)[1].flags & CB_OPEN) != 0;
  };
  EXPECT_FALSE(before->InTurn(open));
  EXPECT_TRUE(live->Now()->InTurn(open));
}

TEST_F(LivePlace, WritesADocumentOnce) {
  Store();
  Follow();
  const auto write = [](const Documents& documents) -> analysis::Result<std::string> { return documents.Grid(); };
  EXPECT_EQ(*live->Now()->Get("grid", write), *live->Now()->Get("grid", write)) << "one text for all";
}

TEST_F(LivePlace, AnotherGridIsReportedAsReplaced) {
  Store();
  Follow();
  m.Load("D3", "K2", "N4");
  Store();
  live->Look();
  const std::vector<SeenEvent> events = TakeAll(*stream);
  ASSERT_EQ(events.size(), 2U);
  EXPECT_EQ(events[0].name, "banner");
  EXPECT_EQ(events[0].data["kind"], "replaced");
  EXPECT_EQ(events[1].name, "commit");
  EXPECT_TRUE(HasLine(events[1], "LD", "D3", "added")) << events[1].data;
  EXPECT_EQ(Document(&Documents::Model)["summary"]["loads"], 2);
}

TEST_F(LivePlace, VanishedDatabaseIsReportedOnceAndComesBack) {
  Store();
  Follow();
  const std::string file = name + ".fdb";
  std::filesystem::rename(file, "away.fdb");
  live->Look();
  live->Look();
  std::vector<SeenEvent> events = TakeAll(*stream);
  ASSERT_EQ(events.size(), 1U);
  EXPECT_EQ(events[0].data["kind"], "vanished");
  EXPECT_EQ(live->Now()->Version(), 1) << "the page shows what was there";

  const std::vector<SeenEvent> greeting = TakeAll(*hub.Open());
  ASSERT_EQ(greeting.size(), 2U) << "who comes now learns of it";
  EXPECT_EQ(greeting[1].data["kind"], "vanished");

  std::filesystem::rename("away.fdb", file);
  for (int i = 0; i < 100 && events.back().data["kind"] != "back"; ++i) {
    live->Look();
    for (SeenEvent& event : TakeAll(*stream)) events.push_back(std::move(event));
    std::this_thread::sleep_for(std::chrono::milliseconds(50));
  }
  EXPECT_EQ(events.back().data["kind"], "back");
  EXPECT_EQ(TakeAll(*hub.Open()).size(), 1U);
}

TEST_F(LivePlace, ChangeMadeWhileItWasAwayIsSeen) {
  Store();
  Follow();
  std::filesystem::remove(name + ".fdb");
  live->Look();
  ASSERT_EQ(TakeAll(*stream).size(), 1U);
  Switch(1, false, "B1");
  for (int i = 0; i < 100 && live->Now()->Version() == 1; ++i) {
    live->Look();
    std::this_thread::sleep_for(std::chrono::milliseconds(50));
  }
  EXPECT_EQ(live->Now()->Version(), 2);
  EXPECT_TRUE(Document(&Documents::State)["islands"].empty());
}

TEST_F(LivePlace, DatabaseOfANewerProgramGetsABanner) {
  Store();
  Follow();
  ASSERT_TRUE(newer::database.open("newer", (name + ".fdb").c_str()));
  newer::database.close();
  live->Look();
  const std::vector<SeenEvent> events = TakeAll(*stream);
  ASSERT_EQ(events.size(), 1U);
  EXPECT_EQ(events[0].data["kind"], "columns") << events[0].data;
  EXPECT_EQ(live->Now()->Version(), 1);
}

TEST_F(LivePlace, ModelWithFaultsIsShownWithoutStates) {
  Store();
  Follow();
  m.Of<LD>("D2").kv = dtsdb::test::Id("nowhere");
  EXPECT_FALSE(m.Validate());
  tools::SaveModel(m.Db(), tools::ModelName("rtdb:" + name));
  live->Look();
  const Json state = Document(&Documents::State);
  EXPECT_EQ(state["verdict"], "faulty");
  EXPECT_FALSE(Document(&Documents::Findings).empty());
}

TEST_F(LivePlace, ModelThatCanNotBeShownLeavesTheOneBefore) {
  Store();
  Follow();
  {
    dbDatabase database;
    ASSERT_TRUE(database.open(name.c_str()));
    database.deleteTable(database.lookupTable(&dtsdb::st::dbDescriptor));
    database.deleteTable(database.lookupTable(&dtsdb::global::dbDescriptor));
    database.commit();
    database.close();
  }
  live->Look();
  live->Look();
  const std::vector<SeenEvent> events = TakeAll(*stream);
  ASSERT_FALSE(events.empty());
  EXPECT_EQ(events[0].name, "banner");
  EXPECT_EQ(Document(&Documents::State)["version"], live->Now()->Version());
  Store();
  live->Look();
  EXPECT_EQ(Document(&Documents::State)["verdict"], "good");
  EXPECT_EQ(Document(&Documents::State)["islands"].size(), 1U);
}

TEST_F(LivePlace, ModelWithoutTopologyGetsItInMemory) {
  ASSERT_TRUE(m.Validate());
  tools::SaveModel(m.Db(), tools::ModelName("rtdb:" + name));
  Follow();
  EXPECT_EQ(Document(&Documents::State)["islands"].size(), 1U);
  const DTSDB stored = tools::LoadModel(tools::ModelName("rtdb:" + name));
  EXPECT_EQ(stored.m_islandTable->GetCount(), 0) << "nothing is written";
}

TEST_F(LivePlace, MissingDatabaseIsAnError) {
  const auto followed = LiveModel::Follow("nothing", {}, hub);
  ASSERT_FALSE(followed.has_value());
  EXPECT_EQ(followed.error().code, analysis::ErrorCode::kFile);
  EXPECT_FALSE(std::filesystem::exists("nothing.fdb"));
}

TEST_F(LivePlace, NothingIsWrittenIntoTheDatabase) {
  Store();
  const auto bytes = [this] { return directory.Read(QStringLiteral("grid.fdb")); };
  const QByteArray before = bytes();
  Follow();
  for (int i = 0; i < 3; ++i) live->Look();
  live.reset();
  EXPECT_EQ(bytes(), before);
}

TEST_F(LivePlace, LogCountsAllAndListsAFew) {
  ASSERT_TRUE(m.Validate());
  const analysis::Model before = *analysis::Model::Of(m.Db()).Copy();
  m.Of<LD>("D2").p = 1;
  m.Of<UN>("U1").p = 2;
  m.Of<CB>("B1").flags |= CB_OPEN;
  const CommitLog log = DescribeCommit(before.Tables(), m.Db(), {KIND_CB, KIND_LD, KIND_UN}, 1);
  EXPECT_EQ(log.count, 3U);
  EXPECT_EQ(log.switching.size(), 1U);
  EXPECT_EQ(log.others.size(), 1U);
  EXPECT_FALSE(log.isSame);
  EXPECT_FALSE(log.isOtherGrid);
}

TEST_F(LivePlace, LogFindsNothingInEqualTables) {
  ASSERT_TRUE(m.Validate());
  m.Of<LD>("D2").p = std::nanf("");
  const analysis::Model same = *analysis::Model::Of(m.Db()).Copy();
  const CommitLog log = DescribeCommit(same.Tables(), m.Db(), {KIND_CB, KIND_LD, KIND_UN, KIND_GLOBAL}, 10);
  EXPECT_TRUE(log.isSame);
  EXPECT_FALSE(log.isOtherGrid);
  EXPECT_EQ(log.count, 0U);
}

}  // namespace
}  // namespace dtsdb::page::test
