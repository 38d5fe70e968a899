#include "rtdb/internal/change_number.h"

#include <algorithm>
#include <cstring>

#include "rtdb/internal/lmdb_value.h"

namespace dtsdb::internal::rtdb {
namespace {

using Number = std::uint64_t;

/// The list's bytes, empty where there is none or where it is damaged.
int GetList(MDB_txn* transaction, MDB_dbi main, std::string_view& list) {
  MDB_val key = Val(kChangesKey);
  MDB_val data{};
  const int result = mdb_get(transaction, main, &key, &data);
  if (result == MDB_SUCCESS && data.mv_size % sizeof(Number) == 0) list = View(data);
  return result == MDB_NOTFOUND ? MDB_SUCCESS : result;
}

}  // namespace

int PutChangeNumber(MDB_txn* transaction, MDB_dbi main, const std::vector<std::uint32_t>& places) {
  if (places.empty()) return MDB_SUCCESS;
  std::string_view before;
  if (const int result = GetList(transaction, main, before); result != MDB_SUCCESS) return result;
  const std::size_t count = *std::max_element(places.begin(), places.end()) + std::size_t{1};
  std::string list(std::max(before.size(), count * sizeof(Number)), '\0');
  std::copy(before.begin(), before.end(), list.begin());
  const Number number = mdb_txn_id(transaction);
  for (const std::size_t place : places) std::memcpy(&list[place * sizeof(Number)], &number, sizeof(number));
  MDB_val key = Val(kChangesKey);
  MDB_val data = Val(list);
  return mdb_put(transaction, main, &key, &data, 0);
}

int GetChangeNumber(MDB_txn* transaction, MDB_dbi main, std::uint32_t place, std::uint64_t& number) {
  number = 0;
  std::string_view list;
  if (const int result = GetList(transaction, main, list); result != MDB_SUCCESS) return result;
  if (place >= list.size() / sizeof(Number)) return MDB_SUCCESS;
  std::memcpy(&number, list.data() + place * sizeof(Number), sizeof(number));
  // Damaged, or of a file that was copied into one which counts its transactions anew.
  if (number > mdb_txn_id(transaction)) number = 0;
  return MDB_SUCCESS;
}

}  // namespace dtsdb::internal::rtdb
