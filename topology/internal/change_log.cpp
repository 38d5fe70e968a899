#include "topology/internal/change_log.h"

#include <QDateTime>

#include "topology/internal/failure.h"

namespace dtsdb::internal {

bool ChangeLog::RecordMove(int nd, int newBs, int oldBs, int kv) const {
  auto& moves = m_network.Table<CHND>();
  CHND moved;
  moved.id = moves.GetCount();
  moved.ind = nd;
  moved.ibs_new = newBs;
  moved.ibs_old = oldBs;
  moved.ikv = kv;
  if (moves.Add(moved) == -1) return false;
  if (FirstMove(nd) == -1 && m_moveOfNode != nullptr && nd >= 0 && nd < static_cast<int>(m_moveOfNode->size())) {
    (*m_moveOfNode)[static_cast<std::size_t>(nd)] = moved.id;
  }
  return true;
}

/// The logical number of the first row of CHND with node `nd`, -1 for none. A row that was noted in a run before this
/// one is of no meaning, which shows in CHND itself.
int ChangeLog::FirstMove(int nd) const {
  if (m_moveOfNode == nullptr || nd < 0 || nd >= static_cast<int>(m_moveOfNode->size())) return -1;
  auto& moves = m_network.Table<CHND>();
  const int row = (*m_moveOfNode)[static_cast<std::size_t>(nd)];
  return row >= 0 && row < moves.GetCount() && moves[row].ind == nd ? row : -1;
}

bool ChangeLog::RecordLastMove(int nd, int newBs, int oldBs, int kv) const {
  const int row = FirstMove(nd);
  if (row == -1) return RecordMove(nd, newBs, oldBs, kv);
  m_network.Table<CHND>()[row].ibs_new = newBs;
  return true;
}

namespace {

/// Takes the identity of record `ref` when `kind` is the kind of `Record`.
template <class Record>
bool TakeName(const Network& network, int kind, int ref, QString* name) {
  if (kind != kKindOf<Record>) return false;
  *name = network.Table<Record>().GetPh(ref).id;
  return true;
}

/// The same for the first kind of `Records` that fits; false when none does.
template <class... Records>
bool TakeNameOf(const Network& network, int kind, int ref, QString* name) {
  return (TakeName<Records>(network, kind, ref, name) || ...);
}

}  // namespace

/// Ends of zero-impedance branches are not logged: the call fails for them. Kept: K52.
bool ChangeLog::Record(const RunEvent& event) const {
  auto& log = m_network.Table<TPL>();
  TPL row;
  row.id = log.GetCount();
  row.kind = event.kind;
  row.n1 = static_cast<int>(event.status);
  row.n2 = event.newBs;
  row.n3 = event.oldBs;
  row.time = static_cast<u32>(QDateTime::currentSecsSinceEpoch());
  row.event = QString::fromLatin1(event.word);
  if (event.kind == KIND_BS) {
    row.name = QString::number(event.ref);
  } else if (!TakeNameOf<LD, CP, UN, LN2, DLN2, XF2, XF, LN, DLN, ZBR, BUS>(m_network, event.kind, event.ref,
                                                                            &row.name)) {
    return false;
  }
  return log.Add(row) != -1 || FailedIn("tpTpl");
}

}  // namespace dtsdb::internal
