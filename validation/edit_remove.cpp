/// \file
/// Removing records from a model. A device takes its relation and its last node with it; what else it leaves behind is
/// deliberate and says so. Marks in stations and nodes stay: they only grow between validations.
#include <bit>
#include <memory>
#include <set>
#include <vector>

#include "include/chain.h"
#include "validation/device_kinds.h"
#include "validation/edit_messages.h"
#include "validation/nmd.h"

namespace dtsdb {

// Steps

/// Takes relation row `number` out of the chain of record `parent` and removes it. The row's links are read from table
/// `Read` and those of its neighbours written into table `Written`: other tables than the row's own in the two cases
/// that say so.
template <class Row, class Read, class Written>
void NMD::Unlink(int parent, int number) {
  using R = Relation<Row>;
  const int next = Table<Read>().GetPh(number).next;
  const int prev = Table<Read>().GetPh(number).prev;
  i32& head = Table<typename R::Parent>().GetPh(parent).*R::head;
  if (head == number) head = next;
  if (prev != -1) Table<Written>().GetPh(prev).next = next;
  if (next != -1) Table<Written>().GetPh(next).prev = prev;
  Table<Row>().Remove(number);
}

/// Takes record `child` from its parent in relation `Row`.
template <class Row>
bool NMD::Detach(int child, const char* unrelated) {
  using R = Relation<Row>;
  const int row = Table<typename R::Child>().GetPh(child).*R::own;
  if (row == -1) return Refuse(unrelated);
  const int parent = Table<Row>().GetPh(row).*R::parentNumber;
  if (parent == -1) return Refuse(unrelated);
  Unlink<Row>(parent, row);
  return true;
}

/// Takes record `number` from its parent and removes it.
template <class Record>
bool NMD::RemoveTied(int number) {
  if (!Detach<ParentRow<Record>>(number, Say<Record>::unrelated)) return false;
  Table<Record>().Remove(number);
  return true;
}

template <class Record>
bool NMD::RemoveNamed(const QString& id, bool (NMD::*remove)(int)) {
  if (!HasModel()) return false;
  const int number = Number<Record>(id);
  return number == -1 ? Refuse(Say<Record>::notThere) : (this->*remove)(number);
}

/// Removes the children of record `parent` in relation `Row`, listed before the first goes, until one removal fails.
template <class Row>
bool NMD::RemoveChildren(int parent, bool (NMD::*remove)(int)) {
  using R = Relation<Row>;
  const int head = Table<typename R::Parent>().GetPh(parent).*R::head;
  const std::unique_ptr<tChildNode> children(Table<Row>().ChildList(head));
  for (const tChildNode* child = children.get(); child != nullptr; child = child->next) {
    if (!(this->*remove)(child->value)) return false;
  }
  return true;
}

// Nodes

/// How many branch ends stand on a node, and for how many of `marks` devices do: devices of one kind count once. Counts
/// to 2 at most: nobody asks for more, and a node may have many.
int NMD::DeviceCount(int nd, u32 marks) {
  const ND& node = m_ndTable->GetPh(nd);
  int count = std::popcount(node.flags & marks);
  const auto addLength = [&count](auto& rows, int head) {
    for (auto row = Chain(rows, head).begin(); count < 2 && row != nullptr; ++row) ++count;
  };
  addLength(*m_rNdCb2Table, node.r_nd_cb2);
  addLength(*m_rNdXf2Table, node.r_nd_xf2);
  addLength(*m_rNdLn2Table, node.r_nd_ln2);
  addLength(*m_rNdDln2Table, node.r_nd_dln2);
  addLength(*m_rNdZbr2Table, node.r_nd_zbr2);
  return count;
}

namespace {

// Deliberately without the mark of a bus, which doesn't keep a node alive.
constexpr u32 kCountedMarks = ND_HAS_UN | ND_HAS_LD | ND_HAS_CP;

}  // namespace

// Devices on one node

template <class Shunt>
bool NMD::RemoveShunt(int number) {
  const int nd = Table<Shunt>().GetPh(number).ind;
  if (DeviceCount(nd, kCountedMarks & ~ShuntKind<Shunt>::nodeMark) == 0) {
    if (!Detach<R_KV_ND>(nd, Say<Shunt>::levelLess)) return false;
    m_ndTable->Remove(nd);
  }
  return RemoveTied<Shunt>(number);
}

bool NMD::RemoveBUS(int no) { return RemoveShunt<BUS>(no); }
bool NMD::RemoveCP(int no) { return RemoveShunt<CP>(no); }
bool NMD::RemoveUN(int no) { return RemoveShunt<UN>(no); }
bool NMD::RemoveLD(int no) { return RemoveShunt<LD>(no); }

// Branches

/// Removes end record `end` of a branch and takes it from node `nd`.
template <class Branch, class Written>
bool NMD::RemoveEnd(int nd, int end, const char* missing) {
  using Kind = BranchKind<Branch>;
  auto& ends = Table<typename Kind::End>();
  if (end == -1) return Refuse(missing);
  const int row = ends.GetPh(end).*Relation<typename Kind::Row>::own;
  if (row == -1) return Refuse(missing);
  Unlink<typename Kind::Row, typename Kind::Row, Written>(nd, row);
  ends.Remove(end);
  return true;
}

/// Removes node `nd` with the branch's end on it when nothing else stands there. On a node that lives on the end
/// deliberately stays behind, with its row, until the next validation.
template <class Branch, class Written>
bool NMD::RemoveBranchEnd(int nd, int end, const char* levelLess, const char* missing) {
  if (DeviceCount(nd, kCountedMarks) != 1) return true;
  if (!Detach<R_KV_ND>(nd, levelLess)) return false;
  if (!RemoveEnd<Branch, Written>(nd, end, missing)) return false;
  m_ndTable->Remove(nd);
  return true;
}

template <class Branch>
bool NMD::RemoveBranch(int number) {
  using Kind = BranchKind<Branch>;
  using Texts = Say<Branch>;
  // Deliberately breaker ends for the neighbours of a winding's from end: known to other programs in this form.
  using FromWritten = std::conditional_t<std::is_same_v<Branch, XF>, R_ND_CB2, typename Kind::Row>;
  using ToWritten = typename Kind::Row;
  const Branch& branch = Table<Branch>().GetPh(number);
  const int nd = branch.ind;
  const int znd = branch.iznd;
  return RemoveBranchEnd<Branch, FromWritten>(nd, branch.*Kind::fromEnd, Texts::fromLevelLess, Texts::fromEndMissing) &&
         RemoveBranchEnd<Branch, ToWritten>(znd, branch.*Kind::toEnd, Texts::toLevelLess, Texts::toEndMissing) &&
         RemoveTied<Branch>(number);
}

bool NMD::RemoveCB(int no) { return RemoveBranch<CB>(no); }
bool NMD::RemoveXF(int no) { return RemoveBranch<XF>(no); }
bool NMD::RemoveLN(int no) { return RemoveBranch<LN>(no); }
bool NMD::RemoveDLN(int no) { return RemoveBranch<DLN>(no); }

/// The nodes are those of the breaker and stay, and deliberately so does the breaker's mark.
bool NMD::RemoveZBR(int no) {
  const ZBR& zbr = m_zbrTable->GetPh(no);
  return RemoveEnd<ZBR, R_ND_ZBR2>(zbr.ind, zbr.zbr2, Say<ZBR>::fromEndMissing) &&
         RemoveEnd<ZBR, R_ND_ZBR2>(zbr.iznd, zbr.zzbr2, Say<ZBR>::toEndMissing) && RemoveTied<ZBR>(no);
}

// Containers

bool NMD::RemoveKV(int no) {
  return RemoveChildren<R_KV_CB>(no, &NMD::RemoveCB) && RemoveChildren<R_KV_ZBR>(no, &NMD::RemoveZBR) &&
         RemoveChildren<R_KV_BUS>(no, &NMD::RemoveBUS) && RemoveChildren<R_KV_CP>(no, &NMD::RemoveCP) &&
         RemoveChildren<R_KV_LD>(no, &NMD::RemoveLD) && RemoveChildren<R_KV_UN>(no, &NMD::RemoveUN) &&
         RemoveTied<KV>(no);
}

bool NMD::RemoveST(int no) {
  if (!RemoveChildren<R_ST_KV>(no, &NMD::RemoveKV) || !RemoveChildren<R_ST_XF>(no, &NMD::RemoveXF)) return false;
  const int row = m_stTable->GetPh(no).r_dv_st;
  // Deliberately the station's own number in place of its district's, which isn't tested.
  if (row == -1 || no == -1) return Refuse(Say<ST>::unrelated);
  // Deliberately the links of the level's row with the same number: known to other programs in this form.
  Unlink<R_DV_ST, R_ST_KV>(m_rDvStTable->GetPh(row).idv, row);
  m_stTable->Remove(no);
  return true;
}

/// Deliberately not the removal of a district's stations, which stay: their chain is taken for one of lines, and the
/// lines' numbers for those of districts that go first, with all that follows from them in turn. A district that isn't
/// in use or whose removal is under way ends it all.
bool NMD::RemoveDV(int no) {
  struct Removal {
    int district;
    std::unique_ptr<tChildNode> list;
    const tChildNode* next;
  };
  std::vector<Removal> removals;  // in place of recursion, which damaged links could make too deep
  std::set<int> underWay;
  const auto begin = [&](int district) {
    if (!m_dvTable->IsUsed(district) || !underWay.insert(district).second) return false;
    if (!RemoveChildren<R_DV_LN>(district, &NMD::RemoveLN)) return false;
    if (!RemoveChildren<R_DV_DLN>(district, &NMD::RemoveDLN)) return false;
    const int head = m_dvTable->GetPh(district).r_dv_st;
    const bool isRow = head != -1 && m_rDvLnTable->IsUsed(head);
    std::unique_ptr<tChildNode> list(isRow ? m_rDvLnTable->ChildList(head) : nullptr);
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

bool NMD::RemoveCO(int no) {
  if (!RemoveChildren<R_CO_DV>(no, &NMD::RemoveDV)) return false;
  m_coTable->Remove(no);
  return true;
}

// By identity

bool NMD::RemoveCO(const QString& id) { return RemoveNamed<CO>(id, &NMD::RemoveCO); }
bool NMD::RemoveDV(const QString& id) { return RemoveNamed<DV>(id, &NMD::RemoveDV); }
bool NMD::RemoveST(const QString& id) { return RemoveNamed<ST>(id, &NMD::RemoveST); }
bool NMD::RemoveKV(const QString& id) { return RemoveNamed<KV>(id, &NMD::RemoveKV); }
bool NMD::RemoveBUS(const QString& id) { return RemoveNamed<BUS>(id, &NMD::RemoveBUS); }
bool NMD::RemoveLD(const QString& id) { return RemoveNamed<LD>(id, &NMD::RemoveLD); }
bool NMD::RemoveUN(const QString& id) { return RemoveNamed<UN>(id, &NMD::RemoveUN); }
bool NMD::RemoveCP(const QString& id) { return RemoveNamed<CP>(id, &NMD::RemoveCP); }
bool NMD::RemoveCB(const QString& id) { return RemoveNamed<CB>(id, &NMD::RemoveCB); }
bool NMD::RemoveXF(const QString& id) { return RemoveNamed<XF>(id, &NMD::RemoveXF); }
bool NMD::RemoveZBR(const QString& id) { return RemoveNamed<ZBR>(id, &NMD::RemoveZBR); }
bool NMD::RemoveLN(const QString& id) { return RemoveNamed<LN>(id, &NMD::RemoveLN); }
bool NMD::RemoveDLN(const QString& id) { return RemoveNamed<DLN>(id, &NMD::RemoveDLN); }

}  // namespace dtsdb
