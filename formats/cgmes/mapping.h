/// \file
/// What the mapping of all kinds of equipment works on and works at.
#pragma once

#include <map>
#include <tuple>
#include <vector>

#include "formats/cgmes/account.h"
#include "formats/cgmes/connections.h"
#include "formats/cgmes/places.h"
#include "formats/cgmes/set.h"
#include "formats/import/identities.h"
#include "formats/import_options.h"
#include "formats/input_rows.h"

namespace dtsdb::tools::cgmes {

/// What a measurement measures.
enum class Measured { kP, kQ, kI, kV, kAngle, kPosition, kOther };

/// A set on its way into a model. The steps of the mapping (steps.h) fill it in their order.
class Mapping {
 public:
  Mapping(const ProfileSet& set, const ImportOptions& options);

  const ProfileSet& set;
  const Objects& objects;
  const ImportOptions& options;
  const Connections connections;
  const Places places;
  Identities ids;
  Account account;
  InputRows rows;
  /// Identities of measurement points by equipment, terminal (Objects::kNone for the equipment as a whole) and what is
  /// measured.
  std::map<std::tuple<int, int, Measured>, QString> points;

  /// The equipment of a role that stands with `ends` terminals on connectivity nodes. Any other is left out and
  /// reported; so is equipment with two ends on one node.
  std::vector<int> Standing(Role role, std::size_t ends);
  /// True when equipment stands so; otherwise reports it.
  bool IsStanding(int equipment, std::size_t ends);

  int Terminal(int equipment, std::size_t end) const { return connections.TerminalsOf(equipment)[end]; }
  /// The level at a terminal, which must be on a connectivity node.
  const Level& LevelAt(int terminal) const;
  QString LevelId(int terminal) const { return ids.Id(KIND_KV, LevelAt(terminal).object); }
  QString StationId(int terminal) const { return ids.Id(KIND_ST, LevelAt(terminal).station); }
  QString DistrictId(int terminal) const;
  QString NodeId(int terminal) const { return ids.Id(KIND_ND, connections.NodeOf(terminal)); }
  /// What the name of equipment is made unique with: the real text of the identity of its first level.
  QString LevelText(int equipment) const;

  /// The measurement point of what is measured at a terminal, or else of its equipment as a whole if that has one
  /// terminal only. Null without one.
  QString Point(int terminal, Measured measured) const;
  /// The status point of a switch.
  QString StatusPoint(int equipment) const;

  bool IsOn(int terminal) const { return connections.IsOn(terminal); }
  bool IsOpen(int equipment) const { return connections.IsOpen(equipment); }
};

}  // namespace dtsdb::tools::cgmes
