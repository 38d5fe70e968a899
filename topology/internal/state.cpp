#include "topology/internal/state.h"

namespace dtsdb::internal {
namespace {

template <class T>
int SizeOf(const Network& network) {
  return network.Table<T>().GetSize();
}

}  // namespace

/// Every node can have a section of its own and every voltage level a fragment beside the two heads and two spares;
/// every device, end, section, station and voltage level its list entry: the free lists can't run out in normal use.
void State::Make() const {
  const auto sizes = [&]<class... Records>() { return (SizeOf<Records>(network) + ...); };
  const int sections = sizes.template operator()<ND, KV>() + 4;
  network.Table<BS>().SetSize(sections);
  network.Table<BSL>().SetSize(sizes.template operator()<ST, KV, BS, LN2, XF2, ZBR2, LD, UN, CP, DLN2>() + 3);

  arrays = std::make_shared<WorkArrays>();
  arrays->sections.resize(static_cast<std::size_t>(SizeOf<BS>(network)));
  arrays->entries.resize(static_cast<std::size_t>(SizeOf<BSL>(network)));
  arrays->markedNodes.assign(arrays->sections.size(), 0);
  arrays->moveOfNode.assign(static_cast<std::size_t>(SizeOf<ND>(network)), -1);
  bs = arrays->sections.data();
  bsl = arrays->entries.data();
  levels.Make(SizeOf<KV>(network));
}

void State::Clear() const {
  levels.Clear();
  arrays.reset();
  bs = nullptr;
  bsl = nullptr;
}

Sections State::Sections() const {
  const int size = arrays ? static_cast<int>(arrays->sections.size()) : 0;
  Changes* const changes = arrays ? &arrays->changes : nullptr;
  return internal::Sections({bs, size, changes != nullptr ? &changes->sections : nullptr}, network, levels, changes);
}

Entries State::Entries() const {
  const int size = arrays ? static_cast<int>(arrays->entries.size()) : 0;
  return internal::Entries({bsl, size, arrays ? &arrays->changes.entries : nullptr}, network);
}

}  // namespace dtsdb::internal
