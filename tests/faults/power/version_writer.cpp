// version_writer FOLDER KIND COUNT: writes so many versions of what is called KIND (tests/faults/power/versions.h) in
// FOLDER, and marks the end of each.

#include <fcntl.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <exception>
#include <string>

#include "tests/faults/power/versions.h"
#include "tests/faults/record.h"

namespace {

using dtsdb::test::Kept;

int WriteVersions(const std::string& folder, Kept kept, int count) {
  const int mark = ::open((folder + '/' + dtsdb::test::kMarkFile).c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0644);
  dtsdb::test::VersionWriter writer(kept, folder);
  for (int version = 1; version <= count; ++version) {
    writer.Write(version);
    const std::string text = std::to_string(version);
    if (::write(mark, text.data(), text.size()) < 0) return 1;
  }
  return 0;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 4) return 2;
  try {
    for (const Kept kept : {Kept::kObjectFile, Kept::kTextTables, Kept::kStore}) {
      if (dtsdb::test::NameOf(kept) == std::string(argv[2])) return WriteVersions(argv[1], kept, std::atoi(argv[3]));
    }
  } catch (const std::exception& error) {
    std::fprintf(stderr, "%s\n", error.what());
  }
  return 1;
}
