/// \file
/// Reading breakers and injections, and writing the flows into the realtime database.
#pragma once

#include "breakerflow/internal/network.h"
#include "breakerflow/internal/section_voltages.h"

namespace dtsdb::internal {

/// Fills nodes, breakers, their lists and the devices, all empty before.
template <class Source>
void LoadFlowData(const Source& source, MissingVoltage missing, const FlowNetwork& network, const FlowDevices& devices);

/// The same from a realtime database; ends the transaction.
void LoadStoredFlowData(dbDatabase* db, const FlowNetwork& network, const FlowDevices& devices);

/// Writes flows and classes, the latter as flags of a cbBreaker, into the rows of breakers, and commits.
class FlowWriter {
 public:
  /// `db` must outlive it and must not be null.
  explicit FlowWriter(dbDatabase* db) : m_db(db), m_cursor(db, dbCursorForUpdate) {}

  /// Writes into every row of identity `id`; does nothing where there is none.
  void Write(const QString& id, float p, float q, u32 flags);
  void Commit() { m_db->commit(); }

 private:
  dbDatabase* m_db;
  dbCursor<cb> m_cursor;
  dbQuery m_query;
};

}  // namespace dtsdb::internal
