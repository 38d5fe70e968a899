/// \file
/// Random numbers that are the same on every platform.
#pragma once

#include <QtGlobal>

namespace dtsdb::tools {

/// The generator splitmix64. All it gives follows from the seed, in whole numbers and single divisions: the
/// distributions of the standard library differ from one implementation to the next.
class Random {
 public:
  explicit Random(quint64 seed) : m_state(seed) {}

  quint64 Next() {
    m_state += 0x9E3779B97F4A7C15U;
    quint64 z = m_state;
    z = (z ^ (z >> 30)) * 0xBF58476D1CE4E5B9U;
    z = (z ^ (z >> 27)) * 0x94D049BB133111EBU;
    return z ^ (z >> 31);
  }

  /// A number from `low` to `high`, both included.
  int Between(int low, int high) {
    return low + static_cast<int>(Next() % static_cast<quint64>(static_cast<qint64>(high) - low + 1));
  }

  /// A number from `low` to `high` in steps of a tenth.
  double Tenths(int low, int high) { return Between(10 * low, 10 * high) / 10.0; }

  /// True in `n` of `of` cases.
  bool Chance(int n, int of = 100) { return Between(1, of) <= n; }

 private:
  quint64 m_state;
};

}  // namespace dtsdb::tools
