/// \file
/// A program that was started with its standard streams closed.
#pragma once

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>

namespace dtsdb::test {

/// Whether nothing has the descriptors 0 to 2.
inline bool StreamsAreClosed() {
  for (int stream = 0; stream <= STDERR_FILENO; ++stream) {
    if (::fcntl(stream, F_GETFD) != -1 || errno != EBADF) return false;
  }
  return true;
}

/// What `call`, a number from 0 to 255, gives in a process of its own whose standard streams are closed. -1 when that
/// process doesn't end by itself.
template <class Call>
int InProcessWithoutStreams(Call call) {
  const pid_t process = ::fork();
  if (process == 0) {
    for (int stream = 0; stream <= STDERR_FILENO; ++stream) ::close(stream);
    ::alarm(60);
    ::_exit(call());
  }
  int result = -1;
  ::waitpid(process, &result, 0);
  return WIFEXITED(result) ? WEXITSTATUS(result) : -1;
}

}  // namespace dtsdb::test
