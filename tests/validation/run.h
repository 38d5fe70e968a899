/// \file
/// Validation runs and their logs, for the tests of this folder.
#pragma once

#include <gtest/gtest.h>

#include <QRegularExpression>
#include <string>
#include <vector>

#include "include/chain.h"
#include "tests/support/model_builder.h"
#include "validation/internal/parts.h"
#include "validation/internal/run.h"
#include "validation/message_catalog.h"
#include "validation/nmd.h"

namespace dtsdb {

/// The private operations of NMD, for the tests.
struct NmdAccess {
  static void StartDetect(NMD& nmd) { nmd.StartDetect(); }
  static bool RunChecks(NMD& nmd) { return internal::RunChecks(nmd.m_parts->checks); }
  static bool Run(NMD& nmd, internal::Making making) { return internal::RunValidation(nmd.m_parts->checks, making); }
  /// Each check by the member of its own, in the order of a run.
  static bool CheckByCheck(NMD& nmd) {
    return nmd.DetectCO_DV() && nmd.DetectDV_ST() && nmd.DetectST_KV() && nmd.DetectKV_LD() && nmd.DetectKV_UN() &&
           nmd.DetectKV_CP() && nmd.DetectKV_CB() && nmd.DetectKV_BUS() && nmd.DetectKV_ZBR() && nmd.DetectST_XF() &&
           nmd.DetectDV_LN() && nmd.DetectDV_DLN();
  }
  static bool RemoveStation(NMD& nmd, int number) { return nmd.RemoveST(number); }
  static int NodeInsert(NMD& nmd, const char* nd, int* pNd, const char* kv, int mask) {
    return nmd.NodeInsert(IdFromLiteral(nd), pNd, IdFromLiteral(kv), mask);
  }
  static int Branch2Insert(NMD& nmd, const char* nd, const char* znd, int* numbers, int kind, int branch,
                           const char* id) {
    return nmd.Branch2Insert(IdFromLiteral(nd), IdFromLiteral(znd), numbers, numbers + 1, numbers + 2, numbers + 3,
                             kind, branch, IdFromLiteral(id));
  }
  static int BranchInsert(NMD& nmd, const char* st, const char* zst, const char* nd, const char* znd, int* numbers,
                          int kind, int branch, const char* id) {
    return nmd.BranchInsert(IdFromLiteral(st), IdFromLiteral(zst), IdFromLiteral(nd), IdFromLiteral(znd), numbers,
                            numbers + 1, numbers + 2, numbers + 3, kind, branch, IdFromLiteral(id));
  }
  template <class Row>
  static bool LinkPass(NMD& nmd) {
    return internal::LinkPass<Row>(nmd.m_parts->model);
  }
};

}  // namespace dtsdb

namespace dtsdb::test {

using Texts = std::vector<std::string>;

/// A text of the library as the tests' own literals are, for comparisons that can be read when they fail.
inline std::string Utf8(const QString& text) { return text.toStdString(); }

/// The lines of a log, each without its stamp, which must be there. Lines must be sound GBK.
inline Texts LogLines(const QByteArray& log) {
  static const QRegularExpression kStamp(
      QStringLiteral("^[A-Z][a-z]{2} [A-Z][a-z]{2} [ 0-9]?[0-9] "
                     "[0-9]{2}:[0-9]{2}:[0-9]{2} [0-9]{4}$"));
  EXPECT_TRUE(log.isEmpty() || log.endsWith('\n'));
  Texts lines;
  for (const QByteArray& line : log.split('\n').mid(0, log.count('\n'))) {
    const qsizetype stamp = line.indexOf("--NMD ");
    EXPECT_TRUE(kStamp.match(QString::fromLatin1(line.left(stamp))).hasMatch()) << line.constData();
    const std::optional<QString> text = ExactTextFromId(IdFromBytes(line.mid(stamp)));
    EXPECT_TRUE(text.has_value()) << line.toHex().constData();
    lines.push_back(Utf8(text.value_or(QString())));
  }
  return lines;
}

/// Expects that a finding agrees with what the list of messages has under its code.
inline void ExpectListed(const Finding& finding) {
  const MessageInfo* const message = FindMessage(finding.code);
  ASSERT_NE(message, nullptr) << finding.code;
  EXPECT_EQ(message->severity, finding.severity) << finding.code;
  EXPECT_EQ(message->table, finding.table) << finding.code;
  EXPECT_STREQ(message->field, finding.field) << finding.code;
  const QString text = QString::fromUtf8(message->chinese);
  EXPECT_TRUE(finding.text.endsWith(text.section(QLatin1String("%1"), -1))) << finding.code;
}

/// One run over a model, in a directory of its own. Each finding must be in the list of messages.
class ValidationRun {
 public:
  explicit ValidationRun(DTSDB& database) : nmd(&database) {
    result = nmd.DetectAll();
    global = database.m_globalTable->GetPh(0);
    log = m_directory.Read(QStringLiteral("nmd.log"));
    for (const Finding& finding : nmd.Findings()) ExpectListed(finding);
  }

  Texts Lines() const { return LogLines(log); }
  Texts Errors() const { return LinesWith("错误:"); }
  Texts Warnings() const { return LinesWith("警告:"); }
  std::string LastError() const { return Utf8(nmd.GetLastError()); }

  /// The lines that hold `part`.
  Texts LinesWith(const std::string& part) const {
    Texts found;
    for (const std::string& line : Lines()) {
      if (line.find(part) != std::string::npos) found.push_back(line);
    }
    return found;
  }

 private:
  TemporaryDirectory m_directory;

 public:
  NMD nmd;
  bool result = false;
  GLOBAL global;
  QByteArray log;
};

/// A station "S1" with the level "K1" and a breaker "B1" from "N1" to "N2" with a unit and a load: a good model.
inline ModelBuilder GoodModel() {
  ModelBuilder m;
  m.Station("S1").Kv("K1", 220);
  m.Breaker("B1", "K1", "N1", "N2").Unit("U1", "K1", "N1").Load("L1", "K1", "N2");
  return m;
}

/// Fills a table as a bulk load does: without a look for equal rows.
template <class T>
void LoadRows(DTSDB& database, std::vector<T> rows) {
  TableOf<T>(database).SetData(rows.data(), static_cast<int>(rows.size()), false);
}

/// Puts a second row beside an equal one, which only a bulk load can do.
template <class T>
void Duplicate(ModelBuilder& m, const char* id) {
  std::vector<T> rows;
  for (int i = 0; i < m.Table<T>().GetCount(); ++i) rows.push_back(m.Table<T>()[i]);
  rows.push_back(m.Of<T>(id));
  LoadRows(m.Db(), rows);
}

/// The rows of a relation's chain, as the identities of the children, in chain order.
template <class Row>
Texts ChainOf(DTSDB& database, int head) {
  Texts ids;
  for (const Row& row : Chain(TableOf<Row>(database), head)) ids.push_back(Utf8(row.*Relation<Row>::kChildId));
  return ids;
}

}  // namespace dtsdb::test
