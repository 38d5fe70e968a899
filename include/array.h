/// \file
/// tArray, a plain fixed array.
#pragma once

#include <cstddef>
#include <memory>

#include "include/check.h"

namespace dtsdb {

/// A plain fixed array, for building a record on the side. An index out of range ends a checking build.
template <class T>
class tArray {
 public:
  /// An array of `n` default elements.
  explicit tArray(int n) {
    if (n <= 0) return;
    m_pData = std::make_unique<T[]>(static_cast<std::size_t>(n));
    m_size = n;
  }
  tArray(const tArray&) = delete;
  tArray& operator=(const tArray&) = delete;
  ~tArray() = default;

  /// An element; a default one, after a warning, for an index out of range.
  T& operator[](int i) {
    DTSDB_END_UNLESS("template.h", i >= 0 && i < m_size);
    return m_pData[static_cast<std::size_t>(i)];
  }

 private:
  std::unique_ptr<T[]> m_pData;
  int m_size = 0;
};

}  // namespace dtsdb
