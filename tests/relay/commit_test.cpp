#include "relay/commit.h"

#include <gtest/gtest.h>

#include <random>

#include "relay/copy_note.h"
#include "relay/message.h"

namespace dtsdb::relay {
namespace {

Commit SampleCommit() {
  Commit commit;
  commit.time = 1'700'000'000'123'456;
  commit.after = {17, 18};
  TableChange first{"ld", 99, {{3, "key"}}, {{4, "row four"}, {6, ""}}, {{5, "row five"}}};
  TableChange second{"cb", 98, {}, {}, {{1, "row one"}}};
  commit.tables = {first, second};
  return commit;
}

Message SampleMessage() {
  Message message;
  message.kind = MessageKind::kSnapshot;
  message.epoch = 0x0123456789ABCDEF;
  message.number = 7;
  message.part = 1;
  message.parts = 3;
  message.link = 11;
  message.body = "the body";
  return message;
}

TEST(RelayCommit, ComesBackAsItWas) {
  const std::string bytes = EncodeCommit(SampleCommit());
  const auto commit = DecodeCommit(bytes);
  ASSERT_TRUE(commit);
  EXPECT_EQ(commit->time, SampleCommit().time);
  EXPECT_EQ(commit->after, SampleCommit().after);
  EXPECT_EQ(commit->RowCount(), 5U);
  ASSERT_EQ(commit->tables.size(), 2U);
  EXPECT_EQ(commit->tables[0].table, "ld");
  EXPECT_EQ(commit->tables[0].fingerprint, 99U);
  EXPECT_EQ(commit->tables[0].updated[1].number, 6U);
  EXPECT_EQ(commit->tables[1].inserted[0].bytes, "row one");
  EXPECT_EQ(EncodeCommit(*commit), bytes);
  EXPECT_EQ(DecodeStateHash(bytes), SampleCommit().after);
}

TEST(RelayCommit, HasTheDocumentedBytes) {
  Commit commit;
  commit.time = 0x0102;
  commit.after = {3, 4};
  commit.tables = {{"t", 5, {}, {}, {{6, "ab"}}}};
  const std::string expected(
      "\x02\x01\0\0\0\0\0\0"
      "\x03\0\0\0\0\0\0\0\x04\0\0\0\0\0\0\0"
      "\x01\0"
      "\x01t\x05\0\0\0\0\0\0\0"
      "\0\0\0\0\0\0\0\0\x01\0\0\0"
      "\x06\0\0\0\0\0\0\0\x02\0\0\0"
      "ab",
      62);
  EXPECT_EQ(EncodeCommit(commit), expected);
}

TEST(RelayCommit, IsRefusedWhenCutOffOrTooLong) {
  const std::string bytes = EncodeCommit(SampleCommit());
  for (std::size_t size = 0; size < bytes.size(); ++size) EXPECT_FALSE(DecodeCommit(bytes.substr(0, size))) << size;
  EXPECT_FALSE(DecodeCommit(bytes + '\0'));
}

TEST(RelayCommit, IsRefusedWithATableTwiceOrRowsOutOfOrder) {
  Commit twice = SampleCommit();
  twice.tables[1].table = "ld";
  EXPECT_FALSE(DecodeCommit(EncodeCommit(twice)));
  Commit disordered = SampleCommit();
  std::swap(disordered.tables[0].updated[0], disordered.tables[0].updated[1]);
  EXPECT_FALSE(DecodeCommit(EncodeCommit(disordered)));
  Commit withoutNumber = SampleCommit();
  withoutNumber.tables[0].removed[0].number = 0;
  EXPECT_FALSE(DecodeCommit(EncodeCommit(withoutNumber)));
}

TEST(RelayCommit, TakesWhateverBytesWithoutReadingBeyondThem) {
  std::mt19937 random(1);
  const std::string good = EncodeCommit(SampleCommit());
  for (int i = 0; i < 20000; ++i) {
    std::string bytes = good;
    for (unsigned changes = 1 + random() % 4; changes > 0; --changes) {
      bytes[random() % bytes.size()] = static_cast<char>(random());
    }
    const auto commit = DecodeCommit(bytes);
    EXPECT_EQ(commit ? EncodeCommit(*commit) : bytes, bytes);
  }
}

TEST(RelayMessage, ComesBackAsItWas) {
  const std::string bytes = EncodeMessage(SampleMessage());
  EXPECT_EQ(bytes.size(), kHeadSize + 8);
  const auto message = DecodeMessage(bytes);
  ASSERT_TRUE(message);
  EXPECT_EQ(message->kind, MessageKind::kSnapshot);
  EXPECT_EQ(message->epoch, SampleMessage().epoch);
  EXPECT_EQ(message->number, 7U);
  EXPECT_EQ(message->part, 1U);
  EXPECT_EQ(message->parts, 3U);
  EXPECT_EQ(message->link, 11U);
  EXPECT_EQ(message->body, "the body");
  EXPECT_FALSE(message->IsLastPart());
}

TEST(RelayMessage, IsRefusedWithAnyBitChanged) {
  const std::string good = EncodeMessage(SampleMessage());
  for (std::size_t bit = 0; bit < 8 * good.size(); ++bit) {
    std::string bytes = good;
    bytes[bit / 8] = static_cast<char>(bytes[bit / 8] ^ (1 << (bit % 8)));
    EXPECT_FALSE(DecodeMessage(bytes)) << "bit " << bit;
  }
}

TEST(RelayMessage, IsRefusedWhenCutOffOrTooLong) {
  const std::string good = EncodeMessage(SampleMessage());
  for (std::size_t size = 0; size < good.size(); ++size) EXPECT_FALSE(DecodeMessage(good.substr(0, size)));
  EXPECT_FALSE(DecodeMessage(good + "x"));
}

TEST(RelayMessage, IsRefusedBeyondItsLongestLength) {
  const std::string body(kMostMessage - kHeadSize + 1, 'x');
  Message message = SampleMessage();
  message.body = std::string_view(body).substr(1);
  EXPECT_TRUE(DecodeMessage(EncodeMessage(message)));
  message.body = body;
  EXPECT_FALSE(DecodeMessage(EncodeMessage(message)));
}

TEST(RelayMessage, IsRefusedWithNumbersOutOfRangeAndAGoodChecksum) {
  Message message = SampleMessage();
  message.part = 3;
  EXPECT_FALSE(DecodeMessage(EncodeMessage(message)));
  message = SampleMessage();
  message.parts = 0;
  EXPECT_FALSE(DecodeMessage(EncodeMessage(message)));
  message = SampleMessage();
  message.epoch = 0;
  EXPECT_FALSE(DecodeMessage(EncodeMessage(message)));
  message = SampleMessage();
  message.kind = static_cast<MessageKind>(9);
  EXPECT_FALSE(DecodeMessage(EncodeMessage(message)));
  message = SampleMessage();
  message.kind = MessageKind::kCommit;
  message.link = kMostCommit + 1;
  EXPECT_FALSE(DecodeMessage(EncodeMessage(message)));
}

TEST(RelayMessage, PartsMakeTheWholeAgain) {
  const std::string payload(1000, 'x');
  Message head = SampleMessage();
  head.kind = MessageKind::kCommit;
  const auto parts = EncodeParts(head, payload, kHeadSize + 300);
  ASSERT_EQ(parts.size(), 4U);
  std::string whole;
  for (const std::string& part : parts) {
    const auto message = DecodeMessage(part);
    ASSERT_TRUE(message);
    EXPECT_LE(part.size(), kHeadSize + 300);
    EXPECT_EQ(message->link, payload.size());
    whole.append(message->body);
  }
  EXPECT_EQ(whole, payload);
  EXPECT_EQ(EncodeParts(head, "", 4096).size(), 1U);
}

TEST(RelayNote, ComesBackAsItWas) {
  const CopyNote note{0xABCDEF, 12, 13, {14, 15}, 16, 17, "nats://a, nats://b grid"};
  const auto read = DecodeNote(EncodeNote(note));
  ASSERT_TRUE(read);
  EXPECT_TRUE(read->IsAt(note));
  EXPECT_EQ(read->changed, 16);
  EXPECT_EQ(read->asOf, 17);
  EXPECT_EQ(read->source, note.source);
}

TEST(RelayNote, IsRefusedWhenItIsSomethingElse) {
  EXPECT_FALSE(DecodeNote(""));
  EXPECT_FALSE(DecodeNote("relay 2 1 2 3 4 5 6 7 source"));
  EXPECT_FALSE(DecodeNote("relay 1 1 2 3"));
}

}  // namespace
}  // namespace dtsdb::relay
