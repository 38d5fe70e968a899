/// \file
/// Realtime databases as the commands use them: by name, and with failures reported in one line.
#pragma once

#include <csignal>
#include <string>

#include "rtdb/backend.h"

namespace dtsdb::tools {

/// Keeps the signals that end a program waiting while it lives, where the database must be closed before.
class HeldSignals {
 public:
  HeldSignals();
  HeldSignals(const HeldSignals&) = delete;
  HeldSignals& operator=(const HeldSignals&) = delete;
  ~HeldSignals();

 private:
  sigset_t m_before{};
};

/// A realtime database that is open as long as this lives. What was not committed by then is lost.
class RealtimeDatabase {
 public:
  /// Opens NAME.fdb, NAME being `name` with or without that ending. To read, the database must exist and nothing in
  /// it is changed; to write, it is made where there is none. Throws Failure when it can't be opened.
  RealtimeDatabase(const std::string& name, dbDatabase::dbAccessType access);
  RealtimeDatabase(const RealtimeDatabase&) = delete;
  RealtimeDatabase& operator=(const RealtimeDatabase&) = delete;
  ~RealtimeDatabase();

  dbDatabase* Db() { return &m_database; }

  /// Throws Failure with the first error that the database has reported, if it has: its calls only return 0 or false.
  void Check() const;

 private:
  /// Keeps the first error. Where the database leaves a failed call by an exception, that becomes a Failure.
  class Database : public dbDatabase {
   public:
    Database(const RealtimeDatabase& owner, dbAccessType access);
    void handleError(dbErrorClass error, char const* message, int argument) override;

    std::string firstError;

   private:
    const RealtimeDatabase& m_owner;
  };

  HeldSignals m_signals;
  std::string m_file;
  Database m_database;
};

}  // namespace dtsdb::tools
