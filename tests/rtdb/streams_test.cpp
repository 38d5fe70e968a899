// Programs that were started with their standard streams closed.

#include <gtest/gtest.h>

#include <cstdlib>
#include <thread>

#include "samples.h"
#include "tests/support/closed_streams.h"
#include "tests/support/process.h"

using dtsdb::test::AddEntry;
using dtsdb::test::Database;
using dtsdb::test::EntryIds;
using dtsdb::test::Folder;
using dtsdb::test::InProcessWithoutStreams;
using dtsdb::test::RunHelper;
using dtsdb::test::StreamsAreClosed;

namespace {

bool PrintsNothing() {
  for (int stream = 0; stream <= STDERR_FILENO; ++stream) {
    if (::write(stream, "printed", 7) != -1) return false;
  }
  return true;
}

TEST(ClosedStreams, NoFileOfTheStoreTakesTheirPlaces) {
  Folder folder;
  EXPECT_EQ(InProcessWithoutStreams([&folder] {
              Database db;
              if (!db.open("store", folder.File().c_str()) || !StreamsAreClosed() || !PrintsNothing()) return 1;
              for (int id = 0; id < 100; ++id) AddEntry(db, id);
              db.commit();
              if (!PrintsNothing()) return 2;
              AddEntry(db, 100);
              db.close();
              return StreamsAreClosed() && db.Reported().empty() ? 0 : 3;
            }),
            0);
  Database db;
  ASSERT_TRUE(db.open("store", folder.File().c_str())) << db.Reported();
  EXPECT_EQ(EntryIds(db).size(), 101U);
}

TEST(ClosedStreams, RefusedOpeningLeavesThemClosed) {
  EXPECT_EQ(InProcessWithoutStreams([] {
              Database db;
              return !db.open("store", "/no/such/folder/store.fdb") && StreamsAreClosed() ? 0 : 1;
            }),
            0);
}

TEST(ClosedStreams, ThreadsMayOpenStoresSideBySide) {
  Folder folder;
  EXPECT_EQ(InProcessWithoutStreams([&folder] {
              const auto use = [&folder](const char* name) {
                for (int round = 0; round < 30; ++round) {
                  Database db;
                  db.open("store", folder.File(name).c_str());
                  PrintsNothing();
                  AddEntry(db, round);
                  db.close();
                }
              };
              std::thread other(use, "a.fdb");
              use("b.fdb");
              other.join();
              return StreamsAreClosed() ? 0 : 1;
            }),
            0);
  for (const char* name : {"a.fdb", "b.fdb"}) {
    Database db;
    ASSERT_TRUE(db.open("store", folder.File(name).c_str())) << db.Reported();
    EXPECT_EQ(EntryIds(db).size(), 30U);
  }
}

TEST(ClosedStreams, ProgramsThatPrintThereDoNotDamageTheStore) {
  Folder folder;
  EXPECT_EQ(RunHelper({"make", folder.File()}), "");
  for (int id = 1000; id < 1012; ++id) {
    const std::string command = std::string("exec ") + dtsdb::test::TestProgram() + " add " + folder.File() + " " +
                                std::to_string(id) + " <&- >&- 2>&-";
    EXPECT_EQ(std::system(command.c_str()), 0);
  }
  Database db;
  ASSERT_TRUE(db.open("store", folder.File().c_str())) << db.Reported();
  EXPECT_EQ(EntryIds(db).size(), 412U);
}

}  // namespace
