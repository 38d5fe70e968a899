#include "command/topology_report.h"

#include <fmt/format.h>

#include <array>

#include "command/equipment_state.h"
#include "formats/field_text.h"
#include "model/record_bits.h"

namespace dtsdb::tools {
namespace {

constexpr int kFirstSection = 2;  // in front of it stand the heads of the two rings

/// The kinds of things that are counted on a section and in an island.
enum Thing { kNodes, kBuses, kUnits, kLoads, kShunts, kBranches, kThingCount };
using Counts = std::array<int, kThingCount>;

/// Something that hangs on a section: a row of the sheet of contents.
struct Item {
  Thing thing;
  const char* table;
  std::string identity;
  const char* end = "";  ///< which end of a branch
  int leadsTo = -1;      ///< section at the other end of a branch
  std::string state;
};

class Sections {
 public:
  explicit Sections(DTSDB& database) : m_database(database), m_items(Count()) {
    CollectNodes();
    CollectShunts(*database.m_busTable, kBuses);
    CollectShunts(*database.m_unTable, kUnits);
    CollectShunts(*database.m_ldTable, kLoads);
    CollectShunts(*database.m_cpTable, kShunts);
    CollectBranches(*database.m_lnTable);
    CollectBranches(*database.m_xfTable);
    CollectBranches(*database.m_dlnTable);
    CollectBranches(*database.m_zbrTable);
  }

  /// The sections in use, voltage level by voltage level.
  std::vector<int> Ring() {
    std::vector<int> ring;
    if (m_database.m_globalTable->GetCount() == 0) return ring;
    const int head = (*m_database.m_globalTable)[0].bs_dead;
    for (int s = Next(head); IsSection(s) && ring.size() < m_items.size(); s = Next(s)) ring.push_back(s);
    return ring;
  }

  bool IsSection(int s) const { return s >= kFirstSection && static_cast<std::size_t>(s) < m_items.size(); }
  BS& Section(int s) { return m_database.m_bsTable->GetPh(s); }
  const std::vector<Item>& Items(int s) const { return m_items[static_cast<std::size_t>(s)]; }

  Counts Count(int s) const {
    Counts counts{};
    for (const Item& item : Items(s)) ++counts[item.thing];
    return counts;
  }

  /// Live, dead, or a fragment that only holds the open or dead end of a branch.
  std::string State(int s) {
    const BS& section = Section(s);
    std::string state = section.island >= 0 ? "live" : "dead";
    if ((section.status & BS_BROKEN) != 0) return state + ", open end";
    if ((section.status & BS_ISOLATED) != 0) return state + ", fragment";
    return state;
  }

  /// The voltage level of a section; a default one when it has none.
  KV Level(int s) {
    const int kv = Section(s).ikv;
    return kv >= 0 && kv < m_database.m_kvTable->GetSize() ? m_database.m_kvTable->GetPh(kv) : KV();
  }

  /// Section of node `nd`, -1 when it has none.
  int SectionOfNode(int nd) {
    if (nd < 0 || nd >= m_database.m_ndTable->GetSize()) return -1;
    const int s = m_database.m_ndTable->GetPh(nd).ibs;
    return IsSection(s) ? s : -1;
  }

 private:
  std::size_t Count() const { return static_cast<std::size_t>(m_database.m_bsTable->GetCount()); }

  int Next(int s) {
    const auto n = static_cast<std::size_t>(s);
    return s >= 0 && n < m_items.size() ? Section(s).next : -1;
  }

  void Put(int s, Item item) {
    if (IsSection(s)) m_items[static_cast<std::size_t>(s)].push_back(std::move(item));
  }

  void CollectNodes() {
    for (int i = 0; i < m_database.m_ndTable->GetCount(); ++i) {
      const ND& nd = (*m_database.m_ndTable)[i];
      Put(nd.ibs, {kNodes, ND::kTableName, IdText(nd.id), "", -1, ""});
    }
  }

  /// What hangs on one node stands on the node's section, also while it is switched off.
  template <class T>
  void CollectShunts(tTable<T>& table, Thing thing) {
    for (int i = 0; i < table.GetCount(); ++i) {
      const T& record = table[i];
      Put(SectionOfNode(record.ind), {thing, T::kTableName, IdText(record.id), "", -1, StateOf(record)});
    }
  }

  template <class Branch>
  void CollectBranches(tTable<Branch>& table) {
    for (int i = 0; i < table.GetCount(); ++i) {
      const Branch& branch = table[i];
      const std::string state = StateOf(branch);
      const std::string id = IdText(branch.id);
      Put(branch.ibs, {kBranches, Branch::kTableName, id, "from", branch.izbs, state});
      Put(branch.izbs, {kBranches, Branch::kTableName, id, "to", branch.ibs, state});
    }
  }

  DTSDB& m_database;
  std::vector<std::vector<Item>> m_items;  // of each section
};

Cell NumberOrNothing(int number, bool some) { return some ? NumberCell(number) : Cell(); }

Cell TextOrNothing(const std::string& text) { return text.empty() ? Cell() : Cell(text); }

Sheet MakeIslandSheet(DTSDB& database, Sections& sections, const std::vector<int>& ring) {
  std::vector<Counts> counts(static_cast<std::size_t>(database.m_islandTable->GetCount()));
  std::vector<int> sectionCounts(counts.size(), 0);
  for (const int s : ring) {
    const int island = sections.Section(s).island;
    if (island < 0 || static_cast<std::size_t>(island) >= counts.size()) continue;
    const auto n = static_cast<std::size_t>(island);
    const Counts ofSection = sections.Count(s);
    for (std::size_t thing = 0; thing < ofSection.size(); ++thing) counts[n][thing] += ofSection[thing];
    ++sectionCounts[n];
  }
  Sheet sheet("islands", "Live islands",
              {"island", "sections", "nodes", "buses", "units", "loads", "reference", "reference_section"});
  for (std::size_t n = 0; n < counts.size(); ++n) {
    const ISLAND& island = (*database.m_islandTable)[static_cast<int>(n)];
    sheet.Add({NumberCell(island.id), NumberCell(sectionCounts[n]), NumberCell(counts[n][kNodes]),
               NumberCell(counts[n][kBuses]), NumberCell(counts[n][kUnits]), NumberCell(counts[n][kLoads]),
               TextOrNothing(IdText(island.ref_id)), NumberOrNothing(island.ref_ibs, island.ref_ibs >= 0)});
  }
  return sheet;
}

Sheet SectionSheet(Sections& sections, const std::vector<int>& ring) {
  Sheet sheet("sections", "Bus sections",
              {"section", "name", "station", "voltage_level", "island", "state", "nodes", "buses", "units", "loads",
               "shunts", "branches"});
  for (const int s : ring) {
    const BS& section = sections.Section(s);
    const KV level = sections.Level(s);
    std::vector<Cell> row = {NumberCell(s),
                             TextOrNothing(IdText(section.name)),
                             IdText(level.st),
                             IdText(level.id),
                             NumberOrNothing(section.island, section.island >= 0),
                             sections.State(s)};
    for (const int count : sections.Count(s)) row.push_back(NumberCell(count));
    sheet.Add(std::move(row));
  }
  return sheet;
}

Sheet ContentSheet(Sections& sections, const std::vector<int>& ring) {
  Sheet sheet("contents", "What hangs on the sections",
              {"section", "name", "table", "identity", "end", "leads_to", "state"});
  sheet.GroupBy(2);
  for (const int s : ring) {
    for (const Item& item : sections.Items(s)) {
      sheet.Add({NumberCell(s), TextOrNothing(IdText(sections.Section(s).name)), item.table, item.identity,
                 TextOrNothing(item.end), NumberOrNothing(item.leadsTo, sections.IsSection(item.leadsTo)),
                 TextOrNothing(item.state)});
    }
  }
  return sheet;
}

/// Adds the records of a table that aren't live.
template <class T>
void AddDead(Sheet& sheet, tTable<T>& table) {
  for (int i = 0; i < table.GetCount(); ++i) {
    const T& record = table[i];
    const std::string state = StateOf(record);
    if (state != kLive) sheet.Add({T::kTableName, IdText(record.id), state});
  }
}

void AddDeadNodes(Sheet& sheet, Sections& sections, tTable<ND>& table) {
  for (int i = 0; i < table.GetCount(); ++i) {
    const ND& nd = table[i];
    if (!sections.IsSection(nd.ibs)) {
      sheet.Add({ND::kTableName, IdText(nd.id), "in no section"});
    } else if (sections.Section(nd.ibs).island < 0) {
      sheet.Add({ND::kTableName, IdText(nd.id), "dead"});
    }
  }
}

Sheet DeadSheet(DTSDB& database, Sections& sections) {
  Sheet sheet("dead", "Dead and isolated", {"table", "identity", "state"});
  sheet.GroupBy(1);
  AddDeadNodes(sheet, sections, *database.m_ndTable);
  AddDead(sheet, *database.m_busTable);
  AddDead(sheet, *database.m_unTable);
  AddDead(sheet, *database.m_ldTable);
  AddDead(sheet, *database.m_cpTable);
  AddDead(sheet, *database.m_lnTable);
  AddDead(sheet, *database.m_xfTable);
  AddDead(sheet, *database.m_dlnTable);
  AddDead(sheet, *database.m_zbrTable);
  AddDead(sheet, *database.m_cbTable);
  return sheet;
}

}  // namespace

Sheet IslandSheet(DTSDB& database) {
  Sections sections(database);
  return MakeIslandSheet(database, sections, sections.Ring());
}

Report TopologyReport(DTSDB& database) {
  Sections sections(database);
  const std::vector<int> ring = sections.Ring();
  int dead = 0;
  for (const int s : ring) dead += sections.Section(s).island < 0 ? 1 : 0;
  const int islands = database.m_islandTable->GetCount();
  const auto all = static_cast<long long>(ring.size());

  Report report;
  report.Fact("live_islands", NumberCell(islands));
  report.Fact("live_sections", NumberCell(all - dead));
  report.Fact("dead_sections", NumberCell(dead));
  report.Line(fmt::format("Live islands: {}. Bus sections: {}, {} of them dead.", islands, all, dead));
  report.Add(MakeIslandSheet(database, sections, ring));
  report.Add(SectionSheet(sections, ring));
  report.Add(ContentSheet(sections, ring));
  report.Add(DeadSheet(database, sections));
  return report;
}

}  // namespace dtsdb::tools
