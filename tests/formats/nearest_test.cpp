#include "formats/nearest.h"

#include <gtest/gtest.h>

namespace dtsdb::tools {
namespace {

TEST(Nearest, DistanceCountsInsertionsDeletionsReplacementsAndExchanges) {
  EXPECT_EQ(EditDistance("status", "status", 5), 0);
  EXPECT_EQ(EditDistance("status", "statuss", 5), 1);
  EXPECT_EQ(EditDistance("status", "stats", 5), 1);
  EXPECT_EQ(EditDistance("status", "stitus", 5), 1);
  EXPECT_EQ(EditDistance("status", "sttaus", 5), 1);
  EXPECT_EQ(EditDistance("", "abc", 5), 3);
}

TEST(Nearest, DistanceStopsAtItsLimit) { EXPECT_EQ(EditDistance("abcdef", "uvwxyz", 2), 3); }

TEST(Nearest, CharactersCountNotBytes) { EXPECT_EQ(EditDistance("甲开关", "甲开管", 5), 1); }

TEST(Nearest, UpperAndLowerCaseAreEqual) { EXPECT_EQ(EditDistance("global", "GLOBAL", 5), 0); }

TEST(Nearest, NearestComesFirstAndThreeAreTheMost) {
  const std::vector<std::string> known = {"izana_p", "zana_p", "zana_q", "ana_p", "iana_p", "id"};
  EXPECT_EQ(Nearest("zana_p", known), (std::vector<std::string>{"zana_p", "izana_p", "zana_q"}));
}

TEST(Nearest, NothingIsSuggestedForWhatIsLikeNothing) {
  EXPECT_TRUE(Nearest("elephant", {"CB", "LN"}).empty());
  EXPECT_EQ(DidYouMean("elephant", {"CB", "LN"}), "");
}

TEST(Nearest, TheQuestionReadsAsASentence) {
  EXPECT_EQ(DidYouMean("stat", {"stats"}), "; did you mean stats?");
  EXPECT_EQ(DidYouMean("LN3", {"LN", "LN2", "CB"}), "; did you mean LN or LN2?");
  EXPECT_EQ(DidYouMean("vmx", {"vmax", "vmin", "vmux", "vm"}), "; did you mean vmax, vmux or vm?");
}

}  // namespace
}  // namespace dtsdb::tools
