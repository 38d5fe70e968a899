/// \file
/// The rows of the realtime database: one twin class for each record class of the model, under its lower-case name.
///
/// Their columns come from model/record_fields.h, in the order of the installation's tables. A twin has all the
/// fields of its record, each as a column of the same name, and where other programs keep things of their own
/// either a named column or a range of raw bytes, so that an update of the row carries them along.
/// docs/realtime-exchange.md describes the tables.
#pragma once

#include <string_view>
#include <utility>

#include "model/record_fields.h"
#include "model/table_list.h"
#include "rtdb/backend.h"

namespace dtsdb {

/// The column type for a field type. A one-byte field has a column of four.
#define DTSDB_COLUMN_QString char const*
#define DTSDB_COLUMN_i8 int4
#define DTSDB_COLUMN_u8 int4
#define DTSDB_COLUMN_i32 int4
#define DTSDB_COLUMN_u32 nat4
#define DTSDB_COLUMN_f32 real4
#define DTSDB_COLUMN_f64 real8

/// INDEXED for the columns by which the rows of `table` are found and ordered: `id`, and in a relation table the
/// two identities; else 0.
constexpr int IndexOf(std::string_view table, std::string_view column) {
  const bool isKey = table.starts_with("r_") ? column.ends_with("_id") : column == "id";
  return isKey ? INDEXED : 0;
}

/// What a list of column descriptors starts with: each further one then begins with its comma.
struct ColumnList {};
template <class First>
First&& operator,(ColumnList, First&& first) {
  return std::forward<First>(first);
}

#define DTSDB_TWIN_COLUMN(type, name, ...) DTSDB_COLUMN_##type name{};
#define DTSDB_TWIN_RANGE(name, size) char name[size]{};
#define DTSDB_DESCRIBE_COLUMN(type, name, ...) , KEY(name, IndexOf(kTableName, #name))
#define DTSDB_DESCRIBE_RANGE(name, size) , RAWFIELD(name)

// A new row is all zero: it stands beside other programs' columns that this system knows nothing of.
#define DTSDB_DECLARE_TWIN(T, twin, writer)                                                                          \
  class twin {                                                                                                       \
   public:                                                                                                           \
    static constexpr const char* kTableName = #twin;                                                                 \
    DTSDB_FIELDS_##T(DTSDB_TWIN_COLUMN, DTSDB_TWIN_RANGE, DTSDB_TWIN_COLUMN)                                         \
        TYPE_DESCRIPTOR((ColumnList()                                                                                \
                             DTSDB_FIELDS_##T(DTSDB_DESCRIBE_COLUMN, DTSDB_DESCRIBE_RANGE, DTSDB_DESCRIBE_COLUMN))); \
  };
DTSDB_TWINS(DTSDB_DECLARE_TWIN)

#undef DTSDB_DECLARE_TWIN
#undef DTSDB_DESCRIBE_RANGE
#undef DTSDB_DESCRIBE_COLUMN
#undef DTSDB_TWIN_RANGE
#undef DTSDB_TWIN_COLUMN

}  // namespace dtsdb
