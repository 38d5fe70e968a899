/// \file
/// The command dtsdb run up to one of its system calls, for tests of what it leaves when it ends there.
#pragma once

#include <fcntl.h>
#include <linux/filter.h>
#include <linux/fs.h>
#include <linux/seccomp.h>
#include <sys/prctl.h>
#include <sys/ptrace.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstddef>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

#include "tests/support/places.h"

namespace dtsdb::tools::test {

/// What the command finds around it.
struct Surroundings {
  std::filesystem::path folder;     ///< where it runs
  std::filesystem::path temporary;  ///< where it makes temporary files
  bool canExchange = true;          ///< the file system exchanges two folders in one step
  bool isOutputTaken = true;        ///< somebody reads its output
};

/// A run of dtsdb that stops at each of its system calls.
class SteppedCommand {
 public:
  SteppedCommand(const Surroundings& around, const std::vector<std::string>& arguments) {
    m_process = ::fork();
    if (m_process == 0) Become(around, arguments);
    ::waitpid(m_process, &m_status, 0);
    ::ptrace(PTRACE_SETOPTIONS, m_process, nullptr, PTRACE_O_TRACESYSGOOD | PTRACE_O_EXITKILL);
  }
  SteppedCommand(const SteppedCommand&) = delete;
  SteppedCommand& operator=(const SteppedCommand&) = delete;
  ~SteppedCommand() { End(SIGKILL); }

  /// Runs to the call behind `calls` further ones, counted from the first one that makes a folder or that is `from`.
  /// False when the command ends before.
  bool StepTo(int calls, long from = -1) {
    bool counts = false;
    while (NextCall()) {
      counts = counts || (from == -1 ? MakesFolder() : static_cast<long>(m_call.entry.nr) == from);
      if (counts && calls-- == 0) return true;
    }
    return false;
  }

  /// Sends it a signal, 0 for none, and lets it run to its end.
  void End(int signal) {
    if (!IsStopped()) return;
    if (signal != 0) ::kill(m_process, signal);
    while (IsStopped()) Continue(PTRACE_CONT);
  }

  /// The exit code; -1 for a command that a signal has ended.
  int Code() const { return WIFEXITED(m_status) ? WEXITSTATUS(m_status) : -1; }
  /// The signal that has ended it, 0 for none.
  int Signal() const { return WIFSIGNALED(m_status) ? WTERMSIG(m_status) : 0; }

 private:
  static constexpr int kCallStop = SIGTRAP | 0x80;

  [[noreturn]] static void Become(const Surroundings& around, const std::vector<std::string>& arguments) {
    ::setenv("TMPDIR", around.temporary.c_str(), 1);
    ::setenv("ASAN_OPTIONS", "detect_leaks=0", 1);  // the search for leaks needs to trace the process itself
    std::vector<char*> words{const_cast<char*>(dtsdb::test::TestProgram())};
    for (const std::string& argument : arguments) words.push_back(const_cast<char*>(argument.c_str()));
    words.push_back(nullptr);
    ::dup2(around.isOutputTaken ? ::open("/dev/null", O_WRONLY) : BrokenPipe(), STDOUT_FILENO);
    ::dup2(::open("/dev/null", O_WRONLY), STDERR_FILENO);
    std::signal(SIGPIPE, SIG_DFL);
    const bool ready = ::chdir(around.folder.c_str()) == 0 && (around.canExchange || RefuseExchange());
    if (ready && ::ptrace(PTRACE_TRACEME, 0, nullptr, nullptr) == 0) ::execv(words[0], words.data());
    ::_exit(126);
  }

  static int BrokenPipe() {
    int ends[2] = {-1, -1};
    if (::pipe(ends) == 0) ::close(ends[0]);
    return ends[1];
  }

  /// Lets the exchange of two names fail, as file systems do that don't know it.
  static bool RefuseExchange() {
    sock_filter steps[] = {
        BPF_STMT(BPF_LD | BPF_W | BPF_ABS, offsetof(seccomp_data, nr)),
        BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, SYS_renameat2, 0, 3),
        BPF_STMT(BPF_LD | BPF_W | BPF_ABS, offsetof(seccomp_data, args[4])),
        BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, RENAME_EXCHANGE, 0, 1),
        BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ERRNO | EINVAL),
        BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ALLOW),
    };
    const sock_fprog filter{sizeof steps / sizeof *steps, steps};
    return ::prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) == 0 &&
           ::prctl(PR_SET_SECCOMP, SECCOMP_MODE_FILTER, &filter, 0, 0) == 0;
  }

  bool IsStopped() const { return m_process > 0 && WIFSTOPPED(m_status); }

  /// Goes on, with the signal that it has stopped for.
  void Continue(__ptrace_request how) {
    const int stop = WSTOPSIG(m_status);
    const bool isSignal = stop != kCallStop && stop != SIGTRAP;
    if (::ptrace(how, m_process, nullptr, static_cast<long>(isSignal ? stop : 0)) != 0) ::kill(m_process, SIGKILL);
    ::waitpid(m_process, &m_status, 0);
  }

  /// Runs to where the next system call begins.
  bool NextCall() {
    while (IsStopped()) {
      Continue(PTRACE_SYSCALL);
      if (!IsStopped() || WSTOPSIG(m_status) != kCallStop) continue;
      ::ptrace(PTRACE_GET_SYSCALL_INFO, m_process, sizeof m_call, &m_call);
      if (m_call.op == PTRACE_SYSCALL_INFO_ENTRY) return true;
    }
    return false;
  }

  bool MakesFolder() const {
#ifdef SYS_mkdir
    if (m_call.entry.nr == SYS_mkdir) return true;
#endif
    return m_call.entry.nr == SYS_mkdirat;
  }

  pid_t m_process = 0;
  int m_status = 0;
  __ptrace_syscall_info m_call{};
};

}  // namespace dtsdb::tools::test
