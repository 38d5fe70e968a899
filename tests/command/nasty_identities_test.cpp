// Identities of strangers in every output: nothing breaks a line, commands a terminal, leaves its place in a document
// or comes back as another.

#include <gtest/gtest.h>

#include <QString>
#include <QXmlStreamReader>
#include <nlohmann/json.hpp>
#include <set>

#include "formats/csv.h"
#include "formats/model_io.h"
#include "formats/text_layout.h"
#include "model/text.h"
#include "tests/support/command_runner.h"
#include "tests/support/id_encoding.h"
#include "tests/support/nasty_identities.h"

namespace dtsdb::tools {
namespace {

using dtsdb::test::NastyIdentities;
using dtsdb::test::NoTexts;
using test::CommandResult;
using test::Contains;
using test::Workplace;

/// A model in which everything has a nasty identity: a station with one level, and on it breakers, loads and nodes.
class NastyModel : public testing::Test {
 protected:
  NastyModel() {
    const dtsdb::test::EncodingInEffect utf8(IdEncoding::kUtf8);
    DTSDB model;
    model.m_coTable->Add(CO(Raw("=co")));
    DV dv(Raw("+dv"));
    dv.co = Raw("=co");
    model.m_dvTable->Add(dv);
    const QString station = Raw("<script>st</script>\x1B[31m\xE2\x80\xAE");
    ST st(station);
    st.dv = dv.id;
    model.m_stTable->Add(st);
    KV kv(Raw("@kv]]>\n"));
    kv.st = station;
    kv.vbase = 220;
    kv.vmax = 240;
    kv.vmin = 200;
    model.m_kvTable->Add(kv);
    for (const std::string& id : names) {
      LD load(Raw(id));
      load.kv = kv.id;
      load.nd = Raw(id);
      load.status = 1;
      model.m_ldTable->Add(load);
      CB breaker(Raw(id));
      breaker.kv = kv.id;
      breaker.nd = Raw(id);
      breaker.znd = Raw("hub");
      breaker.flags = 1;
      model.m_cbTable->Add(breaker);
    }
    SaveModel(model, ModelName((here / "m.obj").string()));
  }
  static QString Raw(const std::string& utf8) { return IdFromBytes(QByteArray::fromStdString(utf8)); }

  CommandResult Run(const QStringList& arguments) const {
    return here.Run(arguments + QStringList{QStringLiteral("--encoding"), QStringLiteral("utf-8")});
  }
  std::string Out(const char* arguments) const {
    const CommandResult result = Run(QString::fromUtf8(arguments).split(QLatin1Char(' ')));
    EXPECT_LE(result.code, 1) << arguments << ": " << result.err;
    ExpectCalm(result.err, arguments);
    return result.out;
  }
  /// Checks that a text for a terminal is UTF-8 of nothing but visible characters and line feeds.
  static void ExpectCalm(const std::string& text, const std::string& what) {
    EXPECT_EQ(QString::fromStdString(text).toStdString(), text) << what << ": no UTF-8";
    for (const QChar c : QString::fromStdString(text)) {
      const bool isControl = c.category() == QChar::Other_Control && c != QLatin1Char('\n');
      const bool isSeparator = c == QChar(0x2028) || c == QChar(0x2029);
      ASSERT_FALSE(isControl || isSeparator || TurnsText(c.unicode()))
          << what << ": U+" << std::hex << unsigned{c.unicode()};
    }
  }

  const std::vector<std::string> names = NastyIdentities();
  Workplace here;
};

TEST_F(NastyModel, IsShownOnATerminalCharacterByCharacter) {
  for (const char* command : {"info m.obj", "dump m.obj LD", "dump m.obj CB", "validate m.obj --all", "topology m.obj",
                              "flow m.obj", "check m.obj"}) {
    ExpectCalm(Out(command), command);
  }
  for (const std::string& name : names) {
    const CommandResult unknown = Run({QStringLiteral("dump"), QStringLiteral("m.obj"), QStringLiteral("ST"),
                                       QStringLiteral("--id"), QString::fromStdString(name)});
    EXPECT_TRUE(test::IsOneLine(unknown.err)) << unknown.err;
    ExpectCalm(unknown.err, name);
  }
}

TEST_F(NastyModel, ComesBackFromJson) {
  const auto loads = nlohmann::json::parse(Out("dump m.obj LD --format json"));
  std::set<std::string> found;
  for (const auto& row : loads.at("LD")) found.insert(row.at("id").get<std::string>());
  EXPECT_EQ(found, std::set<std::string>(names.begin(), names.end()));
  EXPECT_TRUE(nlohmann::json::accept(Out("validate m.obj --format json")));
  EXPECT_TRUE(nlohmann::json::accept(Out("topology m.obj --format json")));
}

TEST_F(NastyModel, ComesBackFromCsvWithoutACellThatIsAFormula) {
  std::set<std::string> found;
  bool isHeader = true;
  ReadCsv(Out("dump m.obj LD --format csv"), [&](const CsvRow& row) {
    if (!std::exchange(isHeader, false)) found.insert(UnguardedText(row.fields[0].value_or("")));
    for (const CsvField& field : row.fields) {
      if (!field || field->empty()) continue;
      const bool isNumber = field->find_first_not_of("+-.0123456789e") == std::string::npos && field->size() < 3;
      EXPECT_TRUE(isNumber || std::string("=+-@\t\r").find(field->front()) == std::string::npos) << *field;
    }
  });
  EXPECT_EQ(found, std::set<std::string>(names.begin(), names.end()));
}

TEST_F(NastyModel, ComesBackFromTextTablesAndRealtimeDatabases) {
  for (const char* form : {"tables", "rtdb:store"}) {
    Out((std::string("convert m.obj ") + form).c_str());
    Out((std::string("convert ") + form + " back.obj").c_str());
    const std::string same = Out("diff m.obj back.obj");
    EXPECT_TRUE(Contains(same, "The models are the same.")) << form << ": " << same.substr(0, 400);
  }
}

TEST_F(NastyModel, StandsInALogByteByByte) {
  Out("validate m.obj --log m.log");
  const std::string log = here.Read("m.log");
  for (const std::string& name : names) {
    EXPECT_TRUE(Contains(log, name)) << OneLine(name);
  }
  EXPECT_NE(Out("validate m.obj --all").find("a\\nb"), std::string::npos) << "the findings are shown on one line each";
}

/// What an XML document is made of must not depend on names.
void ExpectElementsOnly(const std::string& document, const std::string& what) {
  QXmlStreamReader xml(QByteArray::fromStdString(document));
  while (!xml.atEnd()) {
    xml.readNext();
    if (!xml.isStartElement()) continue;
    EXPECT_NE(xml.name().toString().toStdString(), "script") << what;
  }
  EXPECT_FALSE(xml.hasError()) << what << ": " << xml.errorString().toStdString();
}

TEST_F(NastyModel, StaysInItsPlaceInPicturesAndPages) {
  const CommandResult drawn = Run({QStringLiteral("draw"), QStringLiteral("m.obj"), QStringLiteral("--station"),
                                   QString::fromStdString("<script>st</script>\x1B[31m\xE2\x80\xAE"),
                                   QStringLiteral("-o"), QStringLiteral("p.svg")});
  ExpectCalm(drawn.err, "draw");
  if (here.Exists("p.svg")) ExpectElementsOnly(here.Read("p.svg"), "draw");
  const CommandResult page =
      Run({QStringLiteral("report"), QStringLiteral("m.obj"), QStringLiteral("-o"), QStringLiteral("p.html")});
  ExpectCalm(page.err, "report");
  if (!here.Exists("p.html")) return;
  const std::string html = here.Read("p.html");
  EXPECT_FALSE(Contains(html, "<script>alert"));
  EXPECT_FALSE(Contains(html, "<script>st"));
  EXPECT_FALSE(Contains(html, "</style></script><!--"));
}

TEST_F(NastyModel, BytesThatAreNoTextAreShownAndNotWrittenAsText) {
  DTSDB model;
  for (const std::string& bytes : NoTexts()) model.m_ldTable->Add(LD(Raw(bytes)));
  SaveModel(model, ModelName((here / "n.obj").string()));
  ExpectCalm(Out("dump n.obj LD"), "dump");
  EXPECT_TRUE(nlohmann::json::accept(Out("dump n.obj LD --format json")));
  const CommandResult refused = Run({QStringLiteral("convert"), QStringLiteral("n.obj"), QStringLiteral("n")});
  EXPECT_EQ(refused.code, 3);
  EXPECT_TRUE(test::IsOneLine(refused.err));
  EXPECT_FALSE(here.Exists("n"));
  Out("convert n.obj rtdb:n");
  EXPECT_TRUE(Contains(Out("diff n.obj rtdb:n"), "The models are the same."));
}

}  // namespace
}  // namespace dtsdb::tools
