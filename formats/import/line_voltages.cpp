#include "formats/import/line_voltages.h"

namespace dtsdb::tools {

KV* PartVoltages(KV& from, KV& to, bool isMade) {
  if (from.vbase == to.vbase || from.vbase == 0 || to.vbase == 0) return nullptr;
  KV& changed = isMade ? from : to;
  changed.vbase = 0;
  return &changed;
}

}  // namespace dtsdb::tools
