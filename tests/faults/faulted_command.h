/// \file
/// The command dtsdb run with calls of the system that fail.
#pragma once

#include <filesystem>
#include <memory>
#include <string>

#include "tests/faults/record.h"
#include "tests/support/command_runner.h"

namespace dtsdb::tools::test {

using dtsdb::test::CallCounts;
using dtsdb::test::CallKind;

/// One call that fails. `at` 0: none, they are only counted.
struct Fault {
  CallKind kind = CallKind::kWrite;
  int error = 0;  ///< an error number; 0 for a write or read of fewer bytes than asked for
  long at = 0;
  bool stays = false;  ///< so do all such calls behind it
};

/// What came of it.
struct FaultedResult : CommandResult {
  long calls = 0;       ///< of the kind of the fault
  bool failed = false;  ///< the call was reached
};

/// Runs `arguments` at `place`, with the fault among the calls on files below that folder.
FaultedResult RunWithFault(const Workplace& place, const QStringList& arguments, const Fault& fault);

/// As long as this lives, programs that are started load the fault library. `record` is where they write down what they
/// change below `folder`; empty for nowhere.
class FaultLibraryLoaded {
 public:
  FaultLibraryLoaded(const std::filesystem::path& folder, const Fault& fault, const std::filesystem::path& record = {});
  FaultLibraryLoaded(const FaultLibraryLoaded&) = delete;
  FaultLibraryLoaded& operator=(const FaultLibraryLoaded&) = delete;
  ~FaultLibraryLoaded();

  const CallCounts& Counts() const { return *m_counts; }

 private:
  CallCounts* m_counts = nullptr;
  int m_file = -1;
};

}  // namespace dtsdb::tools::test
