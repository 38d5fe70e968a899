/// \file
/// What is switched when components go out.
#pragma once

#include <string>
#include <vector>

#include "analysis/screening.h"
#include "model/dtsdb.h"
#include "topology/switch_event.h"

namespace dtsdb::analysis::internal {

/// An event and the number of its component.
struct NumberedEvent {
  SwitchEvent event;
  int number = -1;
};

/// The number of a component in its table, -1 when there is no such table or record.
int NumberOf(DTSDB& tables, const OutageComponent& component);

/// That the component isn't there, with the nearest identities, or that its table has no outages; empty when it is.
std::string WhyUnknown(DTSDB& tables, const OutageComponent& component);

/// The components of `table` that are in service; of BUS all.
std::vector<OutageComponent> InService(DTSDB& tables, const std::string& table);

/// The events of an outage whose components are all known. What is out already is left out, and nothing comes twice.
std::vector<NumberedEvent> EventsOf(DTSDB& tables, const Outage& outage);

}  // namespace dtsdb::analysis::internal
