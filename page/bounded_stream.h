/// \file
/// A connection that waits for nobody for long.
#pragma once

#include <array>
#include <atomic>
#include <chrono>
#include <cstddef>
#include <string>

#include "page/internal/http.h"

namespace dtsdb::page {

/// How long a connection waits, and how much it reads.
struct StreamLimits {
  std::chrono::milliseconds request{10'000};            ///< for a whole request, from its first byte on
  std::chrono::milliseconds write{5'000};               ///< for a write, and
  std::size_t bytesPerSecond = std::size_t{64} * 1024;  ///< for what is written, how fast it has to be taken
  std::size_t request_bytes = 0;                        ///< of a request, its head included
};

/// A socket as the server's library reads and writes it. What isn't there in time ends it: a read or write then fails,
/// and so do all that follow.
class BoundedStream : public httplib::Stream {
 public:
  /// The caller owns and closes the socket. Nothing is waited for any more once `ends` is true; it must outlive this.
  BoundedStream(int socket, const StreamLimits& limits, const std::atomic<bool>& ends);

  /// Waits for the first byte of a request for so long at most; false when none has come.
  bool WaitForRequest(std::chrono::milliseconds longest);
  /// Begins a request: from now on its time and its bytes count.
  void BeginRequest();

  bool is_readable() const override;
  /// True when the other side is still there.
  bool is_writable() const override;
  ssize_t read(char* bytes, std::size_t size) override;
  /// Writes all, or fails.
  ssize_t write(const char* bytes, std::size_t size) override;
  void get_remote_ip_and_port(std::string& ip, int& port) const override;
  void get_local_ip_and_port(std::string& ip, int& port) const override;
  socket_t socket() const override { return m_socket; }

 private:
  using Time = std::chrono::steady_clock::time_point;

  bool Fill();
  bool WaitFor(short events, Time until) const;

  int m_socket;
  StreamLimits m_limits;
  const std::atomic<bool>& m_ends;
  std::array<char, 4096> m_buffer{};
  std::size_t m_begin = 0;
  std::size_t m_end = 0;
  std::size_t m_left = 0;  // bytes that the request may still have
  Time m_until{};          // the request has to be read
  bool m_failed = false;
};

}  // namespace dtsdb::page
