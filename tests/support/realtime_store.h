/// \file
/// A realtime database of one's own, for tests.
#pragma once

#include <gtest/gtest.h>

#include <QStringList>
#include <QTemporaryDir>
#include <vector>

#include "rtdb/volma_rtdb.h"

namespace dtsdb::test {

/// An open, empty store in a directory that is removed with it. An error of the database fails the test.
class RealtimeStore {
 public:
  RealtimeStore() {
    m_database.setErrorHandler([](int error, char const* message, int, void*) {
      ADD_FAILURE() << "realtime database, error " << error << ": " << (message != nullptr ? message : "");
    });
    EXPECT_TRUE(m_database.open(Path().constData(), Path().constData()));
  }
  RealtimeStore(const RealtimeStore&) = delete;
  RealtimeStore& operator=(const RealtimeStore&) = delete;
  ~RealtimeStore() { m_database.close(); }

  dbDatabase* Db() { return &m_database; }
  /// Its file, for other processes.
  QByteArray Path() const { return m_directory.filePath(QStringLiteral("store.fdb")).toLocal8Bit(); }

  /// Number of rows in the table of `Row`.
  template <class Row>
  int Count() {
    dbCursor<Row> cursor(&m_database, dbCursorViewOnly);
    return cursor.select();
  }

  /// The names of the tables that have rows, in the order of the model's tables.
  QStringList FilledTables() {
    QStringList names;
    ForEachRowClass([&]<class Row> {
      if (Count<Row>() > 0) names += QString::fromLatin1(Row::kTableName).toUpper();
    });
    return names;
  }

  /// Calls `visit` with each row, in the order of `query`.
  template <class Row, class Visit>
  void ForEachRow(char const* query, Visit visit) {
    dbCursor<Row> cursor(&m_database, dbCursorViewOnly);
    cursor.select(query);
    for (const Row* row = cursor.get(); row != nullptr; row = cursor.next()) visit(*row);
  }

  /// What `value` gives for each row, in the order of `id`.
  template <class Row, class Value>
  auto Values(Value value) {
    std::vector<decltype(value(Row()))> values;
    ForEachRow<Row>("order by id", [&](const Row& row) { values.push_back(value(row)); });
    return values;
  }

  /// Changes each row as another program would, and commits.
  template <class Row, class Edit>
  void Change(Edit edit) {
    dbCursor<Row> cursor(&m_database, dbCursorForUpdate);
    cursor.select();
    for (Row* row = cursor.get(); row != nullptr; row = cursor.next()) {
      edit(*row);
      cursor.update();
    }
    m_database.commit();
  }

  /// Adds a row as another program would. Doesn't commit.
  template <class Row>
  void Insert(const Row& row) {
    m_database.insert(row);
  }

 private:
  QTemporaryDir m_directory;
  dbDatabase m_database;
};

}  // namespace dtsdb::test
