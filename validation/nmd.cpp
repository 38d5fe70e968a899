#include "validation/nmd.h"

#include <QDateTime>
#include <QFileInfo>
#include <QObject>
#include <QStringConverter>
#include <bit>
#include <initializer_list>

#include "include/chain.h"
#include "include/standard_streams.h"
#include "model/record_bits.h"
#include "model/text.h"
#include "validation/row_checks.h"

namespace dtsdb {
namespace {

quint32 Now() { return static_cast<quint32>(QDateTime::currentSecsSinceEpoch()); }

}  // namespace

// Life and log

NMD::NMD(DTSDB* pDatabase) : m_pDatabase(pDatabase), m_logFile(QObject::tr("nmd.log")) {
  m_logPath = QFileInfo(m_logFile).absoluteFilePath();
  OpenLog(QIODevice::WriteOnly | QIODevice::Truncate | QIODevice::Append);
  if (!HasModel()) return;
#define DTSDB_COPY_POINTER(T, table, key, meaning) table = pDatabase->table;
  DTSDB_TABLES(DTSDB_COPY_POINTER)
#undef DTSDB_COPY_POINTER
}

NMD::NMD(const NMD& other) : m_pDatabase(nullptr) { *this = other; }

NMD& NMD::operator=(const NMD& other) {
  if (this == &other) return *this;
  m_pDatabase = other.m_pDatabase;
  m_lastError = other.m_lastError;
  m_findings = other.m_findings;
#define DTSDB_COPY_POINTER(T, table, key, meaning) table = other.table;
  DTSDB_TABLES(DTSDB_COPY_POINTER)
#undef DTSDB_COPY_POINTER
  CloseLog();
  m_logPath = other.m_logPath;
  m_logFile.setFileName(m_logPath);
  if (other.m_logFile.isOpen()) OpenLog(QIODevice::WriteOnly | QIODevice::Append);
  return *this;
}

NMD::~NMD() { CloseLog(); }

/// Opens the log such that every write goes to its end, whoever else writes into it. The stream passes bytes on.
void NMD::OpenLog(QIODevice::OpenMode mode) {
  const StandardStreamsKept kept;
  if (!m_logFile.open(mode)) return;
  m_log.setDevice(&m_logFile);
  m_log.setEncoding(QStringConverter::Latin1);
}

void NMD::CloseLog() {
  if (!m_logFile.isOpen()) return;
  m_log.flush();
  m_logFile.close();
}

/// Writes one line: stamp and `bytes`, the finding's text as it goes into the log.
void NMD::Report(const Finding& finding, const QString& bytes) {
  m_findings.append(finding);
  if (finding.severity == Severity::kError) ++Verdict().errors;
  if (!m_logFile.isOpen()) return;
  const qint64 second = QDateTime::currentSecsSinceEpoch();
  if (second != m_stampSecond) {  // a run writes many lines in one second, and local time is dear
    m_stampSecond = second;
    m_stamp = QDateTime::currentDateTime().toString(Qt::TextDate);
  }
  m_log << m_stamp << bytes << '\n';
}

void NMD::Report(TableKind table, const QString& id, const Message& message) {
  const LogText line = m_texts.Line(table, id, message);
  Report({message.severity, table, message.names ? id : QString(), message.field, line.real}, line.bytes);
}

// The run

bool NMD::DetectAll() {
  if (!HasModel()) return false;
  m_findings.clear();
  Report(KIND_NONE, QString(), message::kRunBegins);
  StartDetect();
  const bool went = RunChecks();
  if (went) {
    EndDetect();
    Report(KIND_NONE, QString(), message::kRunEnds);
  }
  if (m_logFile.isOpen()) m_log.flush();
  return went;
}

/// The order matters: zero-impedance branches need their breakers' nodes, devices need the link of their level to a
/// station, and lines come last, on the nodes of the stations and the stations' links to districts.
bool NMD::RunChecks() {
  return DetectCO_DV() && DetectDV_ST() && DetectST_KV() && DetectST_XF() && DetectKV_LD() && DetectKV_UN() &&
         DetectKV_CP() && DetectKV_CB() && DetectKV_BUS() && DetectKV_ZBR() && DetectDV_DLN() && DetectDV_LN();
}

namespace {

template <class... T>
void CompactAll(tTable<T>*... tables) {
  (tables->Compact(), ...);
}

template <class... T>
void ClearAll(tTable<T>*... tables) {
  (tables->Clear(), ...);
}

/// Sets link fields to -1 in every row.
template <class T, class Links = std::initializer_list<i32 T::*>>
void SetNone(tTable<T>* table, const Links& links) {
  for (int i = 0; i < table->GetCount(); ++i) {
    for (const auto link : links) (*table)[i].*link = -1;
  }
}

}  // namespace

void NMD::StartDetect() {
  // Nothing is added to these during a run: from here on their physical and logical numbers are the same.
  CompactAll(m_analogTable, m_statusTable, m_coTable, m_dvTable, m_stTable, m_lnTable, m_zbrTable, m_dlnTable,
             m_xfTable, m_kvTable, m_cbTable, m_cpTable, m_unTable, m_ldTable, m_busTable);

  ClearAll(m_cb2Table, m_dln2Table, m_ln2Table, m_xf2Table, m_zbr2Table);
  ClearAll(m_rCoDvTable, m_rDvLnTable, m_rDvDlnTable, m_rDvStTable, m_rStKvTable, m_rStXfTable, m_rKvZbrTable,
           m_rKvBusTable, m_rKvCbTable, m_rKvCpTable, m_rKvLdTable, m_rKvNdTable, m_rKvUnTable, m_rNdCb2Table,
           m_rNdDln2Table, m_rNdLn2Table, m_rNdXf2Table, m_rNdZbr2Table);
  SizeTables();
  m_ndTable->Clear();
  StartVerdict();
  ResetLinks();
}

/// Room for what the run will make. The counts are those of this moment: the tables of ends are empty, so that
/// R_ND_... starts without storage, and ND still holds the nodes of the run before.
void NMD::SizeTables() {
  m_ndTable->SetGrowBy(1000);
  m_ndTable->SetSize(10000);
  m_cb2Table->SetSize(2 * m_cbTable->GetCount());
  m_xf2Table->SetSize(2 * m_xfTable->GetCount());
  m_ln2Table->SetSize(2 * m_lnTable->GetCount());
  m_zbr2Table->SetSize(2 * m_zbrTable->GetCount());
  m_dln2Table->SetSize(2 * m_dlnTable->GetCount());
  m_rCoDvTable->SetSize(m_dvTable->GetCount());
  m_rDvLnTable->SetSize(m_lnTable->GetCount());
  m_rDvDlnTable->SetSize(m_dlnTable->GetCount());
  m_rDvStTable->SetSize(m_stTable->GetCount());
  m_rKvZbrTable->SetSize(m_zbrTable->GetCount());
  m_rStKvTable->SetSize(m_kvTable->GetCount());
  m_rStXfTable->SetSize(m_xfTable->GetCount());
  m_rKvBusTable->SetSize(m_busTable->GetCount());
  m_rKvCbTable->SetSize(m_cbTable->GetCount());
  m_rKvCpTable->SetSize(m_cpTable->GetCount());
  m_rKvLdTable->SetSize(m_ldTable->GetCount());
  m_rKvNdTable->SetSize(m_ndTable->GetCount());
  m_rKvUnTable->SetSize(m_unTable->GetCount());
  m_rNdCb2Table->SetSize(m_cb2Table->GetCount());
  m_rNdDln2Table->SetSize(m_dln2Table->GetCount());
  m_rNdLn2Table->SetSize(m_ln2Table->GetCount());
  m_rNdXf2Table->SetSize(m_xf2Table->GetCount());
  m_rNdZbr2Table->SetSize(m_zbr2Table->GetCount());
}

/// A new GLOBAL record, with no verdict yet and no topology. Only `f1` outlives a run.
void NMD::StartVerdict() {
  GLOBAL verdict;
  verdict.id = 0;
  verdict.f1 = m_globalTable->GetCount() != 0 ? Verdict().f1 : 100.0F;
  verdict.bs_free = -1;
  verdict.bs_dead = -1;
  verdict.bs_live = -1;
  verdict.bsl_free = -1;
  verdict.bsl_head = -1;
  verdict.n1 = -1;
  verdict.u1 = 0;
  verdict.time = 0;
  verdict.valid = 0;
  verdict.check_time = 0;
  verdict.invalid = 1;
  verdict.errors = 0;
  m_globalTable->Clear();
  m_globalTable->SetGrowBy(1);
  m_globalTable->Add(verdict);
  m_globalTable->Compact();
}

void NMD::ResetLinks() {
  SetNone(m_coTable, {&CO::r_co_dv});
  SetNone(m_dvTable, kTreeLinks<DV>);
  SetNone(m_stTable, kTreeLinks<ST>);
  for (int i = 0; i < m_stTable->GetCount(); ++i) (*m_stTable)[i].flag = 0;
  SetNone(m_kvTable, kTreeLinks<KV>);
  SetNone(m_lnTable, {&LN::r_dv_ln});
  SetNone(m_dlnTable, {&DLN::r_dv_dln});
  SetNone(m_zbrTable, {&ZBR::r_kv_zbr});
  SetNone(m_xfTable, {&XF::r_st_xf});
  SetNone(m_busTable, {&BUS::r_kv_bus});
  SetNone(m_cbTable, {&CB::r_kv_cb});
  SetNone(m_cpTable, {&CP::r_kv_cp});
  SetNone(m_ldTable, {&LD::r_kv_ld});
  SetNone(m_unTable, {&UN::r_kv_un});
}

/// Warns of every node that joins nothing. Devices of one kind without ends count once, however many there are.
void NMD::CheckNodes() {
  for (int i = 0; i < m_ndTable->GetCount(); ++i) {
    const ND& nd = (*m_ndTable)[i];
    const int devices = ChainLength(*m_rNdCb2Table, nd.r_nd_cb2) + ChainLength(*m_rNdXf2Table, nd.r_nd_xf2) +
                        ChainLength(*m_rNdLn2Table, nd.r_nd_ln2) + ChainLength(*m_rNdDln2Table, nd.r_nd_dln2) +
                        ChainLength(*m_rNdZbr2Table, nd.r_nd_zbr2) +
                        std::popcount(nd.flags & (ND_HAS_UN | ND_HAS_LD | ND_HAS_CP | ND_HAS_BUS));
    if (devices <= 1) Report(nd, message::kFewDevices);
  }
}

void NMD::EndDetect() {
  CheckNodes();
  Convert2Lg();
  CompactAll(m_kvTable, m_ndTable, m_xfTable, m_cb2Table, m_ln2Table, m_xf2Table, m_zbr2Table, m_dln2Table,
             m_rCoDvTable, m_rDvLnTable, m_rDvDlnTable, m_rDvStTable, m_rStKvTable, m_rStXfTable, m_rKvZbrTable,
             m_rKvBusTable, m_rKvCbTable, m_rKvCpTable, m_rKvLdTable, m_rKvNdTable, m_rKvUnTable, m_rNdCb2Table,
             m_rNdLn2Table, m_rNdXf2Table, m_rNdZbr2Table, m_rNdDln2Table);
  EndVerdict();
}

void NMD::EndVerdict() {
  GLOBAL& verdict = Verdict();
  if (verdict.errors == 0) {
    verdict.invalid = 0;
    verdict.valid = 1;
    verdict.check_time = Now();
    Report(KIND_NONE, QString(), message::kModelIsGood);
    return;
  }
  verdict.invalid = 1;
  verdict.valid = 0;
  LogText line = m_texts.Opening(Severity::kNotice);
  line += m_texts.Literal(message::kErrorsRemain[0]);
  line += m_texts.Identity(QString::number(verdict.errors));
  line += m_texts.Literal(message::kErrorsRemain[1]);
  Report({Severity::kNotice, KIND_NONE, QString(), nullptr, line.real}, line.bytes);
}

}  // namespace dtsdb
