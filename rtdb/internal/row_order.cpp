#include "rtdb/internal/row_order.h"

#include <algorithm>
#include <vector>

#include "rtdb/internal/key_code.h"
#include "rtdb/internal/lmdb_value.h"

namespace dtsdb::internal::rtdb {
namespace {

/// The row number as it stands at the key's end, which is the form that the order's tree is sorted by.
std::string_view NumberPart(std::string_view key) {
  return key.size() < kRowNumberSize ? key : key.substr(key.size() - kRowNumberSize);
}

bool IsWholeNumber(dbField::FieldTypes type) {
  switch (type) {
    case dbField::tpInt1:
    case dbField::tpNat1:
    case dbField::tpInt2:
    case dbField::tpNat2:
    case dbField::tpInt4:
    case dbField::tpNat4:
    case dbField::tpInt8:
      return true;
    default:
      return false;
  }
}

}  // namespace

bool HasOrderTree(const Schema& schema) {
  const auto isKey = [](const Column& column) { return column.key; };
  const auto key = std::find_if(schema.columns.begin(), schema.columns.end(), isKey);
  return key != schema.columns.end() && IsWholeNumber(key->type) && std::none_of(key + 1, schema.columns.end(), isKey);
}

std::string OrderTreeName(std::string_view table) { return "@order " + std::string(table); }

int PutOrder(MDB_cursor* order, std::string_view key) {
  MDB_val number = Val(NumberPart(key));
  MDB_val data = Val(key);
  // A new row's number is the highest.
  const int result = mdb_cursor_put(order, &number, &data, MDB_APPEND);
  return result == MDB_KEYEXIST ? mdb_cursor_put(order, &number, &data, 0) : result;
}

int DeleteOrder(MDB_txn* transaction, MDB_dbi order, std::string_view key) {
  MDB_val number = Val(NumberPart(key));
  const int result = mdb_del(transaction, order, &number, nullptr);
  return result == MDB_NOTFOUND ? MDB_SUCCESS : result;
}

int BuildOrder(MDB_txn* transaction, MDB_dbi rows, MDB_dbi order) {
  int result = mdb_drop(transaction, order, 0);
  if (result != MDB_SUCCESS) return result;
  MDB_cursor* cursor = nullptr;
  result = mdb_cursor_open(transaction, rows, &cursor);
  if (result != MDB_SUCCESS) return result;
  std::vector<std::string> keys;
  MDB_val key{};
  MDB_val data{};
  while ((result = mdb_cursor_get(cursor, &key, &data, MDB_NEXT)) == MDB_SUCCESS) keys.emplace_back(View(key));
  mdb_cursor_close(cursor);
  if (result != MDB_NOTFOUND) return result;
  std::sort(keys.begin(), keys.end(),
            [](const std::string& a, const std::string& b) { return NumberPart(a) < NumberPart(b); });
  result = mdb_cursor_open(transaction, order, &cursor);
  if (result != MDB_SUCCESS) return result;
  for (std::size_t i = 0; i < keys.size() && result == MDB_SUCCESS; ++i) result = PutOrder(cursor, keys[i]);
  mdb_cursor_close(cursor);
  return result;
}

}  // namespace dtsdb::internal::rtdb
