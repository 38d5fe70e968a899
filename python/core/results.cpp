#include "python/core/results.h"

#include <utility>

#include "model/table_info.h"
#include "python/core/errors.h"
#include "python/core/texts.h"

namespace py = pybind11;

namespace dtsdb::python {
namespace {

using analysis::Counts;
using analysis::Dead;
using analysis::Effect;
using analysis::FollowedBranch;
using analysis::Island;
using analysis::IslandChange;
using analysis::IslandLoss;
using analysis::IslandPart;
using analysis::Item;
using analysis::LogRow;
using analysis::MovedNode;
using analysis::Node;
using analysis::Outage;
using analysis::OutageComponent;
using analysis::OutageResult;
using analysis::Outcome;
using analysis::RunReport;
using analysis::Screening;
using analysis::Section;
using analysis::SectionKind;
using analysis::Supplied;
using analysis::SupplyTotals;
using analysis::Topology;
using analysis::Validation;

/// Makes objects of one class of dtsdb.results.
class Maker {
 public:
  explicit Maker(const char* name) : m_class(py::module_::import("dtsdb.results").attr(name)) {}

  template <class... Values>
  py::object operator()(Values&&... values) const {
    return m_class(std::forward<Values>(values)...);
  }

 private:
  py::object m_class;
};

/// A list of what `convert` makes of each.
template <class Things, class Convert>
py::list ListOf(const Things& things, Convert convert) {
  py::list list;
  for (const auto& thing : things) list.append(convert(thing));
  return list;
}

py::list Texts(const std::vector<std::string>& texts) { return ListOf(texts, Text); }

/// Numbers as a tuple.
py::tuple Numbers(const std::vector<int>& numbers) {
  return py::tuple(ListOf(numbers, [](int n) { return n; }));
}

const char* OrNothing(const char* text) { return text != nullptr ? text : ""; }

py::object CountsOf(const Maker& make, const Counts& counts) {
  return make(counts.nodes, counts.buses, counts.units, counts.loads, counts.shunts, counts.branches);
}

py::list IslandList(const std::vector<Island>& islands) {
  const Maker make("Island");
  const Maker makeCounts("Counts");
  return ListOf(islands, [&](const Island& island) {
    return make(island.number, island.sections, CountsOf(makeCounts, island.counts), Text(island.reference),
                NumberOrNone(island.referenceSection));
  });
}

const char* NameOfKind(SectionKind kind) {
  if (kind == SectionKind::kSection) return "section";
  return kind == SectionKind::kFragment ? "fragment" : "open end";
}

py::list SectionList(const std::vector<Section>& sections) {
  const Maker make("Section");
  const Maker makeCounts("Counts");
  const Maker makeItem("Item");
  const auto item = [&](const Item& thing) {
    return makeItem(Text(thing.table), Text(thing.identity), Text(thing.end), NumberOrNone(thing.leadsTo),
                    Text(thing.state));
  };
  return ListOf(sections, [&](const Section& section) {
    return make(section.number, NameOfKind(section.kind), NumberOrNone(section.island), Text(section.name),
                Text(section.station), Text(section.level), CountsOf(makeCounts, section.counts),
                ListOf(section.items, item));
  });
}

py::list SuppliedList(const std::vector<Supplied>& things) {
  const Maker make("Supplied");
  return ListOf(things, [&](const Supplied& thing) {
    return make(Text(thing.table), Text(thing.identity), Text(thing.station), Text(thing.level), Text(thing.state),
                thing.p, thing.q);
  });
}

py::object RunOf(const RunReport& run, Language language) {
  constexpr const char* kKinds[] = {"nothing", "incremental", "full"};
  const Maker makeFollowed("FollowedBranch");
  const auto followed = [&](const FollowedBranch& branch) {
    return makeFollowed(Text(branch.branch), Text(branch.breaker), branch.on);
  };
  return Maker("Run")(kKinds[static_cast<std::size_t>(run.kind)], Text(run.Text()), ListOf(run.followed, followed),
                      Texts(run.leftOut), ToPython(run.findings, language));
}

py::tuple OutageOf(const Maker& makeComponent, const Outage& outage) {
  return py::tuple(ListOf(outage, [&](const OutageComponent& component) {
    return makeComponent(Text(component.table), Text(component.identity));
  }));
}

py::list IslandLosses(const std::vector<IslandLoss>& losses) {
  const Maker make("IslandLoss");
  const Maker makePart("IslandPart");
  const auto part = [&](const IslandPart& thing) {
    return makePart(Text(thing.station), Text(thing.node), Text(thing.reference));
  };
  return ListOf(losses, [&](const IslandLoss& loss) {
    return make(loss.island, Text(loss.reference), ListOf(loss.parts, part), loss.lostReference);
  });
}

py::object TotalsObject(const Maker& make, const SupplyTotals& totals) {
  return make(totals.stations, totals.buses, totals.units, totals.loads, totals.p, totals.q);
}

py::list MovedNodes(const std::vector<MovedNode>& moved) {
  const Maker make("MovedNode");
  return ListOf(moved, [&](const MovedNode& node) {
    return make(Text(node.node), Text(node.level), NumberOrNone(node.oldSection), NumberOrNone(node.newSection));
  });
}

py::list LogRows(const std::vector<LogRow>& log) {
  const Maker make("LogRow");
  return ListOf(log, [&](const LogRow& row) {
    return make(Text(row.table), Text(row.identity), Text(row.event), row.status, NumberOrNone(row.oldSection),
                NumberOrNone(row.newSection));
  });
}

/// The flow through a breaker; None where there is none.
py::object FlowOf(const BreakerFlow& breaker, float power) {
  return breaker.state == BreakerState::kComputed ? py::object(py::float_(power)) : py::object(py::none());
}

}  // namespace

py::list ToPython(const QList<Finding>& findings, Language language) {
  const Maker make("Finding");
  return ListOf(findings, [&](const Finding& finding) {
    const MessageInfo* const message = FindMessage(finding.code);
    const QString text = message != nullptr ? TextOf(finding, language) : finding.text;
    const char* const remedy = message != nullptr ? message->Remedy(language) : nullptr;
    return make(Text(OrNothing(finding.code)), SeverityName(finding.severity), TableName(finding.table),
                OrNothing(finding.field), IdText(finding.id), Text(text.trimmed().toStdString()), OrNothing(remedy));
  });
}

py::object ToPython(const Validation& validation, Language language) {
  QList<Finding> faults = validation.findings;
  faults.removeIf([](const Finding& finding) { return finding.severity == Severity::kNotice; });
  return Maker("Validation")(validation.good, validation.errors, validation.warnings, ToPython(faults, language));
}

py::object ToPython(const Topology& topology, Language language) {
  const Maker makeNode("Node");
  const Maker makeDead("Dead");
  const auto node = [&](const Node& thing) {
    return makeNode(Text(thing.identity), Text(thing.station), Text(thing.level), NumberOrNone(thing.section),
                    Text(thing.point), thing.live);
  };
  const auto dead = [&](const Dead& thing) {
    return makeDead(Text(thing.table), Text(thing.identity), Text(thing.state));
  };
  return Maker("Topology")(IslandList(topology.islands), SectionList(topology.sections), ListOf(topology.nodes, node),
                           ListOf(topology.dead, dead), ToPython(topology.findings, language), Texts(topology.leftOut));
}

py::object ToPython(const Outcome& outcome, Language language) {
  return Maker("Outcome")(RunOf(outcome.run, language), outcome.levels, LogRows(outcome.log), MovedNodes(outcome.moved),
                          IslandList(outcome.islands));
}

py::object ToPython(const Effect& effect) {
  const Maker makeChange("IslandChange");
  const auto change = [&](const IslandChange& islands) {
    return makeChange(analysis::KindName(islands.kind), Numbers(islands.before), Numbers(islands.after));
  };
  return Maker("Effect")(SuppliedList(effect.lost), SuppliedList(effect.regained), ListOf(effect.islands, change));
}

py::object ToPython(const Flows& flows) {
  const Maker makeBreaker("BreakerFlow");
  const Maker makeSet("FlowSet");
  const auto breaker = [&](const BreakerFlow& flow) {
    return makeBreaker(IdText(flow.id), IdText(flow.kv), IdText(flow.nd), IdText(flow.znd), NumberOrNone(flow.set),
                       ClassName(flow.where), StateName(flow.state), FlowOf(flow, flow.p), FlowOf(flow, flow.q));
  };
  const auto set = [&](const FlowSet& nodes) {
    return makeSet(IdText(nodes.kv), nodes.nodes, Numbers(nodes.breakers), nodes.surplus.p, nodes.surplus.q,
                   StateName(nodes.state));
  };
  return Maker("Flows")(flows.tolerance, ListOf(flows.breakers, breaker), ListOf(flows.sets, set));
}

py::object ToPython(const std::vector<Outage>& outages) {
  const Maker makeComponent("Component");
  return ListOf(outages, [&](const Outage& outage) { return OutageOf(makeComponent, outage); });
}

py::object ToPython(const Screening& screening, Language language) {
  const Maker make("OutageResult");
  const Maker makeComponent("Component");
  const Maker makeTotals("Totals");
  const auto result = [&](const OutageResult& outage) {
    return make(OutageOf(makeComponent, outage.outage), SuppliedList(outage.lost),
                TotalsObject(makeTotals, outage.totals), IslandLosses(outage.islands), outage.fullRun, Text(outage.run),
                Text(outage.note), Text(outage.failure));
  };
  return Maker("Screening")(ListOf(screening.outages, result), ToPython(screening.findings, language),
                            Texts(screening.leftOut));
}

std::vector<Outage> OutagesFrom(const py::iterable& outages) {
  std::vector<Outage> result;
  for (const py::handle outage : outages) {
    Outage& components = result.emplace_back();
    for (const py::handle component : py::cast<py::iterable>(outage)) {
      const auto [table, identity] = py::cast<std::pair<std::string, std::string>>(component);
      components.push_back({table, identity});
    }
    if (components.empty()) RefuseCall("an outage needs a component, as in [('LN', 'L1')]");
  }
  return result;
}

}  // namespace dtsdb::python
