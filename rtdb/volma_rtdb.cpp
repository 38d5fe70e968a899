#include "rtdb/volma_rtdb.h"

namespace dtsdb {

// Unassigned: a process may have several databases open, each with these tables.
#define DTSDB_REGISTER_TWIN(T, twin, writer) REGISTER_UNASSIGNED(twin);
DTSDB_TWINS(DTSDB_REGISTER_TWIN)
#undef DTSDB_REGISTER_TWIN

}  // namespace dtsdb
