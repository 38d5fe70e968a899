#include "analysis/flows.h"

#include <utility>

#include "analysis/internal/guard.h"
#include "analysis/topology.h"

namespace dtsdb::analysis {
Result<Flows> WorkOutFlows(Model& model, const FlowSettings& settings) {
  if (!HasTopology(model)) {
    const Result<Topology> topology = WorkOutTopology(model);
    if (!topology) return tl::unexpected(topology.error());
  }
  return internal::Guarded(model.Name(),
                           [&]() -> Result<Flows> { return ComputeFlows(std::as_const(model.Tables()), settings); });
}

}  // namespace dtsdb::analysis
