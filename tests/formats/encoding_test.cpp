// Models whose identities are UTF-8: text tables, object files, and what hints at the wrong encoding.

#include <gtest/gtest.h>

#include "formats/encoding_hint.h"
#include "formats/failure.h"
#include "formats/field_text.h"
#include "formats/model_io.h"
#include "tests/support/command_runner.h"
#include "tests/support/id_encoding.h"

namespace dtsdb::tools {
namespace {

using dtsdb::test::EncodingInEffect;
using test::Workplace;

constexpr const char* kTable = "id,kv,nd\r\nŁódź 💡,Łódź,北京\r\n";

TEST(Utf8Model, TextTablesAndObjectFileHoldTheSame) {
  const EncodingInEffect utf8(IdEncoding::kUtf8);
  const Workplace here;
  here.Write("m/CB.csv", kTable);
  DTSDB tables = LoadModel(ModelName((here / "m").string()));
  EXPECT_EQ(IdToBytes((*tables.m_cbTable)[0].id), QByteArray("Łódź 💡"));
  const ModelName object((here / "m.obj").string());
  SaveModel(tables, object);
  DTSDB read = LoadModel(object);
  EXPECT_EQ((*read.m_cbTable)[0].id, (*tables.m_cbTable)[0].id);
  SaveModel(read, ModelName((here / "again/").string()));
  SaveModel(tables, ModelName((here / "first/").string()));
  EXPECT_EQ(here.Read("again/CB.csv"), here.Read("first/CB.csv"));
  EXPECT_TRUE(test::Contains(here.Read("again/CB.csv"), "Łódź 💡,Łódź"));
}

std::string FailureOfSaving(DTSDB& model, const std::string& path) {
  try {
    SaveModel(model, ModelName(path));
  } catch (const Failure& failure) {
    return failure.what();
  }
  return "";
}

TEST(Utf8Model, BytesThatAreNoUtf8HaveNoTextTable) {
  const EncodingInEffect utf8(IdEncoding::kUtf8);
  const Workplace here;
  DTSDB model;
  model.m_cbTable->Add(CB(IdFromBytes("\xB1\xB1")));
  EXPECT_EQ(FailureOfSaving(model, (here / "m/").string()),
            "table CB, record 0, field id: the bytes of the text are no valid UTF-8");
}

TEST(Utf8Model, WhatAUserWritesInGbkIsGbkInBothEncodings) {
  for (const IdEncoding encoding : {IdEncoding::kGbk, IdEncoding::kUtf8}) {
    const EncodingInEffect inEffect(encoding);
    EXPECT_EQ(UserText("\xB1\xB1\xBE\xA9"), "北京");
    EXPECT_EQ(UserText("Łódź"), "Łódź");
  }
}

/// A model with breakers of these names, as bytes.
DTSDB Named(const std::vector<const char*>& names) {
  DTSDB model;
  for (const char* const name : names) model.m_cbTable->Add(CB(IdFromBytes(name)));
  return model;
}

TEST(EncodingHint, IsGivenWhereOnlyTheOtherEncodingFits) {
  constexpr const char* kGbkText = "\xB1\xB1\xBE\xA9";
  DTSDB utf8 = Named({"B1", "Łódź", "北京站"});
  DTSDB gbk = Named({"B1", kGbkText});
  EXPECT_EQ(EncodingHint(utf8), "its identities are no valid GBK but valid UTF-8; --encoding utf-8 reads them as such");
  EXPECT_EQ(EncodingHint(gbk), "");
  const EncodingInEffect inEffect(IdEncoding::kUtf8);
  EXPECT_EQ(EncodingHint(utf8), "");
  EXPECT_EQ(EncodingHint(gbk), "its identities are no valid UTF-8 but valid GBK; --encoding gbk reads them as such");
}

TEST(EncodingHint, IsNotGivenWhereNothingOrEverythingIsWrong) {
  DTSDB plain = Named({"B1", "B2"});
  DTSDB mixed = Named({"北京站", "\xB1\xB1\xBE\xA9"});
  DTSDB broken = Named({"\xFF\xFF"});
  for (const IdEncoding encoding : {IdEncoding::kGbk, IdEncoding::kUtf8}) {
    const EncodingInEffect inEffect(encoding);
    for (DTSDB* const model : {&plain, &mixed, &broken}) EXPECT_EQ(EncodingHint(*model), "");
  }
}

TEST(EncodingHint, LooksAtAllTextsOfRecords) {
  DTSDB model;
  CB breaker(QStringLiteral("B1"));
  breaker.nd = IdFromBytes("北京站");
  model.m_cbTable->Add(breaker);
  EXPECT_NE(EncodingHint(model), "");
}

}  // namespace
}  // namespace dtsdb::tools
