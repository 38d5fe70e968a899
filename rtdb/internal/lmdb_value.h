/// \file
/// Bytes to LMDB and back. Nothing is copied.
#pragma once

#include <lmdb.h>

#include <string_view>

namespace dtsdb::internal::rtdb {

/// LMDB leaves bytes that it is given alone, though its type does not show it.
inline MDB_val Val(std::string_view bytes) { return {bytes.size(), const_cast<char*>(bytes.data())}; }

inline std::string_view View(const MDB_val& value) { return {static_cast<const char*>(value.mv_data), value.mv_size}; }

}  // namespace dtsdb::internal::rtdb
