#include "validation/internal/run.h"

#include "validation/internal/checks.h"
#include "validation/internal/logical_numbers.h"
#include "validation/internal/verdict.h"

namespace dtsdb::internal {
namespace {

/// Room for what the run will make. The counts are those of this moment: the tables of ends are empty, so that
/// R_ND_... starts without storage, and ND still holds the nodes of the run before.
void SizeTables(DTSDB& model) {
  model.m_ndTable->SetGrowBy(1000);
  model.m_ndTable->SetSize(10000);
  ForEachBranch([&model]<class Branch>() {
    TableOf<typename BranchKind<Branch>::End>(model).SetSize(2 * TableOf<Branch>(model).GetCount());
  });
  ForEachRelation(
      [&model]<class Row>() { TableOf<Row>(model).SetSize(TableOf<typename Relation<Row>::Child>(model).GetCount()); });
}

/// Sets a link field to -1 in every row.
template <class Record>
void SetNone(tTable<Record>& table, i32 Record::*link) {
  for (int i = 0; i < table.GetCount(); ++i) table[i].*link = -1;
}

/// Takes all records off the relations, and the marks off the stations.
void ResetLinks(DTSDB& model) {
  ForEachRelation([&model]<class Row>() {
    using R = Relation<Row>;
    SetNone(TableOf<typename R::Parent>(model), R::kHead);
    SetNone(TableOf<typename R::Child>(model), R::kOwn);
  });
  for (int i = 0; i < model.m_stTable->GetCount(); ++i) (*model.m_stTable)[i].flag = 0;
}

/// Checks and end of a run with what it makes put into the tables at once. False, and nothing but links set, when that
/// can't be done; then the reports are forgotten.
bool RunAtOnce(RowChecks& checks) {
  if (!BulkGraph::Takes(checks.model)) return false;
  checks.log.Hold();
  checks.graph.BeginAtOnce();
  const bool went = RunChecks(checks);
  if (went) {
    checks.log.Release();
    checks.graph.AtOnce()->Finish(checks.log);
    EndVerdict((*checks.model.m_globalTable)[0], checks.log);
  } else {
    checks.log.Drop();
    ResetLinks(checks.model);
  }
  checks.graph.EndAtOnce();
  return went;
}

bool RunOneByOne(RowChecks& checks) {
  if (!RunChecks(checks)) return false;
  EndRun(checks);
  return true;
}

}  // namespace

bool RunValidation(RowChecks& checks, Making making) {
  checks.log.ForgetFindings();
  checks.log.Report(message::kRunBegins);
  StartRun(checks.model);
  const bool went = (making == Making::kAtOnce && RunAtOnce(checks)) || RunOneByOne(checks);
  if (went) checks.log.Report(message::kRunEnds);
  checks.log.Flush();
  return went;
}

void StartRun(DTSDB& model) {
  // Nothing is added to these during a run: from here on their physical and logical numbers are the same.
  const auto compact = [](auto&... tables) { (tables.Compact(), ...); };
  compact(*model.m_analogTable, *model.m_statusTable, *model.m_coTable, *model.m_dvTable, *model.m_stTable,
          *model.m_kvTable);
  ForEachShunt([&model]<class Shunt>() { TableOf<Shunt>(model).Compact(); });
  ForEachBranch([&model]<class Branch>() { TableOf<Branch>(model).Compact(); });

  ForEachBranch([&model]<class Branch>() { TableOf<typename BranchKind<Branch>::End>(model).Clear(); });
  ForEachRelation([&model]<class Row>() { TableOf<Row>(model).Clear(); });
  SizeTables(model);
  model.m_ndTable->Clear();

  StartVerdict(*model.m_globalTable);
  ResetLinks(model);
}

/// The order matters: zero-impedance branches need their breakers' nodes, devices need the link of their level to a
/// station, and lines come last, on the nodes of the stations and the stations' links to districts.
bool RunChecks(RowChecks& checks) {
  return CheckDistricts(checks) && CheckStations(checks) && CheckLevels(checks) && CheckWindings(checks) &&
         CheckLoads(checks) && CheckUnits(checks) && CheckCapacitors(checks) && CheckBreakers(checks) &&
         CheckBuses(checks) && CheckZbrs(checks) && CheckDcLines(checks) && CheckLines(checks);
}

void EndRun(RowChecks& checks) {
  DTSDB& model = checks.model;
  WarnOfIdleNodes(model, checks.log);
  NumbersToLogical(model);
  model.m_kvTable->Compact();
  model.m_xfTable->Compact();
  model.m_ndTable->Compact();
  ForEachBranch([&model]<class Branch>() { TableOf<typename BranchKind<Branch>::End>(model).Compact(); });
  ForEachRelation([&model]<class Row>() { TableOf<Row>(model).Compact(); });
  EndVerdict((*model.m_globalTable)[0], checks.log);
}

}  // namespace dtsdb::internal
