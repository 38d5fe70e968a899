// Written by scripts/generate from the description in schema/: change it there.
/// \file
/// The tables of Numbered records, compiled once for all that use them.
#include "model/table_image.h"
#include "model/tables.h"

namespace dtsdb {

template class tTable<BS>;
template class tTable<BSL>;
template class tTable<CHND>;
template class tTable<GLOBAL>;
template class tTable<ISLAND>;
template class tTable<TPL>;
template class tTable<TPTRACE>;

}  // namespace dtsdb
