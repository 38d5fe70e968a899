#include "analysis/careful_runner.h"

#include <fmt/format.h>

#include <utility>

#include "analysis/internal/certainty.h"
#include "analysis/internal/points.h"
#include "analysis/internal/zero_impedance.h"
#include "analysis/model.h"
#include "formats/field_text.h"
#include "model/record_bits.h"
#include "model/text.h"
#include "script/switch_events.h"
#include "topology/component_types.h"

namespace dtsdb::analysis {
namespace {

Error NoTopology(DTSDB& database) {
  const std::string section = internal::CrowdedSection(database);
  if (section.empty()) return {ErrorCode::kNoTopology, "the topology can't be worked out", ""};
  return {ErrorCode::kNoTopology,
          "the topology can't be worked out: " + section +
              ", has 100 or more branch ends that lead somewhere; part it by an open breaker",
          section};
}

}  // namespace

std::string RunReport::Text() const {
  switch (reason) {
    case RunReason::kNothingWaiting:
      return "nothing to do";
    case RunReason::kCertain:
    case RunReason::kAsIs:
      return "incremental";
    case RunReason::kAsked:
      return "full";
    case RunReason::kOpenEnd:
      return "full, for the open end of " + cause;
    case RunReason::kZeroImpedance:
      return "full, beside " + cause;
    case RunReason::kManyChanges:
      return "full, for many changes";
    case RunReason::kIncrementalFailed:
      return "failed, full instead";
    case RunReason::kFailedBefore:
      break;
  }
  return "full, after one that failed";
}

Result<RunReport> CarefulRunner::RunFull() { return RunFull(RunReason::kAsked); }

EventResult CarefulRunner::Request(const SwitchEvent& event, int number) {
  EventResult result;
  result.stood = tools::Stands(m_database, event, number);
  const QByteArray id = IdToBytes(*tools::IdFromUtf8(event.id));
  result.result = m_tp.tpSetCompStatus(id.constData(), event.type, event.on);
  m_untraced.push_back({event.type, number});
  FollowBreaker(event, number);
  return result;
}

void CarefulRunner::Put(const SwitchEvent& event, int number) {
  tools::PutInState(m_database, event, number);
  FollowBreaker(event, number);
}

/// A branch bears a mark while it is out with its breaker, so that one that was out by itself stays out.
void CarefulRunner::FollowBreaker(const SwitchEvent& event, int number) {
  if (m_rules == Rules::kAsIs) return;
  if (event.type == kZbrServiceType) m_database.m_zbrTable->GetPh(number).tp_status &= ~ZBR_OUT_WITH_BREAKER;
  if (event.type != kBreakerType) return;
  const CB& breaker = m_database.m_cbTable->GetPh(number);
  for (const int zbr : internal::BranchesOn(m_database, number)) {
    ZBR& branch = m_database.m_zbrTable->GetPh(zbr);
    const bool out = (branch.status & BranchKind<ZBR>::kOut) != 0;
    const bool follows = event.on ? (branch.tp_status & ZBR_OUT_WITH_BREAKER) != 0 : !out;
    if (!follows) continue;
    branch.tp_status ^= ZBR_OUT_WITH_BREAKER;
    branch.status = event.on ? branch.status & ~BranchKind<ZBR>::kOut : branch.status | BranchKind<ZBR>::kOut;
    m_untraced.push_back({kZbrServiceType, zbr});
    NoteFollowed({tools::IdText(branch.id), tools::IdText(breaker.id), event.on});
  }
}

/// Out and back before a run is nothing to report.
void CarefulRunner::NoteFollowed(const FollowedBranch& followed) {
  const auto isSame = [&](const FollowedBranch& noted) { return noted.branch == followed.branch; };
  if (std::erase_if(m_followed, isSame) == 0) m_followed.push_back(followed);
}

Result<RunReport> CarefulRunner::Run() {
  Result<RunReport> report = RunChanges();
  m_database.m_tptraceTable->Clear();
  return report;
}

Result<RunReport> CarefulRunner::RunChanges() {
  const std::vector<ComponentChange> changes = Changes();
  if (m_needsFullRun) return RunFull(RunReason::kFailedBefore);
  if (m_rules == Rules::kCareful) {
    const auto doubt = internal::DoubtAbout(changes, m_database);
    if (doubt) return RunFull(doubt->reason, doubt->cause);
  }
  return RunIncrementally();
}

/// What was requested and what waits in the trace.
std::vector<ComponentChange> CarefulRunner::Changes() {
  std::vector<ComponentChange> changes = std::exchange(m_untraced, {});
  const tTable<TPTRACE>& trace = *m_database.m_tptraceTable;
  for (int i = 0; i < trace.GetCount(); ++i) changes.push_back({trace[i].type, trace[i].n1});
  return changes;
}

Result<RunReport> CarefulRunner::RunIncrementally() {
  const bool waiting = m_database.m_tptraceTable->GetCount() > 0;
  if (m_tp.tpChange() == 0) return RunFull(RunReason::kIncrementalFailed);
  if (!waiting) return Report(RunKind::kNothing, RunReason::kNothingWaiting);
  ChooseReferences();
  // Rows are left when the run was a full one.
  if (m_database.m_tptraceTable->GetCount() > 0) return Report(RunKind::kFull, RunReason::kManyChanges);
  return Report(RunKind::kIncremental, m_rules == Rules::kCareful ? RunReason::kCertain : RunReason::kAsIs);
}

Result<RunReport> CarefulRunner::RunFull(RunReason reason, const std::string& cause) {
  m_needsFullRun = true;
  m_leftOut.clear();
  if (m_rules == Rules::kCareful) {
    m_database.m_tplTable->Clear();  // the log of an incremental run before
    const internal::BranchesLeftOut out(m_database);
    m_leftOut = out.Identities();
    m_needsFullRun = m_tp.tpAllnew() == 0;
  } else {
    m_needsFullRun = m_tp.tpAllnew() == 0;
  }
  if (m_needsFullRun) return tl::unexpected(NoTopology(m_database));
  ChooseReferences();
  return Report(RunKind::kFull, reason, cause);
}

RunReport CarefulRunner::Report(RunKind kind, RunReason reason, const std::string& cause) {
  RunReport report;
  report.kind = kind;
  report.reason = reason;
  report.cause = cause;
  report.followed = std::exchange(m_followed, {});
  report.leftOut = m_leftOut;
  if (m_rules == Rules::kCareful && !m_isBrief) report.findings = internal::Disagreements(m_database);
  return report;
}

/// A run that works out the islands leaves them without references.
void CarefulRunner::ChooseReferences() {
  if (!m_isBrief && m_database.m_islandTable->GetCount() > 0) m_tp.tpSetRefUN();
}

std::vector<Difference> CompareWithFullRun(DTSDB& database, Rules rules) {
  const Result<Model> copy = Model::Of(database).Copy();
  if (!copy) return {{"", "", "", "the model can't be copied"}};
  TP tp(&copy->Tables());
  CarefulRunner runner(copy->Tables(), tp, rules);
  if (!runner.RunFull()) return {{"", "", "", "the full run fails"}};
  return CompareTopology(database, copy->Tables());
}

}  // namespace dtsdb::analysis
