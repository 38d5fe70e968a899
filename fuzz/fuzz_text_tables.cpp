// Any bytes as a text table: refused with file, row and column, or read into a table that writes and reads again.
// The first byte chooses the record class, the rest is the file.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

#include "formats/failure.h"
#include "formats/text_table_file.h"

namespace {

using namespace dtsdb;

constexpr const char* kFile = "fuzz.csv";

template <class T>
void ReadWriteRead(std::string_view bytes) {
  tTable<T> table;
  try {
    tools::ReadTextTable(kFile, bytes, table);
  } catch (const tools::Failure&) {
    return;
  }
  const std::string written = tools::TextTable(table);
  tTable<T> again;
  tools::ReadTextTable(kFile, written, again);
  if (again.GetCount() != table.GetCount() || tools::TextTable(again) != written) std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size == 0) return 0;
  const std::string_view bytes(reinterpret_cast<const char*>(data) + 1, size - 1);
  switch (data[0] % 5) {
    case 0:
      ReadWriteRead<ST>(bytes);
      break;
    case 1:
      ReadWriteRead<BUS>(bytes);
      break;
    case 2:
      ReadWriteRead<BSL>(bytes);
      break;
    case 3:
      ReadWriteRead<R_KV_ND>(bytes);
      break;
    default:
      ReadWriteRead<STATUS>(bytes);
  }
  return 0;
}
