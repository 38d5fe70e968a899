/// \file
/// How a command ends when it can't do what it was asked for.
#pragma once

#include <stdexcept>
#include <string>

namespace dtsdb::tools {

/// What the process returns. Scripts rely on these numbers.
enum ExitCode : int {
  kExitGood = 0,    ///< done; the model is good, the models are the same
  kExitFaults = 1,  ///< the model has faults, the models differ
  kExitUsage = 2,   ///< the command was called in a wrong way
  kExitFile = 3,    ///< a file can't be read or written
};

/// Ends the command with one line for the user (UTF-8, without line feed) and an exit code.
class Failure : public std::runtime_error {
 public:
  Failure(ExitCode code, const std::string& line) : std::runtime_error(line), m_code(code) {}
  ExitCode Code() const { return m_code; }

 private:
  ExitCode m_code;
};

}  // namespace dtsdb::tools
