// The URLs of a server, taken apart.

#include "relay/nats_server.h"

#include <gtest/gtest.h>

#include <stdexcept>

namespace dtsdb::relay {
namespace {

std::string WhyNone(const std::string& text) {
  try {
    ParseServerUrls(text);
  } catch (const std::invalid_argument& error) {
    return error.what();
  }
  return "";
}

TEST(ServerUrls, HaveASchemeAHostAndPerhapsAPort) {
  for (const std::string url : {"nats://broker", "tls://broker:4222", "nats://10.0.0.1:1", "nats://[::1]:4222",
                                "nats://[::1]", "nats://a:65535,tls://b"}) {
    EXPECT_EQ(WhyNone(url), "");
    EXPECT_EQ(ParseServerUrls(url).Shown(), url);
    EXPECT_FALSE(ParseServerUrls(url).login);
  }
  for (const std::string url :
       {"", "broker", "http://broker", "nats://", "nats://:4222", "nats://broker:", "nats://a:0", "nats://a:65536",
        "nats://a:1x", "nats://[::1", "nats://[]", "nats://a,", "nats://a,b", "rtdb:copy"}) {
    EXPECT_NE(WhyNone(url).find("is no server; one is written nats://HOST[:PORT]"), std::string::npos) << url;
  }
}

TEST(ServerUrls, AskForTlsWhereOneDoes) {
  EXPECT_FALSE(ParseServerUrls("nats://a,nats://b").isTls);
  EXPECT_TRUE(ParseServerUrls("nats://a,tls://b").isTls);
}

TEST(ServerUrls, GiveTheLoginApart) {
  const ServerUrls parsed = ParseServerUrls("tls://user:se%3Acr%40et%25@a:1,tls://b,tls://user:se%3acr@et%25@c/");
  EXPECT_EQ(parsed.Shown(), "tls://a:1,tls://b,tls://c");
  EXPECT_EQ(parsed.login, (NatsLogin{"user", "se:cr@et%"}));
  EXPECT_EQ(ParseServerUrls("nats://token@a").login, (NatsLogin{"token", {}}));
  EXPECT_EQ(ParseServerUrls("nats://user:@a").login, (NatsLogin{"user", ""}));
}

TEST(ServerUrls, AreReportedWithoutTheLogin) {
  for (const std::string url : {"http://user:secret@a", "nats://user:sec,secret@a", "nats://user:secret@a:x",
                                "nats://user:secret@", "nats://user:secret@a,nats://user:secrets@b",
                                "nats://user:secret%@a", "nats://user:secret%4@a", "nats://user:secret%4g@a"}) {
    const std::string why = WhyNone(url);
    EXPECT_NE(why, "") << url;
    EXPECT_EQ(why.find("sec"), std::string::npos) << why;
  }
}

}  // namespace
}  // namespace dtsdb::relay
