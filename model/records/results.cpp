// Written by scripts/generate from the description in schema/: change it there.
#include "model/records/results.h"

#include <cstddef>

#include "model/internal/serialize_fields.h"

// clang-format off

namespace dtsdb {
namespace {

// Name, type, place in the record, table referred to, unit, writers, meaning.
constexpr FieldInfo kBsFields[] = {
    {"id", FieldType::kI32, offsetof(BS, id), KIND_NONE, "", "topology", "bus-section number = its array index"},
    {"name", FieldType::kText, offsetof(BS, name), KIND_NONE, "", "topology", "section name"},
    {"ikv", FieldType::kI32, offsetof(BS, ikv), KIND_KV, "", "topology", "physical KV number owning the section, -1 none"},
    {"f0", FieldType::kF64, offsetof(BS, f0), KIND_NONE, "", "carried", "carried value"},
    {"island", FieldType::kI32, offsetof(BS, island), KIND_ISLAND, "", "topology", "-2 unassigned/reclaimed, -1 dead, >=0 island number"},
    {"status", FieldType::kU32, offsetof(BS, status), KIND_NONE, "", "topology", "bits: 1 BS_DEAD, 2 BS_ISOLATED, 32 BS_BROKEN"},
    {"flags", FieldType::kU32, offsetof(BS, flags), KIND_NONE, "", "topology", "bits: 1 BS_BASE, 2 BS_UNCLAIMED"},
    {"next", FieldType::kI32, offsetof(BS, next), KIND_BS, "", "topology", "next in chain"},
    {"prev", FieldType::kI32, offsetof(BS, prev), KIND_BS, "", "topology", "previous in chain, -1 on free list"},
    {"ibsl", FieldType::kI32, offsetof(BS, ibsl), KIND_BSL, "", "topology", "index of the section's BSL entry, -1 none"},
    {"v", FieldType::kF64, offsetof(BS, v), KIND_NONE, "", "input", "voltage magnitude, input of the breaker flow"},
    {"a", FieldType::kF64, offsetof(BS, a), KIND_NONE, "deg", "input", "voltage angle in degrees, input of the breaker flow"},
    {"f1", FieldType::kF64, offsetof(BS, f1), KIND_NONE, "", "carried", "carried value"},
    {"f2", FieldType::kF64, offsetof(BS, f2), KIND_NONE, "", "carried", "carried value"},
    {"f3", FieldType::kF64, offsetof(BS, f3), KIND_NONE, "", "carried", "carried value"},
    {"f4", FieldType::kF64, offsetof(BS, f4), KIND_NONE, "", "carried", "carried value"},
    {"n1", FieldType::kI32, offsetof(BS, n1), KIND_NONE, "", "carried", "carried integer"},
};

constexpr FieldInfo kBslFields[] = {
    {"id", FieldType::kI32, offsetof(BSL, id), KIND_NONE, "", "topology", "own index"},
    {"next", FieldType::kI32, offsetof(BSL, next), KIND_BSL, "", "topology", "next entry, free-list link"},
    {"prev", FieldType::kI32, offsetof(BSL, prev), KIND_BSL, "", "topology", "previous entry, -1 on free list"},
    {"kind", FieldType::kU8, offsetof(BSL, kind), KIND_NONE, "", "topology", "1-based table number of the referenced record"},
    {"ref", FieldType::kI32, offsetof(BSL, ref), KIND_NONE, "", "topology", "physical number of the referenced record; BS index for kind 2"},
};

constexpr FieldInfo kIslandFields[] = {
    {"id", FieldType::kI32, offsetof(ISLAND, id), KIND_NONE, "", "topology", "island number"},
    {"ref_ibs", FieldType::kI32, offsetof(ISLAND, ref_ibs), KIND_BS, "", "topology", "bus-section of the reference; -1 while the island has none"},
    {"ref_un", FieldType::kI32, offsetof(ISLAND, ref_un), KIND_UN, "", "topology", "physical number of the reference UN"},
    {"ref_a", FieldType::kF32, offsetof(ISLAND, ref_a), KIND_NONE, "", "topology", "angle of the reference"},
    {"f1", FieldType::kF32, offsetof(ISLAND, f1), KIND_NONE, "", "carried", "carried value"},
    {"f2", FieldType::kF32, offsetof(ISLAND, f2), KIND_NONE, "", "carried", "carried value"},
    {"f3", FieldType::kF32, offsetof(ISLAND, f3), KIND_NONE, "", "carried", "carried value"},
    {"ref_id", FieldType::kText, offsetof(ISLAND, ref_id), KIND_UN, "", "topology", "identity of the reference UN"},
    {"name", FieldType::kText, offsetof(ISLAND, name), KIND_NONE, "", "carried", "carried text"},
};

constexpr FieldInfo kChndFields[] = {
    {"id", FieldType::kI32, offsetof(CHND, id), KIND_NONE, "", "topology", "change sequence number"},
    {"ind", FieldType::kI32, offsetof(CHND, ind), KIND_ND, "", "topology", "node number"},
    {"ibs_new", FieldType::kI32, offsetof(CHND, ibs_new), KIND_BS, "", "topology", "new bus-section"},
    {"ibs_old", FieldType::kI32, offsetof(CHND, ibs_old), KIND_BS, "", "topology", "old bus-section"},
    {"ikv", FieldType::kI32, offsetof(CHND, ikv), KIND_KV, "", "topology", "KV number"},
};

constexpr FieldInfo kTplFields[] = {
    {"id", FieldType::kI32, offsetof(TPL, id), KIND_NONE, "", "topology", "log row number"},
    {"kind", FieldType::kI32, offsetof(TPL, kind), KIND_NONE, "", "topology", "table number of the logged thing"},
    {"n1", FieldType::kI32, offsetof(TPL, n1), KIND_NONE, "", "topology", "status word given by the writer"},
    {"name", FieldType::kText, offsetof(TPL, name), KIND_NONE, "", "topology", "identity of the logged thing"},
    {"n2", FieldType::kI32, offsetof(TPL, n2), KIND_NONE, "", "topology", "new section, -1 for none"},
    {"n3", FieldType::kI32, offsetof(TPL, n3), KIND_NONE, "", "topology", "old section"},
    {"time", FieldType::kU32, offsetof(TPL, time), KIND_NONE, "s", "topology", "event time, QDateTime::toTime_t"},
    {"event", FieldType::kText, offsetof(TPL, event), KIND_NONE, "", "topology", "event word"},
};

constexpr FieldInfo kTptraceFields[] = {
    {"id", FieldType::kI32, offsetof(TPTRACE, id), KIND_NONE, "", "input, topology", "row number"},
    {"name", FieldType::kText, offsetof(TPTRACE, name), KIND_NONE, "", "input, topology", "component identity"},
    {"type", FieldType::kU8, offsetof(TPTRACE, type), KIND_NONE, "", "input, topology", "component type code of tpSetCompStatus"},
    {"n1", FieldType::kI32, offsetof(TPTRACE, n1), KIND_NONE, "", "input, topology", "physical number of the component in its table; -1 when the row is to be passed over"},
    {"status", FieldType::kU8, offsetof(TPTRACE, status), KIND_NONE, "", "input, topology", "what was asked for: nonzero closed or in service, 0 open or out of service"},
    {"time", FieldType::kU32, offsetof(TPTRACE, time), KIND_NONE, "s", "input, topology", "seconds from QDateTime::toTime_t"},
};

constexpr FieldInfo kGlobalFields[] = {
    {"id", FieldType::kI32, offsetof(GLOBAL, id), KIND_NONE, "", "validation", "row number"},
    {"f1", FieldType::kF32, offsetof(GLOBAL, f1), KIND_NONE, "", "carried, validation", "carried value; a new validation keeps it, or starts it at 100.0 when the GLOBAL table is empty"},
    {"bs_free", FieldType::kI32, offsetof(GLOBAL, bs_free), KIND_BS, "", "topology", "head of BS free list"},
    {"bs_dead", FieldType::kI32, offsetof(GLOBAL, bs_dead), KIND_BS, "", "topology", "BS index of dead head, 0"},
    {"bs_live", FieldType::kI32, offsetof(GLOBAL, bs_live), KIND_BS, "", "topology", "BS index of live head, 1"},
    {"bsl_free", FieldType::kI32, offsetof(GLOBAL, bsl_free), KIND_BSL, "", "topology", "head of BSL free list"},
    {"bsl_head", FieldType::kI32, offsetof(GLOBAL, bsl_head), KIND_BSL, "", "topology", "BSL list head"},
    {"n1", FieldType::kI32, offsetof(GLOBAL, n1), KIND_NONE, "", "carried", "carried value"},
    {"u1", FieldType::kU32, offsetof(GLOBAL, u1), KIND_NONE, "s", "topology", "time of the last tpChange, in seconds from QDateTime::toTime_t"},
    {"time", FieldType::kU32, offsetof(GLOBAL, time), KIND_NONE, "s", "topology", "time of the last tpAllnew, in the same seconds"},
    {"valid", FieldType::kU8, offsetof(GLOBAL, valid), KIND_NONE, "", "validation", "1 after a validation run that ended with no error"},
    {"check_time", FieldType::kU32, offsetof(GLOBAL, check_time), KIND_NONE, "s", "validation", "time of the end of the last validation run without errors"},
    {"invalid", FieldType::kU8, offsetof(GLOBAL, invalid), KIND_NONE, "", "validation", "1 from the start of a validation run until a run ends with no error; the editing operations refuse to run on a value other than 0"},
    {"errors", FieldType::kI32, offsetof(GLOBAL, errors), KIND_NONE, "", "validation", "error count of the last validation"},
};

}  // namespace

std::span<const FieldInfo> BS::Fields() { return kBsFields; }
void BS::Serialize(QArchive& ar) { internal::SerializeFields(this, kBsFields, ar); }

std::span<const FieldInfo> BSL::Fields() { return kBslFields; }
void BSL::Serialize(QArchive& ar) { internal::SerializeFields(this, kBslFields, ar); }

std::span<const FieldInfo> ISLAND::Fields() { return kIslandFields; }
void ISLAND::Serialize(QArchive& ar) { internal::SerializeFields(this, kIslandFields, ar); }

std::span<const FieldInfo> CHND::Fields() { return kChndFields; }
void CHND::Serialize(QArchive& ar) { internal::SerializeFields(this, kChndFields, ar); }

std::span<const FieldInfo> TPL::Fields() { return kTplFields; }
void TPL::Serialize(QArchive& ar) { internal::SerializeFields(this, kTplFields, ar); }

std::span<const FieldInfo> TPTRACE::Fields() { return kTptraceFields; }
void TPTRACE::Serialize(QArchive& ar) { internal::SerializeFields(this, kTptraceFields, ar); }

std::span<const FieldInfo> GLOBAL::Fields() { return kGlobalFields; }
void GLOBAL::Serialize(QArchive& ar) { internal::SerializeFields(this, kGlobalFields, ar); }

}  // namespace dtsdb
