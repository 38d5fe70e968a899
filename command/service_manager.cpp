#include "command/service_manager.h"

#include <systemd/sd-daemon.h>

#include <algorithm>
#include <cstdint>
#include <limits>

namespace dtsdb::tools {
namespace {

int HalfOfWatchdog() {
  std::uint64_t microseconds = 0;
  constexpr std::uint64_t kNever = std::numeric_limits<int>::max();
  if (sd_watchdog_enabled(0, &microseconds) <= 0) return static_cast<int>(kNever);
  return static_cast<int>(std::clamp<std::uint64_t>(microseconds / 2000, 1, kNever));
}

}  // namespace

ServiceManager::ServiceManager() : m_longestSilence(HalfOfWatchdog()) {}

void ServiceManager::Ready() const { sd_notify(0, "READY=1"); }

void ServiceManager::Alive() const { sd_notify(0, "WATCHDOG=1"); }

void ServiceManager::Stopping() const { sd_notify(0, "STOPPING=1"); }

}  // namespace dtsdb::tools
