#include "model/field_runs.h"

#include <QtEndian>
#include <cstring>

#include "model/basic_types.h"

namespace dtsdb::internal {
namespace {

std::size_t WidthOf(FieldType type) {
  switch (type) {
    case FieldType::kText:
      return 0;
    case FieldType::kI8:
    case FieldType::kU8:
      return 1;
    case FieldType::kI32:
    case FieldType::kU32:
    case FieldType::kF32:
      return 4;
    case FieldType::kF64:
      break;
  }
  return 8;
}

}  // namespace

std::vector<FieldRun> FieldRunsOf(std::span<const FieldInfo> fields) {
  std::vector<FieldRun> runs;
  for (const FieldInfo& field : fields) {
    const std::size_t width = WidthOf(field.type);
    const bool goesOn = width != 0 && !runs.empty() && runs.back().width == width &&
                        runs.back().offset + runs.back().count * width == field.offset;
    if (goesOn) {
      ++runs.back().count;
    } else {
      runs.push_back({field.offset, width, 1});
    }
  }
  return runs;
}

void CopyTurned(void* to, const void* from, std::size_t width, std::size_t count) {
  const auto n = static_cast<qsizetype>(count);
  switch (width) {
    case 1:
      std::memcpy(to, from, count);
      break;
    case 2:
      qToBigEndian<quint16>(from, n, to);
      break;
    case 4:
      qToBigEndian<quint32>(from, n, to);
      break;
    default:
      qToBigEndian<quint64>(from, n, to);
      break;
  }
}

}  // namespace dtsdb::internal
