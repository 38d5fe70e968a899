/// \file
/// How the states of breakers and components change, and which changes wait for the next incremental run.
#pragma once

#include "topology/component_types.h"
#include "topology/internal/network.h"

class dbDatabase;

namespace dtsdb::internal {

/// Changes states.
///
/// Reads the identities of the components, GLOBAL `bs_live`, `time` and `u1`, and the breakers' `ibs` and `izbs`.
/// Writes CB `flags` and the `status` of the components, STATUS `value`, TPTRACE, and ND_MARK in the search for a
/// parallel path.
class ComponentStates {
 public:
  explicit ComponentStates(const Network& network) : m_network(network) {}

  /// Switches component `id` of type code `type` on or off. True when the next run has to follow the change up: then a
  /// TPTRACE row waits for it.
  bool Switch(const char* id, int type, bool on) const;
  /// Gives the breakers the states of their status points.
  void RefreshBreakers() const;
  /// Takes status points and component states from the realtime database. The caller commits.
  void ReadStates(dbDatabase* db) const;
  /// Applies the rows of the realtime trace since the last run, and puts them into TPTRACE in place of what waits
  /// there. The caller commits.
  void ReadTrace(dbDatabase* db) const;

 private:
  bool ClosesWithinSection(const CB& cb) const;
  template <class Component>
  int Switch(const ComponentType<Component>& type, const QString& id, bool on) const;
  template <class Component>
  void ReadStatesOf(dbDatabase* db) const;
  void Apply(TPTRACE& row) const;

  Network m_network;
};

}  // namespace dtsdb::internal
