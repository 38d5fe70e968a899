// Written by scripts/generate from the description in schema/: change it there.
#include "model/records/relations_of_owners.h"

#include <cstddef>

#include "model/internal/serialize_fields.h"

// clang-format off

namespace dtsdb {
namespace {

// Name, type, place in the record, table referred to, unit, writers, meaning.
constexpr FieldInfo kRCoDvFields[] = {
    {"co_id", FieldType::kText, offsetof(R_CO_DV, co_id), KIND_CO, "", "validation", "identity of the parent"},
    {"dv_id", FieldType::kText, offsetof(R_CO_DV, dv_id), KIND_DV, "", "validation", "identity of the child"},
    {"ico", FieldType::kI32, offsetof(R_CO_DV, ico), KIND_CO, "", "validation", "number of the parent record"},
    {"idv", FieldType::kI32, offsetof(R_CO_DV, idv), KIND_DV, "", "validation", "number of the child record"},
    {"next", FieldType::kI32, offsetof(R_CO_DV, next), KIND_R_CO_DV, "", "validation", "next row of the parent's chain, -1 at the end"},
    {"prev", FieldType::kI32, offsetof(R_CO_DV, prev), KIND_R_CO_DV, "", "validation", "previous row of the parent's chain, -1 at the first row"},
};

constexpr FieldInfo kRDvDlnFields[] = {
    {"dv_id", FieldType::kText, offsetof(R_DV_DLN, dv_id), KIND_DV, "", "validation", "identity of the parent"},
    {"dln_id", FieldType::kText, offsetof(R_DV_DLN, dln_id), KIND_DLN, "", "validation", "identity of the child"},
    {"idv", FieldType::kI32, offsetof(R_DV_DLN, idv), KIND_DV, "", "validation", "number of the parent record"},
    {"idln", FieldType::kI32, offsetof(R_DV_DLN, idln), KIND_DLN, "", "validation", "number of the child record"},
    {"next", FieldType::kI32, offsetof(R_DV_DLN, next), KIND_R_DV_DLN, "", "validation", "next row of the parent's chain, -1 at the end"},
    {"prev", FieldType::kI32, offsetof(R_DV_DLN, prev), KIND_R_DV_DLN, "", "validation", "previous row of the parent's chain, -1 at the first row"},
};

constexpr FieldInfo kRDvLnFields[] = {
    {"dv_id", FieldType::kText, offsetof(R_DV_LN, dv_id), KIND_DV, "", "validation", "identity of the parent"},
    {"ln_id", FieldType::kText, offsetof(R_DV_LN, ln_id), KIND_LN, "", "validation", "identity of the child"},
    {"idv", FieldType::kI32, offsetof(R_DV_LN, idv), KIND_DV, "", "validation", "number of the parent record"},
    {"iln", FieldType::kI32, offsetof(R_DV_LN, iln), KIND_LN, "", "validation", "number of the child record"},
    {"next", FieldType::kI32, offsetof(R_DV_LN, next), KIND_R_DV_LN, "", "validation", "next row of the parent's chain, -1 at the end"},
    {"prev", FieldType::kI32, offsetof(R_DV_LN, prev), KIND_R_DV_LN, "", "validation", "previous row of the parent's chain, -1 at the first row"},
};

constexpr FieldInfo kRDvStFields[] = {
    {"dv_id", FieldType::kText, offsetof(R_DV_ST, dv_id), KIND_DV, "", "validation", "identity of the parent"},
    {"st_id", FieldType::kText, offsetof(R_DV_ST, st_id), KIND_ST, "", "validation", "identity of the child"},
    {"idv", FieldType::kI32, offsetof(R_DV_ST, idv), KIND_DV, "", "validation", "number of the parent record"},
    {"ist", FieldType::kI32, offsetof(R_DV_ST, ist), KIND_ST, "", "validation", "number of the child record"},
    {"next", FieldType::kI32, offsetof(R_DV_ST, next), KIND_R_DV_ST, "", "validation", "next row of the parent's chain, -1 at the end"},
    {"prev", FieldType::kI32, offsetof(R_DV_ST, prev), KIND_R_DV_ST, "", "validation", "previous row of the parent's chain, -1 at the first row"},
};

constexpr FieldInfo kRStKvFields[] = {
    {"st_id", FieldType::kText, offsetof(R_ST_KV, st_id), KIND_ST, "", "validation", "identity of the parent"},
    {"kv_id", FieldType::kText, offsetof(R_ST_KV, kv_id), KIND_KV, "", "validation", "identity of the child"},
    {"ist", FieldType::kI32, offsetof(R_ST_KV, ist), KIND_ST, "", "validation", "number of the parent record"},
    {"ikv", FieldType::kI32, offsetof(R_ST_KV, ikv), KIND_KV, "", "validation", "number of the child record"},
    {"next", FieldType::kI32, offsetof(R_ST_KV, next), KIND_R_ST_KV, "", "validation", "next row of the parent's chain, -1 at the end"},
    {"prev", FieldType::kI32, offsetof(R_ST_KV, prev), KIND_R_ST_KV, "", "validation", "previous row of the parent's chain, -1 at the first row"},
};

constexpr FieldInfo kRStXfFields[] = {
    {"st_id", FieldType::kText, offsetof(R_ST_XF, st_id), KIND_ST, "", "validation", "identity of the parent"},
    {"xf_id", FieldType::kText, offsetof(R_ST_XF, xf_id), KIND_XF, "", "validation", "identity of the child"},
    {"ist", FieldType::kI32, offsetof(R_ST_XF, ist), KIND_ST, "", "validation", "number of the parent record"},
    {"ixf", FieldType::kI32, offsetof(R_ST_XF, ixf), KIND_XF, "", "validation", "number of the child record"},
    {"next", FieldType::kI32, offsetof(R_ST_XF, next), KIND_R_ST_XF, "", "validation", "next row of the parent's chain, -1 at the end"},
    {"prev", FieldType::kI32, offsetof(R_ST_XF, prev), KIND_R_ST_XF, "", "validation", "previous row of the parent's chain, -1 at the first row"},
};

}  // namespace

std::span<const FieldInfo> R_CO_DV::Fields() { return kRCoDvFields; }
void R_CO_DV::Serialize(QArchive& ar) { internal::SerializeFields(this, kRCoDvFields, ar); }

std::span<const FieldInfo> R_DV_DLN::Fields() { return kRDvDlnFields; }
void R_DV_DLN::Serialize(QArchive& ar) { internal::SerializeFields(this, kRDvDlnFields, ar); }

std::span<const FieldInfo> R_DV_LN::Fields() { return kRDvLnFields; }
void R_DV_LN::Serialize(QArchive& ar) { internal::SerializeFields(this, kRDvLnFields, ar); }

std::span<const FieldInfo> R_DV_ST::Fields() { return kRDvStFields; }
void R_DV_ST::Serialize(QArchive& ar) { internal::SerializeFields(this, kRDvStFields, ar); }

std::span<const FieldInfo> R_ST_KV::Fields() { return kRStKvFields; }
void R_ST_KV::Serialize(QArchive& ar) { internal::SerializeFields(this, kRStKvFields, ar); }

std::span<const FieldInfo> R_ST_XF::Fields() { return kRStXfFields; }
void R_ST_XF::Serialize(QArchive& ar) { internal::SerializeFields(this, kRStXfFields, ar); }

}  // namespace dtsdb
