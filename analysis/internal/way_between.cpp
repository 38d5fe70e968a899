#include "analysis/internal/way_between.h"

#include <algorithm>
#include <tuple>

#include "analysis/internal/way_back.h"
#include "formats/field_text.h"
#include "include/type_list.h"
#include "topology/component_types.h"

namespace dtsdb::analysis::internal {
namespace {

/// The classes of components that can be switched.
using Components = TypeList<CB, UN, LD, CP, LN, XF, DLN, ZBR>;

/// The record of `table` with the identity of `record`, null for none.
template <class T>
T* Find(tTable<T>& table, const T& record) {
  const int number = table.Find(T(record.id));
  return number == -1 ? nullptr : &table.GetPh(number);
}

template <class T>
bool StandsAlike(const T& a, const T& b) {
  if constexpr (std::is_same_v<T, ZBR>) {
    return a.cb == b.cb;
  } else if constexpr (requires { a.znd; }) {
    return a.nd == b.nd && a.znd == b.znd;
  } else {
    return a.nd == b.nd;
  }
}

/// Puts the states of one model into a copy of another, and collects what has no place there.
class StateCopier {
 public:
  StateCopier(DTSDB& copy, DTSDB& to) : m_copy(copy), m_to(to) {}

  void Put() {
    std::apply([this](const auto&... types) { (PutState(types), ...); }, kComponentTypes);
    PutMarks();
    ForEachType(Components(), [this]<class T> { Compare<T>(); });
  }

  std::vector<Unreachable> TakeUnreachable() { return std::move(m_unreachable); }

 private:
  template <class Type>
  void PutState(const Type& type) {
    using Record = typename Type::Record;
    tTable<Record>& table = TableOf<Record>(m_copy);
    for (int i = 0; i < table.GetCount(); ++i) {
      Record& record = table[i];
      const Record* const other = Find(TableOf<Record>(m_to), record);
      if (other != nullptr) record.*type.word = (record.*type.word & ~type.bit) | (other->*type.word & type.bit);
    }
  }

  /// Which zero-impedance branches are out with their breaker. One that only the copy has goes out with its breaker
  /// where this is open.
  void PutMarks() {
    for (int i = 0; i < m_copy.m_zbrTable->GetCount(); ++i) {
      ZBR& branch = (*m_copy.m_zbrTable)[i];
      const ZBR* const other = Find(*m_to.m_zbrTable, branch);
      if (other != nullptr) {
        branch.tp_status = (branch.tp_status & ~ZBR_OUT_WITH_BREAKER) | (other->tp_status & ZBR_OUT_WITH_BREAKER);
      } else if (GoesWithBreaker(branch) && (branch.status & BranchKind<ZBR>::kOut) == 0) {
        branch.status |= BranchKind<ZBR>::kOut;
        branch.tp_status |= ZBR_OUT_WITH_BREAKER;
      }
    }
  }

  /// True when B has the breaker of a branch, open.
  bool GoesWithBreaker(const ZBR& branch) {
    const CB* const breaker = Find(*m_to.m_cbTable, CB(branch.cb));
    return breaker != nullptr && (breaker->flags & CB_OPEN) != 0;
  }

  template <class T>
  void Compare() {
    tTable<T>& here = TableOf<T>(m_copy);
    tTable<T>& there = TableOf<T>(m_to);
    for (int i = 0; i < here.GetCount(); ++i) {
      const T* const other = Find(there, here[i]);
      if (other == nullptr) {
        NoteOnlyHere(here[i]);
      } else if (!StandsAlike(here[i], *other)) {
        Note(here[i], "it stands at other nodes in B");
      }
    }
    for (int i = 0; i < there.GetCount(); ++i) {
      if (Find(here, there[i]) == nullptr) NoteOnlyThere(there[i]);
    }
  }

  template <class T>
  void NoteOnlyHere(const T& record) {
    if constexpr (std::is_same_v<T, ZBR>) {
      if (GoesWithBreaker(record)) return;
    }
    Note(record, "only A has it");
  }

  template <class T>
  void NoteOnlyThere(const T& record) {
    constexpr bool kIsBranchOfBreaker = std::is_same_v<T, ZBR>;
    Note(record, kIsBranchOfBreaker ? "only B has it: no event makes one on its breaker" : "only B has it");
  }

  template <class T>
  void Note(const T& record, const char* why) {
    m_unreachable.push_back({T::kTableName, tools::IdText(record.id), why});
  }

  DTSDB& m_copy;
  DTSDB& m_to;
  std::vector<Unreachable> m_unreachable;
};

}  // namespace

Way WayBetween(DTSDB& from, DTSDB& to, DTSDB& copy) {
  StateCopier states(copy, to);
  states.Put();
  return {SwitchStates(copy).EventsBack(from, true), states.TakeUnreachable()};
}

}  // namespace dtsdb::analysis::internal
