// Any bytes as the text of a query: refused with one message, or evaluated on a table of a small store. What a query
// selects is selected again by it, and its negation selects the other rows.
// The first byte chooses the table.
#include <unistd.h>

#include <cstddef>
#include <cstdint>
#include <string>

#include "fuzz/any_model.h"
#include "fuzz/byte_source.h"
#include "fuzz/require.h"
#include "fuzz/small_store.h"
#include "rtdb/volma_rtdb.h"

namespace {

using namespace dtsdb;

int g_errors = 0;

dbDatabase& Store() {
  static fuzz::StoreFolder folder;
  static dbDatabase* const database = [] {
    auto* const made = new dbDatabase;
    made->setErrorHandler([](int, char const*, int, void*) { ++g_errors; });
    fuzz::Require(made->open(folder.File().c_str(), folder.File().c_str()), "the store opens");
    DTSDB model;
    fuzz::FillSmallModel(model);
    model.WriteFastdb(made);
    return made;
  }();
  return *database;
}

/// The number of rows that a query selects, -1 where it is refused.
template <class Row>
int Selected(const std::string& text) {
  dbCursor<Row> cursor(&Store());
  g_errors = 0;
  const int count = cursor.select(text.c_str());
  if (g_errors > 0) {
    fuzz::Require(g_errors == 1 && count == 0, "one message and no rows");
    return -1;
  }
  int walked = 0;
  for (const Row* row = cursor.get(); row != nullptr; row = cursor.next()) ++walked;
  fuzz::Require(walked == count, "as many rows as were selected");
  return count;
}

template <class Row>
void Ask(const std::string& text) {
  const int count = Selected<Row>(text);
  if (count < 0) return;
  fuzz::Require(Selected<Row>(text) == count, "the same rows again");
  const int plain = Selected<Row>("(" + text + ") or (" + text + ")");
  fuzz::Require(plain == count || plain < 0, "the rows of a query that is asked of every row, without bounds of keys");
  const int others = Selected<Row>("not (" + text + ")");
  if (others >= 0) fuzz::Require(count + others == Selected<Row>(""), "the negation selects the other rows");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  fuzz::ByteSource bytes(data, size);
  const int table = bytes.Below(5);
  const std::string text(bytes.Text());
  if (table == 0) Ask<un>(text);
  if (table == 1) Ask<kv>(text);
  if (table == 2) Ask<cb>(text);
  if (table == 3) Ask<r_kv_nd>(text);
  if (table == 4) Ask<global>(text);
  Store().rollback();
  return 0;
}
