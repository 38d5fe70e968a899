#include "tests/support/places.h"

#include <algorithm>
#include <filesystem>

namespace dtsdb::test {

std::string SourcePath(const std::string& path) { return DTSDB_SOURCE_DIR "/" + path; }

std::string DataPath(const std::string& path) { return DTSDB_DATA_DIR "/" + path; }

std::vector<std::string> XiidmSamples() {
  std::vector<std::string> names;
  for (const auto& entry : std::filesystem::directory_iterator(DataPath("xiidm"))) {
    const std::string ending = entry.path().extension().string();
    if (ending == ".xml" || ending == ".xiidm") names.push_back(entry.path().filename().string());
  }
  std::sort(names.begin(), names.end());
  return names;
}

}  // namespace dtsdb::test
