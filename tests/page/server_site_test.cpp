// The server's answers, without a socket.
#include "page/site.h"

#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "script/switch_script.h"
#include "tests/page/live_place.h"

namespace dtsdb::page::test {
namespace {

using Json = nlohmann::json;

constexpr const char* kToken = "0123456789abcdef";
constexpr const char* kViewer = "viewer0123456789";

class SiteTest : public LivePlace {
 protected:
  void SetUp() override {
    Store();
    Follow();
    MakeSite({});
  }

  void MakeSite(const SiteLimits& limits) { site = std::make_unique<Site>(*live, Access(kToken, "127.0.0.1"), limits); }

  /// The answer to a request for what lies behind the token.
  PageAnswer Get(const std::string& path, const std::map<std::string, std::string>& parameters = {}) {
    PageRequest request;
    request.path = std::string("/") + kToken + path;
    request.parameters = parameters;
    request.host = "127.0.0.1:8017";
    return site->AnswerTo(request);
  }
  PageAnswer Post(const std::string& body) {
    PageRequest request;
    request.method = "POST";
    request.path = std::string("/") + kToken + "/api/whatif";
    request.host = "127.0.0.1:8017";
    request.body = body;
    return site->AnswerTo(request);
  }
  PageAnswer Try(const Json& events, const char* viewer = kViewer, int version = 1) {
    return Post(Json({{"viewer", viewer}, {"version", version}, {"events", events}}).dump());
  }
  static Json Event(const char* table, const char* id, bool open) {
    return {{"table", table}, {"id", id}, {"open", open}};
  }
  static Json Body(const PageAnswer& answer) { return Json::parse(answer.body); }

  std::unique_ptr<Site> site;
};

TEST_F(SiteTest, GivesThePageItsFiles) {
  const PageAnswer page = Get("/");
  EXPECT_EQ(page.status, 200);
  EXPECT_TRUE(page.type.starts_with("text/html")) << page.type;
  EXPECT_NE(page.body.find("page.js"), std::string::npos);
  EXPECT_EQ(page.body.find("<script>"), std::string::npos) << "the policy forbids scripts within the page";
  EXPECT_EQ(Get("/page.js").status, 200);
  EXPECT_EQ(Get("/page.css").status, 200);
  EXPECT_EQ(Get("/other.js").status, 404);
  EXPECT_EQ(Get("/../page.js").status, 404);
  EXPECT_EQ(Get("").headers.at("Location"), "/0123456789abcdef/");
}

TEST_F(SiteTest, AnswersNobodyWithoutTheToken) {
  PageRequest request;
  request.host = "127.0.0.1:8017";
  const std::string nothing = Get("x").body;
  for (const char* path : {"", "/", "/0123456789abcde/", "/0123456789abcdeF/api/model", "/api/model", "/favicon.ico",
                           "x/0123456789abcdef/"}) {
    request.path = path;
    const PageAnswer answer = site->AnswerTo(request);
    EXPECT_EQ(answer.status, 404) << path;
    EXPECT_EQ(answer.body, nothing) << path;
  }
}

TEST_F(SiteTest, AnswersNoForeignHostAndNoForeignPage) {
  PageRequest request;
  request.path = std::string("/") + kToken + "/api/model";
  EXPECT_EQ(site->AnswerTo(request).status, 403) << "no host at all";
  request.host = "evil.example:8017";
  EXPECT_EQ(site->AnswerTo(request).status, 403);
  request.host = "127.0.0.1:8017";
  EXPECT_EQ(site->AnswerTo(request).status, 200);
  request.origin = "http://evil.example";
  EXPECT_EQ(site->AnswerTo(request).status, 403);
  request.origin = "http://127.0.0.1:8017";
  EXPECT_EQ(site->AnswerTo(request).status, 200);
}

TEST_F(SiteTest, TakesOneMethodEach) {
  PageRequest request;
  request.method = "DELETE";
  request.path = std::string("/") + kToken + "/api/model";
  request.host = "127.0.0.1";
  EXPECT_EQ(site->AnswerTo(request).status, 405);
  EXPECT_EQ(site->AnswerTo(request).headers.at("Allow"), "GET");
  EXPECT_EQ(Get("/api/whatif").status, 405);
}

TEST_F(SiteTest, GivesAllDocuments) {
  EXPECT_EQ(Body(Get("/api/model"))["live"], true);
  EXPECT_EQ(Body(Get("/api/model"))["version"], 1);
  EXPECT_EQ(Body(Get("/api/table", {{"name", "CB"}}))["columns"][0], Json({"B1", "B2"}));
  EXPECT_EQ(Body(Get("/api/state"))["islands"].size(), 1U);
  EXPECT_TRUE(Body(Get("/api/findings")).is_array());
  EXPECT_TRUE(Body(Get("/api/grid")).contains("svg"));
  EXPECT_EQ(Body(Get("/api/station", {{"id", "S1"}}))["id"], "S1");
  EXPECT_EQ(Body(Get("/api/search", {{"q", "L1"}}))["matches"][0]["id"], "L12");
  EXPECT_TRUE(Get("/api/events").isEventStream);
}

TEST_F(SiteTest, ReportsWhatThereIsNot) {
  EXPECT_EQ(Get("/api/nothing").status, 404);
  EXPECT_EQ(Get("/api/table", {{"name", "CBX"}}).status, 404);
  EXPECT_NE(Body(Get("/api/table", {{"name", "CBX"}}))["error"].get<std::string>().find("CBX"), std::string::npos);
  EXPECT_EQ(Get("/api/station").status, 404);
  EXPECT_EQ(Get("/api/search", {{"q", std::string(200, 'x')}}).status, 200);
  EXPECT_EQ(Get("/api/search", {{"q", std::string(201, 'x')}}).status, 400);
  EXPECT_EQ(Get("/api/station", {{"id", std::string(200, 'x')}}).status, 404);
  EXPECT_EQ(Get("/api/station", {{"id", std::string(201, 'x')}}).status, 400);
  EXPECT_EQ(Get("/api/state", {{"viewer", kViewer}}).status, 410) << "no copy yet";
}

TEST_F(SiteTest, TriesEventsOut) {
  const PageAnswer answer = Try(Json::array({Event("CB", "B2", true)}));
  ASSERT_EQ(answer.status, 200) << answer.body;
  const Json json = Body(answer);
  EXPECT_EQ(json["version"], 1);
  EXPECT_EQ(json["events"][0],
            Json({{"table", "CB"}, {"id", "B2"}, {"open", true}, {"applied", true}, {"text", "open CB B2"}}));
  EXPECT_EQ(json["changes"]["becameDead"][0]["id"], "D2");
  EXPECT_EQ(json["changes"]["lostLoad"], 50);
  EXPECT_EQ(Body(Get("/api/state", {{"viewer", kViewer}}))["dead"][0]["id"], "D2");
  EXPECT_TRUE(Body(Get("/api/state"))["dead"].empty()) << "what all see stays";
  EXPECT_EQ(Get("/api/script", {{"viewer", kViewer}}).body, "open CB B2\n");
}

TEST_F(SiteTest, AnEmptyListDropsTheCopy) {
  ASSERT_EQ(Try(Json::array({Event("CB", "B2", true)})).status, 200);
  const PageAnswer answer = Try(Json::array());
  EXPECT_EQ(answer.status, 200);
  EXPECT_TRUE(Body(answer)["changes"]["becameDead"].empty());
  EXPECT_EQ(Body(answer)["changes"]["islandsAfter"], 1);
  EXPECT_EQ(Get("/api/state", {{"viewer", kViewer}}).status, 410);
  EXPECT_EQ(Get("/api/script", {{"viewer", kViewer}}).body, "");
}

TEST_F(SiteTest, KnowsAllThatCanBeSwitched) {
  Json line = Event("LN", "L12", true);
  line["end"] = "from";
  const PageAnswer answer = Try({line, Event("LN", "L12", true), Event("UN", "U1", true), Event("LD", "D2", true)});
  ASSERT_EQ(answer.status, 200) << answer.body;
  const std::string script = Get("/api/script", {{"viewer", kViewer}}).body;
  EXPECT_EQ(script, "break LN L12 from\nout LN L12\noff UN U1\noff LD D2\n");
  std::vector<tools::SwitchRun> runs(1);
  tools::TakeSwitchScript("script", script, runs);
  EXPECT_EQ(runs[0].size(), 4U) << "dtsdb switch takes it";
}

TEST_F(SiteTest, ViewersDoNotSeeEachOthersCopies) {
  ASSERT_EQ(Try(Json::array({Event("CB", "B1", true)}), "viewerAAAAAAAAAA").status, 200);
  ASSERT_EQ(Try(Json::array({Event("CB", "B2", true)}), "viewerBBBBBBBBBB").status, 200);
  EXPECT_EQ(Get("/api/script", {{"viewer", "viewerAAAAAAAAAA"}}).body, "open CB B1\n");
  EXPECT_EQ(Get("/api/script", {{"viewer", "viewerBBBBBBBBBB"}}).body, "open CB B2\n");
  EXPECT_EQ(Body(Get("/api/state", {{"viewer", "viewerAAAAAAAAAA"}}))["islands"].size(), 0U);
  EXPECT_EQ(Body(Get("/api/state", {{"viewer", "viewerBBBBBBBBBB"}}))["islands"].size(), 1U);
}

TEST_F(SiteTest, CopyStaysWhereItBeganUntilTheViewerGoesOn) {
  ASSERT_EQ(Try(Json::array({Event("CB", "B2", true)})).status, 200);
  Switch(3, false, "D2");
  live->Look();
  EXPECT_EQ(Body(Get("/api/state"))["version"], 2);
  EXPECT_EQ(Body(Get("/api/state", {{"viewer", kViewer}}))["version"], 1);
  EXPECT_EQ(Body(Try(Json::array({Event("CB", "B2", true)})))["version"], 1);
  EXPECT_EQ(Body(Try(Json::array({Event("CB", "B2", true)}), kViewer, 2))["version"], 2);
}

TEST_F(SiteTest, RefusesWhatItCanNotRead) {
  const char* const kBodies[] = {
      "",
      "x",
      "[]",
      "{}",
      R"({"viewer":"short","events":[]})",
      R"({"viewer":"viewer0123456789"})",
      R"({"viewer":"viewer0123456789","events":7})",
      R"({"viewer":"viewer0123456789","events":[7]})",
      R"({"viewer":"viewer0123456789","events":[{"table":"CB","id":"B1"}]})",
      R"({"viewer":"viewer0123456789","events":[{"table":"CB","id":7,"open":true}]})",
      R"({"viewer":"viewer0123456789","events":[{"table":"KV","id":"K1","open":true}]})",
      R"({"viewer":"viewer0123456789","events":[{"table":"LN","id":"L12","open":true,"end":"middle"}]})"};
  for (const char* body : kBodies) {
    const PageAnswer answer = Post(body);
    EXPECT_EQ(answer.status, 400) << body;
    EXPECT_TRUE(Body(answer)["error"].is_string()) << body;
  }
  EXPECT_EQ(Post(std::string(100000, '[')).status, 400);
}

TEST_F(SiteTest, ForgetsTheOldestDocumentsBeyond32MiB) {
  int written = 0;
  const auto get = [&](int number) {
    const auto make = [&written](const Documents&) -> analysis::Result<std::string> {
      ++written;
      return std::string(std::size_t{8} << 20, 'x');
    };
    EXPECT_TRUE(live->Now()->Get(std::to_string(number), make).has_value());
  };
  for (const int number : {1, 2, 3, 4, 1}) get(number);
  EXPECT_EQ(written, 4) << "all four have room";
  for (const int number : {5, 2, 1}) get(number);
  EXPECT_EQ(written, 6) << "the fifth took the place of the first";
}

TEST_F(SiteTest, LimitsEventsBodiesAndCopies) {
  SiteLimits limits;
  limits.events = 2;
  limits.body = 1000;
  limits.copies = 1;
  MakeSite(limits);
  EXPECT_EQ(Try({Event("CB", "B1", true), Event("CB", "B2", true), Event("CB", "B1", false)}).status, 400);
  EXPECT_EQ(Post(std::string(1001, ' ')).status, 413);
  EXPECT_EQ(Try(Json::array({Event("CB", "B1", true)}), "viewerAAAAAAAAAA").status, 200);
  EXPECT_EQ(Try(Json::array({Event("CB", "B1", true)}), "viewerBBBBBBBBBB").status, 503);
  EXPECT_EQ(Try(Json::array({Event("CB", "B2", true)}), "viewerAAAAAAAAAA").status, 200);
}

TEST_F(SiteTest, HeadersKeepThePageToItself) {
  const auto headers = Site::Headers();
  const std::string policy = headers.at("Content-Security-Policy");
  EXPECT_TRUE(policy.starts_with("default-src 'none'; script-src 'self'; ")) << policy;
  EXPECT_EQ(policy.find("unsafe"), std::string::npos) << policy;
  EXPECT_NE(policy.find("frame-ancestors 'none'"), std::string::npos);
  EXPECT_EQ(headers.at("X-Content-Type-Options"), "nosniff");
  EXPECT_EQ(headers.at("Referrer-Policy"), "no-referrer");
  EXPECT_EQ(headers.at("Cache-Control"), "no-store");
}

}  // namespace
}  // namespace dtsdb::page::test
