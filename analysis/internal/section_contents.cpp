#include "analysis/internal/section_contents.h"

#include <utility>

#include "analysis/internal/equipment_state.h"
#include "formats/field_text.h"
#include "model/record_bits.h"

namespace dtsdb::analysis::internal {

using tools::IdText;

SectionContents::SectionContents(DTSDB& database)
    : m_database(database),
      m_items(static_cast<std::size_t>(database.m_bsTable->GetCount())),
      m_counts(m_items.size()) {
  CollectNodes();
  CollectShunts<BUS>(&Counts::buses);
  CollectShunts<UN>(&Counts::units);
  CollectShunts<LD>(&Counts::loads);
  CollectShunts<CP>(&Counts::shunts);
  CollectBranches<LN>();
  CollectBranches<XF>();
  CollectBranches<DLN>();
  CollectBranches<ZBR>();
}

std::vector<Section> SectionContents::InRingOrder() {
  std::vector<Section> ring;
  if (m_database.m_globalTable->GetCount() == 0) return ring;
  const int head = (*m_database.m_globalTable)[0].bs_dead;
  std::size_t steps = 0;
  for (int n = Next(head); IsSection(n) && steps < m_items.size(); n = Next(n), ++steps) {
    if (!m_items[static_cast<std::size_t>(n)].empty()) ring.push_back(Describe(n));
  }
  return ring;
}

int SectionContents::Next(int number) {
  const bool known = number >= 0 && static_cast<std::size_t>(number) < m_items.size();
  return known ? m_database.m_bsTable->GetPh(number).next : -1;
}

Section SectionContents::Describe(int number) {
  const BS& record = m_database.m_bsTable->GetPh(number);
  Section section;
  section.number = number;
  section.island = record.island >= 0 ? record.island : -1;
  section.name = IdText(record.name);
  if (record.status & BS_ISOLATED) section.kind = SectionKind::kFragment;
  if (record.status & BS_BROKEN) section.kind = SectionKind::kOpenEnd;
  if (record.ikv >= 0 && record.ikv < m_database.m_kvTable->GetSize()) {
    const KV& level = m_database.m_kvTable->GetPh(record.ikv);
    section.station = IdText(level.st);
    section.level = IdText(level.id);
  }
  section.counts = m_counts[static_cast<std::size_t>(number)];
  section.items = std::move(m_items[static_cast<std::size_t>(number)]);
  return section;
}

/// Section of node `nd`, -1 when it has none.
int SectionContents::SectionOfNode(int nd) {
  if (nd < 0 || nd >= m_database.m_ndTable->GetSize()) return -1;
  const int number = m_database.m_ndTable->GetPh(nd).ibs;
  return IsSection(number) ? number : -1;
}

void SectionContents::Put(int number, Item item, int Counts::*count) {
  if (!IsSection(number)) return;
  ++(m_counts[static_cast<std::size_t>(number)].*count);
  m_items[static_cast<std::size_t>(number)].push_back(std::move(item));
}

void SectionContents::CollectNodes() {
  for (int i = 0; i < m_database.m_ndTable->GetCount(); ++i) {
    const ND& nd = (*m_database.m_ndTable)[i];
    if (IsSection(nd.ibs)) Put(nd.ibs, {ND::kTableName, IdText(nd.id), "", -1, ""}, &Counts::nodes);
  }
}

/// What stands on one node stands on the node's section, also while it is switched off.
template <class T>
void SectionContents::CollectShunts(int Counts::*count) {
  tTable<T>& table = TableOf<T>(m_database);
  for (int i = 0; i < table.GetCount(); ++i) {
    const T& record = table[i];
    Put(SectionOfNode(record.ind), {T::kTableName, IdText(record.id), "", -1, StateOf(record)}, count);
  }
}

template <class Branch>
void SectionContents::CollectBranches() {
  tTable<Branch>& table = TableOf<Branch>(m_database);
  const auto leadsTo = [this](int number) { return IsSection(number) ? number : -1; };
  for (int i = 0; i < table.GetCount(); ++i) {
    const Branch& branch = table[i];
    const std::string state = StateOf(branch);
    const std::string id = IdText(branch.id);
    Put(branch.ibs, {Branch::kTableName, id, "from", leadsTo(branch.izbs), state}, &Counts::branches);
    Put(branch.izbs, {Branch::kTableName, id, "to", leadsTo(branch.ibs), state}, &Counts::branches);
  }
}

}  // namespace dtsdb::analysis::internal
