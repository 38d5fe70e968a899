/// \file
/// Results of one station or voltage level: the options --station and --kv, and what belongs to such a place.
#pragma once

#include <string>

#include "analysis/topology.h"
#include "breakerflow/flows.h"
#include "command/command_line.h"
#include "model/dtsdb.h"

namespace dtsdb::tools {

/// What the user has asked for; empty for no restriction.
struct Place {
  std::string station;
  std::string level;

  bool IsEmpty() const { return station.empty() && level.empty(); }
};

/// The options --station and --kv.
void AddPlaceOptions(CommandLine& command, Place& place);

/// What belongs to a place. A branch belongs to the places of both its ends. Records that lie in no station, such as
/// companies, measurements and islands, belong to none.
class PlaceFilter {
 public:
  /// A Failure of usage, with the nearest names, when `database` has no such station or level, and when the level lies
  /// in another station. The database must outlive this.
  PlaceFilter(const Place& place, DTSDB& database);

  /// True when a record of the table belongs to the place; always for no restriction.
  bool Takes(TableKind table, const void* record) const;
  /// True when something at this level (raw bytes) of a station does.
  bool TakesLevel(const QString& level) const;

  /// Leaves in a topology what belongs to the place, and the islands that reach it with their whole counts.
  void Restrict(analysis::Topology& topology) const;
  /// Leaves in the flows the sets and breakers of the place, numbered anew.
  void Restrict(Flows& flows) const;

 private:
  bool IsEmpty() const { return m_station.isEmpty() && m_level.isEmpty(); }

  DTSDB& m_database;
  QString m_station;  // raw bytes, empty for any
  QString m_level;    // likewise; its station is then of no account
};

}  // namespace dtsdb::tools
