#include <gtest/gtest.h>

#include "tests/include/table_probe.h"

namespace dtsdb::test {
namespace {

TEST(Array, HoldsDefaultRecords) {
  tArray<Rec> array(3);
  for (int i = 0; i < 3; ++i) EXPECT_EQ(array[i].key, 0);
  array[2].key = 5;
  EXPECT_EQ(array[2].key, 5);
}

TEST(Array, PlainNumbersAreZero) {
  tArray<int> array(100);
  for (int i = 0; i < 100; ++i) EXPECT_EQ(array[i], 0);
}

TEST(Array, ASizeOfZeroOrLessMakesAnEmptyOne) {
  for (const int n : {0, -1}) {
    const tArray<Rec> array(n);
    EXPECT_EQ(sizeof(array), sizeof(tArray<int>));
  }
}

#ifndef NDEBUG
TEST(ArrayDeathTest, AnIndexOutOfRangeEndsACheckingBuild) {
  EXPECT_DEATH(tArray<Rec>(3)[3].key = 1, "template.h.*i >= 0 && i < m_size");
  EXPECT_DEATH(tArray<Rec>(3)[-1].key = 1, "i >= 0 && i < m_size");
  EXPECT_DEATH(tArray<Rec>(0)[0].key = 1, "i >= 0 && i < m_size");
}
#endif

}  // namespace
}  // namespace dtsdb::test
