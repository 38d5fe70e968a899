// Who is admitted to the page.
#include <gtest/gtest.h>

#include "page/access.h"

namespace dtsdb::page {
namespace {

TEST(Access, RandomTokensAreGoodAndDiffer) {
  const std::string token = RandomToken();
  EXPECT_EQ(token.size(), 32U);
  EXPECT_EQ(WhyNoToken(token), "");
  EXPECT_NE(token, RandomToken());
}

TEST(Access, RefusesTokensThatAreEasilyGuessedOrNoWords) {
  EXPECT_EQ(WhyNoToken("short"), "a token has 16 to 128 characters");
  EXPECT_EQ(WhyNoToken(std::string(129, 'a')), "a token has 16 to 128 characters");
  EXPECT_EQ(WhyNoToken("0123456789abcde/"), "a token has letters, digits, '-' and '_' only");
  EXPECT_EQ(WhyNoToken("0123456789abc-D_"), "");
}

TEST(Access, TakesTheTokenAlone) {
  const Access access("0123456789abcdef", "127.0.0.1");
  EXPECT_TRUE(access.IsToken("0123456789abcdef"));
  EXPECT_FALSE(access.IsToken("0123456789abcdeF"));
  EXPECT_FALSE(access.IsToken("0123456789abcde"));
  EXPECT_FALSE(access.IsToken(""));
}

TEST(Access, HostIsAnAddressInDigitsOrTheServersName) {
  const Access access("0123456789abcdef", "grid.example");
  for (const char* host : {"127.0.0.1", "127.0.0.1:8017", "[::1]:8017", "[::1]", "10.1.2.3:80", "localhost:9",
                           "LocalHost", "grid.example:8017", "Grid.Example"}) {
    EXPECT_TRUE(access.IsOwnHost(host)) << host;
  }
  for (const char* host : {"", "evil.example", "evil.example:8017", "127.0.0.1.evil.example", "localhost.evil.example",
                           "127.0.0.1:80:80", "127.0.0.1:x", "[::1", "[::1]x", "[evil.example]", "::1", ":8017"}) {
    EXPECT_FALSE(access.IsOwnHost(host)) << host;
  }
}

TEST(Access, OriginIsThePageItself) {
  EXPECT_TRUE(Access::IsOwnOrigin("", "127.0.0.1:8017"));
  EXPECT_TRUE(Access::IsOwnOrigin("http://127.0.0.1:8017", "127.0.0.1:8017"));
  EXPECT_FALSE(Access::IsOwnOrigin("http://evil.example", "127.0.0.1:8017"));
  EXPECT_FALSE(Access::IsOwnOrigin("https://127.0.0.1:8017", "127.0.0.1:8017"));
  EXPECT_FALSE(Access::IsOwnOrigin("null", "127.0.0.1:8017"));
}

TEST(Access, ViewersHaveNamesOfLettersAndDigits) {
  EXPECT_TRUE(IsViewerName("abcDEF0123456789"));
  EXPECT_TRUE(IsViewerName(std::string(32, 'v')));
  EXPECT_FALSE(IsViewerName("abcDEF012345678"));
  EXPECT_FALSE(IsViewerName(std::string(33, 'v')));
  EXPECT_FALSE(IsViewerName("abcDEF0123456-89"));
}

TEST(Access, AddressesOfIpv6StandInBrackets) {
  EXPECT_EQ(HostAndPort("127.0.0.1", 80), "127.0.0.1:80");
  EXPECT_EQ(HostAndPort("::1", 80), "[::1]:80");
}

}  // namespace
}  // namespace dtsdb::page
