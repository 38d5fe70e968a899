/// \file
/// The realtime database that the system is built with: its own (rtdb/fastdb.h) or, configured with
/// -DDTSDB_RTDB=fastdb, an installed FastDB. Both have the same interface; nothing else asks which one it is.
#pragma once

#ifdef DTSDB_RTDB_FASTDB
#include <fastdb.h>
#else
#include "rtdb/fastdb.h"
#endif
