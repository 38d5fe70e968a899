/// \file
/// A cursor over any table, whose record is room for the table's class.
#pragma once

#include "relay/row_layout.h"
#include "rtdb/backend.h"

namespace dtsdb::relay {

class RowCursor : private RecordRoom, public dbAnyCursor {
 public:
  RowCursor(dbTableDescriptor& table, dbDatabase* database, dbCursorType type, const RowLayout& layout)
      : RecordRoom(layout.RecordSize()), dbAnyCursor(table, database, type, RecordRoom::Get()) {}

  void* Record() const { return RecordRoom::Get(); }
  bool IsOnRow() const { return HasCurrent(); }
  oid_t Number() const { return CurrentId(); }
  bool Next() { return gotoNext(); }
  /// Goes to the row of that number whose key columns stand in the record. False where there is none.
  bool Find(oid_t number) { return gotoRowByKey(number); }
};

}  // namespace dtsdb::relay
