// Written by scripts/generate from the description in schema/: change it there.
#include "rtdb/rows/relations_of_nodes.h"

#include <cstddef>

// clang-format off

namespace dtsdb {
namespace {

// Name, type, place and size in the row, whether a row is found by it, place among the record's fields.
constexpr ColumnInfo kRNdCb2Columns[] = {
    {"nd_id", ColumnType::kText, offsetof(r_nd_cb2, nd_id), sizeof(r_nd_cb2::nd_id), true, 0},
    {"cb2_id", ColumnType::kText, offsetof(r_nd_cb2, cb2_id), sizeof(r_nd_cb2::cb2_id), true, 1},
    {"ind", ColumnType::kInt4, offsetof(r_nd_cb2, ind), sizeof(r_nd_cb2::ind), false, 2},
    {"icb2", ColumnType::kInt4, offsetof(r_nd_cb2, icb2), sizeof(r_nd_cb2::icb2), false, 3},
    {"next", ColumnType::kInt4, offsetof(r_nd_cb2, next), sizeof(r_nd_cb2::next), false, 4},
    {"prev", ColumnType::kInt4, offsetof(r_nd_cb2, prev), sizeof(r_nd_cb2::prev), false, 5},
};

constexpr ColumnInfo kRNdDln2Columns[] = {
    {"nd_id", ColumnType::kText, offsetof(r_nd_dln2, nd_id), sizeof(r_nd_dln2::nd_id), true, 0},
    {"dln2_id", ColumnType::kText, offsetof(r_nd_dln2, dln2_id), sizeof(r_nd_dln2::dln2_id), true, 1},
    {"ind", ColumnType::kInt4, offsetof(r_nd_dln2, ind), sizeof(r_nd_dln2::ind), false, 2},
    {"idln2", ColumnType::kInt4, offsetof(r_nd_dln2, idln2), sizeof(r_nd_dln2::idln2), false, 3},
    {"next", ColumnType::kInt4, offsetof(r_nd_dln2, next), sizeof(r_nd_dln2::next), false, 4},
    {"prev", ColumnType::kInt4, offsetof(r_nd_dln2, prev), sizeof(r_nd_dln2::prev), false, 5},
};

constexpr ColumnInfo kRNdLn2Columns[] = {
    {"nd_id", ColumnType::kText, offsetof(r_nd_ln2, nd_id), sizeof(r_nd_ln2::nd_id), true, 0},
    {"ln2_id", ColumnType::kText, offsetof(r_nd_ln2, ln2_id), sizeof(r_nd_ln2::ln2_id), true, 1},
    {"ind", ColumnType::kInt4, offsetof(r_nd_ln2, ind), sizeof(r_nd_ln2::ind), false, 2},
    {"iln2", ColumnType::kInt4, offsetof(r_nd_ln2, iln2), sizeof(r_nd_ln2::iln2), false, 3},
    {"next", ColumnType::kInt4, offsetof(r_nd_ln2, next), sizeof(r_nd_ln2::next), false, 4},
    {"prev", ColumnType::kInt4, offsetof(r_nd_ln2, prev), sizeof(r_nd_ln2::prev), false, 5},
};

constexpr ColumnInfo kRNdXf2Columns[] = {
    {"nd_id", ColumnType::kText, offsetof(r_nd_xf2, nd_id), sizeof(r_nd_xf2::nd_id), true, 0},
    {"xf2_id", ColumnType::kText, offsetof(r_nd_xf2, xf2_id), sizeof(r_nd_xf2::xf2_id), true, 1},
    {"ind", ColumnType::kInt4, offsetof(r_nd_xf2, ind), sizeof(r_nd_xf2::ind), false, 2},
    {"ixf2", ColumnType::kInt4, offsetof(r_nd_xf2, ixf2), sizeof(r_nd_xf2::ixf2), false, 3},
    {"next", ColumnType::kInt4, offsetof(r_nd_xf2, next), sizeof(r_nd_xf2::next), false, 4},
    {"prev", ColumnType::kInt4, offsetof(r_nd_xf2, prev), sizeof(r_nd_xf2::prev), false, 5},
};

constexpr ColumnInfo kRNdZbr2Columns[] = {
    {"nd_id", ColumnType::kText, offsetof(r_nd_zbr2, nd_id), sizeof(r_nd_zbr2::nd_id), true, 0},
    {"zbr2_id", ColumnType::kText, offsetof(r_nd_zbr2, zbr2_id), sizeof(r_nd_zbr2::zbr2_id), true, 1},
    {"ind", ColumnType::kInt4, offsetof(r_nd_zbr2, ind), sizeof(r_nd_zbr2::ind), false, 2},
    {"izbr2", ColumnType::kInt4, offsetof(r_nd_zbr2, izbr2), sizeof(r_nd_zbr2::izbr2), false, 3},
    {"next", ColumnType::kInt4, offsetof(r_nd_zbr2, next), sizeof(r_nd_zbr2::next), false, 4},
    {"prev", ColumnType::kInt4, offsetof(r_nd_zbr2, prev), sizeof(r_nd_zbr2::prev), false, 5},
};

}  // namespace

std::span<const ColumnInfo> r_nd_cb2::Columns() { return kRNdCb2Columns; }

std::span<const ColumnInfo> r_nd_dln2::Columns() { return kRNdDln2Columns; }

std::span<const ColumnInfo> r_nd_ln2::Columns() { return kRNdLn2Columns; }

std::span<const ColumnInfo> r_nd_xf2::Columns() { return kRNdXf2Columns; }

std::span<const ColumnInfo> r_nd_zbr2::Columns() { return kRNdZbr2Columns; }

}  // namespace dtsdb
