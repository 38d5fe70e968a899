// Object files on disk: what can't be opened or written, what stands in the way, and old files.
#include <gtest/gtest.h>
#include <sys/resource.h>

#include <QDir>
#include <QFileInfo>
#include <atomic>
#include <csignal>
#include <string>
#include <thread>

#include "model/objectfile.h"
#include "tests/model/record_values.h"
#include "tests/support/closed_streams.h"
#include "tests/support/places.h"
#include "tests/support/random_records.h"
#include "tests/support/temporary_directory.h"

namespace dtsdb::test {
namespace {

const std::string kCanNotOpen = "can not open file.\n";

/// What `call` writes on the standard output; its result goes to `ok`.
template <class Call>
std::string Printed(bool* ok, Call call) {
  testing::internal::CaptureStdout();
  *ok = call();
  return testing::internal::GetCapturedStdout();
}

void WriteBytes(const QString& name, const QByteArray& bytes) {
  QFile file(name);
  ASSERT_TRUE(file.open(QIODevice::WriteOnly));
  ASSERT_EQ(file.write(bytes), bytes.size());
}

/// Lets no file grow beyond `bytes` for as long as it lives, as a full disk would.
class FullDisk {
 public:
  explicit FullDisk(rlim_t bytes) : m_signal(std::signal(SIGXFSZ, SIG_IGN)) {
    getrlimit(RLIMIT_FSIZE, &m_before);
    const rlimit limit = {bytes, m_before.rlim_max};
    setrlimit(RLIMIT_FSIZE, &limit);
  }
  FullDisk(const FullDisk&) = delete;
  FullDisk& operator=(const FullDisk&) = delete;
  ~FullDisk() {
    setrlimit(RLIMIT_FSIZE, &m_before);
    std::signal(SIGXFSZ, m_signal);
  }

 private:
  rlimit m_before = {};
  void (*m_signal)(int);
};

TEST(ObjectFileIo, WriteReadWriteGivesTwoEqualFilesAndNoMessage) {
  const TemporaryDirectory directory;
  DTSDB database;
  FillTables(database, 3);
  DTSDB loaded;
  bool ok = false;
  EXPECT_EQ(Printed(&ok, [&] { return database.WriteObject(Text("a")) && loaded.ReadObject(Text("a")); }), "");
  EXPECT_TRUE(ok);
  EXPECT_TRUE(loaded.WriteObject(Text("b")));
  EXPECT_FALSE(directory.Read(Text("a")).isEmpty());
  EXPECT_EQ(directory.Read(Text("a")), directory.Read(Text("b")));
  EXPECT_EQ(directory.Read(Text("a")), ImageOf(database));
}

TEST(ObjectFileIo, AMissingFileCanNotBeOpened) {
  const TemporaryDirectory directory;
  DTSDB database;
  FillTables(database, 1);
  const QByteArray before = ImageOf(database);
  bool ok = true;
  EXPECT_EQ(Printed(&ok, [&] { return database.ReadObject(Text("missing")); }), kCanNotOpen);
  EXPECT_FALSE(ok);
  EXPECT_EQ(ImageOf(database), before);
}

TEST(ObjectFileIo, ADirectoryCanNotBeOpened) {
  const TemporaryDirectory directory;
  DTSDB database;
  bool ok = true;
  EXPECT_EQ(Printed(&ok, [&] { return database.ReadObject(directory.Path()); }), kCanNotOpen);
  EXPECT_FALSE(ok);
  EXPECT_EQ(Printed(&ok, [&] { return database.WriteObject(directory.Path()); }), kCanNotOpen);
  EXPECT_FALSE(ok);
}

TEST(ObjectFileIo, ANameWithoutAFileCanNotBeOpened) {
  DTSDB database;
  bool ok = true;
  for (const QString& name : {QString(), Text("")}) {
    EXPECT_EQ(Printed(&ok, [&] { return database.ReadObject(name); }), kCanNotOpen);
    EXPECT_FALSE(ok);
    EXPECT_EQ(Printed(&ok, [&] { return database.WriteObject(name); }), kCanNotOpen);
    EXPECT_FALSE(ok);
  }
}

TEST(ObjectFileIo, AFolderThatIsNotThereCanNotBeWrittenTo) {
  const TemporaryDirectory directory;
  DTSDB database;
  bool ok = true;
  EXPECT_EQ(Printed(&ok, [&] { return database.WriteObject(Text("no/such/folder/file")); }), kCanNotOpen);
  EXPECT_FALSE(ok);
}

TEST(ObjectFileIo, AFileThatIsNoFolderCanNotBeWrittenInto) {
  const TemporaryDirectory directory;
  WriteBytes(Text("file"), "x");
  DTSDB database;
  bool ok = true;
  EXPECT_EQ(Printed(&ok, [&] { return database.WriteObject(Text("file/model")); }), kCanNotOpen);
  EXPECT_FALSE(ok);
}

TEST(ObjectFileIo, AFailedWriteKeepsTheOldFileAndLeavesNoOther) {
  const TemporaryDirectory directory;
  WriteBytes(Text("model"), "old");
  DTSDB database;
  FillTables(database, 20);
  bool ok = true;
  std::string printed;
  {
    const FullDisk disk(4096);
    printed = Printed(&ok, [&] { return database.WriteObject(Text("model")); });
  }
  EXPECT_FALSE(ok);
  EXPECT_TRUE(printed.starts_with("can not write file: ")) << printed;
  EXPECT_TRUE(printed.ends_with(".\n")) << printed;
  EXPECT_EQ(directory.Read(Text("model")), QByteArray("old"));
  EXPECT_EQ(QDir(directory.Path()).entryList(QDir::Files | QDir::Hidden), QStringList(Text("model")));
}

TEST(ObjectFileIo, AnOldFileIsReplacedAsAWhole) {
  const TemporaryDirectory directory;
  WriteBytes(Text("model"), QByteArray(100000, 'x'));
  DTSDB database;
  EXPECT_TRUE(database.WriteObject(Text("model")));
  EXPECT_EQ(directory.Read(Text("model")).size(), 1288);
}

TEST(ObjectFileIo, ADeviceIsWrittenToAndNotReplaced) {
  DTSDB database;
  EXPECT_TRUE(database.WriteObject(Text("/dev/null")));
  EXPECT_FALSE(QFileInfo(Text("/dev/null")).isFile());
}

TEST(ObjectFileIo, AFullDeviceIsAFailedWrite) {
  DTSDB database;
  bool ok = true;
  const std::string printed = Printed(&ok, [&] { return database.WriteObject(Text("/dev/full")); });
  EXPECT_FALSE(ok);
  EXPECT_TRUE(printed.starts_with("can not write file: ")) << printed;
  EXPECT_FALSE(QFileInfo(Text("/dev/full")).isFile());
}

TEST(ObjectFileIo, AFileNamedByASymbolicLinkIsReplacedBehindTheLink) {
  const TemporaryDirectory directory;
  WriteBytes(Text("model"), "old");
  ASSERT_TRUE(QFile::link(directory.Path() + Text("/model"), Text("link")));
  DTSDB database;
  EXPECT_TRUE(database.WriteObject(Text("link")));
  EXPECT_TRUE(QFileInfo(Text("link")).isSymLink());
  EXPECT_EQ(directory.Read(Text("model")).size(), 1288);
}

// NMD and TP copy the table pointers: a model that is read must appear behind them.
TEST(ObjectFileIo, ReadIntoAFilledContainerItAppearsInTheSameTables) {
  const TemporaryDirectory directory;
  DTSDB large;
  FillTables(large, 40);
  ASSERT_TRUE(large.WriteObject(Text("large")));
  DTSDB small;
  FillTables(small, 2);
  tTable<KV>* const levels = small.m_kvTable;
  DTSDB sharing;
  sharing = small;
  ASSERT_TRUE(small.ReadObject(Text("large")));
  EXPECT_EQ(small.m_kvTable, levels);
  EXPECT_EQ(levels->GetCount(), 40);
  EXPECT_EQ(sharing.m_kvTable->GetCount(), 40);
  EXPECT_EQ(ImageOf(small), ImageOf(large));
}

TEST(ObjectFileIo, AForeignFileIsRefusedWithOneLineAndNothingIsTouched) {
  const TemporaryDirectory directory;
  WriteBytes(Text("foreign"), "PK\x03\x04 this is no model at all, and somewhat longer than one number");
  DTSDB database;
  FillTables(database, 2);
  const QByteArray before = ImageOf(database);
  bool ok = true;
  EXPECT_EQ(Printed(&ok, [&] { return database.ReadObject(Text("foreign")); }),
            "not a sound object file, table ANALOG, byte 4: the number of slots doesn't fit the file.\n");
  EXPECT_FALSE(ok);
  EXPECT_EQ(ImageOf(database), before);
}

TEST(ObjectFileIo, AnEmptyFileIsRefused) {
  const TemporaryDirectory directory;
  WriteBytes(Text("empty"), QByteArray());
  DTSDB database;
  EXPECT_EQ(ReadObjectFile(database, Text("empty")),
            Text("not a sound object file, table ANALOG, byte 0: the table is missing.\n"));
}

TEST(ObjectFileIo, BytesBehindTheLastTableAreRefused) {
  const TemporaryDirectory directory;
  DTSDB database;
  FillTables(database, 1);
  const QByteArray image = ImageOf(database);
  WriteBytes(Text("longer"), image + "abc");
  DTSDB loaded;
  EXPECT_EQ(
      ReadObjectFile(loaded, Text("longer")),
      Text("not a sound object file, table ZBR2, byte %1: 3 bytes stand behind the last table.\n").arg(image.size()));
  EXPECT_EQ(loaded.m_stTable->GetSize(), 0);
}

/// The model of fixtures/all-tables.obj: a record with values of its own in every field in every table; breakers
/// added in disorder, of which one was removed again; log rows shrunk away, their slots still numbered.
void MakeFixtureModel(DTSDB& database) {
  ForEachTable(database, [](auto& table) { table.SetSize(1); });
  FillTables(database, 1);
  database.m_cbTable->SetGrowBy(4);
  for (const char* id : {"c", "a", "b"}) database.m_cbTable->Add(CB(Text(id)));
  database.m_cbTable->Remove(0);
  for (int i = 5; i > 0; --i) database.m_tplTable->Add(TPL(i));
  database.m_tplTable->SetSize(3);
  database.m_tplTable->Add(TPL(9));
}

// The file was written once and stays as it is: a format that can't read it any more has broken its promise.
TEST(ObjectFileIo, AnOldFileStillReads) {
  const QString name = QString::fromStdString(SourcePath("tests/model/fixtures/all-tables.obj"));
  QFile file(name);
  ASSERT_TRUE(file.open(QIODevice::ReadOnly));
  const QByteArray stored = file.readAll();

  DTSDB loaded;
  ASSERT_EQ(ReadObjectFile(loaded, name), QString());
  EXPECT_EQ(loaded.m_cbTable->GetCount(), 3);
  EXPECT_EQ(loaded.m_cbTable->PhToLg(2), 0);
  EXPECT_EQ(loaded.m_tplTable->PhToLg(2), 2);
  EXPECT_EQ(loaded.m_tplTable->GetCount(), 1);
  EXPECT_EQ(ImageOf(loaded), stored);

  DTSDB same;
  MakeFixtureModel(same);
  EXPECT_EQ(ImageOf(same), stored);
}

// Another thread prints meanwhile.
TEST(ObjectFileIo, HoldsNothingOfWhatAProgramWithoutStandardStreamsPrints) {
  const TemporaryDirectory here;
  DTSDB model;
  RandomRecords(5).FillModel(model, 50);
  ASSERT_TRUE(model.WriteObject(Text("plain.obj")));
  EXPECT_EQ(InProcessWithoutStreams([&model] {
              std::atomic<bool> done = false;
              std::thread printer([&done] {
                while (!done) static_cast<void>(::write(STDIN_FILENO, "printed", 7) + ::write(STDOUT_FILENO, "x", 1));
              });
              bool good = true;
              for (int round = 0; round < 20; ++round) {
                good = good && WriteObjectFile(model, Text("beside.obj")).isNull();
                DTSDB read;
                good = good && ReadObjectFile(read, Text("beside.obj")).isNull();
              }
              done = true;
              printer.join();
              return good && StreamsAreClosed() ? 0 : 1;
            }),
            0);
  EXPECT_EQ(here.Read(Text("beside.obj")), here.Read(Text("plain.obj")));
}

}  // namespace
}  // namespace dtsdb::test
