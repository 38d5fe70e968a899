/// \file
/// At most one topology task for a database.
#pragma once

#include <string>

namespace dtsdb::tools {

/// The right to be the topology task of a database, as long as this lives.
///
/// It is a lock of the system on the file DATABASE-task beside the database, which goes with the process however that
/// ends. The file contains the number of the process that had the lock last, and the device and inode of its database;
/// it stays. One whose holder has a database that was removed or renamed is replaced.
class TaskLock {
 public:
  /// `database` is the name of an existing database that this process has not open. Throws Failure when another process
  /// is its task, with that process's number, and when the file can't be written.
  explicit TaskLock(const std::string& database);
  TaskLock(const TaskLock&) = delete;
  TaskLock& operator=(const TaskLock&) = delete;
  ~TaskLock();

 private:
  int m_file = -1;
};

}  // namespace dtsdb::tools
