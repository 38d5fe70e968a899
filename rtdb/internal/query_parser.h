/// \file
/// A query's text as conditions over a table's columns.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "rtdb/internal/row_image.h"
#include "rtdb/internal/status.h"
#include "rtdb/query.h"

namespace dtsdb::internal::rtdb {

/// One side of a comparison.
struct Operand {
  enum Kind { kColumn, kConstant, kBound };
  Kind kind = kConstant;
  std::size_t index = 0;  ///< of the column in the schema, or of the bound element in the query
  Value constant;         ///< a text lies in `text`
  std::string text;
  bool isText = false;
};

/// One operation of a condition. Operands that are conditions stand in front of it in the list.
struct Operation {
  enum Kind { kAnd, kOr, kNot, kTruth, kEqual, kUnequal, kLess, kLessEqual, kGreater, kGreaterEqual, kLike };
  Kind kind = kTruth;
  int left = -1;
  int right = -1;
  Operand first;
  Operand second;
};

struct OrderColumn {
  std::size_t column = 0;
  bool descending = false;
};

struct ParsedQuery {
  std::vector<Operation> operations;
  int root = -1;  ///< the whole condition, -1 for none
  std::vector<OrderColumn> order;
};

/// Parses a query for a table. Unknown columns, comparisons of texts with numbers and bad syntax return an error whose
/// message shows the query with "?" for bound values.
Status ParseQuery(const std::vector<dbQueryElement>& elements, const RowPlan& plan, const std::string& table,
                  ParsedQuery& query);

}  // namespace dtsdb::internal::rtdb
