// Written by scripts/generate from the description in schema/: change it there.
#include "model/records/devices.h"

#include <cstddef>

#include "model/internal/serialize_fields.h"

// clang-format off

namespace dtsdb {
namespace {

// Name, type, place in the record, table referred to, unit, writers, meaning.
constexpr FieldInfo kNdFields[] = {
    {"id", FieldType::kText, offsetof(ND, id), KIND_NONE, "", "validation", "node identity"},
    {"ibs", FieldType::kI32, offsetof(ND, ibs), KIND_BS, "", "topology", "bus-section the node is in now"},
    {"ibs0", FieldType::kI32, offsetof(ND, ibs0), KIND_BS, "", "topology", "number of the structural bus-section of the node, set together with ibs by the first node pass"},
    {"flags", FieldType::kU32, offsetof(ND, flags), KIND_NONE, "", "validation, topology", "bit 1 node is dead, 2 carries a UN, 4 a LD, 8 a CP, 16 a BUS, 64 work mark of the node pass"},
    {"next", FieldType::kI32, offsetof(ND, next), KIND_ND, "", "topology", "next node in the ring of nodes of the same group"},
    {"n1", FieldType::kI32, offsetof(ND, n1), KIND_NONE, "", "topology", "work field of tpNodeConnect"},
    {"r_kv_nd", FieldType::kI32, offsetof(ND, r_kv_nd), KIND_R_KV_ND, "", "validation", "R_KV_ND row of the node"},
    {"r_nd_cb2", FieldType::kI32, offsetof(ND, r_nd_cb2), KIND_R_ND_CB2, "", "validation", "head of R_ND_CB2 chain"},
    {"r_nd_ln2", FieldType::kI32, offsetof(ND, r_nd_ln2), KIND_R_ND_LN2, "", "validation", "head of R_ND_LN2 chain"},
    {"r_nd_xf2", FieldType::kI32, offsetof(ND, r_nd_xf2), KIND_R_ND_XF2, "", "validation", "head of R_ND_XF2 chain"},
    {"r_nd_zbr2", FieldType::kI32, offsetof(ND, r_nd_zbr2), KIND_R_ND_ZBR2, "", "validation", "head of R_ND_ZBR2 chain"},
    {"r_nd_dln2", FieldType::kI32, offsetof(ND, r_nd_dln2), KIND_R_ND_DLN2, "", "validation", "head of R_ND_DLN2 chain"},
};

constexpr FieldInfo kBusFields[] = {
    {"id", FieldType::kText, offsetof(BUS, id), KIND_NONE, "", "input", "identity of the physical bus (物理母线 in the messages)"},
    {"kv", FieldType::kText, offsetof(BUS, kv), KIND_KV, "", "input", "identity of the owning KV"},
    {"nd", FieldType::kText, offsetof(BUS, nd), KIND_ND, "", "input", "node identity of the bus"},
    {"ind", FieldType::kI32, offsetof(BUS, ind), KIND_ND, "", "validation", "node number, into ND"},
    {"ibs", FieldType::kI32, offsetof(BUS, ibs), KIND_BS, "", "topology", "bus-section number"},
    {"ana_v", FieldType::kText, offsetof(BUS, ana_v), KIND_ANALOG, "", "input", "voltage measurement identity"},
    {"ana_a", FieldType::kText, offsetof(BUS, ana_a), KIND_ANALOG, "", "input", "angle measurement identity"},
    {"iana_v", FieldType::kI32, offsetof(BUS, iana_v), KIND_ANALOG, "", "validation", "index of ana_v in ANALOG, -1 absent"},
    {"iana_a", FieldType::kI32, offsetof(BUS, iana_a), KIND_ANALOG, "", "validation", "index of ana_a in ANALOG, -1 absent"},
    {"v", FieldType::kF64, offsetof(BUS, v), KIND_NONE, "", "input", "voltage value"},
    {"a", FieldType::kF64, offsetof(BUS, a), KIND_NONE, "", "input", "angle value"},
    {"f1", FieldType::kF32, offsetof(BUS, f1), KIND_NONE, "", "carried", "carried value"},
    {"f2", FieldType::kF32, offsetof(BUS, f2), KIND_NONE, "kV", "validation", "copy of KV.vmax, made by the validation"},
    {"f3", FieldType::kF32, offsetof(BUS, f3), KIND_NONE, "kV", "validation", "copy of KV.vmin, made by the validation"},
    {"tp_status", FieldType::kU32, offsetof(BUS, tp_status), KIND_NONE, "", "topology", "bit 1: the bus lies in a dead section"},
    {"r_kv_bus", FieldType::kI32, offsetof(BUS, r_kv_bus), KIND_R_KV_BUS, "", "validation", "number of the R_KV_BUS row of this bus"},
};

constexpr FieldInfo kUnFields[] = {
    {"id", FieldType::kText, offsetof(UN, id), KIND_NONE, "", "input", "generating unit identity"},
    {"kv", FieldType::kText, offsetof(UN, kv), KIND_KV, "", "input", "KV identity"},
    {"nd", FieldType::kText, offsetof(UN, nd), KIND_ND, "", "input", "node identity"},
    {"ind", FieldType::kI32, offsetof(UN, ind), KIND_ND, "", "validation", "node number"},
    {"ibs", FieldType::kI32, offsetof(UN, ibs), KIND_BS, "", "topology", "bus-section"},
    {"pmax", FieldType::kF32, offsetof(UN, pmax), KIND_NONE, "MW", "input", "upper output; the reference choice takes pmax - pcur as the margin of a unit"},
    {"f1", FieldType::kF32, offsetof(UN, f1), KIND_NONE, "", "carried", "carried value"},
    {"pcur", FieldType::kF32, offsetof(UN, pcur), KIND_NONE, "MW", "input", "lower term of that margin"},
    {"f2", FieldType::kF32, offsetof(UN, f2), KIND_NONE, "", "carried", "carried value"},
    {"f3", FieldType::kF32, offsetof(UN, f3), KIND_NONE, "", "carried", "carried value"},
    {"f4", FieldType::kF32, offsetof(UN, f4), KIND_NONE, "", "carried", "carried value"},
    {"f5", FieldType::kF32, offsetof(UN, f5), KIND_NONE, "", "carried", "carried value"},
    {"f6", FieldType::kF32, offsetof(UN, f6), KIND_NONE, "", "carried", "carried value"},
    {"ana_p", FieldType::kText, offsetof(UN, ana_p), KIND_ANALOG, "", "input", "P measurement"},
    {"iana_p", FieldType::kI32, offsetof(UN, iana_p), KIND_ANALOG, "", "validation", "index in ANALOG"},
    {"ana_q", FieldType::kText, offsetof(UN, ana_q), KIND_ANALOG, "", "input", "Q measurement"},
    {"iana_q", FieldType::kI32, offsetof(UN, iana_q), KIND_ANALOG, "", "validation", "index in ANALOG"},
    {"ana_v", FieldType::kText, offsetof(UN, ana_v), KIND_ANALOG, "", "input", "third measurement identity"},
    {"iana_v", FieldType::kI32, offsetof(UN, iana_v), KIND_ANALOG, "", "validation", "index of ana_v in ANALOG, -1 when absent"},
    {"p", FieldType::kF32, offsetof(UN, p), KIND_NONE, "MW", "input", "active power, input of the breaker flow"},
    {"q", FieldType::kF32, offsetof(UN, q), KIND_NONE, "Mvar", "input", "reactive power, input of the breaker flow"},
    {"f7", FieldType::kF32, offsetof(UN, f7), KIND_NONE, "", "carried", "carried value"},
    {"a", FieldType::kF32, offsetof(UN, a), KIND_NONE, "", "input", "value copied into ISLAND.ref_a when the unit becomes the reference"},
    {"f8", FieldType::kF32, offsetof(UN, f8), KIND_NONE, "", "carried", "carried value"},
    {"ref", FieldType::kI32, offsetof(UN, ref), KIND_NONE, "", "input, topology", "reference mark of the unit; default -1; the value 0 makes it a candidate"},
    {"f9", FieldType::kF32, offsetof(UN, f9), KIND_NONE, "", "carried", "carried value"},
    {"f10", FieldType::kF32, offsetof(UN, f10), KIND_NONE, "", "carried", "carried value"},
    {"status", FieldType::kU32, offsetof(UN, status), KIND_NONE, "", "input, topology", "component status bits 1 and 4; bit 16: reference chosen by the system"},
    {"tp_status", FieldType::kU32, offsetof(UN, tp_status), KIND_NONE, "", "topology", "bit 1: the unit lies in a dead section"},
    {"r_kv_un", FieldType::kI32, offsetof(UN, r_kv_un), KIND_R_KV_UN, "", "validation", "R_KV_UN row"},
};

constexpr FieldInfo kLdFields[] = {
    {"id", FieldType::kText, offsetof(LD, id), KIND_NONE, "", "input", "load identity"},
    {"kv", FieldType::kText, offsetof(LD, kv), KIND_KV, "", "input", "KV identity"},
    {"nd", FieldType::kText, offsetof(LD, nd), KIND_ND, "", "input", "node identity"},
    {"ind", FieldType::kI32, offsetof(LD, ind), KIND_ND, "", "validation", "node number"},
    {"ibs", FieldType::kI32, offsetof(LD, ibs), KIND_BS, "", "topology", "bus-section"},
    {"ana_p", FieldType::kText, offsetof(LD, ana_p), KIND_ANALOG, "", "input", "P measurement"},
    {"ana_q", FieldType::kText, offsetof(LD, ana_q), KIND_ANALOG, "", "input", "Q measurement"},
    {"ana_i", FieldType::kText, offsetof(LD, ana_i), KIND_ANALOG, "", "input", "third measurement identity"},
    {"ana_v", FieldType::kText, offsetof(LD, ana_v), KIND_ANALOG, "", "input", "V measurement"},
    {"iana_p", FieldType::kI32, offsetof(LD, iana_p), KIND_ANALOG, "", "validation", "index in ANALOG"},
    {"iana_q", FieldType::kI32, offsetof(LD, iana_q), KIND_ANALOG, "", "validation", "index in ANALOG"},
    {"iana_i", FieldType::kI32, offsetof(LD, iana_i), KIND_ANALOG, "", "validation", "index of ana_i in ANALOG, -1 when absent"},
    {"iana_v", FieldType::kI32, offsetof(LD, iana_v), KIND_ANALOG, "", "validation", "index in ANALOG"},
    {"status", FieldType::kU32, offsetof(LD, status), KIND_NONE, "", "input, topology", "component status bits 1 and 4"},
    {"tp_status", FieldType::kU32, offsetof(LD, tp_status), KIND_NONE, "", "topology", "bit 1: the load lies in a dead section"},
    {"f1", FieldType::kF32, offsetof(LD, f1), KIND_NONE, "", "carried", "carried value"},
    {"f2", FieldType::kF32, offsetof(LD, f2), KIND_NONE, "", "carried", "carried value"},
    {"p", FieldType::kF32, offsetof(LD, p), KIND_NONE, "MW", "input", "active power, input of the breaker flow"},
    {"q", FieldType::kF32, offsetof(LD, q), KIND_NONE, "Mvar", "input", "reactive power, input of the breaker flow"},
    {"f3", FieldType::kF32, offsetof(LD, f3), KIND_NONE, "", "carried", "carried value"},
    {"f4", FieldType::kF32, offsetof(LD, f4), KIND_NONE, "", "carried", "carried value"},
    {"f5", FieldType::kF32, offsetof(LD, f5), KIND_NONE, "", "carried", "carried value"},
    {"f6", FieldType::kF32, offsetof(LD, f6), KIND_NONE, "", "carried", "carried value"},
    {"f7", FieldType::kF32, offsetof(LD, f7), KIND_NONE, "", "carried", "carried value"},
    {"a", FieldType::kF32, offsetof(LD, a), KIND_NONE, "", "input", "value copied into ISLAND.ref_a when the load becomes the reference"},
    {"f9", FieldType::kF32, offsetof(LD, f9), KIND_NONE, "", "carried", "carried value"},
    {"ref", FieldType::kI32, offsetof(LD, ref), KIND_NONE, "", "input", "reference mark of the load; default -1; the value 0 makes it a candidate"},
    {"r_kv_ld", FieldType::kI32, offsetof(LD, r_kv_ld), KIND_R_KV_LD, "", "validation", "R_KV_LD row"},
};

constexpr FieldInfo kCpFields[] = {
    {"id", FieldType::kText, offsetof(CP, id), KIND_NONE, "", "input", "capacitor/reactor identity"},
    {"kv", FieldType::kText, offsetof(CP, kv), KIND_KV, "", "input", "KV identity"},
    {"nd", FieldType::kText, offsetof(CP, nd), KIND_ND, "", "input", "node identity"},
    {"ind", FieldType::kI32, offsetof(CP, ind), KIND_ND, "", "validation", "node number"},
    {"ibs", FieldType::kI32, offsetof(CP, ibs), KIND_BS, "", "topology", "bus-section"},
    {"ana_q", FieldType::kText, offsetof(CP, ana_q), KIND_ANALOG, "", "input", "reactive measurement identity"},
    {"iana_q", FieldType::kI32, offsetof(CP, iana_q), KIND_ANALOG, "", "validation", "index of ana_q in ANALOG"},
    {"status", FieldType::kU32, offsetof(CP, status), KIND_NONE, "", "input, topology", "component status bits 1 and 4"},
    {"tp_status", FieldType::kU32, offsetof(CP, tp_status), KIND_NONE, "", "topology", "bit 1: the device lies in a dead section"},
    {"f1", FieldType::kF32, offsetof(CP, f1), KIND_NONE, "", "carried", "carried value"},
    {"f2", FieldType::kF32, offsetof(CP, f2), KIND_NONE, "", "carried", "carried value"},
    {"f3", FieldType::kF32, offsetof(CP, f3), KIND_NONE, "", "carried", "carried value"},
    {"f4", FieldType::kF32, offsetof(CP, f4), KIND_NONE, "", "carried", "carried value"},
    {"p", FieldType::kF32, offsetof(CP, p), KIND_NONE, "MW", "input", "active power, input of the breaker flow"},
    {"q", FieldType::kF32, offsetof(CP, q), KIND_NONE, "Mvar", "input", "reactive power, input of the breaker flow"},
    {"f5", FieldType::kF32, offsetof(CP, f5), KIND_NONE, "", "carried", "carried value"},
    {"r_kv_cp", FieldType::kI32, offsetof(CP, r_kv_cp), KIND_R_KV_CP, "", "validation", "number of the R_KV_CP row"},
};

}  // namespace

std::span<const FieldInfo> ND::Fields() { return kNdFields; }
void ND::Serialize(QArchive& ar) { internal::SerializeFields(this, kNdFields, ar); }

std::span<const FieldInfo> BUS::Fields() { return kBusFields; }
void BUS::Serialize(QArchive& ar) { internal::SerializeFields(this, kBusFields, ar); }

std::span<const FieldInfo> UN::Fields() { return kUnFields; }
void UN::Serialize(QArchive& ar) { internal::SerializeFields(this, kUnFields, ar); }

std::span<const FieldInfo> LD::Fields() { return kLdFields; }
void LD::Serialize(QArchive& ar) { internal::SerializeFields(this, kLdFields, ar); }

std::span<const FieldInfo> CP::Fields() { return kCpFields; }
void CP::Serialize(QArchive& ar) { internal::SerializeFields(this, kCpFields, ar); }

}  // namespace dtsdb
