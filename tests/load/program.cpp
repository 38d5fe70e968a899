#include "tests/load/program.h"

#include <fcntl.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <csignal>
#include <cstdio>
#include <fstream>
#include <utility>

#include "tests/load/notes.h"

namespace dtsdb::load {
namespace {

/// In the new process, where nothing but calls of the system may be made: other threads are not there.
[[noreturn]] void BecomeProgram(char* const* arguments, int output, const char* messages) {
  ::prctl(PR_SET_PDEATHSIG, SIGKILL);
  const int file = ::open(messages, O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0666);
  ::dup2(output, STDOUT_FILENO);
  ::dup2(file, STDERR_FILENO);
  ::execv(arguments[0], arguments);
  ::_exit(127);
}

int CodeOf(int status) { return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status); }

}  // namespace

Program::Program(const std::vector<std::string>& words, const std::string& messages) {
  int ends[2];
  if (::pipe2(ends, O_CLOEXEC) != 0) return;
  std::vector<char*> arguments;
  for (const std::string& word : words) arguments.push_back(const_cast<char*>(word.c_str()));
  arguments.push_back(nullptr);
  m_process = ::fork();
  if (m_process == 0) BecomeProgram(arguments.data(), ends[1], messages.c_str());
  ::close(ends[1]);
  m_output = ends[0];
  m_taker = std::thread([this] { TakeLines(); });
}

Program::~Program() {
  if (m_process > 0) Signal(SIGKILL);
  if (m_taker.joinable()) End();
  if (m_output >= 0) ::close(m_output);
}

void Program::TakeLines() {
  std::string part;
  char room[4096];
  for (ssize_t got = ::read(m_output, room, sizeof(room)); got > 0; got = ::read(m_output, room, sizeof(room))) {
    const std::int64_t now = NowNs();
    part.append(room, static_cast<std::size_t>(got));
    const std::lock_guard lock(m_mutex);
    for (std::size_t end = part.find('\n'); end != std::string::npos; end = part.find('\n')) {
      m_lines.push_back({part.substr(0, end), now});
      part.erase(0, end + 1);
    }
  }
}

std::vector<TimedLine> Program::Lines() {
  const std::lock_guard lock(m_mutex);
  return std::exchange(m_lines, {});
}

std::string Program::FirstLine() {
  for (;;) {
    const bool ended = Ended().has_value();
    {
      const std::lock_guard lock(m_mutex);
      if (!m_lines.empty()) return m_lines.front().text;
    }
    if (ended) return "";
    std::this_thread::sleep_for(std::chrono::milliseconds(10));
  }
}

void Program::Signal(int signal) const {
  if (m_process > 0) ::kill(m_process, signal);
}

int Program::End() {
  if (m_process > 0) {
    int status = 0;
    ::waitpid(std::exchange(m_process, 0), &status, 0);
    m_code = CodeOf(status);
  }
  if (m_taker.joinable()) m_taker.join();
  return m_code;
}

std::optional<int> Program::Ended() {
  if (m_process > 0) {
    int status = 0;
    if (::waitpid(m_process, &status, WNOHANG) == 0) return std::nullopt;
    m_process = 0;
    m_code = CodeOf(status);
  }
  return m_code;
}

int RunProgram(const std::vector<std::string>& words, const std::string& messages) {
  return Program(words, messages).End();
}

long OwnKilobytes(pid_t process) {
  std::ifstream file("/proc/" + std::to_string(process) + "/status");
  long kilobytes = 0;
  for (std::string line; std::getline(file, line);) {
    if (std::sscanf(line.c_str(), "RssAnon: %ld", &kilobytes) == 1) break;
  }
  return kilobytes;
}

}  // namespace dtsdb::load
