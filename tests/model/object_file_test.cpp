// The bytes of the object file, and that a model comes back as it was stored.
#include <gtest/gtest.h>
#include <rapidcheck.h>
#include <rapidcheck/gtest.h>

#include <cstring>
#include <vector>

#include "model/text.h"
#include "tests/model/record_values.h"

namespace dtsdb::test {
namespace {

QByteArray Hex(const char* digits) { return QByteArray::fromHex(digits); }

/// The image of `database` without the images of the empty tables before and behind that of `T`.
template <class T>
QByteArray ImageOfOnly(DTSDB& database) {
  constexpr int kEmpty = 28;
  const QByteArray whole = ImageOf(database);
  const int before = (kKindOf<T> - 1) * kEmpty;
  return whole.mid(before, whole.size() - before - (kTableCount - kKindOf<T>)*kEmpty);
}

TEST(ObjectFile, AnEmptyModelHas1288Bytes) {
  DTSDB database;
  const QByteArray image = ImageOf(database);
  ASSERT_EQ(image.size(), 1288);
  const QByteArray table = Hex("00000000 ffffffff ffffffff ffffffff ffffffff 00000000 00000001");
  for (int i = 0; i < kTableCount; ++i) EXPECT_EQ(image.mid(i * 28, 28), table) << "table " << i;
}

TEST(ObjectFile, ASmallTableByteForByte) {
  DTSDB database;
  database.m_cb2Table->SetSize(3);
  CB2 later(IdFromBytes("\xB1\xB1"));
  later.icb = 258;
  later.r_nd_cb2 = -1;
  CB2 earlier(Text("a"));
  earlier.icb = 5;
  database.m_cb2Table->Add(later);
  database.m_cb2Table->Add(earlier);
  EXPECT_EQ(ImageOfOnly<CB2>(database).toHex(' '), Hex("00000003"           // slots
                                                       "00000001 00000000"  // head, tail
                                                       "00000002 00000002"  // first and last free slot
                                                       "00000002 00000000"  // records, not ordered
                                                       "00000001 00000001 ffffffff 00000001"
                                                       "00000000 00000000 00000000 ffffffff"
                                                       "ffffffff ffffffff ffffffff ffffffff"
                                                       "00000002 0061 00000005 00000000"
                                                       "00000004 00b100b1 00000102 ffffffff")
                                                       .toHex(' '));
}

TEST(ObjectFile, EveryTypeOfFieldByteForByte) {
  const auto stored = [](auto record) { return ImageOf(record).toHex(); };
  STATUS status(Text("s"));
  status.value = -2;
  status.quality = 200;
  EXPECT_EQ(stored(status),
            "000000020073"
            "ffffffff"
            "fe"
            "c8");
  BSL entry(1);
  entry.next = -1;
  entry.kind = 46;
  entry.ref = 0x01020304;
  EXPECT_EQ(stored(entry),
            "00000001"
            "ffffffff"
            "00000000"
            "2e"
            "01020304");
  BUS bus;
  bus.v = -2.0;
  bus.f1 = 1.5F;
  bus.tp_status = 0x80000001;
  const QByteArray image = ImageOf(bus);
  ASSERT_EQ(image.size(), 3 * 4 + 2 * 4 + 2 * 4 + 2 * 4 + 2 * 8 + 3 * 4 + 2 * 4);
  EXPECT_EQ(image.mid(36).toHex(),
            "c000000000000000"
            "0000000000000000"
            "3fc00000"
            "00000000"
            "00000000"
            "80000001"
            "00000000");
}

TEST(ObjectFile, NullAndEmptyTextsStayApart) {
  KV level;
  level.name = Text("");
  const QByteArray image = ImageOf(level);
  EXPECT_EQ(image.left(12).toHex(), "ffffffff00000000ffffffff");
  KV loaded(Text("x"));
  ASSERT_EQ(LoadImage(loaded, image), QString());
  EXPECT_TRUE(loaded.id.isNull());
  EXPECT_FALSE(loaded.name.isNull());
  EXPECT_TRUE(loaded.name.isEmpty());
}

TEST(ObjectFile, NaNsAndInfinitiesGoThroughUnchanged) {
  for (const u32 bits : {0x7F800000U, 0xFF800000U, 0x7FC00000U, 0x7FA00001U, 0xFFFFFFFFU, 0x80000000U, 0x00000001U}) {
    CO company(Text("c"));
    std::memcpy(&company.f3, &bits, sizeof(bits));
    CO loaded;
    ASSERT_EQ(LoadImage(loaded, ImageOf(company)), QString());
    u32 back = 0;
    std::memcpy(&back, &loaded.f3, sizeof(back));
    EXPECT_EQ(back, bits);
  }
}

TEST(ObjectFile, AddedInDisorderRecordsKeepTheirNumbers) {
  DTSDB database;
  for (const char* id : {"3", "1", "2"}) database.m_ndTable->Add(ND(Text(id)));
  DTSDB loaded;
  ASSERT_EQ(LoadImage(loaded, ImageOf(database)), QString());
  for (int i = 0; i < 3; ++i) {
    EXPECT_EQ((*loaded.m_ndTable)[i].id, (*database.m_ndTable)[i].id);
    EXPECT_EQ(loaded.m_ndTable->LgToPh(i), database.m_ndTable->LgToPh(i));
    EXPECT_EQ(loaded.m_ndTable->GetPh(i).id, database.m_ndTable->GetPh(i).id);
  }
  EXPECT_EQ(loaded.m_ndTable->Add(ND(Text("4"))), 3) << "the free chain returns as well";
}

TEST(ObjectFile, FreeSlotsComeBackWithDefaults) {
  DTSDB database;
  UN unit(Text("u"));
  unit.ref = 7;
  database.m_unTable->Add(unit);
  database.m_unTable->Remove(0);
  ASSERT_EQ(database.m_unTable->GetPh(0).ref, 7);
  DTSDB loaded;
  ASSERT_EQ(LoadImage(loaded, ImageOf(database)), QString());
  EXPECT_EQ(loaded.m_unTable->GetPh(0).ref, -1);
  EXPECT_TRUE(loaded.m_unTable->GetPh(0).id.isNull());
}

TEST(ObjectFile, ATableOfSizeZeroComesBackWithoutSlots) {
  DTSDB database;
  DTSDB loaded;
  FillTables(loaded, 1);
  ASSERT_EQ(LoadImage(loaded, ImageOf(database)), QString());
  ForEachTable(loaded, []<class T>(tTable<T>& table) { EXPECT_EQ(table.GetSize(), 0) << T::kTableName; });
}

TEST(ObjectFile, TheGrowthStepOfATableIsItsOwn) {
  DTSDB database;
  database.m_stTable->SetGrowBy(77);
  database.m_stTable->Add(ST(Text("s")));
  DTSDB loaded;
  loaded.m_stTable->SetGrowBy(3);
  ASSERT_EQ(LoadImage(loaded, ImageOf(database)), QString());
  ASSERT_EQ(loaded.m_stTable->GetSize(), 77);
  for (int i = 0; i < 77; ++i) loaded.m_stTable->Add(ST(QString::number(i)));
  EXPECT_EQ(loaded.m_stTable->GetSize(), 80);
}

/// Brings a table into a state that `program` makes up: edited, shrunk, emptied, with equal records, compacted.
template <class T>
void Disturb(tTable<T>& table, const std::vector<int>& program) {
  int tag = 0;
  for (const int step : program) {
    const int n = step / 16;
    T record = Keyed<T>(n % 12);
    switch (step % 16) {
      case 0:
        table.SetSize(n % 9);
        break;
      case 1:
        table.Compact();
        break;
      case 2:
        table.Clear();
        break;
      case 3: {
        T rows[] = {Keyed<T>(n % 5), Keyed<T>(3), Keyed<T>(n % 3)};
        table.SetData(rows, 3, false);
        break;
      }
      case 4:
      case 5:
      case 6:
      case 7:
        if (table.GetSize() > 0) table.Remove(n % table.GetSize());
        break;
      default:
        if constexpr (T::kKey != RecordKey::kRelation) {
          const T key = record;
          FillFields(record, ++tag);
          record.id = key.id;
        }
        table.Add(record);
    }
  }
}

RC_GTEST_PROP(ObjectFileProperty, WriteReadWriteGivesTheSameBytes, ()) {
  const auto program =
      *rc::gen::container<std::vector<int>>(*rc::gen::inRange<std::size_t>(0, 40), rc::gen::inRange(0, 16 * 1000));
  DTSDB database;
  std::size_t from = 0;
  ForEachTable(database, [&](auto& table) {
    // Each table starts at another place of the program.
    std::vector<int> own(program.begin() + static_cast<std::ptrdiff_t>(from % (program.size() + 1)), program.end());
    Disturb(table, own);
    ++from;
  });
  const QByteArray image = ImageOf(database);
  DTSDB loaded;
  RC_ASSERT(LoadImage(loaded, image).toStdString() == std::string());
  RC_ASSERT(ImageOf(loaded) == image);

  // What was loaded goes on like what was stored.
  const std::vector<int> more = {8, 9 + 16 * 7, 4 + 16 * 2, 10 + 16 * 3, 5, 11 + 16 * 11};
  ForEachTable(database, [&](auto& table) { Disturb(table, more); });
  ForEachTable(loaded, [&](auto& table) { Disturb(table, more); });
  RC_ASSERT(ImageOf(loaded) == ImageOf(database));
}

}  // namespace
}  // namespace dtsdb::test
