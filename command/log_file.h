/// \file
/// The logs of the library, as the command keeps them.
#pragma once

#include <optional>
#include <string>

#include "model/whole_file.h"

namespace dtsdb::tools {

/// As long as this lives, what the library logs goes to one file, or nowhere. The file takes the place of an old one
/// when the log has ended. A command that fails leaves the log of what it has come to; one that fails before the
/// library has logged anything leaves the old file.
class LogFile {
 public:
  /// Begins the log that is to be the file `path`; an empty path means no log. A Failure when it can't be made.
  explicit LogFile(const std::string& path);
  LogFile(const LogFile&) = delete;
  LogFile& operator=(const LogFile&) = delete;
  /// Afterwards the logs go nowhere.
  ~LogFile();

  /// Ends the log. A Failure when not all of it could be written.
  void Close();

 private:
  [[noreturn]] void Refuse() const;

  std::string m_path;
  std::optional<WholeFile> m_file;
  bool m_hasLines = false;
};

}  // namespace dtsdb::tools
