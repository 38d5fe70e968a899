// Profiles in zip archives, and archives from strangers.

#include <archive.h>
#include <archive_entry.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <utility>

#include "formats/cgmes/set.h"
#include "formats/files.h"
#include "formats/import/archive.h"
#include "tests/formats/cgmes/profile_text.h"

namespace dtsdb::tools::cgmes::test {
namespace {

using Entries = std::vector<std::pair<std::string, std::string>>;

/// Writes a zip archive with these files.
void WriteZip(const std::string& path, const Entries& entries) {
  archive* const made = archive_write_new();
  archive_write_set_format_zip(made);
  ASSERT_EQ(archive_write_open_filename(made, path.c_str()), ARCHIVE_OK);
  for (const auto& [name, bytes] : entries) {
    archive_entry* const entry = archive_entry_new();
    archive_entry_set_pathname(entry, name.c_str());
    archive_entry_set_size(entry, static_cast<la_int64_t>(bytes.size()));
    archive_entry_set_filetype(entry, AE_IFREG);
    archive_entry_set_perm(entry, 0644);
    ASSERT_EQ(archive_write_header(made, entry), ARCHIVE_OK);
    ASSERT_EQ(archive_write_data(made, bytes.data(), bytes.size()), static_cast<la_ssize_t>(bytes.size()));
    archive_entry_free(entry);
  }
  ASSERT_EQ(archive_write_close(made), ARCHIVE_OK);
  archive_write_free(made);
}

std::string Profile() {
  ProfileText text;
  text.Node("N1").Node("N2").Equipment("Breaker", "B", {"N1", "N2"});
  return text.Text();
}

TEST(CgmesArchive, ProfilesInAnArchiveAreASet) {
  const SetFolder folder;
  const std::string path = folder.Path() + "/grid.zip";
  WriteZip(path, {{"readme.txt", "about the grid"}, {"eq.xml", Profile()}});
  DTSDB model;
  const ImportReport report = Import({path}, {}, model);
  EXPECT_EQ(model.m_cbTable->GetCount(), 1);
  ASSERT_EQ(report.files.size(), 1U);
  EXPECT_EQ(report.files[0].name, path + ": eq.xml");
}

TEST(CgmesArchive, ArchivesInAFolderBelongToItsSet) {
  const SetFolder folder;
  folder.Write("a.xml", Profile());
  WriteZip(folder.Path() + "/b.zip", {{"b.xml", Profile()}});
  EXPECT_EQ(ReadSet({folder.Path()}).profiles.size(), 2U);
}

TEST(CgmesArchive, PathsInAnArchiveLeadNowhere) {
  const SetFolder folder;
  const std::string path = folder.Path() + "/inner/grid.zip";
  std::filesystem::create_directory(folder.Path() + "/inner");
  WriteZip(path, {{"../evil.xml", Profile()}, {"/tmp/evil.xml", Profile()}});
  EXPECT_EQ(ReadSet({path}).profiles.size(), 2U);
  EXPECT_FALSE(std::filesystem::exists(folder.Path() + "/evil.xml"));
}

TEST(CgmesArchive, AnArchiveInAnArchiveIsNotLookedInto) {
  const SetFolder folder;
  WriteZip(folder.Path() + "/inner.zip", {{"eq.xml", Profile()}});
  const std::string inner = ReadFile(folder.Path() + "/inner.zip");
  const std::string path = folder.Path() + "/outer.zip";
  WriteZip(path, {{"inner.zip", inner}});
  EXPECT_EQ(FailureOf([&] { ReadSet({path}); }), path + ": there are no CGMES profiles");
  WriteZip(path, {{"inner.zip", inner}, {"eq.xml", Profile()}});
  EXPECT_EQ(ReadSet({path}).profiles.size(), 1U);
}

TEST(CgmesArchive, ReadingCountsTheBytesOfTheArchive) {
  const SetFolder folder;
  const std::string path = folder.Path() + "/grid.zip";
  ProfileText profile;
  for (int i = 0; i < 5000; ++i) profile.Add("BaseVoltage", std::to_string(i));
  const std::string large = profile.Text();
  WriteZip(path, {{"a.xml", large}, {"b.xml", Profile()}});
  const std::string plain = folder.Write("c.xml", large);
  std::uint64_t last = 0;
  std::uint64_t size = 0;
  ReadSet({path, plain}, [&](std::uint64_t done, std::uint64_t total) {
    EXPECT_GE(done, last);
    last = done;
    size = total;
  });
  EXPECT_EQ(size, std::filesystem::file_size(path) + std::filesystem::file_size(plain));
  EXPECT_LE(last, size);
  EXPECT_GT(last, size / 2);
}

TEST(CgmesArchive, AFaultNamesTheFileInTheArchive) {
  const SetFolder folder;
  const std::string path = folder.Path() + "/grid.zip";
  WriteZip(path, {{"eq.xml", Profile().substr(0, 1500)}});
  EXPECT_TRUE(FailureOf([&] { ReadSet({path}); }).starts_with(path + ": eq.xml, line "));
}

TEST(CgmesArchive, ABombIsNotReadToItsEnd) {
  const SetFolder folder;
  const std::string path = folder.Path() + "/bomb.zip";
  std::string bomb = ProfileText::kBegin;
  while (bomb.size() < (std::size_t{96} << 20)) bomb += std::string(1 << 14, ' ') + "<cim:A rdf:ID=\"_1\"/>";
  WriteZip(path, {{"eq.xml", bomb}});
  EXPECT_EQ(FailureOf([&] { ReadSet({path}); }), path + ": can't be read: it expands to more than any grid");
}

TEST(CgmesArchive, AnArchiveExpandsToNoMoreThanAllowed) {
  const SetFolder folder;
  const std::string path = folder.Path() + "/grid.zip";
  WriteZip(path, {{"a.xml", std::string(600, 'a')}, {"b.xml", std::string(400, 'b')}});
  const auto read = [&](qint64 most) {
    qint64 bytes = 0;
    ForEachEntry(
        path, [&](QIODevice& content, const std::string&) { bytes += content.readAll().size(); }, [](std::uint64_t) {},
        most);
    EXPECT_EQ(bytes, 1000);
  };
  EXPECT_EQ(FailureOf([&] { read(1000); }), "");
  EXPECT_EQ(FailureOf([&] { read(999); }), path + ": can't be read: it expands to more than any grid");
  EXPECT_EQ(kMostExpandedBytes, qint64{8} << 30);
}

TEST(CgmesArchive, AnArchiveWithTooManyFilesIsRefused) {
  const SetFolder folder;
  const std::string path = folder.Path() + "/many.zip";
  WriteZip(path, Entries(10'001, {"empty.txt", ""}));
  EXPECT_EQ(FailureOf([&] { ReadSet({path}); }), path + ": can't be read: it has more than 10000 files");
}

TEST(CgmesArchive, ADamagedArchiveIsRefused) {
  const SetFolder folder;
  const std::string path = folder.Path() + "/grid.zip";
  WriteZip(path, {{"eq.xml", Profile()}});
  QFile file(QString::fromStdString(path));
  ASSERT_TRUE(file.open(QIODevice::ReadWrite));
  const QByteArray bytes = file.readAll();
  for (const qsizetype at : {qsizetype{60}, bytes.size() / 2}) {
    QByteArray damaged = bytes;
    damaged.replace(at, 40, QByteArray(40, '\x5A'));
    const std::string name = folder.Write("damaged.zip", damaged.toStdString());
    EXPECT_NE(FailureOf([&] { ReadSet({name}); }), "") << at;
  }
  const std::string cut = folder.Write("cut.zip", bytes.first(200).toStdString());
  EXPECT_NE(FailureOf([&] { ReadSet({cut}); }), "");
}

}  // namespace
}  // namespace dtsdb::tools::cgmes::test
