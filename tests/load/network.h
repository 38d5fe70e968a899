/// \file
/// The components that the writers of a load switch, and what their events leave in the log.
#pragma once

#include <string>
#include <vector>

#include "rtdb/volma_rtdb.h"

namespace dtsdb::load {

/// A component whose switching takes the supply of one load away or gives it back, and leaves that of all others. An
/// incremental run logs an event of it in one row: of a breaker that its load has come to the dead section or left it,
/// of a load that it was taken out or put back. Each load of the network belongs to one such component at most.
struct Switchable {
  std::string name;  ///< identity of the breaker or the load
  std::string load;  ///< identity of the load
  bool isBreaker = false;
};

/// The components of the network in a database whose topology is stored, every other one a breaker: the loads that are
/// live, alone on their node and behind one closed breaker. Levels on which the topology makes full runs are left out.
std::vector<Switchable> FindSwitchables(dbDatabase& database);

/// Who switches what: event `number` of a writer, counted from 0.
class Plan {
 public:
  /// Deals the components out to the writers, in an order that `seed` shuffles.
  Plan(std::vector<Switchable> components, int writers, unsigned seed);

  int Writers() const { return m_writers; }
  int Components() const { return static_cast<int>(m_components.size()); }
  const Switchable& Component(int place) const { return m_components[static_cast<std::size_t>(place)]; }

  /// The row number in the trace of a writer's event; writers have different ones.
  int RowOf(int writer, int number) const { return number * m_writers + writer; }
  /// The component that the event of a row switches.
  int ComponentOf(int row) const;
  /// Whether that event closes the breaker or switches the load on. Rounds of opening and closing follow each other.
  bool IsOn(int row) const { return row / m_writers / Share(row % m_writers) % 2 == 1; }

 private:
  /// The number of components of a writer.
  int Share(int writer) const { return (Components() - writer + m_writers - 1) / m_writers; }

  std::vector<Switchable> m_components;
  int m_writers;
};

}  // namespace dtsdb::load
