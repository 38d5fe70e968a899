// Writers that leave rows alone which hold their records, beside writers that write every row.
#include <gtest/gtest.h>

#include <string>

#include "model/exchange.h"
#include "tests/support/random_records.h"
#include "tests/support/realtime_store.h"

namespace dtsdb::test {
namespace {

/// WriteTable without a look at what is there.
template <class T>
void WriteEveryRow(dbDatabase* db, tTable<T>& table) {
  TwinWriter<T> writer(db);
  if constexpr (Twin<T>::kWriter == Writer::kReplacing) {
    writer.RemoveAll();
    InsertRows(writer, table);
  } else if (writer.IsEmpty()) {
    InsertRows(writer, table);
  } else {
    MergeRows(writer, table);
  }
  if constexpr (kKindOf<T> == KIND_BSL) writer.RemoveFrom(table.GetCount());
}

std::string BytesOf(const void* row, std::span<const ColumnInfo> columns) {
  std::string bytes;
  for (const ColumnInfo& column : columns) {
    const char* const at = static_cast<const char*>(row) + column.offset;
    if (column.type == ColumnType::kText) {
      bytes += column.In<char const*>(row);
      bytes += '\0';
    } else {
      bytes.append(at, column.size);
    }
  }
  return bytes;
}

/// All rows of all tables, in the order in which a cursor comes to them.
std::vector<std::string> RowsOf(RealtimeStore& store) {
  std::vector<std::string> rows;
  ForEachRecordClass([&]<class T> {
    using Row = typename Twin<T>::Row;
    dbCursor<Row> cursor(store.Db(), dbCursorViewOnly);
    cursor.select();
    for (const Row* row = cursor.get(); row != nullptr; row = cursor.next()) {
      rows.push_back(T::kTableName + (":" + BytesOf(row, Row::Columns())));
    }
  });
  return rows;
}

/// Changes, adds and takes out some records, and doubles some.
template <class T>
void Change(tTable<T>& table, RandomRecords& random, int next) {
  for (int i = random.Number(0, 2); i > 0 && table.GetCount() > 0; --i) {
    table.Remove(table.LgToPh(random.Number(0, table.GetCount() - 1)));
  }
  for (int i = random.Number(0, 2); i > 0; --i) table.Add(random.Record<T>(next + i));
  if (table.GetCount() == 0) return;
  if (random.Number(0, 1) == 0) {
    T record = table[random.Number(0, table.GetCount() - 1)];
    const auto& field =
        T::Fields()[static_cast<std::size_t>(random.Number(1, static_cast<int>(T::Fields().size()) - 1))];
    VisitValue(field, &record, [&random](auto& value) { random.Fill(value); });
    const int before = table.Find(record);
    if (before != -1) table.Remove(before);
    table.Add(record);
  }
  if (random.Number(0, 3) == 0) {
    std::vector<T> records;
    for (int i = 0; i < table.GetCount(); ++i) records.push_back(table[i]);
    records.push_back(records[static_cast<std::size_t>(random.Number(0, table.GetCount() - 1))]);
    VisitValue(T::Fields().back(), &records.back(), [&random](auto& value) { random.Fill(value); });
    table.SetData(records.data(), static_cast<int>(records.size()), false);
  }
}

TEST(UnchangedRows, RowsComeOutAsThoughEachWereWritten) {
  for (unsigned seed = 1; seed <= 12; ++seed) {
    RandomRecords random(seed);
    DTSDB model;
    random.FillModel(model, random.Number(0, 6));
    RealtimeStore one;
    RealtimeStore other;
    for (int round = 0; round < 5; ++round) {
      ForEachTable(model, [&]<class T>(tTable<T>& table) {
        WriteTable(one.Db(), table);
        WriteEveryRow(other.Db(), table);
      });
      one.Db()->commit();
      other.Db()->commit();
      ASSERT_EQ(RowsOf(one), RowsOf(other)) << "seed " << seed << ", round " << round;
      if (random.Number(0, 3) == 0) continue;
      ForEachTable(model, [&](auto& table) { Change(table, random, 100 * (round + 1)); });
    }
  }
}

TEST(UnchangedRows, TableThatIsReplacedKeepsItsRowsWhenNothingChanges) {
  RandomRecords random(3);
  DTSDB model;
  random.FillModel(model, 5);
  RealtimeStore store;
  WriteTable(store.Db(), *model.m_cb2Table);
  EXPECT_TRUE(HoldsTable(store.Db(), *model.m_cb2Table));
  (*model.m_cb2Table)[4].icb += 1;
  EXPECT_FALSE(HoldsTable(store.Db(), *model.m_cb2Table));
}

TEST(UnchangedRows, RecordsOfDoubledRowsAndOfTextsThatNoRowHoldsAreNotHeld) {
  DTSDB model;
  for (const char16_t* id : {u"A", u"B", u"C", u"D"}) model.m_ldTable->Add(LD(QString::fromUtf16(id)));
  RealtimeStore store;
  WriteTable(store.Db(), *model.m_ldTable);
  ld again;
  again.id = "B";
  store.Insert(again);
  (*model.m_ldTable)[2].nd = QString(QChar(0x4E2D));
  (*model.m_ldTable)[3].nd = QString(QChar(u'\0'));
  EXPECT_EQ(HeldRecords(store.Db(), *model.m_ldTable), (std::vector<bool>{true, false, false, false}));
}

}  // namespace
}  // namespace dtsdb::test
