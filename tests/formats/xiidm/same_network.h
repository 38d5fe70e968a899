/// \file
/// What makes two networks the same: nodes in sections and islands, what is dead, states and powers of equipment.
#pragma once

#include <fmt/format.h>
#include <gtest/gtest.h>

#include <QBuffer>
#include <map>
#include <string>

#include "analysis/topology.h"
#include "formats/xiidm/export.h"
#include "tests/formats/xiidm/network_text.h"
#include "tests/support/temporary_directory.h"

namespace dtsdb::tools::xiidm::test {

/// What is true of a network, by what it is about.
using Facts = std::map<std::string, std::string>;

template <class T>
void AddPowers(Facts& facts, const DTSDB& model) {
  const tTable<T>& table = TableOf<T>(model);
  for (int i = 0; i < table.GetCount(); ++i) {
    const T& row = table[i];
    std::string& fact = facts[std::string(T::kTableName) + " " + Real(row.id)];
    fact = fmt::format("{} {}", row.p + 0.0F, row.q + 0.0F);
    if constexpr (requires { row.zp; }) fact += fmt::format(" to {} {}", row.zp + 0.0F, row.zq + 0.0F);
    if constexpr (requires { row.ref; }) fact += fmt::format(" ref {}", row.ref == 0);
    if constexpr (requires { row.type; }) fact += fmt::format(" type {}", row.type);
    if constexpr (requires { row.pmax; }) fact += fmt::format(" up to {} from {}", row.pmax, row.pcur);
  }
}

inline void AddTopology(Facts& facts, analysis::Model& model) {
  const dtsdb::test::TemporaryDirectory directory;  // of the log
  const auto topology = analysis::WorkOutTopology(model);
  if (!topology) {
    ADD_FAILURE() << topology.error().message;
    return;
  }
  std::map<int, int> islandOf;         // by section
  std::map<int, std::string> firstOf;  // the first node of an island
  for (const analysis::Section& section : topology->sections) islandOf[section.number] = section.island;
  const auto island = [&](const analysis::Node& node) {
    return node.IsInSection() && islandOf.contains(node.section) ? islandOf[node.section] : -1;
  };
  for (const analysis::Node& node : topology->nodes) firstOf.emplace(island(node), node.identity);
  for (const analysis::Node& node : topology->nodes) {
    const std::string& first = island(node) < 0 ? "none" : firstOf.at(island(node));
    facts["ND " + node.identity] = fmt::format("in {}, {}, island of {}, section {}, live {}", node.level, node.point,
                                               first, node.IsInSection(), node.live);
  }
  for (const analysis::Dead& dead : topology->dead) facts["dead " + dead.table + " " + dead.identity] = dead.state;
  for (const analysis::Island& found : topology->islands) {
    facts["island of " + firstOf.at(found.number)] = fmt::format("{} sections, {}", found.sections, found.reference);
  }
}

/// The facts of a network that passes the validation.
inline Facts FactsOf(const DTSDB& tables) {
  analysis::Model model = analysis::Model::Of(tables);
  Facts facts;
  AddTopology(facts, model);
  const DTSDB& validated = model.Tables();
  AddPowers<UN>(facts, validated);
  AddPowers<LD>(facts, validated);
  AddPowers<CP>(facts, validated);
  AddPowers<LN>(facts, validated);
  AddPowers<XF>(facts, validated);
  AddPowers<ZBR>(facts, validated);
  const tTable<BUS>& buses = TableOf<BUS>(validated);
  for (int i = 0; i < buses.GetCount(); ++i) {
    facts["BUS " + Real(buses[i].id)] = fmt::format("{} {} {}", Real(buses[i].nd), buses[i].v, buses[i].a);
  }
  const tTable<CB>& breakers = TableOf<CB>(validated);
  for (int i = 0; i < breakers.GetCount(); ++i) {
    const CB& row = breakers[i];
    facts["CB " + Real(row.id)] = fmt::format("{} {} {}", Real(row.nd), Real(row.znd), row.flags);
  }
  const tTable<KV>& levels = TableOf<KV>(validated);
  for (int i = 0; i < levels.GetCount(); ++i) {
    const KV& row = levels[i];
    facts["KV " + Real(row.id)] = fmt::format("{} {} {} {}", Real(row.st), row.vbase, row.vmax, row.vmin);
  }
  const tTable<ST>& stations = TableOf<ST>(validated);
  for (int i = 0; i < stations.GetCount(); ++i) facts["ST " + Real(stations[i].id)] = Real(stations[i].dv);
  return facts;
}

inline std::string Exported(const DTSDB& model) {
  QBuffer text;
  text.open(QIODevice::WriteOnly);
  WriteNetwork(model, text);
  return text.data().toStdString();
}

/// The first fact in which two networks differ, empty for none.
inline std::string FirstDifference(const Facts& here, const Facts& there) {
  for (const auto& [about, fact] : here) {
    const auto found = there.find(about);
    if (found == there.end()) return about + ": only here: " + fact;
    if (found->second != fact) return about + ": " + fact + "; there " + found->second;
  }
  for (const auto& [about, fact] : there) {
    if (!here.contains(about)) return about + ": only there: " + fact;
  }
  return "";
}

/// Exports a network and reads it again. Returns the first difference, empty for none.
inline std::string DifferenceAfterRoundTrip(DTSDB& model) {
  SettleTables(model);
  const std::string text = Exported(model);
  Imported again(text);
  if (!again.report.leftOut.empty()) return "left out: " + again.report.leftOut[0].names[0];
  return FirstDifference(FactsOf(model), FactsOf(again.model));
}

}  // namespace dtsdb::tools::xiidm::test
