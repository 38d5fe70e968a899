#include "formats/xiidm/network.h"

#include <fmt/format.h>

#include "formats/failure.h"
#include "formats/text_layout.h"

namespace dtsdb::tools::xiidm {

std::string Network::Describe(int object) const {
  std::string text = fmt::format("{} {}", objects.RowOf(object).name, Quoted(objects.Id(object)));
  if (objects.Has(object, kName)) text += " " + Quoted(objects.Text(object, kName));
  return text + fmt::format(" ({}, line {})", file, objects.Line(object));
}

void Network::Refuse(int object, const std::string& what) const {
  throw Failure(kExitFile, fmt::format("{}, line {}: {} {}: {}", file, objects.Line(object), objects.RowOf(object).name,
                                       Quoted(objects.Id(object)), what));
}

}  // namespace dtsdb::tools::xiidm
