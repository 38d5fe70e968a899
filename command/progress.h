/// \file
/// How far a long work has come, on a terminal.
#pragma once

#include <chrono>
#include <cstddef>
#include <string>

namespace dtsdb::tools {

/// A line on the standard error that appears after a second, is written anew as the work goes on, at most ten times a
/// second, and is removed at the end. Nothing is written where the standard error is no terminal.
class Progress {
 public:
  /// `what` is the noun of what is counted, in the plural. Nothing is shown before `quiet` has gone by.
  Progress(std::size_t total, std::string what, std::chrono::milliseconds quiet = std::chrono::seconds(1));
  Progress(const Progress&) = delete;
  Progress& operator=(const Progress&) = delete;
  ~Progress();

  void Show(std::size_t done);

 private:
  using Clock = std::chrono::steady_clock;

  std::size_t m_total;
  std::string m_what;
  bool m_isShown;
  bool m_isOnScreen = false;
  Clock::time_point m_next;
};

}  // namespace dtsdb::tools
