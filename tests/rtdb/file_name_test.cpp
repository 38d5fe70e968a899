#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "rtdb/file_name.h"
#include "samples.h"

using dtsdb::rtdb::FileOf;
using dtsdb::rtdb::IdentityOf;
using dtsdb::test::Folder;

namespace fs = std::filesystem;

namespace {

TEST(FileName, EndsInFdbUnlessOnlyTheBareNameExists) {
  const Folder folder;
  const std::string name = folder.File("grid");
  EXPECT_EQ(FileOf(name), name + ".fdb");
  EXPECT_EQ(FileOf(name + ".fdb"), name + ".fdb");
  std::ofstream(name) << "x";
  EXPECT_EQ(FileOf(name), name);
  std::ofstream(name + ".fdb") << "x";
  EXPECT_EQ(FileOf(name), name + ".fdb");
}

TEST(FileName, IdentityIsTheAbsolutePathWithoutTheEnding) {
  const Folder folder;
  const std::string name = fs::weakly_canonical(folder.File("grid")).string();
  EXPECT_EQ(IdentityOf(name + ".fdb"), name);
  EXPECT_EQ(IdentityOf(name), name);
  EXPECT_EQ(IdentityOf(fs::relative(name + ".fdb").string()), name);
}

TEST(FileName, IdentityIsThatOfTheFileBehindLinks) {
  const Folder folder;
  const std::string file = folder.File("grid.fdb");
  std::ofstream(file) << "x";
  fs::create_symlink(file, folder.File("other.fdb"));
  EXPECT_EQ(IdentityOf(folder.File("other.fdb")), IdentityOf(file));
}

}  // namespace
