/// \file
/// Databases for the tests of the relay, filled at random, and their contents.
#pragma once

#include <QTemporaryDir>
#include <memory>
#include <random>
#include <string>

#include "formats/realtime.h"
#include "relay/commit.h"
#include "relay/database_image.h"
#include "rtdb/volma_rtdb.h"

namespace dtsdb::relay::test {

/// All rows of a database with their numbers, as bytes.
inline std::string ContentsOf(const std::string& name) {
  tools::RealtimeDatabase database(name, dbDatabase::dbReadOnly);
  DatabaseImage image(CarriedTables());
  image.Read(*database.Db(), [&database] { database.Check(); });
  Commit whole = image.Whole();
  whole.time = 0;
  return EncodeCommit(whole);
}

/// Changes rows of a database at random: adds, updates, removes, changes keys; in tables with texts and in one that is
/// found by a number.
class RandomChanges {
 public:
  explicit RandomChanges(std::uint32_t seed) : m_random(seed) {}

  /// One transaction with at most so many changes.
  void Commit(dbDatabase& database, unsigned most) {
    for (unsigned count = 1 + Below(most); count > 0; --count) {
      if (Below(3) == 0) {
        ChangeList(database);
      } else {
        ChangeLoads(database);
      }
    }
    database.commit();
  }

 private:
  unsigned Below(unsigned end) { return std::uniform_int_distribution<unsigned>(0, end - 1)(m_random); }
  std::string Name() { return "Load " + std::to_string(Below(60)) + std::string(Below(40), 'x'); }

  void ChangeLoads(dbDatabase& database) {
    dbCursor<ld> cursor(&database, dbCursorForUpdate);
    const int count = cursor.select();
    const unsigned what = Below(10);
    if (count == 0 || what < 4) {
      const std::string name = Name();
      ld row;
      row.id = name.c_str();
      row.p = static_cast<float>(Below(1000));
      database.insert(row);
      return;
    }
    cursor.skip(static_cast<int>(Below(static_cast<unsigned>(count))));
    if (what == 4) return cursor.remove();
    const std::string name = Name();
    if (what == 5) cursor->id = name.c_str();
    cursor->p = static_cast<float>(Below(1000));
    cursor.update();
  }

  void ChangeList(dbDatabase& database) {
    if (Below(100) == 0) {
      dbCursor<tptrace>(&database, dbCursorForUpdate).removeAll();
      return;
    }
    tptrace row;
    row.id = static_cast<int4>(Below(1000));
    database.insert(row);
  }

  std::mt19937 m_random;
};

}  // namespace dtsdb::relay::test
