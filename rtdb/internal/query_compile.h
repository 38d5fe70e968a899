/// \file
/// Queries made ready for a table: which part of it to walk over, which rows to take, in what order.
#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "rtdb/internal/query_parser.h"

namespace dtsdb::internal::rtdb {

/// The stretch of a table's keys that a query needs. Both ends are prefixes, inclusive; empty means open.
struct KeyRange {
  std::string low;
  std::string high;
  bool open = false;   ///< no key column bounds it from above
  bool exact = false;  ///< every row in it fulfils the condition
  bool none = false;   ///< no row can fulfil the condition

  bool IsBeyond(std::string_view key) const;
};

/// A query parsed for one table class, without the bound values.
class CompiledQuery {
 public:
  /// Takes the compiled form that the query has kept, or makes it. Null with the reason in `status` for a bad query.
  static std::shared_ptr<const CompiledQuery> Of(dbQuery& query, const std::shared_ptr<const RowPlan>& plan,
                                                 const std::string& table, Status& status);

  bool HasCondition() const { return m_query.root >= 0; }
  const std::vector<OrderColumn>& Order() const { return m_query.order; }
  /// Whether rows in key order are in the query's order.
  bool KeepsKeyOrder() const { return m_keyOrder; }

  /// The bound values as they are now, one for each element of the query.
  static void ReadValues(const std::vector<dbQueryElement>& elements, std::vector<Value>& values);
  /// The stretch of keys for these values.
  void Range(const std::vector<Value>& values, KeyRange& range) const;
  /// Whether a row fulfils the condition.
  bool Matches(std::string_view image, const std::vector<Value>& values) const;
  /// A form of the row's order columns whose bytewise order is the query's.
  void SortKey(std::string_view image, std::string& key) const;

 private:
  /// A comparison of a key column with a value that every row must fulfil.
  struct Bound {
    std::size_t column;
    Operation::Kind kind;
    const Operand* value;
  };

  CompiledQuery(const std::vector<dbQueryElement>& elements, std::shared_ptr<const RowPlan> plan)
      : m_plan(std::move(plan)), m_elements(elements) {}

  bool IsFor(const std::vector<dbQueryElement>& elements, const RowPlan* plan) const;
  void FindBounds(int operation);
  bool IsKeyOrder() const;
  bool Holds(int operation, std::string_view image, const std::vector<Value>& values) const;
  Value ValueOf(const Operand& operand, std::string_view image, const std::vector<Value>& values) const;
  /// Appends the bound's value in key form. False where the key form can't express it.
  bool AppendBound(const Bound& bound, const std::vector<Value>& values, std::string& key, bool& none) const;

  std::shared_ptr<const RowPlan> m_plan;
  std::vector<dbQueryElement> m_elements;
  ParsedQuery m_query;
  std::vector<Bound> m_bounds;
  bool m_onlyBounds = true;  ///< the condition contains nothing beside m_bounds
  bool m_keyOrder = true;
};

}  // namespace dtsdb::internal::rtdb
