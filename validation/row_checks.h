/// \file
/// What the checks and the additions of records have in common. Part of the implementation of NMD.
#pragma once

#include <span>

#include "validation/device_kinds.h"
#include "validation/indexing.h"
#include "validation/messages.h"
#include "validation/nmd.h"

namespace dtsdb {

/// A text that a record must not leave empty, and what is said when it does.
template <class Record>
struct Required {
  QString Record::*text;
  Message empty;
};

/// What a result of NodeInsert, Branch2Insert or BranchInsert says about the record.
struct Answer {
  int result;
  Message message;
};

/// All that is said about one such operation.
struct Answers {
  const char* full;  ///< the last error when a table takes no more rows
  std::span<const Answer> faults;
};

/// How a check goes on after a step.
enum class Outcome {
  kGoOn,
  kDropped,    ///< a fault was reported
  kTableFull,  ///< the run ends
};

/// Runs `check` on every row in logical order, with its physical number, until it gives false.
template <class T>
bool NMD::CheckRows(bool (NMD::*check)(T& row, int number)) {
  tTable<T>& table = Table<T>();
  for (int i = 0; i < table.GetCount(); ++i) {
    const int number = table.LgToPh(i);
    if (!(this->*check)(table.GetPh(number), number)) return false;
  }
  return true;
}

/// Reports a missing identity; true when there is one.
template <class Record>
bool NMD::IsNamed(const Record& record) {
  if (!record.id.isEmpty()) return true;
  Report(record, message::kNoIdentity);
  return false;
}

/// Reports that the parent which the record names in relation `Row` doesn't exist; true when it does.
template <class Row>
bool NMD::IsLinked(const typename Relation<Row>::Child& record) {
  if (record.*Relation<Row>::own != -1) return true;
  Report(record, Link<Row>::missing);
  return false;
}

/// Reports the first of `fields` that the record leaves empty; true when there is none.
template <class Record, class Fields>
bool NMD::IsFilled(const Record& record, const Fields& fields) {
  for (const Required<Record>& field : fields) {
    if (!(record.*field.text).isEmpty()) continue;
    Report(record, field.empty);
    return false;
  }
  return true;
}

/// Turns the name of one measurement of a record into its number; false, with number -1, when there is no such point.
template <class Record>
bool NMD::FindMeasurement(Record& record, const Measurement<Record>& measurement) {
  const int number = Number<ANALOG>(record.*measurement.name);
  record.*measurement.number = number;
  return number != -1;
}

/// Turns the names of a record's measurements into numbers, with a warning for each that doesn't exist.
template <class Record>
void NMD::FindMeasurements(Record& record) {
  for (const Measurement<Record>& measurement : kMeasurements<Record>) {
    if (!FindMeasurement(record, measurement)) Report(record, measurement.missing);
  }
}

/// Reports what `result` says about the record.
template <class Record>
Outcome NMD::Judge(const Record& record, int result, const Answers& answers) {
  if (result == INSERT_TABLE_FULL) {
    m_lastError = QString::fromUtf8(answers.full);
    return Outcome::kTableFull;
  }
  for (const Answer& answer : answers.faults) {
    if (answer.result != result) continue;
    Report(record, answer.message);
    return Outcome::kDropped;
  }
  return Outcome::kGoOn;
}

/// Finds or makes the two nodes of a branch in levels `kv` and `zkv`.
template <class Branch>
Outcome NMD::InsertNodes(Branch& branch, const QString& kv, const QString& zkv, const Answers& from,
                         const Answers& to) {
  const Outcome outcome = Judge(branch, NodeInsert(branch.nd, &branch.ind, kv, NO_MARK), from);
  if (outcome != Outcome::kGoOn) return outcome;
  return Judge(branch, NodeInsert(branch.znd, &branch.iznd, zkv, NO_MARK), to);
}

/// Makes the two ends of a branch whose nodes, named `nd` and `znd`, have been found. Gives the result of
/// Branch2Insert.
template <class Branch>
int NMD::MakeEnds(Branch& branch, int number, const QString& nd, const QString& znd) {
  using Kind = BranchKind<Branch>;
  return Branch2Insert(nd, znd, &branch.ind, &branch.iznd, &(branch.*Kind::fromEnd), &(branch.*Kind::toEnd),
                       KindOf<typename Kind::End>, number, branch.id);
}

}  // namespace dtsdb
