// What is saved of damaged models: whole records, as they were written, and as many as can be found again.

#include <gtest/gtest.h>

#include <QBuffer>
#include <QDataStream>
#include <filesystem>
#include <map>
#include <random>
#include <set>

#include "formats/failure.h"
#include "formats/field_text.h"
#include "formats/model_io.h"
#include "formats/salvage/record_scan.h"
#include "formats/salvage/salvage.h"
#include "model/any_table.h"
#include "model/qarchive.h"
#include "tests/rtdb/damage.h"
#include "tests/support/bytes.h"
#include "tests/support/places.h"
#include "tests/support/random_records.h"

namespace fs = std::filesystem;

namespace dtsdb::tools {
namespace {

using dtsdb::test::RandomRecords;
using dtsdb::test::ReadBytes;
using dtsdb::test::WriteBytes;

constexpr int kRecords = 8;  // of each table

using RecordTexts = std::set<std::string>;

/// The records of each table, each as one text with all fields.
std::vector<RecordTexts> TextsOf(DTSDB& model) {
  std::vector<RecordTexts> tables;
  for (const AnyTable& table : AllTables(model)) {
    RecordTexts& texts = tables.emplace_back();
    for (int i = 0; i < table.GetCount(); ++i) {
      std::string text;
      for (const FieldInfo& field : table.Info().fields()) text += FieldText(field, table[i]) + '|';
      texts.insert(text);
    }
  }
  return tables;
}

long long CountOf(const std::vector<RecordTexts>& tables) {
  long long count = 0;
  for (const RecordTexts& texts : tables) count += static_cast<long long>(texts.size());
  return count;
}

/// A folder with a model of random records, and the records that it has.
class SalvageTest : public testing::Test {
 protected:
  SalvageTest() {
    RandomRecords(7).FillModel(model, kRecords);
    // The mark goes with the first record that is lost.
    for (int i = 0; i < model.m_globalTable->GetCount(); ++i) (*model.m_globalTable)[i].valid = 0;
    original = TextsOf(model);
  }
  std::string Path(const char* name) const { return folder.filePath(QString::fromLatin1(name)).toStdString(); }

  /// Checks that nothing is saved that wasn't written. Returns how many records are saved.
  long long ExpectOnlyOriginals(Salvage& salvage, const std::string& what) const {
    const std::vector<RecordTexts> saved = TextsOf(salvage.model);
    for (std::size_t i = 0; i < saved.size(); ++i) {
      for (const std::string& text : saved[i]) {
        EXPECT_TRUE(original[i].contains(text)) << what << ", " << salvage.tables[i].table << ": " << text;
      }
      EXPECT_EQ(salvage.tables[i].saved, static_cast<long long>(saved[i].size())) << what;
      if (salvage.tables[i].lost) {
        EXPECT_EQ(*salvage.tables[i].lost + salvage.tables[i].saved, static_cast<long long>(original[i].size()))
            << what << ", " << salvage.tables[i].table;
      }
    }
    return CountOf(saved);
  }

  QTemporaryDir folder;
  DTSDB model;
  std::vector<RecordTexts> original;
};

/// Where the images of the tables begin in an object file, and where the last one ends.
std::vector<std::size_t> ImagesIn(DTSDB& model) {
  QByteArray bytes;
  QBuffer buffer(&bytes);
  buffer.open(QIODevice::WriteOnly);
  QArchive archive(&buffer, false);
  std::vector<std::size_t> places{0};
  ForEachTable(model, [&](auto& table) {
    table.Serialize(archive);
    places.push_back(static_cast<std::size_t>(buffer.pos()));
  });
  return places;
}

class ObjectFileSalvageTest : public SalvageTest {
 protected:
  ObjectFileSalvageTest() : path(Path("m.obj")) {
    SaveModel(model, ModelName(path));
    whole = ReadBytes(path);
    images = ImagesIn(model);
  }

  Salvage Of(const std::string& bytes) const {
    WriteBytes(path, bytes);
    return SalvageModel(ModelName(path));
  }
  Salvage WithFlipped(std::size_t byte, int bit) const {
    std::string bytes = whole;
    bytes[byte] = static_cast<char>(bytes[byte] ^ (1 << bit));
    return Of(bytes);
  }

  std::string path;
  std::string whole;
  std::vector<std::size_t> images;
};

TEST_F(ObjectFileSalvageTest, SoundFileLosesNothing) {
  Salvage salvage = Of(whole);
  EXPECT_TRUE(salvage.IsSound());
  EXPECT_EQ(ExpectOnlyOriginals(salvage, "sound"), CountOf(original));
}

TEST_F(ObjectFileSalvageTest, DamagedNumbersOfATableCostNoRecord) {
  std::mt19937 random(1);
  for (std::size_t table = 0; table + 1 < images.size(); ++table) {
    for (std::size_t byte = 0; byte < 28 + 16 * kRecords; byte += 1 + random() % 79) {
      Salvage salvage = WithFlipped(images[table] + byte, static_cast<int>(random() % 8));
      const std::string what = "table " + std::to_string(table) + ", byte " + std::to_string(byte);
      if (salvage.IsSound()) continue;
      const bool hasTexts = TableOfKind(static_cast<TableKind>(table + 1)).key != RecordKey::kNumbered;
      EXPECT_GE(ExpectOnlyOriginals(salvage, what), CountOf(original) - (hasTexts ? 0 : kRecords)) << what;
    }
  }
}

TEST_F(ObjectFileSalvageTest, DamagedRecordCostsItselfAlone) {
  std::mt19937 random(2);
  for (int trial = 0; trial < 100; ++trial) {
    const std::size_t table = random() % (images.size() - 1);
    const std::size_t records = images[table] + 28 + std::size_t{16} * kRecords;
    const std::size_t byte = records + random() % (images[table + 1] - records);
    Salvage salvage = WithFlipped(byte, static_cast<int>(random() % 8));
    if (salvage.IsSound()) continue;  // another letter or number
    const std::string what = "byte " + std::to_string(byte);
    EXPECT_GE(ExpectOnlyOriginals(salvage, what), CountOf(original) - 1) << what;
    EXPECT_EQ(salvage.placeCount, 1U) << what;
  }
}

TEST_F(ObjectFileSalvageTest, RecordsBetweenDamagedOnesAreFound) {
  DTSDB large;
  for (int i = 0; i < 1000; ++i) large.m_cbTable->Add(CB(QString::number(10000 + i)));
  SaveModel(large, ModelName(path));
  original = TextsOf(large);
  whole = ReadBytes(path);
  for (const char* id : {"10100", "10500", "10900"}) {
    std::string wide;
    for (const char* c = id; *c != '\0'; ++c) wide += {'\0', *c};
    whole[whole.find(wide) - 2] = '\x7F';  // the number of its bytes
  }
  Salvage salvage = Of(whole);
  EXPECT_GE(ExpectOnlyOriginals(salvage, "three damages"), 990);
  ASSERT_EQ(salvage.placeCount, 3U);
  EXPECT_EQ(salvage.places[0].id + " " + salvage.places[1].id + " " + salvage.places[2].id, "10100 10499 10899");
}

/// Companies as they lie behind each other in a file, and where each begins; some are damaged.
struct CompanyBytes {
  CompanyBytes(int count, const std::set<int>& damaged) {
    QByteArray buffer;
    QDataStream stream(&buffer, QIODevice::WriteOnly);
    for (int i = 0; i < count; ++i) {
      begins.push_back(static_cast<std::size_t>(buffer.size()));
      stream << QString(QStringLiteral("C%1").arg(i));
      const QByteArray numbers(9 * 4, '\xFF');
      stream.writeRawData(numbers.data(), static_cast<int>(numbers.size()));
    }
    bytes = buffer.toStdString();
    for (const int i : damaged) bytes[begins[static_cast<std::size_t>(i)]] = '\x7F';
  }
  FoundRecords Find(int count, ScanEnd end) const {
    RecordScan scan(bytes, TableOfKind(KIND_CO), 0, bytes.size());
    return FindRecords(scan, count, end);
  }

  std::string bytes;
  std::vector<std::size_t> begins;
};

TEST(FindRecords, DamagedFirstRecordLeavesNoneInFront) {
  const CompanyBytes companies(10, {0});
  for (const int count : {-1, 10}) {
    const FoundRecords found = companies.Find(count, ScanEnd::kUnknown);
    EXPECT_TRUE(found.runs.empty());
    EXPECT_EQ(found.damaged, std::vector<std::size_t>{0});
  }
}

TEST(FindRecords, DamagedLastRecordLeavesNoneBehind) {
  const CompanyBytes companies(10, {9});
  const FoundRecords found = companies.Find(10, ScanEnd::kLastRecord);
  ASSERT_EQ(found.runs.size(), 1U);
  EXPECT_EQ(found.runs[0].count, 9);
  EXPECT_EQ(found.lost, 1);
}

// Records 1 to 4 and 6 to 9 lie between damaged ones, 11 to 14 behind them.
TEST(FindRecords, NoMoreAreFoundThanTheHeadCounts) {
  const CompanyBytes companies(15, {0, 5, 10});
  EXPECT_EQ(companies.Find(15, ScanEnd::kLastRecord).runs.size(), 3U);
  EXPECT_EQ(companies.Find(9, ScanEnd::kLastRecord).runs.size(), 2U) << "the head leaves room for one of the first two";
}

TEST_F(ObjectFileSalvageTest, SeveralDamagesLeaveOnlyWhatWasWritten) {
  std::mt19937 random(3);
  for (int trial = 0; trial < 50; ++trial) {
    std::string bytes = whole;
    for (int i = 0; i < 4; ++i) bytes[random() % bytes.size()] = static_cast<char>(0xFF);
    Salvage salvage = Of(bytes);
    EXPECT_LE(CountOf(TextsOf(salvage.model)), CountOf(original)) << trial;
  }
}

TEST_F(ObjectFileSalvageTest, CutOffFileKeepsWhatIsInFrontOfItsEnd) {
  std::mt19937 random(4);
  for (int trial = 0; trial < 30; ++trial) {
    const std::size_t size = 1 + random() % (whole.size() - 1);
    Salvage salvage = Of(whole.substr(0, size));
    EXPECT_FALSE(salvage.IsSound());
    long long tables = 0;
    while (images[static_cast<std::size_t>(tables) + 1] <= size) ++tables;
    EXPECT_GE(ExpectOnlyOriginals(salvage, "cut off at " + std::to_string(size)), tables * kRecords) << size;
  }
}

TEST_F(ObjectFileSalvageTest, RecordsBehindADamagedOneAreFoundWithoutTheNumberOfSlots) {
  const std::size_t table = images[KIND_CB - 1];
  std::string bytes = whole;
  const auto slotCount = static_cast<std::size_t>(model.m_cbTable->GetSize());
  bytes.replace(table, 4, 4, '\0');
  bytes[table + 28 + 16 * slotCount] = '\x7F';  // the number of bytes of the first record's identity
  Salvage salvage = Of(bytes);
  ExpectOnlyOriginals(salvage, "no slots");
  EXPECT_EQ(salvage.Of(KIND_CB).saved, kRecords - 1);
}

// The file ends behind the free slots of the table, one of which is damaged.
TEST_F(ObjectFileSalvageTest, TableWithoutRecordsLosesNone) {
  model.m_cbTable->Clear();
  SaveModel(model, ModelName(path));
  images = ImagesIn(model);
  std::string bytes = ReadBytes(path).substr(0, images[KIND_CB]);
  ASSERT_GT(model.m_cbTable->GetSize(), 0);
  bytes[images[KIND_CB - 1] + 28] = '\x7F';
  Salvage salvage = Of(bytes);
  EXPECT_EQ(salvage.Of(KIND_CB).lost, 0);
}

TEST_F(ObjectFileSalvageTest, LosesTheMarkWithARecord) {
  (*model.m_globalTable)[0].valid = 1;
  SaveModel(model, ModelName(path));
  whole = ReadBytes(path);
  Salvage sound = Of(whole);
  EXPECT_EQ((*sound.model.m_globalTable)[0].valid, 1);
  Salvage damaged = Of(whole.substr(0, whole.size() - 1));
  EXPECT_EQ((*damaged.model.m_globalTable)[0].valid, 0);
}

TEST_F(ObjectFileSalvageTest, BytesOfNoModelAreReadToTheirEnd) {
  std::mt19937 random(5);
  for (const char filler : {'\0', '\1', '\xFF'}) {
    Salvage salvage = Of(std::string(300000, filler));
    EXPECT_FALSE(salvage.IsSound());
  }
  std::string noise(300000, '\0');
  for (char& c : noise) c = static_cast<char>(random());
  EXPECT_FALSE(Of(noise).IsSound());
}

class TextTablesSalvageTest : public SalvageTest {
 protected:
  TextTablesSalvageTest() : path(Path("m")) {
    fs::create_directory(path);
    Write("CB.csv", "id,kv,flags\r\nB1,K1,1\r\nB2,K1,2\r\nB3,K1,3\r\n");
  }
  /// Writes the sample network, whose texts are valid in their encoding.
  void WriteSample() {
    DTSDB sample = LoadModel(ModelName(dtsdb::test::SourcePath("examples/ieee14")));
    original = TextsOf(sample);
    SaveModel(sample, ModelName(path));
  }
  void Write(const char* name, const std::string& bytes) const { WriteBytes(fs::path(path) / name, bytes); }
  /// The identities of breakers that are saved.
  static std::string Breakers(Salvage& salvage) {
    std::string ids;
    for (int i = 0; i < salvage.model.m_cbTable->GetCount(); ++i) ids += IdText((*salvage.model.m_cbTable)[i].id) + ' ';
    return ids;
  }

  std::string path;
};

TEST_F(TextTablesSalvageTest, WrongRowIsLeftOutAndNamed) {
  Write("CB.csv", "id,kv,flags\r\nB1,K1,1\r\nB2,K1,x\r\nB3,K1,3\r\nB4,K1\r\nB5,K\xFF,1\r\nB1,K2,1\r\n");
  Salvage salvage = SalvageModel(ModelName(path));
  EXPECT_EQ(Breakers(salvage), "B1 B3 ");
  EXPECT_EQ(salvage.Of(KIND_CB).lost, 4);
  ASSERT_EQ(salvage.places.size(), 4U);
  EXPECT_EQ(salvage.places[0].place, "row 3");
  EXPECT_EQ(salvage.places[0].id, "B2");
  EXPECT_EQ(salvage.places[0].field, "flags");
  EXPECT_EQ(salvage.places[3].what, "'B1' stands already in row 2");
}

TEST_F(TextTablesSalvageTest, OneWrongRowIsLeftOut) {
  Write("CB.csv", "id,kv,flags\r\nB1,K1,1\r\nB2,K1,x\r\nB3,K1,3\r\n");
  Salvage salvage = SalvageModel(ModelName(path));
  EXPECT_EQ(Breakers(salvage), "B1 B3 ");
  EXPECT_EQ(salvage.Of(KIND_CB).lost, 1);
}

TEST_F(TextTablesSalvageTest, OpenQuoteCostsItsRow) {
  Write("CB.csv", "id,kv,flags\r\nB1,\"K1,1\r\nB2,K1,2\r\nB3,K1,3\r\n");
  Salvage salvage = SalvageModel(ModelName(path));
  EXPECT_EQ(Breakers(salvage), "B2 B3 ");
  EXPECT_EQ(salvage.Of(KIND_CB).lost, 1);
}

TEST_F(TextTablesSalvageTest, OpenQuotesOnEveryLineTakeTimeInProportion) {
  std::string text = "id,kv,flags\r\n";
  for (int i = 0; i < 20000; ++i) text += "B,\"K,1\r\n\"";
  Write("CB.csv", text + "\r\nB2,K1,2\r\n");
  Salvage salvage = SalvageModel(ModelName(path));
  EXPECT_FALSE(salvage.IsSound());
  EXPECT_LE(salvage.places.size(), Salvage::kMostPlaces);
}

TEST_F(TextTablesSalvageTest, RowHasAtMost64Lines) {
  for (const int lines : {64, 65}) {
    std::string text = "id,kv,flags\r\nB1,\"K";
    for (int i = 1; i < lines; ++i) text += "\nK";
    Write("CB.csv", text + "\",1\r\nB2,K1,2\r\n");
    Salvage salvage = SalvageModel(ModelName(path));
    EXPECT_EQ(Breakers(salvage), lines == 64 ? "B1 B2 " : "B2 ") << lines;
    EXPECT_EQ(salvage.IsSound(), lines == 64) << lines;
  }
}

TEST_F(TextTablesSalvageTest, HeaderHasAtMostFourTimesTheColumnsOfItsTable) {
  const std::size_t fields = Tables()[KIND_CB - 1].fields().size();
  for (const std::size_t columns : {4 * fields, 4 * fields + 1}) {
    std::string header = "id,kv,flags";
    for (std::size_t i = 3; i < columns; ++i) header += ",x" + std::to_string(i);
    Write("CB.csv", header + "\r\nB1,K1,1" + std::string(columns - 3, ',') + "\r\n");
    Salvage salvage = SalvageModel(ModelName(path));
    EXPECT_EQ(Breakers(salvage), columns == 4 * fields ? "B1 " : "") << columns;
  }
}

TEST_F(TextTablesSalvageTest, ListsAtMostTenThousandPlacesAndCountsTheRest) {
  std::string text = "id,kv,flags\r\n";
  for (int i = 0; i < 10'007; ++i) text += "B" + std::to_string(i) + ",K1,x\r\n";
  Write("CB.csv", text);
  Salvage salvage = SalvageModel(ModelName(path));
  EXPECT_EQ(salvage.places.size(), 10'000U);
  EXPECT_EQ(salvage.placeCount, 10'007U);
}

TEST_F(TextTablesSalvageTest, ColumnOfAnotherNameIsLeftOut) {
  Write("CB.csv", "id,kvv,flags\r\nB1,K1,1\r\nB2,K1,2\r\n");
  Salvage salvage = SalvageModel(ModelName(path));
  EXPECT_EQ(Breakers(salvage), "B1 B2 ");
  EXPECT_EQ(salvage.placeCount, 1U);
  EXPECT_EQ((*salvage.model.m_cbTable)[0].flags, 1U);
}

TEST_F(TextTablesSalvageTest, DamagedNameOfAFileWithAllFieldsIsKnownByItsPlace) {
  WriteSample();
  std::string bytes = ReadBytes(fs::path(path) / "CB.csv");
  bytes[0] = 'x';  // of the identity
  Write("CB.csv", bytes);
  Salvage salvage = SalvageModel(ModelName(path));
  EXPECT_EQ(salvage.placeCount, 1U);
  EXPECT_EQ(ExpectOnlyOriginals(salvage, "header"), CountOf(original));
}

TEST_F(TextTablesSalvageTest, FileOfNoTableIsNamed) {
  Write("CBX.csv", "id\r\n");
  Salvage salvage = SalvageModel(ModelName(path));
  EXPECT_EQ(Breakers(salvage), "B1 B2 B3 ");
  ASSERT_EQ(salvage.places.size(), 1U);
  EXPECT_EQ(salvage.places[0].table, "CBX.csv");
}

TEST_F(TextTablesSalvageTest, RandomDamageIsReadToTheEnd) {
  WriteSample();
  const std::string whole = ReadBytes(fs::path(path) / "LN.csv");
  std::mt19937 random(6);
  for (int trial = 0; trial < 200; ++trial) {
    std::string bytes = whole;
    for (int i = 0; i < 3; ++i) bytes[random() % bytes.size()] = static_cast<char>(random());
    Write("LN.csv", bytes);
    Salvage salvage = SalvageModel(ModelName(path));
    EXPECT_LE(salvage.Of(KIND_LN).saved, static_cast<long long>(original[KIND_LN - 1].size()) + 3) << trial;
  }
}

class StoreSalvageTest : public SalvageTest {
 protected:
  StoreSalvageTest() : name("rtdb:" + Path("s")), file(Path("s.fdb")) {
    SaveModel(model, ModelName(name));
    whole = ReadBytes(file);
    Salvage salvage = SalvageModel(ModelName(name));
    EXPECT_TRUE(salvage.IsSound());
    original = TextsOf(salvage.model);  // a store keeps no null texts apart from empty ones
  }

  std::string name;
  std::string file;
  std::string whole;
};

TEST_F(StoreSalvageTest, DamagedStructureLeavesOnlyWhatWasWritten) {
  const dtsdb::test::StorePlaces places = dtsdb::test::PlaceFinder(whole).Places();
  std::mt19937 random(8);
  long long saved = 0;
  int damaged = 0;
  for (const auto* kind : {&places.heads, &places.headers, &places.entries}) {
    for (int trial = 0; trial < 40; ++trial) {
      std::string bytes = whole;
      const std::size_t byte = (*kind)[random() % kind->size()];
      bytes[byte] = static_cast<char>(bytes[byte] ^ (1 << random() % 8));
      WriteBytes(file, bytes);
      try {
        Salvage salvage = SalvageModel(ModelName(name));
        if (salvage.IsSound()) continue;
        ++damaged;
        saved += ExpectOnlyOriginals(salvage, "byte " + std::to_string(byte));
      } catch (const Failure& failure) {
        EXPECT_EQ(failure.Code(), kExitFile);
      }
    }
  }
  ASSERT_GT(damaged, 30);
  EXPECT_GT(saved / damaged, CountOf(original) * 8 / 10);
}

// A row with a long text lies on pages of its own.
TEST_F(StoreSalvageTest, LongRowsAreSaved) {
  (*model.m_cbTable)[3].kv = QString(9000, QLatin1Char('k'));
  const QString id = (*model.m_cbTable)[3].id;
  SaveModel(model, ModelName(name));
  whole = ReadBytes(file);
  const dtsdb::test::StorePlaces places = dtsdb::test::PlaceFinder(whole).Places();
  int damaged = 0;
  int saved = 0;
  for (std::size_t place = 0; place < places.entries.size(); place += 1 + places.entries.size() / 40) {
    std::string bytes = whole;
    bytes[places.entries[place]] ^= 1;
    WriteBytes(file, bytes);
    Salvage salvage = SalvageModel(ModelName(name));
    if (salvage.IsSound()) continue;
    ++damaged;
    const int number = salvage.model.m_cbTable->Find(CB(id));
    if (number != -1 && salvage.model.m_cbTable->GetPh(number).kv.size() == 9000) ++saved;
  }
  EXPECT_GT(damaged, 10);
  EXPECT_GT(saved, damaged / 2);
}

TEST_F(StoreSalvageTest, DamagedRowIsLeftOutAndNamed) {
  const std::vector<std::size_t> data = dtsdb::test::PlaceFinder(whole).Places().data;
  const std::set<std::size_t> used(data.begin(), data.end());
  const std::string id = IdToBytes((*model.m_cbTable)[3].id).toStdString();
  int named = 0;
  for (std::size_t at = whole.find(id); at != std::string::npos; at = whole.find(id, at + 1)) {
    if (!used.contains(at)) continue;  // in a page of before
    std::string bytes = whole;
    bytes[at] = static_cast<char>(bytes[at] ^ 2);
    WriteBytes(file, bytes);
    Salvage salvage = SalvageModel(ModelName(name));
    if (salvage.IsSound()) continue;  // in the row itself, where another letter can't be found out
    ++named;
    EXPECT_EQ(ExpectOnlyOriginals(salvage, "a row"), CountOf(original) - 1);
    ASSERT_EQ(salvage.places.size(), 1U);
    EXPECT_EQ(salvage.places[0].table, "CB");
    EXPECT_EQ(salvage.places[0].what, "a row isn't the one that its key names");
    EXPECT_EQ(salvage.Of(KIND_CB).lost, 1);
  }
  EXPECT_EQ(named, 1) << "its key";
}

TEST_F(StoreSalvageTest, AnotherFileIsRefused) {
  WriteBytes(file, "no store at all");
  EXPECT_THROW(SalvageModel(ModelName(name)), Failure);
}

}  // namespace
}  // namespace dtsdb::tools
