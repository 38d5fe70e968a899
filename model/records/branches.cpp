// Written by scripts/generate from the description in schema/: change it there.
#include "model/records/branches.h"

#include <cstddef>

#include "model/internal/serialize_fields.h"

// clang-format off

namespace dtsdb {
namespace {

// Name, type, place in the record, table referred to, unit, writers, meaning.
constexpr FieldInfo kCbFields[] = {
    {"id", FieldType::kText, offsetof(CB, id), KIND_NONE, "", "input", "breaker identity"},
    {"kv", FieldType::kText, offsetof(CB, kv), KIND_KV, "", "input", "KV identity"},
    {"flags", FieldType::kU32, offsetof(CB, flags), KIND_NONE, "", "input, validation, topology", "bits 1 and 4: breaker type, exactly one set in a valid model; 0x100: the breaker is open; 0x800: read as open by the realtime exchange; 0x2000: a ZBR stands on the breaker, set by the validation and by AddZBR"},
    {"status_id", FieldType::kText, offsetof(CB, status_id), KIND_STATUS, "", "input", "identity of the STATUS point of the breaker"},
    {"istatus", FieldType::kI32, offsetof(CB, istatus), KIND_STATUS, "", "validation", "index of status_id in STATUS, -1 absent"},
    {"cb2", FieldType::kI32, offsetof(CB, cb2), KIND_CB2, "", "validation", "number of the CB2 row of the from end"},
    {"zcb2", FieldType::kI32, offsetof(CB, zcb2), KIND_CB2, "", "validation", "number of the CB2 row of the to end"},
    {"nd", FieldType::kText, offsetof(CB, nd), KIND_ND, "", "input", "from-end node identity"},
    {"ind", FieldType::kI32, offsetof(CB, ind), KIND_ND, "", "validation", "from-end node number"},
    {"znd", FieldType::kText, offsetof(CB, znd), KIND_ND, "", "input", "to-end node identity"},
    {"iznd", FieldType::kI32, offsetof(CB, iznd), KIND_ND, "", "validation", "to-end node number"},
    {"ibs", FieldType::kI32, offsetof(CB, ibs), KIND_BS, "", "topology", "from-end bus-section"},
    {"izbs", FieldType::kI32, offsetof(CB, izbs), KIND_BS, "", "topology", "to-end bus-section"},
    {"tp_status", FieldType::kU32, offsetof(CB, tp_status), KIND_NONE, "", "topology, breaker flow", "bit 1 from side isolated, 2 to side isolated, 4 both sides dead; bits 8, 16, 32: the breaker's class in the breaker flow"},
    {"r_kv_cb", FieldType::kI32, offsetof(CB, r_kv_cb), KIND_R_KV_CB, "", "validation", "number of the R_KV_CB row"},
};

constexpr FieldInfo kLnFields[] = {
    {"id", FieldType::kText, offsetof(LN, id), KIND_NONE, "", "input", "line identity"},
    {"type", FieldType::kI8, offsetof(LN, type), KIND_NONE, "", "carried", "carried byte"},
    {"dv", FieldType::kText, offsetof(LN, dv), KIND_DV, "", "input", "district identity"},
    {"nd", FieldType::kText, offsetof(LN, nd), KIND_ND, "", "input", "from node"},
    {"ind", FieldType::kI32, offsetof(LN, ind), KIND_ND, "", "validation", "from node number"},
    {"znd", FieldType::kText, offsetof(LN, znd), KIND_ND, "", "input", "to node"},
    {"iznd", FieldType::kI32, offsetof(LN, iznd), KIND_ND, "", "validation", "to node number"},
    {"ibs", FieldType::kI32, offsetof(LN, ibs), KIND_BS, "", "topology", "from bus-section"},
    {"izbs", FieldType::kI32, offsetof(LN, izbs), KIND_BS, "", "topology", "to bus-section"},
    {"ln2", FieldType::kI32, offsetof(LN, ln2), KIND_LN2, "", "validation", "LN2 row of from end"},
    {"zln2", FieldType::kI32, offsetof(LN, zln2), KIND_LN2, "", "validation", "LN2 row of to end"},
    {"st", FieldType::kText, offsetof(LN, st), KIND_ST, "", "input", "from station"},
    {"zst", FieldType::kText, offsetof(LN, zst), KIND_ST, "", "input", "to station"},
    {"kv", FieldType::kText, offsetof(LN, kv), KIND_KV, "", "input", "from KV"},
    {"zkv", FieldType::kText, offsetof(LN, zkv), KIND_KV, "", "input", "to KV"},
    {"ana_p", FieldType::kText, offsetof(LN, ana_p), KIND_ANALOG, "", "input", "from P"},
    {"ana_q", FieldType::kText, offsetof(LN, ana_q), KIND_ANALOG, "", "input", "from Q"},
    {"ana_i", FieldType::kText, offsetof(LN, ana_i), KIND_ANALOG, "", "input", "from I"},
    {"zana_p", FieldType::kText, offsetof(LN, zana_p), KIND_ANALOG, "", "input", "to P"},
    {"zana_q", FieldType::kText, offsetof(LN, zana_q), KIND_ANALOG, "", "input", "to Q"},
    {"zana_i", FieldType::kText, offsetof(LN, zana_i), KIND_ANALOG, "", "input", "to I"},
    {"iana_p", FieldType::kI32, offsetof(LN, iana_p), KIND_ANALOG, "", "validation", "index"},
    {"iana_q", FieldType::kI32, offsetof(LN, iana_q), KIND_ANALOG, "", "validation", "index"},
    {"iana_i", FieldType::kI32, offsetof(LN, iana_i), KIND_ANALOG, "", "validation", "index"},
    {"izana_p", FieldType::kI32, offsetof(LN, izana_p), KIND_ANALOG, "", "validation", "index"},
    {"izana_q", FieldType::kI32, offsetof(LN, izana_q), KIND_ANALOG, "", "validation", "index"},
    {"izana_i", FieldType::kI32, offsetof(LN, izana_i), KIND_ANALOG, "", "validation", "index"},
    {"f1", FieldType::kF32, offsetof(LN, f1), KIND_NONE, "", "carried", "carried value"},
    {"f2", FieldType::kF32, offsetof(LN, f2), KIND_NONE, "", "carried", "carried value"},
    {"f3", FieldType::kF32, offsetof(LN, f3), KIND_NONE, "", "carried", "carried value"},
    {"f4", FieldType::kF32, offsetof(LN, f4), KIND_NONE, "", "carried", "carried value"},
    {"f5", FieldType::kF32, offsetof(LN, f5), KIND_NONE, "", "carried", "carried value"},
    {"f6", FieldType::kF32, offsetof(LN, f6), KIND_NONE, "", "carried", "carried value"},
    {"f7", FieldType::kF32, offsetof(LN, f7), KIND_NONE, "", "carried", "carried value"},
    {"f8", FieldType::kF32, offsetof(LN, f8), KIND_NONE, "", "carried", "carried value"},
    {"p", FieldType::kF32, offsetof(LN, p), KIND_NONE, "MW", "input", "from P, input of the breaker flow"},
    {"q", FieldType::kF32, offsetof(LN, q), KIND_NONE, "Mvar", "input", "from Q, input of the breaker flow"},
    {"i", FieldType::kF32, offsetof(LN, i), KIND_NONE, "A", "input", "from I"},
    {"zp", FieldType::kF32, offsetof(LN, zp), KIND_NONE, "MW", "input", "to P, input of the breaker flow"},
    {"zq", FieldType::kF32, offsetof(LN, zq), KIND_NONE, "Mvar", "input", "to Q, input of the breaker flow"},
    {"zi", FieldType::kF32, offsetof(LN, zi), KIND_NONE, "A", "input", "to I"},
    {"f9", FieldType::kF32, offsetof(LN, f9), KIND_NONE, "", "carried", "carried value"},
    {"f10", FieldType::kF32, offsetof(LN, f10), KIND_NONE, "", "carried", "carried value"},
    {"status", FieldType::kU32, offsetof(LN, status), KIND_NONE, "", "input, validation, topology", "bit 4 out of service, 1 from end open, 2 to end open; bit 64: the line's district is that of its to end only"},
    {"tp_status", FieldType::kU32, offsetof(LN, tp_status), KIND_NONE, "", "topology", "bit 1 from end isolated, 2 to end isolated, 4 both dead"},
    {"r_dv_ln", FieldType::kI32, offsetof(LN, r_dv_ln), KIND_R_DV_LN, "", "validation", "R_DV_LN row"},
};

constexpr FieldInfo kDlnFields[] = {
    {"id", FieldType::kText, offsetof(DLN, id), KIND_NONE, "", "input", "DC line identity"},
    {"dv", FieldType::kText, offsetof(DLN, dv), KIND_DV, "", "input", "district identity"},
    {"nd", FieldType::kText, offsetof(DLN, nd), KIND_ND, "", "input", "from node identity"},
    {"ind", FieldType::kI32, offsetof(DLN, ind), KIND_ND, "", "validation", "from node number"},
    {"znd", FieldType::kText, offsetof(DLN, znd), KIND_ND, "", "input", "to node identity"},
    {"iznd", FieldType::kI32, offsetof(DLN, iznd), KIND_ND, "", "validation", "to node number"},
    {"ibs", FieldType::kI32, offsetof(DLN, ibs), KIND_BS, "", "topology", "from bus-section"},
    {"izbs", FieldType::kI32, offsetof(DLN, izbs), KIND_BS, "", "topology", "to bus-section"},
    {"dln2", FieldType::kI32, offsetof(DLN, dln2), KIND_DLN2, "", "validation", "DLN2 row of from end"},
    {"zdln2", FieldType::kI32, offsetof(DLN, zdln2), KIND_DLN2, "", "validation", "DLN2 row of to end"},
    {"st", FieldType::kText, offsetof(DLN, st), KIND_ST, "", "input", "from station identity"},
    {"zst", FieldType::kText, offsetof(DLN, zst), KIND_ST, "", "input", "to station identity"},
    {"kv", FieldType::kText, offsetof(DLN, kv), KIND_KV, "", "input", "from KV identity"},
    {"zkv", FieldType::kText, offsetof(DLN, zkv), KIND_KV, "", "input", "to KV identity"},
    {"ana_p", FieldType::kText, offsetof(DLN, ana_p), KIND_ANALOG, "", "input", "from P measurement"},
    {"ana_q", FieldType::kText, offsetof(DLN, ana_q), KIND_ANALOG, "", "input", "from Q measurement"},
    {"ana_i", FieldType::kText, offsetof(DLN, ana_i), KIND_ANALOG, "", "input", "from I measurement"},
    {"zana_p", FieldType::kText, offsetof(DLN, zana_p), KIND_ANALOG, "", "input", "to P measurement"},
    {"zana_q", FieldType::kText, offsetof(DLN, zana_q), KIND_ANALOG, "", "input", "to Q measurement"},
    {"zana_i", FieldType::kText, offsetof(DLN, zana_i), KIND_ANALOG, "", "input", "to I measurement"},
    {"iana_p", FieldType::kI32, offsetof(DLN, iana_p), KIND_ANALOG, "", "validation", "index in ANALOG"},
    {"iana_q", FieldType::kI32, offsetof(DLN, iana_q), KIND_ANALOG, "", "validation", "index in ANALOG"},
    {"iana_i", FieldType::kI32, offsetof(DLN, iana_i), KIND_ANALOG, "", "validation", "index in ANALOG"},
    {"izana_p", FieldType::kI32, offsetof(DLN, izana_p), KIND_ANALOG, "", "validation", "index in ANALOG"},
    {"izana_q", FieldType::kI32, offsetof(DLN, izana_q), KIND_ANALOG, "", "validation", "index in ANALOG"},
    {"izana_i", FieldType::kI32, offsetof(DLN, izana_i), KIND_ANALOG, "", "validation", "index in ANALOG"},
    {"status", FieldType::kU32, offsetof(DLN, status), KIND_NONE, "", "input, validation, topology", "bit 4 out of service, 1 from end open, 2 to end open; bit 32: the line's district is that of its to end only"},
    {"tp_status", FieldType::kU32, offsetof(DLN, tp_status), KIND_NONE, "", "topology", "bit 1 from end isolated, 2 to end isolated, 4 both dead"},
    {"r_dv_dln", FieldType::kI32, offsetof(DLN, r_dv_dln), KIND_R_DV_DLN, "", "validation", "R_DV_DLN row"},
};

constexpr FieldInfo kXfFields[] = {
    {"id", FieldType::kText, offsetof(XF, id), KIND_NONE, "", "input", "transformer winding identity"},
    {"type", FieldType::kU8, offsetof(XF, type), KIND_NONE, "", "input", "winding type, 1, 2 or 3 in a valid model"},
    {"f0", FieldType::kF32, offsetof(XF, f0), KIND_NONE, "", "carried", "carried value"},
    {"st", FieldType::kText, offsetof(XF, st), KIND_ST, "", "input", "station identity"},
    {"kv", FieldType::kText, offsetof(XF, kv), KIND_KV, "", "input", "from KV"},
    {"zkv", FieldType::kText, offsetof(XF, zkv), KIND_KV, "", "input", "to KV"},
    {"nd", FieldType::kText, offsetof(XF, nd), KIND_ND, "", "input", "from-end (high voltage) node identity"},
    {"znd", FieldType::kText, offsetof(XF, znd), KIND_ND, "", "input", "to-end (low voltage) node identity"},
    {"ind", FieldType::kI32, offsetof(XF, ind), KIND_ND, "", "validation", "from node number"},
    {"iznd", FieldType::kI32, offsetof(XF, iznd), KIND_ND, "", "validation", "to node number"},
    {"ibs", FieldType::kI32, offsetof(XF, ibs), KIND_BS, "", "topology", "from bus-section"},
    {"izbs", FieldType::kI32, offsetof(XF, izbs), KIND_BS, "", "topology", "to bus-section"},
    {"xf2", FieldType::kI32, offsetof(XF, xf2), KIND_XF2, "", "validation", "XF2 row of from end"},
    {"zxf2", FieldType::kI32, offsetof(XF, zxf2), KIND_XF2, "", "validation", "XF2 row of to end"},
    {"ana_p", FieldType::kText, offsetof(XF, ana_p), KIND_ANALOG, "", "input", "from P"},
    {"ana_q", FieldType::kText, offsetof(XF, ana_q), KIND_ANALOG, "", "input", "from Q"},
    {"ana_i", FieldType::kText, offsetof(XF, ana_i), KIND_ANALOG, "", "input", "from I"},
    {"ana_t", FieldType::kText, offsetof(XF, ana_t), KIND_ANALOG, "", "carried", "fourth measurement identity of the from end; carried, not validated"},
    {"zana_p", FieldType::kText, offsetof(XF, zana_p), KIND_ANALOG, "", "input", "to P"},
    {"zana_q", FieldType::kText, offsetof(XF, zana_q), KIND_ANALOG, "", "input", "to Q"},
    {"zana_i", FieldType::kText, offsetof(XF, zana_i), KIND_ANALOG, "", "input", "to I"},
    {"zana_t", FieldType::kText, offsetof(XF, zana_t), KIND_ANALOG, "", "carried", "fourth measurement identity of the to end; carried, not validated"},
    {"iana_p", FieldType::kI32, offsetof(XF, iana_p), KIND_ANALOG, "", "validation", "index"},
    {"iana_q", FieldType::kI32, offsetof(XF, iana_q), KIND_ANALOG, "", "validation", "index"},
    {"iana_i", FieldType::kI32, offsetof(XF, iana_i), KIND_ANALOG, "", "validation", "index"},
    {"iana_t", FieldType::kI32, offsetof(XF, iana_t), KIND_ANALOG, "", "carried", "carried integer"},
    {"izana_p", FieldType::kI32, offsetof(XF, izana_p), KIND_ANALOG, "", "validation", "index"},
    {"izana_q", FieldType::kI32, offsetof(XF, izana_q), KIND_ANALOG, "", "validation", "index"},
    {"izana_i", FieldType::kI32, offsetof(XF, izana_i), KIND_ANALOG, "", "validation", "index"},
    {"izana_t", FieldType::kI32, offsetof(XF, izana_t), KIND_ANALOG, "", "carried", "carried integer"},
    {"p", FieldType::kF32, offsetof(XF, p), KIND_NONE, "MW", "input", "from P, input of the breaker flow"},
    {"q", FieldType::kF32, offsetof(XF, q), KIND_NONE, "Mvar", "input", "from Q, input of the breaker flow"},
    {"i", FieldType::kF32, offsetof(XF, i), KIND_NONE, "A", "input", "from I"},
    {"zp", FieldType::kF32, offsetof(XF, zp), KIND_NONE, "MW", "input", "to P, input of the breaker flow"},
    {"zq", FieldType::kF32, offsetof(XF, zq), KIND_NONE, "Mvar", "input", "to Q, input of the breaker flow"},
    {"zi", FieldType::kF32, offsetof(XF, zi), KIND_NONE, "A", "input", "to I"},
    {"f1", FieldType::kF32, offsetof(XF, f1), KIND_NONE, "", "carried", "carried value"},
    {"f2", FieldType::kF32, offsetof(XF, f2), KIND_NONE, "", "carried", "carried value"},
    {"status", FieldType::kU32, offsetof(XF, status), KIND_NONE, "", "input, topology", "bit 1 out of service, 4 from end open, 8 to end open"},
    {"tp_status", FieldType::kU32, offsetof(XF, tp_status), KIND_NONE, "", "topology", "bit 1 from end isolated, 2 to end isolated, 4 both dead"},
    {"r_st_xf", FieldType::kI32, offsetof(XF, r_st_xf), KIND_R_ST_XF, "", "validation", "R_ST_XF row"},
    {"f3", FieldType::kF32, offsetof(XF, f3), KIND_NONE, "", "carried", "carried value"},
    {"f4", FieldType::kF32, offsetof(XF, f4), KIND_NONE, "", "carried", "carried value"},
    {"f5", FieldType::kF32, offsetof(XF, f5), KIND_NONE, "", "carried", "carried value"},
    {"f6", FieldType::kF32, offsetof(XF, f6), KIND_NONE, "", "carried", "carried value"},
    {"f7", FieldType::kF32, offsetof(XF, f7), KIND_NONE, "", "carried", "carried value"},
    {"f8", FieldType::kF32, offsetof(XF, f8), KIND_NONE, "", "carried", "carried value"},
    {"f9", FieldType::kF32, offsetof(XF, f9), KIND_NONE, "", "carried", "carried value"},
    {"f10", FieldType::kF32, offsetof(XF, f10), KIND_NONE, "", "carried", "carried value"},
    {"n1", FieldType::kI32, offsetof(XF, n1), KIND_NONE, "", "carried", "carried value"},
    {"n2", FieldType::kI32, offsetof(XF, n2), KIND_NONE, "", "carried", "carried value"},
    {"f11", FieldType::kF32, offsetof(XF, f11), KIND_NONE, "", "carried", "carried value"},
    {"f12", FieldType::kF32, offsetof(XF, f12), KIND_NONE, "", "carried", "carried value"},
    {"n3", FieldType::kI32, offsetof(XF, n3), KIND_NONE, "", "carried", "carried value"},
    {"n4", FieldType::kI32, offsetof(XF, n4), KIND_NONE, "", "carried", "carried value"},
    {"n5", FieldType::kI32, offsetof(XF, n5), KIND_NONE, "", "carried", "carried value"},
    {"n6", FieldType::kI32, offsetof(XF, n6), KIND_NONE, "", "carried", "carried value"},
    {"f13", FieldType::kF32, offsetof(XF, f13), KIND_NONE, "", "carried", "carried value"},
    {"f14", FieldType::kF32, offsetof(XF, f14), KIND_NONE, "", "carried", "carried value"},
    {"n7", FieldType::kI32, offsetof(XF, n7), KIND_NONE, "", "carried", "carried value"},
    {"n8", FieldType::kI32, offsetof(XF, n8), KIND_NONE, "", "carried", "carried value"},
    {"flag", FieldType::kI8, offsetof(XF, flag), KIND_NONE, "", "carried", "carried value"},
};

constexpr FieldInfo kZbrFields[] = {
    {"id", FieldType::kText, offsetof(ZBR, id), KIND_NONE, "", "input", "zero-impedance branch identity"},
    {"cb", FieldType::kText, offsetof(ZBR, cb), KIND_CB, "", "input", "identity of the associated CB"},
    {"icb", FieldType::kI32, offsetof(ZBR, icb), KIND_CB, "", "validation", "number of the associated CB, -1 when it is not found"},
    {"ind", FieldType::kI32, offsetof(ZBR, ind), KIND_ND, "", "validation", "from node number, copied from CB"},
    {"iznd", FieldType::kI32, offsetof(ZBR, iznd), KIND_ND, "", "validation", "to node number, copied from CB"},
    {"ibs", FieldType::kI32, offsetof(ZBR, ibs), KIND_BS, "", "topology", "from bus-section"},
    {"izbs", FieldType::kI32, offsetof(ZBR, izbs), KIND_BS, "", "topology", "to bus-section"},
    {"zbr2", FieldType::kI32, offsetof(ZBR, zbr2), KIND_ZBR2, "", "validation", "ZBR2 row of from end"},
    {"zzbr2", FieldType::kI32, offsetof(ZBR, zzbr2), KIND_ZBR2, "", "validation", "ZBR2 row of to end"},
    {"ana_p", FieldType::kText, offsetof(ZBR, ana_p), KIND_ANALOG, "", "input", "P measurement"},
    {"ana_q", FieldType::kText, offsetof(ZBR, ana_q), KIND_ANALOG, "", "input", "Q measurement"},
    {"ana_i", FieldType::kText, offsetof(ZBR, ana_i), KIND_ANALOG, "", "input", "I measurement"},
    {"iana_p", FieldType::kI32, offsetof(ZBR, iana_p), KIND_ANALOG, "", "validation", "index"},
    {"iana_q", FieldType::kI32, offsetof(ZBR, iana_q), KIND_ANALOG, "", "validation", "index"},
    {"iana_i", FieldType::kI32, offsetof(ZBR, iana_i), KIND_ANALOG, "", "validation", "index"},
    {"p", FieldType::kF32, offsetof(ZBR, p), KIND_NONE, "MW", "input", "P value"},
    {"q", FieldType::kF32, offsetof(ZBR, q), KIND_NONE, "Mvar", "input", "Q value"},
    {"i", FieldType::kF32, offsetof(ZBR, i), KIND_NONE, "A", "input", "I value"},
    {"status", FieldType::kU32, offsetof(ZBR, status), KIND_NONE, "", "input, topology", "bit 1 out of service, 4 from end open, 16 to end open"},
    {"tp_status", FieldType::kU32, offsetof(ZBR, tp_status), KIND_NONE, "", "topology", "bit 1 from end isolated, 2 to end isolated, 4 both dead; bit 256: out of service together with its breaker, by the careful switching"},
    {"r_kv_zbr", FieldType::kI32, offsetof(ZBR, r_kv_zbr), KIND_R_KV_ZBR, "", "validation", "R_KV_ZBR row"},
};

}  // namespace

std::span<const FieldInfo> CB::Fields() { return kCbFields; }
void CB::Serialize(QArchive& ar) { internal::SerializeFields(this, kCbFields, ar); }

std::span<const FieldInfo> LN::Fields() { return kLnFields; }
void LN::Serialize(QArchive& ar) { internal::SerializeFields(this, kLnFields, ar); }

std::span<const FieldInfo> DLN::Fields() { return kDlnFields; }
void DLN::Serialize(QArchive& ar) { internal::SerializeFields(this, kDlnFields, ar); }

std::span<const FieldInfo> XF::Fields() { return kXfFields; }
void XF::Serialize(QArchive& ar) { internal::SerializeFields(this, kXfFields, ar); }

std::span<const FieldInfo> ZBR::Fields() { return kZbrFields; }
void ZBR::Serialize(QArchive& ar) { internal::SerializeFields(this, kZbrFields, ar); }

}  // namespace dtsdb
