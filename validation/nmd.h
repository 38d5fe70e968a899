/// \file
/// The validation of a network model.
#pragma once

#include <QFile>
#include <QList>
#include <QString>
#include <QTextStream>

#include "model/dtsdb.h"
#include "validation/finding.h"
#include "validation/messages.h"

namespace dtsdb {

struct Answers;
template <class Record>
struct Measurement;
struct NmdAccess;
enum class Outcome;

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
  /// Begins a new log in the current directory. Where that can't be done, the log's lines go nowhere.
  NMD(DTSDB* pDatabase);
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

  // Editing a good model, record by record (docs/editing.md). Each operation gives true, or false with the reason in
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
  const QList<Finding>& Findings() const { return m_findings; }

 private:
  friend struct NmdAccess;  // the tests' way to the operations below

  void StartDetect();
  void EndDetect();
  void Convert2Lg();

  // The checks. False: a table took no more rows, m_lastError says which.
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

  // Building the graph. The results are in validation/indexing.h; the numbers go straight into the records.

  /// Finds or makes node `nd` of level `kv`; a `mask` above 0 is added to its flags.
  int NodeInsert(const QString& nd, int* pNd, const QString& kv, int mask);
  /// Makes the two ends of a branch whose nodes have the numbers *pNd and *pZnd. `kind` is the kind code of the
  /// table of ends; with any other nothing is made.
  int Branch2Insert(const QString& nd, const QString& znd, int* pNd, int* pZnd, int* pTerm, int* pZterm, int kind,
                    int branch, const QString& id);
  /// The same for a line, after a test that its nodes exist and lie in the stations that it names.
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

  DTSDB* m_pDatabase;
  QFile m_logFile;
  QTextStream m_log;
  QString m_lastError;
#define DTSDB_MEMBER_TABLE(T, table, key, meaning) tTable<T>* table = nullptr;
  DTSDB_TABLES(DTSDB_MEMBER_TABLE)
#undef DTSDB_MEMBER_TABLE

  // The run and the log
  void OpenLog(QIODevice::OpenMode mode);
  void CloseLog();
  bool RunChecks();
  void SizeTables();
  void StartVerdict();
  void ResetLinks();
  void CheckNodes();
  void EndVerdict();
  void Report(const Finding& finding, const QString& bytes);
  void Report(TableKind table, const QString& id, const Message& message);
  template <class Record>
  void Report(const Record& record, const Message& message) {
    Report(KindOf<Record>, record.id, message);
  }
  /// The single GLOBAL record.
  GLOBAL& Verdict() { return (*m_globalTable)[0]; }

  /// The table of record class `T`.
  template <class T>
  tTable<T>& Table() const;

  /// The physical number of the record with identity `id`, -1 if there is none.
  template <class T>
  int Number(const QString& id) const {
    return Table<T>().Find(T(id));
  }
  bool HasModel() const { return DTSDB_ASSERT(m_pDatabase != nullptr, "pDatabase != 0"); }

  // Relations, and the ways up the hierarchy along them
  template <class Row>
  bool LinkPass();
  template <class Row>
  bool Relate(int parent, const QString& parentId, int child, const QString& childId) {
    return Relate<Row>(parent, parentId, child, childId, parent);
  }
  template <class Row>
  bool Relate(int parent, const QString& parentId, int child, const QString& childId, int headTaker);
  int LevelOfNode(int nd);
  int StationOfLevel(int kv);
  int DistrictOfStation(int st);
  void MarkStation(int st, u8 bit);

  // Numbers of relation rows and their ends, from physical to logical
  template <class Row>
  void LinksToLogical();
  template <class Row>
  void OwnToLogical();
  template <class Row>
  void OwnFromPlace();

  // Checks of single rows. False: a table took no more rows.
  template <class T>
  bool CheckRows(bool (NMD::*check)(T& row, int number));
  bool CheckDistrict(DV& dv, int number);
  bool CheckStation(ST& st, int number);
  bool CheckLevel(KV& kv, int number);
  template <class Shunt>
  bool CheckShunt(Shunt& shunt, int number);
  bool CheckBreaker(CB& cb, int number);
  bool CheckZbr(ZBR& zbr, int number);
  bool CheckWinding(XF& xf, int number);
  template <class Line>
  bool CheckLine(Line& line, int number);
  template <class Line>
  void CheckLineEnds(Line& line, int district);

  // Steps of these checks
  template <class Record>
  bool IsNamed(const Record& record);
  template <class Row>
  bool IsLinked(const typename Relation<Row>::Child& record);
  template <class Record, class Required>
  bool IsFilled(const Record& record, const Required& fields);
  template <class Record>
  bool FindMeasurement(Record& record, const Measurement<Record>& measurement);
  template <class Record>
  void FindMeasurements(Record& record);
  template <class Record>
  Outcome Judge(const Record& record, int result, const Answers& answers);
  template <class Branch>
  Outcome InsertNodes(Branch& branch, const QString& kv, const QString& zkv, const Answers& from, const Answers& to);
  template <class Branch>
  Outcome InsertBranch(Branch& branch, int number, const QString& nd, const QString& znd, const char* full);

  // Making branch ends
  template <class Branch>
  int MakeEnds(Branch& branch, int number, const QString& nd, const QString& znd);
  template <class Branch>
  int InsertEnds(const QString& nd, const QString& znd, int ndNumber, int zndNumber, int* pTerm, int* pZterm,
                 int branch, const QString& id);
  template <class Branch>
  bool InsertEnd(const QString& nd, int ndNumber, int* pTerm, int branch, const QString& id, bool isTo);

  // Editing: why a record can't be added
  bool Refuse(const char* text);
  template <class Shunt>
  bool IsValidShunt(const Shunt& shunt);
  template <class Line>
  bool IsValidLine(const Line& line);
  bool IsNodeElsewhere(const QString& nd, int kv);

  // Editing: steps of the additions
  template <class Record>
  bool MayAdd(const Record& record);
  template <class Record>
  int Insert(const Record& record);
  template <class Record>
  bool Tie(int number);
  template <class Record>
  void ResolveMeasurements(Record& record);
  template <class Branch>
  bool AddNodes(Branch& branch, const QString& kv, const QString& zkv);
  template <class Container>
  bool AddContainer(Container& container);
  template <class Shunt>
  bool AddShunt(Shunt& shunt);
  template <class Line>
  bool AddLine(Line& line);

  // Editing: steps of the removals
  template <class Record>
  bool RemoveNamed(const QString& id, bool (NMD::*remove)(int));
  template <class Row>
  bool RemoveChildren(int parent, bool (NMD::*remove)(int));
  template <class Row, class Read = Row, class Written = Row>
  void Unlink(int parent, int number);
  template <class Row>
  bool Detach(int child, const char* unrelated);
  template <class Record>
  bool RemoveTied(int number);
  int DeviceCount(int nd, u32 marks);
  template <class Shunt>
  bool RemoveShunt(int number);
  template <class Branch, class Written>
  bool RemoveEnd(int nd, int end, const char* missing);
  template <class Branch, class Written>
  bool RemoveBranchEnd(int nd, int end, const char* levelLess, const char* missing);
  template <class Branch>
  bool RemoveBranch(int number);

  QString m_logPath;  // absolute: a copy finds the log wherever the process has gone since
  qint64 m_stampSecond = -1;
  QString m_stamp;
  LogTexts m_texts;
  QList<Finding> m_findings;
};

#define DTSDB_TABLE_OF(T, table, key, meaning) \
  template <>                                  \
  inline tTable<T>& NMD::Table<T>() const {    \
    return *table;                             \
  }
DTSDB_TABLES(DTSDB_TABLE_OF)
#undef DTSDB_TABLE_OF

}  // namespace dtsdb
