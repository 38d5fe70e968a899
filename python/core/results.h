/// \file
/// The results of the analysis layer as the classes of dtsdb.results.
#pragma once

#include <pybind11/pybind11.h>

#include <string>
#include <vector>

#include "analysis/screening.h"
#include "analysis/switching.h"
#include "analysis/topology.h"
#include "breakerflow/flows.h"
#include "validation/message_catalog.h"

namespace dtsdb::python {

/// \name Results for Python, with the interpreter's lock
///@{
pybind11::object ToPython(const analysis::Validation& validation, Language language);
pybind11::object ToPython(const analysis::Topology& topology, Language language);
pybind11::object ToPython(const analysis::Outcome& outcome, Language language);
pybind11::object ToPython(const analysis::Effect& effect);
pybind11::object ToPython(const Flows& flows);
pybind11::object ToPython(const std::vector<analysis::Outage>& outages);
pybind11::object ToPython(const analysis::Screening& screening, Language language);
pybind11::list ToPython(const QList<Finding>& findings, Language language);
///@}

/// Outages as ToPython makes them, or of anything else that has the shape: sequences of pairs of texts.
std::vector<analysis::Outage> OutagesFrom(const pybind11::iterable& outages);

}  // namespace dtsdb::python
