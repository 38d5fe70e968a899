#include "validation/internal/additions.h"

#include "model/record_bits.h"
#include "validation/internal/device_kinds.h"
#include "validation/internal/graph.h"
#include "validation/internal/relations.h"

namespace dtsdb::internal {

// Steps

/// What every addition asks first: a good model and a valid record.
template <class Record>
bool Additions::MayAdd(const Record& record) const {
  if ((*m_model.m_globalTable)[0].invalid != 0) return Refuse(reason::kModelNotGood);
  return m_tests.IsValid(record);
}

/// Adds the record to its table; returns its physical number, or -1 with the reason.
template <class Record>
int Additions::Insert(const Record& record) {
  const int number = Table<Record>().Add(record);
  if (number == -1) Refuse(EditReasons<Record>::kFull);
  return number;
}

/// Ties record `number` to the parent that it names.
template <class Record>
bool Additions::Tie(int number) {
  using Row = ParentRow<Record>;
  const Record& record = Table<Record>().GetPh(number);
  const QString& parent = record.*kParentName<Row>.key;
  return Relate<Row>(m_model, Number<typename Relation<Row>::Parent>(parent), parent, number, record.id) ||
         Refuse(EditReasons<Record>::kRelationFull);
}

/// Turns the names of measurements into numbers, -1 without a word for those that don't exist.
template <class Record>
void Additions::ResolveMeasurements(Record& record) {
  RunGraph graph(m_model);
  for (const Measurement<Record>& measurement : kMeasurements<Record>) FindMeasurement(graph, record, measurement);
}

/// Finds or makes the two nodes of a branch in levels `kv` and `zkv`.
template <class Branch>
bool Additions::InsertNodes(Branch& branch, const QString& kv, const QString& zkv) {
  return (InsertNode(m_model, branch.nd, &branch.ind, kv, NO_MARK) == INSERT_DONE &&
          InsertNode(m_model, branch.znd, &branch.iznd, zkv, NO_MARK) == INSERT_DONE) ||
         Refuse(reason::kNodesFull);
}

/// Makes the two ends of branch `number` on its nodes, which are named `nd` and `znd`.
template <class Branch>
int Additions::InsertEnds(Branch& branch, int number, const QString& nd, const QString& znd) {
  return InsertBranch(m_model, kKindOf<typename BranchKind<Branch>::End>, EndsOf(branch, number, nd, znd));
}

// The administrative tree

/// Adds a container, which follows from nothing but its parent and holds nothing yet.
template <class Container>
bool Additions::AddContainer(Container& container) {
  if (!MayAdd(container)) return false;
  ResetLinks(container);
  const int number = Insert(container);
  return number != -1 && Tie<Container>(number);
}

/// The link of a company is its caller's. Kept: K20.
bool Additions::Add(CO& co) { return MayAdd(co) && Insert(co) != -1; }

bool Additions::Add(DV& dv) { return AddContainer(dv); }
bool Additions::Add(ST& st) { return AddContainer(st); }
bool Additions::Add(KV& kv) { return AddContainer(kv); }

// Devices on one node

template <class Shunt>
bool Additions::AddShunt(Shunt& shunt) {
  constexpr ShuntKind kKind = kShuntKind<Shunt>;
  if (!MayAdd(shunt)) return false;
  const int number = Insert(shunt);
  if (number == -1) return false;

  Shunt& row = Table<Shunt>().GetPh(number);
  ResolveMeasurements(row);
  if (InsertNode(m_model, row.nd, &row.ind, row.kv, kKind.addedMark) != INSERT_DONE) {
    return Refuse(reason::kNodesFull);
  }
  if (!Tie<Shunt>(number)) return false;
  if constexpr (kKind.stationMark != 0) {
    MarkStation(m_model, StationOfLevel(m_model, Number<KV>(row.kv)), kKind.stationMark);
  }
  return true;
}

bool Additions::Add(BUS& bus) { return AddShunt(bus); }
bool Additions::Add(LD& ld) { return AddShunt(ld); }
bool Additions::Add(UN& un) { return AddShunt(un); }
bool Additions::Add(CP& cp) { return AddShunt(cp); }

// The branches inside a station

bool Additions::Add(CB& cb) {
  if (!MayAdd(cb)) return false;
  cb.istatus = Number<STATUS>(cb.status_id);
  const int number = Insert(cb);
  if (number == -1) return false;

  CB& row = m_model.m_cbTable->GetPh(number);
  if (!InsertNodes(row, row.kv, row.kv) || !Tie<CB>(number)) return false;
  if (InsertEnds(row, number, row.nd, row.znd) != INSERT_DONE) return Refuse(EditReasons<CB>::kEndsFull);
  MarkStation(m_model, StationOfLevel(m_model, Number<KV>(row.kv)), ST_HAS_CB);
  return true;
}

bool Additions::Add(XF& xf) {
  if (!MayAdd(xf)) return false;
  ResolveMeasurements(xf);
  const int number = Insert(xf);
  if (number == -1) return false;

  XF& row = m_model.m_xfTable->GetPh(number);
  if (!InsertNodes(row, row.kv, row.zkv) || !Tie<XF>(number)) return false;
  if (InsertEnds(row, number, row.nd, row.znd) != INSERT_DONE) return Refuse(EditReasons<XF>::kEndsFull);
  MarkStation(m_model, Number<ST>(row.st), ST_HAS_XF);
  return true;
}

bool Additions::Add(ZBR& zbr) {
  if (!MayAdd(zbr)) return false;
  zbr.icb = Number<CB>(zbr.cb);
  CB& cb = m_model.m_cbTable->GetPh(zbr.icb);
  zbr.ind = cb.ind;
  // Of the breaker whose logical number this is. Kept: K23.
  zbr.iznd = (*m_model.m_cbTable)[zbr.icb].iznd;
  const int level = m_model.m_rKvCbTable->GetPh(cb.r_kv_cb).ikv;
  const int number = Insert(zbr);
  if (number == -1) return false;
  if (!Relate<R_KV_ZBR>(m_model, level, m_model.m_kvTable->GetPh(level).id, number, zbr.id)) {
    return Refuse(EditReasons<ZBR>::kRelationFull);
  }

  // Too late for the row in the table, which keeps the numbers that the caller gave. Kept: K24.
  zbr.status = 0;
  ResolveMeasurements(zbr);

  // The row whose logical number is the new physical one, which is the new row itself where the two agree. Kept: K22.
  ZBR& row = (*m_model.m_zbrTable)[number];
  const int result = InsertEnds(row, m_model.m_zbrTable->LgToPh(number), cb.nd, cb.znd);
  if (result == INSERT_TABLE_FULL) return Refuse(EditReasons<ZBR>::kEndsFull);
  if (result == INSERT_SAME_NODE) return Refuse(EditReasons<ZBR>::kSameNodes);
  cb.flags |= CB_ZBR;
  return true;
}

// Lines

template <class Line>
bool Additions::AddLine(Line& line) {
  using Row = ParentRow<Line>;
  if (!MayAdd(line)) return false;
  const int dv = Number<DV>(line.dv);
  const int st = Number<ST>(line.st);
  line.status = 0;
  MarkDistrict(line, dv, DistrictOfStation(m_model, st), DistrictOfStation(m_model, Number<ST>(line.zst)));
  ResolveMeasurements(line);
  line.ind = Number<ND>(line.nd);
  line.iznd = Number<ND>(line.znd);
  const int number = Insert(line);
  if (number == -1) return false;

  tTable<Line>& lines = Table<Line>();
  Line& row = lines.GetPh(number);
  if (!InsertNodes(row, row.kv, row.zkv)) return false;
  // A district whose first line this is gets no head. The district that bears the number of the line's from station
  // gets it. Kept: K21.
  if (!Relate<Row>(m_model, dv, row.dv, number, row.id, st)) return Refuse(EditReasons<Line>::kRelationFull);

  // The line whose logical number is the new physical one, which is the new line itself when it sorts last.
  // Kept: K22.
  Line& sorted = lines[number];
  return InsertEnds(sorted, lines.LgToPh(number), sorted.nd, sorted.znd) != INSERT_TABLE_FULL ||
         Refuse(EditReasons<Line>::kEndsFull);
}

bool Additions::Add(LN& ln) { return AddLine(ln); }
bool Additions::Add(DLN& dln) { return AddLine(dln); }

}  // namespace dtsdb::internal
