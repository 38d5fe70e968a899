// Files of the format's own project: imported, exported, read again, and valid by its schema.

#include <gtest/gtest.h>

#include <QDir>
#include <QProcess>
#include <QTemporaryDir>

#include "formats/files.h"
#include "formats/model_io.h"
#include "generate/generator.h"
#include "tests/formats/xiidm/same_network.h"
#include "tests/support/places.h"

namespace dtsdb::tools::xiidm::test {
namespace {

std::string SamplePath(const std::string& name) { return dtsdb::test::DataPath("xiidm/" + name); }

class XiidmSamples : public ::testing::TestWithParam<std::string> {};

TEST_P(XiidmSamples, AreGoodModelsAndComeBackAsTheyWere) {
  const ModelName name(SamplePath(GetParam()));
  ASSERT_EQ(name.Form(), ModelForm::kXiidm);
  ImportReport report;
  DTSDB model = LoadModel(name, &report);
  for (const ImportReport::Exception& exception : report.leftOut) {
    ADD_FAILURE() << exception.type << ": " << exception.why << ": " << exception.names.front();
  }
  EXPECT_EQ(DifferenceAfterRoundTrip(model), "");
}

INSTANTIATE_TEST_SUITE_P(All, XiidmSamples, ::testing::ValuesIn(dtsdb::test::XiidmSamples()), [](const auto& tested) {
  std::string name = tested.param;
  for (char& c : name) c = std::isalnum(static_cast<unsigned char>(c)) != 0 ? c : '_';
  return name;
});

/// The schema of the format with that of the one extension that is written.
constexpr const char* kSchema = R"(<xs:schema xmlns:xs="http://www.w3.org/2001/XMLSchema">
<xs:import namespace="http://www.powsybl.org/schema/iidm/1_17" schemaLocation="file://XSD"/>
<xs:import namespace="http://www.powsybl.org/schema/iidm/ext/slack_terminal/1_5" schemaLocation="slack.xsd"/>
</xs:schema>)";
constexpr const char* kSlackSchema = R"(<xs:schema xmlns:xs="http://www.w3.org/2001/XMLSchema"
 targetNamespace="http://www.powsybl.org/schema/iidm/ext/slack_terminal/1_5" elementFormDefault="qualified">
<xs:element name="slackTerminal"><xs:complexType><xs:attribute name="id" type="xs:string" use="required"/>
</xs:complexType></xs:element></xs:schema>)";

class XiidmSchema : public ::testing::Test {
 protected:
  void SetUp() override {
    std::string schema = kSchema;
    schema.replace(schema.find("XSD"), 3,
                   QDir(QString::fromStdString(dtsdb::test::DataPath("xiidm/xsd")))
                       .absoluteFilePath(QStringLiteral("iidm_V1_17.xsd"))
                       .toStdString());
    WriteFile(Path("all.xsd"), schema);
    WriteFile(Path("slack.xsd"), kSlackSchema);
  }

  std::string Path(const char* name) const { return m_folder.path().toStdString() + "/" + name; }

  /// What the schema has against the export of a model, empty for nothing.
  std::string Faults(DTSDB& model) {
    SettleTables(model);
    WriteFile(Path("model.xiidm"), Exported(model));
    QProcess lint;
    lint.setProcessChannelMode(QProcess::MergedChannels);
    lint.start(QStringLiteral("xmllint"),
               {QStringLiteral("--noout"), QStringLiteral("--nonet"), QStringLiteral("--schema"),
                QString::fromStdString(Path("all.xsd")), QString::fromStdString(Path("model.xiidm"))});
    if (!lint.waitForFinished(60'000) || lint.exitStatus() != QProcess::NormalExit) return "xmllint doesn't run";
    return lint.exitCode() == 0 ? "" : lint.readAll().toStdString();
  }

 private:
  QTemporaryDir m_folder;
};

TEST_F(XiidmSchema, HoldsForTheExample) {
  DTSDB model = LoadModel(ModelName(dtsdb::test::SourcePath("examples/ieee14")));
  EXPECT_EQ(Faults(model), "");
}

TEST_F(XiidmSchema, HoldsForGeneratedUtilities) {
  for (const quint64 seed : {1, 2, 3}) {
    DTSDB model;
    GeneratorOptions options;
    options.stations = 30;
    options.seed = seed;
    options.dcLines = 50;
    GenerateUtility(model, options);
    EXPECT_EQ(Faults(model), "") << seed;
  }
}

TEST_F(XiidmSchema, HoldsForAllSamples) {
  for (const std::string& sample : dtsdb::test::XiidmSamples()) {
    DTSDB model = LoadModel(ModelName(SamplePath(sample)));
    EXPECT_EQ(Faults(model), "") << sample;
  }
}

}  // namespace
}  // namespace dtsdb::tools::xiidm::test
