// Written by scripts/generate from the description in schema/: change it there.
#include "model/table_info.h"

#include "model/records.h"

// clang-format off

namespace dtsdb {

std::span<const TableInfo, kTableCount> Tables() {
  static constexpr TableInfo kTables[] = {
      {KIND_ANALOG, "ANALOG", RecordKey::Identified, "analog measurement point (遥测)", &ANALOG::Fields},
      {KIND_BS, "BS", RecordKey::Numbered, "bus-section", &BS::Fields},
      {KIND_BSL, "BSL", RecordKey::Numbered, "entry of the bus-section list", &BSL::Fields},
      {KIND_BUS, "BUS", RecordKey::Identified, "physical bus on a voltage level", &BUS::Fields},
      {KIND_CB, "CB", RecordKey::Identified, "breaker or switch between two nodes of a voltage level", &CB::Fields},
      {KIND_CB2, "CB2", RecordKey::Identified, "end of a breaker", &CB2::Fields},
      {KIND_CHND, "CHND", RecordKey::Numbered, "node that changed section in an incremental run", &CHND::Fields},
      {KIND_CO, "CO", RecordKey::Identified, "company", &CO::Fields},
      {KIND_CP, "CP", RecordKey::Identified, "capacitor or reactor", &CP::Fields},
      {KIND_DLN, "DLN", RecordKey::Identified, "DC line between two stations", &DLN::Fields},
      {KIND_DLN2, "DLN2", RecordKey::Identified, "end of a DC line", &DLN2::Fields},
      {KIND_DV, "DV", RecordKey::Identified, "district (分区), part of a company", &DV::Fields},
      {KIND_GLOBAL, "GLOBAL", RecordKey::Numbered, "the single row of global state", &GLOBAL::Fields},
      {KIND_ISLAND, "ISLAND", RecordKey::Numbered, "live island", &ISLAND::Fields},
      {KIND_KV, "KV", RecordKey::Identified, "voltage level of a station", &KV::Fields},
      {KIND_LD, "LD", RecordKey::Identified, "load", &LD::Fields},
      {KIND_LN, "LN", RecordKey::Identified, "AC line between two stations", &LN::Fields},
      {KIND_LN2, "LN2", RecordKey::Identified, "end of an AC line", &LN2::Fields},
      {KIND_ND, "ND", RecordKey::Identified, "electrical node (结点)", &ND::Fields},
      {KIND_R_CO_DV, "R_CO_DV", RecordKey::Relation, "company to its districts", &R_CO_DV::Fields},
      {KIND_R_DV_DLN, "R_DV_DLN", RecordKey::Relation, "district to its DC lines", &R_DV_DLN::Fields},
      {KIND_R_DV_LN, "R_DV_LN", RecordKey::Relation, "district to its AC lines", &R_DV_LN::Fields},
      {KIND_R_DV_ST, "R_DV_ST", RecordKey::Relation, "district to its stations", &R_DV_ST::Fields},
      {KIND_R_KV_BUS, "R_KV_BUS", RecordKey::Relation, "voltage level to its buses", &R_KV_BUS::Fields},
      {KIND_R_KV_CB, "R_KV_CB", RecordKey::Relation, "voltage level to its breakers", &R_KV_CB::Fields},
      {KIND_R_KV_CP, "R_KV_CP", RecordKey::Relation, "voltage level to its capacitors and reactors", &R_KV_CP::Fields},
      {KIND_R_KV_LD, "R_KV_LD", RecordKey::Relation, "voltage level to its loads", &R_KV_LD::Fields},
      {KIND_R_KV_ND, "R_KV_ND", RecordKey::Relation, "voltage level to its nodes", &R_KV_ND::Fields},
      {KIND_R_KV_UN, "R_KV_UN", RecordKey::Relation, "voltage level to its units", &R_KV_UN::Fields},
      {KIND_R_KV_ZBR, "R_KV_ZBR", RecordKey::Relation, "voltage level to its zero-impedance branches", &R_KV_ZBR::Fields},
      {KIND_R_ND_CB2, "R_ND_CB2", RecordKey::Relation, "node to the breaker ends on it", &R_ND_CB2::Fields},
      {KIND_R_ND_DLN2, "R_ND_DLN2", RecordKey::Relation, "node to the DC line ends on it", &R_ND_DLN2::Fields},
      {KIND_R_ND_LN2, "R_ND_LN2", RecordKey::Relation, "node to the line ends on it", &R_ND_LN2::Fields},
      {KIND_R_ND_XF2, "R_ND_XF2", RecordKey::Relation, "node to the winding ends on it", &R_ND_XF2::Fields},
      {KIND_R_ND_ZBR2, "R_ND_ZBR2", RecordKey::Relation, "node to the zero-impedance branch ends on it", &R_ND_ZBR2::Fields},
      {KIND_R_ST_KV, "R_ST_KV", RecordKey::Relation, "station to its voltage levels", &R_ST_KV::Fields},
      {KIND_R_ST_XF, "R_ST_XF", RecordKey::Relation, "station to its transformer windings", &R_ST_XF::Fields},
      {KIND_ST, "ST", RecordKey::Identified, "station (厂站), part of a district", &ST::Fields},
      {KIND_STATUS, "STATUS", RecordKey::Identified, "status point (遥信)", &STATUS::Fields},
      {KIND_TPL, "TPL", RecordKey::Numbered, "topology log row", &TPL::Fields},
      {KIND_TPTRACE, "TPTRACE", RecordKey::Numbered, "component change that waits for the next topology run", &TPTRACE::Fields},
      {KIND_UN, "UN", RecordKey::Identified, "generating unit", &UN::Fields},
      {KIND_XF, "XF", RecordKey::Identified, "transformer winding between two voltage levels of a station", &XF::Fields},
      {KIND_XF2, "XF2", RecordKey::Identified, "end of a transformer winding", &XF2::Fields},
      {KIND_ZBR, "ZBR", RecordKey::Identified, "zero-impedance branch, tied to a breaker", &ZBR::Fields},
      {KIND_ZBR2, "ZBR2", RecordKey::Identified, "end of a zero-impedance branch", &ZBR2::Fields},
  };
  return kTables;
}

}  // namespace dtsdb
