// Written by scripts/generate from the description in schema/: change it there.
/// \file
/// The tables of Identified records, compiled once for all that use them.
#include "model/table_image.h"
#include "model/tables.h"

namespace dtsdb {

template class tTable<ANALOG>;
template class tTable<BUS>;
template class tTable<CB>;
template class tTable<CB2>;
template class tTable<CO>;
template class tTable<CP>;
template class tTable<DLN>;
template class tTable<DLN2>;
template class tTable<DV>;
template class tTable<KV>;
template class tTable<LD>;
template class tTable<LN>;
template class tTable<LN2>;
template class tTable<ND>;
template class tTable<ST>;
template class tTable<STATUS>;
template class tTable<UN>;
template class tTable<XF>;
template class tTable<XF2>;
template class tTable<ZBR>;
template class tTable<ZBR2>;

}  // namespace dtsdb
