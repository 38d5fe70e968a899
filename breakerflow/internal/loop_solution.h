/// \file
/// The currents inside a group of loops: of all that fit the injections, those whose sum of squares is least.
#pragma once

#include "breakerflow/internal/network.h"
#include "include/template.h"

namespace dtsdb::internal {

/// Works out the flows of the loop breakers of a group from the currents injected into its nodes.
void SolveLoops(const FlowNetwork& network, const ndGroup& group);

/// c := a b, each element summed in ascending order. False, with `c` as it was, when the sizes don't fit.
bool Multiply(const Matrix<float>& a, const Matrix<float>& b, Matrix<float>& c);

/// Inverts `a` in its place, with full pivoting. False when it is singular, exactly, or memory is short.
bool Invert(Matrix<float>& a);

}  // namespace dtsdb::internal
