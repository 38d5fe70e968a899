#include "validation/nmd.h"

#include <QObject>

#include "validation/internal/checks.h"
#include "validation/internal/fastdb.h"
#include "validation/internal/logical_numbers.h"
#include "validation/internal/parts.h"
#include "validation/internal/run.h"

namespace dtsdb {

using internal::Removals;

// Life

NMD::NMD(DTSDB* pDatabase) : NMD(pDatabase, CurrentLogSink()) {}

NMD::NMD(DTSDB* pDatabase, LogSink sink) : m_pDatabase(pDatabase), m_logFile(QObject::tr("nmd.log")) {
  m_parts = std::make_unique<internal::ValidationParts>(pDatabase, m_logFile, m_log, m_lastError);
  m_parts->log.Begin(std::move(sink));
  if (HasModel()) PointToTables(m_parts->model, *this);
}

NMD::NMD(const NMD& other) : m_pDatabase(nullptr) { *this = other; }

NMD& NMD::operator=(const NMD& other) {
  if (this == &other) return *this;
  m_pDatabase = other.m_pDatabase;
  m_lastError = other.m_lastError;
  PointToTables(other, *this);
  m_parts = std::make_unique<internal::ValidationParts>(&other.m_parts->model, m_logFile, m_log, m_lastError);
  m_parts->log.Continue(other.m_parts->log);
  m_parts->lastError.TakeCodeOf(other.m_parts->lastError);
  return *this;
}

NMD::~NMD() = default;

bool NMD::HasModel() const { return DTSDB_ASSERT(m_pDatabase != nullptr, "pDatabase != 0"); }

// The run

bool NMD::DetectAll() { return HasModel() && internal::RunValidation(m_parts->checks); }
const char* NMD::LastErrorCode() const { return m_parts->lastError.Code(); }
const QList<Finding>& NMD::Findings() const { return m_parts->log.Findings(); }

void NMD::StartDetect() { internal::StartRun(m_parts->model); }
void NMD::EndDetect() { internal::EndRun(m_parts->checks); }
void NMD::Convert2Lg() { internal::NumbersToLogical(m_parts->model); }

bool NMD::DetectCO_DV() { return internal::CheckDistricts(m_parts->checks); }
bool NMD::DetectDV_ST() { return internal::CheckStations(m_parts->checks); }
bool NMD::DetectST_KV() { return internal::CheckLevels(m_parts->checks); }
bool NMD::DetectST_XF() { return internal::CheckWindings(m_parts->checks); }
bool NMD::DetectKV_LD() { return internal::CheckLoads(m_parts->checks); }
bool NMD::DetectKV_UN() { return internal::CheckUnits(m_parts->checks); }
bool NMD::DetectKV_CP() { return internal::CheckCapacitors(m_parts->checks); }
bool NMD::DetectKV_CB() { return internal::CheckBreakers(m_parts->checks); }
bool NMD::DetectKV_BUS() { return internal::CheckBuses(m_parts->checks); }
bool NMD::DetectKV_ZBR() { return internal::CheckZbrs(m_parts->checks); }
bool NMD::DetectDV_DLN() { return internal::CheckDcLines(m_parts->checks); }
bool NMD::DetectDV_LN() { return internal::CheckLines(m_parts->checks); }

// Building the graph

int NMD::NodeInsert(const QString& nd, int* pNd, const QString& kv, int mask) {
  return m_parts->checks.graph.InsertNode(nd, pNd, kv, mask);
}

int NMD::Branch2Insert(const QString& nd, const QString& znd, int* pNd, int* pZnd, int* pTerm, int* pZterm, int kind,
                       int branch, const QString& id) {
  return m_parts->checks.graph.InsertBranch(kind, {branch, id, {nd, pNd, pTerm}, {znd, pZnd, pZterm}});
}

int NMD::BranchInsert(const QString& st, const QString& zst, const QString& nd, const QString& znd, int* pNd, int* pZnd,
                      int* pTerm, int* pZterm, int kind, int branch, const QString& id) {
  return m_parts->checks.graph.InsertLine(kind, st, zst, {branch, id, {nd, pNd, pTerm}, {znd, pZnd, pZterm}});
}

// Editing

bool NMD::IsValid(const CO& co) { return HasModel() && m_parts->tests.IsValid(co); }
bool NMD::IsValid(const DV& dv) { return HasModel() && m_parts->tests.IsValid(dv); }
bool NMD::IsValid(const ST& st) { return HasModel() && m_parts->tests.IsValid(st); }
bool NMD::IsValid(const KV& kv) { return HasModel() && m_parts->tests.IsValid(kv); }
bool NMD::IsValid(const BUS& bus) { return HasModel() && m_parts->tests.IsValid(bus); }
bool NMD::IsValid(const LD& ld) { return HasModel() && m_parts->tests.IsValid(ld); }
bool NMD::IsValid(const UN& un) { return HasModel() && m_parts->tests.IsValid(un); }
bool NMD::IsValid(const CP& cp) { return HasModel() && m_parts->tests.IsValid(cp); }
bool NMD::IsValid(const CB& cb) { return HasModel() && m_parts->tests.IsValid(cb); }
bool NMD::IsValid(const XF& xf) { return HasModel() && m_parts->tests.IsValid(xf); }
bool NMD::IsValid(const ZBR& zbr) { return HasModel() && m_parts->tests.IsValid(zbr); }
bool NMD::IsValid(const LN& ln) { return HasModel() && m_parts->tests.IsValid(ln); }
bool NMD::IsValid(const DLN& dln) { return HasModel() && m_parts->tests.IsValid(dln); }

bool NMD::AddCO(CO& co) { return HasModel() && m_parts->additions.Add(co); }
bool NMD::AddDV(DV& dv) { return HasModel() && m_parts->additions.Add(dv); }
bool NMD::AddST(ST& st) { return HasModel() && m_parts->additions.Add(st); }
bool NMD::AddKV(KV& kv) { return HasModel() && m_parts->additions.Add(kv); }
bool NMD::AddBUS(BUS& bus) { return HasModel() && m_parts->additions.Add(bus); }
bool NMD::AddLD(LD& ld) { return HasModel() && m_parts->additions.Add(ld); }
bool NMD::AddUN(UN& un) { return HasModel() && m_parts->additions.Add(un); }
bool NMD::AddCP(CP& cp) { return HasModel() && m_parts->additions.Add(cp); }
bool NMD::AddCB(CB& cb) { return HasModel() && m_parts->additions.Add(cb); }
bool NMD::AddXF(XF& xf) { return HasModel() && m_parts->additions.Add(xf); }
bool NMD::AddZBR(ZBR& zbr) { return HasModel() && m_parts->additions.Add(zbr); }
bool NMD::AddLN(LN& ln) { return HasModel() && m_parts->additions.Add(ln); }
bool NMD::AddDLN(DLN& dln) { return HasModel() && m_parts->additions.Add(dln); }

bool NMD::RemoveCO(const QString& id) { return HasModel() && m_parts->removals.ByName<CO>(id, &Removals::RemoveCO); }
bool NMD::RemoveDV(const QString& id) { return HasModel() && m_parts->removals.ByName<DV>(id, &Removals::RemoveDV); }
bool NMD::RemoveST(const QString& id) { return HasModel() && m_parts->removals.ByName<ST>(id, &Removals::RemoveST); }
bool NMD::RemoveKV(const QString& id) { return HasModel() && m_parts->removals.ByName<KV>(id, &Removals::RemoveKV); }
bool NMD::RemoveBUS(const QString& id) { return HasModel() && m_parts->removals.ByName<BUS>(id, &Removals::RemoveBUS); }
bool NMD::RemoveLD(const QString& id) { return HasModel() && m_parts->removals.ByName<LD>(id, &Removals::RemoveLD); }
bool NMD::RemoveUN(const QString& id) { return HasModel() && m_parts->removals.ByName<UN>(id, &Removals::RemoveUN); }
bool NMD::RemoveCP(const QString& id) { return HasModel() && m_parts->removals.ByName<CP>(id, &Removals::RemoveCP); }
bool NMD::RemoveCB(const QString& id) { return HasModel() && m_parts->removals.ByName<CB>(id, &Removals::RemoveCB); }
bool NMD::RemoveXF(const QString& id) { return HasModel() && m_parts->removals.ByName<XF>(id, &Removals::RemoveXF); }
bool NMD::RemoveZBR(const QString& id) { return HasModel() && m_parts->removals.ByName<ZBR>(id, &Removals::RemoveZBR); }
bool NMD::RemoveLN(const QString& id) { return HasModel() && m_parts->removals.ByName<LN>(id, &Removals::RemoveLN); }
bool NMD::RemoveDLN(const QString& id) { return HasModel() && m_parts->removals.ByName<DLN>(id, &Removals::RemoveDLN); }

bool NMD::RemoveCO(int no) { return m_parts->removals.RemoveCO(no); }
bool NMD::RemoveDV(int no) { return m_parts->removals.RemoveDV(no); }
bool NMD::RemoveST(int no) { return m_parts->removals.RemoveST(no); }
bool NMD::RemoveKV(int no) { return m_parts->removals.RemoveKV(no); }
bool NMD::RemoveBUS(int no) { return m_parts->removals.RemoveBUS(no); }
bool NMD::RemoveLD(int no) { return m_parts->removals.RemoveLD(no); }
bool NMD::RemoveUN(int no) { return m_parts->removals.RemoveUN(no); }
bool NMD::RemoveCP(int no) { return m_parts->removals.RemoveCP(no); }
bool NMD::RemoveCB(int no) { return m_parts->removals.RemoveCB(no); }
bool NMD::RemoveXF(int no) { return m_parts->removals.RemoveXF(no); }
bool NMD::RemoveZBR(int no) { return m_parts->removals.RemoveZBR(no); }
bool NMD::RemoveLN(int no) { return m_parts->removals.RemoveLN(no); }
bool NMD::RemoveDLN(int no) { return m_parts->removals.RemoveDLN(no); }

// The realtime database

bool NMD::ReadFastdb(dbDatabase* db) {
  internal::ReadInput(m_pDatabase, db);
  return true;
}

bool NMD::WriteFastdb(dbDatabase* db) {
  internal::WriteValidated(m_pDatabase, db);
  return true;
}

}  // namespace dtsdb
