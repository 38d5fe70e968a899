/// \file
/// Realtime databases as the commands use them: by name, and with failures told in one line.
#pragma once

#include <optional>
#include <string>

#include "rtdb/backend.h"

namespace dtsdb::tools {

/// The name of the realtime database that the MODEL `rtdb:NAME` stands for; nothing for any other MODEL.
std::optional<std::string> RealtimeName(const std::string& model);

/// A realtime database that is open as long as this lives. What was not committed by then is lost.
class RealtimeDatabase {
 public:
  /// Opens NAME.fdb, NAME being `name` with or without that ending. To read, the database must exist and nothing in
  /// it is changed; to write, it is made where there is none. Throws Failure when it can't be opened.
  RealtimeDatabase(const std::string& name, dbDatabase::dbAccessType access);
  RealtimeDatabase(const RealtimeDatabase&) = delete;
  RealtimeDatabase& operator=(const RealtimeDatabase&) = delete;

  dbDatabase* Db() { return &m_database; }

  /// Throws Failure with the first error that the database has told of, if it has: its calls only give 0 or false.
  void Check() const;

 private:
  static void Take(int error, char const* message, int argument, void* self);

  std::string m_name;
  std::string m_error;
  dbDatabase m_database;
};

}  // namespace dtsdb::tools
