// Any bytes as a CGMES profile: refused with file and line, or read and mapped onto tables.
#include <QBuffer>
#include <cstddef>
#include <cstdint>

#include "formats/cgmes/import.h"
#include "formats/cgmes/reader.h"
#include "formats/failure.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace dtsdb;
  QByteArray bytes(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
  QBuffer input(&bytes);
  input.open(QIODevice::ReadOnly);
  try {
    tools::cgmes::ProfileSet set;
    set.profiles.push_back(tools::cgmes::ReadProfile(input, "fuzz.xml", 0, set.objects));
    DTSDB model;
    tools::cgmes::ImportSet(set, {}, model);
  } catch (const tools::Failure&) {
    return 0;
  }
  return 0;
}
