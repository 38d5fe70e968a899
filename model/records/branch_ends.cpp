// Written by scripts/generate from the description in schema/: change it there.
#include "model/records/branch_ends.h"

#include <cstddef>

#include "model/internal/serialize_fields.h"

// clang-format off

namespace dtsdb {
namespace {

// Name, type, place in the record, table referred to, unit, writers, meaning.
constexpr FieldInfo kCb2Fields[] = {
    {"id", FieldType::kText, offsetof(CB2, id), KIND_NONE, "", "validation", "breaker identity plus end suffix"},
    {"icb", FieldType::kI32, offsetof(CB2, icb), KIND_CB, "", "validation", "number of the owning CB"},
    {"r_nd_cb2", FieldType::kI32, offsetof(CB2, r_nd_cb2), KIND_R_ND_CB2, "", "validation", "number of the R_ND_CB2 row"},
};

constexpr FieldInfo kLn2Fields[] = {
    {"id", FieldType::kText, offsetof(LN2, id), KIND_NONE, "", "validation", "branch identity plus end suffix"},
    {"p", FieldType::kF32, offsetof(LN2, p), KIND_NONE, "MW", "carried", "flow at this end"},
    {"q", FieldType::kF32, offsetof(LN2, q), KIND_NONE, "Mvar", "carried", "flow at this end"},
    {"i", FieldType::kF32, offsetof(LN2, i), KIND_NONE, "A", "carried", "current at this end"},
    {"iana_p", FieldType::kI32, offsetof(LN2, iana_p), KIND_ANALOG, "", "validation", "ANALOG index of the end P"},
    {"iana_q", FieldType::kI32, offsetof(LN2, iana_q), KIND_ANALOG, "", "validation", "ANALOG index of the end Q"},
    {"iln", FieldType::kI32, offsetof(LN2, iln), KIND_LN, "", "validation", "number of the owning branch record"},
    {"flags", FieldType::kU32, offsetof(LN2, flags), KIND_NONE, "", "validation, topology", "bit 1: 0 from end, 1 to end; bit 2: this end is isolated"},
    {"r_nd", FieldType::kI32, offsetof(LN2, r_nd), KIND_R_ND_LN2, "", "validation", "number of the R_ND row of this end"},
};

constexpr FieldInfo kDln2Fields[] = {
    {"id", FieldType::kText, offsetof(DLN2, id), KIND_NONE, "", "validation", "branch identity plus end suffix"},
    {"p", FieldType::kF32, offsetof(DLN2, p), KIND_NONE, "MW", "carried", "flow at this end"},
    {"q", FieldType::kF32, offsetof(DLN2, q), KIND_NONE, "Mvar", "carried", "flow at this end"},
    {"i", FieldType::kF32, offsetof(DLN2, i), KIND_NONE, "A", "carried", "current at this end"},
    {"iana_p", FieldType::kI32, offsetof(DLN2, iana_p), KIND_ANALOG, "", "validation", "ANALOG index of the end P"},
    {"iana_q", FieldType::kI32, offsetof(DLN2, iana_q), KIND_ANALOG, "", "validation", "ANALOG index of the end Q"},
    {"idln", FieldType::kI32, offsetof(DLN2, idln), KIND_DLN, "", "validation", "number of the owning branch record"},
    {"flags", FieldType::kU32, offsetof(DLN2, flags), KIND_NONE, "", "validation, topology", "bit 1: 0 from end, 1 to end; bit 2: this end is isolated"},
    {"r_nd", FieldType::kI32, offsetof(DLN2, r_nd), KIND_R_ND_DLN2, "", "validation", "number of the R_ND row of this end"},
};

constexpr FieldInfo kXf2Fields[] = {
    {"id", FieldType::kText, offsetof(XF2, id), KIND_NONE, "", "validation", "branch identity plus end suffix"},
    {"p", FieldType::kF32, offsetof(XF2, p), KIND_NONE, "MW", "carried", "flow at this end"},
    {"q", FieldType::kF32, offsetof(XF2, q), KIND_NONE, "Mvar", "carried", "flow at this end"},
    {"i", FieldType::kF32, offsetof(XF2, i), KIND_NONE, "A", "carried", "current at this end"},
    {"iana_p", FieldType::kI32, offsetof(XF2, iana_p), KIND_ANALOG, "", "validation", "ANALOG index of the end P"},
    {"iana_q", FieldType::kI32, offsetof(XF2, iana_q), KIND_ANALOG, "", "validation", "ANALOG index of the end Q"},
    {"ixf", FieldType::kI32, offsetof(XF2, ixf), KIND_XF, "", "validation", "number of the owning branch record"},
    {"flags", FieldType::kU32, offsetof(XF2, flags), KIND_NONE, "", "validation, topology", "bit 1: 0 from end, 1 to end; bit 2: this end is isolated"},
    {"r_nd", FieldType::kI32, offsetof(XF2, r_nd), KIND_R_ND_XF2, "", "validation", "number of the R_ND row of this end"},
};

constexpr FieldInfo kZbr2Fields[] = {
    {"id", FieldType::kText, offsetof(ZBR2, id), KIND_NONE, "", "validation", "branch identity plus end suffix"},
    {"p", FieldType::kF32, offsetof(ZBR2, p), KIND_NONE, "MW", "carried", "flow at this end"},
    {"q", FieldType::kF32, offsetof(ZBR2, q), KIND_NONE, "Mvar", "carried", "flow at this end"},
    {"i", FieldType::kF32, offsetof(ZBR2, i), KIND_NONE, "A", "carried", "current at this end"},
    {"iana_p", FieldType::kI32, offsetof(ZBR2, iana_p), KIND_ANALOG, "", "validation", "ANALOG index of the end P"},
    {"iana_q", FieldType::kI32, offsetof(ZBR2, iana_q), KIND_ANALOG, "", "validation", "ANALOG index of the end Q"},
    {"izbr", FieldType::kI32, offsetof(ZBR2, izbr), KIND_ZBR, "", "validation", "number of the owning branch record"},
    {"flags", FieldType::kU32, offsetof(ZBR2, flags), KIND_NONE, "", "validation, topology", "bit 1: 0 from end, 1 to end; bit 2: this end is isolated"},
    {"r_nd", FieldType::kI32, offsetof(ZBR2, r_nd), KIND_R_ND_ZBR2, "", "validation", "number of the R_ND row of this end"},
};

}  // namespace

std::span<const FieldInfo> CB2::Fields() { return kCb2Fields; }
void CB2::Serialize(QArchive& ar) { internal::SerializeFields(this, kCb2Fields, ar); }

std::span<const FieldInfo> LN2::Fields() { return kLn2Fields; }
void LN2::Serialize(QArchive& ar) { internal::SerializeFields(this, kLn2Fields, ar); }

std::span<const FieldInfo> DLN2::Fields() { return kDln2Fields; }
void DLN2::Serialize(QArchive& ar) { internal::SerializeFields(this, kDln2Fields, ar); }

std::span<const FieldInfo> XF2::Fields() { return kXf2Fields; }
void XF2::Serialize(QArchive& ar) { internal::SerializeFields(this, kXf2Fields, ar); }

std::span<const FieldInfo> ZBR2::Fields() { return kZbr2Fields; }
void ZBR2::Serialize(QArchive& ar) { internal::SerializeFields(this, kZbr2Fields, ar); }

}  // namespace dtsdb
