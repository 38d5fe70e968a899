/// \file
/// Running a second program beside a test: the PROGRAM of its dtsdb_test.
#pragma once

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <string>
#include <utility>
#include <vector>

#include "tests/support/places.h"

namespace dtsdb::test {

/// The helper program in a process of its own. Killed, if it still runs, when this goes.
class Helper {
 public:
  explicit Helper(const std::vector<std::string>& arguments) {
    int out[2];
    if (::pipe2(out, O_CLOEXEC) != 0) return;
    std::vector<char*> words{const_cast<char*>(TestProgram())};
    for (const std::string& argument : arguments) words.push_back(const_cast<char*>(argument.c_str()));
    words.push_back(nullptr);
    m_process = ::fork();
    if (m_process == 0) {
      ::dup2(out[1], STDOUT_FILENO);
      ::dup2(out[1], STDERR_FILENO);
      ::execv(TestProgram(), words.data());
      ::_exit(127);
    }
    ::close(out[1]);
    m_output = out[0];
  }
  Helper(const Helper&) = delete;
  Helper& operator=(const Helper&) = delete;
  ~Helper() {
    Kill();
    if (m_output >= 0) ::close(m_output);
  }

  /// The next line that it prints, empty at its end.
  std::string Line() {
    std::string line;
    char byte = 0;
    while (::read(m_output, &byte, 1) == 1 && byte != '\n') line.push_back(byte);
    return line;
  }
  /// Everything that it prints until its end.
  std::string Rest() {
    std::string all;
    for (std::string line = Line(); !line.empty(); line = Line()) all += line + "\n";
    return all;
  }
  /// False once it has ended.
  bool IsRunning() {
    if (m_process > 0 && ::waitpid(m_process, nullptr, WNOHANG) != 0) m_process = 0;
    return m_process > 0;
  }
  /// Kills it as a power switch would, and waits for its end.
  void Kill() {
    if (m_process <= 0) return;
    ::kill(m_process, SIGKILL);
    ::waitpid(std::exchange(m_process, 0), nullptr, 0);
  }

 private:
  pid_t m_process = 0;
  int m_output = -1;
};

/// What the helper prints in a run of its own.
inline std::string RunHelper(const std::vector<std::string>& arguments) { return Helper(arguments).Rest(); }

}  // namespace dtsdb::test
