// What damage does to a store: it is refused by name or read without harm, and never brings a process down.

#include <gtest/gtest.h>

#include <iostream>
#include <random>

#include "damage.h"
#include "samples.h"
#include "tests/support/bytes.h"
#include "tests/support/every_place.h"

using dtsdb::test::AddEntry;
using dtsdb::test::Database;
using dtsdb::test::Folder;
using dtsdb::test::kPlaceStep;
using dtsdb::test::PlaceFinder;
using dtsdb::test::ReadBytes;
using dtsdb::test::RunTrials;
using dtsdb::test::StorePlaces;
using dtsdb::test::TrialCounts;
using dtsdb::test::WriteBytes;
using sample::entry;
using sample::item;
using sample::note;
using sample::relation;

namespace {

/// A small store with several tables, a branch page, values too large for a page and a list of free pages.
void FillEveryKindOfPage(const std::string& path) {
  Database db;
  ASSERT_TRUE(db.open("store", path.c_str())) << db.Reported();
  for (int id = 0; id < 80; ++id) AddEntry(db, id, id, std::string(100 + static_cast<std::size_t>(id), 't').c_str());
  for (int i = 0; i < 3; ++i) {
    relation link;
    const std::string parent = "parent " + std::to_string(i);
    link.parent = parent.c_str();
    link.child = "child";
    db.insert(link);
    note line;
    line.text = parent.c_str();
    db.insert(line);
  }
  item large;
  const std::string text(9000, 'l');
  large.id = "large";
  large.name = text.c_str();
  db.insert(large);
  db.commit();
  dbCursor<entry> cursor(&db, dbCursorForUpdate);
  cursor.select("id >= 30 and id < 50");
  cursor.removeAllSelected();
  db.commit();
  AddEntry(db, 100, 1, "last");
  db.commit();
}

/// All rows, one a line.
std::string Rows(Database& db) {
  std::string all;
  const auto add = [&all](auto& cursor, auto text) {
    cursor.select();
    for (auto* row = cursor.get(); row != nullptr; row = cursor.next()) all += text(*row) + "\n";
  };
  dbCursor<entry> entries(&db);
  add(entries, [](const entry& row) { return std::to_string(row.id) + " " + std::to_string(row.value) + row.text; });
  dbCursor<relation> relations(&db);
  add(relations, [](const relation& row) { return std::string(row.parent) + row.child + std::to_string(row.next); });
  dbCursor<note> notes(&db);
  add(notes, [](const note& row) { return std::string(row.text); });
  dbCursor<item> items(&db);
  add(items, [](const item& row) { return std::string(row.id) + row.name; });
  db.commit();
  return all;
}

/// Adds rows of several sizes, changes some and removes some.
void Change(Database& db) {
  for (int id = 500; id < 510; ++id) AddEntry(db, id, 1, std::string(300, 'n').c_str());
  AddEntry(db, 600, 1, std::string(9000, 'n').c_str());
  dbCursor<entry> cursor(&db, dbCursorForUpdate);
  cursor.select("id < 15");
  for (entry* row = cursor.get(); row != nullptr; row = cursor.next()) {
    row->value = -1;
    row->text = "changed";
    cursor.update();
  }
  cursor.select("id >= 15 and id < 60");
  cursor.removeAllSelected();
  dbCursor<item> items(&db, dbCursorForUpdate);
  items.removeAll();
  db.commit();
}

std::string PlaceName(std::size_t bit) { return "byte " + std::to_string(bit / 8) + " bit " + std::to_string(bit % 8); }

void Flip(std::string& bytes, std::size_t bit) {
  bytes[bit / 8] = static_cast<char>(bytes[bit / 8] ^ (1 << (bit % 8)));
}

std::string Flipped(std::string bytes, const std::vector<std::size_t>& bits) {
  for (const std::size_t bit : bits) Flip(bytes, bit);
  return bytes;
}

struct Damage : ::testing::Test {
  void SetUp() override {
    FillEveryKindOfPage(path);
    whole = ReadBytes(path);
    Database db;
    ASSERT_TRUE(db.open("store", path.c_str())) << db.Reported();
    rows = Rows(db);
    Change(db);
    changedRows = Rows(db);
    ASSERT_EQ(db.Reported(), "");
    db.close();
    places = PlaceFinder(whole).Places();
    ASSERT_GT(places.branches, 0);
    ASSERT_GT(places.overflows, 0);
    ASSERT_GT(places.freeLists, 0);
  }

  /// Uses a store of these bytes. Returns what went wrong: rows that differ though no error was reported, or a store
  /// that can't be opened again.
  std::string Use(const std::string& bytes, TrialCounts& counts) const {
    WriteBytes(path, bytes);
    Database db;
    if (!db.open("store", path.c_str())) {
      const std::string reported = db.Reported();
      if (!reported.starts_with(path + ": ")) return "refused without its name: " + reported;
      ++counts.refused;
      return {};
    }
    const std::string before = Rows(db);
    if (db.errors.empty()) Change(db);
    const std::string after = Rows(db);
    db.close();
    if (!db.errors.empty()) {
      ++counts.reported;
      return {};
    }
    if (before != rows) return "other rows";
    if (after != changedRows) return "other rows after a change";
    Database again;
    if (!again.open("store", path.c_str())) return "the change has damaged it: " + again.Reported();
    if (Rows(again) != changedRows) return "other rows when opened again";
    ++counts.unharmed;
    return {};
  }

  /// Does all the same to a store of which keys and rows are damaged. What it holds may then be anything.
  void UseAnyRows(const std::string& bytes, TrialCounts& counts) const {
    if (!Use(bytes, counts).empty()) ++counts.otherRows;
  }

  static void Print(const char* what, const TrialCounts& counts) {
    std::cout << what << ": " << counts.refused << " refused, " << counts.reported << " opened with an error later, "
              << counts.unharmed << " unharmed, " << counts.otherRows << " with other rows\n";
  }

  void FlipEveryBit(const std::vector<std::size_t>& bytes) const {
    const auto bit = [&bytes](std::size_t i) { return bytes[i * kPlaceStep / 8] * 8 + i * kPlaceStep % 8; };
    const TrialCounts counts =
        RunTrials((bytes.size() * 8 + kPlaceStep - 1) / kPlaceStep,
                  [&](std::size_t i, TrialCounts& so) { return Use(Flipped(whole, {bit(i)}), so); },
                  [&](std::size_t i) { return PlaceName(bit(i)); });
    Print("every bit", counts);
    EXPECT_GT(counts.refused, counts.unharmed);
  }

  Folder folder{std::filesystem::exists("/dev/shm") ? "/dev/shm" : std::filesystem::temp_directory_path()};
  const std::string path = folder.File();
  std::string whole;
  std::string rows;
  std::string changedRows;
  StorePlaces places;
};

/// RTDB_FLIPS in the environment sets the number of random trials, RTDB_FLIPS_FROM the first one, for several programs
/// that share the work.
std::size_t FromEnvironment(const char* name, std::size_t usual) {
  const char* wish = std::getenv(name);
  return wish != nullptr ? std::strtoull(wish, nullptr, 10) : usual;
}
std::size_t Flips(std::size_t usual) { return FromEnvironment("RTDB_FLIPS", usual); }

/// One to three bits in these bytes, the same for the same round.
std::vector<std::size_t> RandomBits(const std::vector<std::size_t>& bytes, std::size_t round) {
  std::mt19937_64 random(FromEnvironment("RTDB_FLIPS_FROM", 0) + round);
  std::vector<std::size_t> bits;
  for (std::size_t left = 1 + random() % 3; left > 0; --left) {
    bits.push_back(bytes[random() % bytes.size()] * 8 + random() % 8);
  }
  return bits;
}

std::string Names(const std::vector<std::size_t>& bits) {
  std::string names;
  for (const std::size_t bit : bits) names += (names.empty() ? "" : ", ") + PlaceName(bit);
  return names;
}

TEST_F(Damage, EveryBitOfHeadsAndTreeRecords) { FlipEveryBit(places.heads); }

TEST_F(Damage, EveryBitOfPageHeaders) { FlipEveryBit(places.headers); }

TEST_F(Damage, RandomBitsOfAllThatLeadsToRows) {
  std::vector<std::size_t> bytes = places.heads;
  bytes.insert(bytes.end(), places.headers.begin(), places.headers.end());
  bytes.insert(bytes.end(), places.entries.begin(), places.entries.end());
  const TrialCounts counts = RunTrials(
      Flips(3000), [&](std::size_t i, TrialCounts& so) { return Use(Flipped(whole, RandomBits(bytes, i)), so); },
      [&](std::size_t i) { return Names(RandomBits(bytes, i)); });
  Print("random bits of the structure", counts);
  EXPECT_GT(counts.refused, counts.unharmed);
}

TEST_F(Damage, RandomBitsOfKeysAndRowsNeverBringTheProcessDown) {
  const TrialCounts counts = RunTrials(
      Flips(1000),
      [&](std::size_t i, TrialCounts& so) {
        UseAnyRows(Flipped(whole, RandomBits(places.data, i)), so);
        return std::string();
      },
      [&](std::size_t i) { return Names(RandomBits(places.data, i)); });
  Print("random bits of keys and rows", counts);
}

}  // namespace
