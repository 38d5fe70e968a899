// The report as a file: what it contains, without a browser (tests/web has that).

#include "page/report.h"

#include <gtest/gtest.h>

#include <QByteArray>
#include <QCryptographicHash>
#include <string>

#include "page/assets.h"
#include "tests/page/documents_of.h"

namespace dtsdb::page {
namespace {

std::size_t Count(const std::string& text, const std::string& part) {
  std::size_t count = 0;
  for (std::size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + 1)) ++count;
  return count;
}

void FillStations(dtsdb::test::ModelBuilder& network) {
  network.Station("A&\"B").Kv("K1", 110).Unit("U1", "K1", "N1").Breaker("B1", "K1", "N1", "N2").Load("D1", "K1", "N2");
  network.Station("C").Kv("K2", 110).Breaker("B2", "K2", "N3", "N4").Load("D2", "K2", "N4");
}

TEST(Report, HasOneBlockForAllAndOneForEachStation) {
  dtsdb::test::ModelBuilder network;
  FillStations(network);
  const std::string report = WriteReport(test::DocumentsOf(network));
  EXPECT_EQ(Count(report, "<script type=\"application/octet-stream\" id=\"data\">"), 1U);
  EXPECT_EQ(Count(report, "<script type=\"application/octet-stream\" data-station="), 2U);
  EXPECT_EQ(Count(report, "data-station=\"A&amp;&quot;B\">"), 1U);
}

TEST(Report, ContainsScriptAndStyleAndRefersToNothing) {
  dtsdb::test::ModelBuilder network;
  FillStations(network);
  const std::string report = WriteReport(test::DocumentsOf(network));
  EXPECT_EQ(Count(report, std::string(FindAsset("page.js")->bytes)), 1U);
  EXPECT_EQ(Count(report, std::string(FindAsset("page.css")->bytes)), 1U);
  EXPECT_EQ(Count(report, "src=\"page.js\""), 0U);
  EXPECT_EQ(Count(report, "href=\"page.css\""), 0U);
}

TEST(Report, HasAPolicyThatKnowsItsScriptByItsHash) {
  dtsdb::test::ModelBuilder network;
  const std::string_view script = FindAsset("page.js")->bytes;
  const QByteArray bytes(script.data(), static_cast<qsizetype>(script.size()));
  const std::string hash = QCryptographicHash::hash(bytes, QCryptographicHash::Sha256).toBase64().toStdString();
  const std::string report = WriteReport(test::DocumentsOf(network));
  EXPECT_EQ(Count(report, "default-src 'none'; script-src 'sha256-" + hash + "'; style-src 'sha256-"), 1U);
  EXPECT_EQ(Count(report, "unsafe-inline"), 0U);
}

TEST(Report, IsTheSameEachTime) {
  dtsdb::test::ModelBuilder first;
  dtsdb::test::ModelBuilder second;
  FillStations(first);
  FillStations(second);
  EXPECT_EQ(WriteReport(test::DocumentsOf(first)), WriteReport(test::DocumentsOf(second)));
}

TEST(Assets, AreTheThreeFilesOfTheFrontEnd) {
  ASSERT_EQ(Assets().size(), 3U);
  EXPECT_EQ(FindAsset("index.html")->type, "text/html; charset=utf-8");
  EXPECT_EQ(FindAsset("page.png"), nullptr);
  for (const Asset& asset : Assets()) EXPECT_FALSE(asset.bytes.empty()) << asset.name;
}

}  // namespace
}  // namespace dtsdb::page
