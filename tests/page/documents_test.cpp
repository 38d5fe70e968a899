// The documents on a small network of two stations that a line joins, in its normal state and switched:
//
//     North: U1 --N1--[B1]--N2-- bus I      L1 ===== South: N4 --[B2]-- N5 -- D1 (load, 30 MW)

#include "page/documents.h"

#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "analysis/switching.h"
#include "tests/page/documents_of.h"

namespace dtsdb::page {
namespace {

using Json = nlohmann::json;

class DocumentsTest : public testing::Test {
 protected:
  DocumentsTest() {
    m_network.Station("North").Kv("North-110", 110).Station("South").Kv("South-110", 110);
    m_network.Unit("U1", "North-110", "N1").Breaker("B1", "North-110", "N1", "N2").Bus("I", "North-110", "N2");
    m_network.Line("L1", "DV", "North", "South", "North-110", "South-110", "N2", "N4");
    m_network.Breaker("B2", "South-110", "N4", "N5").Load("D1", "South-110", "N5");
    m_network.Of<LD>("D1").p = 30;
    m_network.Of<UN>("U1").p = 30;
    m_network.Of<LN>("L1").p = 30;
    m_network.Of<LN>("L1").zp = 30;
  }

  /// The documents of the network as it now is.
  Documents Make() { return test::DocumentsOf(m_network); }

  /// A copy in which `events` were followed up.
  analysis::Model Switched(const std::string& events) {
    const analysis::Model copy = *analysis::Model::Of(m_network.Db()).Copy();
    auto session = analysis::Switching::Begin(copy);
    EXPECT_TRUE(session) << session.error().message;
    EXPECT_TRUE(session->Apply(events));
    return copy;
  }

  static Json StationOf(const Documents& documents, const std::string& id) {
    const auto station = documents.Station(id);
    EXPECT_TRUE(station) << station.error().message;
    return Json::parse(*station);
  }

  dtsdb::test::ModelBuilder m_network;
};

TEST_F(DocumentsTest, ModelCountsWhatIsThereAndDescribesAllTables) {
  const Json model = Json::parse(Make().Model());
  EXPECT_EQ(model["format"], 1);
  EXPECT_EQ(model["name"], "two");
  EXPECT_EQ(model["live"], false);
  EXPECT_EQ(model["summary"]["stations"], 2);
  EXPECT_EQ(model["summary"]["switches"], 2);
  EXPECT_EQ(model["summary"]["islands"], 1);
  ASSERT_EQ(model["tables"].size(), static_cast<std::size_t>(kTableCount));
  EXPECT_EQ(model["tables"][KIND_CB - 1]["name"], "CB");
  EXPECT_EQ(model["tables"][KIND_CB - 1]["rows"], 2);
  EXPECT_EQ(model["tables"][KIND_CB - 1]["fields"][0]["name"], "id");
}

TEST_F(DocumentsTest, TableHasOneColumnForEachField) {
  const Documents documents = Make();
  const Json table = Json::parse(*documents.Table("CB"));
  ASSERT_EQ(table["columns"].size(), CB::Fields().size());
  EXPECT_EQ(table["columns"][0], Json({"B1", "B2"}));
  const auto unknown = documents.Table("CBB");
  ASSERT_FALSE(unknown);
  EXPECT_EQ(unknown.error().message, "there is no table 'CBB'; did you mean CB or CB2?");
}

TEST_F(DocumentsTest, StateSumsUpIslands) {
  const Json state = Json::parse(Make().State());
  EXPECT_EQ(state["verdict"], "good");
  ASSERT_EQ(state["islands"].size(), 1U);
  EXPECT_EQ(state["islands"][0]["stations"], 2);
  EXPECT_EQ(state["islands"][0]["generation"], 30);
  EXPECT_EQ(state["islands"][0]["load"], 30);
  EXPECT_EQ(state["islands"][0]["reference"], "U1");
  EXPECT_TRUE(state["dead"].empty());
}

TEST_F(DocumentsTest, StationDescribesEachElementOfItsPicture) {
  const Json station = StationOf(Make(), "South");
  EXPECT_EQ(station["id"], "South");
  const Json& breaker = station["elements"]["CB-B2"];
  EXPECT_EQ(breaker["kind"], "breaker");
  EXPECT_EQ(breaker["open"], false);
  EXPECT_EQ(breaker["state"], "live");
  EXPECT_EQ(breaker["island"], station["elements"]["LD-D1"]["island"]);
  EXPECT_EQ(breaker["p"], 30);
  EXPECT_EQ(station["elements"]["LN-L1.to"]["end"], "to");
  EXPECT_NE(station["svg"].get<std::string>().find("id=\"CB-B2\""), std::string::npos);
}

TEST_F(DocumentsTest, GridIsAMapOfTheStationsAndLines) {
  const std::string svg = Json::parse(Make().Grid())["svg"];
  EXPECT_NE(svg.find("data-table=\"ST\" data-id=\"North\""), std::string::npos);
  EXPECT_NE(svg.find("data-table=\"LN\" data-id=\"L1\""), std::string::npos);
}

TEST_F(DocumentsTest, StationThatBecameDeadIsMarkedOnTheMap) {
  const Documents before = Make();
  const std::string svg = Json::parse(before.Tried(Switched("out LN L1")).Grid())["svg"];
  EXPECT_NE(svg.find("changed\" data-table=\"ST\" data-id=\"South\""), std::string::npos);
  EXPECT_EQ(svg.find("changed\" data-table=\"ST\" data-id=\"North\""), std::string::npos);
}

TEST_F(DocumentsTest, UnknownStationIsAnErrorWithTheNearestName) {
  const auto station = Make().Station("Nort");
  ASSERT_FALSE(station);
  EXPECT_NE(station.error().message.find("did you mean North?"), std::string::npos);
}

TEST_F(DocumentsTest, FindingsStandBesideTheirEquipment) {
  const Documents documents = Make();
  const Json findings = Json::parse(documents.Findings());
  const Json load = StationOf(documents, "South")["elements"]["LD-D1"];
  ASSERT_FALSE(load["findings"].empty());  // its measurements are missing
  const Json& first = findings[load["findings"][0].get<std::size_t>()];
  EXPECT_EQ(first["severity"], "warning");
  EXPECT_EQ(first["table"], "LD");
  EXPECT_EQ(first["id"], "D1");
  EXPECT_EQ(first["station"], "South");
  EXPECT_FALSE(first["text"].get<std::string>().empty());
}

TEST_F(DocumentsTest, ModelWithErrorsHasTablesAndFindingsOnly) {
  m_network.Of<LD>("D1").kv = dtsdb::test::Id("Nowhere");
  const Documents documents = Make();
  EXPECT_FALSE(documents.HasPictures());
  EXPECT_EQ(Json::parse(documents.State())["verdict"], "faulty");
  EXPECT_EQ(Json::parse(documents.Findings())[0]["severity"], "error");
  EXPECT_EQ(Json::parse(*documents.Table("LD"))["columns"][0], Json({"D1"}));
  EXPECT_FALSE(documents.Station("South"));
  EXPECT_EQ(Json::parse(documents.Grid())["svg"], "");
}

TEST_F(DocumentsTest, SearchFindsWhatBeginsSoBeforeWhatContainsIt) {
  const Documents documents = Make();
  const auto ids = [&](const std::string& text) {
    std::vector<std::string> found;
    const Json result = Json::parse(documents.Search(text));
    for (const Json& match : result["matches"]) {
      found.push_back(match["table"].get<std::string>() + " " + match["id"].get<std::string>());
    }
    return found;
  };
  EXPECT_EQ(ids("nor"), (std::vector<std::string>{"ST North", "KV North-110"}));
  EXPECT_EQ(ids("north-110"), (std::vector<std::string>{"KV North-110"}));
  EXPECT_EQ(ids("110"), (std::vector<std::string>{"KV North-110", "KV South-110"}));
  EXPECT_EQ(ids("Suoth"), (std::vector<std::string>{"ST South"}));
  EXPECT_TRUE(ids(" ").empty());
}

TEST_F(DocumentsTest, ChangesNameWhatLostSupply) {
  const Documents before = Make();
  const Documents after = before.Tried(Switched("open CB B2"));
  const Changes changes = after.ChangesSince(before);
  ASSERT_EQ(changes.becameDead.size(), 1U);  // the line still feeds the station up to the breaker
  EXPECT_EQ(changes.becameDead[0].id, "D1");
  EXPECT_EQ(changes.becameDead[0].station, "South");
  EXPECT_TRUE(changes.becameLive.empty());
  EXPECT_EQ(changes.lostLoad, 30);
  EXPECT_EQ(changes.islandsBefore, 1);
  const Json json = Json::parse(ToJson(changes));
  EXPECT_EQ(json["lostLoad"], 30);
  EXPECT_EQ(json["becameDead"][0]["table"], "LD");
}

TEST_F(DocumentsTest, WhatIsTriedIsMarked) {
  const Documents before = Make();
  const Documents after = before.Tried(Switched("open CB B2"));
  const Json station = StationOf(after, "South");
  EXPECT_EQ(station["elements"]["CB-B2"]["changed"], true);
  EXPECT_EQ(station["elements"]["CB-B2"]["open"], true);
  EXPECT_NE(station["svg"].get<std::string>().find("changed\" data-table=\"CB\" data-id=\"B2\""), std::string::npos);
  EXPECT_FALSE(StationOf(before, "South")["elements"]["CB-B2"].contains("changed"));
}

TEST_F(DocumentsTest, StateThatIsTakenBackHasNoChanges) {
  const Documents before = Make();
  const Documents opened = before.Tried(Switched("open CB B2"));
  const Changes changes = before.Tried(Switched("close CB B2")).ChangesSince(before);
  EXPECT_TRUE(changes.becameDead.empty());
  EXPECT_TRUE(changes.stations.empty());
  EXPECT_EQ(opened.Version(), before.Version());
  EXPECT_EQ(before.Later(Switched("open CB B2"), 7).Version(), 7);
}

}  // namespace
}  // namespace dtsdb::page
