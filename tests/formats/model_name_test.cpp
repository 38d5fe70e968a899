// What a user calls a model by.

#include "formats/model_name.h"

#include <gtest/gtest.h>

#include <QTemporaryDir>
#include <filesystem>

namespace dtsdb::tools {
namespace {

TEST(ModelName, APathIsTheWholeText) {
  const ModelName name("folder/grid.obj");
  EXPECT_EQ(name.Text(), "folder/grid.obj");
  EXPECT_EQ(name.Path(), "folder/grid.obj");
  EXPECT_FALSE(name.IsDatabase());
  EXPECT_FALSE(ModelName("./rtdb:grid").IsDatabase());
}

TEST(ModelName, ADatabaseIsWhatStandsBehindThePrefix) {
  const ModelName name("rtdb:folder/grid");
  EXPECT_EQ(name.Text(), "rtdb:folder/grid");
  EXPECT_EQ(name.Path(), "folder/grid");
  EXPECT_TRUE(name.IsDatabase());
  EXPECT_EQ(name.Form(), ModelForm::kRealtimeDatabase);
  EXPECT_EQ(name.FormAsOutput(), ModelForm::kRealtimeDatabase);
}

TEST(ModelName, OfADatabaseThePrefixMayBeLeftOut) {
  for (const char* text : {"grid", "rtdb:grid"}) {
    const ModelName name = ModelName::OfDatabase(text);
    EXPECT_EQ(name.Text(), text);
    EXPECT_EQ(name.Path(), "grid");
    EXPECT_TRUE(name.IsDatabase());
  }
}

TEST(ModelName, TheFormIsThatOfThePathAsItIsNow) {
  const QTemporaryDir here;
  const ModelName name((here.path() + QLatin1String("/m.obj")).toStdString());
  EXPECT_EQ(name.Form(), ModelForm::kObjectFile);
  std::filesystem::create_directory(name.Path());
  EXPECT_EQ(name.Form(), ModelForm::kTextTables);
}

TEST(ModelName, SeveralPathsOfCgmesProfilesArePartedByCommas) {
  const ModelName name("cgmes:eq.xml,state.zip,boundary");
  EXPECT_EQ(name.Form(), ModelForm::kCgmes);
  EXPECT_EQ(name.Paths(), (std::vector<std::string>{"eq.xml", "state.zip", "boundary"}));
  EXPECT_EQ(ModelName("a,b.obj").Paths(), std::vector<std::string>{"a,b.obj"});
}

TEST(ModelName, XiidmIsWhatStandsBehindThePrefixOrEndsAsSuchFilesDo) {
  const ModelName name("xiidm:folder/grid.xml");
  EXPECT_EQ(name.Path(), "folder/grid.xml");
  EXPECT_EQ(name.Form(), ModelForm::kXiidm);
  EXPECT_EQ(name.FormAsOutput(), ModelForm::kXiidm);
  for (const char* const output : {"a.xiidm", "a.iidm", "a.xiidm.gz", "a.iidm.gz"}) {
    EXPECT_EQ(ModelName(output).FormAsOutput(), ModelForm::kXiidm) << output;
  }
  EXPECT_EQ(ModelName("a.gz").FormAsOutput(), ModelForm::kObjectFile);
  EXPECT_EQ(ModelName("a.xml").FormAsOutput(), ModelForm::kObjectFile);
}

}  // namespace
}  // namespace dtsdb::tools
