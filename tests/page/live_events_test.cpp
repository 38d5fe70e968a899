// Events on their way to several viewers, some of which are slow.
#include "page/event_hub.h"

#include <gtest/gtest.h>

#include <thread>

namespace dtsdb::page {
namespace {

using std::chrono::milliseconds;

std::string Next(EventStream& stream) {
  const EventText event = stream.Take(milliseconds(0));
  return event ? *event : "";
}

TEST(EventHub, EachStreamGetsEachEventInOrder) {
  EventHub hub(3);
  const auto a = hub.Open();
  const auto b = hub.Open();
  hub.Send(MakeEvent("commit", "1"), nullptr);
  hub.Send(MakeEvent("commit", "2"), nullptr);
  for (const auto& stream : {a, b}) {
    EXPECT_EQ(Next(*stream), "event: commit\ndata: 1\n\n");
    EXPECT_EQ(Next(*stream), "event: commit\ndata: 2\n\n");
    EXPECT_EQ(Next(*stream), "");
  }
}

TEST(EventHub, StreamBeginsWithTheGreeting) {
  EventHub hub(1);
  hub.Greet({MakeEvent("hello", "7")});
  EXPECT_EQ(Next(*hub.Open()), "event: hello\ndata: 7\n\n");
}

TEST(EventHub, SlowViewerGoesOnFromTheNewest) {
  EventHub hub(2);
  const auto slow = hub.Open();
  const EventText goOn = MakeEvent("hello", "newest");
  for (std::size_t i = 0; i <= EventStream::kMostWaiting; ++i) hub.Send(MakeEvent("commit", "x"), goOn);
  EXPECT_EQ(Next(*slow), *goOn);
  EXPECT_EQ(Next(*slow), "");
}

TEST(EventHub, OpensNoMoreStreamsThanAllowed) {
  EventHub hub(2);
  auto a = hub.Open();
  const auto b = hub.Open();
  EXPECT_EQ(hub.Open(), nullptr);
  a.reset();
  EXPECT_NE(hub.Open(), nullptr) << "the place of one that has gone";
}

TEST(EventHub, EndWakesWhoWaits) {
  EventHub hub(1);
  const auto stream = hub.Open();
  std::thread ender([&] { hub.End(); });
  EXPECT_EQ(stream->Take(milliseconds(60000)), nullptr);
  ender.join();
  EXPECT_TRUE(stream->HasEnded());
  EXPECT_EQ(hub.Open(), nullptr);
}

}  // namespace
}  // namespace dtsdb::page
