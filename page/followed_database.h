/// \file
/// A realtime database that is read anew whenever somebody has changed it.
#pragma once

#include <array>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "formats/realtime.h"
#include "model/dtsdb.h"
#include "model/table_kinds.h"

namespace dtsdb::page {

/// What a look at a database has brought.
struct DatabaseLook {
  enum class Kind {
    kSame,         ///< nobody has changed it
    kRead,         ///< it was read
    kLost,         ///< it is gone, or can't be read
    kNewerLayout,  ///< likewise: another program has added columns that this one doesn't know
  };

  Kind kind = Kind::kSame;
  DTSDB tables{};                    ///< kRead: all but the log of the topology, of one commit
  std::vector<TableKind> changed{};  ///< kRead: the tables that may differ from those of the reading before
  std::string why{};                 ///< kLost and kNewerLayout: one line
};

/// Reads a realtime database and never writes into it.
///
/// A look costs one short read transaction, which asks for the numbers of the last changes of all tables. Only where
/// one has changed the tables are read, in the same transaction, which is ended before the look returns. A database
/// that counts no changes is read so often that it takes at most a twentieth of the time.
///
/// All looks are made by one thread.
class FollowedDatabase {
 public:
  /// `name` as in rtdb:NAME.
  explicit FollowedDatabase(std::string name);
  FollowedDatabase(const FollowedDatabase&) = delete;
  FollowedDatabase& operator=(const FollowedDatabase&) = delete;

  /// The first look reads. A database that was lost is opened anew, at most once a second.
  DatabaseLook Look();

 private:
  using Numbers = std::array<std::uint64_t, kTableCount>;

  /// Which file stands under the name, and when it was written.
  struct FileStamp {
    std::filesystem::file_time_type written{};
    std::uintmax_t size = 0;
    bool operator==(const FileStamp&) const = default;
  };

  DatabaseLook LookAt(tools::RealtimeDatabase& database);
  DatabaseLook Read(tools::RealtimeDatabase& database, std::vector<TableKind> changed);
  DatabaseLook Lose(const std::string& why);
  std::vector<TableKind> ChangedSince(const Numbers& numbers) const;
  bool WasWrittenUnseen(double now);
  FileStamp Stamp() const;

  std::string m_name;
  std::string m_file;
  std::unique_ptr<tools::RealtimeDatabase> m_database;  // none while it is lost
  std::optional<Numbers> m_numbers;                     // of the last reading; none before, and once it was opened anew
  FileStamp m_stamp;
  double m_openDue = 0;  // in seconds of the steady clock, as all below
  double m_readDue = 0;
  double m_stampDue = 0;
};

}  // namespace dtsdb::page
