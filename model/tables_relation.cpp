// Written by scripts/generate from the description in schema/: change it there.
/// \file
/// The tables of Relation records, compiled once for all that use them.
#include "model/table_image.h"
#include "model/tables.h"

namespace dtsdb {

template class tTable<R_CO_DV>;
template class tTable<R_DV_DLN>;
template class tTable<R_DV_LN>;
template class tTable<R_DV_ST>;
template class tTable<R_KV_BUS>;
template class tTable<R_KV_CB>;
template class tTable<R_KV_CP>;
template class tTable<R_KV_LD>;
template class tTable<R_KV_ND>;
template class tTable<R_KV_UN>;
template class tTable<R_KV_ZBR>;
template class tTable<R_ND_CB2>;
template class tTable<R_ND_DLN2>;
template class tTable<R_ND_LN2>;
template class tTable<R_ND_XF2>;
template class tTable<R_ND_ZBR2>;
template class tTable<R_ST_KV>;
template class tTable<R_ST_XF>;

}  // namespace dtsdb
