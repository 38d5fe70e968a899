#include "command/progress.h"

#include <fmt/format.h>
#include <unistd.h>

#include <cstdio>
#include <utility>

namespace dtsdb::tools {
namespace {

constexpr std::chrono::milliseconds kBetweenLines{100};
constexpr const char* kToBeginAndClear = "\r\033[K";

void Write(const std::string& text) {
  std::fputs(text.c_str(), stderr);
  std::fflush(stderr);
}

}  // namespace

Progress::Progress(std::size_t total, std::string what, std::chrono::milliseconds quiet)
    : m_total(total), m_what(std::move(what)), m_isShown(isatty(STDERR_FILENO) != 0), m_next(Clock::now() + quiet) {}

Progress::~Progress() {
  if (m_isOnScreen) Write(kToBeginAndClear);
}

void Progress::Show(std::size_t done) {
  if (!m_isShown || m_total == 0 || Clock::now() < m_next) return;
  m_next = Clock::now() + kBetweenLines;
  m_isOnScreen = true;
  Write(fmt::format("{}{} of {} {}, {} %", kToBeginAndClear, done, m_total, m_what, 100 * done / m_total));
}

}  // namespace dtsdb::tools
