#include "validation/internal/removals.h"

#include <memory>
#include <set>
#include <vector>

#include "include/template.h"
#include "model/record_bits.h"
#include "validation/internal/device_kinds.h"
#include "validation/internal/graph.h"
#include "validation/internal/relations.h"

namespace dtsdb::internal {

// Steps

/// Takes relation row `number` out of the chain of record `parent` and removes it. The row's links are read from table
/// `Read` and those of its neighbours written into table `Written`: other tables than the row's own in two cases
/// below.
template <class Row, class Read, class Written>
void Removals::Unlink(int parent, int number) {
  using R = Relation<Row>;
  const int next = Table<Read>().GetPh(number).next;
  const int prev = Table<Read>().GetPh(number).prev;
  i32& head = Table<typename R::Parent>().GetPh(parent).*R::kHead;
  if (head == number) head = next;
  if (prev != -1) Table<Written>().GetPh(prev).next = next;
  if (next != -1) Table<Written>().GetPh(next).prev = prev;
  Table<Row>().Remove(number);
}

/// Takes record `child` from its parent in relation `Row`.
template <class Row>
bool Removals::Detach(int child, const Reason& unrelated) {
  using R = Relation<Row>;
  const int row = Table<typename R::Child>().GetPh(child).*R::kOwn;
  if (row == -1) return Refuse(unrelated);
  const int parent = Table<Row>().GetPh(row).*R::kParentNumber;
  if (parent == -1) return Refuse(unrelated);
  Unlink<Row>(parent, row);
  return true;
}

/// Takes record `number` from its parent and removes it.
template <class Record>
bool Removals::RemoveTied(int number) {
  if (!Detach<ParentRow<Record>>(number, EditReasons<Record>::kUnrelated)) return false;
  Table<Record>().Remove(number);
  return true;
}

/// Removes the children of record `parent` in relation `Row`, listed before the first goes, until one removal fails.
template <class Row>
bool Removals::RemoveChildren(int parent, bool (Removals::*remove)(int)) {
  using R = Relation<Row>;
  const int head = Table<typename R::Parent>().GetPh(parent).*R::kHead;
  const std::unique_ptr<tChildNode> children(Table<Row>().ChildList(head));
  for (const tChildNode* child = children.get(); child != nullptr; child = child->next) {
    if (!(this->*remove)(child->value)) return false;
  }
  return true;
}

// Nodes

namespace {

// Without the mark of a bus, which doesn't keep a node alive. Kept: K27.
constexpr u32 kCountedMarks = ND_HAS_UN | ND_HAS_LD | ND_HAS_CP;

}  // namespace

// Devices on one node

/// The marks of node and station stay: they only grow between runs. Kept: K28.
template <class Shunt>
bool Removals::RemoveShunt(int number) {
  const int nd = Table<Shunt>().GetPh(number).ind;
  if (DeviceCount(m_model, Table<ND>().GetPh(nd), kCountedMarks & ~kShuntKind<Shunt>.nodeMark) == 0) {
    if (!Detach<R_KV_ND>(nd, EditReasons<Shunt>::kLevelLess)) return false;
    Table<ND>().Remove(nd);
  }
  return RemoveTied<Shunt>(number);
}

bool Removals::RemoveBUS(int no) { return RemoveShunt<BUS>(no); }
bool Removals::RemoveCP(int no) { return RemoveShunt<CP>(no); }
bool Removals::RemoveUN(int no) { return RemoveShunt<UN>(no); }
bool Removals::RemoveLD(int no) { return RemoveShunt<LD>(no); }

// Branches

/// Removes end record `end` of a branch and takes it from node `nd`.
template <class Branch, class Written>
bool Removals::RemoveEnd(int nd, int end, const Reason& missing) {
  using Kind = BranchKind<Branch>;
  auto& ends = Table<typename Kind::End>();
  if (end == -1) return Refuse(missing);
  const int row = ends.GetPh(end).*Relation<typename Kind::Row>::kOwn;
  if (row == -1) return Refuse(missing);
  Unlink<typename Kind::Row, typename Kind::Row, Written>(nd, row);
  ends.Remove(end);
  return true;
}

/// Removes node `nd` with the branch's end on it when nothing else stands there. On a node that lives on the end stays
/// behind, with its row, until the next validation. Kept: K29.
template <class Branch, class Written>
bool Removals::RemoveBranchEnd(int nd, int end, const Reason& levelLess, const Reason& missing) {
  if (DeviceCount(m_model, Table<ND>().GetPh(nd), kCountedMarks) != 1) return true;
  if (!Detach<R_KV_ND>(nd, levelLess)) return false;
  if (!RemoveEnd<Branch, Written>(nd, end, missing)) return false;
  Table<ND>().Remove(nd);
  return true;
}

template <class Branch>
bool Removals::RemoveBranch(int number) {
  using Kind = BranchKind<Branch>;
  using Reasons = EditReasons<Branch>;
  // The neighbours of a winding's from end are written to the breakers' rows. Kept: K30.
  using FromWritten = std::conditional_t<std::is_same_v<Branch, XF>, R_ND_CB2, typename Kind::Row>;
  using ToWritten = typename Kind::Row;
  const Branch& branch = Table<Branch>().GetPh(number);
  const int nd = branch.ind;
  const int znd = branch.iznd;
  return RemoveBranchEnd<Branch, FromWritten>(nd, branch.*Kind::kFromEnd, Reasons::kFromLevelLess,
                                              Reasons::kFromEndMissing) &&
         RemoveBranchEnd<Branch, ToWritten>(znd, branch.*Kind::kToEnd, Reasons::kToLevelLess, Reasons::kToEndMissing) &&
         RemoveTied<Branch>(number);
}

bool Removals::RemoveCB(int no) { return RemoveBranch<CB>(no); }
bool Removals::RemoveXF(int no) { return RemoveBranch<XF>(no); }
bool Removals::RemoveLN(int no) { return RemoveBranch<LN>(no); }
bool Removals::RemoveDLN(int no) { return RemoveBranch<DLN>(no); }

/// The nodes are those of the breaker and stay. So does the breaker's mark. Kept: K08.
bool Removals::RemoveZBR(int no) {
  const ZBR& zbr = m_model.m_zbrTable->GetPh(no);
  return RemoveEnd<ZBR, R_ND_ZBR2>(zbr.ind, zbr.zbr2, EditReasons<ZBR>::kFromEndMissing) &&
         RemoveEnd<ZBR, R_ND_ZBR2>(zbr.iznd, zbr.zzbr2, EditReasons<ZBR>::kToEndMissing) && RemoveTied<ZBR>(no);
}

// Containers

/// The breakers go before the zero-impedance branches, whose ends still count on the nodes then. Kept: K32.
bool Removals::RemoveKV(int no) {
  return RemoveChildren<R_KV_CB>(no, &Removals::RemoveCB) && RemoveChildren<R_KV_ZBR>(no, &Removals::RemoveZBR) &&
         RemoveChildren<R_KV_BUS>(no, &Removals::RemoveBUS) && RemoveChildren<R_KV_CP>(no, &Removals::RemoveCP) &&
         RemoveChildren<R_KV_LD>(no, &Removals::RemoveLD) && RemoveChildren<R_KV_UN>(no, &Removals::RemoveUN) &&
         RemoveTied<KV>(no);
}

bool Removals::RemoveST(int no) {
  if (!RemoveChildren<R_ST_KV>(no, &Removals::RemoveKV) || !RemoveChildren<R_ST_XF>(no, &Removals::RemoveXF))
    return false;
  const int row = m_model.m_stTable->GetPh(no).r_dv_st;
  // The station's own number in place of its district's, which isn't tested. Kept: K33.
  if (row == -1 || no == -1) return Refuse(EditReasons<ST>::kUnrelated);
  // The links of the level's row with the same number. Kept: K34.
  Unlink<R_DV_ST, R_ST_KV>(m_model.m_rDvStTable->GetPh(row).idv, row);
  m_model.m_stTable->Remove(no);
  return true;
}

/// This doesn't remove a district's stations. Their chain is taken for one of lines, and the lines' numbers for those
/// of districts that go first, with all that follows from them in turn. A district that isn't in use or whose removal
/// is under way ends it all. Kept: K35.
bool Removals::RemoveDV(int no) {
  struct Removal {
    int district;
    std::unique_ptr<tChildNode> list;
    const tChildNode* next;
  };
  std::vector<Removal> removals;  // in place of recursion, which damaged links could make too deep
  std::set<int> underWay;
  const auto begin = [&](int district) {
    if (!m_model.m_dvTable->IsUsed(district) || !underWay.insert(district).second) {
      return Refuse(EditReasons<DV>::kStopped);
    }
    if (!RemoveChildren<R_DV_LN>(district, &Removals::RemoveLN)) return false;
    if (!RemoveChildren<R_DV_DLN>(district, &Removals::RemoveDLN)) return false;
    const int head = m_model.m_dvTable->GetPh(district).r_dv_st;
    const bool isRow = head != -1 && m_model.m_rDvLnTable->IsUsed(head);
    std::unique_ptr<tChildNode> list(isRow ? m_model.m_rDvLnTable->ChildList(head) : nullptr);
    const tChildNode* const first = list.get();
    removals.push_back({district, std::move(list), first});
    return true;
  };

  if (!begin(no)) return false;
  while (!removals.empty()) {
    Removal& last = removals.back();
    if (last.next != nullptr) {
      const int district = last.next->value;
      last.next = last.next->next;
      if (!begin(district)) return false;
      continue;
    }
    if (!RemoveTied<DV>(last.district)) return false;
    underWay.erase(last.district);
    removals.pop_back();
  }
  return true;
}

bool Removals::RemoveCO(int no) {
  if (!RemoveChildren<R_CO_DV>(no, &Removals::RemoveDV)) return false;
  m_model.m_coTable->Remove(no);
  return true;
}

}  // namespace dtsdb::internal
