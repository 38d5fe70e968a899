/// \file
/// What a load has left, judged independently of the task.
#pragma once

#include <string>
#include <vector>

#include "tests/load/network.h"

namespace dtsdb::load {

struct LastState {
  int wrongStates = 0;                   ///< components that aren't in the state of their last event
  std::vector<std::string> differences;  ///< of the stored topology from that of a full run, the first few
};

/// `events` is the number of each writer's events.
LastState JudgeLastState(const std::string& store, const Plan& plan, const std::vector<int>& events);

}  // namespace dtsdb::load
