// Written by scripts/generate from the description in schema/: change it there.
#include "model/records/hierarchy.h"

#include <cstddef>

#include "model/internal/serialize_fields.h"

// clang-format off

namespace dtsdb {
namespace {

// Name, type, place in the record, table referred to, unit, writers, meaning.
constexpr FieldInfo kCoFields[] = {
    {"id", FieldType::kText, offsetof(CO, id), KIND_NONE, "", "input", "company identity"},
    {"f1", FieldType::kF32, offsetof(CO, f1), KIND_NONE, "", "carried", "carried value"},
    {"f2", FieldType::kF32, offsetof(CO, f2), KIND_NONE, "", "carried", "carried value"},
    {"f3", FieldType::kF32, offsetof(CO, f3), KIND_NONE, "", "carried", "carried value"},
    {"f4", FieldType::kF32, offsetof(CO, f4), KIND_NONE, "", "carried", "carried value"},
    {"f5", FieldType::kF32, offsetof(CO, f5), KIND_NONE, "", "carried", "carried value"},
    {"f6", FieldType::kF32, offsetof(CO, f6), KIND_NONE, "", "carried", "carried value"},
    {"f7", FieldType::kF32, offsetof(CO, f7), KIND_NONE, "", "carried", "carried value"},
    {"f8", FieldType::kF32, offsetof(CO, f8), KIND_NONE, "", "carried", "carried value"},
    {"r_co_dv", FieldType::kI32, offsetof(CO, r_co_dv), KIND_R_CO_DV, "", "validation", "head of the R_CO_DV chain of this company, -1 none"},
};

constexpr FieldInfo kDvFields[] = {
    {"id", FieldType::kText, offsetof(DV, id), KIND_NONE, "", "input", "district identity"},
    {"co", FieldType::kText, offsetof(DV, co), KIND_CO, "", "input", "company identity"},
    {"f1", FieldType::kF32, offsetof(DV, f1), KIND_NONE, "", "carried", "carried value"},
    {"f2", FieldType::kF32, offsetof(DV, f2), KIND_NONE, "", "carried", "carried value"},
    {"f3", FieldType::kF32, offsetof(DV, f3), KIND_NONE, "", "carried", "carried value"},
    {"f4", FieldType::kF32, offsetof(DV, f4), KIND_NONE, "", "carried", "carried value"},
    {"f5", FieldType::kF32, offsetof(DV, f5), KIND_NONE, "", "carried", "carried value"},
    {"f6", FieldType::kF32, offsetof(DV, f6), KIND_NONE, "", "carried", "carried value"},
    {"f7", FieldType::kF32, offsetof(DV, f7), KIND_NONE, "", "carried", "carried value"},
    {"f8", FieldType::kF32, offsetof(DV, f8), KIND_NONE, "", "carried", "carried value"},
    {"r_co_dv", FieldType::kI32, offsetof(DV, r_co_dv), KIND_R_CO_DV, "", "validation", "number of the R_CO_DV row"},
    {"r_dv_st", FieldType::kI32, offsetof(DV, r_dv_st), KIND_R_DV_ST, "", "validation", "head of the R_DV_ST chain"},
    {"r_dv_ln", FieldType::kI32, offsetof(DV, r_dv_ln), KIND_R_DV_LN, "", "validation", "head of the R_DV_LN chain"},
    {"r_dv_dln", FieldType::kI32, offsetof(DV, r_dv_dln), KIND_R_DV_DLN, "", "validation", "head of the R_DV_DLN chain"},
};

constexpr FieldInfo kStFields[] = {
    {"id", FieldType::kText, offsetof(ST, id), KIND_NONE, "", "input", "station identity"},
    {"dv", FieldType::kText, offsetof(ST, dv), KIND_DV, "", "input", "district identity"},
    {"type", FieldType::kU8, offsetof(ST, type), KIND_NONE, "", "input", "station type, 0 to 8 in a valid model"},
    {"flag", FieldType::kU8, offsetof(ST, flag), KIND_NONE, "", "validation", "device mask of the station, reset by StartDetect: bit 1 a UN, 2 a CP, 4 a XF, 8 a LD, 16 a CB stands in it"},
    {"f1", FieldType::kF32, offsetof(ST, f1), KIND_NONE, "", "carried", "carried value"},
    {"f2", FieldType::kF32, offsetof(ST, f2), KIND_NONE, "", "carried", "carried value"},
    {"f3", FieldType::kF32, offsetof(ST, f3), KIND_NONE, "", "carried", "carried value"},
    {"f4", FieldType::kF32, offsetof(ST, f4), KIND_NONE, "", "carried", "carried value"},
    {"r_dv_st", FieldType::kI32, offsetof(ST, r_dv_st), KIND_R_DV_ST, "", "validation", "R_DV_ST row"},
    {"r_st_kv", FieldType::kI32, offsetof(ST, r_st_kv), KIND_R_ST_KV, "", "validation", "head of R_ST_KV chain"},
    {"r_st_xf", FieldType::kI32, offsetof(ST, r_st_xf), KIND_R_ST_XF, "", "validation", "head of R_ST_XF chain"},
};

constexpr FieldInfo kKvFields[] = {
    {"id", FieldType::kText, offsetof(KV, id), KIND_NONE, "", "input", "identity of the voltage level of a station (母线 in the messages)"},
    {"name", FieldType::kText, offsetof(KV, name), KIND_NONE, "", "carried", "second text of the KV; carried"},
    {"st", FieldType::kText, offsetof(KV, st), KIND_ST, "", "input", "station identity"},
    {"ibs", FieldType::kI32, offsetof(KV, ibs), KIND_BS, "", "topology", "number of the first bus-section of this KV"},
    {"ibsl", FieldType::kI32, offsetof(KV, ibsl), KIND_BSL, "", "topology", "number of the BSL entry of this KV"},
    {"vbase", FieldType::kF32, offsetof(KV, vbase), KIND_NONE, "kV", "input", "base voltage"},
    {"vmax", FieldType::kF32, offsetof(KV, vmax), KIND_NONE, "kV", "input", "upper voltage limit"},
    {"vmin", FieldType::kF32, offsetof(KV, vmin), KIND_NONE, "kV", "input", "lower voltage limit"},
    {"f1", FieldType::kF32, offsetof(KV, f1), KIND_NONE, "", "carried", "carried value"},
    {"f2", FieldType::kF32, offsetof(KV, f2), KIND_NONE, "", "carried", "carried value"},
    {"n2", FieldType::kI32, offsetof(KV, n2), KIND_NONE, "", "carried", "carried integer"},
    {"r_st_kv", FieldType::kI32, offsetof(KV, r_st_kv), KIND_R_ST_KV, "", "validation", "number of the R_ST_KV row"},
    {"r_kv_un", FieldType::kI32, offsetof(KV, r_kv_un), KIND_R_KV_UN, "", "validation", "head of R_KV_UN chain"},
    {"r_kv_cb", FieldType::kI32, offsetof(KV, r_kv_cb), KIND_R_KV_CB, "", "validation", "head of R_KV_CB chain"},
    {"r_kv_ld", FieldType::kI32, offsetof(KV, r_kv_ld), KIND_R_KV_LD, "", "validation", "head of R_KV_LD chain"},
    {"r_kv_cp", FieldType::kI32, offsetof(KV, r_kv_cp), KIND_R_KV_CP, "", "validation", "head of R_KV_CP chain"},
    {"r_kv_bus", FieldType::kI32, offsetof(KV, r_kv_bus), KIND_R_KV_BUS, "", "validation", "head of R_KV_BUS chain"},
    {"r_kv_zbr", FieldType::kI32, offsetof(KV, r_kv_zbr), KIND_R_KV_ZBR, "", "validation", "head of R_KV_ZBR chain"},
    {"r_kv_nd", FieldType::kI32, offsetof(KV, r_kv_nd), KIND_R_KV_ND, "", "validation", "head of R_KV_ND chain"},
};

}  // namespace

std::span<const FieldInfo> CO::Fields() { return kCoFields; }
void CO::Serialize(QArchive& ar) { internal::SerializeFields(this, kCoFields, ar); }

std::span<const FieldInfo> DV::Fields() { return kDvFields; }
void DV::Serialize(QArchive& ar) { internal::SerializeFields(this, kDvFields, ar); }

std::span<const FieldInfo> ST::Fields() { return kStFields; }
void ST::Serialize(QArchive& ar) { internal::SerializeFields(this, kStFields, ar); }

std::span<const FieldInfo> KV::Fields() { return kKvFields; }
void KV::Serialize(QArchive& ar) { internal::SerializeFields(this, kKvFields, ar); }

}  // namespace dtsdb
