#include "command/careful_run.h"

namespace dtsdb::tools {

const char* OutcomeText(RunOutcome outcome) {
  switch (outcome) {
    case RunOutcome::kNothing:
      return "nothing to do";
    case RunOutcome::kIncremental:
      return "incremental";
    case RunOutcome::kFull:
      return "full, for many changes";
    case RunOutcome::kReplaced:
      return "failed, full instead";
    case RunOutcome::kFailed:
      break;
  }
  return "failed";
}

bool CarefulRunner::RunFull() {
  m_needsFullRun = m_tp.tpAllnew() == 0;
  if (!m_needsFullRun) ChooseReferences();
  return !m_needsFullRun;
}

RunOutcome CarefulRunner::Run() {
  const RunOutcome outcome = Change();
  m_database.m_tptraceTable->Clear();
  if (outcome == RunOutcome::kIncremental) ChooseReferences();
  return outcome;
}

RunOutcome CarefulRunner::Change() {
  if (m_needsFullRun) return RunFull() ? RunOutcome::kFull : RunOutcome::kFailed;
  const bool waiting = m_database.m_tptraceTable->GetCount() > 0;
  if (m_tp.tpChange() == 0) return RunFull() ? RunOutcome::kReplaced : RunOutcome::kFailed;
  if (!waiting) return RunOutcome::kNothing;
  if (m_database.m_tptraceTable->GetCount() == 0) return RunOutcome::kIncremental;
  ChooseReferences();  // rows are left when the run was a full one
  return RunOutcome::kFull;
}

/// A run that works out the islands leaves them without references.
void CarefulRunner::ChooseReferences() {
  if (m_database.m_islandTable->GetCount() > 0) m_tp.tpSetRefUN();
}

}  // namespace dtsdb::tools
