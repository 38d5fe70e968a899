#include "analysis/error.h"

namespace dtsdb::analysis {

const char* CodeName(ErrorCode code) {
  switch (code) {
    case ErrorCode::kUsage:
      return "USAGE";
    case ErrorCode::kFile:
      return "FILE";
    case ErrorCode::kFaultyModel:
      return "FAULTY_MODEL";
    case ErrorCode::kUnknownComponent:
      return "UNKNOWN_COMPONENT";
    case ErrorCode::kNoTopology:
      return "NO_TOPOLOGY";
    case ErrorCode::kInternal:
      break;
  }
  return "INTERNAL";
}

}  // namespace dtsdb::analysis
