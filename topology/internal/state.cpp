#include "topology/internal/state.h"

namespace dtsdb::internal {
namespace {

template <class T>
int SizeOf(const Network& network) {
  return network.Table<T>().GetSize();
}

}  // namespace

State State::Over(FlatNetwork& flat) const {
  State state = *this;
  state.network = Network(network.Tables(), &flat);
  return state;
}

/// Every node can have a section of its own and every voltage level a fragment beside the two heads and two spares;
/// every device, end, section, station and voltage level its list entry: the free lists can't run out in normal use.
void State::Make() const {
  const auto sizes = [&]<class... Records>() { return (SizeOf<Records>(network) + ...); };
  const int sections = sizes.template operator()<ND, KV>() + 4;
  network.Table<BS>().SetSize(sections);
  network.Table<BSL>().SetSize(sizes.template operator()<ST, KV, BS, LN2, XF2, ZBR2, LD, UN, CP, DLN2>() + 3);

  arrays = std::make_shared<WorkArrays>();
  arrays->sections = WorkArray<BS>(SizeOf<BS>(network));
  arrays->entries = WorkArray<BSL>(SizeOf<BSL>(network));
  arrays->markedNodes.assign(static_cast<std::size_t>(arrays->sections.Size()), 0);
  arrays->moveOfNode.assign(static_cast<std::size_t>(SizeOf<ND>(network)), -1);
  bs = arrays->sections.Data();
  bsl = arrays->entries.Data();
  levels.Make(SizeOf<KV>(network));
}

void State::Clear() const {
  levels.Clear();
  arrays.reset();
  bs = nullptr;
  bsl = nullptr;
}

Sections State::Sections() const {
  if (!arrays) return internal::Sections({nullptr, nullptr}, network, levels, nullptr);
  return internal::Sections({&arrays->sections, &arrays->changes.sections}, network, levels, &arrays->changes);
}

Entries State::Entries() const {
  if (!arrays) return internal::Entries({nullptr, nullptr}, network);
  return internal::Entries({&arrays->entries, &arrays->changes.entries}, network);
}

}  // namespace dtsdb::internal
