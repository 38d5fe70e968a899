// Any bytes as a store file: refused with a message, or opened and read, table by table, and written to.
//
// The first byte chooses: an even one makes the rest the file; an odd one leaves a good small store, in which the rest,
// cut into five bytes each, puts single bytes at places of the file.
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

#include "fuzz/any_model.h"
#include "fuzz/byte_source.h"
#include "fuzz/require.h"
#include "fuzz/small_store.h"
#include "rtdb/volma_rtdb.h"

namespace {

using namespace dtsdb;

/// The bytes of a store with the small model.
std::string GoodFile() {
  const fuzz::StoreFolder folder;
  dbDatabase database;
  fuzz::Require(database.open(folder.File().c_str(), folder.File().c_str()), "the good store opens");
  DTSDB model;
  fuzz::FillSmallModel(model);
  model.WriteFastdb(&database);
  database.close();
  std::ifstream file(folder.File(), std::ios::binary);
  return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

std::string FileOf(fuzz::ByteSource bytes) {
  if (bytes.Byte() % 2 == 0) return std::string(bytes.Rest());
  static const std::string good = GoodFile();
  std::string file = good;
  while (!bytes.IsEmpty()) {
    std::size_t place = 0;
    for (int i = 0; i < 4; ++i) place = place * 256 + static_cast<std::size_t>(bytes.Byte());
    file[place % file.size()] = static_cast<char>(bytes.Byte());
  }
  return file;
}

void ReadAndWrite(dbDatabase& database) {
  ForEachRowClass([&]<class Row> {
    dbCursor<Row> cursor(&database);
    cursor.select();
    for (const Row* row = cursor.get(); row != nullptr; row = cursor.next()) continue;
  });
  DTSDB model;
  model.ReadFastdb(&database);
  model.WriteFastdb(&database);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const fuzz::StoreFolder folder;
  const std::string bytes = FileOf(fuzz::ByteSource(data, size));
  {
    std::ofstream file(folder.File(), std::ios::binary | std::ios::trunc);
    file.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
  }
  dbDatabase database;
  database.setFileSizeLimit(std::size_t{64} << 20);
  database.setErrorHandler([](int, char const*, int, void*) {});
  if (database.open(folder.File().c_str(), folder.File().c_str())) ReadAndWrite(database);
  database.close();
  for (const auto& entry : std::filesystem::directory_iterator(std::filesystem::path(folder.File()).parent_path())) {
    std::filesystem::remove(entry.path());
  }
  return 0;
}
