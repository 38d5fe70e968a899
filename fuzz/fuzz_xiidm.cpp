// Any bytes as an XIIDM file: refused with file and line, or read, mapped onto tables, written and read again.
#include <QBuffer>
#include <cstddef>
#include <cstdint>
#include <cstdlib>

#include "formats/failure.h"
#include "formats/xiidm/export.h"
#include "formats/xiidm/import.h"
#include "formats/xiidm/reader.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace dtsdb;
  namespace xiidm = tools::xiidm;
  QByteArray bytes(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
  QBuffer input(&bytes);
  input.open(QIODevice::ReadOnly);
  DTSDB model;
  try {
    xiidm::ImportNetwork(xiidm::ReadNetwork(input, "fuzz.xiidm"), {}, model);
  } catch (const tools::Failure&) {
    return 0;
  }
  SettleTables(model);
  QBuffer output;
  output.open(QIODevice::ReadWrite);
  try {
    xiidm::WriteNetwork(model, output);
    output.seek(0);
    DTSDB again;
    xiidm::ImportNetwork(xiidm::ReadNetwork(output, "again.xiidm"), {}, again);
  } catch (const tools::Failure&) {
    std::abort();  // what is read can be written, and what is written read
  }
  return 0;
}
