#include "tools/validation_run.h"

#include <fmt/format.h>

#include "tools/failure.h"
#include "tools/files.h"
#include "validation/nmd.h"

namespace dtsdb::tools {

bool IsMarkedGood(DTSDB& database) {
  return database.m_globalTable->GetCount() > 0 && (*database.m_globalTable)[0].valid != 0;
}

int ErrorCount(DTSDB& database) {
  return database.m_globalTable->GetCount() > 0 ? (*database.m_globalTable)[0].errors : 0;
}

void RequireGood(DTSDB& database, const std::string& model) {
  if (IsMarkedGood(database)) return;
  const TemporaryCurrentFolder away;  // the validation's log goes where the user need not look at it
  NMD nmd(&database);
  if (!nmd.DetectAll()) {
    throw Failure(EXIT_FAULTS,
                  model + ": the validation can't be finished: " + nmd.GetLastError().trimmed().toStdString());
  }
  if (!IsMarkedGood(database)) {
    const int errors = ErrorCount(database);
    throw Failure(EXIT_FAULTS, fmt::format("{}: the model has {} error{}; 'dtsdb validate {}' shows them", model,
                                           errors, errors == 1 ? "" : "s", model));
  }
}

}  // namespace dtsdb::tools
