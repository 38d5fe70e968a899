/// \file
/// Adding records to a good model. What follows from a record comes out as a validation run makes it, in physical
/// numbers; where it doesn't, that is deliberate and says so.
#include "validation/edit_messages.h"
#include "validation/row_checks.h"

namespace dtsdb {

// Steps

/// What every addition asks first: a good model and a valid record.
template <class Record>
bool NMD::MayAdd(const Record& record) {
  if (!HasModel()) return false;
  if (Verdict().invalid != 0) return Refuse(kSayNotGood);
  return IsValid(record);
}

/// Adds the record to its table; gives its physical number, or -1 with the reason.
template <class Record>
int NMD::Insert(const Record& record) {
  const int number = Table<Record>().Add(record);
  if (number == -1) Refuse(Say<Record>::full);
  return number;
}

/// Ties record `number` to the parent that it names.
template <class Record>
bool NMD::Tie(int number) {
  using Row = ParentRow<Record>;
  const Record& record = Table<Record>().GetPh(number);
  const QString& parent = record.*Link<Row>::key;
  return Relate<Row>(Number<typename Relation<Row>::Parent>(parent), parent, number, record.id) ||
         Refuse(Say<Record>::relationFull);
}

/// Turns the names of measurements into numbers, -1 without a word for those that don't exist.
template <class Record>
void NMD::ResolveMeasurements(Record& record) {
  for (const Measurement<Record>& measurement : kMeasurements<Record>) FindMeasurement(record, measurement);
}

/// Finds or makes the two nodes of a branch in levels `kv` and `zkv`.
template <class Branch>
bool NMD::AddNodes(Branch& branch, const QString& kv, const QString& zkv) {
  return (NodeInsert(branch.nd, &branch.ind, kv, NO_MARK) == INSERT_DONE &&
          NodeInsert(branch.znd, &branch.iznd, zkv, NO_MARK) == INSERT_DONE) ||
         Refuse(kSayNodesFull);
}

// The administrative tree

/// Adds a container, which follows from nothing but its parent and holds nothing yet.
template <class Container>
bool NMD::AddContainer(Container& container) {
  if (!MayAdd(container)) return false;
  for (const auto link : kTreeLinks<Container>) container.*link = -1;
  const int number = Insert(container);
  return number != -1 && Tie<Container>(number);
}

bool NMD::AddCO(CO& co) { return MayAdd(co) && Insert(co) != -1; }

bool NMD::AddDV(DV& dv) { return AddContainer(dv); }
bool NMD::AddST(ST& st) { return AddContainer(st); }
bool NMD::AddKV(KV& kv) { return AddContainer(kv); }

// Devices on one node

template <class Shunt>
bool NMD::AddShunt(Shunt& shunt) {
  using Kind = ShuntKind<Shunt>;
  // Deliberately no mark on the node of a bus: the next validation makes it.
  constexpr int kMark = std::is_same_v<Shunt, BUS> ? NO_MARK : Kind::nodeMark;
  if (!MayAdd(shunt)) return false;
  const int number = Insert(shunt);
  if (number == -1) return false;

  Shunt& row = Table<Shunt>().GetPh(number);
  ResolveMeasurements(row);
  if (NodeInsert(row.nd, &row.ind, row.kv, kMark) != INSERT_DONE) return Refuse(kSayNodesFull);
  if (!Tie<Shunt>(number)) return false;
  if constexpr (Kind::stationMark != 0) MarkStation(StationOfLevel(Number<KV>(row.kv)), Kind::stationMark);
  return true;
}

bool NMD::AddBUS(BUS& bus) { return AddShunt(bus); }
bool NMD::AddLD(LD& ld) { return AddShunt(ld); }
bool NMD::AddUN(UN& un) { return AddShunt(un); }
bool NMD::AddCP(CP& cp) { return AddShunt(cp); }

// The branches inside a station

bool NMD::AddCB(CB& cb) {
  if (!MayAdd(cb)) return false;
  cb.istatus = Number<STATUS>(cb.status_id);
  const int number = Insert(cb);
  if (number == -1) return false;

  CB& row = m_cbTable->GetPh(number);
  if (!AddNodes(row, row.kv, row.kv) || !Tie<CB>(number)) return false;
  if (MakeEnds(row, number, row.nd, row.znd) != INSERT_DONE) return Refuse(Say<CB>::endsFull);
  MarkStation(StationOfLevel(Number<KV>(row.kv)), ST_HAS_CB);
  return true;
}

bool NMD::AddXF(XF& xf) {
  if (!MayAdd(xf)) return false;
  ResolveMeasurements(xf);
  const int number = Insert(xf);
  if (number == -1) return false;

  XF& row = m_xfTable->GetPh(number);
  if (!AddNodes(row, row.kv, row.zkv) || !Tie<XF>(number)) return false;
  if (MakeEnds(row, number, row.nd, row.znd) != INSERT_DONE) return Refuse(Say<XF>::endsFull);
  MarkStation(Number<ST>(row.st), ST_HAS_XF);
  return true;
}

bool NMD::AddZBR(ZBR& zbr) {
  if (!MayAdd(zbr)) return false;
  zbr.icb = Number<CB>(zbr.cb);
  CB& cb = m_cbTable->GetPh(zbr.icb);
  zbr.ind = cb.ind;
  zbr.iznd = (*m_cbTable)[zbr.icb].iznd;  // deliberately of the breaker whose logical number this is
  const int level = m_rKvCbTable->GetPh(cb.r_kv_cb).ikv;
  const int number = Insert(zbr);
  if (number == -1) return false;
  if (!Relate<R_KV_ZBR>(level, m_kvTable->GetPh(level).id, number, zbr.id)) return Refuse(Say<ZBR>::relationFull);

  // Deliberately too late for the row in the table, which keeps the numbers that the caller gave.
  zbr.status = 0;
  ResolveMeasurements(zbr);

  // Deliberately the row whose logical number is the new physical one: the new row itself where the two agree.
  ZBR& row = (*m_zbrTable)[number];
  const int result = MakeEnds(row, m_zbrTable->LgToPh(number), cb.nd, cb.znd);
  if (result == INSERT_TABLE_FULL) return Refuse(Say<ZBR>::endsFull);
  if (result == INSERT_SAME_NODE) return Refuse(Say<ZBR>::sameNodes);
  cb.flags |= CB_ZBR;
  return true;
}

// Lines

template <class Line>
bool NMD::AddLine(Line& line) {
  using Row = ParentRow<Line>;
  if (!MayAdd(line)) return false;
  const int dv = Number<DV>(line.dv);
  const int st = Number<ST>(line.st);
  line.status = 0;
  MarkDistrict(line, dv, DistrictOfStation(st), DistrictOfStation(Number<ST>(line.zst)));
  ResolveMeasurements(line);
  line.ind = Number<ND>(line.nd);
  line.iznd = Number<ND>(line.znd);
  const int number = Insert(line);
  if (number == -1) return false;

  tTable<Line>& lines = Table<Line>();
  Line& row = lines.GetPh(number);
  if (!AddNodes(row, row.kv, row.zkv)) return false;
  // Deliberately no head for a district whose first line this is: it goes to the district that bears the number of the
  // line's from station.
  if (!Relate<Row>(dv, row.dv, number, row.id, st)) return Refuse(Say<Line>::relationFull);

  // Deliberately the line whose logical number is the new physical one: the new line itself when it sorts last.
  Line& sorted = lines[number];
  return MakeEnds(sorted, lines.LgToPh(number), sorted.nd, sorted.znd) != INSERT_TABLE_FULL ||
         Refuse(Say<Line>::endsFull);
}

bool NMD::AddLN(LN& ln) { return AddLine(ln); }
bool NMD::AddDLN(DLN& dln) { return AddLine(dln); }

}  // namespace dtsdb
