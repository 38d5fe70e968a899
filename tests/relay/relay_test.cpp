#include <gtest/gtest.h>

#include <QTemporaryDir>
#include <memory>
#include <optional>
#include <random>

#include "formats/failure.h"
#include "formats/text_layout.h"
#include "relay/follower.h"
#include "relay/publisher.h"
#include "relay/relayed_database.h"
#include "tests/relay/memory_stream.h"
#include "tests/relay/relayed_stores.h"
#include "tests/support/nasty_identities.h"

namespace dtsdb::relay::test {
namespace {

using std::chrono::milliseconds;

/// The end of a program at some step.
struct Killed {};

/// A database, the streams of its server and a copy, with a publisher and a follower that can end and begin anew.
class RelayPlace {
 public:
  RelayPlace() { Change(1); }

  std::string Original() const { return m_folder.filePath(QStringLiteral("original")).toStdString(); }
  std::string CopyName() const { return m_folder.filePath(QStringLiteral("copy")).toStdString(); }

  /// Commits changes to the original.
  void Change(unsigned most) {
    tools::RealtimeDatabase database(Original(), dbDatabase::dbAllAccess);
    m_changes.Commit(*database.Db(), most);
    database.Check();
  }

  /// The publisher looks; it is begun where there is none.
  Sent Look() {
    if (!m_publisher) {
      m_database.emplace(Original());
      m_publisher = std::make_unique<Publisher>(
          DatabaseImage(CarriedTables()), [this](DatabaseImage& image) { return m_database->Read(image); }, m_commits,
          m_snapshots, Publisher::Options{snapshotEvery, [this] { return ++m_epoch; }});
    }
    return m_publisher->Look();
  }
  void Pulse() { m_publisher->Pulse(); }
  void EndPublisher() {
    m_publisher.reset();
    m_database.reset();
  }

  Followed Step() {
    if (!m_follower) {
      m_copy.emplace(CopyName());
      m_follower = std::make_unique<Follower>(m_copy->Rows(), m_commits, m_snapshots, "here");
    }
    return m_follower->Step(milliseconds(0));
  }
  const CopyNote& Note() const { return *m_follower->Note(); }
  void EndFollower() {
    m_follower.reset();
    m_copy.reset();
  }

  /// Follows until nothing is new. Returns how often each kind of step was made.
  std::map<Followed::Kind, int> CatchUp() {
    std::map<Followed::Kind, int> steps;
    for (int i = 0; i < 10000; ++i) {
      const Followed followed = Step();
      ++steps[followed.kind];
      if (followed.kind == Followed::Kind::kCurrent) return steps;
    }
    ADD_FAILURE() << "the follower doesn't come to an end";
    return steps;
  }

  void ExpectSame() const { EXPECT_TRUE(ContentsOf(Original()) == ContentsOf(CopyName())); }

  KeptMessages commits;
  KeptMessages snapshots;
  std::function<void(bool stored)> step = [](bool) {};
  std::size_t snapshotEvery = 1 << 20;

 private:
  QTemporaryDir m_folder{QStringLiteral("/dev/shm/relay-test-XXXXXX")};
  RandomChanges m_changes{7};
  MemoryStream m_commits{commits, [this](bool stored) { step(stored); }};
  MemoryStream m_snapshots{snapshots, [this](bool stored) { step(stored); }};
  std::uint64_t m_epoch = 0;
  std::optional<PublishedDatabase> m_database;
  std::unique_ptr<Publisher> m_publisher;
  std::optional<KeptCopy> m_copy;
  std::unique_ptr<Follower> m_follower;
};

TEST(Relay, CopiesEachCommitWithNumbersAndOrder) {
  RelayPlace place;
  EXPECT_EQ(place.Look().kind, Sent::Kind::kEpoch);
  EXPECT_EQ(place.CatchUp()[Followed::Kind::kSnapshot], 1);
  for (int i = 1; i <= 50; ++i) {
    place.Change(20);
    const Sent sent = place.Look();
    EXPECT_EQ(sent.kind, Sent::Kind::kCommit);
    EXPECT_EQ(sent.number, static_cast<std::uint64_t>(i));
    EXPECT_EQ(place.CatchUp()[Followed::Kind::kCommit], 1);
    place.ExpectSame();
  }
  EXPECT_EQ(place.Look().kind, Sent::Kind::kNothing);
}

TEST(Relay, CarriesWhateverBytesAnIdentityHas) {
  RelayPlace place;
  place.Look();
  place.CatchUp();
  std::vector<std::string> names = dtsdb::test::NastyIdentities();
  for (const std::string& bytes : dtsdb::test::NoTexts()) names.push_back(bytes);
  {
    tools::RealtimeDatabase database(place.Original(), dbDatabase::dbAllAccess);
    for (const std::string& name : names) {
      ld row;
      row.id = row.nd = name.c_str();
      database.Db()->insert(row);
    }
    database.Db()->commit();
  }
  EXPECT_EQ(place.Look().kind, Sent::Kind::kCommit);
  EXPECT_EQ(place.CatchUp()[Followed::Kind::kCommit], 1);
  place.ExpectSame();
  tools::RealtimeDatabase copy(place.CopyName(), dbDatabase::dbReadOnly);
  dbCursor<ld> cursor(copy.Db(), dbCursorViewOnly);
  for (const std::string& name : names) {
    char const* const id = name.c_str();
    dbQuery query;
    query = "id =", id;
    EXPECT_EQ(cursor.select(query), 1) << tools::OneLine(name);
  }
}

TEST(Relay, SendsSeveralCommitsBetweenTwoLooksAsOne) {
  RelayPlace place;
  place.Look();
  place.CatchUp();
  for (int i = 0; i < 5; ++i) place.Change(5);
  EXPECT_EQ(place.Look().number, 1U);
  EXPECT_EQ(place.CatchUp()[Followed::Kind::kCommit], 1);
  place.ExpectSame();
}

TEST(Relay, AFollowerThatWasAwayCatchesUpFromTheStream) {
  RelayPlace place;
  place.Look();
  place.CatchUp();
  place.EndFollower();
  for (int i = 0; i < 10; ++i) {
    place.Change(5);
    place.Look();
  }
  auto steps = place.CatchUp();
  EXPECT_EQ(steps[Followed::Kind::kCommit], 10);
  EXPECT_EQ(steps[Followed::Kind::kSnapshot], 0);
  place.ExpectSame();
}

TEST(Relay, AGapLeadsToASnapshot) {
  RelayPlace place;
  place.snapshotEvery = 2000;
  place.Look();
  place.CatchUp();
  for (int i = 0; i < 60; ++i) {
    place.Change(3);
    place.Look();
    place.Look();
  }
  ASSERT_FALSE(place.commits.messages.empty());
  auto& kept = place.commits.messages;
  kept.erase(kept.begin(), std::prev(kept.end(), 10));
  auto steps = place.CatchUp();
  EXPECT_EQ(steps[Followed::Kind::kLost], 1);
  EXPECT_EQ(steps[Followed::Kind::kSnapshot], 1);
  place.ExpectSame();
}

TEST(Relay, RefusesCommitsThatComeTwiceOrInAnotherOrder) {
  RelayPlace place;
  place.Look();
  place.CatchUp();
  for (int i = 0; i < 2; ++i) {
    place.Change(1);
    place.Look();
  }
  ASSERT_EQ(place.commits.last, 3U);
  std::swap(place.commits.messages[2], place.commits.messages[3]);
  EXPECT_EQ(place.Step().kind, Followed::Kind::kLost);
  std::swap(place.commits.messages[2], place.commits.messages[3]);
  EXPECT_EQ(place.Step().kind, Followed::Kind::kSnapshot);
  EXPECT_EQ(place.Step().kind, Followed::Kind::kCommit);
  place.commits.messages[3] = place.commits.messages[2];
  EXPECT_EQ(place.Step().why, "a commit is missing");
}

TEST(Relay, RefusesHostileMessages) {
  RelayPlace place;
  place.Look();
  place.CatchUp();
  place.Change(1);
  place.Look();
  std::string& bytes = place.commits.messages[2];
  bytes[bytes.size() / 2] ^= 1;
  EXPECT_EQ(place.Step().why, "the stream has something else than a commit");
  EXPECT_EQ(place.Note().number, 0U);
}

TEST(Relay, APublisherGoesOnWhereItWas) {
  RelayPlace place;
  place.Look();
  place.Change(5);
  place.Look();
  place.EndPublisher();
  const Sent sent = place.Look();
  EXPECT_EQ(sent.kind, Sent::Kind::kGoesOn);
  EXPECT_EQ(sent.number, 1U);
  place.Change(5);
  EXPECT_EQ(place.Look().number, 2U);
  auto steps = place.CatchUp();
  EXPECT_EQ(steps[Followed::Kind::kLost], 0);
  place.ExpectSame();
}

TEST(Relay, APublisherThatHasMissedCommitsBeginsAnEpoch) {
  RelayPlace place;
  place.Look();
  place.CatchUp();
  place.EndPublisher();
  place.Change(5);
  EXPECT_EQ(place.Look().kind, Sent::Kind::kEpoch);
  auto steps = place.CatchUp();
  EXPECT_EQ(steps[Followed::Kind::kLost], 1);
  EXPECT_EQ(steps[Followed::Kind::kSnapshot], 1);
  place.ExpectSame();
}

TEST(Relay, AStreamThatWasLostIsFilledAnew) {
  RelayPlace place;
  place.Look();
  place.Change(5);
  place.Look();
  place.CatchUp();
  place.commits = {};
  place.snapshots = {};
  place.Change(5);
  EXPECT_THROW(place.Look(), StreamError);
  EXPECT_EQ(place.Look().kind, Sent::Kind::kEpoch);
  place.EndFollower();
  place.CatchUp();
  place.ExpectSame();
}

TEST(Relay, ASecondPublisherEndsTheFirst) {
  RelayPlace place;
  place.Look();
  place.commits.messages[++place.commits.last] = "of another";
  place.Change(5);
  try {
    place.Look();
    ADD_FAILURE() << "the first goes on";
  } catch (const StreamError& error) {
    EXPECT_EQ(error.What(), StreamError::Kind::kMoved);
  }
}

TEST(Relay, ASnapshotChangesOnlyRowsThatDiffer) {
  RelayPlace place;
  place.Change(200);
  place.Look();
  place.CatchUp();
  place.EndFollower();
  tools::RealtimeDatabase copy(place.CopyName(), dbDatabase::dbReadOnly);
  dbTableDescriptor* const loads = copy.Db()->lookupTable(&ld::dbDescriptor);
  const std::uint64_t before = copy.Db()->changeNumber(loads);
  copy.Db()->commit();
  {
    tools::RealtimeDatabase original(place.Original(), dbDatabase::dbAllAccess);
    cb row;
    row.id = "a breaker";
    original.Db()->insert(row);
    original.Db()->commit();
  }
  place.EndPublisher();
  EXPECT_EQ(place.Look().kind, Sent::Kind::kEpoch);
  EXPECT_EQ(place.CatchUp()[Followed::Kind::kSnapshot], 1);
  EXPECT_EQ(copy.Db()->changeNumber(loads), before);
  place.ExpectSame();
}

TEST(Relay, ACommitLargerThanASnapshotBeginsAnEpoch) {
  RelayPlace place;
  place.snapshotEvery = 1000;
  place.Look();
  place.CatchUp();
  place.Change(1000);
  EXPECT_EQ(place.Look().kind, Sent::Kind::kEpoch);
  place.CatchUp();
  place.ExpectSame();
}

TEST(Relay, OldSnapshotsAreLetGoOf) {
  RelayPlace place;
  for (int i = 0; i < 10; ++i) {
    place.Change(5);
    place.EndPublisher();
    EXPECT_EQ(place.Look().kind, Sent::Kind::kEpoch);
  }
  EXPECT_EQ(place.snapshots.messages.size(), 4U);
  EXPECT_EQ(place.snapshots.last, 20U);
}

TEST(Relay, APulseKeepsTheCopyYoung) {
  RelayPlace place;
  place.Look();
  place.CatchUp();
  const std::int64_t before = place.Note().asOf;
  place.Look();
  Message pulse;
  pulse.kind = MessageKind::kPulse;
  pulse.epoch = place.Note().epoch;
  pulse.number = place.Note().number;
  const std::string later = EncodeTime(before + 5'000'000);
  pulse.body = later;
  place.commits.pulse = EncodeMessage(pulse);
  place.Step();
  EXPECT_EQ(place.Note().asOf, before + 5'000'000);
  pulse.number = 77;
  place.commits.pulse = EncodeMessage(pulse);
  place.Step();
  EXPECT_EQ(place.Note().asOf, before + 5'000'000);
  place.Pulse();
  EXPECT_TRUE(place.commits.pulse);
  place.EndFollower();
  EXPECT_EQ(NoteOf(place.CopyName())->asOf, before + 5'000'000);
}

TEST(Relay, ADatabaseWithRowsOfItsOwnDoesNotBecomeACopy) {
  RelayPlace place;
  try {
    const KeptCopy copy(place.Original());
    ADD_FAILURE() << "it was taken";
  } catch (const tools::Failure& failure) {
    EXPECT_NE(std::string(failure.what()).find("a database of its own"), std::string::npos);
  }
}

TEST(Relay, ACopyThatSomebodyChangedIsReplaced) {
  RelayPlace place;
  place.Change(20);
  place.Look();
  place.CatchUp();
  place.EndFollower();
  {
    tools::RealtimeDatabase copy(place.CopyName(), dbDatabase::dbCopyAccess);
    dbCursor<ld> cursor(copy.Db(), dbCursorForUpdate);
    ASSERT_GT(cursor.select(), 0);
    do {
      cursor->p = 12345;
      cursor.update();
    } while (cursor.next() != nullptr);
    copy.Db()->commit();
  }
  {
    tools::RealtimeDatabase original(place.Original(), dbDatabase::dbAllAccess);
    dbCursor<ld> cursor(original.Db(), dbCursorForUpdate);
    cursor.select();
    cursor.remove();
    original.Db()->commit();
  }
  place.Look();
  auto steps = place.CatchUp();
  EXPECT_EQ(steps[Followed::Kind::kLost], 1);
  place.ExpectSame();
}

TEST(Relay, AReleasedCopyIsADatabaseOfItsOwn) {
  RelayPlace place;
  place.Look();
  place.CatchUp();
  place.EndFollower();
  EXPECT_TRUE(ReleaseCopy(place.CopyName()));
  EXPECT_FALSE(NoteOf(place.CopyName()));
  EXPECT_FALSE(ReleaseCopy(place.CopyName()));
}

/// Kills and failures of the server at random steps of a hundred rounds each; what is left is always a state that was
/// committed, and in the end the same one.
TEST(Relay, SurvivesKillsAtRandomSteps) {
  for (std::uint32_t seed = 1; seed <= 4; ++seed) {
    RelayPlace place;
    place.snapshotEvery = 3000;
    std::mt19937 random(seed);
    place.step = [&random](bool) {
      if (random() % 12 == 0) throw Killed();
      if (random() % 12 == 0) throw StreamError(StreamError::Kind::kUnreachable, "no answer");
    };
    std::set<std::string> states{ContentsOf(place.Original())};
    for (int round = 0; round < 60; ++round) {
      if (random() % 2 == 0) place.Change(8);
      states.insert(ContentsOf(place.Original()));
      try {
        place.Look();
      } catch (const Killed&) {
        place.EndPublisher();
      } catch (const StreamError& error) {
        EXPECT_EQ(error.What(), StreamError::Kind::kUnreachable) << error.what();
      }
      try {
        for (int i = 0; i < 3; ++i) place.Step();
      } catch (const Killed&) {
        place.EndFollower();
        EXPECT_TRUE(!NoteOf(place.CopyName()) || states.contains(ContentsOf(place.CopyName())));
      } catch (const StreamError&) {
      }
    }
    place.step = [](bool) {};
    place.EndPublisher();
    place.Look();
    place.CatchUp();
    place.ExpectSame();
  }
}

}  // namespace
}  // namespace dtsdb::relay::test
