/// \file
/// The logs of the library, as the command keeps them.
#pragma once

#include <fstream>
#include <string>

namespace dtsdb::tools {

/// As long as this lives, what the library logs goes to one file, or nowhere.
class LogFile {
 public:
  /// Makes the file `path`, or empties it; an empty path means no log. A Failure when it can't be made.
  explicit LogFile(const std::string& path);
  LogFile(const LogFile&) = delete;
  LogFile& operator=(const LogFile&) = delete;
  /// Afterwards the logs go nowhere.
  ~LogFile();

  /// Ends the log. A Failure when not all of it could be written.
  void Close();

 private:
  std::string m_path;
  std::ofstream m_file;
};

}  // namespace dtsdb::tools
