/// \file
/// Whether the model in a realtime database is still the one that a program has read.
#pragma once

#include <cstdint>
#include <vector>

#include "command/trace_reader.h"
#include "model/dtsdb.h"

namespace dtsdb::tools {

/// Looks for other programs' changes of the model that a task works on.
///
/// A model that is written as a whole brings another row of `global`: when it was validated, when its topology was
/// worked out, whether it is good. That row is read at each look. Rows that other programs add, remove or change one by
/// one show in the texts of the tables: identities, and the stations, levels, nodes and points that they name. These
/// are read so often that it takes at most a twentieth of the time. Numbers don't count: states and measured values
/// change all the time.
class ModelWatch {
 public:
  /// Both must outlive it.
  ModelWatch(dbDatabase* db, const TaskClock& clock) : m_db(db), m_clock(clock) {}

  /// Notes the model as it is now. Leaves the transaction open, so that the model can be read as it was noted.
  void NoteModel();

  /// Notes what the task has stored as its own state.
  void NoteStored(const GLOBAL& global) { m_global = global; }

  /// True when the model isn't the noted one any more. Ends its transaction.
  bool HasChanged();

  /// Begins a transaction in which the task may store its results: no other program changes the model until it ends.
  /// False when the model has been replaced as a whole; then nothing may be stored, and no transaction is open.
  bool BeginStoring();

 private:
  /// What the texts of a table come to, whatever the order of its rows.
  struct Sum {
    std::uint64_t rows = 0;
    std::uint64_t hashes = 0;
    bool operator==(const Sum&) const = default;
  };

  template <class T>
  Sum SumOf();
  std::vector<Sum> Sums();
  bool IsNotedGlobal(dbCursorType type);

  dbDatabase* m_db;
  const TaskClock& m_clock;
  GLOBAL m_global;
  std::vector<Sum> m_sums;
  double m_sumsDue = 0;  ///< the texts are read from this moment on
};

}  // namespace dtsdb::tools
