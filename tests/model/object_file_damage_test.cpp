// Damaged object files: always refused, naming the place, or read into sound tables. Run under the sanitizers.
#include <gtest/gtest.h>
#include <rapidcheck.h>
#include <rapidcheck/gtest.h>

#include <sys/resource.h>

#include <QDataStream>
#include <QRegularExpression>
#include <QtEndian>
#include <vector>

#include "tests/model/record_values.h"
#include "tests/support/every_place.h"

namespace dtsdb::test {
namespace {

/// A model of few bytes: one table of each kind of key, with free slots, the others empty.
QByteArray SmallImage() {
  DTSDB database;
  for (int i = 3; i > 0; --i) {
    CB2 end = Keyed<CB2>(i);
    FillFields(end, i);
    database.m_cb2Table->Add(end);
    database.m_rStKvTable->Add(Keyed<R_ST_KV>(i));
    database.m_bslTable->Add(Keyed<BSL>(i));
  }
  database.m_cb2Table->Remove(1);
  database.m_bslTable->SetSize(2);
  database.m_bslTable->Add(BSL(4));
  return ImageOf(database);
}

/// Uses every table in every way: nothing that was taken may lead astray.
void Use(DTSDB& database) {
  ForEachTable(database, []<class T>(tTable<T>& table) {
    for (int i = 0; i < table.GetCount(); ++i) {
      ASSERT_EQ(table.PhToLg(table.LgToPh(i)), i);
      table.Find(table[i]);
    }
    table.Add(Keyed<T>(2));
    table.Add(Keyed<T>(0));
    const int size = table.GetSize();
    for (int i = 0; i < size; i += 2) table.Remove(i);
    table.SetSize(size + 3);
    table.Compact();
    for (int i = 0; i < size; ++i) table.Remove(i);
    ASSERT_EQ(table.GetCount(), 0);
  });
}

/// Loads damaged bytes into a filled container: refused with a place and nothing changed, or taken and sound.
void CheckDamaged(const QByteArray& bytes) {
  static const QRegularExpression place(Text("^table [A-Z0-9_]+(, row \\d+)?, byte \\d+: .+$"));
  DTSDB database;
  database.m_stTable->Add(Keyed<ST>(1));
  const QByteArray before = ImageOf(database);
  const QString refusal = LoadImage(database, bytes);
  if (!refusal.isNull()) {
    ASSERT_TRUE(place.match(refusal).hasMatch()) << refusal.toStdString();
    ASSERT_EQ(ImageOf(database), before);
    return;
  }
  DTSDB again;
  ASSERT_EQ(LoadImage(again, ImageOf(database)), QString());
  Use(database);
}

TEST(DamagedObjectFile, CutOffAnywhereItIsRefused) {
  const QByteArray image = SmallImage();
  DTSDB database;
  ASSERT_EQ(LoadImage(database, image), QString());
  for (int n = 0; n < image.size(); ++n) {
    DTSDB loaded;
    ASSERT_NE(LoadImage(loaded, image.left(n)), QString()) << n << " bytes";
  }
}

TEST(DamagedObjectFile, AnyByteChangedItIsRefusedOrRead) {
  const QByteArray image = SmallImage();
  constexpr int kMasks[] = {0x01, 0xFF};
  for (qsizetype place = 0; place < 2 * image.size(); place += kPlaceStep) {
    const qsizetype byte = place / 2;
    const int mask = kMasks[place % 2];
    QByteArray damaged = image;
    damaged[byte] = static_cast<char>(damaged[byte] ^ mask);
    ASSERT_NO_FATAL_FAILURE(CheckDamaged(damaged)) << "byte " << byte << " mask " << mask;
  }
}

RC_GTEST_PROP(DamagedObjectFileProperty, AnyDamageIsRefusedOrRead, ()) {
  static const QByteArray image = [] {
    DTSDB database;
    FillTables(database, 2);
    return ImageOf(database);
  }();
  QByteArray damaged = image;
  const int times = *rc::gen::inRange(1, 6);
  for (int i = 0; i < times; ++i) {
    const int at = *rc::gen::inRange(0, static_cast<int>(damaged.size()));
    const QByteArray bytes(*rc::gen::inRange(1, 9), *rc::gen::element('\0', '\1', '\2', '\x7F', '\xFF', 'a'));
    switch (*rc::gen::inRange(0, 5)) {
      case 0:
        damaged.truncate(std::max(1, at));
        break;
      case 1:
        damaged.insert(at, bytes);
        break;
      case 2:
        damaged.remove(at, bytes.size());
        break;
      case 3:
        damaged.append(bytes);
        break;
      default:
        damaged.replace(at, bytes.size(), bytes);
    }
    if (damaged.isEmpty()) damaged = "x";
  }
  CheckDamaged(damaged);
  RC_ASSERT(!testing::Test::HasFatalFailure());
}

/// The image of a model that has only this table of two breaker ends, in four slots:
/// head at 140, numbers at 168, records at 232 (12 bytes for "b1" and its length, then two numbers) and 248.
QByteArray TwoEnds() {
  DTSDB database;
  database.m_cb2Table->SetSize(4);
  database.m_cb2Table->Add(CB2(Text("b1")));
  database.m_cb2Table->Add(CB2(Text("b2")));
  return ImageOf(database);
}

constexpr int kHead = 5 * 28;
constexpr int kNumbers = kHead + 28;
constexpr int kRecords = kNumbers + 4 * 16;
constexpr int kSecondRecord = kRecords + 16;

/// Returns why the image is refused once the number at `byte` is `value`.
QString RefusalWith(int byte, i32 value) {
  QByteArray image = TwoEnds();
  qToBigEndian<i32>(value, image.data() + byte);
  DTSDB database;
  return LoadImage(database, image);
}

TEST(DamagedObjectFile, TheNumberOfSlotsMustFitTheFile) {
  const QString expected = Text("table CB2, byte 144: the number of slots doesn't fit the file");
  for (const i32 size : {-1, 1000, 0x7FFFFFFF}) EXPECT_EQ(RefusalWith(kHead, size), expected) << size;
}

TEST(DamagedObjectFile, TheNumberOfRecordsMustFitTheSlots) {
  const QString expected = Text("table CB2, byte 232: the head of the table is damaged");
  for (const i32 count : {-1, 5, 0x7FFFFFFF}) EXPECT_EQ(RefusalWith(kHead + 20, count), expected) << count;
  EXPECT_EQ(RefusalWith(kHead + 24, 2), expected) << "ordered is 0 or 1";
}

TEST(DamagedObjectFile, NumbersMustStayInTheTable) {
  const QString expected = Text("table CB2, byte 232: a number leads out of the table");
  for (int i = 0; i < 16; ++i) {
    EXPECT_EQ(RefusalWith(kNumbers + 4 * i, 4), expected) << i;
    EXPECT_EQ(RefusalWith(kNumbers + 4 * i, -2), expected) << i;
  }
}

TEST(DamagedObjectFile, TheChainOfRecordsMustBeWhole) {
  const QString expected = Text("table CB2, byte 232: the chain of records is damaged");
  EXPECT_EQ(RefusalWith(kHead + 4, 4), expected) << "head outside";
  EXPECT_EQ(RefusalWith(kHead + 4, -2), expected) << "head outside";
  EXPECT_EQ(RefusalWith(kHead + 4, 1), expected) << "head in the middle";
  EXPECT_EQ(RefusalWith(kHead + 8, 0), expected) << "tail in the middle";
  EXPECT_EQ(RefusalWith(kHead + 20, 1), expected) << "one record too many in the chain";
  EXPECT_EQ(RefusalWith(kHead + 20, 3), expected) << "one record too few in the chain";
  EXPECT_EQ(RefusalWith(kNumbers, 1), expected) << "record 0 numbered 1";
  EXPECT_EQ(RefusalWith(kNumbers + 4, 1), expected) << "number 0 in slot 1";
  EXPECT_EQ(RefusalWith(kNumbers + 16 + 8, 0), expected) << "a circle";
  EXPECT_EQ(RefusalWith(kNumbers + 16 + 12, -1), expected) << "no way back";
}

TEST(DamagedObjectFile, TheChainOfFreeSlotsMustBeWhole) {
  const QString expected = Text("table CB2, byte 232: the chain of free slots is damaged");
  EXPECT_EQ(RefusalWith(kHead + 12, 0), expected) << "a used slot";
  EXPECT_EQ(RefusalWith(kHead + 12, 4), expected) << "outside";
  EXPECT_EQ(RefusalWith(kHead + 12, 3), expected) << "one left out";
  EXPECT_EQ(RefusalWith(kHead + 16, 2), expected) << "last is not the last";
  EXPECT_EQ(RefusalWith(kNumbers + 3 * 16 + 8, 2), expected) << "a circle";
  EXPECT_EQ(RefusalWith(kNumbers + 2 * 16, 3), expected) << "a free slot with another slot's number";
  EXPECT_EQ(RefusalWith(kNumbers + 2 * 16 + 4, 0), expected) << "a used slot behind the count";
}

/// The image of a model whose table of windings has `size` free slots and nothing else; the last slot's next is `end`.
QByteArray FreeWindings(int size, i32 end) {
  DTSDB empty;
  const QByteArray around = ImageOf(empty);
  constexpr int place = (KIND_XF - 1) * 28;
  QByteArray image = around.left(place);
  QDataStream out(&image, QIODevice::WriteOnly | QIODevice::Append);
  out << i32{size} << i32{-1} << i32{-1} << i32{0} << i32{size - 1} << i32{0} << i32{1};
  for (int i = 0; i < size; ++i) out << i32{-1} << i32{-1} << (i + 1 < size ? i32{i + 1} : end) << i32{i - 1};
  return image + around.mid(place + 28);
}

long PeakMemoryInKilobytes() {
  rusage usage{};
  ::getrusage(RUSAGE_SELF, &usage);
  return usage.ru_maxrss;
}

TEST(DamagedObjectFile, SlotsAreMadeOnlyOnceTheirNumbersAreChecked) {
  constexpr int size = 1 << 20;
  const QByteArray image = FreeWindings(size, 0);
  DTSDB database;
  const long before = PeakMemoryInKilobytes();
  EXPECT_TRUE(LoadImage(database, image).endsWith(Text(": the chain of free slots is damaged")));
  const long slotMemory = size / 1024 * static_cast<long>(sizeof(XF));
  EXPECT_LT(PeakMemoryInKilobytes() - before, slotMemory / 4);
}

TEST(ObjectFile, FreeSlotsAloneAreReadHoweverMany) {
  DTSDB database;
  EXPECT_EQ(LoadImage(database, FreeWindings(5000, -1)), QString());
  EXPECT_EQ(database.m_xfTable->GetSize(), 5000);
  EXPECT_EQ(database.m_xfTable->GetCount(), 0);
  EXPECT_EQ(database.m_xfTable->Add(Keyed<XF>(1)), 0);
}

TEST(DamagedObjectFile, TextsMustFitTheFileAndTheirUnits) {
  EXPECT_EQ(RefusalWith(kRecords, 3), Text("table CB2, row 0, byte 236: field id can't be read"));
  const QString tooLong = RefusalWith(kSecondRecord, 0x7FFFFFFE);
  EXPECT_TRUE(tooLong.startsWith(Text("table CB2, row 1, byte "))) << tooLong.toStdString();
  EXPECT_TRUE(tooLong.endsWith(Text(": field id can't be read"))) << tooLong.toStdString();
}

TEST(DamagedObjectFile, ARefusalNamesTableRowFieldAndByte) {
  DTSDB database;
  const QByteArray image = TwoEnds();
  EXPECT_EQ(LoadImage(database, image.left(kSecondRecord + 9)),
            Text("table CB2, row 1, byte 257: field icb can't be read"));
  EXPECT_EQ(LoadImage(database, image.left(kNumbers + 3)),
            Text("table CB2, byte 144: the number of slots doesn't fit the file"));
  EXPECT_EQ(LoadImage(database, image.left(kHead + 2)), Text("table CB2, byte 142: the table is missing"));
}

// Fewer bytes than slots at the time of the check, but the file ends among the numbers of the head.
TEST(DamagedObjectFile, AFileThatEndsInTheHeadIsRefused) {
  DTSDB database;
  DTSDB empty;
  EXPECT_EQ(LoadImage(database, ImageOf(empty).left(10)),
            Text("table ANALOG, byte 10: the file ends among the numbers"));
}

TEST(DamagedObjectFile, AnArchiveWithoutADeviceIsRefused) {
  DTSDB database;
  QArchive ar(nullptr, true);
  database.Serialize(ar);
  EXPECT_TRUE(ar.IsRefused());
}

TEST(DamagedObjectFile, TheFirstRefusalIsKept) {
  QByteArray none;
  QBuffer buffer(&none);
  buffer.open(QIODevice::ReadOnly);
  QArchive ar(&buffer, true);
  EXPECT_FALSE(ar.IsRefused());
  ar.SetPlace("ST", 4);
  ar.Refuse(Text("one"));
  ar.Refuse(Text("two"));
  EXPECT_EQ(ar.Refusal(), Text("table ST, row 4, byte 0: one"));
}

// Equal or unsorted records are no damage: a bulk load makes them. The table then goes by its numbers alone.
TEST(DamagedObjectFile, RecordsInDisorderAreReadAndEdited) {
  DTSDB database;
  std::vector<ND> rows;
  for (int i = 0; i < 2500; ++i) rows.push_back(Keyed<ND>((i * 7) % 1000));
  database.m_ndTable->SetData(rows.data(), 2500, true);
  DTSDB loaded;
  ASSERT_EQ(LoadImage(loaded, ImageOf(database)), QString());
  for (const int slot : {3, 2000, 1}) EXPECT_EQ(loaded.m_ndTable->Remove(slot), database.m_ndTable->Remove(slot));
  EXPECT_EQ(loaded.m_ndTable->Add(Keyed<ND>(5000)), database.m_ndTable->Add(Keyed<ND>(5000)));
  EXPECT_EQ(ImageOf(loaded), ImageOf(database));
}

}  // namespace
}  // namespace dtsdb::test
