// Written by scripts/generate from the description in schema/: change it there.
#include "rtdb/rows/relations_of_levels.h"

#include <cstddef>

// clang-format off

namespace dtsdb {
namespace {

// Name, type, place and size in the row, whether a row is found by it, place among the record's fields.
constexpr ColumnInfo kRKvBusColumns[] = {
    {"kv_id", ColumnType::kText, offsetof(r_kv_bus, kv_id), sizeof(r_kv_bus::kv_id), true, 0},
    {"bus_id", ColumnType::kText, offsetof(r_kv_bus, bus_id), sizeof(r_kv_bus::bus_id), true, 1},
    {"ikv", ColumnType::kInt4, offsetof(r_kv_bus, ikv), sizeof(r_kv_bus::ikv), false, 2},
    {"ibus", ColumnType::kInt4, offsetof(r_kv_bus, ibus), sizeof(r_kv_bus::ibus), false, 3},
    {"next", ColumnType::kInt4, offsetof(r_kv_bus, next), sizeof(r_kv_bus::next), false, 4},
    {"prev", ColumnType::kInt4, offsetof(r_kv_bus, prev), sizeof(r_kv_bus::prev), false, 5},
};

constexpr ColumnInfo kRKvCbColumns[] = {
    {"kv_id", ColumnType::kText, offsetof(r_kv_cb, kv_id), sizeof(r_kv_cb::kv_id), true, 0},
    {"cb_id", ColumnType::kText, offsetof(r_kv_cb, cb_id), sizeof(r_kv_cb::cb_id), true, 1},
    {"ikv", ColumnType::kInt4, offsetof(r_kv_cb, ikv), sizeof(r_kv_cb::ikv), false, 2},
    {"icb", ColumnType::kInt4, offsetof(r_kv_cb, icb), sizeof(r_kv_cb::icb), false, 3},
    {"next", ColumnType::kInt4, offsetof(r_kv_cb, next), sizeof(r_kv_cb::next), false, 4},
    {"prev", ColumnType::kInt4, offsetof(r_kv_cb, prev), sizeof(r_kv_cb::prev), false, 5},
};

constexpr ColumnInfo kRKvCpColumns[] = {
    {"kv_id", ColumnType::kText, offsetof(r_kv_cp, kv_id), sizeof(r_kv_cp::kv_id), true, 0},
    {"cp_id", ColumnType::kText, offsetof(r_kv_cp, cp_id), sizeof(r_kv_cp::cp_id), true, 1},
    {"ikv", ColumnType::kInt4, offsetof(r_kv_cp, ikv), sizeof(r_kv_cp::ikv), false, 2},
    {"icp", ColumnType::kInt4, offsetof(r_kv_cp, icp), sizeof(r_kv_cp::icp), false, 3},
    {"next", ColumnType::kInt4, offsetof(r_kv_cp, next), sizeof(r_kv_cp::next), false, 4},
    {"prev", ColumnType::kInt4, offsetof(r_kv_cp, prev), sizeof(r_kv_cp::prev), false, 5},
};

constexpr ColumnInfo kRKvLdColumns[] = {
    {"kv_id", ColumnType::kText, offsetof(r_kv_ld, kv_id), sizeof(r_kv_ld::kv_id), true, 0},
    {"ld_id", ColumnType::kText, offsetof(r_kv_ld, ld_id), sizeof(r_kv_ld::ld_id), true, 1},
    {"ikv", ColumnType::kInt4, offsetof(r_kv_ld, ikv), sizeof(r_kv_ld::ikv), false, 2},
    {"ild", ColumnType::kInt4, offsetof(r_kv_ld, ild), sizeof(r_kv_ld::ild), false, 3},
    {"next", ColumnType::kInt4, offsetof(r_kv_ld, next), sizeof(r_kv_ld::next), false, 4},
    {"prev", ColumnType::kInt4, offsetof(r_kv_ld, prev), sizeof(r_kv_ld::prev), false, 5},
};

constexpr ColumnInfo kRKvNdColumns[] = {
    {"kv_id", ColumnType::kText, offsetof(r_kv_nd, kv_id), sizeof(r_kv_nd::kv_id), true, 0},
    {"nd_id", ColumnType::kText, offsetof(r_kv_nd, nd_id), sizeof(r_kv_nd::nd_id), true, 1},
    {"ikv", ColumnType::kInt4, offsetof(r_kv_nd, ikv), sizeof(r_kv_nd::ikv), false, 2},
    {"ind", ColumnType::kInt4, offsetof(r_kv_nd, ind), sizeof(r_kv_nd::ind), false, 3},
    {"next", ColumnType::kInt4, offsetof(r_kv_nd, next), sizeof(r_kv_nd::next), false, 4},
    {"prev", ColumnType::kInt4, offsetof(r_kv_nd, prev), sizeof(r_kv_nd::prev), false, 5},
};

constexpr ColumnInfo kRKvUnColumns[] = {
    {"kv_id", ColumnType::kText, offsetof(r_kv_un, kv_id), sizeof(r_kv_un::kv_id), true, 0},
    {"un_id", ColumnType::kText, offsetof(r_kv_un, un_id), sizeof(r_kv_un::un_id), true, 1},
    {"ikv", ColumnType::kInt4, offsetof(r_kv_un, ikv), sizeof(r_kv_un::ikv), false, 2},
    {"iun", ColumnType::kInt4, offsetof(r_kv_un, iun), sizeof(r_kv_un::iun), false, 3},
    {"next", ColumnType::kInt4, offsetof(r_kv_un, next), sizeof(r_kv_un::next), false, 4},
    {"prev", ColumnType::kInt4, offsetof(r_kv_un, prev), sizeof(r_kv_un::prev), false, 5},
};

constexpr ColumnInfo kRKvZbrColumns[] = {
    {"kv_id", ColumnType::kText, offsetof(r_kv_zbr, kv_id), sizeof(r_kv_zbr::kv_id), true, 0},
    {"zbr_id", ColumnType::kText, offsetof(r_kv_zbr, zbr_id), sizeof(r_kv_zbr::zbr_id), true, 1},
    {"ikv", ColumnType::kInt4, offsetof(r_kv_zbr, ikv), sizeof(r_kv_zbr::ikv), false, 2},
    {"izbr", ColumnType::kInt4, offsetof(r_kv_zbr, izbr), sizeof(r_kv_zbr::izbr), false, 3},
    {"next", ColumnType::kInt4, offsetof(r_kv_zbr, next), sizeof(r_kv_zbr::next), false, 4},
    {"prev", ColumnType::kInt4, offsetof(r_kv_zbr, prev), sizeof(r_kv_zbr::prev), false, 5},
};

}  // namespace

std::span<const ColumnInfo> r_kv_bus::Columns() { return kRKvBusColumns; }

std::span<const ColumnInfo> r_kv_cb::Columns() { return kRKvCbColumns; }

std::span<const ColumnInfo> r_kv_cp::Columns() { return kRKvCpColumns; }

std::span<const ColumnInfo> r_kv_ld::Columns() { return kRKvLdColumns; }

std::span<const ColumnInfo> r_kv_nd::Columns() { return kRKvNdColumns; }

std::span<const ColumnInfo> r_kv_un::Columns() { return kRKvUnColumns; }

std::span<const ColumnInfo> r_kv_zbr::Columns() { return kRKvZbrColumns; }

}  // namespace dtsdb
