// The tables as data, and work on tables whose record class is known only at run time.
#include "model/table_info.h"

#include <gtest/gtest.h>

#include <string>

#include "model/any_table.h"
#include "tests/model/record_values.h"

namespace dtsdb::test {
namespace {

TEST(TableInfo, NamesTheTablesByTheirKindCodes) {
  ForEachRecordClass([]<class T> {
    const TableInfo& table = TableOfKind(T::kKind);
    EXPECT_EQ(table.kind, T::kKind);
    EXPECT_STREQ(table.name, T::kTableName);
    EXPECT_STREQ(TableName(T::kKind), T::kTableName);
    EXPECT_EQ(table.key, T::kKey) << table.name;
    EXPECT_EQ(table.fields().data(), T::Fields().data()) << table.name;
  });
}

TEST(TableInfo, WhatIsNoKindCodeHasNoName) {
  for (const int kind : {-1, 0, 47}) EXPECT_STREQ(TableName(kind), "") << kind;
}

TEST(TableInfo, KeysAreTheIdentitiesAndNumbers) {
  for (const TableInfo& table : Tables()) {
    for (const FieldInfo& field : table.KeyFields()) {
      const std::string name = field.name;
      EXPECT_TRUE(table.key == RecordKey::kRelation ? name.ends_with("_id") : name == "id") << table.name;
      EXPECT_EQ(field.type, table.key == RecordKey::kNumbered ? FieldType::kI32 : FieldType::kText) << table.name;
    }
  }
}

TEST(AnyTable, ShowsTheRecordsOfItsTable) {
  DTSDB database;
  FillTables(database, 3);
  ForEachTable(database, [&]<class T>(tTable<T>& typed) {
    const AnyTable table = TableOfKind(database, T::kKind);
    EXPECT_EQ(table.Info().kind, T::kKind);
    EXPECT_EQ(table.GetCount(), 3);
    EXPECT_EQ(table.GetSize(), typed.GetSize());
    for (int i = 0; i < 3; ++i) EXPECT_EQ(table[i], &typed[i]) << T::kTableName;
    EXPECT_TRUE(table.IsLess(table[0], table[1])) << T::kTableName;
    EXPECT_FALSE(table.IsLess(table[1], table[0])) << T::kTableName;
  });
}

TEST(AnyTable, TakesNewRecordsInAnyOrder) {
  DTSDB database;
  const AnyTable table = TableOfKind(database, KIND_LD);
  const auto records = table.MakeRecords();
  for (const char* id : {"b", "a"}) static_cast<LD*>(records->Add())->id = QLatin1String(id);
  EXPECT_EQ(records->Count(), 2U);
  EXPECT_EQ(static_cast<const LD*>((*records)[0])->ref, -1) << "the default of the class";
  table.SetData(*records);
  ASSERT_EQ(table.GetCount(), 2);
  EXPECT_EQ((*database.m_ldTable)[0].id, QStringLiteral("a"));
}

TEST(AnyTable, NoNewRecordsLeaveATableAsItWas) {
  DTSDB database;
  database.m_ldTable->Add(LD(QStringLiteral("a")));
  const AnyTable table = TableOfKind(database, KIND_LD);
  table.SetData(*table.MakeRecords());
  EXPECT_EQ(table.GetCount(), 1);
}

}  // namespace
}  // namespace dtsdb::test
