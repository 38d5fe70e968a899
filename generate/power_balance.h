/// \file
/// The third step of a utility: powers that fit each other.
#pragma once

#include "generate/plan.h"
#include "generate/random.h"

namespace dtsdb::tools {

/// Gives each branch and unit its power, and marks the points that are live, so that at each live point what flows in
/// sums to zero. What is off, out of service or dead has none.
///
/// Branches beyond those of a tree carry what is drawn for them, the tree carries the rest. A unit takes over what its
/// side of the tree needs, as far as it can, so flows stay local; the reference unit at the root takes what remains.
void BalancePowers(Plan& plan, Random& random);

}  // namespace dtsdb::tools
