#include "topology/internal/levels.h"

#include <algorithm>
#include <cstdint>

#include "topology/internal/state.h"

namespace dtsdb::internal {
namespace {

/// True when a list entry means voltage level `kv`: an entry may bear a minus sign.
bool Means(int entry, int kv) { return entry == kv || -static_cast<std::int64_t>(entry) == kv; }

}  // namespace

void Levels::Make(int levelCount) const {
  const auto count = static_cast<std::size_t>(levelCount);
  m_arrays->allKvs.resize(count + 1);
  m_arrays->placeOfKv.assign(count, -1);
  m_arrays->placeInRun.assign(count, -1);
  m_lists.changedOwner = std::make_shared<std::vector<int>>(count + 1);
  m_lists.all = m_arrays->allKvs.data();
  m_lists.changed = m_lists.changedOwner->data();
  Empty();
}

void Levels::Clear() const {
  m_lists.changedOwner.reset();
  m_lists.all = m_lists.changed = nullptr;
  Empty();
}

int Levels::PlaceOf(int kv) const {
  if (!m_arrays || kv < 0 || static_cast<std::size_t>(kv) >= m_arrays->placeOfKv.size()) return -1;
  return m_arrays->placeOfKv[static_cast<std::size_t>(kv)];
}

void Levels::Add(int kv) const {
  m_arrays->placeOfKv[static_cast<std::size_t>(kv)] = m_lists.allCount;
  m_lists.all[m_lists.allCount++] = kv;
  AddChanged(kv);
}

void Levels::AddChanged(int kv) const {
  auto& owner = m_lists.changedOwner;
  if (!owner) return;
  if (static_cast<std::size_t>(m_lists.changedCount) == owner->size()) {
    auto grown = std::make_shared<std::vector<int>>(*owner);
    grown->resize(2 * grown->size());
    owner = std::move(grown);
    m_lists.changed = owner->data();
  }
  m_lists.changed[m_lists.changedCount++] = kv;
  NotePlace(m_lists.changedCount - 1);
}

void Levels::AddChangedOnce(int kv) const {
  if (!IsChanged(kv)) AddChanged(kv);
}

/// Notes where in the list of the run entry `k` stands.
void Levels::NotePlace(int k) const {
  const int kv = m_lists.changed[k];
  if (m_arrays && kv >= 0 && static_cast<std::size_t>(kv) < m_arrays->placeInRun.size()) {
    m_arrays->placeInRun[static_cast<std::size_t>(kv)] = k;
  }
}

/// A place that was noted for a list before this one is of no meaning,
/// which shows in the list itself.
bool Levels::IsChanged(int kv) const {
  if (!m_arrays || kv < 0 || static_cast<std::size_t>(kv) >= m_arrays->placeInRun.size()) {
    return std::find(m_lists.changed, ChangedEnd(), kv) != ChangedEnd();
  }
  const int place = m_arrays->placeInRun[static_cast<std::size_t>(kv)];
  return place >= 0 && place < m_lists.changedCount && m_lists.changed[place] == kv;
}

void Levels::AddChangedPlain(int kv) const {
  int* const found = std::find_if(m_lists.changed, ChangedEnd(), [&](int entry) { return Means(entry, kv); });
  if (found == ChangedEnd()) return AddChanged(kv);
  *found = kv;
  NotePlace(static_cast<int>(found - m_lists.changed));
}

void Levels::AddChangedPair(int kv, int otherKv) const {
  const bool addFirst = IsNew(kv);
  const bool addOther = IsNew(otherKv);
  if (addFirst) AddChanged(kv);
  if (addOther) AddChanged(otherKv);
}

bool Levels::IsNew(int kv) const {
  return kv >= 0 && std::none_of(m_lists.changed, ChangedEnd(), [&](int entry) { return Means(entry, kv); });
}

}  // namespace dtsdb::internal
