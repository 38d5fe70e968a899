// Written by scripts/generate from the description in schema/: change it there.
#include "rtdb/rows/relations_of_owners.h"

#include <cstddef>

// clang-format off

namespace dtsdb {
namespace {

// Name, type, place and size in the row, whether a row is found by it, place among the record's fields.
constexpr ColumnInfo kRCoDvColumns[] = {
    {"co_id", ColumnType::kText, offsetof(r_co_dv, co_id), sizeof(r_co_dv::co_id), true, 0},
    {"dv_id", ColumnType::kText, offsetof(r_co_dv, dv_id), sizeof(r_co_dv::dv_id), true, 1},
    {"ico", ColumnType::kInt4, offsetof(r_co_dv, ico), sizeof(r_co_dv::ico), false, 2},
    {"idv", ColumnType::kInt4, offsetof(r_co_dv, idv), sizeof(r_co_dv::idv), false, 3},
    {"next", ColumnType::kInt4, offsetof(r_co_dv, next), sizeof(r_co_dv::next), false, 4},
    {"prev", ColumnType::kInt4, offsetof(r_co_dv, prev), sizeof(r_co_dv::prev), false, 5},
};

constexpr ColumnInfo kRDvDlnColumns[] = {
    {"dv_id", ColumnType::kText, offsetof(r_dv_dln, dv_id), sizeof(r_dv_dln::dv_id), true, 0},
    {"dln_id", ColumnType::kText, offsetof(r_dv_dln, dln_id), sizeof(r_dv_dln::dln_id), true, 1},
    {"idv", ColumnType::kInt4, offsetof(r_dv_dln, idv), sizeof(r_dv_dln::idv), false, 2},
    {"idln", ColumnType::kInt4, offsetof(r_dv_dln, idln), sizeof(r_dv_dln::idln), false, 3},
    {"next", ColumnType::kInt4, offsetof(r_dv_dln, next), sizeof(r_dv_dln::next), false, 4},
    {"prev", ColumnType::kInt4, offsetof(r_dv_dln, prev), sizeof(r_dv_dln::prev), false, 5},
};

constexpr ColumnInfo kRDvLnColumns[] = {
    {"dv_id", ColumnType::kText, offsetof(r_dv_ln, dv_id), sizeof(r_dv_ln::dv_id), true, 0},
    {"ln_id", ColumnType::kText, offsetof(r_dv_ln, ln_id), sizeof(r_dv_ln::ln_id), true, 1},
    {"idv", ColumnType::kInt4, offsetof(r_dv_ln, idv), sizeof(r_dv_ln::idv), false, 2},
    {"iln", ColumnType::kInt4, offsetof(r_dv_ln, iln), sizeof(r_dv_ln::iln), false, 3},
    {"next", ColumnType::kInt4, offsetof(r_dv_ln, next), sizeof(r_dv_ln::next), false, 4},
    {"prev", ColumnType::kInt4, offsetof(r_dv_ln, prev), sizeof(r_dv_ln::prev), false, 5},
};

constexpr ColumnInfo kRDvStColumns[] = {
    {"dv_id", ColumnType::kText, offsetof(r_dv_st, dv_id), sizeof(r_dv_st::dv_id), true, 0},
    {"st_id", ColumnType::kText, offsetof(r_dv_st, st_id), sizeof(r_dv_st::st_id), true, 1},
    {"idv", ColumnType::kInt4, offsetof(r_dv_st, idv), sizeof(r_dv_st::idv), false, 2},
    {"ist", ColumnType::kInt4, offsetof(r_dv_st, ist), sizeof(r_dv_st::ist), false, 3},
    {"next", ColumnType::kInt4, offsetof(r_dv_st, next), sizeof(r_dv_st::next), false, 4},
    {"prev", ColumnType::kInt4, offsetof(r_dv_st, prev), sizeof(r_dv_st::prev), false, 5},
};

constexpr ColumnInfo kRStKvColumns[] = {
    {"st_id", ColumnType::kText, offsetof(r_st_kv, st_id), sizeof(r_st_kv::st_id), true, 0},
    {"kv_id", ColumnType::kText, offsetof(r_st_kv, kv_id), sizeof(r_st_kv::kv_id), true, 1},
    {"ist", ColumnType::kInt4, offsetof(r_st_kv, ist), sizeof(r_st_kv::ist), false, 2},
    {"ikv", ColumnType::kInt4, offsetof(r_st_kv, ikv), sizeof(r_st_kv::ikv), false, 3},
    {"next", ColumnType::kInt4, offsetof(r_st_kv, next), sizeof(r_st_kv::next), false, 4},
    {"prev", ColumnType::kInt4, offsetof(r_st_kv, prev), sizeof(r_st_kv::prev), false, 5},
};

constexpr ColumnInfo kRStXfColumns[] = {
    {"st_id", ColumnType::kText, offsetof(r_st_xf, st_id), sizeof(r_st_xf::st_id), true, 0},
    {"xf_id", ColumnType::kText, offsetof(r_st_xf, xf_id), sizeof(r_st_xf::xf_id), true, 1},
    {"ist", ColumnType::kInt4, offsetof(r_st_xf, ist), sizeof(r_st_xf::ist), false, 2},
    {"ixf", ColumnType::kInt4, offsetof(r_st_xf, ixf), sizeof(r_st_xf::ixf), false, 3},
    {"next", ColumnType::kInt4, offsetof(r_st_xf, next), sizeof(r_st_xf::next), false, 4},
    {"prev", ColumnType::kInt4, offsetof(r_st_xf, prev), sizeof(r_st_xf::prev), false, 5},
};

}  // namespace

std::span<const ColumnInfo> r_co_dv::Columns() { return kRCoDvColumns; }

std::span<const ColumnInfo> r_dv_dln::Columns() { return kRDvDlnColumns; }

std::span<const ColumnInfo> r_dv_ln::Columns() { return kRDvLnColumns; }

std::span<const ColumnInfo> r_dv_st::Columns() { return kRDvStColumns; }

std::span<const ColumnInfo> r_st_kv::Columns() { return kRStKvColumns; }

std::span<const ColumnInfo> r_st_xf::Columns() { return kRStXfColumns; }

}  // namespace dtsdb
