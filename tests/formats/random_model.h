/// \file
/// Models full of arbitrary values, for what must keep every record whatever it holds.
#pragma once

#include <QString>
#include <bit>
#include <cmath>
#include <iterator>
#include <random>
#include <type_traits>

#include "model/dtsdb.h"
#include "model/text.h"

namespace dtsdb::tools::test {

/// Draws field values from a seed.
class RandomValues {
 public:
  explicit RandomValues(quint64 seed) : m_engine(seed) {}

  template <class V>
  V Draw() {
    if constexpr (std::is_same_v<V, QString>) {
      return Text();
    } else if constexpr (std::is_same_v<V, f32>) {
      return std::bit_cast<f32>(static_cast<quint32>(m_engine()));
    } else if constexpr (std::is_same_v<V, f64>) {
      return std::bit_cast<f64>(m_engine());
    } else {
      return static_cast<V>(m_engine());
    }
  }

  int Below(int n) { return static_cast<int>(m_engine() % static_cast<quint64>(n)); }

 private:
  /// A text that GBK holds: null, empty or a few pieces, those included that CSV has to quote.
  QString Text() {
    static constexpr const char* kPieces[] = {"a",    "220", "甲", "母线", "遥测", ",",  "\"",  "\n",
                                              "\r\n", " ",   "　", "'",    "é",    "\t", "\x01"};
    const int length = Below(8);
    if (length == 0) return {};
    if (length == 1) return QStringLiteral("");
    QString text;
    for (int i = 1; i < length; ++i) text += IdFromLiteral(kPieces[Below(static_cast<int>(std::size(kPieces)))]);
    return text;
  }

  std::mt19937_64 m_engine;
};

/// Puts up to `most` records with arbitrary values into every table.
inline void FillWithAnything(DTSDB& database, quint64 seed, int most) {
  RandomValues values(seed);
  ForEachTable(database, [&]<class T>(tTable<T>& table) {
    const int n = values.Below(most + 1);
    for (int i = 0; i < n; ++i) {
      T record;
      ForEachField(record, [&values]<class V>(const FieldInfo&, V& value) { value = values.Draw<V>(); });
      table.Add(record);
    }
  });
}

/// True when both values are the same in every bit that a text can show: all nan count as one, null and empty
/// texts as two.
template <class V>
bool IsSameValue(const V& a, const V& b) {
  if constexpr (std::is_same_v<V, QString>) {
    return a == b && a.isNull() == b.isNull();
  } else if constexpr (std::is_floating_point_v<V>) {
    return std::isnan(a) ? std::isnan(b) : a == b && std::signbit(a) == std::signbit(b);
  } else {
    return a == b;
  }
}

/// The first difference between two models' records, as "TABLE row FIELD"; empty when there is none.
inline std::string FirstDifference(DTSDB& a, DTSDB& b) {
  std::string difference;
  const auto compare = [&difference]<class T>(tTable<T>& tableA, tTable<T>& tableB) {
    if (!difference.empty()) return;
    if (tableA.GetCount() != tableB.GetCount()) difference = std::string(T::kTableName) + " count";
    for (int i = 0; i < tableA.GetCount() && difference.empty(); ++i) {
      ForEachField(tableA[i], [&]<class V>(const FieldInfo& field, const V& value) {
        if (IsSameValue(value, field.In<V>(&tableB[i]))) return;
        difference = std::string(T::kTableName) + " " + std::to_string(i) + " " + field.name;
      });
    }
  };
  ForEachRecordClass([&]<class T> { compare(TableOf<T>(a), TableOf<T>(b)); });
  return difference;
}

}  // namespace dtsdb::tools::test
