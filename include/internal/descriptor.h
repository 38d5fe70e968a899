/// \file
/// An open file that is closed with its owner.
#pragma once

#include <unistd.h>

#include <utility>

namespace dtsdb::internal {

/// A descriptor that is closed with it.
class Descriptor {
 public:
  explicit Descriptor(int fd = -1) : m_fd(fd) {}
  Descriptor(Descriptor&& other) noexcept : m_fd(other.Release()) {}
  Descriptor& operator=(Descriptor&& other) noexcept {
    if (this != &other) {
      if (m_fd >= 0) ::close(m_fd);
      m_fd = other.Release();
    }
    return *this;
  }
  ~Descriptor() {
    if (m_fd >= 0) ::close(m_fd);
  }
  int Get() const { return m_fd; }
  bool IsOpen() const { return m_fd >= 0; }

 private:
  int Release() { return std::exchange(m_fd, -1); }

  int m_fd;
};

}  // namespace dtsdb::internal
