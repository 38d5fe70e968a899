/// \file
/// CGMES sets with the topology that is worked out from them, for tests of what is written and compared.
#pragma once

#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <vector>

#include "analysis/topology.h"
#include "formats/cgmes/import.h"
#include "formats/cgmes/topology_comparison.h"
#include "formats/cgmes/topology_export.h"
#include "tests/formats/cgmes/profile_text.h"

namespace dtsdb::tools::cgmes::test {

/// A set, imported, validated and worked out.
struct WorkedOutSet {
  explicit WorkedOutSet(const std::vector<std::string>& paths, const ImportOptions& chosen = {})
      : set(ReadSet(paths)), options(chosen) {
    DTSDB tables;
    report = ImportSet(set, options, tables);
    model.emplace(analysis::Model::Of(tables));
    const auto topology = analysis::WorkOutTopology(*model);
    if (!topology) ADD_FAILURE() << topology.error().message;
  }

  ExportedTopology Export(const std::string& folder, const std::string& created = "2026-11-22T08:00:00Z") {
    return ExportTopology(model->Tables(), report, folder, created);
  }
  TopologyComparison Compare() { return CompareWithPublished(set, options, report, model->Tables()); }

  ProfileSet set;
  ImportOptions options;
  ImportReport report;
  std::optional<analysis::Model> model;
};

/// The differences as lines "what: here / there (why)", those by design with a "*" in front.
inline std::string LinesOf(const TopologyComparison& comparison) {
  std::string lines;
  for (const TopologyDifference& difference : comparison.differences) {
    lines += (difference.isByDesign ? "*" : "") + difference.what + ": " + difference.here + " / " + difference.there +
             " (" + difference.why + ")\n";
  }
  return lines;
}

/// The header of a file with these profiles, such as "Topology".
inline std::string HeaderText(const std::string& mrid, const std::vector<std::string>& profiles, bool isNew = true) {
  std::string text = "<md:FullModel rdf:about=\"urn:uuid:" + mrid + "\">\n";
  for (const std::string& profile : profiles) {
    const std::string uri =
        isNew ? "http://iec.ch/TC57/ns/CIM/" + profile + "-EU/3.0" : "http://entsoe.eu/CIM/" + profile + "/4/1";
    text += "<md:Model.profile>" + uri + "</md:Model.profile>\n";
  }
  text += "<md:Model.modelingAuthoritySet>http://grid.example/CGMES</md:Model.modelingAuthoritySet>\n";
  return text + "<md:Model.scenarioTime>2026-11-22T07:30:00Z</md:Model.scenarioTime>\n</md:FullModel>\n";
}

/// A file of `text` with these profiles.
inline std::string FileText(const ProfileText& text, const std::string& mrid, const std::vector<std::string>& profiles,
                            bool isNew = true) {
  std::string file = text.Text();
  const std::size_t begin = file.find("<md:FullModel");
  const std::string end = "</md:FullModel>\n";
  file.replace(begin, file.find(end) + end.size() - begin, HeaderText(mrid, profiles, isNew));
  const std::string namespaceOfNew = "http://iec.ch/TC57/CIM100#";
  if (!isNew) {
    file.replace(file.find(namespaceOfNew), namespaceOfNew.size(), "http://iec.ch/TC57/2013/CIM-schema-cim16#");
  }
  return file;
}

/// The grid of these tests, with its equipment and states:
///
///     G  A --[Q1]-- B --L-- C --[Q2]-- D  Load      [Q3] open: E is alone, with the end of line K
///     |                     |
///     +---------K--- E --[Q3]--+                    U: a node without equipment
///
/// A and B lie in level V of station S, the others in level W of station T; bus "Main" is on A.
class TestGrid {
 public:
  TestGrid() {
    m_text.Station("T").Level("W", "T").Node("A").Node("B").Node("U");
    for (const char* const node : {"C", "D", "E"}) m_text.Node(node, "W");
    m_text.Equipment("BusbarSection", "Main", {"A"});
    m_text.Equipment("SynchronousMachine", "G", {"A"}, {{"SynchronousMachine.referencePriority", "1"}});
    m_text.Equipment("ConformLoad", "Load", {"D"}, {{"EnergyConsumer.p", "5"}});
    m_text.Equipment("ACLineSegment", "L", {"B", "C"}).Equipment("ACLineSegment", "K", {"A", "E"});
  }

  /// The switches, each "open", "closed" or "retained", which is closed.
  TestGrid& Switches(const char* q1, const char* q2, const char* q3) {
    return Switch("Q1", {"A", "B"}, q1).Switch("Q2", {"C", "D"}, q2).Switch("Q3", {"E", "C"}, q3);
  }

  ProfileText& Text() { return m_text; }

  std::string File(bool isNew = true) const {
    return FileText(m_text, "state", {isNew ? "CoreEquipment" : "EquipmentCore", "SteadyStateHypothesis"}, isNew);
  }

 private:
  TestGrid& Switch(const std::string& id, const std::vector<std::string>& nodes, const std::string& state) {
    m_text.Equipment("Breaker", id, nodes,
                     {{"Switch.open", state == "open" ? "true" : "false"},
                      {"Switch.retained", state == "retained" ? "true" : "false"}});
    return *this;
  }

  ProfileText m_text;
};

}  // namespace dtsdb::tools::cgmes::test
