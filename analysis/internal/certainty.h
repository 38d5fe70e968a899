/// \file
/// Whether an incremental run certainly gives what a full run gives.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "analysis/careful_runner.h"
#include "model/dtsdb.h"

namespace dtsdb::analysis::internal {

/// Why an incremental run may differ from a full one.
struct Doubt {
  RunReason reason;
  std::string cause;  ///< table and identity
};

/// The doubt about an incremental run that takes up `changes`, on a model that has the result of a full run; none when
/// it certainly equals a full one.
///
/// It does when no open end and no zero-impedance branch is among the changes or on the levels that the run reaches:
/// those of the changed components, which it sorts anew, and those beyond a branch from there that ends in no section,
/// whose fragment it may make or remove. What it computes elsewhere, the islands and what is dead, it computes from the
/// sections as a full run has left them.
///
/// Where nothing changes but units, loads, shunt devices and whole branches between proper sections, no node moves and
/// no fragment comes or goes. Zero-impedance branches in service between proper sections then don't count.
///
/// The rule is held by tests/analysis/careful_property_test.cpp and screening_test.cpp.
std::optional<Doubt> DoubtAbout(const std::vector<ComponentChange>& changes, DTSDB& database);

}  // namespace dtsdb::analysis::internal
