/// \file
/// The viewers' own copies: whose there are, and how many there may be.
#pragma once

#include <chrono>
#include <cstddef>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <utility>

#include "analysis/error.h"
#include "page/what_if.h"

namespace dtsdb::page {

/// What a viewer has of its own. `mutex` is held by the one request of the viewer that works on it.
struct ViewerCopy {
  std::mutex mutex;
  std::unique_ptr<WhatIf> whatIf;  ///< none until the first events, and after an error
};

/// The copies of all viewers, by the names that these have chosen. Any thread may call it.
///
/// There are at most as many as allowed. A further viewer takes the place of the one that has waited longest, if that
/// was for long enough.
class WhatIfCopies {
 public:
  using Clock = std::function<std::chrono::steady_clock::time_point()>;

  WhatIfCopies(std::size_t most, std::chrono::seconds idle, Clock clock = std::chrono::steady_clock::now)
      : m_most(most), m_idle(idle), m_clock(std::move(clock)) {}

  /// The viewer's copy; null when it has none.
  std::shared_ptr<ViewerCopy> Find(const std::string& viewer);
  /// The same, or a new one. An Error when there are as many as allowed and all are in use.
  analysis::Result<std::shared_ptr<ViewerCopy>> FindOrMake(const std::string& viewer);
  void Drop(const std::string& viewer);
  std::size_t Count() const;

 private:
  struct Entry {
    std::shared_ptr<ViewerCopy> copy;
    std::chrono::steady_clock::time_point used;
  };

  bool MakeRoom();

  std::size_t m_most;
  std::chrono::seconds m_idle;
  Clock m_clock;
  mutable std::mutex m_mutex;
  std::map<std::string, Entry> m_copies;
};

}  // namespace dtsdb::page
