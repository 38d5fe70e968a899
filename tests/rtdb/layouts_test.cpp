#include <gtest/gtest.h>

#include "file_change.h"
#include "rtdb/internal/schema.h"
#include "samples.h"

using dtsdb::internal::rtdb::Schema;
using dtsdb::test::Database;
using dtsdb::test::FileChange;
using dtsdb::test::Folder;

// One table as several programs know it, each through a database of its own.
namespace first {
Database database;
struct meter {
  char const* id = "";
  int4 value = 0;
  TYPE_DESCRIPTOR((KEY(id, INDEXED), FIELD(value)));
};
REGISTER_IN(meter, &database);
}  // namespace first

namespace grown {
Database database;
struct meter {
  char const* unit = "";
  char const* id = "";
  real8 scale = 7;
  int4 value = 0;
  bool valid = true;
  char spare[6] = {'x'};
  char const* place = nullptr;
  TYPE_DESCRIPTOR((FIELD(unit), KEY(id, INDEXED), FIELD(scale), FIELD(value), FIELD(valid), RAWFIELD(spare),
                   FIELD(place)));
};
REGISTER_IN(meter, &database);
}  // namespace grown

namespace reader {
Database database(dbDatabase::dbReadOnly);
struct meter {
  char const* id = "";
  int4 value = 0;
  real8 scale = 7;
  TYPE_DESCRIPTOR((KEY(id, INDEXED), FIELD(value), FIELD(scale)));
};
REGISTER_IN(meter, &database);

/// A table that no store has.
struct unmade {
  int4 id = 0;
  TYPE_DESCRIPTOR((KEY(id, INDEXED)));
};
REGISTER_IN(unmade, &database);
}  // namespace reader

namespace retyped {
Database database;
struct meter {
  char const* id = "";
  real8 value = 0;
  TYPE_DESCRIPTOR((KEY(id, INDEXED), FIELD(value)));
};
REGISTER_IN(meter, &database);
}  // namespace retyped

namespace rekeyed {
Database database;
struct meter {
  char const* id = "";
  int4 value = 0;
  TYPE_DESCRIPTOR((KEY(id, INDEXED), KEY(value, INDEXED)));
};
REGISTER_IN(meter, &database);
}  // namespace rekeyed

namespace newkey {
Database database;
struct meter {
  char const* id = "";
  int4 value = 0;
  int4 extra = 0;
  TYPE_DESCRIPTOR((KEY(id, INDEXED), FIELD(value), KEY(extra, INDEXED)));
};
REGISTER_IN(meter, &database);
}  // namespace newkey

namespace twice {
Database database;
struct meter {
  char const* id = "";
  int4 value = 0;
  TYPE_DESCRIPTOR((KEY(id, INDEXED), FIELD(value), FIELD(value)));
};
REGISTER_IN(meter, &database);
}  // namespace twice

namespace {

struct Layouts : ::testing::Test {
  void SetUp() override {
    ASSERT_TRUE(first::database.open("store", folder.File().c_str()));
    first::meter row;
    row.id = "a";
    row.value = 5;
    first::database.insert(row);
    first::database.commit();
  }
  void TearDown() override {
    for (Database* db : {&first::database, &grown::database, &reader::database, &retyped::database, &rekeyed::database,
                         &newkey::database, &twice::database}) {
      db->close();
      db->Reported();
    }
  }
  void ExpectRefused(Database& db, const std::string& why) {
    EXPECT_FALSE(db.open("store", folder.File().c_str()));
    EXPECT_EQ(db.errors.size(), 1U);
    EXPECT_NE(db.Reported().find(why), std::string::npos) << why;
  }
  void ExpectUnharmed() {
    dbCursor<first::meter> cursor(&first::database);
    ASSERT_EQ(cursor.select("id = 'a'"), 1);
    EXPECT_EQ(cursor->value, 5);
    first::database.commit();
  }

  Folder folder;
};

TEST_F(Layouts, AddedColumnsAreEmptyInOldRows) {
  first::database.close();
  ASSERT_TRUE(grown::database.open("store", folder.File().c_str())) << grown::database.Reported();
  dbCursor<grown::meter> cursor(&grown::database, dbCursorForUpdate);
  ASSERT_EQ(cursor.select("unit = '' and scale = 0 and not valid and place = ''"), 1);
  EXPECT_STREQ(cursor->id, "a");
  EXPECT_STREQ(cursor->unit, "");
  EXPECT_EQ(cursor->scale, 0);
  EXPECT_EQ(cursor->value, 5);
  EXPECT_FALSE(cursor->valid);
  EXPECT_EQ(cursor->spare[0], '\0');
  EXPECT_STREQ(cursor->place, "");
  cursor->unit = "kV";
  cursor->scale = 0.5;
  cursor.update();
  grown::meter row;
  row.id = "b";
  row.place = "here";
  grown::database.insert(row);
  grown::database.close();
  ASSERT_TRUE(grown::database.open("store", folder.File().c_str()));
  ASSERT_EQ(cursor.select("order by id"), 2);
  EXPECT_STREQ(cursor->unit, "kV");
  EXPECT_EQ(cursor->value, 5);
  EXPECT_STREQ(cursor.next()->place, "here");
  EXPECT_TRUE(cursor->valid);
}

TEST_F(Layouts, StoreOfANewerLayoutIsRefusedByName) {
  first::database.close();
  ASSERT_TRUE(grown::database.open("store", folder.File().c_str()));
  grown::database.close();
  ExpectRefused(first::database, "table meter was written by a newer layout: it has a column");
}

TEST_F(Layouts, ProgramThatIsRunningWhenColumnsAreAddedStopsAtItsNextTransaction) {
  ASSERT_TRUE(grown::database.open("store", folder.File().c_str()));
  grown::database.close();
  dbCursor<first::meter> cursor(&first::database, dbCursorForUpdate);
  EXPECT_EQ(cursor.select(), 0);
  EXPECT_EQ(first::database.insert(first::meter()).getOid(), 0U);
  EXPECT_EQ(first::database.changeNumber(&first::meter::dbDescriptor), 0U);
  EXPECT_EQ(first::database.errors.size(), 3U);
  EXPECT_NE(first::database.Reported().find("newer layout"), std::string::npos);
}

TEST_F(Layouts, ChangedTypeIsRefused) {
  ExpectRefused(retyped::database, "column value is int4 in the store and real8 in this program");
  ExpectUnharmed();
}

TEST_F(Layouts, ChangedKeysAreRefused) {
  ExpectRefused(rekeyed::database, "column value is int4 in the store and int4, key in this program");
  ExpectRefused(newkey::database, "column extra is new and a key");
  ExpectUnharmed();
}

TEST_F(Layouts, ColumnNamedTwiceIsRefused) { ExpectRefused(twice::database, "names column value twice"); }

TEST_F(Layouts, ReadingAloneTakesAnOlderStoreAsItIs) {
  first::database.close();
  ASSERT_TRUE(reader::database.open("store", folder.File().c_str())) << reader::database.Reported();
  dbCursor<reader::meter> cursor(&reader::database);
  ASSERT_EQ(cursor.select("scale = 0 order by id"), 1);
  EXPECT_EQ(cursor->value, 5);
  EXPECT_EQ(cursor->scale, 0);
  dbCursor<reader::unmade> nothing(&reader::database);
  EXPECT_EQ(nothing.select("order by id"), 0);
  EXPECT_EQ(reader::database.Reported(), "");
  reader::database.close();
  ASSERT_TRUE(first::database.open("store", folder.File().c_str())) << "no column was added";
  ExpectUnharmed();
}

TEST_F(Layouts, NewerFileFormatIsRefusedByName) {
  first::database.close();
  FileChange(folder.File()).SetFormat(4);
  ExpectRefused(first::database, "written in the newer file format realtime-store 4; this program knows 3");
}

TEST(SchemaText, ComesBackAsItWas) {
  Schema schema = dtsdb::internal::rtdb::SchemaOf(grown::meter::dbDescriptor);
  schema.longKeys = true;
  schema.changePlace = 17;
  const auto read = Schema::FromText(schema.ToText());
  ASSERT_TRUE(read.has_value());
  EXPECT_EQ(read->ToText(), schema.ToText());
  EXPECT_EQ(schema.ToText(),
            "table 1\nlong-keys\nchanges 17\nunit text 0 1\nid text 0 1 key\nscale real8 0 1\nvalue int4 0 1\nvalid "
            "bool 0 1\n"
            "spare raw 6 1\nplace text 0 1\n");
}

TEST(SchemaText, DamagedTextIsRefused) {
  for (const char* text :
       {"", "table", "table x\n", "table 0\n", "table 4000000000\nid text 0 1\n", "id text 0 1\n", "table 1\nid\n",
        "table 1\nid text 0 2\n", "table 1\nid blob 0 1\n", "table 1\nid text 0 1 lock\n",
        "table 1\nid text 0 1\nid text 0 1\n", "table 2\na int4 0 2\nb int4 0 1\n", "table 1\na raw 4294967295 1\n",
        "table 1\nchanges x\nid text 0 1\n", "table 1\nchanges 65536\nid text 0 1\n"}) {
    EXPECT_FALSE(Schema::FromText(text).has_value()) << text;
  }
}

}  // namespace
