/// \file
/// The lines between stations, alternating and direct current: here station tree and node graph must agree.
#include <cmath>

#include "validation/row_checks.h"

namespace dtsdb {
namespace {

template <class Line>
constexpr Required<Line> kRequired[] = {{&Line::st, message::kNoFromStation}, {&Line::zst, message::kNoToStation}};

constexpr Answer kFromNodeFaults[] = {{INSERT_OTHER_LEVEL, message::kLineFromNodeInOtherLevel},
                                      {INSERT_NO_LEVEL, message::kLineFromLevelNotThere}};
constexpr Answer kToNodeFaults[] = {{INSERT_OTHER_LEVEL, message::kLineToNodeInOtherLevel},
                                    {INSERT_NO_LEVEL, message::kLineToLevelNotThere}};
constexpr Answers kFromNode = {full::kBranchNodes, kFromNodeFaults};
constexpr Answers kToNode = {full::kBranchNodes, kToNodeFaults};

// In a run the nodes exist: they were made a step earlier.
template <class Line>
constexpr Answer kEndsFaults[] = {{INSERT_SAME_NODE, message::kLineSameNodes},
                                  {INSERT_NO_FROM_NODE, message::kLineFromNodeNotThere},
                                  {INSERT_NO_TO_NODE, message::kLineToNodeNotThere},
                                  {INSERT_OTHER_STATION, LineKind<Line>::inOtherStation}};

}  // namespace

/// The district of a station, -1 when it has none.
int NMD::DistrictOfStation(int st) {
  const int row = m_stTable->GetPh(st).r_dv_st;
  return row == -1 ? -1 : m_rDvStTable->GetPh(row).idv;
}

/// The district is looked at only when the nodes have been made: a line without one leaves its nodes behind.
template <class Line>
bool NMD::CheckLine(Line& line, int number) {
  using Kind = LineKind<Line>;
  using Ends = BranchKind<Line>;
  using Row = ParentRow<Line>;
  if (!IsNamed(line) || !IsFilled(line, kRequired<Line>)) return true;
  FindMeasurements(line);

  Outcome outcome = InsertNodes(line, line.kv, line.zkv, kFromNode, kToNode);
  if (outcome != Outcome::kGoOn) return outcome != Outcome::kTableFull;
  if (!IsLinked<Row>(line)) return true;
  const int district = Table<Row>().GetPh(line.*Relation<Row>::own).idv;

  const int result = BranchInsert(line.st, line.zst, line.nd, line.znd, &line.ind, &line.iznd, &(line.*Ends::fromEnd),
                                  &(line.*Ends::toEnd), KindOf<typename Ends::End>, number, line.id);
  outcome = Judge(line, result, {Kind::endsFull, kEndsFaults<Line>});
  if (outcome == Outcome::kGoOn) CheckLineEnds(line, district);
  return outcome != Outcome::kTableFull;
}

/// What the stations and levels at the two ends of a line in `district` say about it.
template <class Line>
void NMD::CheckLineEnds(Line& line, int district) {
  const int fromDistrict = DistrictOfStation(Number<ST>(line.st));
  const int toDistrict = DistrictOfStation(Number<ST>(line.zst));
  if (district != fromDistrict && district != toDistrict) Report(line, message::kLineInOtherDistrict);
  MarkDistrict(line, district, fromDistrict, toDistrict);

  if constexpr (LineKind<Line>::hasOneVoltage) {  // a level whose base voltage is 0 isn't compared
    const f32 from = m_kvTable->GetPh(LevelOfNode(line.ind)).vbase;
    const f32 to = m_kvTable->GetPh(LevelOfNode(line.iznd)).vbase;
    if (from != to && std::fabs(from) > 0.0F && std::fabs(to) > 0.0F) Report(line, message::kLineOfTwoVoltages);
  }
}

bool NMD::DetectDV_DLN() { return LinkPass<R_DV_DLN>() && CheckRows(&NMD::CheckLine<DLN>); }
bool NMD::DetectDV_LN() { return LinkPass<R_DV_LN>() && CheckRows(&NMD::CheckLine<LN>); }

}  // namespace dtsdb
