/// \file
/// The power through every closed breaker of a model or of a realtime database, as plain data.
#pragma once

#include <QString>
#include <vector>

#include "breakerflow/cbflow.h"

namespace dtsdb {

class DTSDB;

/// Where a breaker lies in its set.
enum class FlowClass { kNone, kRadial, kBridge, kLoop };

/// What became of a breaker.
enum class BreakerState {
  kOpen,         ///< open or dead: it carries nothing and belongs to no set
  kComputed,     ///< it has a flow
  kNotBalanced,  ///< its set has a surplus and wasn't computed
  kNoVoltage,    ///< it lies on a loop with a node that has no voltage
  kNotFinite,    ///< an injection of its set is infinite
};

/// What became of a set.
enum class FlowSetState {
  kBalanced,
  kLacksPower,   ///< computed, but its injections sum to less than zero: the flows don't fit somewhere
  kNotBalanced,  ///< it has a surplus and wasn't computed
  kNoVoltage,    ///< loops of it have no flows: a node has no voltage
};

/// \name Words for people and programs
///@{
const char* ClassName(FlowClass where);     ///< "radial", "bridge", "loop"; "" for none
const char* StateName(BreakerState state);  ///< such as "computed", "not balanced"
const char* StateName(FlowSetState state);  ///< such as "balanced", "lacks power"
///@}

/// A breaker. Identities are raw bytes, as in the model.
struct BreakerFlow {
  QString id;                                ///< identity of the breaker
  QString kv;                                ///< its voltage level
  QString nd;                                ///< its from and to node
  QString znd;                               ///< of the to end
  int set = -1;                              ///< its set, a place in Flows::sets; -1 for one that is open or dead
  FlowClass where = FlowClass::kNone;        ///< where it lies in its set
  BreakerState state = BreakerState::kOpen;  ///< what became of it
  float p = 0;  ///< MW from `nd` towards `znd`, as computed: no result unless `state` is kComputed
  float q = 0;  ///< Mvar
};

/// Nodes that closed live breakers join.
struct FlowSet {
  QString kv;                                    ///< the voltage level of its first breaker
  int nodes = 0;                                 ///< number of its nodes
  std::vector<int> breakers;                     ///< places in Flows::breakers, ascending
  FlowBalance surplus;                           ///< what is injected into its nodes together
  FlowSetState state = FlowSetState::kBalanced;  ///< what became of it
};

/// The flows of a network.
struct Flows {
  float tolerance = 0;                ///< of the balance test, MW and Mvar
  std::vector<BreakerFlow> breakers;  ///< all, open ones included, in the order of their identities
  std::vector<FlowSet> sets;          ///< sets of nodes that closed live breakers join

  /// Number of sets and of breakers with this state.
  int Count(FlowSetState state) const;
  int Count(BreakerState state) const;
};

/// How flows are computed.
struct FlowSettings {
  float tolerance = 0.01F;  ///< of the balance test, MW and Mvar; the absolute value counts
  /// A section without a voltage gets that of the first bus on it that has one, or else the base voltage of the level.
  /// Without this its loops have no flows.
  bool completesVoltages = true;
};

/// The flows of a model with a topology, from its tables, which aren't changed. To the last bit what a realtime
/// database would give that the model was written into; a model has no powers of DC lines, so these count as 0.
Flows ComputeFlows(const DTSDB& model, const FlowSettings& settings = {});

/// The flows of a realtime database that holds a topology, read in one transaction, which is ended. Nothing is written.
/// Where the database reports an error, the flows are those of what was read before.
Flows ComputeFlows(dbDatabase* db, const FlowSettings& settings = {});

/// Writes flows and classes into the rows of their breakers, as cbFlow::storeData does, and commits.
void StoreFlows(dbDatabase* db, const Flows& flows);

}  // namespace dtsdb
