// What the exchange of a whole model does when its realtime database fails: it is reported, and what was stored stays.

#include <gtest/gtest.h>

#include <QFile>
#include <QStringList>
#include <QTemporaryDir>
#include <random>

#include "model/dtsdb.h"
#include "rtdb/backend.h"
#include "tests/support/random_records.h"

namespace dtsdb::test {
namespace {

/// A database that keeps what it reports.
class TellingDatabase : public dbDatabase {
 public:
  using dbDatabase::dbDatabase;
  void handleError(dbErrorClass, char const* message, int) override { reported += QString::fromUtf8(message); }

  QStringList reported;
};

class ExchangeFailures : public ::testing::Test {
 protected:
  void SetUp() override {
    RandomRecords(1).FillModel(m_stored, 10);
    TellingDatabase db;
    ASSERT_TRUE(Open(db));
    m_stored.WriteFastdb(&db);
    // As it comes back: without the log and with the points' new names.
    m_stored.ReadFastdb(&db);
    m_stored.m_tplTable->Clear();
    db.close();
    ASSERT_TRUE(db.reported.isEmpty()) << db.reported.join(QLatin1Char('\n')).toStdString();
  }

  QString Path() const { return m_directory.filePath(QStringLiteral("store.fdb")); }
  bool Open(dbDatabase& db) const { return OpenFile(db, Path()); }
  static bool OpenFile(dbDatabase& db, const QString& path) {
    const QByteArray file = path.toLocal8Bit();
    return db.open(file.constData(), file.constData());
  }

  void ExpectOldContents(dbDatabase& db) {
    DTSDB read;
    read.ReadFastdb(&db);
    ExpectEqualModels(m_stored, read);
  }

  QTemporaryDir m_directory;
  DTSDB m_stored;
};

TEST_F(ExchangeFailures, FullStoreIsReportedAndTheWholeOldModelStays) {
  TellingDatabase db;
  db.setFileSizeLimit(static_cast<std::size_t>(QFile(Path()).size()) + 65536);
  ASSERT_TRUE(Open(db));
  DTSDB large;
  RandomRecords(2).FillModel(large, 2000);
  EXPECT_TRUE(large.WriteFastdb(&db));
  ASSERT_EQ(db.reported.size(), 2) << db.reported.join(QLatin1Char('\n')).toStdString();
  EXPECT_TRUE(db.reported[0].contains(QLatin1String("size limit"))) << db.reported[0].toStdString();
  EXPECT_TRUE(db.reported[1].contains(QLatin1String("nothing committed"))) << db.reported[1].toStdString();
  ExpectOldContents(db);
}

TEST_F(ExchangeFailures, DatabaseOpenForReadingIsReadAndNotWritten) {
  TellingDatabase db(dbDatabase::dbReadOnly);
  ASSERT_TRUE(Open(db));
  ExpectOldContents(db);
  EXPECT_TRUE(db.reported.isEmpty());
  DTSDB other;
  RandomRecords(3).FillModel(other, 10);
  EXPECT_TRUE(other.WriteFastdb(&db));
  EXPECT_FALSE(db.reported.isEmpty());
  ExpectOldContents(db);
}

TEST_F(ExchangeFailures, DatabaseThatCouldNotBeOpenedGivesEmptyTablesAndTakesNothing) {
  TellingDatabase db;
  ASSERT_FALSE(OpenFile(db, m_directory.filePath(QStringLiteral("none/store.fdb"))));
  db.reported.clear();
  DTSDB model;
  RandomRecords(4).FillModel(model, 2);
  EXPECT_TRUE(model.WriteFastdb(&db));
  EXPECT_FALSE(db.reported.isEmpty());
  db.reported.clear();
  EXPECT_TRUE(model.ReadFastdb(&db));
  EXPECT_FALSE(db.reported.isEmpty());
  EXPECT_EQ(FilledTables(model), QStringList{QStringLiteral("TPL")});
}

TEST_F(ExchangeFailures, ModelInADamagedStoreIsReadAndWrittenWithoutHarm) {
  QFile file(Path());
  ASSERT_TRUE(file.open(QIODevice::ReadOnly));
  const QByteArray whole = file.readAll();
  file.close();
  std::mt19937 random(11);
  int opened = 0;
  for (int round = 0; round < 60; ++round) {
    QByteArray bytes = whole;
    // Every second round hits the heads of pages, where damage does most.
    qsizetype place = static_cast<qsizetype>(random()) % bytes.size();
    if (round % 2 == 0) place = place / 4096 * 4096 + static_cast<qsizetype>(random() % 160);
    for (int i = 0; i < 8 && place + i < bytes.size(); ++i) bytes[place + i] = static_cast<char>(random());
    QFile::remove(Path() + QStringLiteral("-lock"));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
    file.write(bytes);
    file.close();

    TellingDatabase db;
    if (!Open(db)) {
      EXPECT_EQ(db.reported.size(), 1);
      continue;
    }
    ++opened;
    DTSDB read;
    read.ReadFastdb(&db);
    m_stored.WriteFastdb(&db);
    db.close();
  }
  EXPECT_GT(opened, 0) << "all rounds ended at the opening";
  EXPECT_LT(opened, 60) << "no damage was noticed";
}

}  // namespace
}  // namespace dtsdb::test
