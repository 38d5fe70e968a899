/// \file
/// The validation of a network model.
#pragma once

#include <QFile>
#include <QList>
#include <QString>
#include <QTextStream>
#include <memory>

#include "include/log_sink.h"
#include "model/dtsdb.h"
#include "validation/finding.h"

namespace dtsdb {

namespace internal {
struct ValidationParts;
}
struct NmdAccess;

/// The gatekeeper of a network model.
///
/// DetectAll checks every record, reports what it finds in the log "nmd.log", builds what follows from the records'
/// identity texts (nodes, branch ends, relations) and records its verdict in GLOBAL. The topology works on models
/// with a good verdict only.
///
/// An NMD stands on a DTSDB, which it doesn't own and which must outlive it. One thread at a time; while a run is
/// under way the model is the run's alone.
class NMD {
 public:
  /// Begins a new log in the current directory or the program's sink (include/log_sink.h). Lines of no log are lost.
  NMD(DTSDB* pDatabase);
  /// One whose log goes to `sink`, whatever the program's is. A sink that does nothing makes no log.
  NMD(DTSDB* pDatabase, LogSink sink);
  /// A copy shares the model, takes over the last error and the findings, and writes on in the same log.
  NMD(const NMD& other);
  NMD& operator=(const NMD& other);
  virtual ~NMD();

  /// One whole validation run. True when it went through, whatever it found: whether the model is good stands in
  /// GLOBAL `valid`. False when a table took no more rows; the reason is in GetLastError, and the derived tables
  /// stay half built. Can be repeated; every run adds to the log and builds everything anew.
  bool DetectAll();

  /// The reason of the last failure, real text, in nearly all cases with a line feed at its end. Never cleared.
  const QString& GetLastError() const { return m_lastError; }

  /// The code of the last failure (docs/messages.md), a literal; null before the first. Also of a removal that leaves
  /// GetLastError as it was.
  const char* LastErrorCode() const;

  // Editing a good model, record by record (docs/editing.md). Each operation returns true, or false with the reason in
  // GetLastError. Nothing goes into the log, and nothing is taken back: an operation that fails midway leaves its
  // part of the work, and a new DetectAll puts the model in order.

  /// Whether the record could be added: its identity is new, and what it names exists and fits together. Changes
  /// nothing but the last error, and can be called on any model.
  bool IsValid(const CO& co);
  bool IsValid(const DV& dv);
  bool IsValid(const ST& st);
  bool IsValid(const KV& kv);
  bool IsValid(const BUS& bus);
  bool IsValid(const LD& ld);
  bool IsValid(const UN& un);
  bool IsValid(const CP& cp);
  bool IsValid(const CB& cb);
  bool IsValid(const XF& xf);
  bool IsValid(const ZBR& zbr);
  bool IsValid(const LN& ln);
  bool IsValid(const DLN& dln);

  /// Adds a record to a model whose last validation was good, and to all that follows from it: relations, nodes,
  /// branch ends, marks. The caller fills in the identity texts; numbers are resolved in the caller's record before it
  /// is copied into the table. Fields that an addition doesn't set come as the caller gave them.
  bool AddCO(CO& co);
  bool AddDV(DV& dv);
  bool AddST(ST& st);
  bool AddKV(KV& kv);
  bool AddBUS(BUS& bus);
  bool AddLD(LD& ld);
  bool AddUN(UN& un);
  bool AddCP(CP& cp);
  bool AddCB(CB& cb);
  bool AddXF(XF& xf);
  bool AddZBR(ZBR& zbr);
  bool AddLN(LN& ln);
  bool AddDLN(DLN& dln);

  /// Removes a record, its relations and ends, and the nodes that nothing else uses; a container with what it holds.
  /// Runs on any model, whatever its verdict.
  bool RemoveCO(const QString& id);
  bool RemoveDV(const QString& id);
  bool RemoveST(const QString& id);
  bool RemoveKV(const QString& id);
  bool RemoveBUS(const QString& id);
  bool RemoveLD(const QString& id);
  bool RemoveUN(const QString& id);
  bool RemoveCP(const QString& id);
  bool RemoveCB(const QString& id);
  bool RemoveXF(const QString& id);
  bool RemoveZBR(const QString& id);
  bool RemoveLN(const QString& id);
  bool RemoveDLN(const QString& id);

  /// Loads the sixteen input tables from the realtime database (docs/realtime-exchange.md), in one transaction.
  /// Always true: failures go to the database's own error handling.
  bool ReadFastdb(dbDatabase* db);
  /// Stores the result of a validation: all but the measurements and what the topology makes. Commits; always true.
  bool WriteFastdb(dbDatabase* db);

  /// What the last run found, in the order of the log: errors, warnings and the notices of the run.
  const QList<Finding>& Findings() const;

 private:
  friend struct NmdAccess;  // the tests' way to the operations below

  void StartDetect();
  void EndDetect();
  void Convert2Lg();

  // The checks. False: a table took no more rows, m_lastError has the reason.
  bool DetectCO_DV();
  bool DetectDV_ST();
  bool DetectST_KV();
  bool DetectST_XF();
  bool DetectKV_LD();
  bool DetectKV_UN();
  bool DetectKV_CP();
  bool DetectKV_CB();
  bool DetectKV_BUS();
  bool DetectKV_ZBR();
  bool DetectDV_DLN();
  bool DetectDV_LN();

  // Building the graph, with the results of validation/internal/graph.h
  int NodeInsert(const QString& nd, int* pNd, const QString& kv, int mask);
  int Branch2Insert(const QString& nd, const QString& znd, int* pNd, int* pZnd, int* pTerm, int* pZterm, int kind,
                    int branch, const QString& id);
  int BranchInsert(const QString& st, const QString& zst, const QString& nd, const QString& znd, int* pNd, int* pZnd,
                   int* pTerm, int* pZterm, int kind, int branch, const QString& id);

  // Removals by physical number
  bool RemoveCO(int no);
  bool RemoveDV(int no);
  bool RemoveST(int no);
  bool RemoveKV(int no);
  bool RemoveBUS(int no);
  bool RemoveLD(int no);
  bool RemoveUN(int no);
  bool RemoveCP(int no);
  bool RemoveCB(int no);
  bool RemoveXF(int no);
  bool RemoveZBR(int no);
  bool RemoveLN(int no);
  bool RemoveDLN(int no);

  bool HasModel() const;

  template <class T>
  friend struct TableMember;

  DTSDB* m_pDatabase;
  QFile m_logFile;
  QTextStream m_log;
  QString m_lastError;
  // The tables that the database had when this was made; those of m_parts.
#include "model/table_pointers.inc"
  std::unique_ptr<internal::ValidationParts> m_parts;  // does the work
};

}  // namespace dtsdb
