// Written by scripts/generate from the description in schema/: change it there.
#include "rtdb/rows/measurements.h"

#include <cstddef>

// clang-format off

namespace dtsdb {
namespace {

// Name, type, place and size in the row, whether a row is found by it, place among the record's fields.
constexpr ColumnInfo kAnalogColumns[] = {
    {"id", ColumnType::kText, offsetof(analog, id), sizeof(analog::id), true, 0},
    {"name", ColumnType::kText, offsetof(analog, name), sizeof(analog::name), false, 1},
    {"value", ColumnType::kReal4, offsetof(analog, value), sizeof(analog::value), false, 2},
    {"quality", ColumnType::kInt4, offsetof(analog, quality), sizeof(analog::quality), false, 3},
    {"idx", ColumnType::kInt4, offsetof(analog, idx), sizeof(analog::idx), false, 4},
    {"f1", ColumnType::kReal4, offsetof(analog, f1), sizeof(analog::f1), false, 5},
    {"f2", ColumnType::kReal4, offsetof(analog, f2), sizeof(analog::f2), false, 6},
    {"f3", ColumnType::kReal4, offsetof(analog, f3), sizeof(analog::f3), false, 7},
    {"flag", ColumnType::kInt4, offsetof(analog, flag), sizeof(analog::flag), false, 8},
};

constexpr ColumnInfo kStatusColumns[] = {
    {"id", ColumnType::kText, offsetof(status, id), sizeof(status::id), true, 0},
    {"name", ColumnType::kText, offsetof(status, name), sizeof(status::name), false, 1},
    {"value", ColumnType::kInt4, offsetof(status, value), sizeof(status::value), false, 2},
    {"quality", ColumnType::kInt4, offsetof(status, quality), sizeof(status::quality), false, 3},
};

}  // namespace

std::span<const ColumnInfo> analog::Columns() { return kAnalogColumns; }

std::span<const ColumnInfo> status::Columns() { return kStatusColumns; }

}  // namespace dtsdb
