/// \file
/// The state of a cbFlow as the stages see it, for what stands beside the class.
#pragma once

#include "breakerflow/internal/network.h"

namespace dtsdb::internal {

/// A friend of cbFlow.
class FlowAccess {
 public:
  explicit FlowAccess(cbFlow& flow) : m_flow(flow) {}

  FlowNetwork Network() const { return m_flow.Network(); }
  FlowDevices Devices() const { return m_flow.Devices(); }
  FlowGroups Groups() const { return m_flow.Groups(); }

 private:
  cbFlow& m_flow;
};

}  // namespace dtsdb::internal
