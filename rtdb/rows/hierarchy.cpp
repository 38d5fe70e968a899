// Written by scripts/generate from the description in schema/: change it there.
#include "rtdb/rows/hierarchy.h"

#include <cstddef>

// clang-format off

namespace dtsdb {
namespace {

// Name, type, place and size in the row, whether a row is found by it, place among the record's fields.
constexpr ColumnInfo kCoColumns[] = {
    {"id", ColumnType::kText, offsetof(co, id), sizeof(co::id), true, 0},
    {"raw_4", ColumnType::kBytes, offsetof(co, raw_4), sizeof(co::raw_4), false, ColumnInfo::kNoField},
    {"f1", ColumnType::kReal4, offsetof(co, f1), sizeof(co::f1), false, 1},
    {"f2", ColumnType::kReal4, offsetof(co, f2), sizeof(co::f2), false, 2},
    {"f3", ColumnType::kReal4, offsetof(co, f3), sizeof(co::f3), false, 3},
    {"f4", ColumnType::kReal4, offsetof(co, f4), sizeof(co::f4), false, 4},
    {"f5", ColumnType::kReal4, offsetof(co, f5), sizeof(co::f5), false, 5},
    {"f6", ColumnType::kReal4, offsetof(co, f6), sizeof(co::f6), false, 6},
    {"f7", ColumnType::kReal4, offsetof(co, f7), sizeof(co::f7), false, 7},
    {"f8", ColumnType::kReal4, offsetof(co, f8), sizeof(co::f8), false, 8},
    {"r_co_dv", ColumnType::kInt4, offsetof(co, r_co_dv), sizeof(co::r_co_dv), false, 9},
};

constexpr ColumnInfo kDvColumns[] = {
    {"id", ColumnType::kText, offsetof(dv, id), sizeof(dv::id), true, 0},
    {"raw_4", ColumnType::kBytes, offsetof(dv, raw_4), sizeof(dv::raw_4), false, ColumnInfo::kNoField},
    {"co", ColumnType::kText, offsetof(dv, co), sizeof(dv::co), false, 1},
    {"f1", ColumnType::kReal4, offsetof(dv, f1), sizeof(dv::f1), false, 2},
    {"f2", ColumnType::kReal4, offsetof(dv, f2), sizeof(dv::f2), false, 3},
    {"f3", ColumnType::kReal4, offsetof(dv, f3), sizeof(dv::f3), false, 4},
    {"f4", ColumnType::kReal4, offsetof(dv, f4), sizeof(dv::f4), false, 5},
    {"f5", ColumnType::kReal4, offsetof(dv, f5), sizeof(dv::f5), false, 6},
    {"f6", ColumnType::kReal4, offsetof(dv, f6), sizeof(dv::f6), false, 7},
    {"f7", ColumnType::kReal4, offsetof(dv, f7), sizeof(dv::f7), false, 8},
    {"f8", ColumnType::kReal4, offsetof(dv, f8), sizeof(dv::f8), false, 9},
    {"r_co_dv", ColumnType::kInt4, offsetof(dv, r_co_dv), sizeof(dv::r_co_dv), false, 10},
    {"r_dv_st", ColumnType::kInt4, offsetof(dv, r_dv_st), sizeof(dv::r_dv_st), false, 11},
    {"r_dv_ln", ColumnType::kInt4, offsetof(dv, r_dv_ln), sizeof(dv::r_dv_ln), false, 12},
    {"r_dv_dln", ColumnType::kInt4, offsetof(dv, r_dv_dln), sizeof(dv::r_dv_dln), false, 13},
};

constexpr ColumnInfo kStColumns[] = {
    {"id", ColumnType::kText, offsetof(st, id), sizeof(st::id), true, 0},
    {"raw_4", ColumnType::kBytes, offsetof(st, raw_4), sizeof(st::raw_4), false, ColumnInfo::kNoField},
    {"dv", ColumnType::kText, offsetof(st, dv), sizeof(st::dv), false, 1},
    {"type", ColumnType::kInt4, offsetof(st, type), sizeof(st::type), false, 2},
    {"flag", ColumnType::kInt4, offsetof(st, flag), sizeof(st::flag), false, 3},
    {"f1", ColumnType::kReal4, offsetof(st, f1), sizeof(st::f1), false, 4},
    {"f2", ColumnType::kReal4, offsetof(st, f2), sizeof(st::f2), false, 5},
    {"f3", ColumnType::kReal4, offsetof(st, f3), sizeof(st::f3), false, 6},
    {"f4", ColumnType::kReal4, offsetof(st, f4), sizeof(st::f4), false, 7},
    {"r_dv_st", ColumnType::kInt4, offsetof(st, r_dv_st), sizeof(st::r_dv_st), false, 8},
    {"r_st_kv", ColumnType::kInt4, offsetof(st, r_st_kv), sizeof(st::r_st_kv), false, 9},
    {"r_st_xf", ColumnType::kInt4, offsetof(st, r_st_xf), sizeof(st::r_st_xf), false, 10},
};

constexpr ColumnInfo kKvColumns[] = {
    {"raw_0", ColumnType::kBytes, offsetof(kv, raw_0), sizeof(kv::raw_0), false, ColumnInfo::kNoField},
    {"id", ColumnType::kText, offsetof(kv, id), sizeof(kv::id), true, 0},
    {"raw_84", ColumnType::kBytes, offsetof(kv, raw_84), sizeof(kv::raw_84), false, ColumnInfo::kNoField},
    {"name", ColumnType::kText, offsetof(kv, name), sizeof(kv::name), false, 1},
    {"st", ColumnType::kText, offsetof(kv, st), sizeof(kv::st), false, 2},
    {"ibs", ColumnType::kInt4, offsetof(kv, ibs), sizeof(kv::ibs), false, 3},
    {"ibsl", ColumnType::kInt4, offsetof(kv, ibsl), sizeof(kv::ibsl), false, 4},
    {"vbase", ColumnType::kReal4, offsetof(kv, vbase), sizeof(kv::vbase), false, 5},
    {"vmax", ColumnType::kReal4, offsetof(kv, vmax), sizeof(kv::vmax), false, 6},
    {"vmin", ColumnType::kReal4, offsetof(kv, vmin), sizeof(kv::vmin), false, 7},
    {"f1", ColumnType::kReal4, offsetof(kv, f1), sizeof(kv::f1), false, 8},
    {"f2", ColumnType::kReal4, offsetof(kv, f2), sizeof(kv::f2), false, 9},
    {"n2", ColumnType::kInt4, offsetof(kv, n2), sizeof(kv::n2), false, 10},
    {"r_st_kv", ColumnType::kInt4, offsetof(kv, r_st_kv), sizeof(kv::r_st_kv), false, 11},
    {"r_kv_un", ColumnType::kInt4, offsetof(kv, r_kv_un), sizeof(kv::r_kv_un), false, 12},
    {"r_kv_cb", ColumnType::kInt4, offsetof(kv, r_kv_cb), sizeof(kv::r_kv_cb), false, 13},
    {"r_kv_ld", ColumnType::kInt4, offsetof(kv, r_kv_ld), sizeof(kv::r_kv_ld), false, 14},
    {"r_kv_cp", ColumnType::kInt4, offsetof(kv, r_kv_cp), sizeof(kv::r_kv_cp), false, 15},
    {"r_kv_bus", ColumnType::kInt4, offsetof(kv, r_kv_bus), sizeof(kv::r_kv_bus), false, 16},
    {"r_kv_zbr", ColumnType::kInt4, offsetof(kv, r_kv_zbr), sizeof(kv::r_kv_zbr), false, 17},
    {"r_kv_nd", ColumnType::kInt4, offsetof(kv, r_kv_nd), sizeof(kv::r_kv_nd), false, 18},
};

}  // namespace

std::span<const ColumnInfo> co::Columns() { return kCoColumns; }

std::span<const ColumnInfo> dv::Columns() { return kDvColumns; }

std::span<const ColumnInfo> st::Columns() { return kStColumns; }

std::span<const ColumnInfo> kv::Columns() { return kKvColumns; }

}  // namespace dtsdb
