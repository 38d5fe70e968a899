// Any bytes as an object file: refused with a place, or read into tables that store again as the same bytes.
#include <QBuffer>
#include <cstddef>
#include <cstdint>
#include <cstdlib>

#include "model/dtsdb.h"
#include "model/qarchive.h"
#include "tests/support/image.h"

namespace {

/// Ends the run: the fuzzer keeps the input that led here.
void Require(bool condition) {
  if (!condition) std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  QByteArray bytes(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
  QBuffer buffer(&bytes);
  buffer.open(QIODevice::ReadOnly);
  dtsdb::QArchive ar(&buffer, true);
  dtsdb::DTSDB database;
  database.Serialize(ar);
  if (ar.IsRefused()) {
    dtsdb::ForEachTable(database, [](auto& table) { Require(table.GetSize() == 0); });
    return 0;
  }
  Require(dtsdb::test::ImageOf(database) == bytes.left(static_cast<qsizetype>(buffer.pos())));

  dtsdb::ForEachTable(database, [](auto& table) {
    for (int i = 0; i < table.GetCount(); ++i) Require(table.PhToLg(table.LgToPh(i)) == i);
    const int count = table.GetCount();
    if (count > 0 && table.Remove(table.LgToPh(count / 2)) != -1) Require(table.GetCount() == count - 1);
    table.SetSize(table.GetSize() + 1);
    table.Compact();
    for (int i = 0; i < table.GetSize(); ++i) table.Remove(i);
    Require(table.GetCount() == 0);
  });
  return 0;
}
