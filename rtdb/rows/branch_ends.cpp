// Written by scripts/generate from the description in schema/: change it there.
#include "rtdb/rows/branch_ends.h"

#include <cstddef>

// clang-format off

namespace dtsdb {
namespace {

// Name, type, place and size in the row, whether a row is found by it, place among the record's fields.
constexpr ColumnInfo kCb2Columns[] = {
    {"id", ColumnType::kText, offsetof(cb2, id), sizeof(cb2::id), true, 0},
    {"icb", ColumnType::kInt4, offsetof(cb2, icb), sizeof(cb2::icb), false, 1},
    {"r_nd_cb2", ColumnType::kInt4, offsetof(cb2, r_nd_cb2), sizeof(cb2::r_nd_cb2), false, 2},
};

constexpr ColumnInfo kLn2Columns[] = {
    {"id", ColumnType::kText, offsetof(ln2, id), sizeof(ln2::id), true, 0},
    {"p", ColumnType::kReal4, offsetof(ln2, p), sizeof(ln2::p), false, 1},
    {"q", ColumnType::kReal4, offsetof(ln2, q), sizeof(ln2::q), false, 2},
    {"i", ColumnType::kReal4, offsetof(ln2, i), sizeof(ln2::i), false, 3},
    {"iana_p", ColumnType::kInt4, offsetof(ln2, iana_p), sizeof(ln2::iana_p), false, 4},
    {"iana_q", ColumnType::kInt4, offsetof(ln2, iana_q), sizeof(ln2::iana_q), false, 5},
    {"iln", ColumnType::kInt4, offsetof(ln2, iln), sizeof(ln2::iln), false, 6},
    {"flags", ColumnType::kNat4, offsetof(ln2, flags), sizeof(ln2::flags), false, 7},
    {"r_nd", ColumnType::kInt4, offsetof(ln2, r_nd), sizeof(ln2::r_nd), false, 8},
};

constexpr ColumnInfo kDln2Columns[] = {
    {"id", ColumnType::kText, offsetof(dln2, id), sizeof(dln2::id), true, 0},
    {"p", ColumnType::kReal4, offsetof(dln2, p), sizeof(dln2::p), false, 1},
    {"q", ColumnType::kReal4, offsetof(dln2, q), sizeof(dln2::q), false, 2},
    {"i", ColumnType::kReal4, offsetof(dln2, i), sizeof(dln2::i), false, 3},
    {"iana_p", ColumnType::kInt4, offsetof(dln2, iana_p), sizeof(dln2::iana_p), false, 4},
    {"iana_q", ColumnType::kInt4, offsetof(dln2, iana_q), sizeof(dln2::iana_q), false, 5},
    {"idln", ColumnType::kInt4, offsetof(dln2, idln), sizeof(dln2::idln), false, 6},
    {"flags", ColumnType::kNat4, offsetof(dln2, flags), sizeof(dln2::flags), false, 7},
    {"r_nd", ColumnType::kInt4, offsetof(dln2, r_nd), sizeof(dln2::r_nd), false, 8},
};

constexpr ColumnInfo kXf2Columns[] = {
    {"id", ColumnType::kText, offsetof(xf2, id), sizeof(xf2::id), true, 0},
    {"p", ColumnType::kReal4, offsetof(xf2, p), sizeof(xf2::p), false, 1},
    {"q", ColumnType::kReal4, offsetof(xf2, q), sizeof(xf2::q), false, 2},
    {"i", ColumnType::kReal4, offsetof(xf2, i), sizeof(xf2::i), false, 3},
    {"iana_p", ColumnType::kInt4, offsetof(xf2, iana_p), sizeof(xf2::iana_p), false, 4},
    {"iana_q", ColumnType::kInt4, offsetof(xf2, iana_q), sizeof(xf2::iana_q), false, 5},
    {"ixf", ColumnType::kInt4, offsetof(xf2, ixf), sizeof(xf2::ixf), false, 6},
    {"flags", ColumnType::kNat4, offsetof(xf2, flags), sizeof(xf2::flags), false, 7},
    {"r_nd", ColumnType::kInt4, offsetof(xf2, r_nd), sizeof(xf2::r_nd), false, 8},
};

constexpr ColumnInfo kZbr2Columns[] = {
    {"id", ColumnType::kText, offsetof(zbr2, id), sizeof(zbr2::id), true, 0},
    {"p", ColumnType::kReal4, offsetof(zbr2, p), sizeof(zbr2::p), false, 1},
    {"q", ColumnType::kReal4, offsetof(zbr2, q), sizeof(zbr2::q), false, 2},
    {"i", ColumnType::kReal4, offsetof(zbr2, i), sizeof(zbr2::i), false, 3},
    {"iana_p", ColumnType::kInt4, offsetof(zbr2, iana_p), sizeof(zbr2::iana_p), false, 4},
    {"iana_q", ColumnType::kInt4, offsetof(zbr2, iana_q), sizeof(zbr2::iana_q), false, 5},
    {"izbr", ColumnType::kInt4, offsetof(zbr2, izbr), sizeof(zbr2::izbr), false, 6},
    {"flags", ColumnType::kNat4, offsetof(zbr2, flags), sizeof(zbr2::flags), false, 7},
    {"r_nd", ColumnType::kInt4, offsetof(zbr2, r_nd), sizeof(zbr2::r_nd), false, 8},
};

}  // namespace

std::span<const ColumnInfo> cb2::Columns() { return kCb2Columns; }

std::span<const ColumnInfo> ln2::Columns() { return kLn2Columns; }

std::span<const ColumnInfo> dln2::Columns() { return kDln2Columns; }

std::span<const ColumnInfo> xf2::Columns() { return kXf2Columns; }

std::span<const ColumnInfo> zbr2::Columns() { return kZbr2Columns; }

}  // namespace dtsdb
