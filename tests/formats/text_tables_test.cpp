#include "formats/text_tables.h"

#include <gtest/gtest.h>

#include <rapidcheck/gtest.h>

#include "formats/failure.h"
#include "formats/model_io.h"
#include "formats/temporary_folder.h"
#include "tests/formats/random_model.h"
#include "tests/support/command_runner.h"

namespace dtsdb::tools {
namespace {

using test::FirstDifference;
using test::Workplace;

/// The message with which `action` fails; empty when it doesn't.
template <class F>
std::string FailureOf(F&& action) {
  try {
    action();
    return "";
  } catch (const Failure& failure) {
    EXPECT_EQ(failure.Code(), kExitFile);
    return failure.what();
  }
}

DTSDB ReadHere(const Workplace& here) {
  DTSDB database;
  ReadTextTables((here / "m").string(), database);
  return database;
}

CB Breaker(const char* id) { return CB(IdFromLiteral(id)); }

RC_GTEST_PROP(TextTables, RecordsOfAll46ClassesReadBackFieldByField, (quint64 seed)) {
  const Workplace here;
  DTSDB written;
  test::FillWithAnything(written, seed, 6);
  WriteTextTables(written, (here / "m").string());
  DTSDB read = ReadHere(here);
  const std::string difference = FirstDifference(written, read);
  RC_ASSERT(difference == "");
}

TEST(TextTables, WritingWhatWasReadGivesTheSameFiles) {
  const Workplace here;
  DTSDB written;
  test::FillWithAnything(written, 42, 20);
  WriteTextTables(written, (here / "a").string());
  DTSDB read = LoadModel(ModelName((here / "a").string()));
  WriteTextTables(read, (here / "b").string());
  int files = 0;
  for (const auto& entry : std::filesystem::directory_iterator(here / "a")) {
    const std::filesystem::path twin = here / "b" / entry.path().filename();
    EXPECT_EQ(dtsdb::test::ReadBytes(entry.path()), dtsdb::test::ReadBytes(twin)) << twin;
    ++files;
  }
  EXPECT_GT(files, 40);
}

TEST(TextTables, OnlyTablesWithRecordsAreWritten) {
  const Workplace here;
  DTSDB database;
  database.m_coTable->Add(CO(IdFromLiteral("电网公司")));
  WriteTextTables(database, (here / "m").string());
  const auto entries = std::filesystem::directory_iterator(here / "m");
  EXPECT_EQ(std::distance(begin(entries), end(entries)), 1);
  EXPECT_EQ(here.Read("m/CO.csv"), "id,f1,f2,f3,f4,f5,f6,f7,f8,r_co_dv\r\n电网公司,0,0,0,0,0,0,0,0,0\r\n");
}

TEST(TextTables, AnEmptyModelIsAnEmptyFolder) {
  const Workplace here;
  DTSDB empty;
  WriteTextTables(empty, (here / "m").string());
  EXPECT_TRUE(std::filesystem::is_empty(here / "m"));
  DTSDB read = ReadHere(here);
  EXPECT_EQ(FirstDifference(empty, read), "");
}

TEST(TextTables, ColumnsStandInAnyOrderAndAbsentOnesLeaveTheDefault) {
  const Workplace here;
  here.Write("m/UN.csv", "pmax,id\n300,甲机\n");
  DTSDB read = ReadHere(here);
  ASSERT_EQ(read.m_unTable->GetCount(), 1);
  const UN& unit = (*read.m_unTable)[0];
  EXPECT_EQ(unit.pmax, 300.0F);
  EXPECT_EQ(unit.ref, -1) << "the default of the field";
  EXPECT_TRUE(unit.kv.isNull());
  EXPECT_EQ(unit.id, IdFromLiteral("甲机"));
}

TEST(TextTables, EmptyFieldsLeaveTheDefaultAndNullTexts) {
  const Workplace here;
  here.Write("m/UN.csv", "id,ref,kv,pmax\nG1,,,\nG2,\"\",\"\",\"\"\n");
  DTSDB read = ReadHere(here);
  const UN& first = (*read.m_unTable)[0];
  EXPECT_EQ(first.ref, -1);
  EXPECT_EQ(first.pmax, 0.0F);
  EXPECT_TRUE(first.kv.isNull());
  const UN& second = (*read.m_unTable)[1];
  EXPECT_EQ(second.ref, -1);
  EXPECT_TRUE(second.kv.isEmpty());
  EXPECT_FALSE(second.kv.isNull()) << "quotes make an empty text";
}

TEST(TextTables, RowsAreSortedByKey) {
  const Workplace here;
  here.Write("m/CB.csv", "id\nB3\nB1\nB2\n");
  DTSDB read = ReadHere(here);
  ASSERT_EQ(read.m_cbTable->GetCount(), 3);
  EXPECT_EQ((*read.m_cbTable)[0].id, IdFromLiteral("B1"));
  EXPECT_EQ(read.m_cbTable->Find(Breaker("B3")), 2);
}

TEST(TextTables, AByteOrderMarkAndAHeaderWithoutRowsAreAccepted) {
  const Workplace here;
  here.Write("m/CB.csv", "\xEF\xBB\xBFid,kv\r\n甲开关,甲站220\r\n");
  here.Write("m/LN.csv", "id\n");
  DTSDB read = ReadHere(here);
  EXPECT_EQ(read.m_cbTable->GetCount(), 1);
  EXPECT_EQ(read.m_lnTable->GetCount(), 0);
}

TEST(TextTables, OtherFilesBesideTheTablesAreIgnoredWhenReading) {
  const Workplace here;
  here.Write("m/CB.csv", "id\nB1\n");
  here.Write("m/README.md", "a network\n");
  EXPECT_EQ(ReadHere(here).m_cbTable->GetCount(), 1);
}

TEST(TextTables, AFolderOfTablesIsReplacedAsAWhole) {
  const Workplace here;
  here.Write("m/LN.csv", "id\nL1\n");
  DTSDB database;
  database.m_cbTable->Add(Breaker("B1"));
  WriteTextTables(database, (here / "m").string());
  EXPECT_FALSE(here.Exists("m/LN.csv"));
  EXPECT_TRUE(here.Exists("m/CB.csv"));
  EXPECT_EQ(here.EntryCount(), 1) << "nothing stays beside the folder";
}

TEST(TextTables, AFolderWithAnythingElseInItIsNotReplaced) {
  const Workplace here;
  here.Write("m/CB.csv", "id\nold\n");
  here.Write("m/notes.txt", "mine\n");
  DTSDB database;
  database.m_cbTable->Add(Breaker("new"));
  const std::string folder = (here / "m").string();
  EXPECT_EQ(FailureOf([&] { WriteTextTables(database, folder); }),
            folder + ": isn't replaced: it holds 'notes.txt', which is no text table");
  EXPECT_EQ(here.Read("m/CB.csv"), "id\nold\n");
  EXPECT_EQ(here.EntryCount(), 1);
}

TEST(TextTables, AFileIsNotReplacedByAFolder) {
  const Workplace here;
  here.Write("m", "a file\n");
  DTSDB database;
  const std::string path = (here / "m").string();
  EXPECT_EQ(FailureOf([&] { WriteTextTables(database, path); }), path + ": isn't replaced: it is a file, not a folder");
  EXPECT_EQ(here.Read("m"), "a file\n");
}

TEST(TextTables, TheFolderAroundMustExist) {
  const Workplace here;
  DTSDB database;
  const std::string path = (here / "missing/m").string();
  EXPECT_EQ(FailureOf([&] { WriteTextTables(database, path); }),
            path + ": can't be written: No such file or directory");
  EXPECT_EQ(here.EntryCount(), 0);
}

TEST(TextTables, BytesThatAreNoGbkAreNotWrittenAndTheOldFolderStays) {
  const Workplace here;
  here.Write("m/CB.csv", "id\nold\n");
  DTSDB database;
  database.m_cbTable->Add(Breaker("A"));
  CB broken = Breaker("B");
  broken.kv = IdFromBytes("\xFF\xFF");
  database.m_cbTable->Add(broken);
  EXPECT_EQ(FailureOf([&] { WriteTextTables(database, (here / "m").string()); }),
            "table CB, record 1, field kv: the bytes of the text are no valid GBK");
  EXPECT_EQ(here.Read("m/CB.csv"), "id\nold\n");
  EXPECT_EQ(here.EntryCount(), 1);
}

TEST(TextTables, TwoEqualRecordsAreNotWritten) {
  const Workplace here;
  DTSDB database;
  CB twins[] = {Breaker("B"), Breaker("B")};
  database.m_cbTable->SetData(twins, 2, true);
  EXPECT_EQ(FailureOf([&] { WriteTextTables(database, (here / "m").string()); }),
            "table CB, record 1, field id: 'B' stands twice in the table");
  EXPECT_EQ(here.EntryCount(), 0);
  CB pairs[] = {Breaker("A"), Breaker("A"), Breaker("B"), Breaker("B")};
  database.m_cbTable->SetData(pairs, 4, true);
  EXPECT_EQ(FailureOf([&] { WriteTextTables(database, (here / "m").string()); }),
            "table CB, record 1, field id: 'A' stands twice in the table");
}

TEST(ModelIo, TheNameDecidesTheFormOfTheOutput) {
  const Workplace here;
  std::filesystem::create_directory(here / "folder.obj");
  EXPECT_EQ(ModelName("grid.obj").FormAsOutput(), ModelForm::kObjectFile);
  EXPECT_EQ(ModelName("grid").FormAsOutput(), ModelForm::kTextTables);
  EXPECT_EQ(ModelName("grid.obj/").FormAsOutput(), ModelForm::kTextTables);
  EXPECT_EQ(ModelName((here / "folder.obj").string()).FormAsOutput(), ModelForm::kTextTables);
}

TEST(ModelIo, ATrailingSlashIsNoPartOfTheName) {
  const Workplace here;
  DTSDB database;
  database.m_cbTable->Add(Breaker("B"));
  SaveModel(database, ModelName((here / "m").string() + "/"));
  EXPECT_TRUE(here.Exists("m/CB.csv"));
}

TEST(ModelIo, AnObjectFileDoesNotTakeThePlaceOfAFolder) {
  const Workplace here;
  std::filesystem::create_directory(here / "m");
  DTSDB database;
  const std::string path = (here / "m").string();
  EXPECT_EQ(FailureOf([&] { SaveModel(database, ModelName(path), ModelForm::kObjectFile); }),
            path + ": is a folder; an object file can't take its place");
}

TEST(TemporaryFolders, AreRemovedAtAnEndingSignalWhenOneHasGoneBefore) {
  const QTemporaryDir place;
  const fs::path parent = place.path().toStdString();
  const TemporaryFolder first(parent, "", 0700, parent / "out");
  { const TemporaryFolder second(parent, "", 0700, parent / "out"); }
  ASSERT_TRUE(fs::exists(first.Path()));
  RemoveTemporaryFolders();
  EXPECT_FALSE(fs::exists(first.Path()));
}

}  // namespace
}  // namespace dtsdb::tools
