#include "rtdb/internal/key_code.h"

#include <bit>
#include <cstring>

namespace dtsdb::internal::rtdb {
namespace {

template <class Unsigned>
void AppendBigEndian(std::string& key, Unsigned value) {
  char bytes[sizeof(Unsigned)];
  for (std::size_t i = 0; i < sizeof(Unsigned); ++i) {
    bytes[i] = static_cast<char>(value >> (8 * (sizeof(Unsigned) - 1 - i)));
  }
  key.append(bytes, sizeof(bytes));
}

template <class Unsigned>
Unsigned Read(const void* bytes) {
  Unsigned value;
  std::memcpy(&value, bytes, sizeof(value));
  return value;
}

template <class Unsigned>
constexpr Unsigned kSignBit = static_cast<Unsigned>(Unsigned{1} << (8 * sizeof(Unsigned) - 1));

template <class Unsigned>
void AppendSigned(std::string& key, const void* bytes) {
  AppendBigEndian(key, static_cast<Unsigned>(Read<Unsigned>(bytes) ^ kSignBit<Unsigned>));
}

/// Positive numbers get the sign bit, negative ones are complemented: the order of the values, -0 below 0.
template <class Unsigned>
void AppendReal(std::string& key, const void* bytes) {
  const auto bits = Read<Unsigned>(bytes);
  AppendBigEndian(key, static_cast<Unsigned>((bits & kSignBit<Unsigned>) != 0 ? ~bits : bits | kSignBit<Unsigned>));
}

}  // namespace

void AppendNumber(std::string& key, dbField::FieldTypes type, const void* bytes) {
  switch (type) {
    case dbField::tpBool:
    case dbField::tpNat1:
      return AppendBigEndian(key, Read<std::uint8_t>(bytes));
    case dbField::tpInt1:
      return AppendSigned<std::uint8_t>(key, bytes);
    case dbField::tpNat2:
      return AppendBigEndian(key, Read<std::uint16_t>(bytes));
    case dbField::tpInt2:
      return AppendSigned<std::uint16_t>(key, bytes);
    case dbField::tpNat4:
      return AppendBigEndian(key, Read<std::uint32_t>(bytes));
    case dbField::tpInt4:
      return AppendSigned<std::uint32_t>(key, bytes);
    case dbField::tpInt8:
      return AppendSigned<std::uint64_t>(key, bytes);
    case dbField::tpReal4:
      return AppendReal<std::uint32_t>(key, bytes);
    case dbField::tpReal8:
      return AppendReal<std::uint64_t>(key, bytes);
    case dbField::tpString:
    case dbField::tpRawBinary:
      return;
  }
}

void AppendText(std::string& key, std::string_view text) {
  key.append(text);
  key.push_back('\0');
}

bool Shorten(std::string& key) {
  if (key.size() <= kMaxKeyForm) return false;
  key.resize(kMaxKeyForm);
  return true;
}

void AppendRowNumber(std::string& key, oid_t number) { AppendBigEndian(key, static_cast<std::uint64_t>(number)); }

oid_t RowNumberOf(std::string_view key) {
  if (key.size() < kRowNumberSize) return 0;
  oid_t number = 0;
  for (const char byte : key.substr(key.size() - kRowNumberSize)) {
    number = number << 8 | static_cast<unsigned char>(byte);
  }
  return number;
}

}  // namespace dtsdb::internal::rtdb
