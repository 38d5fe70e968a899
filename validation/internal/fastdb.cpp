#include "validation/internal/fastdb.h"

#include "model/exchange.h"

namespace dtsdb::internal {
namespace {

/// The model's input; everything else is derived from these tables.
constexpr TableKind kInputReaders[] = {
    KIND_ANALOG, KIND_BUS, KIND_CB, KIND_CO, KIND_CP,     KIND_DLN, KIND_DV, KIND_GLOBAL,
    KIND_KV,     KIND_LD,  KIND_LN, KIND_ST, KIND_STATUS, KIND_UN,  KIND_XF, KIND_ZBR,
};

/// The input but the measurements, which are others' to write, and what the validation derives from it.
constexpr TableKind kWriters[] = {
    KIND_BUS,      KIND_CB,        KIND_CB2,     KIND_CO,       KIND_CP,       KIND_DLN,       KIND_DLN2,
    KIND_DV,       KIND_GLOBAL,    KIND_KV,      KIND_LD,       KIND_LN,       KIND_LN2,       KIND_ND,
    KIND_R_CO_DV,  KIND_R_DV_DLN,  KIND_R_DV_LN, KIND_R_DV_ST,  KIND_R_KV_BUS, KIND_R_KV_CB,   KIND_R_KV_CP,
    KIND_R_KV_LD,  KIND_R_KV_ND,   KIND_R_KV_UN, KIND_R_KV_ZBR, KIND_R_ND_CB2, KIND_R_ND_DLN2, KIND_R_ND_LN2,
    KIND_R_ND_XF2, KIND_R_ND_ZBR2, KIND_R_ST_KV, KIND_R_ST_XF,  KIND_ST,       KIND_UN,        KIND_XF,
    KIND_XF2,      KIND_ZBR,       KIND_ZBR2,
};

}  // namespace

void ReadInput(DTSDB* model, dbDatabase* db) {
  if (!DTSDB_ASSERT(db != nullptr, "db != NULL") || model == nullptr) return;
  ReadTables(*model, db, kInputReaders);
  db->commit();
}

void WriteValidated(DTSDB* model, dbDatabase* db) {
  if (!DTSDB_ASSERT(db != nullptr, "db != NULL") || model == nullptr) return;
  WriteTables(*model, db, kWriters);
  db->commit();
}

}  // namespace dtsdb::internal
