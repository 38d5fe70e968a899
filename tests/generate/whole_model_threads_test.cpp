// Work on a whole model with several threads: all that it makes is the same as with one.

#include <gtest/gtest.h>

#include <QFile>
#include <random>
#include <string>
#include <vector>

#include "breakerflow/flows.h"
#include "generate/generator.h"
#include "include/log_sink.h"
#include "model/threads.h"
#include "tests/support/realtime_store.h"
#include "tests/support/temporary_directory.h"
#include "topology/tp.h"
#include "validation/nmd.h"

namespace dtsdb::test {
namespace {

/// Damages some records, so that the validation has something to report and to drop.
void Damage(DTSDB& model, unsigned seed) {
  std::mt19937 random(seed);
  const auto someOf = [&]<class T>(tTable<T>& table, auto damage) {
    for (int n = 0; n < 20 && table.GetCount() > 0; ++n) {
      damage(table[static_cast<int>(random() % static_cast<unsigned>(table.GetCount()))]);
    }
  };
  someOf(*model.m_cbTable, [](CB& breaker) { breaker.nd = QString(); });
  someOf(*model.m_cbTable, [](CB& breaker) { breaker.kv = QStringLiteral("nowhere"); });
  someOf(*model.m_ldTable, [](LD& load) { load.nd = QStringLiteral("a node of its own"); });
  someOf(*model.m_unTable, [](UN& unit) { unit.ana_p = QStringLiteral("no measurement"); });
  someOf(*model.m_lnTable, [](LN& line) { line.znd = line.nd; });
  someOf(*model.m_kvTable, [](KV& level) { level.vbase = -1; });
}

/// What the work on one model has made.
struct Made {
  QByteArray object;
  std::string log;
  std::string flows;
  QList<Finding> findings;
  QByteArray stored;
};

/// The log without its stamps, which begin each line and end with the year.
std::string WithoutStamps(const std::string& line) { return line.substr(std::min<std::size_t>(line.size(), 24)); }

QByteArray ObjectFileOf(DTSDB& model) {
  // When it was is no result of the work.
  for (int i = 0; i < model.m_globalTable->GetCount(); ++i) {
    (*model.m_globalTable)[i].check_time = 0;
    (*model.m_globalTable)[i].time = 0;
  }
  const TemporaryDirectory directory;
  EXPECT_TRUE(model.WriteObject(QStringLiteral("model.obj")));
  return directory.Read(QStringLiteral("model.obj"));
}

std::string FlowsOf(const DTSDB& model) {
  std::string text;
  for (const BreakerFlow& flow : ComputeFlows(model, {1e9F}).breakers) {
    text += std::to_string(flow.p) + ' ' + std::to_string(flow.q) + '\n';
  }
  return text;
}

/// All work on the model that `seed` gives. With `damaged` the topology is worked out all the same.
Made WorkOn(unsigned seed, bool damaged, int threads) {
  const int before = ThreadCount();
  SetThreadCount(threads);
  Made made;
  SetLogSink([&made](LogKind, std::string_view bytes) { made.log += WithoutStamps(std::string(bytes)); });
  DTSDB model;
  tools::GenerateUtility(model, {150, seed});
  if (damaged) Damage(model, seed);
  NMD validation(&model);
  EXPECT_TRUE(validation.DetectAll());
  made.findings = validation.Findings();
  (*model.m_globalTable)[0].valid = 1;
  EXPECT_EQ(TP(&model).tpAllnew(), 1);
  made.flows = FlowsOf(model);
  made.object = ObjectFileOf(model);
  RealtimeStore store;
  model.WriteFastdb(store.Db());
  DTSDB back;
  back.ReadFastdb(store.Db());
  made.stored = ObjectFileOf(back);
  SetLogSink({});
  SetThreadCount(before);
  return made;
}

void ExpectSame(const Made& made, const Made& expected) {
  EXPECT_TRUE(made.object == expected.object);
  EXPECT_TRUE(made.stored == expected.stored);
  EXPECT_EQ(made.flows, expected.flows);
  EXPECT_EQ(made.log, expected.log);
  ASSERT_EQ(made.findings.size(), expected.findings.size());
  for (qsizetype i = 0; i < made.findings.size(); ++i) {
    EXPECT_EQ(made.findings[i].text, expected.findings[i].text) << i;
  }
}

TEST(WholeModelThreads, SoundNetworksComeOutTheSame) {
  for (const unsigned seed : {1U, 2U}) {
    const Made alone = WorkOn(seed, false, 1);
    for (const int threads : {2, 4}) ExpectSame(WorkOn(seed, false, threads), alone);
  }
}

TEST(WholeModelThreads, DamagedNetworksComeOutTheSame) {
  for (const unsigned seed : {3U, 4U}) {
    const Made alone = WorkOn(seed, true, 1);
    EXPECT_GT(alone.findings.size(), 50);
    for (const int threads : {2, 4}) ExpectSame(WorkOn(seed, true, threads), alone);
  }
}

}  // namespace
}  // namespace dtsdb::test
