/// \file
/// The branches inside a station: breakers, zero-impedance branches, transformer windings. One that fails on a node
/// is dropped and gets no ends.
#include <bit>

#include "validation/internal/checks.h"

namespace dtsdb::internal {
namespace {

template <class Branch>
constexpr Fault kFromNodeFaults[] = {{INSERT_OTHER_LEVEL, message::kFromNodeInOtherLevel<Branch>},
                                     {INSERT_NO_LEVEL, message::kLevelNotThere<Branch>}};
template <class Branch>
constexpr Faults kFromNode = {reason::kBranchNodesFull, kFromNodeFaults<Branch>};
// Both nodes of a breaker lie in its one level, those of a winding in two.
constexpr Fault kBreakerToNodeFaults[] = {{INSERT_OTHER_LEVEL, message::kToNodeInOtherLevel<CB>},
                                          {INSERT_NO_LEVEL, message::kLevelNotThere<CB>}};
constexpr Fault kWindingToNodeFaults[] = {{INSERT_OTHER_LEVEL, message::kToNodeInOtherLevel<XF>},
                                          {INSERT_NO_LEVEL, message::kToLevelNotThere}};
constexpr Faults kBreakerToNode = {reason::kBranchNodesFull, kBreakerToNodeFaults};
constexpr Faults kWindingToNode = {reason::kBranchNodesFull, kWindingToNodeFaults};

template <class Branch>
constexpr Fault kEndsFaults[] = {{INSERT_SAME_NODE, message::kSameNodes<Branch>}};

// The last can't fire in a run, since a level without identity has no breakers.
constexpr Required<CB> kBreakerRequired[] = {
    {&CB::nd, message::kNoFromNode}, {&CB::znd, message::kNoToNode}, {&CB::kv, message::kNoLevel<CB>}};

constexpr Required<XF> kWindingRequired[] = {{&XF::nd, message::kNoHighNode},
                                             {&XF::znd, message::kNoLowNode},
                                             {&XF::st, message::kNoStation},
                                             {&XF::kv, message::kNoFromLevel},
                                             {&XF::zkv, message::kNoToLevel}};

/// Makes the two ends of a branch and reports what is wrong with them.
template <class Branch>
Outcome InsertEnds(RowChecks& checks, const Branch& branch, const BranchEnds& ends, const Reason& full) {
  const int result = checks.graph.InsertBranch(kKindOf<typename BranchKind<Branch>::End>, ends);
  return checks.Judge(branch, result, {full, kEndsFaults<Branch>});
}

bool CheckBreaker(RowChecks& checks, CB& cb, int number) {
  DTSDB& model = checks.model;
  if (!checks.IsNamed(cb) || !checks.IsLinked(cb) || !checks.IsFilled(cb, kBreakerRequired)) return true;
  // The message speaks of several types; it comes for none as well. Kept: K06.
  if (std::popcount(cb.flags & CB_TYPES) != 1) checks.log.Report(cb, message::kBadBreakerType);
  cb.istatus = checks.graph.NumberOf<STATUS>(cb.status_id);
  if (cb.istatus == -1) checks.log.Report(cb, message::kNoStatusPoint);

  Outcome outcome = checks.InsertNodes(cb, cb.kv, cb.kv, kFromNode<CB>, kBreakerToNode);
  if (outcome == Outcome::kGoOn) {
    outcome = InsertEnds(checks, cb, EndsOf(cb, number, cb.nd, cb.znd), reason::kBreakerEndsFull);
  }
  if (outcome == Outcome::kGoOn) {
    MarkStation(model, checks.graph.StationOfLevel(checks.graph.ParentOf<R_KV_CB>(number)), ST_HAS_CB);
  }
  return outcome != Outcome::kTableFull;
}

/// A zero-impedance branch stands on the two nodes of its breaker and belongs to the breaker's level. One without
/// identity, or on a breaker without a level, is passed over in silence. Kept: K07.
bool CheckZbr(RowChecks& checks, ZBR& zbr, int number) {
  DTSDB& model = checks.model;
  if (zbr.id.isEmpty()) return true;
  zbr.icb = checks.graph.NumberOf<CB>(zbr.cb);
  if (zbr.icb == -1) {
    checks.log.Report(zbr, message::kUnknownBreaker);
    return true;
  }
  CB& cb = model.m_cbTable->GetPh(zbr.icb);
  zbr.ind = cb.ind;
  zbr.iznd = cb.iznd;
  if (cb.r_kv_cb == -1) return true;

  const int level = checks.graph.ParentOf<R_KV_CB>(zbr.icb);
  if (!checks.graph.RelateZbr(level, number)) return checks.TableFull(reason::kKvZbrFull);
  checks.FindMeasurements(zbr);
  const Outcome outcome = InsertEnds(checks, zbr, EndsOf(zbr, number, cb.nd, cb.znd), reason::kZbrEndsFull);
  if (outcome == Outcome::kGoOn) cb.flags |= CB_ZBR;  // no run clears it. Kept: K08.
  return outcome != Outcome::kTableFull;
}

/// The stations of a winding's levels are not looked at. Kept: K11.
bool CheckWinding(RowChecks& checks, XF& xf, int number) {
  DTSDB& model = checks.model;
  if (!checks.IsNamed(xf) || !checks.IsLinked(xf) || !checks.IsFilled(xf, kWindingRequired)) return true;
  if (xf.type < 1 || xf.type > 3) {
    checks.log.Report(xf, message::kBadWindingType);
    return true;
  }
  checks.FindMeasurements(xf);

  Outcome outcome = checks.InsertNodes(xf, xf.kv, xf.zkv, kFromNode<XF>, kWindingToNode);
  if (outcome == Outcome::kGoOn) {
    outcome = InsertEnds(checks, xf, EndsOf(xf, number, xf.nd, xf.znd), reason::kWindingEndsFull);
  }
  if (outcome == Outcome::kGoOn) MarkStation(model, checks.graph.ParentOf<R_ST_XF>(number), ST_HAS_XF);
  return outcome != Outcome::kTableFull;
}

}  // namespace

bool CheckBreakers(RowChecks& checks) {
  return checks.Link<R_KV_CB>() &&
         checks.ForEachRow<CB>([&checks](CB& cb, int number) { return CheckBreaker(checks, cb, number); });
}

bool CheckZbrs(RowChecks& checks) {
  return checks.ForEachRow<ZBR>([&checks](ZBR& zbr, int number) { return CheckZbr(checks, zbr, number); });
}

bool CheckWindings(RowChecks& checks) {
  return checks.Link<R_ST_XF>() &&
         checks.ForEachRow<XF>([&checks](XF& xf, int number) { return CheckWinding(checks, xf, number); });
}

}  // namespace dtsdb::internal
