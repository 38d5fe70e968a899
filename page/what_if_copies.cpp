#include "page/what_if_copies.h"

#include <fmt/format.h>

#include <algorithm>

namespace dtsdb::page {

using analysis::Error;
using analysis::ErrorCode;

std::shared_ptr<ViewerCopy> WhatIfCopies::Find(const std::string& viewer) {
  const std::lock_guard lock(m_mutex);
  const auto found = m_copies.find(viewer);
  if (found == m_copies.end()) return nullptr;
  found->second.used = m_clock();
  return found->second.copy;
}

analysis::Result<std::shared_ptr<ViewerCopy>> WhatIfCopies::FindOrMake(const std::string& viewer) {
  if (auto known = Find(viewer)) return known;
  const std::lock_guard lock(m_mutex);
  if (!MakeRoom()) {
    return tl::unexpected(Error{ErrorCode::kInternal,
                                fmt::format("{} viewers are trying something out already; try again later", m_most),
                                viewer});
  }
  return m_copies.emplace(viewer, Entry{std::make_shared<ViewerCopy>(), m_clock()}).first->second.copy;
}

bool WhatIfCopies::MakeRoom() {
  if (m_copies.size() < m_most) return true;
  const auto oldest = std::min_element(m_copies.begin(), m_copies.end(),
                                       [](const auto& a, const auto& b) { return a.second.used < b.second.used; });
  if (oldest == m_copies.end() || m_clock() - oldest->second.used < m_idle) return false;
  m_copies.erase(oldest);
  return true;
}

void WhatIfCopies::Drop(const std::string& viewer) {
  const std::lock_guard lock(m_mutex);
  m_copies.erase(viewer);
}

std::size_t WhatIfCopies::Count() const {
  const std::lock_guard lock(m_mutex);
  return m_copies.size();
}

}  // namespace dtsdb::page
