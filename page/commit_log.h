/// \file
/// What a commit has changed, in words: a line for each record.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "model/dtsdb.h"
#include "model/table_kinds.h"

namespace dtsdb::page {

/// A record and what became of it, in UTF-8.
struct LogLine {
  std::string table;
  std::string id;
  std::string text;  ///< such as "opened", "p 12.5 to 13.1 MW", "added"
};

/// What lies between two readings of one database.
struct CommitLog {
  std::vector<LogLine> switching;  ///< what was switched; at most as many as asked for, as in `others`
  std::vector<LogLine> others;     ///< what was added and removed, then values
  std::size_t count = 0;           ///< of all lines there would be in both
  bool isSame = true;              ///< no field of any record differs
  bool isOtherGrid = false;        ///< records of the grid were added, removed or moved, or it was validated
};

/// Compares the tables of `changed`. Both are settled. `most` limits each list of lines.
CommitLog DescribeCommit(DTSDB& before, DTSDB& after, const std::vector<TableKind>& changed, std::size_t most);

}  // namespace dtsdb::page
