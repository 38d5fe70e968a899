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
  return moves.Add(moved) != -1;
}

bool ChangeLog::RecordLastMove(int nd, int newBs, int oldBs, int kv) const {
  auto& moves = m_network.Table<CHND>();
  for (int i = 0; i < moves.GetCount(); ++i) {
    CHND& moved = moves[i];
    if (moved.ind != nd) continue;
    moved.ibs_new = newBs;
    return true;
  }
  return RecordMove(nd, newBs, oldBs, kv);
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
