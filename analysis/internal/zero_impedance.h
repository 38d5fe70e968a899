/// \file
/// Zero-impedance branches and the breakers that carry them.
#pragma once

#include <QList>
#include <string>
#include <vector>

#include "model/dtsdb.h"
#include "validation/finding.h"

namespace dtsdb::analysis::internal {

/// The numbers of the zero-impedance branches on breaker `cb`.
std::vector<int> BranchesOn(DTSDB& database, int cb);

/// A warning for each zero-impedance branch whose state isn't that of its breaker: the one joins the nodes, the other
/// parts them. Their texts are English.
QList<Finding> Disagreements(DTSDB& database);

/// Takes the zero-impedance branches on which the rules make a full run fail out of service for as long as it lives:
/// those with only the to end open, at a from end that lies in a section (docs/kept-behaviour.md, K37).
class BranchesLeftOut {
 public:
  explicit BranchesLeftOut(DTSDB& database);
  BranchesLeftOut(const BranchesLeftOut&) = delete;
  BranchesLeftOut& operator=(const BranchesLeftOut&) = delete;
  ~BranchesLeftOut();

  /// Their identities, in UTF-8.
  std::vector<std::string> Identities() const;

 private:
  DTSDB& m_database;
  std::vector<int> m_numbers;
};

}  // namespace dtsdb::analysis::internal
