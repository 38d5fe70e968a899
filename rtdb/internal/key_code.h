/// \file
/// Keys of rows: the key columns in a form whose bytewise order is the columns' order, then the row's number.
///
/// Constants and forms here reach the disk.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "rtdb/descriptors.h"
#include "rtdb/reference.h"

namespace dtsdb::internal::rtdb {

/// LMDB's limit on a key.
inline constexpr std::size_t kMaxKeySize = 511;
inline constexpr std::size_t kRowNumberSize = 8;
/// What is left for the columns. A longer form is cut off, and the row decides about order and equality.
inline constexpr std::size_t kMaxKeyForm = kMaxKeySize - kRowNumberSize;

/// Appends the form of a number in the machine's own bytes: big-endian, with the sign turned.
void AppendNumber(std::string& key, dbField::FieldTypes type, const void* bytes);
/// Appends the form of a text: its bytes and a zero byte, so that no text's form begins another's.
void AppendText(std::string& key, std::string_view text);

/// Cuts a form down to kMaxKeyForm. True if that took anything away.
bool Shorten(std::string& key);

void AppendRowNumber(std::string& key, oid_t number);
/// The row number at the end of a key, 0 for a key that has none.
oid_t RowNumberOf(std::string_view key);

}  // namespace dtsdb::internal::rtdb
