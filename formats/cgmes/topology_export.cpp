#include "formats/cgmes/topology_export.h"

#include <algorithm>
#include <filesystem>
#include <sstream>
#include <system_error>

#include "formats/cgmes/profile_writer.h"
#include "formats/cgmes/topological_nodes.h"
#include "formats/files.h"

namespace fs = std::filesystem;

namespace dtsdb::tools::cgmes {
namespace {

/// What the profiles that were read hand on to those that are written.
struct Origin {
  std::string version = "2.4.15";
  std::string scenarioTime;
  std::string authority;
  std::vector<std::string> dependsOn;
};

/// The words of a profile's row: its kind, version and time.
struct ProfileWords {
  explicit ProfileWords(const ImportReport::Identity& row) {
    std::istringstream words(row.identity);
    words >> kind >> version >> time;
  }
  std::string kind;
  std::string version;
  std::string time;
};

/// The state's time and authority count, and those of the equipment where there is no state.
Origin OriginOf(const ImportReport& objects, const std::vector<TopologicalNode>& nodes) {
  Origin origin;
  const bool usesBorder = std::any_of(nodes.begin(), nodes.end(), [](const auto& node) { return node.isGiven; });
  for (const char* const kind : {"EQ", "SSH", "TPBD"}) {
    for (const ImportReport::Identity& row : objects.parts) {
      const ProfileWords words(row);
      if (row.table != part_of::kProfile || words.kind != kind) continue;
      const bool isBorder = words.kind == "TPBD";
      if (!isBorder || usesBorder) origin.dependsOn.push_back(row.mrid);
      if (isBorder) continue;
      origin.version = words.version;
      if (!words.time.empty()) origin.scenarioTime = words.time;
      if (!row.name.empty()) origin.authority = row.name;
    }
  }
  auto& mrids = origin.dependsOn;
  for (auto mrid = mrids.begin(); mrid != mrids.end();) {  // a file may contain several profiles
    mrid = std::find(mrids.begin(), mrid, *mrid) == mrid ? mrid + 1 : mrids.erase(mrid);
  }
  return origin;
}

/// A time as names of files have it: 20220616T2330Z.
std::string ShortTime(const std::string& time) {
  std::string digits;
  for (const char c : time) {
    if (c >= '0' && c <= '9') digits += c;
  }
  constexpr std::size_t kDate = 8;
  constexpr std::size_t kToMinute = 12;
  return digits.substr(0, kDate) + "T" + (digits + "0000").substr(kDate, kToMinute - kDate) + "Z";
}

/// The actor that a modelling authority set stands for: the host of its URI.
std::string ActorOf(const std::string& authority) {
  const std::size_t scheme = authority.find("://");
  std::string host = scheme == std::string::npos ? authority : authority.substr(scheme + 3);
  host = host.substr(0, host.find('/'));
  std::replace_if(
      host.begin(), host.end(), [](unsigned char c) { return c < 0x80 && !std::isalnum(c) && c != '.' && c != '-'; },
      '-');
  return host;
}

/// The writing of the two files.
class Export {
 public:
  Export(const Origin& origin, std::string folder, std::string created)
      : m_origin(origin), m_folder(std::move(folder)), m_created(std::move(created)) {
    if (m_origin.scenarioTime.empty()) m_origin.scenarioTime = m_created;
  }

  std::string WriteNodes(const std::vector<TopologicalNode>& nodes) {
    std::string contents;
    for (const TopologicalNode& node : nodes) contents += node.mrid + '\n';
    const Header header = MakeHeader(ProfileKind::kTopology, m_origin.dependsOn, contents);
    m_topology = header.mrid;
    std::string path = PathOf(header.kind);
    ProfileWriter file(path, header);
    for (const TopologicalNode& node : nodes) WriteNode(node, file);
    file.Finish();
    return path;
  }

  std::string WriteIslands(const std::vector<TopologicalIsland>& islands) {
    std::string contents;
    for (const TopologicalIsland& island : islands) contents += island.mrid + '\n';
    const Header header = MakeHeader(ProfileKind::kStateVariables, {m_topology}, contents);
    std::string path = PathOf(header.kind);
    ProfileWriter file(path, header);
    for (const TopologicalIsland& island : islands) {
      file.Define("TopologicalIsland", island.mrid);
      file.Name(island.name, island.mrid);
      if (!island.reference.empty()) file.Refer("TopologicalIsland.AngleRefTopologicalNode", island.reference);
      for (const std::string& node : island.nodes) file.Refer("TopologicalIsland.TopologicalNodes", node);
      file.EndObject();
    }
    file.Finish();
    return path;
  }

 private:
  Header MakeHeader(ProfileKind kind, const std::vector<std::string>& dependsOn, const std::string& contents) const {
    std::string all = m_created + '\n' + m_origin.scenarioTime + '\n';
    for (const std::string& mrid : dependsOn) all += mrid + '\n';
    return {.kind = kind,
            .version = m_origin.version,
            .mrid = DerivedMrid(ShortName(kind), all + contents),
            .created = m_created,
            .scenarioTime = m_origin.scenarioTime,
            .authority = m_origin.authority,
            .dependsOn = dependsOn};
  }

  /// TIME_PROCESS_ACTOR_PROFILE_VERSION.xml, with no process.
  std::string PathOf(ProfileKind kind) const {
    const std::string name =
        ShortTime(m_origin.scenarioTime) + "__" + ActorOf(m_origin.authority) + "_" + ShortName(kind) + "_1.xml";
    return (fs::path(m_folder) / name).string();
  }

  /// A topological node that a boundary set defines stands there; so does the link of that set's connectivity node.
  static void WriteNode(const TopologicalNode& node, ProfileWriter& file) {
    if (!node.isGiven) {
      file.Define("TopologicalNode", node.mrid);
      file.Name(node.name, node.mrid);
      if (!node.baseVoltage.empty()) file.Refer("TopologicalNode.BaseVoltage", node.baseVoltage);
      if (!node.container.empty()) file.Refer("TopologicalNode.ConnectivityNodeContainer", node.container);
      file.EndObject();
    }
    for (const Member& member : node.nodes) {
      if (member.isLinked) continue;
      file.About("ConnectivityNode", member.mrid);
      file.Refer("ConnectivityNode.TopologicalNode", node.mrid);
      file.EndObject();
    }
    for (const std::string& terminal : node.terminals) {
      file.About("Terminal", terminal);
      file.Refer("Terminal.TopologicalNode", node.mrid);
      file.EndObject();
    }
  }

  Origin m_origin;
  std::string m_folder;
  std::string m_created;
  std::string m_topology;  // mRID of the TP written
};

}  // namespace

ExportedTopology ExportTopology(DTSDB& tables, const ImportReport& objects, const std::string& folder,
                                const std::string& created) {
  const std::vector<TopologicalNode> nodes = TopologicalNodes(tables, objects);
  const std::vector<TopologicalIsland> islands = TopologicalIslands(tables, nodes);
  std::error_code error;
  fs::create_directories(folder, error);
  if (error) RefuseFile(folder, "can't be made: " + error.message());
  Export writing(OriginOf(objects, nodes), folder, created);
  ExportedTopology exported;
  exported.files.push_back(writing.WriteNodes(nodes));
  exported.files.push_back(writing.WriteIslands(islands));
  exported.nodes = static_cast<int>(nodes.size());
  exported.islands = static_cast<int>(islands.size());
  exported.withoutVoltage = static_cast<int>(std::count_if(
      nodes.begin(), nodes.end(), [](const auto& node) { return !node.isGiven && node.baseVoltage.empty(); }));
  return exported;
}

}  // namespace dtsdb::tools::cgmes
