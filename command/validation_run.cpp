#include "command/validation_run.h"

#include <fmt/format.h>

#include "formats/failure.h"
#include "formats/field_text.h"
#include "model/table_info.h"
#include "validation/nmd.h"

namespace dtsdb::tools {
namespace {

const char* SeverityName(Severity severity) { return severity == Severity::kError ? "error" : "warning"; }

}  // namespace

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
                  model.Text() + ": the validation can't be finished: " + nmd.GetLastError().trimmed().toStdString());
  }
  if (!IsMarkedGood(database)) {
    const int errors = ErrorCount(database);
    throw Failure(kExitFaults, fmt::format("{}: the model has {} error{}; 'dtsdb validate {}' shows them", model.Text(),
                                           errors, errors == 1 ? "" : "s", model.Text()));
  }
}

Sheet FindingSheet(const QList<Finding>& findings, Severity least) {
  Sheet sheet("findings", "Findings", {"severity", "table", "identity", "field", "text"});
  for (const Finding& finding : findings) {
    if (finding.severity > least || finding.severity == Severity::kNotice) continue;
    const Cell field = finding.field != nullptr ? Cell(std::string(finding.field)) : Cell();
    sheet.Add({SeverityName(finding.severity), TableName(finding.table), IdText(finding.id), field,
               finding.text.trimmed().toStdString()});
  }
  return sheet;
}

}  // namespace dtsdb::tools
