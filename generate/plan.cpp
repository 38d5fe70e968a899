#include "generate/plan.h"

#include <cstddef>

namespace dtsdb::tools {

int Plan::PointOf(const CircuitEnd& end) const {
  const Level& level = levels[Index(end.level)];
  const int first = firstPoint[Index(end.level)];
  if (level.isStar) return first + end.circuit;
  if (IsCutOff(level, end.circuit)) return -1;
  return IsSplit(level) ? first + end.circuit % 2 : first;
}

int Plan::FromPoint(const Branch& branch) const {
  const bool isOpen = branch.state == BranchState::kOut || branch.state == BranchState::kFromOpen;
  return isOpen ? -1 : PointOf(branch.from);
}

int Plan::ToPoint(const Branch& branch) const {
  const bool isOpen = branch.state == BranchState::kOut || branch.state == BranchState::kToOpen;
  return isOpen ? -1 : PointOf(branch.to);
}

bool Plan::IsLive(const CircuitEnd& end) const {
  const int point = PointOf(end);
  return point != -1 && isLive[Index(point)] != 0;
}

}  // namespace dtsdb::tools
