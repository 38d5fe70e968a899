/// \file
/// The databases at the two ends of a relay, by name.
#pragma once

#include <memory>
#include <optional>
#include <string>

#include "formats/realtime.h"
#include "relay/copy.h"
#include "relay/database_image.h"

namespace dtsdb::relay {

/// A database that is published. It is only read; one that was lost is opened anew by the next reading.
class PublishedDatabase {
 public:
  /// Throws tools::Failure when it can't be opened.
  explicit PublishedDatabase(std::string name);

  /// As DatabaseImage::Read. Throws tools::Failure when the database can't be read.
  std::optional<Commit> Read(DatabaseImage& image);

 private:
  std::string m_name;
  std::unique_ptr<tools::RealtimeDatabase> m_database;  // none while it is lost
  bool m_isNew = true;                                  // it was opened since the last reading
};

/// A copy that a follower keeps. It is made where there is none.
class KeptCopy {
 public:
  /// Throws tools::Failure when it can't be opened, and for a database that has rows and is no copy.
  explicit KeptCopy(const std::string& name);

  Copy& Rows() { return m_copy; }

 private:
  tools::RealtimeDatabase m_database;
  Copy m_copy;
};

/// The note of a copy; nothing for a database that is none. Throws tools::Failure when it can't be read.
std::optional<CopyNote> NoteOf(const std::string& name);

/// Makes a copy an ordinary database, with its rows. False where it was none. Throws tools::Failure.
bool ReleaseCopy(const std::string& name);

}  // namespace dtsdb::relay
