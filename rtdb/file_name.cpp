#include "rtdb/file_name.h"

#include <filesystem>
#include <string_view>
#include <system_error>

namespace fs = std::filesystem;

namespace dtsdb::rtdb {
namespace {

constexpr std::string_view kEnding = ".fdb";

bool IsFile(const std::string& path) {
  std::error_code ignored;
  return fs::is_regular_file(path, ignored);
}

}  // namespace

std::string FileOf(const std::string& name) {
  const std::string full = name.ends_with(kEnding) ? name : name + std::string(kEnding);
  return !IsFile(full) && IsFile(name) ? name : full;
}

std::string IdentityOf(const std::string& file) {
  std::error_code error;
  const fs::path resolved = fs::weakly_canonical(fs::absolute(file, error), error);
  const std::string path = error ? file : resolved.string();
  return path.ends_with(kEnding) ? path.substr(0, path.size() - kEnding.size()) : path;
}

}  // namespace dtsdb::rtdb
