// Written by scripts/generate from the description in schema/: change it there.
#include "model/records/relations_of_levels.h"

#include <cstddef>

#include "model/internal/serialize_fields.h"

// clang-format off

namespace dtsdb {
namespace {

// Name, type, place in the record, table referred to, unit, writers, meaning.
constexpr FieldInfo kRKvBusFields[] = {
    {"kv_id", FieldType::kText, offsetof(R_KV_BUS, kv_id), KIND_KV, "", "validation", "identity of the parent"},
    {"bus_id", FieldType::kText, offsetof(R_KV_BUS, bus_id), KIND_BUS, "", "validation", "identity of the child"},
    {"ikv", FieldType::kI32, offsetof(R_KV_BUS, ikv), KIND_KV, "", "validation", "number of the parent record"},
    {"ibus", FieldType::kI32, offsetof(R_KV_BUS, ibus), KIND_BUS, "", "validation", "number of the child record"},
    {"next", FieldType::kI32, offsetof(R_KV_BUS, next), KIND_R_KV_BUS, "", "validation", "next row of the parent's chain, -1 at the end"},
    {"prev", FieldType::kI32, offsetof(R_KV_BUS, prev), KIND_R_KV_BUS, "", "validation", "previous row of the parent's chain, -1 at the first row"},
};

constexpr FieldInfo kRKvCbFields[] = {
    {"kv_id", FieldType::kText, offsetof(R_KV_CB, kv_id), KIND_KV, "", "validation", "identity of the parent"},
    {"cb_id", FieldType::kText, offsetof(R_KV_CB, cb_id), KIND_CB, "", "validation", "identity of the child"},
    {"ikv", FieldType::kI32, offsetof(R_KV_CB, ikv), KIND_KV, "", "validation", "number of the parent record"},
    {"icb", FieldType::kI32, offsetof(R_KV_CB, icb), KIND_CB, "", "validation", "number of the child record"},
    {"next", FieldType::kI32, offsetof(R_KV_CB, next), KIND_R_KV_CB, "", "validation", "next row of the parent's chain, -1 at the end"},
    {"prev", FieldType::kI32, offsetof(R_KV_CB, prev), KIND_R_KV_CB, "", "validation", "previous row of the parent's chain, -1 at the first row"},
};

constexpr FieldInfo kRKvCpFields[] = {
    {"kv_id", FieldType::kText, offsetof(R_KV_CP, kv_id), KIND_KV, "", "validation", "identity of the parent"},
    {"cp_id", FieldType::kText, offsetof(R_KV_CP, cp_id), KIND_CP, "", "validation", "identity of the child"},
    {"ikv", FieldType::kI32, offsetof(R_KV_CP, ikv), KIND_KV, "", "validation", "number of the parent record"},
    {"icp", FieldType::kI32, offsetof(R_KV_CP, icp), KIND_CP, "", "validation", "number of the child record"},
    {"next", FieldType::kI32, offsetof(R_KV_CP, next), KIND_R_KV_CP, "", "validation", "next row of the parent's chain, -1 at the end"},
    {"prev", FieldType::kI32, offsetof(R_KV_CP, prev), KIND_R_KV_CP, "", "validation", "previous row of the parent's chain, -1 at the first row"},
};

constexpr FieldInfo kRKvLdFields[] = {
    {"kv_id", FieldType::kText, offsetof(R_KV_LD, kv_id), KIND_KV, "", "validation", "identity of the parent"},
    {"ld_id", FieldType::kText, offsetof(R_KV_LD, ld_id), KIND_LD, "", "validation", "identity of the child"},
    {"ikv", FieldType::kI32, offsetof(R_KV_LD, ikv), KIND_KV, "", "validation", "number of the parent record"},
    {"ild", FieldType::kI32, offsetof(R_KV_LD, ild), KIND_LD, "", "validation", "number of the child record"},
    {"next", FieldType::kI32, offsetof(R_KV_LD, next), KIND_R_KV_LD, "", "validation", "next row of the parent's chain, -1 at the end"},
    {"prev", FieldType::kI32, offsetof(R_KV_LD, prev), KIND_R_KV_LD, "", "validation", "previous row of the parent's chain, -1 at the first row"},
};

constexpr FieldInfo kRKvNdFields[] = {
    {"kv_id", FieldType::kText, offsetof(R_KV_ND, kv_id), KIND_KV, "", "validation", "identity of the parent"},
    {"nd_id", FieldType::kText, offsetof(R_KV_ND, nd_id), KIND_ND, "", "validation", "identity of the child"},
    {"ikv", FieldType::kI32, offsetof(R_KV_ND, ikv), KIND_KV, "", "validation", "number of the parent record"},
    {"ind", FieldType::kI32, offsetof(R_KV_ND, ind), KIND_ND, "", "validation", "number of the child record"},
    {"next", FieldType::kI32, offsetof(R_KV_ND, next), KIND_R_KV_ND, "", "validation", "next row of the parent's chain, -1 at the end"},
    {"prev", FieldType::kI32, offsetof(R_KV_ND, prev), KIND_R_KV_ND, "", "validation", "previous row of the parent's chain, -1 at the first row"},
};

constexpr FieldInfo kRKvUnFields[] = {
    {"kv_id", FieldType::kText, offsetof(R_KV_UN, kv_id), KIND_KV, "", "validation", "identity of the parent"},
    {"un_id", FieldType::kText, offsetof(R_KV_UN, un_id), KIND_UN, "", "validation", "identity of the child"},
    {"ikv", FieldType::kI32, offsetof(R_KV_UN, ikv), KIND_KV, "", "validation", "number of the parent record"},
    {"iun", FieldType::kI32, offsetof(R_KV_UN, iun), KIND_UN, "", "validation", "number of the child record"},
    {"next", FieldType::kI32, offsetof(R_KV_UN, next), KIND_R_KV_UN, "", "validation", "next row of the parent's chain, -1 at the end"},
    {"prev", FieldType::kI32, offsetof(R_KV_UN, prev), KIND_R_KV_UN, "", "validation", "previous row of the parent's chain, -1 at the first row"},
};

constexpr FieldInfo kRKvZbrFields[] = {
    {"kv_id", FieldType::kText, offsetof(R_KV_ZBR, kv_id), KIND_KV, "", "validation", "identity of the parent"},
    {"zbr_id", FieldType::kText, offsetof(R_KV_ZBR, zbr_id), KIND_ZBR, "", "validation", "identity of the child"},
    {"ikv", FieldType::kI32, offsetof(R_KV_ZBR, ikv), KIND_KV, "", "validation", "number of the parent record"},
    {"izbr", FieldType::kI32, offsetof(R_KV_ZBR, izbr), KIND_ZBR, "", "validation", "number of the child record"},
    {"next", FieldType::kI32, offsetof(R_KV_ZBR, next), KIND_R_KV_ZBR, "", "validation", "next row of the parent's chain, -1 at the end"},
    {"prev", FieldType::kI32, offsetof(R_KV_ZBR, prev), KIND_R_KV_ZBR, "", "validation", "previous row of the parent's chain, -1 at the first row"},
};

}  // namespace

std::span<const FieldInfo> R_KV_BUS::Fields() { return kRKvBusFields; }
void R_KV_BUS::Serialize(QArchive& ar) { internal::SerializeFields(this, kRKvBusFields, ar); }

std::span<const FieldInfo> R_KV_CB::Fields() { return kRKvCbFields; }
void R_KV_CB::Serialize(QArchive& ar) { internal::SerializeFields(this, kRKvCbFields, ar); }

std::span<const FieldInfo> R_KV_CP::Fields() { return kRKvCpFields; }
void R_KV_CP::Serialize(QArchive& ar) { internal::SerializeFields(this, kRKvCpFields, ar); }

std::span<const FieldInfo> R_KV_LD::Fields() { return kRKvLdFields; }
void R_KV_LD::Serialize(QArchive& ar) { internal::SerializeFields(this, kRKvLdFields, ar); }

std::span<const FieldInfo> R_KV_ND::Fields() { return kRKvNdFields; }
void R_KV_ND::Serialize(QArchive& ar) { internal::SerializeFields(this, kRKvNdFields, ar); }

std::span<const FieldInfo> R_KV_UN::Fields() { return kRKvUnFields; }
void R_KV_UN::Serialize(QArchive& ar) { internal::SerializeFields(this, kRKvUnFields, ar); }

std::span<const FieldInfo> R_KV_ZBR::Fields() { return kRKvZbrFields; }
void R_KV_ZBR::Serialize(QArchive& ar) { internal::SerializeFields(this, kRKvZbrFields, ar); }

}  // namespace dtsdb
