// Matrix: sizes, elements, copies and what lies out of range.

#include <gtest/gtest.h>

#include "include/template.h"
#include "tests/support/messages.h"

namespace dtsdb::test {
namespace {

TEST(Matrix, HasTheInitialValueEverywhere) {
  const Matrix<float> matrix(2, 3, 1.5F);
  EXPECT_EQ(matrix.rows(), 2);
  EXPECT_EQ(matrix.cols(), 3);
  for (int i = 0; i < 2; ++i) {
    for (int j = 0; j < 3; ++j) EXPECT_EQ(matrix.get(i, j), 1.5F);
  }
}

TEST(Matrix, WithFewerThanOneRowIsEmpty) {
  for (const int rows : {0, -1}) {
    Matrix<float> matrix(rows, 3, 1.0F);
    EXPECT_EQ(matrix.rows(), 0);
    EXPECT_EQ(matrix.cols(), 0);
    EXPECT_EQ(matrix.data(), nullptr);
    EXPECT_EQ(matrix.transpose().rows(), 0);
  }
}

TEST(Matrix, WithoutColumnsItsRowsAreNull) {
  for (const int cols : {0, -4}) {
    Matrix<float> matrix(2, cols, 1.0F);
    EXPECT_EQ(matrix.rows(), 2);
    EXPECT_EQ(matrix.cols(), 0);
    EXPECT_EQ(matrix.data()[0], nullptr);
    EXPECT_EQ(matrix.data()[1], nullptr);
    const Matrix<float> copy(matrix);
    EXPECT_EQ(copy.rows(), 2);
    EXPECT_EQ(matrix.transpose().rows(), 0);
  }
}

TEST(Matrix, CopiesAreDeep) {
  Matrix<float> matrix(2, 2, 1.0F);
  Matrix<float> copy(matrix);
  Matrix<float> assigned(5, 1, 0.0F);
  assigned = matrix;
  matrix.set(0, 1, 9);
  EXPECT_EQ(copy.get(0, 1), 1);
  EXPECT_EQ(assigned.get(0, 1), 1);
  EXPECT_EQ(assigned.rows(), 2);
}

TEST(Matrix, FreeIsSafeToRepeat) {
  Matrix<float> matrix(2, 2, 1.0F);
  for (int time = 0; time < 2; ++time) {
    matrix.free();
    EXPECT_EQ(matrix.rows(), 0);
    EXPECT_EQ(matrix.cols(), 0);
    EXPECT_EQ(matrix.data(), nullptr);
  }
}

TEST(Matrix, TransposeExchangesRowsAndColumns) {
  Matrix<int> matrix(2, 3, 0);
  for (int i = 0; i < 2; ++i) {
    for (int j = 0; j < 3; ++j) matrix.set(i, j, 10 * i + j);
  }
  const Matrix<int> transposed = matrix.transpose();
  ASSERT_EQ(transposed.rows(), 3);
  ASSERT_EQ(transposed.cols(), 2);
  for (int i = 0; i < 2; ++i) {
    for (int j = 0; j < 3; ++j) EXPECT_EQ(transposed.get(j, i), 10 * i + j);
  }
}

TEST(Matrix, AnIndexOutOfRangeIsWarnedOfAndReachesNothing) {
  const MessageCatcher catcher;
  Matrix<float> matrix(2, 3, 1.0F);
  EXPECT_EQ(matrix.get(2, 0), 0);
  EXPECT_EQ(matrix.get(0, -1), 0);
  matrix.set(-1, 0, 5);
  matrix.set(1, 3, 5);
  ASSERT_EQ(MessageCatcher::Lines().size(), 4);
  const QString row = QStringLiteral("ASSERT: \"i>=0 && i<m_nRows\" in matrix (");
  const QString column = QStringLiteral("ASSERT: \"j>=0 && j<m_nCols\" in matrix (");
  EXPECT_TRUE(MessageCatcher::Lines()[0].startsWith(row));
  EXPECT_TRUE(MessageCatcher::Lines()[1].startsWith(column));
  EXPECT_TRUE(MessageCatcher::Lines()[2].startsWith(row));
  EXPECT_TRUE(MessageCatcher::Lines()[3].startsWith(column));
  for (int i = 0; i < 2; ++i) {
    for (int j = 0; j < 3; ++j) EXPECT_EQ(matrix.get(i, j), 1);
  }
}

}  // namespace
}  // namespace dtsdb::test
