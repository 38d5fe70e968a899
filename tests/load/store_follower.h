/// \file
/// What comes into the trace and the log of a store, row for row.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "tests/load/account.h"

namespace dtsdb::load {

/// Reads what was added since it read last, in the order of insertion. Rows must not be pruned before.
class StoreFollower {
 public:
  explicit StoreFollower(const std::string& store);

  void Read();
  std::vector<TracedEvent> TakeEvents() { return std::exchange(m_events, {}); }
  std::vector<LogRow> TakeLog() { return std::exchange(m_log, {}); }
  /// A task that begins now takes rows again that are stamped from this second on.
  std::uint32_t TakenAgainFrom();

 private:
  void ReadTrace();
  void ReadLog();

  dbDatabase m_database{dbDatabase::dbReadOnly};
  oid_t m_lastTraced = 0;
  int m_nextLog = 0;
  std::vector<TracedEvent> m_events;
  std::vector<LogRow> m_log;
};

}  // namespace dtsdb::load
