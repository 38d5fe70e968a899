// Identities of strangers in the documents and events that the page gets.

#include <gtest/gtest.h>

#include <QXmlStreamReader>
#include <algorithm>
#include <nlohmann/json.hpp>

#include "formats/text_layout.h"
#include "model/text.h"
#include "page/site.h"
#include "tests/page/live_place.h"
#include "tests/support/id_encoding.h"
#include "tests/support/nasty_identities.h"

namespace dtsdb::page::test {
namespace {

/// A breaker with each nasty identity, between a unit and a load. Some stations are called so as well.
class NastyPage : public LivePlace {
 protected:
  NastyPage() {
    for (const std::string& id : names) m.Put(Breaker(id));
    for (const std::string& bytes : dtsdb::test::NoTexts()) m.Put(Breaker(bytes));
    for (const std::string& id : names) {
      ST station(Raw(id));
      station.dv = Raw("DV");
      m.Put(station);
    }
    Store();
    Follow();
    site = std::make_unique<Site>(*live, Access("0123456789abcdef", "127.0.0.1"));
  }

  static QString Raw(const std::string& bytes) { return IdFromBytes(QByteArray::fromStdString(bytes)); }
  static CB Breaker(const std::string& id) {
    CB breaker(Raw(id));
    breaker.kv = Raw("K2");
    breaker.nd = Raw("N4");
    breaker.znd = Raw("far");
    breaker.flags = 1;
    return breaker;
  }
  /// A document, which must be JSON in UTF-8 on one line.
  nlohmann::json Get(const std::string& document, const std::map<std::string, std::string>& parameters = {}) {
    PageRequest request;
    request.path = "/0123456789abcdef/api/" + document;
    request.parameters = parameters;
    request.host = "127.0.0.1:8017";
    const PageAnswer answer = site->AnswerTo(request);
    EXPECT_EQ(answer.status, 200) << document << ": " << answer.body.substr(0, 200);
    EXPECT_EQ(answer.type, "application/json");
    EXPECT_TRUE(nlohmann::json::accept(answer.body)) << document;
    return nlohmann::json::parse(answer.body);
  }

  const dtsdb::test::EncodingInEffect utf8{IdEncoding::kUtf8};
  const std::vector<std::string> names = dtsdb::test::NastyIdentities();
  std::unique_ptr<Site> site;
};

TEST_F(NastyPage, AllDocumentsAreJson) {
  for (const char* const document : {"model", "state", "findings", "grid"}) Get(document);
  for (const char* const table : {"CB", "ST", "ND"}) Get("table", {{"name", table}});
  for (const std::string& id : names) {
    if (id.size() > 200) continue;  // longer than an address may be
    EXPECT_EQ(Get("station", {{"id", id}})["id"], id);
    Get("search", {{"q", id}});
  }
}

TEST_F(NastyPage, TextsComeBackExactly) {
  const std::string table = Get("table", {{"name", "CB"}}).dump();
  for (const std::string& id : names) {
    EXPECT_NE(table.find(nlohmann::json(id).dump()), std::string::npos) << tools::OneLine(id);
  }
}

TEST_F(NastyPage, PicturesHaveNoElementsOfStrangers) {
  const auto picture = Get("station", {{"id", "S2"}})["svg"].get<std::string>();
  int elements = 0;
  QXmlStreamReader xml(QByteArray::fromStdString(picture));
  while (!xml.atEnd()) {
    xml.readNext();
    if (xml.isStartElement()) ++elements;
    EXPECT_NE(xml.name().toString().toStdString(), "script");
    if (!xml.isCharacters()) continue;
    for (const QChar c : xml.text()) ASSERT_FALSE(tools::TurnsText(c.unicode())) << unsigned{c.unicode()};
  }
  EXPECT_FALSE(xml.hasError()) << xml.errorString().toStdString();
  EXPECT_GT(elements, 100);
}

TEST_F(NastyPage, EventsStandOnOneLineOfTheirStream) {
  for (const std::string& id : names) m.Table<CB>().GetPh(m.Table<CB>().Find(CB(Raw(id)))).flags |= CB_OPEN;
  for (const std::string& bytes : dtsdb::test::NoTexts()) {
    m.Table<CB>().GetPh(m.Table<CB>().Find(CB(Raw(bytes)))).flags |= CB_OPEN;
  }
  Switch(1, false, "B2");
  live->Look();
  const EventText event = stream->Take(std::chrono::milliseconds(0));
  ASSERT_NE(event, nullptr);
  EXPECT_EQ(std::count(event->begin(), event->end(), '\n'), 3) << "event, data and the empty line";
  EXPECT_EQ(event->find('\r'), std::string::npos);
  EXPECT_TRUE(event->ends_with("\n\n"));
  EXPECT_GT(Seen(*event).data["changes"].size(), names.size() / 2);
}

TEST_F(NastyPage, WhatIsTriedOutComesBackAsAScript) {
  nlohmann::json events = nlohmann::json::array();
  for (const std::string& id : names) {
    if (id.find('\n') != std::string::npos) continue;  // no script has room for it
    events.push_back({{"table", "CB"}, {"id", id}, {"open", true}});
  }
  PageRequest request;
  request.method = "POST";
  request.path = "/0123456789abcdef/api/whatif";
  request.host = "127.0.0.1:8017";
  request.body = nlohmann::json({{"viewer", "viewer0123456789"}, {"version", 1}, {"events", events}}).dump();
  const PageAnswer answer = site->AnswerTo(request);
  ASSERT_EQ(answer.status, 200) << answer.body.substr(0, 300);
  EXPECT_TRUE(nlohmann::json::accept(answer.body));
  request.method = "GET";
  request.path = "/0123456789abcdef/api/script";
  request.parameters["viewer"] = "viewer0123456789";
  const PageAnswer script = site->AnswerTo(request);
  ASSERT_EQ(script.status, 200) << script.body.substr(0, 300);
  EXPECT_EQ(static_cast<std::size_t>(std::count(script.body.begin(), script.body.end(), '\n')), events.size());
}

}  // namespace
}  // namespace dtsdb::page::test
