#include "include/write_whole.h"

#include <array>
#include <cstdio>
#include <random>

namespace dtsdb {
namespace {

/// What a name has behind its front: the mark, and digits that make it unique.
constexpr std::string_view kTemporaryMark = "dtsdb-";
constexpr std::size_t kTemporaryDigits = 6;

}  // namespace

std::string NewTemporaryName(const std::string& front) {
  std::random_device random;  // one for each call: several threads may write files
  std::array<char, kTemporaryDigits + 1> digits{};
  std::snprintf(digits.data(), digits.size(), "%06x", random() & 0xFFFFFFU);
  return front + std::string(kTemporaryMark) + digits.data();
}

bool IsTemporaryName(std::string_view name) {
  if (name.size() < kTemporaryMark.size() + kTemporaryDigits) return false;
  const std::string_view digits = name.substr(name.size() - kTemporaryDigits);
  const std::string_view rest = name.substr(0, name.size() - kTemporaryDigits);
  if (!rest.ends_with(kTemporaryMark)) return false;
  const std::string_view front = rest.substr(0, rest.size() - kTemporaryMark.size());
  return digits.find_first_not_of("0123456789abcdef") == std::string_view::npos &&
         (front.empty() || (front.size() > 2 && front.front() == '.' && front.back() == '.'));
}

}  // namespace dtsdb
