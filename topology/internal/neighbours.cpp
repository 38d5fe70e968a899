#include "topology/internal/neighbours.h"

#include <algorithm>

#include "topology/internal/failure.h"

namespace dtsdb::internal {
namespace {

/// Reads the entries behind that of one section.
class Reader {
 public:
  Reader(const Network& network, int bs, int dead, Neighbours* found)
      : m_network(network), m_bs(bs), m_dead(dead), m_found(found) {}

  /// Takes one entry in. False for an entry that doesn't hang on a section.
  bool Take(const BSL& entry) {
    switch (entry.kind) {
      case KIND_CP:
        return TakeDevice<CP>(entry.ref);
      case KIND_LD:
        return TakeDevice<LD>(entry.ref);
      case KIND_UN:
        if (IsInService<UN>(entry.ref)) m_found->unit = entry.ref;
        return true;
      case KIND_LN2:
        return TakeBranch<LN>(entry.ref);
      case KIND_XF2:
        return TakeBranch<XF>(entry.ref);
      case KIND_ZBR2:
        return TakeBranch<ZBR>(entry.ref);
      case KIND_DLN2:
        return TakeBranch<DLN>(entry.ref);
      default:
        return false;
    }
  }

 private:
  template <class Device>
  bool IsInService(int device) const {
    return !(m_network.Table<Device>().GetPh(device).status & SHUNT_ISOLATED);
  }

  /// Their records are wide. In a full run nobody asks for them.
  template <class Device>
  bool TakeDevice(int device) {
    if (m_network.IsFlat()) return true;
    if (IsInService<Device>(device)) ++m_found->devices;
    return true;
  }

  /// Takes the section at the other end of the branch that owns end record `end`, unless that end is isolated.
  template <class Branch>
  bool TakeBranch(int end) {
    m_network.VisitBranchOfEnd<Branch>(end, [&](const auto& branch, const auto& record) {
      if (record.flags & END_ISOLATED) return;
      const int section = branch.ibs == m_bs ? branch.izbs : branch.ibs;
      if (section != m_dead && m_found->count < kMaxNeighbours) m_found->sections[m_found->count++] = section;
    });
    return true;
  }

  const Network& m_network;
  int m_bs;
  int m_dead;
  Neighbours* m_found;
};

}  // namespace

bool FindNeighbours(const Network& network, const Sections& sections, const Entries& entries, int bs,
                    Neighbours* found) {
  return ReadNeighbours(network, sections, entries, bs, found) || FailedIn("tpBsNeighbor");
}

bool ReadNeighbours(const Network& network, const Sections& sections, const Entries& entries, int bs,
                    Neighbours* found) {
  const int own = sections[bs].ibsl;
  if (own == -1) return true;
  Reader reader(network, bs, sections.Dead(), found);
  bool stopped = false;
  const bool around = entries.Walk(entries[own].next, own, [&](int n) {
    stopped = !reader.Take(entries[n]);
    return !stopped;
  });
  return (stopped || around) && found->count < kMaxNeighbours;
}

AllNeighbours::AllNeighbours(const Network& network, const Sections& sections, const Entries& entries)
    : m_network(network),
      m_sections(sections),
      m_entries(entries),
      m_places(static_cast<std::size_t>(sections.List().ReachedCount())) {
  const int head = sections.Dead();
  sections.Walk(sections[head].next, head, [&](int bs) {
    Neighbours found;
    if (!ReadNeighbours(network, sections, entries, bs, &found)) return true;
    m_places[static_cast<std::size_t>(bs)] = {static_cast<int>(m_found.size()), found.count, found.unit};
    m_found.insert(m_found.end(), found.sections, found.sections + found.count);
    return true;
  });
}

bool AllNeighbours::Find(int bs, Neighbours* found) const {
  const bool known = bs >= 0 && static_cast<std::size_t>(bs) < m_places.size();
  const Place place = known ? m_places[static_cast<std::size_t>(bs)] : Place();
  if (place.count == kUnknown) return FindNeighbours(m_network, m_sections, m_entries, bs, found);
  found->unit = place.unit;
  found->count = place.count;
  std::copy_n(m_found.begin() + place.first, place.count, found->sections);
  return true;
}

}  // namespace dtsdb::internal
