// What the validation reads from the realtime database and what it writes there.

#include <gtest/gtest.h>

#include "tests/support/messages.h"
#include "tests/support/random_records.h"
#include "tests/support/realtime_store.h"
#include "tests/support/temporary_directory.h"
#include "validation/nmd.h"

namespace dtsdb::test {
namespace {

class ValidationExchange : public ::testing::Test {
 protected:
  TemporaryDirectory m_directory;  // of the log
  RealtimeStore m_store;
  DTSDB m_model;
  NMD m_nmd{&m_model};
};

TEST_F(ValidationExchange, ReadsTheSixteenInputTables) {
  DTSDB stored;
  RandomRecords(1).FillModel(stored, 2);
  stored.WriteFastdb(m_store.Db());
  EXPECT_TRUE(m_nmd.ReadFastdb(m_store.Db()));
  EXPECT_EQ(FilledTables(m_model).join(QLatin1Char(' ')),
            QStringLiteral("ANALOG BUS CB CO CP DLN DV GLOBAL KV LD LN ST STATUS UN XF ZBR"));
  ExpectEqualTables(*stored.m_lnTable, *m_model.m_lnTable);
}

TEST_F(ValidationExchange, WritesAllButTheMeasurementsAndTheTopologysTables) {
  RandomRecords(2).FillModel(m_model, 2);
  EXPECT_TRUE(m_nmd.WriteFastdb(m_store.Db()));
  EXPECT_EQ(m_store.FilledTables().join(QLatin1Char(' ')),
            QStringLiteral("BUS CB CB2 CO CP DLN DLN2 DV GLOBAL KV LD LN LN2 ND R_CO_DV R_DV_DLN R_DV_LN R_DV_ST "
                           "R_KV_BUS R_KV_CB R_KV_CP R_KV_LD R_KV_ND R_KV_UN R_KV_ZBR R_ND_CB2 R_ND_DLN2 R_ND_LN2 "
                           "R_ND_XF2 R_ND_ZBR2 R_ST_KV R_ST_XF ST UN XF XF2 ZBR ZBR2"));
}

TEST_F(ValidationExchange, WritingCommits) {
  m_model.m_coTable->Add(CO(QStringLiteral("C")));
  m_nmd.WriteFastdb(m_store.Db());
  m_store.Db()->rollback();
  EXPECT_EQ(m_store.Count<co>(), 1);
}

TEST_F(ValidationExchange, ReadingEndsTheTransaction) {
  co row;
  row.id = "C";
  m_store.Insert(row);
  m_nmd.ReadFastdb(m_store.Db());
  m_store.Db()->rollback();
  EXPECT_EQ(m_store.Count<co>(), 1);
}

TEST_F(ValidationExchange, WithoutADatabaseThereIsAWarning) {
  const MessageCatcher catcher;
  EXPECT_TRUE(m_nmd.ReadFastdb(nullptr));
  EXPECT_TRUE(m_nmd.WriteFastdb(nullptr));
  EXPECT_EQ(MessageCatcher::Lines().size(), 2);
}

}  // namespace
}  // namespace dtsdb::test
