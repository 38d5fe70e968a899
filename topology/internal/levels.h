/// \file
/// The voltage levels that a TP works on.
#pragma once

#include <memory>
#include <vector>

namespace dtsdb::internal {

struct WorkArrays;

/// Where a TP keeps its lists of voltage levels.
struct LevelLists {
  int*& all;
  int& allCount;
  int*& changed;
  int& changedCount;
  /// What `changed` points into. Apart from the work arrays, since it grows: a copy of the TP keeps the list that it
  /// had.
  std::shared_ptr<std::vector<int>>& changedOwner;
};

/// Two lists of voltage levels by KV number: all that have nodes, in the order of the section list, and those of the
/// run. Readers of the second pass over negative entries and see what is added while they walk.
///
/// A view of the TP's lists, as cheap to copy as a few pointers. Reads and writes nothing else.
class Levels {
 public:
  Levels(const LevelLists& lists, const std::shared_ptr<WorkArrays>& arrays) : m_lists(lists), m_arrays(arrays) {}

  /// Makes both lists anew, empty, in the work arrays.
  void Make(int levelCount) const;
  /// Empties both lists.
  void Empty() const { m_lists.allCount = m_lists.changedCount = 0; }
  /// Empties both lists and lets their storage go.
  void Clear() const;

  /// True before the first full run.
  bool IsEmpty() const { return m_lists.allCount == 0; }
  int AllCount() const { return m_lists.allCount; }
  int All(int place) const { return m_lists.all[place]; }
  /// The place of level `kv` among all, -1 for none.
  int PlaceOf(int kv) const;
  /// Adds a level that has no place yet, to both lists.
  void Add(int kv) const;

  int ChangedCount() const { return m_lists.changedCount; }
  int Changed(int k) const { return m_lists.changed[k]; }
  void EmptyChanged() const { m_lists.changedCount = 0; }
  /// True when `kv` stands in the list of the run.
  bool IsChanged(int kv) const;
  /// Adds `kv` to the levels of the run, whether it stands there or not.
  void AddChanged(int kv) const;
  /// The same unless it stands there. At a cost that doesn't grow with the list.
  void AddChangedOnce(int kv) const;
  /// The same, where an entry that bears a minus sign counts as well and loses it.
  void AddChangedPlain(int kv) const;
  /// Adds two levels, -1 for none. They are compared with the list, signs left aside, but not with each other: equal
  /// ones that are new come onto the list twice.
  void AddChangedPair(int kv, int otherKv) const;

 private:
  void NotePlace(int k) const;
  int* ChangedEnd() const { return m_lists.changed + m_lists.changedCount; }
  bool IsNew(int kv) const;

  LevelLists m_lists;
  const std::shared_ptr<WorkArrays>& m_arrays;
};

}  // namespace dtsdb::internal
