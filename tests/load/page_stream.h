/// \file
/// A viewer of the page, as far as the server sees one: a connection over which events come.
#pragma once

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <cstdint>
#include <string>
#include <utility>

namespace dtsdb::load {

/// Asks for the events of a page, and counts what comes.
class PageStream {
 public:
  /// What has come since the last call.
  struct Taken {
    std::int64_t bytes = 0;
    std::int64_t events = 0;
  };

  /// `url` is http://127.0.0.1:PORT/TOKEN/. A connection that fails isn't open.
  explicit PageStream(const std::string& url) {
    const std::size_t host = url.find("//") + 2;
    const std::size_t path = url.find('/', host);
    const std::size_t colon = url.find(':', host);
    if (path == std::string::npos || colon == std::string::npos || colon > path) return;
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(static_cast<std::uint16_t>(std::stoi(url.substr(colon + 1))));
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    m_socket = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    const std::string request = "GET " + url.substr(path) +
                                "api/events HTTP/1.1\r\nHost: " + url.substr(host, path - host) +
                                "\r\nAccept: text/event-stream\r\n\r\n";
    const auto length = static_cast<ssize_t>(request.size());
    const bool sent = ::connect(m_socket, reinterpret_cast<const sockaddr*>(&address), sizeof(address)) == 0 &&
                      ::send(m_socket, request.data(), request.size(), MSG_NOSIGNAL) == length;
    if (!sent) Close();
  }
  PageStream(PageStream&& other) noexcept : m_socket(std::exchange(other.m_socket, -1)) {}
  PageStream& operator=(PageStream&&) = delete;
  ~PageStream() { Close(); }

  int Socket() const { return m_socket; }
  bool IsOpen() const { return m_socket >= 0; }

  /// Takes what has come. The stream is closed when the server has ended it.
  Taken Take() {
    char room[64 * 1024];
    Taken taken;
    const ssize_t got = ::recv(m_socket, room, sizeof(room), MSG_DONTWAIT);
    if (got == 0) Close();
    if (got <= 0) return taken;
    taken.bytes = got;
    // An event ends with an empty line; that of the answer's head counts as one, too.
    for (ssize_t i = 0; i < got; ++i) {
      if (room[i] == '\n' && m_last == '\n') ++taken.events;
      if (room[i] != '\r') m_last = room[i];
    }
    return taken;
  }

 private:
  void Close() {
    if (m_socket >= 0) ::close(std::exchange(m_socket, -1));
  }

  int m_socket = -1;
  char m_last = 0;
};

}  // namespace dtsdb::load
