// Written by scripts/generate from the description in schema/: change it there.
#include "model/records/relations_of_nodes.h"

#include <cstddef>

#include "model/internal/serialize_fields.h"

// clang-format off

namespace dtsdb {
namespace {

// Name, type, place in the record, table referred to, unit, writers, meaning.
constexpr FieldInfo kRNdCb2Fields[] = {
    {"nd_id", FieldType::kText, offsetof(R_ND_CB2, nd_id), KIND_ND, "", "validation", "identity of the parent"},
    {"cb2_id", FieldType::kText, offsetof(R_ND_CB2, cb2_id), KIND_CB2, "", "validation", "identity of the child"},
    {"ind", FieldType::kI32, offsetof(R_ND_CB2, ind), KIND_ND, "", "validation", "number of the parent record"},
    {"icb2", FieldType::kI32, offsetof(R_ND_CB2, icb2), KIND_CB2, "", "validation", "number of the child record"},
    {"next", FieldType::kI32, offsetof(R_ND_CB2, next), KIND_R_ND_CB2, "", "validation", "next row of the parent's chain, -1 at the end"},
    {"prev", FieldType::kI32, offsetof(R_ND_CB2, prev), KIND_R_ND_CB2, "", "validation", "previous row of the parent's chain, -1 at the first row"},
};

constexpr FieldInfo kRNdDln2Fields[] = {
    {"nd_id", FieldType::kText, offsetof(R_ND_DLN2, nd_id), KIND_ND, "", "validation", "identity of the parent"},
    {"dln2_id", FieldType::kText, offsetof(R_ND_DLN2, dln2_id), KIND_DLN2, "", "validation", "identity of the child"},
    {"ind", FieldType::kI32, offsetof(R_ND_DLN2, ind), KIND_ND, "", "validation", "number of the parent record"},
    {"idln2", FieldType::kI32, offsetof(R_ND_DLN2, idln2), KIND_DLN2, "", "validation", "number of the child record"},
    {"next", FieldType::kI32, offsetof(R_ND_DLN2, next), KIND_R_ND_DLN2, "", "validation", "next row of the parent's chain, -1 at the end"},
    {"prev", FieldType::kI32, offsetof(R_ND_DLN2, prev), KIND_R_ND_DLN2, "", "validation", "previous row of the parent's chain, -1 at the first row"},
};

constexpr FieldInfo kRNdLn2Fields[] = {
    {"nd_id", FieldType::kText, offsetof(R_ND_LN2, nd_id), KIND_ND, "", "validation", "identity of the parent"},
    {"ln2_id", FieldType::kText, offsetof(R_ND_LN2, ln2_id), KIND_LN2, "", "validation", "identity of the child"},
    {"ind", FieldType::kI32, offsetof(R_ND_LN2, ind), KIND_ND, "", "validation", "number of the parent record"},
    {"iln2", FieldType::kI32, offsetof(R_ND_LN2, iln2), KIND_LN2, "", "validation", "number of the child record"},
    {"next", FieldType::kI32, offsetof(R_ND_LN2, next), KIND_R_ND_LN2, "", "validation", "next row of the parent's chain, -1 at the end"},
    {"prev", FieldType::kI32, offsetof(R_ND_LN2, prev), KIND_R_ND_LN2, "", "validation", "previous row of the parent's chain, -1 at the first row"},
};

constexpr FieldInfo kRNdXf2Fields[] = {
    {"nd_id", FieldType::kText, offsetof(R_ND_XF2, nd_id), KIND_ND, "", "validation", "identity of the parent"},
    {"xf2_id", FieldType::kText, offsetof(R_ND_XF2, xf2_id), KIND_XF2, "", "validation", "identity of the child"},
    {"ind", FieldType::kI32, offsetof(R_ND_XF2, ind), KIND_ND, "", "validation", "number of the parent record"},
    {"ixf2", FieldType::kI32, offsetof(R_ND_XF2, ixf2), KIND_XF2, "", "validation", "number of the child record"},
    {"next", FieldType::kI32, offsetof(R_ND_XF2, next), KIND_R_ND_XF2, "", "validation", "next row of the parent's chain, -1 at the end"},
    {"prev", FieldType::kI32, offsetof(R_ND_XF2, prev), KIND_R_ND_XF2, "", "validation", "previous row of the parent's chain, -1 at the first row"},
};

constexpr FieldInfo kRNdZbr2Fields[] = {
    {"nd_id", FieldType::kText, offsetof(R_ND_ZBR2, nd_id), KIND_ND, "", "validation", "identity of the parent"},
    {"zbr2_id", FieldType::kText, offsetof(R_ND_ZBR2, zbr2_id), KIND_ZBR2, "", "validation", "identity of the child"},
    {"ind", FieldType::kI32, offsetof(R_ND_ZBR2, ind), KIND_ND, "", "validation", "number of the parent record"},
    {"izbr2", FieldType::kI32, offsetof(R_ND_ZBR2, izbr2), KIND_ZBR2, "", "validation", "number of the child record"},
    {"next", FieldType::kI32, offsetof(R_ND_ZBR2, next), KIND_R_ND_ZBR2, "", "validation", "next row of the parent's chain, -1 at the end"},
    {"prev", FieldType::kI32, offsetof(R_ND_ZBR2, prev), KIND_R_ND_ZBR2, "", "validation", "previous row of the parent's chain, -1 at the first row"},
};

}  // namespace

std::span<const FieldInfo> R_ND_CB2::Fields() { return kRNdCb2Fields; }
void R_ND_CB2::Serialize(QArchive& ar) { internal::SerializeFields(this, kRNdCb2Fields, ar); }

std::span<const FieldInfo> R_ND_DLN2::Fields() { return kRNdDln2Fields; }
void R_ND_DLN2::Serialize(QArchive& ar) { internal::SerializeFields(this, kRNdDln2Fields, ar); }

std::span<const FieldInfo> R_ND_LN2::Fields() { return kRNdLn2Fields; }
void R_ND_LN2::Serialize(QArchive& ar) { internal::SerializeFields(this, kRNdLn2Fields, ar); }

std::span<const FieldInfo> R_ND_XF2::Fields() { return kRNdXf2Fields; }
void R_ND_XF2::Serialize(QArchive& ar) { internal::SerializeFields(this, kRNdXf2Fields, ar); }

std::span<const FieldInfo> R_ND_ZBR2::Fields() { return kRNdZbr2Fields; }
void R_ND_ZBR2::Serialize(QArchive& ar) { internal::SerializeFields(this, kRNdZbr2Fields, ar); }

}  // namespace dtsdb
