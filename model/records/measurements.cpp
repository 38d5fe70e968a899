// Written by scripts/generate from the description in schema/: change it there.
#include "model/records/measurements.h"

#include <cstddef>

#include "model/internal/serialize_fields.h"

// clang-format off

namespace dtsdb {
namespace {

// Name, type, place in the record, table referred to, unit, writers, meaning.
constexpr FieldInfo kAnalogFields[] = {
    {"id", FieldType::kText, offsetof(ANALOG, id), KIND_NONE, "", "input", "measurement point identity; key of the table"},
    {"name", FieldType::kText, offsetof(ANALOG, name), KIND_NONE, "", "carried", "second text of the point; carried"},
    {"value", FieldType::kF32, offsetof(ANALOG, value), KIND_NONE, "", "carried", "carried value"},
    {"quality", FieldType::kU8, offsetof(ANALOG, quality), KIND_NONE, "", "carried", "carried byte"},
    {"idx", FieldType::kI32, offsetof(ANALOG, idx), KIND_NONE, "", "carried", "carried integer, default -1"},
    {"f1", FieldType::kF32, offsetof(ANALOG, f1), KIND_NONE, "", "carried", "carried value"},
    {"f2", FieldType::kF32, offsetof(ANALOG, f2), KIND_NONE, "", "carried", "carried value"},
    {"f3", FieldType::kF32, offsetof(ANALOG, f3), KIND_NONE, "", "carried", "carried value"},
    {"flag", FieldType::kI8, offsetof(ANALOG, flag), KIND_NONE, "", "carried", "carried byte"},
};

constexpr FieldInfo kStatusFields[] = {
    {"id", FieldType::kText, offsetof(STATUS, id), KIND_NONE, "", "input", "status point identity"},
    {"name", FieldType::kText, offsetof(STATUS, name), KIND_NONE, "", "carried", "second text of the point; carried"},
    {"value", FieldType::kI8, offsetof(STATUS, value), KIND_NONE, "", "input", "position of the point: 1 closed, 2 open; read from the realtime table by tpReadStatus"},
    {"quality", FieldType::kU8, offsetof(STATUS, quality), KIND_NONE, "", "carried", "carried byte"},
};

}  // namespace

std::span<const FieldInfo> ANALOG::Fields() { return kAnalogFields; }
void ANALOG::Serialize(QArchive& ar) { internal::SerializeFields(this, kAnalogFields, ar); }

std::span<const FieldInfo> STATUS::Fields() { return kStatusFields; }
void STATUS::Serialize(QArchive& ar) { internal::SerializeFields(this, kStatusFields, ar); }

}  // namespace dtsdb
