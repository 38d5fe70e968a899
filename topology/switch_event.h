/// \file
/// A change of one component's state, as a person or a program asks for it.
#pragma once

#include <string>

namespace dtsdb {

/// A change of one component's state.
struct SwitchEvent {
  int type = 0;     ///< component type code of TP::tpSetCompStatus (docs/topology.md)
  bool on = false;  ///< closes or returns to service
  std::string id;   ///< identity of the component, in UTF-8
};

}  // namespace dtsdb
