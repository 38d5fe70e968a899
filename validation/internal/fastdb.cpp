#include "validation/internal/fastdb.h"

#include "model/exchange.h"

namespace dtsdb::internal {
namespace {

/// The model's input; everything else is derived from these tables.
constexpr TableExchange kInputReaders[] = {
    DTSDB_READER(ANALOG), DTSDB_READER(BUS), DTSDB_READER(CB), DTSDB_READER(CO),
    DTSDB_READER(CP),     DTSDB_READER(DLN), DTSDB_READER(DV), DTSDB_READER(GLOBAL),
    DTSDB_READER(KV),     DTSDB_READER(LD),  DTSDB_READER(LN), DTSDB_READER(ST),
    DTSDB_READER(STATUS), DTSDB_READER(UN),  DTSDB_READER(XF), DTSDB_READER(ZBR),
};

/// The input but the measurements, which are others' to write, and what the validation derives from it.
constexpr TableExchange kWriters[] = {
    DTSDB_WRITER(BUS),      DTSDB_WRITER(CB),        DTSDB_WRITER(CB2),       DTSDB_WRITER(CO),
    DTSDB_WRITER(CP),       DTSDB_WRITER(DLN),       DTSDB_WRITER(DLN2),      DTSDB_WRITER(DV),
    DTSDB_WRITER(GLOBAL),   DTSDB_WRITER(KV),        DTSDB_WRITER(LD),        DTSDB_WRITER(LN),
    DTSDB_WRITER(LN2),      DTSDB_WRITER(ND),        DTSDB_WRITER(R_CO_DV),   DTSDB_WRITER(R_DV_DLN),
    DTSDB_WRITER(R_DV_LN),  DTSDB_WRITER(R_DV_ST),   DTSDB_WRITER(R_KV_BUS),  DTSDB_WRITER(R_KV_CB),
    DTSDB_WRITER(R_KV_CP),  DTSDB_WRITER(R_KV_LD),   DTSDB_WRITER(R_KV_ND),   DTSDB_WRITER(R_KV_UN),
    DTSDB_WRITER(R_KV_ZBR), DTSDB_WRITER(R_ND_CB2),  DTSDB_WRITER(R_ND_DLN2), DTSDB_WRITER(R_ND_LN2),
    DTSDB_WRITER(R_ND_XF2), DTSDB_WRITER(R_ND_ZBR2), DTSDB_WRITER(R_ST_KV),   DTSDB_WRITER(R_ST_XF),
    DTSDB_WRITER(ST),       DTSDB_WRITER(UN),        DTSDB_WRITER(XF),        DTSDB_WRITER(XF2),
    DTSDB_WRITER(ZBR),      DTSDB_WRITER(ZBR2),
};

}  // namespace

void ReadInput(DTSDB* model, dbDatabase* db) {
  if (!DTSDB_ASSERT(db != nullptr, "db != NULL") || model == nullptr) return;
  ExchangeTables(*model, db, kInputReaders);
  db->commit();
}

void WriteValidated(DTSDB* model, dbDatabase* db) {
  if (!DTSDB_ASSERT(db != nullptr, "db != NULL") || model == nullptr) return;
  ExchangeTables(*model, db, kWriters);
  db->commit();
}

}  // namespace dtsdb::internal
