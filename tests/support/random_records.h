/// \file
/// Records with random contents, and the comparison of whole models.
#pragma once

#include <gtest/gtest.h>

#include <QString>
#include <QStringList>
#include <random>

#include "model/dtsdb.h"

namespace dtsdb::test {

/// Fills records field by field. The same seed gives the same records.
class RandomRecords {
 public:
  explicit RandomRecords(unsigned seed) : m_random(seed) {}

  /// A text of up to `longest` bytes, any but zero; sometimes empty, sometimes null.
  QString Text(int longest = 12) {
    const int length = Number(-1, longest);
    if (length < 0) return QString();
    QString text(length, QChar(u'\0'));
    for (QChar& c : text) c = QChar(static_cast<char16_t>(Number(1, 255)));
    return text;
  }

  int Number(int from, int to) { return std::uniform_int_distribution<int>(from, to)(m_random); }

  void Fill(QString& field) { field = Text(); }
  void Fill(f32& field) { field = static_cast<f32>(Number(-1000000, 1000000)) / 7; }
  void Fill(f64& field) { field = Number(-1000000, 1000000) / 7.0; }
  template <class Integer>
  void Fill(Integer& field) {
    field = static_cast<Integer>(m_random());
  }

  /// A record whose key has the number `n` in it, and so is one of its kind.
  template <class T>
  T Record(int n) {
    T record;
    ForEachField(record, [this](const FieldInfo&, auto& value) { this->Fill(value); });
    if constexpr (T::kKey == RecordKey::kRelation) {
      record.*Relation<T>::kChildId = QString::number(n) + record.*Relation<T>::kChildId;
    } else if constexpr (T::kKey == RecordKey::kIdentified) {
      record.id = QString::number(n) + QLatin1Char('/') + record.id;
    } else {
      record.id = n;
    }
    return record;
  }

  /// Adds `n` records to every table.
  void FillModel(DTSDB& model, int n) {
    ForEachTable(model, [&](auto& table) { FillTable(table, n); });
  }

 private:
  template <class T>
  void FillTable(tTable<T>& table, int n) {
    for (int i = 0; i < n; ++i) EXPECT_NE(table.Add(Record<T>(i)), -1) << T::kTableName;
  }

  std::mt19937 m_random;
};

/// The names of the tables of `model` that have records, in order.
inline QStringList FilledTables(DTSDB& model) {
  QStringList names;
  ForEachTable(model, [&names]<class T>(tTable<T>& table) {
    if (table.GetCount() > 0) names += QString::fromLatin1(T::kTableName);
  });
  return names;
}

/// Checks that two tables hold the same records in the same order, field by field; null and empty texts are equal.
template <class T>
void ExpectEqualTables(tTable<T>& expected, tTable<T>& actual) {
  ASSERT_EQ(expected.GetCount(), actual.GetCount()) << T::kTableName;
  for (int i = 0; i < expected.GetCount(); ++i) {
    ForEachField(expected[i], [&]<class Value>(const FieldInfo& field, const Value& value) {
      EXPECT_EQ(value, field.In<Value>(&actual[i])) << T::kTableName << " " << i << " " << field.name;
    });
  }
}

/// The same for all tables of two models.
inline void ExpectEqualModels(DTSDB& expected, DTSDB& actual) {
  ForEachRecordClass([&]<class T> { ExpectEqualTables(TableOf<T>(expected), TableOf<T>(actual)); });
}

}  // namespace dtsdb::test
