/// \file
/// The network model as a whole.
#pragma once

#include <QString>
#include <memory>
#include <vector>

#include "include/template.h"
#include "model/records.h"

class dbDatabase;

namespace dtsdb {

class QArchive;

// The tables are compiled once, in model/tables_*.cpp.
#define DTSDB_EXTERN_TABLE(T, table, key, meaning) extern template class tTable<T>;
DTSDB_TABLES(DTSDB_EXTERN_TABLE)
#undef DTSDB_EXTERN_TABLE

/// The tables of a network model, one for each record class, in the alphabetical order of the classes.
///
/// The container owns the tables. NMD and TP hold copies of these pointers and must go before it. Copying or
/// assigning a container shares the tables: afterwards both use the same ones, each table goes with the last
/// container that has used it, and the tables that an assigned container held stay alive until it goes.
/// One thread at a time.
class DTSDB {
 public:
  /// Makes 46 empty tables.
  DTSDB();
  DTSDB(const DTSDB&) = default;
  DTSDB& operator=(const DTSDB& other);
  ~DTSDB() = default;

  /// Reads an object file (docs/object-file.md) into the tables, with all numbering. False, with one line on the
  /// standard output and every table as it was, when the file can't be opened or isn't a whole and sound image.
  bool ReadObject(const QString& fileName);
  /// Writes the tables to an object file, which takes the place of an old one only when it is complete. False,
  /// with one line on the standard output, when that can't be done.
  bool WriteObject(const QString& fileName);
  /// Stores or loads the 46 tables, in order. An archive that is refused leaves every table as it was.
  void Serialize(QArchive& ar);

  /// Loads all tables but the topology's log TPL from the realtime database (docs/realtime-exchange.md), in one
  /// transaction. Always true: failures go to the database's own error handling.
  bool ReadFastdb(dbDatabase* db);
  /// Stores all tables to the realtime database and commits. Always true, as above.
  bool WriteFastdb(dbDatabase* db);

/** Loads one table from its twin in the realtime database, or stores it there. Doesn't commit; always true. */
#define DTSDB_EXCHANGE_MEMBERS(T, table, key, meaning) \
  bool Read##T##FromFastdb(dbDatabase* db);            \
  bool Write##T##ToFastdb(dbDatabase* db);
  DTSDB_TABLES(DTSDB_EXCHANGE_MEMBERS)
#undef DTSDB_EXCHANGE_MEMBERS

#define DTSDB_MEMBER_TABLE(T, table, key, meaning) tTable<T>* table = nullptr; /**< meaning */
  DTSDB_TABLES(DTSDB_MEMBER_TABLE)
#undef DTSDB_MEMBER_TABLE

 private:
  struct Tables;
  std::vector<std::shared_ptr<Tables>> m_owned;
};

/// Calls `visit` with each of the 46 tables of `database`, in order.
template <class Visitor>
void ForEachTable(DTSDB& database, Visitor&& visit) {
#define DTSDB_VISIT_TABLE(T, table, key, meaning) visit(*database.table);
  DTSDB_TABLES(DTSDB_VISIT_TABLE)
#undef DTSDB_VISIT_TABLE
}

/// The table of record class `T` in `database`.
template <class T>
tTable<T>& TableOf(DTSDB& database);

#define DTSDB_TABLE_OF(T, table, key, meaning)     \
  template <>                                      \
  inline tTable<T>& TableOf<T>(DTSDB & database) { \
    return *database.table;                        \
  }
DTSDB_TABLES(DTSDB_TABLE_OF)
#undef DTSDB_TABLE_OF

}  // namespace dtsdb
