/// \file
/// The lines between stations, alternating and direct current: here station tree and node graph must agree.
#include <cmath>

#include "validation/internal/checks.h"

namespace dtsdb::internal {
namespace {

template <class Line>
constexpr Required<Line> kRequiredOfLine[] = {{&Line::st, message::kNoFromStation<Line>},
                                              {&Line::zst, message::kNoToStation<Line>}};

template <class Line>
constexpr Fault kLineFromNodeFaults[] = {{INSERT_OTHER_LEVEL, message::kLineFromNodeInOtherLevel<Line>},
                                         {INSERT_NO_LEVEL, message::kLineFromLevelNotThere<Line>}};
template <class Line>
constexpr Fault kToNodeFaults[] = {{INSERT_OTHER_LEVEL, message::kLineToNodeInOtherLevel<Line>},
                                   {INSERT_NO_LEVEL, message::kLineToLevelNotThere<Line>}};
template <class Line>
constexpr Faults kLineFromNode = {reason::kBranchNodesFull, kLineFromNodeFaults<Line>};
template <class Line>
constexpr Faults kToNode = {reason::kBranchNodesFull, kToNodeFaults<Line>};

// In a run the nodes exist: they were made a step earlier.
template <class Line>
constexpr Fault kLineEndsFaults[] = {{INSERT_SAME_NODE, message::kLineSameNodes<Line>},
                                     {INSERT_NO_FROM_NODE, message::kLineFromNodeNotThere<Line>},
                                     {INSERT_NO_TO_NODE, message::kLineToNodeNotThere<Line>},
                                     {INSERT_OTHER_STATION, kLineKind<Line>.inOtherStation}};
template <class Line>
constexpr Faults kEnds = {kLineKind<Line>.endsFull, kLineEndsFaults<Line>};

/// Reports what the stations and levels at the two ends of a line in `district` mean for it.
template <class Line>
void CheckLineEnds(RowChecks& checks, Line& line, int district) {
  RunGraph& graph = checks.graph;
  const int fromDistrict = graph.DistrictOfStation(graph.NumberOf<ST>(line.st));
  const int toDistrict = graph.DistrictOfStation(graph.NumberOf<ST>(line.zst));
  if (district != fromDistrict && district != toDistrict) checks.log.Report(line, message::kLineInOtherDistrict<Line>);
  MarkDistrict(line, district, fromDistrict, toDistrict);

  if constexpr (kLineKind<Line>.hasOneVoltage) {  // a level whose base voltage is 0 isn't compared
    const f32 from = checks.model.m_kvTable->GetPh(graph.LevelOfNode(line.ind)).vbase;
    const f32 to = checks.model.m_kvTable->GetPh(graph.LevelOfNode(line.iznd)).vbase;
    if (from != to && std::fabs(from) > 0.0F && std::fabs(to) > 0.0F) {
      checks.log.Report(line, message::kLineOfTwoVoltages);
    }
  }
}

/// The district is looked at only when the nodes have been made: a line without one leaves its nodes behind.
template <class Line>
bool CheckLine(RowChecks& checks, Line& line, int number) {
  using Row = ParentRow<Line>;
  if (!checks.IsNamed(line) || !checks.IsFilled(line, kRequiredOfLine<Line>)) return true;
  checks.FindMeasurements(line);

  Outcome outcome = checks.InsertNodes(line, line.kv, line.zkv, kLineFromNode<Line>, kToNode<Line>);
  if (outcome != Outcome::kGoOn) return outcome != Outcome::kTableFull;
  if (!checks.IsLinked(line)) return true;
  const int district = checks.graph.ParentOf<Row>(number);

  const int result = checks.graph.InsertLine(kKindOf<typename BranchKind<Line>::End>, line.st, line.zst,
                                             EndsOf(line, number, line.nd, line.znd));
  outcome = checks.Judge(line, result, kEnds<Line>);
  if (outcome == Outcome::kGoOn) CheckLineEnds(checks, line, district);
  return outcome != Outcome::kTableFull;
}

template <class Line>
bool CheckLineTable(RowChecks& checks) {
  return checks.Link<ParentRow<Line>>() &&
         checks.ForEachRow<Line>([&checks](Line& line, int number) { return CheckLine(checks, line, number); });
}

}  // namespace

bool CheckLines(RowChecks& checks) { return CheckLineTable<LN>(checks); }
bool CheckDcLines(RowChecks& checks) { return CheckLineTable<DLN>(checks); }

}  // namespace dtsdb::internal
