#include "rtdb/internal/store_copy.h"

#include <lmdb.h>
#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <memory>

#include "rtdb/internal/change_number.h"
#include "rtdb/internal/lmdb_value.h"
#include "rtdb/internal/store.h"
#include "rtdb/internal/store_file.h"

namespace dtsdb::internal::rtdb {
namespace {

/// Raises the first row number that was not given to `first`.
int RaiseRowNumber(MDB_txn* transaction, oid_t first) {
  MDB_dbi schemas = 0;
  if (const int result = mdb_dbi_open(transaction, Store::kSchemaTree, 0, &schemas); result != MDB_SUCCESS) {
    return result;
  }
  MDB_val key = Val(Store::kRowNumbersKey);
  MDB_val data{};
  std::uint64_t given = 0;
  if (mdb_get(transaction, schemas, &key, &data) == MDB_SUCCESS && data.mv_size == sizeof(given)) {
    std::memcpy(&given, data.mv_data, sizeof(given));
  }
  given = std::max<std::uint64_t>(given, first);
  data = {sizeof(given), &given};
  return mdb_put(transaction, schemas, &key, &data, 0);
}

int Amend(MDB_txn* transaction, std::optional<oid_t> firstRow) {
  MDB_dbi main = 0;
  int result = mdb_dbi_open(transaction, nullptr, 0, &main);
  if (result != MDB_SUCCESS) return result;
  MDB_val key = Val(kChangesKey);
  result = mdb_del(transaction, main, &key, nullptr);
  if (result != MDB_SUCCESS && result != MDB_NOTFOUND) return result;
  return firstRow ? RaiseRowNumber(transaction, *firstRow) : MDB_SUCCESS;
}

}  // namespace

int AmendCopy(const std::string& path, std::optional<oid_t> firstRow) {
  constexpr std::size_t kRoom = std::size_t{1} << 26;
  struct stat about {};
  if (::stat(path.c_str(), &about) != 0) return errno;
  MDB_env* env = nullptr;
  if (const int result = mdb_env_create(&env); result != MDB_SUCCESS) return result;
  const std::unique_ptr<MDB_env, void (*)(MDB_env*)> closed(env, mdb_env_close);
  mdb_env_set_maxdbs(env, 1);
  mdb_env_set_mapsize(env, static_cast<std::size_t>(about.st_size) + kRoom);
  int result = mdb_env_open(env, path.c_str(), MDB_NOSUBDIR | MDB_NOLOCK, kFileMode);
  MDB_txn* transaction = nullptr;
  if (result == MDB_SUCCESS) result = mdb_txn_begin(env, nullptr, 0, &transaction);
  if (result != MDB_SUCCESS) return result;
  result = Amend(transaction, firstRow);
  if (result == MDB_SUCCESS) return mdb_txn_commit(transaction);
  mdb_txn_abort(transaction);
  return result;
}

}  // namespace dtsdb::internal::rtdb
