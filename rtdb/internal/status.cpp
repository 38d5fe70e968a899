#include "rtdb/internal/status.h"

#include <lmdb.h>

#include <cerrno>

namespace dtsdb::internal::rtdb {
namespace {

dbErrors::dbErrorClass ErrorClassOf(int result) {
  switch (result) {
    case ENOMEM:
      return dbErrors::OutOfMemoryError;
    case MDB_MAP_FULL:
    case MDB_DBS_FULL:
    case MDB_READERS_FULL:
      return dbErrors::FileLimitExeeded;
    default:
      return dbErrors::FileError;
  }
}

}  // namespace

std::string Reason(int result) {
  switch (result) {
    case MDB_MAP_FULL:
      return "the store has reached its size limit";
    case MDB_READERS_FULL:
      return "too many readers at once";
    case MDB_DBS_FULL:
      return "too many tables";
    case MDB_MAP_RESIZED:
      return "another program has made the store larger than this program can see while its transactions are open";
    case MDB_CORRUPTED:
    case MDB_PAGE_NOTFOUND:
    case MDB_PANIC:
      return "the store is damaged";
    case MDB_INVALID:
      return "not a store of the realtime database";
    case MDB_VERSION_MISMATCH:
      return "written by another version of LMDB";
    default:
      return mdb_strerror(result);
  }
}

Status LmdbError(int result, const std::string& path, const char* operation) {
  return Status::Error(ErrorClassOf(result), path + ": " + operation + ": " + Reason(result));
}

}  // namespace dtsdb::internal::rtdb
