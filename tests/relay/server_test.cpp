#include <gtest/gtest.h>

#include <QTemporaryDir>
#include <algorithm>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <random>
#include <string>
#include <thread>
#include <vector>

#include "relay/nats_stream.h"
#include "relay/relayed_database.h"
#include "tests/relay/relayed_stores.h"
#include "tests/support/nats_broker.h"
#include "tests/support/places.h"

namespace dtsdb::relay::test {
namespace {

using dtsdb::test::NatsBroker;
using dtsdb::test::Service;
using std::chrono::milliseconds;
using std::chrono::steady_clock;

/// A server, a publisher and followers on this machine.
class Installation {
 public:
  explicit Installation(int followers) {
    const QString url = QString::fromStdString(m_broker.Url());
    const QString program = QString::fromUtf8(dtsdb::test::TestProgram());
    const auto model = [this](const QString& name) { return QStringLiteral("rtdb:") + m_folder.filePath(name); };
    publisher = std::make_unique<Service>(
        program, QStringList{QStringLiteral("relay"), QStringLiteral("publish"), model(QStringLiteral("grid")),
                             QStringLiteral("--to"), url, QStringLiteral("--keep"), QStringLiteral("4")});
    for (int i = 0; i < followers; ++i) {
      m_followers.push_back(std::make_unique<Service>(
          program,
          QStringList{QStringLiteral("relay"), QStringLiteral("follow"), url, model(QStringLiteral("copy%1").arg(i)),
                      QStringLiteral("--name"), QStringLiteral("grid")}));
    }
    tools::RealtimeDatabase made(Original(), dbDatabase::dbAllAccess);
  }

  std::string Original() const { return m_folder.filePath(QStringLiteral("grid")).toStdString(); }
  std::string CopyName(std::size_t i) const { return m_folder.filePath(QStringLiteral("copy%1").arg(i)).toStdString(); }
  std::vector<Service*> All() {
    std::vector<Service*> all{&m_broker.Program(), publisher.get()};
    for (const auto& follower : m_followers) all.push_back(follower.get());
    return all;
  }
  void StartAll() {
    for (Service* service : All()) {
      if (!service->IsRunning()) service->Start();
    }
  }

  std::unique_ptr<Service> publisher;

 private:
  QTemporaryDir m_folder{QStringLiteral("/tmp/relay-server-XXXXXX")};
  NatsBroker m_broker;
  std::vector<std::unique_ptr<Service>> m_followers;
};

bool IsCopyOf(const std::string& original, const std::string& copy) {
  try {
    return NoteOf(copy) && ContentsOf(copy) == original;
  } catch (const std::exception&) {
    return false;  // it isn't there yet
  }
}

/// Waits until the copy has what the original has; false when it doesn't come to that within two minutes.
bool BecomesCopyOf(const std::string& original, const std::string& copy) {
  const std::string contents = ContentsOf(original);
  const auto end = steady_clock::now() + std::chrono::minutes(2);
  while (!IsCopyOf(contents, copy)) {
    if (steady_clock::now() > end) return false;
    std::this_thread::sleep_for(milliseconds(50));
  }
  return true;
}

/// How long programs are killed: a few seconds, or as many minutes as the variable sets.
milliseconds TimeOfKilling() {
  const char* const minutes = std::getenv("DTSDB_RELAY_MINUTES");
  return minutes == nullptr ? milliseconds(8000) : milliseconds(60000 * std::max(1, std::atoi(minutes)));
}

/// What the long test has done to the programs.
struct Blows {
  int kills = 0;
  int stops = 0;
  int pauses = 0;
};

void Strike(Service& service, std::mt19937& random, Blows& blows) {
  switch (random() % 3) {
    case 0:
      ++blows.kills;
      return service.Kill();
    case 1:
      ++blows.stops;
      return service.Stop();
    default:
      ++blows.pauses;
      service.Signal(SIGSTOP);
      std::this_thread::sleep_for(milliseconds(random() % 300));
      service.Signal(SIGCONT);
  }
}

TEST(RelayServer, AllCopiesAreTheSameAfterKillsOfAllPrograms) {
  Installation installation(3);
  installation.StartAll();
  std::mt19937 random(std::random_device{}());
  RandomChanges changes(std::random_device{}());
  Blows blows;
  int commits = 0;
  {
    tools::RealtimeDatabase original(installation.Original(), dbDatabase::dbAllAccess);
    const auto end = steady_clock::now() + TimeOfKilling();
    auto strike = steady_clock::now() + milliseconds(500);
    while (steady_clock::now() < end) {
      changes.Commit(*original.Db(), 10);
      ++commits;
      std::this_thread::sleep_for(milliseconds(random() % 20));
      if (steady_clock::now() < strike) continue;
      const std::vector<Service*> all = installation.All();
      Strike(*all[random() % all.size()], random, blows);
      if (random() % 2 == 0) installation.StartAll();
      strike = steady_clock::now() + milliseconds(100 + random() % 900);
    }
    original.Check();
  }
  installation.StartAll();
  for (std::size_t i = 0; i < 3; ++i) {
    EXPECT_TRUE(BecomesCopyOf(installation.Original(), installation.CopyName(i))) << "copy " << i;
  }
  std::printf("%d commits; %d kills, %d stops, %d pauses\n", commits, blows.kills, blows.stops, blows.pauses);
}

/// Reports how long a commit takes to the copy. Nothing hangs on it.
TEST(RelayServer, ReportsItsLatency) {
  Installation installation(1);
  installation.StartAll();
  tools::RealtimeDatabase original(installation.Original(), dbDatabase::dbAllAccess);
  ld row;
  row.id = "measured";
  original.Db()->insert(row);
  original.Db()->commit();
  ASSERT_TRUE(BecomesCopyOf(installation.Original(), installation.CopyName(0)));
  tools::RealtimeDatabase copy(installation.CopyName(0), dbDatabase::dbReadOnly);
  std::vector<double> taken;
  for (int i = 1; i <= 200; ++i) {
    {
      dbCursor<ld> cursor(original.Db(), dbCursorForUpdate);
      ASSERT_EQ(cursor.select("id = 'measured'"), 1);
      cursor->p = static_cast<float>(i);
      cursor.update();
    }
    original.Db()->commit();
    const auto begin = steady_clock::now();
    float seen = 0;
    while (seen != static_cast<float>(i) && steady_clock::now() - begin < std::chrono::seconds(60)) {
      dbCursor<ld> cursor(copy.Db());
      if (cursor.select("id = 'measured'") == 1) seen = cursor->p;
      copy.Db()->commit();
      std::this_thread::sleep_for(std::chrono::microseconds(100));
    }
    ASSERT_EQ(seen, static_cast<float>(i));
    taken.push_back(std::chrono::duration<double, std::milli>(steady_clock::now() - begin).count());
    std::this_thread::sleep_for(milliseconds(i % 13));
  }
  std::sort(taken.begin(), taken.end());
  std::printf("commit to copy: median %.1f ms, 99 %% %.1f ms, longest %.1f ms\n", taken[100], taken[197], taken[199]);
}

TEST(RelayServer, KeepsAStreamAsTheMemoryDoes) {
  NatsBroker broker;
  broker.Start();
  NatsStreams streams(NatsServer{broker.Url(), "", "", "", ""}, "kept");
  streams.Make(std::size_t{4} << 20);
  streams.Make(std::size_t{8} << 20);
  Stream& stream = streams.Commits();
  EXPECT_EQ(stream.Range().last, 0U);
  stream.Append("one", 0);
  stream.Append("two", 1);
  const auto expectMoved = [&stream](std::uint64_t last) {
    try {
      stream.Append("three", last);
      ADD_FAILURE() << "stored behind " << last;
    } catch (const StreamError& error) {
      EXPECT_EQ(error.What(), StreamError::Kind::kMoved) << error.what();
    }
  };
  expectMoved(1);
  EXPECT_EQ(stream.Range().last, 2U);
  EXPECT_EQ(stream.Read(1), "one");
  EXPECT_EQ(stream.Read(2), "two");
  EXPECT_FALSE(stream.Read(3));
  stream.DiscardBelow(2);
  EXPECT_FALSE(stream.Read(1));
  EXPECT_EQ(stream.Range().first, 2U);
  stream.SendPulse("pulse");
  stream.Wait(milliseconds(5000));
  for (int i = 0; i < 100; ++i) stream.Wait(milliseconds(1));
  EXPECT_EQ(stream.TakePulse(), "pulse");
  const std::string large(stream.MostBytes(), 'x');
  stream.Append(large, 2);
  EXPECT_TRUE(stream.Read(3) == large);
}

}  // namespace
}  // namespace dtsdb::relay::test
