// Any bytes as a store file: refused with a message, or opened and read, table by table, and written to.
//
// Which file the bytes make: fuzz/damaged_file.h.
#include <cstddef>
#include <cstdint>
#include <string>

#include "fuzz/any_model.h"
#include "fuzz/byte_source.h"
#include "fuzz/damaged_file.h"
#include "fuzz/small_store.h"
#include "rtdb/volma_rtdb.h"

namespace {

using namespace dtsdb;

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
  static const std::string good = fuzz::SmallStore();
  const std::string bytes = fuzz::AnyFile(fuzz::ByteSource(data, size), good);
  fuzz::WriteFile(folder.File(), bytes);
  dbDatabase database;
  database.setFileSizeLimit(std::size_t{64} << 20);
  database.setErrorHandler([](int, char const*, int, void*) {});
  if (database.open(folder.File().c_str(), folder.File().c_str())) ReadAndWrite(database);
  database.close();
  folder.Empty();
  return 0;
}
