// Written by scripts/generate from the description in schema/: change it there.
#include "rtdb/rows/results.h"

#include <cstddef>

// clang-format off

namespace dtsdb {
namespace {

// Name, type, place and size in the row, whether a row is found by it, place among the record's fields.
constexpr ColumnInfo kBsColumns[] = {
    {"id", ColumnType::kInt4, offsetof(bs, id), sizeof(bs::id), true, 0},
    {"name", ColumnType::kText, offsetof(bs, name), sizeof(bs::name), false, 1},
    {"ikv", ColumnType::kInt4, offsetof(bs, ikv), sizeof(bs::ikv), false, 2},
    {"raw_12", ColumnType::kBytes, offsetof(bs, raw_12), sizeof(bs::raw_12), false, ColumnInfo::kNoField},
    {"f0", ColumnType::kReal8, offsetof(bs, f0), sizeof(bs::f0), false, 3},
    {"island", ColumnType::kInt4, offsetof(bs, island), sizeof(bs::island), false, 4},
    {"status", ColumnType::kNat4, offsetof(bs, status), sizeof(bs::status), false, 5},
    {"flags", ColumnType::kNat4, offsetof(bs, flags), sizeof(bs::flags), false, 6},
    {"next", ColumnType::kInt4, offsetof(bs, next), sizeof(bs::next), false, 7},
    {"prev", ColumnType::kInt4, offsetof(bs, prev), sizeof(bs::prev), false, 8},
    {"ibsl", ColumnType::kInt4, offsetof(bs, ibsl), sizeof(bs::ibsl), false, 9},
    {"v", ColumnType::kReal8, offsetof(bs, v), sizeof(bs::v), false, 10},
    {"a", ColumnType::kReal8, offsetof(bs, a), sizeof(bs::a), false, 11},
    {"f1", ColumnType::kReal8, offsetof(bs, f1), sizeof(bs::f1), false, 12},
    {"f2", ColumnType::kReal8, offsetof(bs, f2), sizeof(bs::f2), false, 13},
    {"f3", ColumnType::kReal8, offsetof(bs, f3), sizeof(bs::f3), false, 14},
    {"f4", ColumnType::kReal8, offsetof(bs, f4), sizeof(bs::f4), false, 15},
    {"n1", ColumnType::kInt4, offsetof(bs, n1), sizeof(bs::n1), false, 16},
};

constexpr ColumnInfo kBslColumns[] = {
    {"id", ColumnType::kInt4, offsetof(bsl, id), sizeof(bsl::id), true, 0},
    {"next", ColumnType::kInt4, offsetof(bsl, next), sizeof(bsl::next), false, 1},
    {"prev", ColumnType::kInt4, offsetof(bsl, prev), sizeof(bsl::prev), false, 2},
    {"kind", ColumnType::kInt4, offsetof(bsl, kind), sizeof(bsl::kind), false, 3},
    {"ref", ColumnType::kInt4, offsetof(bsl, ref), sizeof(bsl::ref), false, 4},
};

constexpr ColumnInfo kIslandColumns[] = {
    {"id", ColumnType::kInt4, offsetof(island, id), sizeof(island::id), true, 0},
    {"ref_ibs", ColumnType::kInt4, offsetof(island, ref_ibs), sizeof(island::ref_ibs), false, 1},
    {"ref_un", ColumnType::kInt4, offsetof(island, ref_un), sizeof(island::ref_un), false, 2},
    {"ref_a", ColumnType::kReal4, offsetof(island, ref_a), sizeof(island::ref_a), false, 3},
    {"f1", ColumnType::kReal4, offsetof(island, f1), sizeof(island::f1), false, 4},
    {"f2", ColumnType::kReal4, offsetof(island, f2), sizeof(island::f2), false, 5},
    {"f3", ColumnType::kReal4, offsetof(island, f3), sizeof(island::f3), false, 6},
    {"ref_id", ColumnType::kText, offsetof(island, ref_id), sizeof(island::ref_id), false, 7},
    {"name", ColumnType::kText, offsetof(island, name), sizeof(island::name), false, 8},
};

constexpr ColumnInfo kChndColumns[] = {
    {"id", ColumnType::kInt4, offsetof(chnd, id), sizeof(chnd::id), true, 0},
    {"ind", ColumnType::kInt4, offsetof(chnd, ind), sizeof(chnd::ind), false, 1},
    {"ibs_new", ColumnType::kInt4, offsetof(chnd, ibs_new), sizeof(chnd::ibs_new), false, 2},
    {"ibs_old", ColumnType::kInt4, offsetof(chnd, ibs_old), sizeof(chnd::ibs_old), false, 3},
    {"ikv", ColumnType::kInt4, offsetof(chnd, ikv), sizeof(chnd::ikv), false, 4},
};

constexpr ColumnInfo kTplColumns[] = {
    {"id", ColumnType::kInt4, offsetof(tpl, id), sizeof(tpl::id), true, 0},
    {"kind", ColumnType::kInt4, offsetof(tpl, kind), sizeof(tpl::kind), false, 1},
    {"n1", ColumnType::kInt4, offsetof(tpl, n1), sizeof(tpl::n1), false, 2},
    {"name", ColumnType::kText, offsetof(tpl, name), sizeof(tpl::name), false, 3},
    {"n2", ColumnType::kInt4, offsetof(tpl, n2), sizeof(tpl::n2), false, 4},
    {"n3", ColumnType::kInt4, offsetof(tpl, n3), sizeof(tpl::n3), false, 5},
    {"time", ColumnType::kNat4, offsetof(tpl, time), sizeof(tpl::time), false, 6},
    {"event", ColumnType::kText, offsetof(tpl, event), sizeof(tpl::event), false, 7},
};

constexpr ColumnInfo kTptraceColumns[] = {
    {"id", ColumnType::kInt4, offsetof(tptrace, id), sizeof(tptrace::id), true, 0},
    {"name", ColumnType::kText, offsetof(tptrace, name), sizeof(tptrace::name), false, 1},
    {"type", ColumnType::kInt4, offsetof(tptrace, type), sizeof(tptrace::type), false, 2},
    {"n1", ColumnType::kInt4, offsetof(tptrace, n1), sizeof(tptrace::n1), false, 3},
    {"status", ColumnType::kInt4, offsetof(tptrace, status), sizeof(tptrace::status), false, 4},
    {"time", ColumnType::kNat4, offsetof(tptrace, time), sizeof(tptrace::time), false, 5},
};

constexpr ColumnInfo kGlobalColumns[] = {
    {"id", ColumnType::kInt4, offsetof(global, id), sizeof(global::id), true, 0},
    {"f1", ColumnType::kReal4, offsetof(global, f1), sizeof(global::f1), false, 1},
    {"bs_free", ColumnType::kInt4, offsetof(global, bs_free), sizeof(global::bs_free), false, 2},
    {"bs_dead", ColumnType::kInt4, offsetof(global, bs_dead), sizeof(global::bs_dead), false, 3},
    {"bs_live", ColumnType::kInt4, offsetof(global, bs_live), sizeof(global::bs_live), false, 4},
    {"bsl_free", ColumnType::kInt4, offsetof(global, bsl_free), sizeof(global::bsl_free), false, 5},
    {"bsl_head", ColumnType::kInt4, offsetof(global, bsl_head), sizeof(global::bsl_head), false, 6},
    {"n1", ColumnType::kInt4, offsetof(global, n1), sizeof(global::n1), false, 7},
    {"u1", ColumnType::kNat4, offsetof(global, u1), sizeof(global::u1), false, 8},
    {"time", ColumnType::kNat4, offsetof(global, time), sizeof(global::time), false, 9},
    {"valid", ColumnType::kInt4, offsetof(global, valid), sizeof(global::valid), false, 10},
    {"check_time", ColumnType::kNat4, offsetof(global, check_time), sizeof(global::check_time), false, 11},
    {"invalid", ColumnType::kInt4, offsetof(global, invalid), sizeof(global::invalid), false, 12},
    {"errors", ColumnType::kInt4, offsetof(global, errors), sizeof(global::errors), false, 13},
};

}  // namespace

std::span<const ColumnInfo> bs::Columns() { return kBsColumns; }

std::span<const ColumnInfo> bsl::Columns() { return kBslColumns; }

std::span<const ColumnInfo> island::Columns() { return kIslandColumns; }

std::span<const ColumnInfo> chnd::Columns() { return kChndColumns; }

std::span<const ColumnInfo> tpl::Columns() { return kTplColumns; }

std::span<const ColumnInfo> tptrace::Columns() { return kTptraceColumns; }

std::span<const ColumnInfo> global::Columns() { return kGlobalColumns; }

}  // namespace dtsdb
