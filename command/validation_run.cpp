#include "command/validation_run.h"

#include <fmt/format.h>

#include "command/finding_report.h"
#include "formats/failure.h"
#include "validation/nmd.h"

namespace dtsdb::tools {
bool IsMarkedGood(DTSDB& database) {
  return database.m_globalTable->GetCount() > 0 && (*database.m_globalTable)[0].valid != 0;
}

int ErrorCount(DTSDB& database) {
  return database.m_globalTable->GetCount() > 0 ? (*database.m_globalTable)[0].errors : 0;
}

void RequireGood(DTSDB& database, const ModelName& model) {
  if (IsMarkedGood(database)) return;
  NMD nmd(&database);
  if (!nmd.DetectAll()) {
    throw Failure(kExitFaults,
                  model.Text() + ": the validation can't be finished: " + FailureText(nmd, LocaleLanguage()));
  }
  if (!IsMarkedGood(database)) {
    const int errors = ErrorCount(database);
    throw Failure(kExitFaults, fmt::format("{}: the model has {} error{}; 'dtsdb validate {}' shows them", model.Text(),
                                           errors, errors == 1 ? "" : "s", model.Text()));
  }
}

}  // namespace dtsdb::tools
