/// \file
/// The way back from switching: the events that restore states.
#pragma once

#include <array>
#include <vector>

#include "model/dtsdb.h"
#include "topology/switch_event.h"

namespace dtsdb::analysis::internal {

/// The states of all components that can be switched, as they were when it was made.
class SwitchStates {
 public:
  explicit SwitchStates(DTSDB& database);

  /// The events, for one run, that bring `database`, which has the same records, back into these states; breakers
  /// first. `followsBreakers`: they are to be switched by the careful switching, which takes zero-impedance branches
  /// along with their breakers, and its marks on these are restored too.
  std::vector<SwitchEvent> EventsBack(DTSDB& database, bool followsBreakers) const;

 private:
  static constexpr std::size_t kTypes = 17;  ///< component type codes begin with 1

  std::array<std::vector<bool>, kTypes> m_off;  // by type code and logical number
  std::vector<bool> m_marks;                    // of the zero-impedance branches that are out with their breaker
};

}  // namespace dtsdb::analysis::internal
