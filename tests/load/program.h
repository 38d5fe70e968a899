/// \file
/// The command dtsdb as the programs of an installation run it: beside this one, its lines taken as they come.
#pragma once

#include <sys/types.h>

#include <cstdint>
#include <mutex>
#include <optional>
#include <string>
#include <thread>
#include <vector>

namespace dtsdb::load {

/// A line of a program, and when it came.
struct TimedLine {
  std::string text;
  std::int64_t at_ns = 0;
};

/// A program in a process of its own; killed when this goes, and when this process ends however that may be.
class Program {
 public:
  /// Starts `words`, the first being the program. Its messages are added to the file `messages`.
  Program(const std::vector<std::string>& words, const std::string& messages);
  Program(const Program&) = delete;
  Program& operator=(const Program&) = delete;
  ~Program();

  pid_t Number() const { return m_process; }
  /// The lines that have come since the last call.
  std::vector<TimedLine> Lines();
  /// The first line, waited for. Empty when the program ends without one.
  std::string FirstLine();
  void Signal(int signal) const;
  /// Waits for the end and all lines: the exit code, or 128 and the signal.
  int End();
  /// The exit code of a program that has ended; nothing while it runs.
  std::optional<int> Ended();

 private:
  void TakeLines();

  pid_t m_process = 0;
  int m_output = -1;
  int m_code = -1;
  std::mutex m_mutex;
  std::vector<TimedLine> m_lines;
  std::thread m_taker;
};

/// Runs a program to its end and returns its exit code.
int RunProgram(const std::vector<std::string>& words, const std::string& messages);

/// Kilobytes of memory that a process has for itself, without the pages of files that it maps; 0 for none.
long OwnKilobytes(pid_t process);

}  // namespace dtsdb::load
