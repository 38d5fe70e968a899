/// \file
/// Matrix, a small dense matrix.
#pragma once

#include <algorithm>
#include <memory>
#include <new>
#include <utility>

#include "include/check.h"

namespace dtsdb {

/// A matrix of `rows` by `cols` elements that owns its storage, row by row.
///
/// Fewer than 1 row gives the empty matrix, of 0 by 0; without columns, `cols` 0 or less, there are rows but nothing
/// in them. So does a matrix for which there is no memory: it is empty. An index out of range writes one warning
/// (DTSDB_ASSERT) and reaches no foreign memory: get returns a default element, set does nothing.
template <class T>
class Matrix {
 public:
  /// All elements are `init`.
  Matrix(int rows, int cols, T init) {
    Allocate(rows, cols, [&](T* row) { std::fill_n(row, m_nCols, init); });
  }
  Matrix(const Matrix& other) {
    int i = 0;
    Allocate(other.m_nRows, other.m_nCols, [&](T* row) { std::copy_n(other.m_pRows[i++], m_nCols, row); });
  }
  Matrix& operator=(const Matrix& other) {
    Matrix copy(other);
    std::swap(m_pRows, copy.m_pRows);
    std::swap(m_nRows, copy.m_nRows);
    std::swap(m_nCols, copy.m_nCols);
    return *this;
  }
  ~Matrix() { free(); }

  /// Gives the storage back and leaves the empty matrix. Harmless when repeated.
  void free() {
    for (int i = 0; i < m_nRows; ++i) delete[] m_pRows[i];
    delete[] std::exchange(m_pRows, nullptr);
    m_nRows = m_nCols = 0;
  }

  /// Number of rows and of columns.
  int rows() const { return m_nRows; }
  int cols() const { return m_nCols; }

  /// An element.
  T get(int i, int j) const { return HasPlace(i, j) ? m_pRows[i][j] : T(); }
  void set(int i, int j, const T& value) {
    if (HasPlace(i, j)) m_pRows[i][j] = value;
  }

  /// The rows, for loops that have checked the sizes. Null for the empty matrix.
  T** data() { return m_pRows; }
  const T* const* data() const { return m_pRows; }

  /// Without columns the result, having no rows, is empty.
  Matrix transpose() const {
    Matrix result(m_nCols, m_nRows, T());
    for (int i = 0; i < result.m_nRows; ++i) {
      for (int j = 0; j < result.m_nCols; ++j) result.m_pRows[i][j] = m_pRows[j][i];
    }
    return result;
  }

 private:
  /// Allocates the rows and calls `fill` with each, in order.
  template <class Fill>
  void Allocate(int rows, int cols, Fill fill) {
    if (rows < 1) return;
    m_pRows = new (std::nothrow) T* [static_cast<std::size_t>(rows)] {};
    if (!DTSDB_ASSERT(m_pRows != nullptr, "memory for the matrix")) return;
    m_nRows = rows;
    if (cols <= 0) return;
    m_nCols = cols;
    for (int i = 0; i < rows; ++i) {
      m_pRows[i] = new (std::nothrow) T[static_cast<std::size_t>(cols)];
      if (!DTSDB_ASSERT(m_pRows[i] != nullptr, "memory for the matrix")) return free();
      fill(m_pRows[i]);
    }
  }

  bool HasPlace(int i, int j) const {
    return DTSDB_ASSERT(i >= 0 && i < m_nRows, "i>=0 && i<m_nRows") &&
           DTSDB_ASSERT(j >= 0 && j < m_nCols, "j>=0 && j<m_nCols");
  }

  T** m_pRows = nullptr;
  int m_nRows = 0;
  int m_nCols = 0;
};

}  // namespace dtsdb
