// Whether the model in a realtime database was replaced, with a clock that the tests set.

#include "command/model_watch.h"

#include <gtest/gtest.h>

#include <QTemporaryDir>

#include "formats/realtime.h"
#include "rtdb/volma_rtdb.h"

namespace dtsdb::tools {
namespace {

/// A database with the row of GLOBAL and two breakers, whose model was noted.
class Watch : public testing::Test {
 protected:
  Watch() {
    global stored{};
    stored.id = 0;
    stored.valid = 1;
    stored.time = 1000;
    Db()->insert(stored);
    AddBreaker("B1", "N1");
    AddBreaker("B2", "N2");
    m_watch.NoteModel();
    Db()->commit();
  }

  dbDatabase* Db() { return m_database.Db(); }

  void AddBreaker(const char* id, const char* node) {
    cb row{};
    row.id = id;
    row.kv = row.status_id = row.znd = "";
    row.nd = node;
    Db()->insert(row);
    Db()->commit();
  }

  /// Changes the first row of a class.
  template <class Row, class Change>
  void ChangeFirst(Change change) {
    dbCursor<Row> cursor(Db(), dbCursorForUpdate);
    cursor.select();
    change(*cursor.get());
    cursor.update();
    Db()->commit();
  }
  void SetTime(nat4 time) {
    ChangeFirst<global>([time](global& row) { row.time = time; });
  }

  QTemporaryDir m_folder;
  RealtimeDatabase m_database{m_folder.filePath(QStringLiteral("x")).toStdString(), dbDatabase::dbAllAccess};
  double m_steady = 5000;
  TaskClock m_clock{[] { return u32{0}; }, [this] { return m_steady += 1; }};
  ModelWatch m_watch{Db(), m_clock};
};

TEST_F(Watch, ModelThatStaysIsNotReported) {
  EXPECT_FALSE(m_watch.HasChanged());
  m_steady += 100;
  EXPECT_FALSE(m_watch.HasChanged());
}

TEST_F(Watch, ReplacedModelIsReportedAtOnce) {
  SetTime(1001);
  EXPECT_TRUE(m_watch.HasChanged());
  m_watch.NoteModel();
  Db()->commit();
  EXPECT_FALSE(m_watch.HasChanged());
}

TEST_F(Watch, RemovedModelIsReported) {
  dbCursor<global> cursor(Db(), dbCursorForUpdate);
  cursor.removeAll();
  Db()->commit();
  EXPECT_TRUE(m_watch.HasChanged());
}

TEST_F(Watch, CarriedValuesOfOthersDoNotCount) {
  ChangeFirst<global>([](global& row) { row.f1 = 7; });
  EXPECT_FALSE(m_watch.HasChanged());
}

TEST_F(Watch, ChangedTextIsReportedWhenTheTextsAreDue) {
  ChangeFirst<cb>([](cb& row) { row.nd = "N9"; });
  EXPECT_FALSE(m_watch.HasChanged()) << "they took a second to read, and are read again after twenty";
  m_steady += 20;
  EXPECT_TRUE(m_watch.HasChanged());
}

TEST_F(Watch, AddedAndRemovedRowsAreReported) {
  m_steady += 20;
  AddBreaker("B3", "N3");
  EXPECT_TRUE(m_watch.HasChanged());
}

TEST_F(Watch, TextsThatChangePlacesAreReported) {
  ChangeFirst<cb>([](cb& row) {
    row.nd = "";
    row.znd = "N1";
  });
  m_steady += 20;
  EXPECT_TRUE(m_watch.HasChanged());
}

TEST_F(Watch, StatesAndValuesDoNotCount) {
  ChangeFirst<cb>([](cb& row) {
    row.flags = 257;
    row.p = 12.5F;
    row.ibs = 4;
  });
  m_steady += 20;
  EXPECT_FALSE(m_watch.HasChanged());
}

TEST_F(Watch, NothingMayBeStoredOverAReplacedModel) {
  EXPECT_TRUE(m_watch.BeginStoring());
  Db()->commit();
  SetTime(1001);
  EXPECT_FALSE(m_watch.BeginStoring());
  EXPECT_TRUE(m_watch.HasChanged());
}

TEST_F(Watch, WhatTheTaskStoresIsItsOwn) {
  SetTime(1001);
  GLOBAL own;
  ChangeFirst<global>([&own](global& row) {
    own.time = row.time;
    own.valid = static_cast<u8>(row.valid);
    own.bs_free = row.bs_free;
    own.bs_dead = row.bs_dead;
    own.bs_live = row.bs_live;
    own.bsl_free = row.bsl_free;
    own.bsl_head = row.bsl_head;
  });
  m_watch.NoteStored(own);
  EXPECT_FALSE(m_watch.HasChanged());
}

}  // namespace
}  // namespace dtsdb::tools
