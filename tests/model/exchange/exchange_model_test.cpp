// Whole models: what goes out and comes back, what survives in between, and what a commit covers.

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <cstring>

#include "model/dtsdb.h"
#include "model/exchange.h"
#include "tests/support/messages.h"
#include "tests/support/random_records.h"
#include "tests/support/realtime_store.h"

namespace dtsdb::test {
namespace {

/// Calls `visit` with the address and the size of everything in a row that no record has.
template <class Row, class Visit>
void ForEachForeign(Row& row, Visit visit) {
  for (const ColumnInfo& column : Row::Columns()) {
    if (column.field == ColumnInfo::kNoField) visit(&column.In<char>(static_cast<void*>(&row)), column.size);
  }
}

/// The points of which the analog table would make other ones are given names equal to their identities.
void NamePointsAfterTheirIdentities(DTSDB& model) {
  for (int i = 0; i < model.m_analogTable->GetCount(); ++i) {
    ANALOG& point = (*model.m_analogTable)[i];
    point.name = point.id;
  }
}

class ExchangeModel : public ::testing::Test {
 protected:
  /// A model with `n` random records in each table.
  void Fill(DTSDB& model, unsigned seed, int n) {
    RandomRecords(seed).FillModel(model, n);
    NamePointsAfterTheirIdentities(model);
  }

  /// Checks that the store returns what `model` holds: the log and, as new points get no name, their names aside.
  static void ExpectStored(RealtimeStore& store, DTSDB& model, bool pointsHaveNames) {
    DTSDB read;
    EXPECT_TRUE(read.ReadFastdb(store.Db()));
    EXPECT_EQ(read.m_tplTable->GetCount(), 0);
    EXPECT_TRUE(read.ReadTPLFromFastdb(store.Db()));
    if (!pointsHaveNames) {
      for (int i = 0; i < read.m_analogTable->GetCount(); ++i) {
        EXPECT_TRUE((*read.m_analogTable)[i].name.isEmpty());
        (*read.m_analogTable)[i].name = (*read.m_analogTable)[i].id;
      }
    }
    ExpectEqualModels(model, read);
  }

  RealtimeStore m_store;
  DTSDB m_model;
};

TEST_F(ExchangeModel, WrittenAndReadBackIsEqualFieldByField) {
  Fill(m_model, 1, 20);
  EXPECT_TRUE(m_model.WriteFastdb(m_store.Db()));
  ExpectStored(m_store, m_model, false);
}

TEST_F(ExchangeModel, WrittenAgainNothingChangesButThePointsNames) {
  Fill(m_model, 2, 20);
  m_model.WriteFastdb(m_store.Db());
  for (int i = 0; i < 2; ++i) {
    m_model.WriteFastdb(m_store.Db());
    ExpectStored(m_store, m_model, true);
  }
}

RC_GTEST_PROP(ExchangeModelProperty, EveryFieldOfEveryRecordIsUpdated, (unsigned seed)) {
  RealtimeStore store;
  DTSDB before;
  RandomRecords random(seed);
  random.FillModel(before, random.Number(0, 8));
  NamePointsAfterTheirIdentities(before);
  before.WriteFastdb(store.Db());
  // The same records with everything else in them changed.
  DTSDB model;
  model.ReadFastdb(store.Db());
  ForEachTable(model, [&](auto& table) {
    for (int i = 0; i < table.GetCount(); ++i) {
      auto& record = table[i];
      const auto key = record;
      ForEachField(record, [&random](const FieldInfo&, auto& value) { random.Fill(value); });
      if constexpr (requires { record.id; }) {
        record.id = key.id;
      } else {
        using Row = std::decay_t<decltype(record)>;
        record.*Relation<Row>::kParentId = key.*Relation<Row>::kParentId;
        record.*Relation<Row>::kChildId = key.*Relation<Row>::kChildId;
      }
    }
  });
  model.WriteFastdb(store.Db());
  DTSDB read;
  read.ReadFastdb(store.Db());
  ExpectEqualModels(model, read);
  RC_ASSERT(!::testing::Test::HasFailure());
}

TEST_F(ExchangeModel, WhatOtherProgramsKeepInARowSurvivesEveryUpdate) {
  Fill(m_model, 3, 3);
  m_model.WriteFastdb(m_store.Db());
  int tablesWithForeignBytes = 0;
  const auto forEachMergedTwin = [](auto visit) {
    ForEachRecordClass([&visit]<class T> {
      if constexpr (Twin<T>::kWriter == Writer::kMerging) visit(typename Twin<T>::Row());
    });
  };
  forEachMergedTwin([&](auto example) {
    using Row = decltype(example);
    std::size_t bytes = 0;
    ForEachForeign(example, [&](void*, std::size_t size) { bytes += size; });
    if (bytes == 0) return;
    ++tablesWithForeignBytes;
    m_store.Change<Row>([](Row& row) {
      int mark = 'a';
      ForEachForeign(row, [&](void* at, std::size_t size) { std::memset(at, mark++, size); });
    });
  });
  // bs, bus, cb, co, cp, dln, dv, kv, ld, ln, st, un, xf, zbr
  EXPECT_EQ(tablesWithForeignBytes, 14);

  DTSDB changed;
  changed.ReadFastdb(m_store.Db());
  for (int i = 0; i < 2; ++i) changed.WriteFastdb(m_store.Db());
  forEachMergedTwin([&](auto example) {
    using Row = decltype(example);
    EXPECT_EQ(m_store.Count<Row>(), 3) << Row::kTableName;
    m_store.ForEachRow<Row>("", [](const Row& row) {
      int mark = 'a';
      Row copy = row;
      ForEachForeign(copy, [&](const void* at, std::size_t size) {
        const std::string expected(size, static_cast<char>(mark++));
        EXPECT_EQ(std::memcmp(at, expected.data(), size), 0) << Row::kTableName;
      });
    });
  });
}

TEST_F(ExchangeModel, NewRowsHaveZerosWhereOtherProgramsKeepTheirs) {
  Fill(m_model, 4, 2);
  m_model.WriteFastdb(m_store.Db());
  ForEachRowClass([this]<class Row> {
    m_store.ForEachRow<Row>("", [](const Row& row) {
      Row copy = row;
      ForEachForeign(copy, [](const void* at, std::size_t size) {
        EXPECT_EQ(std::memcmp(at, std::string(size, '\0').data(), size), 0) << Row::kTableName;
      });
    });
  });
}

TEST_F(ExchangeModel, LogIsWrittenAndNotReadBack) {
  TPL row(0);
  row.event = QStringLiteral("BS");
  m_model.m_tplTable->Add(row);
  m_model.WriteFastdb(m_store.Db());
  EXPECT_EQ(m_store.Count<tpl>(), 1);
  m_model.m_tplTable->GetPh(0).event = QStringLiteral("kept");
  m_model.ReadFastdb(m_store.Db());
  ASSERT_EQ(m_model.m_tplTable->GetCount(), 1);
  EXPECT_EQ(m_model.m_tplTable->GetPh(0).event, QStringLiteral("kept"));
}

TEST_F(ExchangeModel, LinksComeBackAsStored) {
  CO co(QStringLiteral("C"));
  co.r_co_dv = 17;
  m_model.m_coTable->Add(co);
  m_model.WriteFastdb(m_store.Db());
  m_model.ReadFastdb(m_store.Db());
  EXPECT_EQ((*m_model.m_coTable)[0].r_co_dv, 17);
}

TEST_F(ExchangeModel, SingleWritersLeaveTheCommitToTheirCaller) {
  m_model.m_coTable->Add(CO(QStringLiteral("C")));
  EXPECT_TRUE(m_model.WriteCOToFastdb(m_store.Db()));
  EXPECT_EQ(m_store.Count<co>(), 1);
  m_store.Db()->rollback();
  EXPECT_EQ(m_store.Count<co>(), 0);
}

TEST_F(ExchangeModel, WritingAllTablesCommits) {
  Fill(m_model, 5, 2);
  EXPECT_TRUE(m_model.WriteFastdb(m_store.Db()));
  m_store.Db()->rollback();
  ExpectStored(m_store, m_model, false);
}

TEST_F(ExchangeModel, ReadingAllTablesCommitsWhatWentBefore) {
  m_store.Insert(co());
  EXPECT_TRUE(m_model.ReadFastdb(m_store.Db()));
  m_store.Db()->rollback();
  EXPECT_EQ(m_store.Count<co>(), 1);
}

TEST_F(ExchangeModel, WithoutADatabaseThereAreWarningsAndNoTableChanges) {
  m_model.m_coTable->Add(CO(QStringLiteral("C")));
  const MessageCatcher catcher;
  EXPECT_TRUE(m_model.ReadFastdb(nullptr));
  EXPECT_TRUE(m_model.WriteFastdb(nullptr));
  EXPECT_TRUE(m_model.ReadCOFromFastdb(nullptr));
  EXPECT_TRUE(m_model.WriteCOToFastdb(nullptr));
  EXPECT_EQ(m_model.m_coTable->GetCount(), 1);
  ASSERT_EQ(MessageCatcher::Lines().size(), 4);
  for (const QString& line : MessageCatcher::Lines()) {
    EXPECT_TRUE(line.startsWith(QLatin1String("ASSERT: \"db != NULL\" in exchange ("))) << line.toStdString();
  }
}

TEST_F(ExchangeModel, TwoDatabasesInOneProcessAreApart) {
  RealtimeStore other;
  m_model.m_coTable->Add(CO(QStringLiteral("C")));
  m_model.WriteFastdb(m_store.Db());
  EXPECT_EQ(m_store.Count<co>(), 1);
  EXPECT_EQ(other.Count<co>(), 0);
}

}  // namespace
}  // namespace dtsdb::test
