/// \file
/// The order of a large table's records while it is being edited.
#pragma once

#include <algorithm>
#include <cstddef>
#include <vector>

namespace dtsdb {

/// A sequence of slot numbers in key order, held in short runs, so that an insertion or removal anywhere moves a
/// few hundred numbers and not the whole sequence.
///
/// A table whose numbers are up to date does without one. The caller distinguishes slots: it gives the
/// comparison; the order of the keys must be strict.
class SlotOrder {
 public:
  /// A place in the sequence. The place behind the last slot has `run` equal to the number of runs.
  struct Place {
    std::size_t run = 0;    ///< number of the run
    std::size_t index = 0;  ///< place within it
  };

  /// Whether there are slots.
  bool IsEmpty() const { return m_runs.empty(); }
  /// Forgets all slots.
  void Clear() { m_runs.clear(); }

  /// Puts `slot` behind all others.
  void Append(int slot) {
    if (m_runs.empty() || m_runs.back().size() >= kFill) m_runs.emplace_back().reserve(kMost);
    m_runs.back().push_back(slot);
  }

  /// The first place whose slot is not `below` what is looked for; the place behind the last if there is none.
  template <class Below>
  Place LowerBound(Below below) const {
    const auto run = std::partition_point(m_runs.begin(), m_runs.end(), [&](const Run& r) { return below(r.back()); });
    if (run == m_runs.end()) return {m_runs.size(), 0};
    const auto slot = std::partition_point(run->begin(), run->end(), below);
    return {static_cast<std::size_t>(run - m_runs.begin()), static_cast<std::size_t>(slot - run->begin())};
  }

  /// The slot at `place`, -1 behind the last.
  int At(Place place) const { return place.run < m_runs.size() ? m_runs[place.run][place.index] : -1; }

  /// The slot with `rank` slots before it; `rank` is below their number.
  int AtRank(int rank) const {
    auto left = static_cast<std::size_t>(rank);
    auto run = m_runs.begin();
    for (; left >= run->size(); ++run) left -= run->size();
    return (*run)[left];
  }

  /// How many slots stand before `place`.
  int Rank(Place place) const {
    std::size_t rank = place.index;
    for (std::size_t i = 0; i < place.run; ++i) rank += m_runs[i].size();
    return static_cast<int>(rank);
  }

  /// Puts `slot` at `place`, in front of what stands there.
  void Insert(Place place, int slot) {
    if (place.run == m_runs.size()) return Append(slot);
    Run& run = m_runs[place.run];
    run.insert(run.begin() + static_cast<std::ptrdiff_t>(place.index), slot);
    if (run.size() >= kMost) Split(place.run);
  }

  /// Takes the slot at `place` out.
  void Erase(Place place) {
    Run& run = m_runs[place.run];
    run.erase(run.begin() + static_cast<std::ptrdiff_t>(place.index));
    if (run.empty()) m_runs.erase(m_runs.begin() + static_cast<std::ptrdiff_t>(place.run));
  }

 private:
  using Run = std::vector<int>;
  static constexpr std::size_t kMost = 512;
  static constexpr std::size_t kFill = kMost / 2;

  void Split(std::size_t at) {
    Run upper;
    upper.reserve(kMost);
    upper.assign(m_runs[at].begin() + kFill, m_runs[at].end());
    m_runs[at].resize(kFill);
    m_runs.insert(m_runs.begin() + static_cast<std::ptrdiff_t>(at) + 1, std::move(upper));
  }

  std::vector<Run> m_runs;  // none of them empty
};

}  // namespace dtsdb
