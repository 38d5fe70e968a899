/// \file
/// What the programs of this example share.
#pragma once

#include <chrono>
#include <csignal>
#include <cstdint>
#include <iostream>
#include <string>
#include <thread>
#include <utility>

#include "rtdb/volma_rtdb.h"

namespace control_centre {

inline volatile std::sig_atomic_t g_ended = 0;

/// Lets SIGINT and SIGTERM end the program between two commits.
inline void EndOnSignals() {
  for (const int signal : {SIGINT, SIGTERM}) std::signal(signal, [](int) { g_ended = 1; });
}

inline bool HasEnded() { return g_ended != 0; }

inline void Pause(int milliseconds) { std::this_thread::sleep_for(std::chrono::milliseconds(milliseconds)); }

/// The moment, in milliseconds since 1970.
inline long long Now() {
  const auto now = std::chrono::system_clock::now().time_since_epoch();
  return std::chrono::duration_cast<std::chrono::milliseconds>(now).count();
}

/// Notices that other programs have changed a table. A look costs the same whatever the table's size.
template <class Row>
class TableWatch {
 public:
  explicit TableWatch(dbDatabase& database) : m_database(database) {}

  /// True when the table has changed since the last look; the first look is true. Ends its transaction.
  bool HasChanged() {
    const std::uint64_t number = Number();
    m_database.commit();
    return std::exchange(m_seen, number) != number;
  }

  /// Takes what this program itself has just committed for seen.
  void Skip() {
    m_seen = Number();
    m_database.commit();
  }

 private:
  std::uint64_t Number() { return dtsdb::rtdb::ChangeNumber(&m_database, m_database.lookupTable(&Row::dbDescriptor)); }

  dbDatabase& m_database;
  std::uint64_t m_seen = UINT64_MAX;
};

/// Opens the database that the first argument names; false after a message.
inline bool Open(dbDatabase& database, int argc, char** argv, const char* usage) {
  if (argc < 2) {
    std::cerr << "usage: " << argv[0] << ' ' << usage << '\n';
    return false;
  }
  if (database.open(argv[1])) return true;
  std::cerr << argv[1] << ": the database can't be opened\n";
  return false;
}

}  // namespace control_centre
