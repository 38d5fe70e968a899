// Written by scripts/generate from the description in schema/: change it there.
#include "model/table_info.h"

#include "model/records.h"

// clang-format off

namespace dtsdb {

std::span<const TableInfo, kTableCount> Tables() {
  static constexpr TableInfo kTables[] = {
      {KIND_ANALOG, "ANALOG", RecordKey::kIdentified, "analog measurement point (遥测)", &ANALOG::Fields},
      {KIND_BS, "BS", RecordKey::kNumbered, "bus-section", &BS::Fields},
      {KIND_BSL, "BSL", RecordKey::kNumbered, "entry of the bus-section list", &BSL::Fields},
      {KIND_BUS, "BUS", RecordKey::kIdentified, "physical bus on a voltage level", &BUS::Fields},
      {KIND_CB, "CB", RecordKey::kIdentified, "breaker or switch between two nodes of a voltage level", &CB::Fields},
      {KIND_CB2, "CB2", RecordKey::kIdentified, "end of a breaker", &CB2::Fields},
      {KIND_CHND, "CHND", RecordKey::kNumbered, "node that changed section in an incremental run", &CHND::Fields},
      {KIND_CO, "CO", RecordKey::kIdentified, "company", &CO::Fields},
      {KIND_CP, "CP", RecordKey::kIdentified, "capacitor or reactor", &CP::Fields},
      {KIND_DLN, "DLN", RecordKey::kIdentified, "DC line between two stations", &DLN::Fields},
      {KIND_DLN2, "DLN2", RecordKey::kIdentified, "end of a DC line", &DLN2::Fields},
      {KIND_DV, "DV", RecordKey::kIdentified, "district (分区), part of a company", &DV::Fields},
      {KIND_GLOBAL, "GLOBAL", RecordKey::kNumbered, "the single row of global state", &GLOBAL::Fields},
      {KIND_ISLAND, "ISLAND", RecordKey::kNumbered, "live island", &ISLAND::Fields},
      {KIND_KV, "KV", RecordKey::kIdentified, "voltage level of a station", &KV::Fields},
      {KIND_LD, "LD", RecordKey::kIdentified, "load", &LD::Fields},
      {KIND_LN, "LN", RecordKey::kIdentified, "AC line between two stations", &LN::Fields},
      {KIND_LN2, "LN2", RecordKey::kIdentified, "end of an AC line", &LN2::Fields},
      {KIND_ND, "ND", RecordKey::kIdentified, "electrical node (结点)", &ND::Fields},
      {KIND_R_CO_DV, "R_CO_DV", RecordKey::kRelation, "company to its districts", &R_CO_DV::Fields},
      {KIND_R_DV_DLN, "R_DV_DLN", RecordKey::kRelation, "district to its DC lines", &R_DV_DLN::Fields},
      {KIND_R_DV_LN, "R_DV_LN", RecordKey::kRelation, "district to its AC lines", &R_DV_LN::Fields},
      {KIND_R_DV_ST, "R_DV_ST", RecordKey::kRelation, "district to its stations", &R_DV_ST::Fields},
      {KIND_R_KV_BUS, "R_KV_BUS", RecordKey::kRelation, "voltage level to its buses", &R_KV_BUS::Fields},
      {KIND_R_KV_CB, "R_KV_CB", RecordKey::kRelation, "voltage level to its breakers", &R_KV_CB::Fields},
      {KIND_R_KV_CP, "R_KV_CP", RecordKey::kRelation, "voltage level to its capacitors and reactors", &R_KV_CP::Fields},
      {KIND_R_KV_LD, "R_KV_LD", RecordKey::kRelation, "voltage level to its loads", &R_KV_LD::Fields},
      {KIND_R_KV_ND, "R_KV_ND", RecordKey::kRelation, "voltage level to its nodes", &R_KV_ND::Fields},
      {KIND_R_KV_UN, "R_KV_UN", RecordKey::kRelation, "voltage level to its units", &R_KV_UN::Fields},
      {KIND_R_KV_ZBR, "R_KV_ZBR", RecordKey::kRelation, "voltage level to its zero-impedance branches", &R_KV_ZBR::Fields},
      {KIND_R_ND_CB2, "R_ND_CB2", RecordKey::kRelation, "node to the breaker ends on it", &R_ND_CB2::Fields},
      {KIND_R_ND_DLN2, "R_ND_DLN2", RecordKey::kRelation, "node to the DC line ends on it", &R_ND_DLN2::Fields},
      {KIND_R_ND_LN2, "R_ND_LN2", RecordKey::kRelation, "node to the line ends on it", &R_ND_LN2::Fields},
      {KIND_R_ND_XF2, "R_ND_XF2", RecordKey::kRelation, "node to the winding ends on it", &R_ND_XF2::Fields},
      {KIND_R_ND_ZBR2, "R_ND_ZBR2", RecordKey::kRelation, "node to the zero-impedance branch ends on it", &R_ND_ZBR2::Fields},
      {KIND_R_ST_KV, "R_ST_KV", RecordKey::kRelation, "station to its voltage levels", &R_ST_KV::Fields},
      {KIND_R_ST_XF, "R_ST_XF", RecordKey::kRelation, "station to its transformer windings", &R_ST_XF::Fields},
      {KIND_ST, "ST", RecordKey::kIdentified, "station (厂站), part of a district", &ST::Fields},
      {KIND_STATUS, "STATUS", RecordKey::kIdentified, "status point (遥信)", &STATUS::Fields},
      {KIND_TPL, "TPL", RecordKey::kNumbered, "topology log row", &TPL::Fields},
      {KIND_TPTRACE, "TPTRACE", RecordKey::kNumbered, "component change that waits for the next topology run", &TPTRACE::Fields},
      {KIND_UN, "UN", RecordKey::kIdentified, "generating unit", &UN::Fields},
      {KIND_XF, "XF", RecordKey::kIdentified, "transformer winding between two voltage levels of a station", &XF::Fields},
      {KIND_XF2, "XF2", RecordKey::kIdentified, "end of a transformer winding", &XF2::Fields},
      {KIND_ZBR, "ZBR", RecordKey::kIdentified, "zero-impedance branch, tied to a breaker", &ZBR::Fields},
      {KIND_ZBR2, "ZBR2", RecordKey::kIdentified, "end of a zero-impedance branch", &ZBR2::Fields},
  };
  return kTables;
}

}  // namespace dtsdb
