// The tables of columns that go with the row classes.
#include <gtest/gtest.h>

#include <set>
#include <string>

#include "rtdb/volma_rtdb.h"

namespace dtsdb {
namespace {

TEST(RowColumns, AreThoseThatTheDatabaseIsGiven) {
  ForEachRowClass([]<class Row> {
    SCOPED_TRACE(Row::kTableName);
    EXPECT_STREQ(Row::dbDescriptor.getName(), Row::kTableName);
    const dbFieldList& fields = Row::dbDescriptor.getFields();
    ASSERT_EQ(Row::Columns().size(), fields.size());
    for (std::size_t i = 0; i < fields.size(); ++i) {
      const ColumnInfo& column = Row::Columns()[i];
      EXPECT_EQ(column.name, fields[i].name);
      EXPECT_EQ(column.offset, fields[i].appOffs) << column.name;
      EXPECT_EQ(column.size, fields[i].appSize) << column.name;
      EXPECT_EQ(column.isKey, fields[i].indexType == INDEXED) << column.name;
      EXPECT_EQ(column.type == ColumnType::kBytes, fields[i].type == dbField::tpRawBinary) << column.name;
    }
  });
}

TEST(RowColumns, LieBehindEachOther) {
  ForEachRowClass([]<class Row> {
    SCOPED_TRACE(Row::kTableName);
    std::size_t end = 0;
    for (const ColumnInfo& column : Row::Columns()) {
      EXPECT_GE(column.offset, end) << column.name;
      end = column.offset + column.size;
    }
    EXPECT_LE(end, sizeof(Row));
  });
}

TEST(RowColumns, NumberTheFieldsOfTheirRecordInOrder) {
  ForEachRowClass([]<class Row> {
    int next = 0;
    for (const ColumnInfo& column : Row::Columns()) {
      if (column.field == ColumnInfo::kNoField) continue;
      EXPECT_EQ(column.field, next++) << Row::kTableName << column.name;
    }
  });
}

}  // namespace
}  // namespace dtsdb
