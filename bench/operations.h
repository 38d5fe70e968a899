/// \file
/// The switching operations that are measured.
#pragma once

#include <QByteArray>
#include <vector>

#include "topology/tp.h"

namespace dtsdb::bench {

/// A component that is switched off and on again.
struct Operation {
  const char* name;
  int type;  ///< type code of tpSetCompStatus
  QByteArray id;
};

/// A closed bus coupler, the breaker of a feeder, the only line of a station, whose loss splits its island, and a line
/// in the meshes. None on a voltage level where a branch has an open end: beside one a run goes over everything.
/// `network` has been validated and has the topology of `topology`; it is left as it was. Throws when there is none.
std::vector<Operation> ChooseOperations(DTSDB& network, TP& topology);

}  // namespace dtsdb::bench
