/// \file
/// Keeps the library's files off the descriptors of the standard streams.
#pragma once

#include <fcntl.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <mutex>
#include <utility>

namespace dtsdb::internal {

/// A program may run with a standard stream closed. A file that it opens then gets descriptor 0, 1 or 2, and what the
/// program prints lands in the file. Whatever is opened while one of these lives gets another descriptor.
///
/// The streams stay closed for the program: what takes their places can be neither read nor written, and goes with the
/// last of these objects. Any number may live at once, in any threads.
class StandardStreamsKept {
 public:
  StandardStreamsKept() {
    const std::lock_guard lock(s_mutex);
    ++s_users;
    for (int stream = 0; stream < kStreams; ++stream) Occupy(stream);
  }
  StandardStreamsKept(const StandardStreamsKept&) = delete;
  StandardStreamsKept& operator=(const StandardStreamsKept&) = delete;
  ~StandardStreamsKept() {
    const std::lock_guard lock(s_mutex);
    if (--s_users > 0) return;
    for (int stream = 0; stream < kStreams; ++stream) Release(stream);
  }

 private:
  static constexpr int kStreams = 3;

  /// A new descriptor is the lowest that is free: `stream`, as those below it are taken.
  static void Occupy(int stream) {
    if (::fcntl(stream, F_GETFD) != -1 || errno != EBADF) return;
    const int taken = ::open("/", O_PATH | O_CLOEXEC);
    if (taken == stream) {
      s_occupied[static_cast<std::size_t>(stream)] = true;
    } else if (taken >= 0) {
      ::close(taken);  // another thread has opened the stream meanwhile
    }
  }

  /// Leaves alone what the program has put there itself.
  static void Release(int stream) {
    if (!std::exchange(s_occupied[static_cast<std::size_t>(stream)], false)) return;
    const int flags = ::fcntl(stream, F_GETFL);
    if (flags != -1 && (flags & O_PATH) != 0) ::close(stream);
  }

  static inline std::mutex s_mutex;
  static inline int s_users = 0;
  static inline std::array<bool, kStreams> s_occupied{};
};

}  // namespace dtsdb::internal
