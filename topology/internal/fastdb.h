/// \file
/// The exchange of what the topology works on, and of its results, with the realtime database.
#pragma once

#include "topology/internal/levels.h"
#include "topology/internal/state.h"

class dbDatabase;

namespace dtsdb::internal {

/// The numbers of the log rows that have been stored, -1 for none.
struct LogNumbers {
  int first = -1;
  int last = -1;
};

/// Reads and writes the realtime database, through the tables of the model.
///
/// Read fills the tables that a run works on and sets CB_OPEN of the breakers that another program has marked. The
/// writing calls read the results and the levels of the run and change no record. Failures go to the database's own
/// error handling.
class Exchange {
 public:
  explicit Exchange(const State& state)
      : m_network(state.network), m_model(state.model), m_levels(state.levels), m_arrays(state.arrays) {}

  /// Loads what a run works on, and commits.
  void Read(dbDatabase* db) const;
  /// Stores the results of a full run, and commits.
  void WriteAll(dbDatabase* db) const;
  /// Stores what an incremental run has done, and commits. `*numbers` become those of its log. Of a table that nobody
  /// has changed since the TP stored it last, only the records are written that have changed in the model.
  void WriteChanges(dbDatabase* db, LogNumbers* numbers) const;

  // The tables of which the topology owns only some columns. None of these commits.

  void WriteSections(dbDatabase* db) const;
  void WriteLoads(dbDatabase* db) const;
  void WriteUnits(dbDatabase* db) const;
  void WriteBuses(dbDatabase* db) const;

 private:
  struct ChangedRows;
  std::shared_ptr<StoredResults> Stored() const;
  void NoteStored() const;
  void WriteChangedResults(dbDatabase* db, StoredResults& stored) const;
  LogNumbers WriteLog(dbDatabase* db) const;
  void WriteLevel(int kv, ChangedRows& rows) const;

  Network m_network;
  DTSDB& m_model;
  Levels m_levels;
  std::shared_ptr<WorkArrays> m_arrays;
};

}  // namespace dtsdb::internal
