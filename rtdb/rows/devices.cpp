// Written by scripts/generate from the description in schema/: change it there.
#include "rtdb/rows/devices.h"

#include <cstddef>

// clang-format off

namespace dtsdb {
namespace {

// Name, type, place and size in the row, whether a row is found by it, place among the record's fields.
constexpr ColumnInfo kNdColumns[] = {
    {"id", ColumnType::kText, offsetof(nd, id), sizeof(nd::id), true, 0},
    {"ibs", ColumnType::kInt4, offsetof(nd, ibs), sizeof(nd::ibs), false, 1},
    {"ibs0", ColumnType::kInt4, offsetof(nd, ibs0), sizeof(nd::ibs0), false, 2},
    {"flags", ColumnType::kNat4, offsetof(nd, flags), sizeof(nd::flags), false, 3},
    {"next", ColumnType::kInt4, offsetof(nd, next), sizeof(nd::next), false, 4},
    {"n1", ColumnType::kInt4, offsetof(nd, n1), sizeof(nd::n1), false, 5},
    {"r_kv_nd", ColumnType::kInt4, offsetof(nd, r_kv_nd), sizeof(nd::r_kv_nd), false, 6},
    {"r_nd_cb2", ColumnType::kInt4, offsetof(nd, r_nd_cb2), sizeof(nd::r_nd_cb2), false, 7},
    {"r_nd_ln2", ColumnType::kInt4, offsetof(nd, r_nd_ln2), sizeof(nd::r_nd_ln2), false, 8},
    {"r_nd_xf2", ColumnType::kInt4, offsetof(nd, r_nd_xf2), sizeof(nd::r_nd_xf2), false, 9},
    {"r_nd_zbr2", ColumnType::kInt4, offsetof(nd, r_nd_zbr2), sizeof(nd::r_nd_zbr2), false, 10},
    {"r_nd_dln2", ColumnType::kInt4, offsetof(nd, r_nd_dln2), sizeof(nd::r_nd_dln2), false, 11},
};

constexpr ColumnInfo kBusColumns[] = {
    {"raw_0", ColumnType::kBytes, offsetof(bus, raw_0), sizeof(bus::raw_0), false, ColumnInfo::kNoField},
    {"id", ColumnType::kText, offsetof(bus, id), sizeof(bus::id), true, 0},
    {"raw_84", ColumnType::kBytes, offsetof(bus, raw_84), sizeof(bus::raw_84), false, ColumnInfo::kNoField},
    {"kv", ColumnType::kText, offsetof(bus, kv), sizeof(bus::kv), false, 1},
    {"nd", ColumnType::kText, offsetof(bus, nd), sizeof(bus::nd), false, 2},
    {"ind", ColumnType::kInt4, offsetof(bus, ind), sizeof(bus::ind), false, 3},
    {"ibs", ColumnType::kInt4, offsetof(bus, ibs), sizeof(bus::ibs), false, 4},
    {"ana_v", ColumnType::kText, offsetof(bus, ana_v), sizeof(bus::ana_v), false, 5},
    {"ana_a", ColumnType::kText, offsetof(bus, ana_a), sizeof(bus::ana_a), false, 6},
    {"iana_v", ColumnType::kInt4, offsetof(bus, iana_v), sizeof(bus::iana_v), false, 7},
    {"iana_a", ColumnType::kInt4, offsetof(bus, iana_a), sizeof(bus::iana_a), false, 8},
    {"v", ColumnType::kReal8, offsetof(bus, v), sizeof(bus::v), false, 9},
    {"a", ColumnType::kReal8, offsetof(bus, a), sizeof(bus::a), false, 10},
    {"f1", ColumnType::kReal4, offsetof(bus, f1), sizeof(bus::f1), false, 11},
    {"f2", ColumnType::kReal4, offsetof(bus, f2), sizeof(bus::f2), false, 12},
    {"f3", ColumnType::kReal4, offsetof(bus, f3), sizeof(bus::f3), false, 13},
    {"raw_148", ColumnType::kBytes, offsetof(bus, raw_148), sizeof(bus::raw_148), false, ColumnInfo::kNoField},
    {"tp_status", ColumnType::kNat4, offsetof(bus, tp_status), sizeof(bus::tp_status), false, 14},
    {"r_kv_bus", ColumnType::kInt4, offsetof(bus, r_kv_bus), sizeof(bus::r_kv_bus), false, 15},
};

constexpr ColumnInfo kUnColumns[] = {
    {"raw_0", ColumnType::kBytes, offsetof(un, raw_0), sizeof(un::raw_0), false, ColumnInfo::kNoField},
    {"id", ColumnType::kText, offsetof(un, id), sizeof(un::id), true, 0},
    {"raw_84", ColumnType::kBytes, offsetof(un, raw_84), sizeof(un::raw_84), false, ColumnInfo::kNoField},
    {"kv", ColumnType::kText, offsetof(un, kv), sizeof(un::kv), false, 1},
    {"nd", ColumnType::kText, offsetof(un, nd), sizeof(un::nd), false, 2},
    {"ind", ColumnType::kInt4, offsetof(un, ind), sizeof(un::ind), false, 3},
    {"ibs", ColumnType::kInt4, offsetof(un, ibs), sizeof(un::ibs), false, 4},
    {"pmax", ColumnType::kReal4, offsetof(un, pmax), sizeof(un::pmax), false, 5},
    {"f1", ColumnType::kReal4, offsetof(un, f1), sizeof(un::f1), false, 6},
    {"pcur", ColumnType::kReal4, offsetof(un, pcur), sizeof(un::pcur), false, 7},
    {"f2", ColumnType::kReal4, offsetof(un, f2), sizeof(un::f2), false, 8},
    {"f3", ColumnType::kReal4, offsetof(un, f3), sizeof(un::f3), false, 9},
    {"f4", ColumnType::kReal4, offsetof(un, f4), sizeof(un::f4), false, 10},
    {"f5", ColumnType::kReal4, offsetof(un, f5), sizeof(un::f5), false, 11},
    {"f6", ColumnType::kReal4, offsetof(un, f6), sizeof(un::f6), false, 12},
    {"ana_p", ColumnType::kText, offsetof(un, ana_p), sizeof(un::ana_p), false, 13},
    {"iana_p", ColumnType::kInt4, offsetof(un, iana_p), sizeof(un::iana_p), false, 14},
    {"ana_q", ColumnType::kText, offsetof(un, ana_q), sizeof(un::ana_q), false, 15},
    {"iana_q", ColumnType::kInt4, offsetof(un, iana_q), sizeof(un::iana_q), false, 16},
    {"ana_v", ColumnType::kText, offsetof(un, ana_v), sizeof(un::ana_v), false, 17},
    {"iana_v", ColumnType::kInt4, offsetof(un, iana_v), sizeof(un::iana_v), false, 18},
    {"raw_160", ColumnType::kBytes, offsetof(un, raw_160), sizeof(un::raw_160), false, ColumnInfo::kNoField},
    {"p", ColumnType::kReal4, offsetof(un, p), sizeof(un::p), false, 19},
    {"q", ColumnType::kReal4, offsetof(un, q), sizeof(un::q), false, 20},
    {"f7", ColumnType::kReal4, offsetof(un, f7), sizeof(un::f7), false, 21},
    {"a", ColumnType::kReal4, offsetof(un, a), sizeof(un::a), false, 22},
    {"f8", ColumnType::kReal4, offsetof(un, f8), sizeof(un::f8), false, 23},
    {"ref", ColumnType::kInt4, offsetof(un, ref), sizeof(un::ref), false, 24},
    {"raw_192", ColumnType::kBytes, offsetof(un, raw_192), sizeof(un::raw_192), false, ColumnInfo::kNoField},
    {"f9", ColumnType::kReal4, offsetof(un, f9), sizeof(un::f9), false, 25},
    {"f10", ColumnType::kReal4, offsetof(un, f10), sizeof(un::f10), false, 26},
    {"raw_252", ColumnType::kBytes, offsetof(un, raw_252), sizeof(un::raw_252), false, ColumnInfo::kNoField},
    {"status", ColumnType::kNat4, offsetof(un, status), sizeof(un::status), false, 27},
    {"tp_status", ColumnType::kNat4, offsetof(un, tp_status), sizeof(un::tp_status), false, 28},
    {"r_kv_un", ColumnType::kInt4, offsetof(un, r_kv_un), sizeof(un::r_kv_un), false, 29},
};

constexpr ColumnInfo kLdColumns[] = {
    {"raw_0", ColumnType::kBytes, offsetof(ld, raw_0), sizeof(ld::raw_0), false, ColumnInfo::kNoField},
    {"id", ColumnType::kText, offsetof(ld, id), sizeof(ld::id), true, 0},
    {"raw_124", ColumnType::kBytes, offsetof(ld, raw_124), sizeof(ld::raw_124), false, ColumnInfo::kNoField},
    {"kv", ColumnType::kText, offsetof(ld, kv), sizeof(ld::kv), false, 1},
    {"nd", ColumnType::kText, offsetof(ld, nd), sizeof(ld::nd), false, 2},
    {"ind", ColumnType::kInt4, offsetof(ld, ind), sizeof(ld::ind), false, 3},
    {"ibs", ColumnType::kInt4, offsetof(ld, ibs), sizeof(ld::ibs), false, 4},
    {"ana_p", ColumnType::kText, offsetof(ld, ana_p), sizeof(ld::ana_p), false, 5},
    {"ana_q", ColumnType::kText, offsetof(ld, ana_q), sizeof(ld::ana_q), false, 6},
    {"ana_i", ColumnType::kText, offsetof(ld, ana_i), sizeof(ld::ana_i), false, 7},
    {"ana_v", ColumnType::kText, offsetof(ld, ana_v), sizeof(ld::ana_v), false, 8},
    {"iana_p", ColumnType::kInt4, offsetof(ld, iana_p), sizeof(ld::iana_p), false, 9},
    {"iana_q", ColumnType::kInt4, offsetof(ld, iana_q), sizeof(ld::iana_q), false, 10},
    {"iana_i", ColumnType::kInt4, offsetof(ld, iana_i), sizeof(ld::iana_i), false, 11},
    {"iana_v", ColumnType::kInt4, offsetof(ld, iana_v), sizeof(ld::iana_v), false, 12},
    {"status", ColumnType::kNat4, offsetof(ld, status), sizeof(ld::status), false, 13},
    {"tp_status", ColumnType::kNat4, offsetof(ld, tp_status), sizeof(ld::tp_status), false, 14},
    {"f1", ColumnType::kReal4, offsetof(ld, f1), sizeof(ld::f1), false, 15},
    {"f2", ColumnType::kReal4, offsetof(ld, f2), sizeof(ld::f2), false, 16},
    {"p", ColumnType::kReal4, offsetof(ld, p), sizeof(ld::p), false, 17},
    {"q", ColumnType::kReal4, offsetof(ld, q), sizeof(ld::q), false, 18},
    {"f3", ColumnType::kReal4, offsetof(ld, f3), sizeof(ld::f3), false, 19},
    {"f4", ColumnType::kReal4, offsetof(ld, f4), sizeof(ld::f4), false, 20},
    {"f5", ColumnType::kReal4, offsetof(ld, f5), sizeof(ld::f5), false, 21},
    {"f6", ColumnType::kReal4, offsetof(ld, f6), sizeof(ld::f6), false, 22},
    {"f7", ColumnType::kReal4, offsetof(ld, f7), sizeof(ld::f7), false, 23},
    {"a", ColumnType::kReal4, offsetof(ld, a), sizeof(ld::a), false, 24},
    {"f9", ColumnType::kReal4, offsetof(ld, f9), sizeof(ld::f9), false, 25},
    {"ref", ColumnType::kInt4, offsetof(ld, ref), sizeof(ld::ref), false, 26},
    {"raw_236", ColumnType::kBytes, offsetof(ld, raw_236), sizeof(ld::raw_236), false, ColumnInfo::kNoField},
    {"r_kv_ld", ColumnType::kInt4, offsetof(ld, r_kv_ld), sizeof(ld::r_kv_ld), false, 27},
};

constexpr ColumnInfo kCpColumns[] = {
    {"raw_0", ColumnType::kBytes, offsetof(cp, raw_0), sizeof(cp::raw_0), false, ColumnInfo::kNoField},
    {"id", ColumnType::kText, offsetof(cp, id), sizeof(cp::id), true, 0},
    {"raw_164", ColumnType::kBytes, offsetof(cp, raw_164), sizeof(cp::raw_164), false, ColumnInfo::kNoField},
    {"kv", ColumnType::kText, offsetof(cp, kv), sizeof(cp::kv), false, 1},
    {"nd", ColumnType::kText, offsetof(cp, nd), sizeof(cp::nd), false, 2},
    {"ind", ColumnType::kInt4, offsetof(cp, ind), sizeof(cp::ind), false, 3},
    {"ibs", ColumnType::kInt4, offsetof(cp, ibs), sizeof(cp::ibs), false, 4},
    {"ana_q", ColumnType::kText, offsetof(cp, ana_q), sizeof(cp::ana_q), false, 5},
    {"iana_q", ColumnType::kInt4, offsetof(cp, iana_q), sizeof(cp::iana_q), false, 6},
    {"status", ColumnType::kNat4, offsetof(cp, status), sizeof(cp::status), false, 7},
    {"tp_status", ColumnType::kNat4, offsetof(cp, tp_status), sizeof(cp::tp_status), false, 8},
    {"f1", ColumnType::kReal4, offsetof(cp, f1), sizeof(cp::f1), false, 9},
    {"f2", ColumnType::kReal4, offsetof(cp, f2), sizeof(cp::f2), false, 10},
    {"f3", ColumnType::kReal4, offsetof(cp, f3), sizeof(cp::f3), false, 11},
    {"f4", ColumnType::kReal4, offsetof(cp, f4), sizeof(cp::f4), false, 12},
    {"p", ColumnType::kReal4, offsetof(cp, p), sizeof(cp::p), false, 13},
    {"q", ColumnType::kReal4, offsetof(cp, q), sizeof(cp::q), false, 14},
    {"f5", ColumnType::kReal4, offsetof(cp, f5), sizeof(cp::f5), false, 15},
    {"raw_232", ColumnType::kBytes, offsetof(cp, raw_232), sizeof(cp::raw_232), false, ColumnInfo::kNoField},
    {"r_kv_cp", ColumnType::kInt4, offsetof(cp, r_kv_cp), sizeof(cp::r_kv_cp), false, 16},
};

}  // namespace

std::span<const ColumnInfo> nd::Columns() { return kNdColumns; }

std::span<const ColumnInfo> bus::Columns() { return kBusColumns; }

std::span<const ColumnInfo> un::Columns() { return kUnColumns; }

std::span<const ColumnInfo> ld::Columns() { return kLdColumns; }

std::span<const ColumnInfo> cp::Columns() { return kCpColumns; }

}  // namespace dtsdb
