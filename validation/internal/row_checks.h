/// \file
/// The steps of the checks of single records.
#pragma once

#include <span>

#include "validation/internal/device_kinds.h"
#include "validation/internal/last_error.h"
#include "validation/internal/log.h"
#include "validation/internal/messages.h"
#include "validation/internal/run_graph.h"

namespace dtsdb::internal {

/// A text that a record must not leave empty, and what is reported when it does.
template <class Record>
struct Required {
  QString Record::*text;
  Message empty;
};

/// What a result of InsertNode, InsertBranch or InsertLine means for the record.
struct Fault {
  int result;
  Message message;
};

/// All that such an operation can find.
struct Faults {
  Reason full;  ///< the last error when a table takes no more rows
  std::span<const Fault> faults;
};

/// How a check goes on after a step.
enum class Outcome {
  kGoOn,
  kDropped,    ///< a fault was reported
  kTableFull,  ///< the run ends
};

/// What the checks work with: the model, the log that they report to, and the last error.
///
/// The steps report what they find. A step that returns false or kTableFull because a table takes no more rows has set
/// the last error.
class RowChecks {
 public:
  RowChecks(DTSDB& tables, ValidationLog& validationLog, LastError& lastError)
      : model(tables), graph(tables), log(validationLog), m_lastError(lastError) {}

  DTSDB& model;
  RunGraph graph;  ///< what stands in for the tables that a run makes
  ValidationLog& log;

  /// Ties the children of a relation to the parents that they name; false when the relation takes no more rows.
  template <class Row>
  bool Link() {
    return graph.Link<Row>() || TableFull(kParentName<Row>.full);
  }

  /// Calls `check` with every row in logical order and its physical number, until it returns false; then false.
  template <class Record, class Check>
  bool ForEachRow(Check check) {
    tTable<Record>& table = TableOf<Record>(model);
    for (int i = 0; i < table.GetCount(); ++i) {
      const int number = table.LgToPh(i);
      if (i + kAhead < table.GetCount()) FetchNames(table[i + kAhead]);
      if (!check(table.GetPh(number), number)) return false;
    }
    return true;
  }

  /// Reports a missing identity; true when there is one.
  template <class Record>
  bool IsNamed(const Record& record) {
    if (!record.id.isEmpty()) return true;
    log.Report(record, message::kNoIdentity<Record>);
    return false;
  }

  /// Reports that the parent which the record names doesn't exist; true when it does.
  template <class Record>
  bool IsLinked(const Record& record) {
    using Row = ParentRow<Record>;
    if (record.*Relation<Row>::kOwn != -1) return true;
    log.Report(record, kParentName<Row>.missing);
    return false;
  }

  /// Reports the first of `fields` that the record leaves empty; true when there is none.
  template <class Record, class Fields>
  bool IsFilled(const Record& record, const Fields& fields) {
    for (const Required<Record>& field : fields) {
      if (!(record.*field.text).isEmpty()) continue;
      log.Report(record, field.empty);
      return false;
    }
    return true;
  }

  /// Turns the names of a record's measurements into numbers, with a warning for each that doesn't exist.
  template <class Record>
  void FindMeasurements(Record& record) {
    for (const Measurement<Record>& measurement : kMeasurements<Record>) {
      if (!FindMeasurement(graph, record, measurement)) log.Report(record, measurement.missing);
    }
  }

  /// Reports what `result` means for the record.
  template <class Record>
  Outcome Judge(const Record& record, int result, const Faults& faults) {
    if (result == INSERT_TABLE_FULL) {
      TableFull(faults.full);
      return Outcome::kTableFull;
    }
    for (const Fault& fault : faults.faults) {
      if (fault.result != result) continue;
      log.Report(record, fault.message);
      return Outcome::kDropped;
    }
    return Outcome::kGoOn;
  }

  /// Finds or makes the two nodes of a branch in levels `kv` and `zkv`.
  template <class Branch>
  Outcome InsertNodes(Branch& branch, const QString& kv, const QString& zkv, const Faults& from, const Faults& to) {
    const Outcome outcome = Judge(branch, graph.InsertNode(branch.nd, &branch.ind, kv, NO_MARK), from);
    if (outcome != Outcome::kGoOn) return outcome;
    return Judge(branch, graph.InsertNode(branch.znd, &branch.iznd, zkv, NO_MARK), to);
  }

  /// Sets the last error, unless the run will be made anew. Always returns false.
  bool TableFull(const Reason& reason) { return !graph.HasGivenUp() && m_lastError.Set(reason); }

 private:
  static constexpr int kAhead = 2;

  /// Fetches what the check of a record will look up: the names of all tables lie scattered, and each look-up else
  /// waits.
  template <class Record>
  void FetchNames(const Record& record) {
    BulkGraph* const bulk = graph.AtOnce();
    if (bulk == nullptr) return;
    if constexpr (requires { record.nd; }) bulk->FetchFor<ND>(record.nd);
    if constexpr (requires { record.znd; }) bulk->FetchFor<ND>(record.znd);
    if constexpr (requires { record.status_id; }) bulk->FetchFor<STATUS>(record.status_id);
    if constexpr (
        requires { record.ana_v; } || requires { record.ana_q; }) {
      for (const Measurement<Record>& measurement : kMeasurements<Record>) {
        bulk->FetchFor<ANALOG>(record.*measurement.name);
      }
    }
  }

  LastError& m_lastError;
};

}  // namespace dtsdb::internal
