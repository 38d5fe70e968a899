// The realtime store against plain LMDB with the same bytes, in one run.
//
//     bench_rtdb [FOLDER] [ROWS] [ROUNDS]
//
// For each job the two take turns, and the fastest round of each counts. Plain LMDB puts and gets the keys and row
// images that the store has made, in an environment with the store's flags. The last column is the ratio, with its
// target.

#include <fcntl.h>
#include <linux/magic.h>
#include <lmdb.h>
#include <sys/vfs.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "bench/timing.h"
#include "rtdb/fastdb.h"

namespace {

using dtsdb::bench::Milliseconds;

/// 41 columns, about as a line of the network has them.
struct line {
  char const* id = "";
  char const *name = "", *st = "", *zst = "", *kv = "", *zkv = "", *nd = "", *znd = "", *ana_p = "", *ana_q = "";
  nat4 status = 0, tp_status = 0;
  int4 i0 = 0, i1 = 0, i2 = 0, i3 = 0, i4 = 0, i5 = 0, i6 = 0, i7 = 0, i8 = 0;
  real4 f0 = 0, f1 = 0, f2 = 0, f3 = 0, f4 = 0, f5 = 0, f6 = 0, f7 = 0, f8 = 0, f9 = 0, f10 = 0, f11 = 0, f12 = 0,
        f13 = 0, f14 = 0, f15 = 0;
  real8 v = 0, a = 0;
  nat1 type = 0;
  char spare[40] = {};
  TYPE_DESCRIPTOR((KEY(id, INDEXED), FIELD(name), FIELD(st), FIELD(zst), FIELD(kv), FIELD(zkv), FIELD(nd), FIELD(znd),
                   FIELD(ana_p), FIELD(ana_q), FIELD(status), FIELD(tp_status), FIELD(i0), FIELD(i1), FIELD(i2),
                   FIELD(i3), FIELD(i4), FIELD(i5), FIELD(i6), FIELD(i7), FIELD(i8), FIELD(f0), FIELD(f1), FIELD(f2),
                   FIELD(f3), FIELD(f4), FIELD(f5), FIELD(f6), FIELD(f7), FIELD(f8), FIELD(f9), FIELD(f10), FIELD(f11),
                   FIELD(f12), FIELD(f13), FIELD(f14), FIELD(f15), FIELD(v), FIELD(a), FIELD(type), RAWFIELD(spare)));
};
REGISTER_UNASSIGNED(line);

[[noreturn]] void Fail(const char* what) {
  std::fprintf(stderr, "bench_rtdb: %s\n", what);
  std::exit(1);
}

void Require(int result) {
  if (result != MDB_SUCCESS) Fail(mdb_strerror(result));
}

/// The texts of all rows, which the rows point into.
class Rows {
 public:
  explicit Rows(int count) {
    m_texts.reserve(static_cast<std::size_t>(count) * 4);
    for (int i = 0; i < count; ++i) {
      char id[64];
      std::snprintf(id, sizeof(id), "district%02d.station%04d.line%06d", i / 10000, i / 100, i);
      line row;
      row.id = Keep(id);
      row.name = row.id;
      row.st = row.zst = Keep(std::string(id).substr(0, 22));
      row.kv = row.zkv = Keep(std::string(id).substr(0, 22) + ".110");
      row.nd = row.znd = Keep(std::string(id) + ".nd");
      row.ana_p = row.ana_q = row.nd;
      row.i0 = i;
      row.v = i * 0.5;
      m_rows.push_back(row);
    }
  }
  const std::vector<line>& All() const { return m_rows; }

 private:
  char const* Keep(std::string text) { return m_texts.emplace_back(std::move(text)).c_str(); }
  std::vector<std::string> m_texts;
  std::vector<line> m_rows;
};

using Pairs = std::vector<std::pair<std::string, std::string>>;

bool IsMemory(const std::string& folder) {
  struct statfs about {};
  return ::statfs(folder.c_str(), &about) == 0 && about.f_type == TMPFS_MAGIC;
}

/// LMDB without the store: one named table.
class Plain {
 public:
  Plain(const std::string& path, bool create) {
    const std::string folder = std::filesystem::path(path).parent_path();
    Require(mdb_env_create(&m_env));
    mdb_env_set_maxdbs(m_env, 64);
    mdb_env_set_mapsize(m_env, std::size_t{1} << 36);
    const unsigned sync = IsMemory(folder) ? MDB_NOSYNC : MDB_NOMETASYNC;
    Require(mdb_env_open(m_env, path.c_str(), MDB_NOSUBDIR | MDB_NOTLS | sync, 0664));
    MDB_txn* txn = Begin(true);
    Require(mdb_dbi_open(txn, "line", create ? MDB_CREATE : 0, &m_table));
    Require(mdb_txn_commit(txn));
  }
  Plain(const Plain&) = delete;
  Plain& operator=(const Plain&) = delete;
  ~Plain() { mdb_env_close(m_env); }

  MDB_txn* Begin(bool write) {
    MDB_txn* txn = nullptr;
    Require(mdb_txn_begin(m_env, nullptr, write ? 0 : MDB_RDONLY, &txn));
    return txn;
  }
  void Put(MDB_txn* txn, const std::string& key, const std::string& image, unsigned flags = 0) {
    MDB_val k{key.size(), const_cast<char*>(key.data())};
    MDB_val v{image.size(), const_cast<char*>(image.data())};
    Require(mdb_put(txn, m_table, &k, &v, flags));
  }
  MDB_val Get(MDB_txn* txn, const std::string& key) {
    MDB_val k{key.size(), const_cast<char*>(key.data())};
    MDB_val v{};
    Require(mdb_get(txn, m_table, &k, &v));
    return v;
  }
  MDB_dbi Table() const { return m_table; }

 private:
  MDB_env* m_env = nullptr;
  MDB_dbi m_table = 0;
};

Pairs ReadPairs(const std::string& path) {
  Pairs pairs;
  Plain plain(path, false);
  MDB_txn* txn = plain.Begin(false);
  MDB_cursor* cursor = nullptr;
  Require(mdb_cursor_open(txn, plain.Table(), &cursor));
  MDB_val k{};
  MDB_val v{};
  while (mdb_cursor_get(cursor, &k, &v, MDB_NEXT) == MDB_SUCCESS) {
    pairs.emplace_back(std::string(static_cast<char*>(k.mv_data), k.mv_size),
                       std::string(static_cast<char*>(v.mv_data), v.mv_size));
  }
  mdb_cursor_close(cursor);
  mdb_txn_abort(txn);
  return pairs;
}

/// Times both sides in turns. A target of 0 states none.
bool Compare(const char* name, int rounds, double target, const std::function<void()>& plain,
             const std::function<void()>& store) {
  double plainBest = 1e300;
  double storeBest = 1e300;
  for (int round = 0; round < rounds; ++round) {
    plainBest = std::min(plainBest, Milliseconds(plain));
    storeBest = std::min(storeBest, Milliseconds(store));
  }
  const double ratio = storeBest / plainBest;
  std::printf("%-46s %10.2f %10.2f %7.2f", name, plainBest, storeBest, ratio);
  if (target > 0) std::printf("  <= %.1f  %s", target, ratio <= target ? "yes" : "NO");
  std::printf("\n");
  std::fflush(stdout);
  return target <= 0 || ratio <= target;
}

void InsertAll(dbDatabase& db, const std::vector<line>& rows) {
  for (const line& row : rows) {
    if (db.insert(row).getOid() == 0) Fail("a row was refused");
  }
  db.commit();
}

/// A checksum over what a reader of the rows would look at, so that reading is not left out.
double ReadOrdered(dbDatabase& db) {
  dbCursor<line> cursor(&db);
  double sum = cursor.select("order by id");
  for (line* row = cursor.get(); row != nullptr; row = cursor.next()) sum += row->v + row->i0 + row->id[0];
  db.commit();
  return sum;
}

void Merge(dbDatabase& db, const std::vector<line>& rows, real4 value) {
  dbCursor<line> cursor(&db, dbCursorForUpdate);
  dbQuery query;
  char key[256];
  for (const line& row : rows) {
    std::strncpy(key, row.id, sizeof(key) - 1);
    query = "id = ", key;
    if (cursor.select(query) != 1) Fail("a row is missing");
    line* stored = cursor.get();
    char const* const id = stored->id;
    *stored = row;
    stored->id = id;
    stored->f0 = value;
    cursor.update();
  }
  db.commit();
}

/// The jobs on one store and its plain counterpart.
class Comparison {
 public:
  Comparison(const std::string& folder, const Rows& rows, Pairs pairs, int rounds)
      : m_rows(rows.All()), m_pairs(std::move(pairs)), m_rounds(rounds), m_plain(folder + "/plain.mdb", true) {
    if (!m_db.open("store", (folder + "/store.fdb").c_str())) Fail("the store can't be opened");
  }
  ~Comparison() { m_db.close(); }
  Comparison(const Comparison&) = delete;
  Comparison& operator=(const Comparison&) = delete;

  /// True when all targets are met.
  bool RunAll() {
    InsertRows();
    ReadRows();
    MergeRows();
    ChangeSingleRows();
    return m_good && m_sum != 0;
  }

 private:
  void Job(const char* name, double target, const std::function<void()>& plain, const std::function<void()>& store) {
    if (!Compare(name, m_rounds, target, plain, store)) m_good = false;
  }

  void FillPlain(unsigned flags) {
    MDB_txn* txn = m_plain.Begin(true);
    Require(mdb_drop(txn, m_plain.Table(), 0));
    for (const auto& [key, image] : m_pairs) m_plain.Put(txn, key, image, flags);
    Require(mdb_txn_commit(txn));
  }

  void InsertRows() {
    const auto store = [this] {
      m_db.deleteTable(m_db.lookupTable(&line::dbDescriptor));
      InsertAll(m_db, m_rows);
    };
    Job(
        "insert all rows", 1.5, [this] { FillPlain(0); }, store);
    // The store appends rows that come in order by itself; so may whoever uses LMDB and knows of the order.
    Job(
        "  the same against LMDB in append mode", 0, [this] { FillPlain(MDB_APPEND); }, store);
  }

  void Look(const MDB_val& value) {
    m_copy.assign(static_cast<char*>(value.mv_data), value.mv_size);
    m_sum += m_copy[8];
  }

  /// Copies every row, each found by its key.
  void LookAtAll(MDB_txn* txn) {
    for (const auto& [key, image] : m_pairs) Look(m_plain.Get(txn, key));
  }

  void WalkPlain() {
    MDB_txn* txn = m_plain.Begin(false);
    MDB_cursor* cursor = nullptr;
    Require(mdb_cursor_open(txn, m_plain.Table(), &cursor));
    MDB_val key{};
    MDB_val value{};
    while (mdb_cursor_get(cursor, &key, &value, MDB_NEXT) == MDB_SUCCESS) Look(value);
    mdb_cursor_close(cursor);
    mdb_txn_abort(txn);
  }

  void ReadRows() {
    const auto plain = [this] {
      MDB_txn* txn = m_plain.Begin(false);
      LookAtAll(txn);
      mdb_txn_abort(txn);
    };
    const auto store = [this] { m_sum += ReadOrdered(m_db); };
    Job("read all rows in order, each by its key", 1.5, plain, store);
    Job(
        "  the same against a bare LMDB cursor", 0, [this] { WalkPlain(); }, store);
  }

  void ChangePlain(MDB_txn* txn, const std::string& key) {
    Look(m_plain.Get(txn, key));
    m_copy[m_copy.size() / 2] = static_cast<char>(m_round);
    m_plain.Put(txn, key, m_copy);
  }

  void MergeRows() {
    const auto change = [this] {
      ++m_round;
      MDB_txn* txn = m_plain.Begin(true);
      for (const auto& [key, image] : m_pairs) ChangePlain(txn, key);
      Require(mdb_txn_commit(txn));
    };
    const auto look = [this] {
      MDB_txn* txn = m_plain.Begin(true);
      LookAtAll(txn);
      Require(mdb_txn_commit(txn));
    };
    const auto store = [this] { Merge(m_db, m_rows, static_cast<real4>(m_round)); };
    Job("merge: select each by id, change and update", 2.0, change, store);
    Job("  the same, nothing changed (LMDB: gets only)", 0, look, store);
  }

  /// A row for transaction `i`, from all over the table.
  std::size_t Place(int i) const { return static_cast<std::size_t>(i) * 7919 % m_pairs.size(); }

  void ChangeSingleRows() {
    constexpr int kTransactions = 200;
    const auto plain = [this] {
      ++m_round;
      for (int i = 0; i < kTransactions; ++i) {
        MDB_txn* txn = m_plain.Begin(true);
        ChangePlain(txn, m_pairs[Place(i)].first);
        Require(mdb_txn_commit(txn));
      }
    };
    const auto store = [this] {
      dbCursor<line> cursor(&m_db, dbCursorForUpdate);
      dbQuery query;
      for (int i = 0; i < kTransactions; ++i) {
        char const* id = m_rows[Place(i)].id;
        query = "id = ", id;
        if (cursor.select(query) != 1) Fail("a row is missing");
        cursor->f1 = static_cast<real4>(m_round);
        cursor.update();
        m_db.commit();
      }
    };
    Job("200 transactions that change one row", 1.5, plain, store);
  }

  const std::vector<line>& m_rows;
  const Pairs m_pairs;
  const int m_rounds;
  dbDatabase m_db;
  Plain m_plain;
  std::string m_copy;
  double m_sum = 0;  ///< of what was read, so that no reading is left out
  int m_round = 0;
  bool m_good = true;
};

/// Makes the store and returns its keys and row images.
Pairs MakeStore(const std::string& path, const Rows& rows) {
  {
    dbDatabase db;
    if (!db.open("store", path.c_str())) Fail("the store can't be made");
    InsertAll(db, rows.All());
  }
  return ReadPairs(path);
}

void PrintHead(const Pairs& pairs, const std::string& base) {
  std::size_t bytes = 0;
  for (const auto& [key, image] : pairs) bytes += key.size() + image.size();
  std::printf("%zu rows of %zu columns, %zu bytes each, in %s (%s)\n", pairs.size(),
              line::dbDescriptor.getFields().size(), bytes / pairs.size(), base.c_str(),
              IsMemory(base) ? "memory" : "disk");
  std::printf("%-46s %10s %10s %7s\n", "milliseconds, best of the rounds", "LMDB", "store", "ratio");
}

}  // namespace

int main(int argc, char** argv) {
  const std::string base = argc > 1 ? argv[1] : std::filesystem::temp_directory_path().string();
  const int count = argc > 2 ? std::atoi(argv[2]) : 100000;
  const int rounds = argc > 3 ? std::atoi(argv[3]) : 5;
  std::string folder = base + "/bench_rtdb-XXXXXX";
  if (count < 1 || rounds < 1 || ::mkdtemp(folder.data()) == nullptr)
    Fail("usage: bench_rtdb [FOLDER] [ROWS] [ROUNDS]");

  const Rows rows(count);
  Pairs pairs = MakeStore(folder + "/store.fdb", rows);
  PrintHead(pairs, base);
  const bool good = Comparison(folder, rows, std::move(pairs), rounds).RunAll();
  std::filesystem::remove_all(folder);
  return good ? 0 : 1;
}
