/// \file
/// Sections that a search has reached, in sets that hang together.
#pragma once

#include <cstddef>
#include <vector>

namespace dtsdb::internal {

/// Sets of sections: each section that is reached begins one, and sets join. With each set goes what waits to be
/// reached from it.
///
/// A section is known by its number or by its place, the how manieth that was reached; a set by the place of one of its
/// sections.
class IslandSets {
 public:
  /// `placeOf` has a -1 for each section, and has so again at the end.
  explicit IslandSets(std::vector<int>& placeOf) : m_placeOf(placeOf) {}
  IslandSets(const IslandSets&) = delete;
  IslandSets& operator=(const IslandSets&) = delete;
  ~IslandSets() {
    for (const int bs : m_sections) At(m_placeOf, bs) = -1;
  }

  /// How many sections were reached.
  int Count() const { return static_cast<int>(m_sections.size()); }
  /// The section at a place.
  int Section(int place) const { return At(m_sections, place); }
  bool Has(int bs) const { return At(m_placeOf, bs) != -1; }
  int PlaceOf(int bs) const { return At(m_placeOf, bs); }

  /// The place of section `bs`, which becomes a set of its own if it is new.
  int Reach(int bs);
  /// The set in which place `place` lies: the same for all of its places.
  int SetOf(int place) const;
  /// Makes one set of two.
  void Join(int place, int other);

  /// Lets section `bs` wait for being reached from a set.
  void Await(int set, int bs) { At(m_sets, set).waiting.push_back(bs); }
  /// Takes the section that has waited longest, -1 for none.
  int TakeWaiting(int set);
  /// How many sections a set has.
  int SizeOf(int set) const { return At(m_sets, set).size; }

  /// Notes that section `bs` of a set has a unit in service.
  void NoteUnit(int set, int bs) { At(m_sets, set).unitAt = bs; }
  /// A section of a set of which this was noted, -1 for none.
  int UnitOf(int set) const { return At(m_sets, set).unitAt; }

 private:
  template <class T>
  static T& At(std::vector<T>& values, int i) {
    return values[static_cast<std::size_t>(i)];
  }
  template <class T>
  static const T& At(const std::vector<T>& values, int i) {
    return values[static_cast<std::size_t>(i)];
  }

  struct Set {
    int size = 1;
    int unitAt = -1;
    std::vector<int> waiting;
    std::size_t next = 0;  // of `waiting`
  };

  std::vector<int>& m_placeOf;
  std::vector<int> m_sections;
  std::vector<int> m_parents;  // by place: a place nearer to the one that the set is known by
  std::vector<Set> m_sets;     // by place, for the one that a set is known by
};

}  // namespace dtsdb::internal
