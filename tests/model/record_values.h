/// \file
/// Records and tables with contents, for every record class alike.
#pragma once

#include <QBuffer>
#include <QByteArray>
#include <QString>
#include <type_traits>

#include "model/dtsdb.h"
#include "model/qarchive.h"
#include "model/table_image.h"
#include "tests/support/image.h"

namespace dtsdb::test {

inline QString Text(const char* text) { return QString::fromLatin1(text); }

/// Gives every field of `record` a value of its own, made from `seed`: no two fields of a record are alike.
template <class T>
void FillFields(T& record, int seed) {
  int n = seed;
  ForEachField(record, [&n]<class Value>(const FieldInfo&, Value& value) {
    ++n;
    if constexpr (std::is_same_v<Value, QString>) {
      value = QStringLiteral("t%1").arg(n);
    } else if constexpr (std::is_floating_point_v<Value>) {
      value = static_cast<Value>(n) + static_cast<Value>(0.5);
    } else {
      value = static_cast<Value>(n % 100 + 1);
    }
  });
}

/// True when all fields are equal, a null and an empty text included.
template <class T>
bool SameFields(const T& a, const T& b) {
  bool same = true;
  ForEachField(
      a, [&]<class Value>(const FieldInfo& field, const Value& value) { same = same && value == field.In<Value>(&b); });
  return same;
}

/// A record of class `T` whose key is made from `number`.
template <class T>
T Keyed(int number) {
  const QString text = QStringLiteral("k%1").arg(number, 6, 10, QLatin1Char('0'));
  if constexpr (T::kKey == RecordKey::kIdentified) {
    return T(text);
  } else if constexpr (T::kKey == RecordKey::kNumbered) {
    return T(number);
  } else {
    return T(QStringLiteral("p"), text);
  }
}

/// Fills every table with `rows` records that differ in every field.
inline void FillTables(DTSDB& database, int rows) {
  int seed = 0;
  ForEachTable(database, [&]<class T>(tTable<T>& table) {
    for (int i = 0; i < rows; ++i) {
      T record;
      FillFields(record, ++seed);
      const T key = Keyed<T>(i);
      if constexpr (T::kKey == RecordKey::kRelation) {
        record.*Relation<T>::kParentId = key.*Relation<T>::kParentId;
        record.*Relation<T>::kChildId = key.*Relation<T>::kChildId;
      } else {
        record.id = key.id;
      }
      table.Add(record);
    }
  });
}

}  // namespace dtsdb::test
