// Single precision throughout, each sum in ascending order: the results depend on it, and other programs compute the
// same. Compiled without contraction of products and sums.
#include "breakerflow/internal/loop_solution.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <memory>
#include <new>
#include <utility>

#include "breakerflow/internal/find.h"

namespace dtsdb::internal {
namespace {

/// A column of the elements of `values`, but the last.
Matrix<float> ColumnButLast(const std::vector<float>& values) {
  const int rows = static_cast<int>(values.size()) - 1;
  Matrix<float> column(rows, 1, 0.0F);
  for (int i = 0; i < column.rows(); ++i) column.set(i, 0, values[i]);
  return column;
}

/// The place of the element of greatest absolute value, the first of equals, among those from row and column `k` on.
struct Pivot {
  int row;
  int col;
  float size;
};

/// The bits of the greatest absolute value in `row`, from element `from` up to, not including, `to`. Bits of absolute
/// values are in the order of the values, and integers are compared many at a time. What is no number counts as 0: no
/// comparison finds it greater.
qint32 GreatestBits(const float* row, int from, int to) {
  constexpr qint32 kAbsolute = 0x7FFFFFFF;
  constexpr qint32 kInfinity = 0x7F800000;
  qint32 greatest = 0;
  for (int j = from; j < to; ++j) {
    const qint32 bits = std::bit_cast<qint32>(row[j]) & kAbsolute;
    greatest = std::max(greatest, bits <= kInfinity ? bits : 0);
  }
  return greatest;
}

Pivot GreatestFrom(const Matrix<float>& a, int k) {
  const int n = a.cols();
  Pivot pivot{k, k, 0.0F};
  for (int i = k; i < n; ++i) {
    const float* const row = a.data()[i];
    const auto size = std::bit_cast<float>(GreatestBits(row, k, n));
    if (!(size > pivot.size)) continue;
    const float* const first = std::find_if(row + k, row + n, [size](float x) { return std::fabs(x) == size; });
    pivot = {i, static_cast<int>(first - row), size};
  }
  return pivot;
}

void SwapRows(Matrix<float>& a, int k, int other) {
  if (k != other) std::swap(a.data()[k], a.data()[other]);
}

void SwapColumns(Matrix<float>& a, int k, int other) {
  if (k == other) return;
  for (int i = 0; i < a.cols(); ++i) std::swap(a.data()[i][k], a.data()[i][other]);
}

/// Adds `factor` times the elements of `from` to those of `to`, but for element `skip`.
void AddRow(float* __restrict to, const float* __restrict from, float factor, int skip, int count) {
  const float kept = to[skip];
  for (int j = 0; j < count; ++j) to[j] += factor * from[j];
  to[skip] = kept;
}

/// One step of the elimination, the pivot standing at row and column `k`.
void Eliminate(Matrix<float>& a, int k) {
  const int n = a.cols();
  float* const pivotRow = a.data()[k];
  const float inverse = 1.0F / pivotRow[k];
  pivotRow[k] = inverse;
  for (int j = 0; j < n; ++j) {
    if (j != k) pivotRow[j] *= inverse;
  }
  for (int i = 0; i < n; ++i) {
    if (i == k) continue;
    float* const row = a.data()[i];
    AddRow(row, pivotRow, -row[k], k, n);
    row[k] = -row[k] * inverse;
  }
}

bool IsFinite(const float* row, int count) {
  return std::all_of(row, row + count, [](float x) { return std::isfinite(x); });
}

/// Which row of the incidence matrix stands for which node.
using RowOfNode = std::unordered_map<int, int>;

/// A row for each node, a column for each breaker: 1 where it begins, -1 where it ends. The column of a breaker that
/// ends where it begins stays zero, so it carries nothing.
Matrix<float> Incidence(const RowOfNode& rowOf, const std::vector<cbBreaker*>& breakers) {
  Matrix<float> incidence(static_cast<int>(rowOf.size()), static_cast<int>(breakers.size()), 0.0F);
  for (int j = 0; j < incidence.cols(); ++j) {
    const auto from = rowOf.find(breakers[j]->ind);
    const auto to = rowOf.find(breakers[j]->iznd);
    if (!DTSDB_ASSERT(from != rowOf.end() && to != rowOf.end(), "m_ndArray.find(ind) != m_ndArray.end()")) continue;
    if (from == to) continue;
    incidence.set(from->second, j, 1.0F);
    incidence.set(to->second, j, -1.0F);
  }
  return incidence;
}

Matrix<float> WithoutLastRow(const Matrix<float>& a) {
  Matrix<float> b(a.rows() - 1, a.cols(), 0.0F);
  for (int i = 0; i < b.rows(); ++i) std::copy_n(a.data()[i], b.cols(), b.data()[i]);
  return b;
}

/// The loop breakers at the nodes of a group, by ascending key.
std::vector<cbBreaker*> LoopBreakers(const FlowNetwork& network, const ndGroup& group) {
  QMap<int, cbBreaker*> found;
  for (const int nd : group.m_nodes) {
    for (const int key : network.breakersAt.value(nd)) {
      cbBreaker* const breaker = Find(network.breakers, key);
      if (!DTSDB_ASSERT(breaker != nullptr, "m_cbArray.find(*it) != m_cbArray.end()")) continue;
      if ((breaker->flags & CB_LOOP) != 0) found.insert(key, breaker);
    }
  }
  return {found.cbegin(), found.cend()};
}

}  // namespace

void SolveLoops(const FlowNetwork& network, const ndGroup& group) {
  RowOfNode rowOf;
  std::vector<float> real;
  std::vector<float> imaginary;
  for (const int nd : group.m_nodes) {
    const cbNode* const node = Find(std::as_const(network.nodes), nd);
    if (!DTSDB_ASSERT(node != nullptr, "m_ndArray.find(*it) != m_ndArray.end()")) continue;
    rowOf.emplace(nd, static_cast<int>(real.size()));
    real.push_back(node->sp);
    imaginary.push_back(node->sq);
  }
  const std::vector<cbBreaker*> breakers = LoopBreakers(network, group);
  const int m = static_cast<int>(real.size());
  const int n = static_cast<int>(breakers.size());
  if (m == 0 || n == 0) return;

  // The least-norm solution of B x = i is x = T (B T)^-1 i, T being B transposed. One node needs no equation: the
  // currents sum to zero. A connected group can always be inverted, so the result isn't looked at.
  Matrix<float> b = WithoutLastRow(Incidence(rowOf, breakers));
  Matrix<float> t = b.transpose();
  Matrix<float> inverse(m - 1, m - 1, 0.0F);
  Multiply(b, t, inverse);
  Invert(inverse);
  Matrix<float> solution(n, m - 1, 0.0F);
  Multiply(t, inverse, solution);

  Matrix<float> ir = ColumnButLast(real);
  Matrix<float> ii = ColumnButLast(imaginary);
  Matrix<float> xr(n, 1, 0.0F);
  Matrix<float> xi(n, 1, 0.0F);
  Multiply(solution, ir, xr);
  Multiply(solution, ii, xi);
  const double cosine = std::cos(static_cast<double>(group.m_a));
  const double sine = std::sin(static_cast<double>(group.m_a));
  for (int j = 0; j < n; ++j) {
    const double re = xr.get(j, 0);
    const double im = xi.get(j, 0);
    breakers[j]->p = static_cast<float>((cosine * re + sine * im) * group.m_v);
    breakers[j]->q = static_cast<float>((sine * re - cosine * im) * group.m_v);
  }
}

bool Multiply(const Matrix<float>& a, const Matrix<float>& b, Matrix<float>& c) {
  if (a.cols() != b.rows() || a.rows() != c.rows() || b.cols() != c.cols()) return false;
  std::vector<bool> finite(b.rows());
  for (int k = 0; k < b.rows(); ++k) finite[k] = IsFinite(b.data()[k], b.cols());
  std::vector<float> sums(c.cols());
  for (int i = 0; i < c.rows(); ++i) {
    std::fill(sums.begin(), sums.end(), 0.0F);
    for (int k = 0; k < a.cols(); ++k) {
      const float factor = a.data()[i][k];
      if (factor == 0 && finite[k]) continue;  // adds nothing: an incidence matrix is almost empty
      const float* const row = b.data()[k];
      for (std::size_t j = 0; j < sums.size(); ++j) sums[j] += factor * row[j];
    }
    std::copy(sums.begin(), sums.end(), c.data()[i]);
  }
  return true;
}

bool Invert(Matrix<float>& a) {
  const int n = a.cols();
  if (!DTSDB_ASSERT(n <= a.rows(), "i>=0 && i<m_nRows")) return false;
  if (n == 0) return true;
  const std::unique_ptr<int[]> rowOf(new (std::nothrow) int[static_cast<std::size_t>(n)]);
  const std::unique_ptr<int[]> colOf(new (std::nothrow) int[static_cast<std::size_t>(n)]);
  if (!rowOf || !colOf) return false;

  for (int k = 0; k < n; ++k) {
    const Pivot pivot = GreatestFrom(a, k);
    rowOf[k] = pivot.row;
    colOf[k] = pivot.col;
    if (pivot.size == 0) return false;  // exactly zero: there is no tolerance
    SwapRows(a, k, pivot.row);
    SwapColumns(a, k, pivot.col);
    Eliminate(a, k);
  }
  for (int k = n - 1; k >= 0; --k) {
    SwapRows(a, k, colOf[k]);
    SwapColumns(a, k, rowOf[k]);
  }
  return true;
}

}  // namespace dtsdb::internal
