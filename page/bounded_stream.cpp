#include "page/bounded_stream.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>

#include <algorithm>
#include <cerrno>
#include <cstring>

namespace dtsdb::page {
namespace {

/// The longest that is waited before it is looked whether the server ends.
constexpr std::chrono::milliseconds kPollStep{100};

using Ends = int(int, sockaddr*, socklen_t*);

/// Address and port of one end of a connection.
void NameOf(int socket, Ends* end, std::string& ip, int& port) {
  sockaddr_storage storage{};
  socklen_t size = sizeof(storage);
  if (end(socket, reinterpret_cast<sockaddr*>(&storage), &size) != 0) return;
  std::array<char, INET6_ADDRSTRLEN> text{};
  if (storage.ss_family == AF_INET) {
    const auto* const v4 = reinterpret_cast<const sockaddr_in*>(&storage);
    ::inet_ntop(AF_INET, &v4->sin_addr, text.data(), text.size());
    port = ntohs(v4->sin_port);
  } else if (storage.ss_family == AF_INET6) {
    const auto* const v6 = reinterpret_cast<const sockaddr_in6*>(&storage);
    ::inet_ntop(AF_INET6, &v6->sin6_addr, text.data(), text.size());
    port = ntohs(v6->sin6_port);
  }
  ip = text.data();
}

}  // namespace

BoundedStream::BoundedStream(int socket, const StreamLimits& limits, const std::atomic<bool>& ends)
    : m_socket(socket), m_limits(limits), m_ends(ends) {}

bool BoundedStream::WaitForRequest(std::chrono::milliseconds longest) {
  return m_begin < m_end || WaitFor(POLLIN, std::chrono::steady_clock::now() + longest);
}

void BoundedStream::BeginRequest() {
  m_until = std::chrono::steady_clock::now() + m_limits.request;
  m_left = m_limits.request_bytes;
}

bool BoundedStream::is_readable() const { return !m_failed && (m_begin < m_end || WaitFor(POLLIN, m_until)); }

bool BoundedStream::is_writable() const {
  if (m_failed) return false;
  char byte = 0;
  const ssize_t n = ::recv(m_socket, &byte, 1, MSG_PEEK | MSG_DONTWAIT);
  return n > 0 || (n < 0 && (errno == EAGAIN || errno == EWOULDBLOCK || errno == EINTR));
}

ssize_t BoundedStream::read(char* bytes, std::size_t size) {
  if (m_begin == m_end && !Fill()) return m_failed ? -1 : 0;
  const std::size_t count = std::min({size, m_end - m_begin, m_left});
  if (count == 0) {
    m_failed = true;
    return -1;
  }
  std::memcpy(bytes, m_buffer.data() + m_begin, count);
  m_begin += count;
  m_left -= count;
  return static_cast<ssize_t>(count);
}

/// Reads what is there into the empty buffer. False at the end of what the other side sends, and when it is too late.
bool BoundedStream::Fill() {
  if (m_failed || !WaitFor(POLLIN, m_until)) {
    m_failed = true;
    return false;
  }
  const ssize_t n = ::recv(m_socket, m_buffer.data(), m_buffer.size(), MSG_DONTWAIT);
  m_failed = n < 0;
  m_begin = 0;
  m_end = n > 0 ? static_cast<std::size_t>(n) : 0;
  return n > 0;
}

ssize_t BoundedStream::write(const char* bytes, std::size_t size) {
  const auto extra = std::chrono::milliseconds(size * 1000 / m_limits.bytesPerSecond);
  const Time until = std::chrono::steady_clock::now() + m_limits.write + extra;
  for (std::size_t done = 0; done < size && !m_failed;) {
    const ssize_t n = ::send(m_socket, bytes + done, size - done, MSG_NOSIGNAL | MSG_DONTWAIT);
    if (n > 0) {
      done += static_cast<std::size_t>(n);
    } else {
      const bool isFull = n < 0 && (errno == EAGAIN || errno == EWOULDBLOCK || errno == EINTR);
      m_failed = !isFull || !WaitFor(POLLOUT, until);
    }
  }
  return m_failed ? -1 : static_cast<ssize_t>(size);
}

void BoundedStream::get_remote_ip_and_port(std::string& ip, int& port) const {
  NameOf(m_socket, ::getpeername, ip, port);
}

void BoundedStream::get_local_ip_and_port(std::string& ip, int& port) const {
  NameOf(m_socket, ::getsockname, ip, port);
}

bool BoundedStream::WaitFor(short events, Time until) const {
  while (!m_ends) {
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(until - std::chrono::steady_clock::now());
    if (left.count() <= 0) return false;
    pollfd poll{m_socket, events, 0};
    const int n = ::poll(&poll, 1, static_cast<int>(std::min(left, kPollStep).count()));
    if (n > 0) return true;
    if (n < 0 && errno != EINTR) return false;
  }
  return false;
}

}  // namespace dtsdb::page
