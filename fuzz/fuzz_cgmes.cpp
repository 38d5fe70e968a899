// Any bytes as a CGMES profile: refused with file and line, or read and mapped onto tables. What is a good model is
// worked out, and its topology compared with the one that the profile publishes.
#include <QBuffer>
#include <cstddef>
#include <cstdint>

#include "analysis/topology.h"
#include "formats/cgmes/import.h"
#include "formats/cgmes/reader.h"
#include "formats/cgmes/topology_comparison.h"
#include "formats/failure.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace dtsdb;
  QByteArray bytes(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
  QBuffer input(&bytes);
  input.open(QIODevice::ReadOnly);
  try {
    tools::cgmes::ProfileSet set;
    set.profiles.push_back(tools::cgmes::ReadProfile(input, "fuzz.xml", 0, set.objects));
    DTSDB tables;
    const tools::ImportReport report = tools::cgmes::ImportSet(set, {}, tables);
    analysis::Model model = analysis::Model::Of(tables);
    if (!analysis::WorkOutTopology(model)) return 0;
    tools::cgmes::CompareWithPublished(set, {}, report, model.Tables());
  } catch (const tools::Failure&) {
    return 0;
  }
  return 0;
}
