/// \file
/// The branches inside a station: breakers, zero-impedance branches, transformer windings. One that fails on a node
/// is dropped and gets no ends.
#include <bit>

#include "validation/row_checks.h"

namespace dtsdb {
namespace {

constexpr Answer kFromNodeFaults[] = {{INSERT_OTHER_LEVEL, message::kFromNodeInOtherLevel},
                                      {INSERT_NO_LEVEL, message::kLevelNotThere}};
constexpr Answers kFromNode = {full::kBranchNodes, kFromNodeFaults};
// Both nodes of a breaker lie in its one level, those of a winding in two.
constexpr Answer kBreakerToNodeFaults[] = {{INSERT_OTHER_LEVEL, message::kToNodeInOtherLevel},
                                           {INSERT_NO_LEVEL, message::kLevelNotThere}};
constexpr Answer kWindingToNodeFaults[] = {{INSERT_OTHER_LEVEL, message::kToNodeInOtherLevel},
                                           {INSERT_NO_LEVEL, message::kToLevelNotThere}};
constexpr Answers kBreakerToNode = {full::kBranchNodes, kBreakerToNodeFaults};
constexpr Answers kWindingToNode = {full::kBranchNodes, kWindingToNodeFaults};

constexpr Answer kEndsFaults[] = {{INSERT_SAME_NODE, message::kSameNodes}};

// The last can't fire in a run, since a level without identity has no breakers.
constexpr Required<CB> kBreakerRequired[] = {
    {&CB::nd, message::kNoFromNode}, {&CB::znd, message::kNoToNode}, {&CB::kv, message::kNoLevel}};

constexpr Required<XF> kWindingRequired[] = {{&XF::nd, message::kNoHighNode},
                                             {&XF::znd, message::kNoLowNode},
                                             {&XF::st, message::kNoStation},
                                             {&XF::kv, message::kNoFromLevel},
                                             {&XF::zkv, message::kNoToLevel}};

}  // namespace

/// Makes the two ends of a branch and reports what is wrong with them.
template <class Branch>
Outcome NMD::InsertBranch(Branch& branch, int number, const QString& nd, const QString& znd, const char* full) {
  return Judge(branch, MakeEnds(branch, number, nd, znd), {full, kEndsFaults});
}

// Breakers

bool NMD::DetectKV_CB() { return LinkPass<R_KV_CB>() && CheckRows(&NMD::CheckBreaker); }

bool NMD::CheckBreaker(CB& cb, int number) {
  if (!IsNamed(cb) || !IsLinked<R_KV_CB>(cb) || !IsFilled(cb, kBreakerRequired)) return true;
  // The message speaks of several types; it comes for none as well.
  if (std::popcount(cb.flags & CB_TYPES) != 1) Report(cb, message::kBadBreakerType);
  cb.istatus = m_statusTable->Find(STATUS(cb.status_id));
  if (cb.istatus == -1) Report(cb, message::kNoStatusPoint);

  Outcome outcome = InsertNodes(cb, cb.kv, cb.kv, kFromNode, kBreakerToNode);
  if (outcome == Outcome::kGoOn) outcome = InsertBranch(cb, number, cb.nd, cb.znd, full::kBreakerEnds);
  if (outcome == Outcome::kGoOn) MarkStation(StationOfLevel(m_rKvCbTable->GetPh(cb.r_kv_cb).ikv), ST_HAS_CB);
  return outcome != Outcome::kTableFull;
}

// Zero-impedance branches

bool NMD::DetectKV_ZBR() { return CheckRows(&NMD::CheckZbr); }

/// A zero-impedance branch stands on the two nodes of its breaker and belongs to the breaker's level. One without
/// identity, or on a breaker without a level, is passed over in silence.
bool NMD::CheckZbr(ZBR& zbr, int number) {
  if (zbr.id.isEmpty()) return true;
  zbr.icb = m_cbTable->Find(CB(zbr.cb));
  if (zbr.icb == -1) {
    Report(zbr, message::kUnknownBreaker);
    return true;
  }
  CB& cb = m_cbTable->GetPh(zbr.icb);
  zbr.ind = cb.ind;
  zbr.iznd = cb.iznd;
  if (cb.r_kv_cb == -1) return true;

  const int level = m_rKvCbTable->GetPh(cb.r_kv_cb).ikv;
  if (!Relate<R_KV_ZBR>(level, m_kvTable->GetPh(level).id, number, zbr.id)) {
    m_lastError = QString::fromUtf8(full::kZbrRelation);
    return false;
  }
  FindMeasurements(zbr);
  const Outcome outcome = InsertBranch(zbr, number, cb.nd, cb.znd, full::kZbrEnds);
  if (outcome == Outcome::kGoOn) cb.flags |= CB_ZBR;
  return outcome != Outcome::kTableFull;
}

// Transformer windings

bool NMD::DetectST_XF() { return LinkPass<R_ST_XF>() && CheckRows(&NMD::CheckWinding); }

bool NMD::CheckWinding(XF& xf, int number) {
  if (!IsNamed(xf) || !IsLinked<R_ST_XF>(xf) || !IsFilled(xf, kWindingRequired)) return true;
  if (xf.type < 1 || xf.type > 3) {
    Report(xf, message::kBadWindingType);
    return true;
  }
  FindMeasurements(xf);

  Outcome outcome = InsertNodes(xf, xf.kv, xf.zkv, kFromNode, kWindingToNode);
  if (outcome == Outcome::kGoOn) outcome = InsertBranch(xf, number, xf.nd, xf.znd, full::kWindingEnds);
  if (outcome == Outcome::kGoOn) MarkStation(m_rStXfTable->GetPh(xf.r_st_xf).ist, ST_HAS_XF);
  return outcome != Outcome::kTableFull;
}

}  // namespace dtsdb
