#include "analysis/internal/outage_events.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <algorithm>
#include <tuple>
#include <utility>

#include "analysis/internal/points.h"
#include "formats/field_text.h"
#include "script/switch_events.h"
#include "topology/component_types.h"

namespace dtsdb::analysis::internal {
namespace {

/// The type code by which a component of `table` goes out as a whole; 0 for none.
int TypeOf(const std::string& table) {
  constexpr std::tuple kTypes{std::pair{LN::kTableName, 5},
                              std::pair{XF::kTableName, 6},
                              std::pair{DLN::kTableName, 8},
                              std::pair{ZBR::kTableName, 7},
                              std::pair{CB::kTableName, kBreakerType},
                              std::pair{UN::kTableName, 2}};
  int code = 0;
  const auto take = [&](const auto& type) {
    if (table == type.first) code = type.second;
  };
  std::apply([&](const auto&... types) { (take(types), ...); }, kTypes);
  return code;
}

void AddEvent(DTSDB& tables, const SwitchEvent& event, int number, std::vector<NumberedEvent>& events) {
  if (tools::Stands(tables, event, number)) return;
  const auto isSame = [&](const NumberedEvent& other) {
    return other.event.type == event.type && other.number == number;
  };
  if (std::none_of(events.begin(), events.end(), isSame)) events.push_back({event, number});
}

/// The breakers on the node of the bus, each opened.
void AddBus(DTSDB& tables, int bus, std::vector<NumberedEvent>& events) {
  ForEachEndOn<CB>(tables, tables.m_busTable->GetPh(bus).ind, [&](const CB& breaker, const CB2& end) {
    AddEvent(tables, {kBreakerType, false, tools::IdText(breaker.id)}, end.icb, events);
  });
}

}  // namespace

int NumberOf(DTSDB& tables, const OutageComponent& component) {
  const auto id = tools::IdFromUtf8(component.identity);
  if (!id) return -1;
  if (component.table == BUS::kTableName) return tables.m_busTable->Find(BUS(*id));
  return tools::ComponentNumber(tables, TypeOf(component.table), *id);
}

std::string WhyUnknown(DTSDB& tables, const OutageComponent& component) {
  if (NumberOf(tables, component) != -1) return "";
  if (component.table == BUS::kTableName) return tools::WhyUnknownRecord(*tables.m_busTable, component.identity);
  const int type = TypeOf(component.table);
  if (type != 0) return tools::WhyUnknown(tables, {type, false, component.identity});
  return fmt::format("{} is no table of outages; these are {}", tools::Quoted(component.table),
                     fmt::join(OutageTables(), ", "));
}

std::vector<OutageComponent> InService(DTSDB& tables, const std::string& table) {
  std::vector<OutageComponent> components;
  if (table == BUS::kTableName) {
    const tTable<BUS>& buses = *tables.m_busTable;
    for (int i = 0; i < buses.GetCount(); ++i) components.push_back({table, tools::IdText(buses.GetPh(i).id)});
    return components;
  }
  WithComponentType(TypeOf(table), [&](const auto& type) {
    const auto& records = TableOf<typename std::remove_cvref_t<decltype(type)>::Record>(tables);
    for (int i = 0; i < records.GetCount(); ++i) {
      const auto& record = records.GetPh(i);
      if ((record.*type.word & type.bit) == 0) components.push_back({table, tools::IdText(record.id)});
    }
  });
  return components;
}

std::vector<NumberedEvent> EventsOf(DTSDB& tables, const Outage& outage) {
  std::vector<NumberedEvent> events;
  for (const OutageComponent& component : outage) {
    const int number = NumberOf(tables, component);
    if (component.table == BUS::kTableName) {
      AddBus(tables, number, events);
    } else {
      AddEvent(tables, {TypeOf(component.table), false, component.identity}, number, events);
    }
  }
  return events;
}

}  // namespace dtsdb::analysis::internal
