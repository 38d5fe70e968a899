/// \file
/// Marks by which a reader of a whole model recognises which commit it sees, and whether it sees all of it.
///
/// The commits of a validation have odd numbers, those of a topology run the even ones. Each writes its number into
/// every record of the tables that it owns as a whole: a validation into both groups below, the topology into its own.
#pragma once

#include "model/dtsdb.h"

namespace dtsdb::test {

/// Breakers have no value to carry; the validation and the topology leave the upper half of their flags alone.
constexpr unsigned kBreakerMarkShift = 16;

inline float MarkOf(const CB& breaker) { return static_cast<float>(breaker.flags >> kBreakerMarkShift); }
inline void SetMark(CB& breaker, int number) {
  breaker.flags = (breaker.flags & 0xFFFFU) | (static_cast<u32>(number) << kBreakerMarkShift);
}
template <class Record>
float MarkOf(const Record& record) {
  return record.f1;
}
template <class Record>
void SetMark(Record& record, int number) {
  record.f1 = static_cast<float>(number);
}

/// Calls `visit` with each table that only a validation writes as a whole.
template <class Visit>
void ForEachTableOfValidation(DTSDB& model, Visit visit) {
  visit(*model.m_coTable);
  visit(*model.m_dvTable);
  visit(*model.m_stTable);
  visit(*model.m_busTable);
  visit(*model.m_unTable);
  visit(*model.m_ldTable);
}

/// Calls `visit` with each marked table that a topology run writes as a whole; a validation writes them, too.
template <class Visit>
void ForEachTableOfTopology(DTSDB& model, Visit visit) {
  visit(*model.m_cbTable);
  visit(*model.m_cpTable);
  visit(*model.m_globalTable);
  visit(*model.m_kvTable);
  visit(*model.m_lnTable);
  visit(*model.m_xfTable);
}

template <class T>
void MarkTable(tTable<T>& table, int number) {
  for (int i = 0; i < table.GetCount(); ++i) SetMark(table[i], number);
}

/// Marks what the topology's commit `number` is about to write.
inline void MarkForTopology(DTSDB& model, int number) {
  ForEachTableOfTopology(model, [number](auto& table) { MarkTable(table, number); });
}

/// Marks what the validation's commit `number` is about to write.
inline void MarkForValidation(DTSDB& model, int number) {
  ForEachTableOfValidation(model, [number](auto& table) { MarkTable(table, number); });
  MarkForTopology(model, number);
}

/// The one mark of all records of a table; -1 when they differ or there are none.
template <class T>
int MarkOfTable(tTable<T>& table) {
  if (table.GetCount() == 0) return -1;
  const float mark = MarkOf(table[0]);
  for (int i = 1; i < table.GetCount(); ++i) {
    if (MarkOf(table[i]) != mark) return -1;
  }
  return static_cast<int>(mark);
}

/// True when every node stands in one of the model's sections, as a topology run leaves it.
inline bool AreNodesInSections(DTSDB& model) {
  for (int i = 0; i < model.m_ndTable->GetCount(); ++i) {
    const int section = (*model.m_ndTable)[i].ibs;
    if (section < 0 || section >= model.m_bsTable->GetCount()) return false;
  }
  return model.m_ndTable->GetCount() > 0;
}

/// The number of the commit that `model` was read from; -1 when it holds parts of several.
inline int CommitOf(DTSDB& model) {
  const int last = MarkOfTable(*model.m_globalTable);
  const int lastValidation = last % 2 == 1 ? last : last - 1;
  bool whole = last > 0;
  ForEachTableOfTopology(model, [&](auto& table) { whole = whole && MarkOfTable(table) == last; });
  ForEachTableOfValidation(model, [&](auto& table) { whole = whole && MarkOfTable(table) == lastValidation; });
  if (last % 2 == 0) whole = whole && AreNodesInSections(model);
  return whole ? last : -1;
}

}  // namespace dtsdb::test
