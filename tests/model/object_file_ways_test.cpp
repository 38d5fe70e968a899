// Object files that are moved in larger pieces, beside the same field by field.
#include <gtest/gtest.h>

#include <QBuffer>

#include "model/qarchive.h"
#include "tests/support/random_records.h"

namespace dtsdb::test {
namespace {

/// A device that can't be read ahead: it claims to have no positions, yet counts them.
class Stream : public QBuffer {
 public:
  explicit Stream(QByteArray* bytes) : QBuffer(bytes) { open(QIODevice::ReadOnly | QIODevice::Unbuffered); }
  bool isSequential() const override { return true; }
  qint64 pos() const override { return m_read; }

 protected:
  qint64 readData(char* data, qint64 most) override {
    const qint64 n = std::min<qint64>(most, buffer().size() - m_read);
    std::copy_n(buffer().constData() + m_read, n, data);
    m_read += n;
    return n;
  }

 private:
  qint64 m_read = 0;
};

/// The image of a model whose tables have no free slots and were filled in order, number by number and field by field.
QByteArray PlainImageOf(DTSDB& model) {
  QBuffer buffer;
  buffer.open(QIODevice::WriteOnly);
  QArchive ar(&buffer, false);
  ForEachTable(model, [&ar](auto& table) {
    const int n = table.GetCount();
    for (const i32 number : {n, n > 0 ? 0 : -1, n - 1, -1, -1, n, 1}) ar << number;
    for (int i = 0; i < n; ++i) ar << i32{i} << i32{i} << i32{i + 1 < n ? i + 1 : -1} << i32{i - 1};
    for (int i = 0; i < n; ++i) table[i].Serialize(ar);
  });
  return buffer.data();
}

/// A model with `n` records in each table, without free slots.
void FillCompact(DTSDB& model, unsigned seed, int n) {
  RandomRecords random(seed);
  ForEachTable(model, [&]<class T>(tTable<T>& table) {
    std::vector<T> records;
    for (int i = 0; i < n; ++i) records.push_back(random.Record<T>(i));
    if (n > 0) table.SetData(records.data(), n, false);
  });
}

/// What loading from `device` leads to: the refusal, or the model that was loaded.
struct Loaded {
  explicit Loaded(QIODevice& device) {
    QArchive ar(&device, true);
    DTSDB model;
    model.Serialize(ar);
    refusal = ar.Refusal();
    end = device.pos();
    image = ImageOf(model);
  }
  bool operator==(const Loaded&) const = default;

  QString refusal;
  qint64 end = 0;
  QByteArray image;
};

void ExpectSameFromBoth(QByteArray bytes) {
  QBuffer buffer(&bytes);
  buffer.open(QIODevice::ReadOnly);
  const Loaded ahead(buffer);
  Stream stream(&bytes);
  const Loaded plain(stream);
  EXPECT_EQ(ahead.refusal, plain.refusal);
  EXPECT_EQ(ahead.end, plain.end);
  EXPECT_EQ(ahead.image, plain.image);
}

TEST(ObjectFileWays, WritingInPiecesEqualsFieldByField) {
  for (const int n : {0, 1, 7, 3000}) {
    DTSDB model;
    FillCompact(model, static_cast<unsigned>(n), n);
    EXPECT_EQ(ImageOf(model), PlainImageOf(model)) << n;
  }
}

TEST(ObjectFileWays, ReadingAheadEqualsFieldByField) {
  for (const int n : {0, 1, 7, 3000}) {
    DTSDB model;
    FillCompact(model, static_cast<unsigned>(n), n);
    ExpectSameFromBoth(ImageOf(model));
  }
}

TEST(ObjectFileWays, LongTextsAreReadAhead) {
  DTSDB model;
  for (const int length : {1, 30000, 40000, 200000}) {
    KV kv(QString(length, QLatin1Char('c')));
    kv.name = QString(length, QLatin1Char('n'));
    model.m_kvTable->Add(kv);
  }
  ExpectSameFromBoth(ImageOf(model));
}

TEST(ObjectFileWays, DamagedFilesAreRefusedAlikeAtTheSamePlace) {
  DTSDB model;
  FillCompact(model, 5, 3);
  const QByteArray image = ImageOf(model);
  RandomRecords random(17);
  for (int i = 0; i < 600; ++i) {
    QByteArray bytes = image;
    const int at = random.Number(0, static_cast<int>(bytes.size()) - 1);
    if (i % 2 == 0) {
      bytes.truncate(at);
    } else {
      bytes[at] = static_cast<char>(random.Number(0, 255));
    }
    ExpectSameFromBoth(bytes);
  }
}

}  // namespace
}  // namespace dtsdb::test
