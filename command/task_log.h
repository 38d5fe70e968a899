/// \file
/// What the topology task reports, line by line.
#pragma once

#include <optional>
#include <string>

#include "analysis/careful_runner.h"
#include "command/render.h"

namespace dtsdb::tools {

/// A run of the task, as it is reported.
struct RunLine {
  int run = 0;                                  ///< counted from 1 since the start
  const analysis::RunReport* report = nullptr;  ///< null for one that failed
  int rows = 0;                                 ///< of the trace
  int levels = 0;                               ///< voltage levels that were worked out anew
  int sections = 0;                             ///< that have changed
  int logFirst = -1;                            ///< numbers of the new rows of TPL, -1 for none
  int logLast = -1;
  double worked = 0;  ///< milliseconds
  double stored = 0;  ///< likewise
};

/// Writes the lines of the task, each at once: for people events on the standard output and messages on the standard
/// error; in JSON everything on the standard output, an object a line. docs/command.md lists its properties.
class TaskLog {
 public:
  enum class Reload { kSignal, kReplaced };

  explicit TaskLog(Format format) : m_format(format) {}

  void Start(int islands, double worked, double stored) const;
  void Run(const RunLine& line) const;
  void Followed(int run, const analysis::FollowedBranch& followed) const;
  void Differs(int run, const analysis::Difference& difference) const;
  void ReadAgain(Reload why) const;
  /// Something to look into; `run` where it belongs to one.
  void Message(const std::string& text, std::optional<int> run = {}) const;

 private:
  bool IsJson() const { return m_format == Format::kJson; }

  Format m_format;
};

}  // namespace dtsdb::tools
