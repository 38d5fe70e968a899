#include "page/internal/station_document.h"

#include <map>
#include <optional>
#include <tuple>

#include "formats/field_text.h"
#include "pictures/station_diagram.h"
#include "pictures/svg.h"

namespace dtsdb::page::internal {
namespace {

using pictures::Station;
using pictures::StationDevice;
using pictures::StationLevel;
using pictures::StationNode;
using pictures::StationSwitch;

const char* KindName(pictures::DeviceKind kind) {
  static constexpr const char* kNames[] = {"line", "DC line", "winding", "unit", "load", "capacitor", "reactor"};
  return kNames[static_cast<std::size_t>(kind)];
}

/// The facts about each element of a station, by table, identity and end.
class StationFacts {
 public:
  explicit StationFacts(const Station& station) {
    m_facts[{"ST", station.name.identity, ""}] = {{"kind", "station"}};
    for (const StationLevel& level : station.levels) AddLevel(level);
  }

  /// Those of an element; null for what is no record of the station.
  Json Of(const pictures::Element& element) const {
    std::string end;
    if (element.id.ends_with(".from")) end = "from";
    if (element.id.ends_with(".to")) end = "to";
    const auto found = m_facts.find({element.record.table, element.record.identity, end});
    return found != m_facts.end() ? found->second : Json(nullptr);
  }

 private:
  void AddLevel(const StationLevel& level) {
    Add(level.name, "", {{"kind", "voltage level"}, {"voltage", PowerJson(static_cast<double>(level.voltage))}});
    for (const StationNode& node : level.nodes) {
      Json facts = {{"kind", "node"}};
      AddPlace(facts, node);
      Add(node.name, "", std::move(facts));
    }
    for (const auto& bus : level.buses) {
      Json facts = {{"kind", "bus"}, {"state", bus.state}};
      AddPlace(facts, level.nodes[static_cast<std::size_t>(bus.node)]);
      Add(bus.name, "", std::move(facts));
    }
    for (const StationSwitch& item : level.switches) AddSwitch(level, item);
    for (const StationDevice& device : level.devices) AddDevice(level, device);
  }

  void AddSwitch(const StationLevel& level, const StationSwitch& item) {
    const StationNode& from = level.nodes[static_cast<std::size_t>(item.from)];
    const StationNode& to = level.nodes[static_cast<std::size_t>(item.to)];
    Json facts = {{"kind", item.isBreaker ? "breaker" : "disconnector"}, {"open", item.open}, {"state", item.state}};
    AddPlace(facts, from);
    facts["from"] = from.name.identity;
    facts["to"] = to.name.identity;
    facts["otherSection"] = NumberOrNull(to.section);
    facts["otherIsland"] = NumberOrNull(to.island);
    AddPower(facts, item.flow);
    for (const pictures::RecordName& branch : item.branches) {
      Json carried = {{"kind", "zero-impedance branch"}, {"breaker", item.name.identity}};
      AddPlace(carried, from);
      Add(branch, "", std::move(carried));
    }
    Add(item.name, "", std::move(facts));
  }

  void AddDevice(const StationLevel& level, const StationDevice& device) {
    Json facts = {{"kind", KindName(device.kind)}, {"open", device.open}, {"state", device.state}};
    AddPlace(facts, level.nodes[static_cast<std::size_t>(device.node)]);
    AddPower(facts, device.flow);
    if (!device.far.empty()) facts["far"] = device.far;
    if (!device.end.empty()) facts["end"] = device.end;
    if (device.isReference) facts["reference"] = true;
    Add(device.name, device.end, std::move(facts));
  }

  static void AddPlace(Json& facts, const StationNode& node) {
    facts["node"] = node.name.identity;
    facts["section"] = NumberOrNull(node.section);
    facts["island"] = NumberOrNull(node.island);
  }

  static void AddPower(Json& facts, const std::optional<pictures::Power>& flow) {
    facts["p"] = flow ? PowerJson(static_cast<double>(flow->p)) : Json(nullptr);
    facts["q"] = flow ? PowerJson(static_cast<double>(flow->q)) : Json(nullptr);
  }

  void Add(const pictures::RecordName& name, const std::string& end, Json facts) {
    m_facts[{name.table, name.identity, end}] = std::move(facts);
  }

  std::map<std::tuple<std::string, std::string, std::string>, Json> m_facts;
};

Json ElementJson(const GridState& state, const StationFacts& facts, const pictures::Element& element) {
  const RecordKey key{element.record.table, element.record.identity};
  Json json = {{"table", key.first}, {"id", key.second}};
  const Json found = facts.Of(element);
  if (found.is_object()) json.update(found);
  const auto findings = state.grid->findingsOf.find(key);
  json["findings"] = findings != state.grid->findingsOf.end() ? Json(findings->second) : Json::array();
  if (state.changed.contains(key)) json["changed"] = true;
  return json;
}

}  // namespace

analysis::Result<Json> StationJson(const GridState& state, const QString& id) {
  const analysis::Result<Station> station = state.stations->Read(id);
  if (!station) return tl::unexpected(station.error());
  pictures::Picture picture = pictures::DrawStation(*station, {.flows = true});
  const StationFacts facts(*station);
  Json elements = Json::object();
  for (pictures::Element& element : picture.elements) {
    if (element.record.table.empty()) continue;
    if (state.changed.contains({element.record.table, element.record.identity})) element.classes += " changed";
    elements[element.id] = ElementJson(state, facts, element);
  }
  return Json{{"version", state.version},
              {"id", station->name.identity},
              {"svg", pictures::ToSvg(picture)},
              {"elements", std::move(elements)}};
}

}  // namespace dtsdb::page::internal
