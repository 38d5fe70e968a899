/// \file
/// Whether two models have the same tables after runs of the topology, free slots and bytes included.
#pragma once

#include <QString>
#include <cstring>
#include <string>
#include <string_view>

#include "model/dtsdb.h"

namespace dtsdb::test {

/// Whether two values are equal byte for byte, as the object file would have them.
inline bool IsSame(const QString& a, const QString& b) { return a == b && a.isNull() == b.isNull(); }
template <class Number>
bool IsSame(Number a, Number b) {
  return std::memcmp(&a, &b, sizeof a) == 0;
}

/// The first field in which two records differ, null for none. Times aside: the two runs are a moment apart.
template <class T>
const char* Difference(const T& a, const T& b) {
  for (const FieldInfo& field : T::Fields()) {
    const std::string_view name = field.name;
    if (name == "time" || (kKindOf<T> == KIND_GLOBAL && (name == "u1" || name == "check_time"))) continue;
    const bool same = VisitValue(field, &a, [&](const auto& value) {
      return IsSame(value, field.In<std::remove_cvref_t<decltype(value)>>(&b));
    });
    if (!same) return field.name;
  }
  return nullptr;
}

/// Where two tables first differ, free slots included; empty when they don't.
template <class T>
std::string Difference(const tTable<T>& a, const tTable<T>& b) {
  if (a.GetCount() != b.GetCount() || a.GetSize() != b.GetSize()) return "count or size";
  for (int i = 0; i < a.GetSize(); ++i) {
    if (a.PhToLg(i) != b.PhToLg(i)) return "number of slot " + std::to_string(i);
    const char* const field = Difference(a.GetPh(i), b.GetPh(i));
    if (field != nullptr) return std::string(field) + " in slot " + std::to_string(i);
  }
  return "";
}

/// Where the tables of two models differ; empty when they don't.
inline std::string DifferentTables(DTSDB& a, DTSDB& b) {
  std::string differences;
  ForEachRecordClass([&]<class T> {
    TableOf<T>(a).Settle();
    TableOf<T>(b).Settle();
    const std::string difference = Difference<T>(TableOf<T>(a), TableOf<T>(b));
    if (!difference.empty()) differences += std::string(T::kTableName) + ": " + difference + "; ";
  });
  return differences;
}

}  // namespace dtsdb::test
