#include "formats/cgmes/profile.h"

#include <QString>
#include <algorithm>

namespace dtsdb::tools::cgmes {
namespace {

struct KindRow {
  ProfileKind kind;
  const char* shortName;
  std::vector<const char*> words;  ///< in the URIs of the profiles, of 2.4.15 and of 3.0
};

/// The first row with a word that the URI has counts.
const std::vector<KindRow>& Kinds() {
  static const std::vector<KindRow> rows = {
      {ProfileKind::kBoundary, "EQBD", {"/EquipmentBoundary"}},
      {ProfileKind::kTopologyBoundary, "TPBD", {"/TopologyBoundary"}},
      {ProfileKind::kEquipment, "EQ", {"/Equipment", "/CoreEquipment", "/Operation-", "/ShortCircuit-"}},
      {ProfileKind::kSteadyState, "SSH", {"/SteadyStateHypothesis"}},
      {ProfileKind::kTopology, "TP", {"/Topology"}},
      {ProfileKind::kStateVariables, "SV", {"/StateVariables"}},
      {ProfileKind::kGeographical, "GL", {"/GeographicalLocation"}},
      {ProfileKind::kOther, "other", {}},
  };
  return rows;
}

}  // namespace

const char* ShortName(ProfileKind kind) {
  const auto& rows = Kinds();
  return std::find_if(rows.begin(), rows.end(), [kind](const KindRow& row) { return row.kind == kind; })->shortName;
}

ProfileKind KindOfProfile(QStringView uri) {
  for (const KindRow& row : Kinds()) {
    for (const char* const word : row.words) {
      if (uri.contains(QLatin1String(word))) return row.kind;
    }
  }
  return ProfileKind::kOther;
}

bool Profile::Is(ProfileKind kind) const { return std::find(kinds.begin(), kinds.end(), kind) != kinds.end(); }

std::string Profile::KindNames() const {
  std::string names;
  for (const ProfileKind kind : kinds) {
    const std::string name = ShortName(kind);
    if (names.find(name) == std::string::npos) names += (names.empty() ? "" : ", ") + name;
  }
  return names;
}

}  // namespace dtsdb::tools::cgmes
