#include "analysis/internal/zero_impedance.h"

#include "analysis/internal/points.h"
#include "formats/field_text.h"
#include "model/record_bits.h"
#include "validation/message_catalog.h"

namespace dtsdb::analysis::internal {
namespace {

using tools::IdText;
using Kind = BranchKind<ZBR>;

bool HasBreaker(DTSDB& database, const ZBR& branch) {
  return branch.icb >= 0 && branch.icb < database.m_cbTable->GetSize();
}

bool JoinsItsNodes(const ZBR& branch) { return (branch.status & (Kind::kOut | Kind::kOpen1 | Kind::kOpen2)) == 0; }

const char* DisagreementCode(const ZBR& branch) {
  if (JoinsItsNodes(branch)) return "TOPOLOGY_ZBR_JOINS_AT_OPEN_BREAKER";
  return branch.status & Kind::kOut ? "TOPOLOGY_ZBR_OUT_AT_CLOSED_BREAKER" : "TOPOLOGY_ZBR_OPEN_AT_CLOSED_BREAKER";
}

Finding Disagreement(const CB& breaker, const ZBR& branch) {
  const MessageInfo& message = *FindMessage(DisagreementCode(branch));
  Finding finding;
  finding.severity = message.severity;
  finding.table = message.table;
  finding.id = branch.id;
  finding.field = message.field;
  finding.code = message.code;
  finding.other = breaker.id;
  finding.text = TextOf(finding, Language::kEnglish);
  return finding;
}

/// True when a full run fails on the branch: the fragment of its to end, which is open, is taken from it again.
bool FailsFullRun(DTSDB& database, const ZBR& branch, int number) {
  const bool onlyToEnd = (branch.status & (Kind::kOut | Kind::kOpen1 | Kind::kOpen2)) == Kind::kOpen2;
  if (!onlyToEnd) return false;
  const bool keepsFragment =
      number < database.m_lnTable->GetSize() && (database.m_lnTable->GetPh(number).status & Kind::kOpen2) != 0;
  return !keepsFragment && IsSectionPoint(database, branch.ind);
}

}  // namespace

std::vector<int> BranchesOn(DTSDB& database, int cb) {
  std::vector<int> numbers;
  if ((database.m_cbTable->GetPh(cb).flags & CB_ZBR) == 0) return numbers;
  tTable<ZBR>& branches = *database.m_zbrTable;
  for (int i = 0; i < branches.GetCount(); ++i) {
    if (branches[i].icb == cb) numbers.push_back(branches.LgToPh(i));
  }
  return numbers;
}

QList<Finding> Disagreements(DTSDB& database) {
  QList<Finding> findings;
  tTable<ZBR>& branches = *database.m_zbrTable;
  for (int i = 0; i < branches.GetCount(); ++i) {
    const ZBR& branch = branches[i];
    if (!HasBreaker(database, branch)) continue;
    const CB& breaker = database.m_cbTable->GetPh(branch.icb);
    const bool isOpen = (breaker.flags & CB_OPEN) != 0;
    if (isOpen == JoinsItsNodes(branch)) findings.push_back(Disagreement(breaker, branch));
  }
  return findings;
}

BranchesLeftOut::BranchesLeftOut(DTSDB& database) : m_database(database) {
  tTable<ZBR>& branches = *database.m_zbrTable;
  for (int i = 0; i < branches.GetCount(); ++i) {
    const int number = branches.LgToPh(i);
    if (FailsFullRun(database, branches[i], number)) m_numbers.push_back(number);
  }
  for (const int number : m_numbers) branches.GetPh(number).status |= Kind::kOut;
}

BranchesLeftOut::~BranchesLeftOut() {
  for (const int number : m_numbers) m_database.m_zbrTable->GetPh(number).status &= ~Kind::kOut;
}

std::vector<std::string> BranchesLeftOut::Identities() const {
  std::vector<std::string> identities;
  for (const int number : m_numbers) identities.push_back(IdText(m_database.m_zbrTable->GetPh(number).id));
  return identities;
}

}  // namespace dtsdb::analysis::internal
