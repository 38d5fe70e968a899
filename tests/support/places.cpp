#include "tests/support/places.h"

namespace dtsdb::test {

std::string SourcePath(const std::string& path) { return DTSDB_SOURCE_DIR "/" + path; }

std::string DataPath(const std::string& path) { return DTSDB_DATA_DIR "/" + path; }

}  // namespace dtsdb::test
