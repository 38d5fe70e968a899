#include "rtdb/internal/query_compile.h"

#include <algorithm>
#include <cstring>
#include <limits>
#include <optional>

#include "rtdb/internal/key_code.h"

namespace dtsdb::internal::rtdb {
namespace {

/// "like": % stands for any bytes, _ for one. Linear but for the last % seen.
bool IsLike(std::string_view text, std::string_view pattern) {
  std::size_t t = 0;
  std::size_t p = 0;
  std::size_t afterPercent = std::string_view::npos;
  std::size_t retry = 0;
  while (t < text.size()) {
    if (p < pattern.size() && pattern[p] == '%') {
      afterPercent = ++p;
      retry = t;
    } else if (p < pattern.size() && (pattern[p] == '_' || pattern[p] == text[t])) {
      ++p;
      ++t;
    } else if (afterPercent != std::string_view::npos) {
      p = afterPercent;
      t = ++retry;
    } else {
      return false;
    }
  }
  return pattern.find_first_not_of('%', p) == std::string_view::npos;
}

template <class T>
bool Compared(Operation::Kind kind, const T& first, const T& second) {
  switch (kind) {
    case Operation::kEqual:
      return first == second;
    case Operation::kUnequal:
      return first != second;
    case Operation::kLess:
      return first < second;
    case Operation::kLessEqual:
      return first <= second;
    case Operation::kGreater:
      return first > second;
    case Operation::kGreaterEqual:
      return first >= second;
    default:
      return false;
  }
}

bool Compared(Operation::Kind kind, const Value& first, const Value& second) {
  if (kind == Operation::kLike) return IsLike(first.text, second.text);
  if (first.kind == Value::kText) return Compared(kind, first.text, second.text);
  if (first.kind == Value::kInteger && second.kind == Value::kInteger) {
    return Compared(kind, first.integer, second.integer);
  }
  return Compared(kind, first.AsReal(), second.AsReal());
}

Operation::Kind Mirrored(Operation::Kind kind) {
  switch (kind) {
    case Operation::kLess:
      return Operation::kGreater;
    case Operation::kLessEqual:
      return Operation::kGreaterEqual;
    case Operation::kGreater:
      return Operation::kLess;
    case Operation::kGreaterEqual:
      return Operation::kLessEqual;
    default:
      return kind;
  }
}

bool IsRange(Operation::Kind kind) {
  return kind == Operation::kEqual || kind == Operation::kLess || kind == Operation::kLessEqual ||
         kind == Operation::kGreater || kind == Operation::kGreaterEqual;
}

template <class T>
bool Fits(std::int64_t value) {
  return value >= static_cast<std::int64_t>(std::numeric_limits<T>::min()) &&
         value <= static_cast<std::int64_t>(std::numeric_limits<T>::max());
}

template <class T>
bool AppendFitting(std::string& key, dbField::FieldTypes type, std::int64_t value) {
  if (!Fits<T>(value)) return false;
  const T narrow = static_cast<T>(value);
  AppendNumber(key, type, &narrow);
  return true;
}

/// The key form of a whole number in a column of that type; false where the column can't hold it or is none of whole
/// numbers.
bool AppendInteger(std::string& key, dbField::FieldTypes type, std::int64_t value) {
  switch (type) {
    case dbField::tpBool:
      return AppendFitting<bool>(key, type, value);
    case dbField::tpInt1:
      return AppendFitting<std::int8_t>(key, type, value);
    case dbField::tpNat1:
      return AppendFitting<std::uint8_t>(key, type, value);
    case dbField::tpInt2:
      return AppendFitting<std::int16_t>(key, type, value);
    case dbField::tpNat2:
      return AppendFitting<std::uint16_t>(key, type, value);
    case dbField::tpInt4:
      return AppendFitting<std::int32_t>(key, type, value);
    case dbField::tpNat4:
      return AppendFitting<std::uint32_t>(key, type, value);
    case dbField::tpInt8:
      return AppendFitting<std::int64_t>(key, type, value);
    default:
      return false;
  }
}

bool SameElement(const dbQueryElement& a, const dbQueryElement& b) {
  return a.type == b.type && a.valueType == b.valueType && a.text == b.text;
}

}  // namespace

bool KeyRange::IsBeyond(std::string_view key) const {
  return !open && std::memcmp(key.data(), high.data(), std::min(key.size(), high.size())) > 0;
}

std::shared_ptr<const CompiledQuery> CompiledQuery::Of(dbQuery& query, const std::shared_ptr<const RowPlan>& plan,
                                                       const std::string& table, Status& status) {
  auto& kept = query.Compiled();
  if (kept != nullptr && kept->IsFor(query.Elements(), plan.get())) return kept;
  std::shared_ptr<CompiledQuery> made(new CompiledQuery(query.Elements(), plan));
  status = ParseQuery(made->m_elements, *plan, table, made->m_query);
  if (!status) return nullptr;
  if (made->m_query.root >= 0) made->FindBounds(made->m_query.root);
  made->m_keyOrder = made->IsKeyOrder();
  kept = made;
  return made;
}

bool CompiledQuery::IsFor(const std::vector<dbQueryElement>& elements, const RowPlan* plan) const {
  return plan == m_plan.get() &&
         std::equal(elements.begin(), elements.end(), m_elements.begin(), m_elements.end(), SameElement);
}

void CompiledQuery::FindBounds(int index) {
  const Operation& operation = m_query.operations[static_cast<std::size_t>(index)];
  if (operation.kind == Operation::kAnd) {
    FindBounds(operation.left);
    FindBounds(operation.right);
    return;
  }
  const auto& keys = m_plan->KeyColumns();
  const auto isKey = [&keys](const Operand& side) {
    return side.kind == Operand::kColumn && std::find(keys.begin(), keys.end(), side.index) != keys.end();
  };
  if (IsRange(operation.kind) && isKey(operation.first) && operation.second.kind != Operand::kColumn) {
    m_bounds.push_back({operation.first.index, operation.kind, &operation.second});
  } else if (IsRange(operation.kind) && isKey(operation.second) && operation.first.kind != Operand::kColumn) {
    m_bounds.push_back({operation.second.index, Mirrored(operation.kind), &operation.first});
  } else {
    m_onlyBounds = false;
  }
}

bool CompiledQuery::IsKeyOrder() const {
  const auto& order = m_query.order;
  const auto& keys = m_plan->KeyColumns();
  if (order.empty()) return true;
  if (order.size() > keys.size() || m_plan->TableSchema().longKeys) return false;
  return std::equal(order.begin(), order.end(), keys.begin(),
                    [](const OrderColumn& o, std::size_t key) { return !o.descending && o.column == key; });
}

void CompiledQuery::ReadValues(const std::vector<dbQueryElement>& elements, std::vector<Value>& values) {
  values.resize(elements.size());
  for (std::size_t i = 0; i < elements.size(); ++i) {
    const dbQueryElement& element = elements[i];
    if (element.type == dbQueryElement::qVariable) {
      values[i] = NumberValue(element.valueType, element.value);
    } else if (element.type != dbQueryElement::qExpression) {
      const void* text = element.value;
      if (element.type == dbQueryElement::qVarStringPtr && text != nullptr) {
        text = *static_cast<char const* const*>(element.value);
      }
      values[i] = {Value::kText, 0, 0, text == nullptr ? std::string_view() : static_cast<char const*>(text)};
    }
  }
}

Value CompiledQuery::ValueOf(const Operand& operand, std::string_view image, const std::vector<Value>& values) const {
  if (operand.kind == Operand::kColumn) return m_plan->ReadColumn(image, operand.index);
  if (operand.kind == Operand::kBound) return values[operand.index];
  if (operand.isText) return {Value::kText, 0, 0, operand.text};
  return operand.constant;
}

bool CompiledQuery::AppendBound(const Bound& bound, const std::vector<Value>& values, std::string& key,
                                bool& none) const {
  const Value value = ValueOf(*bound.value, {}, values);
  if (value.kind == Value::kText) {
    AppendText(key, value.text);
    return true;
  }
  if (value.kind != Value::kInteger) return false;
  const dbField::FieldTypes type = m_plan->TableSchema().columns[bound.column].type;
  if (AppendInteger(key, type, value.integer)) return true;
  none = bound.kind == Operation::kEqual && type != dbField::tpReal4 && type != dbField::tpReal8;
  return false;
}

void CompiledQuery::Range(const std::vector<Value>& values, KeyRange& range) const {
  range.low.clear();
  range.high.clear();
  range.none = false;
  std::size_t used = 0;
  bool equal = true;
  for (const std::size_t column : m_plan->KeyColumns()) {
    if (!equal) break;
    equal = false;
    const std::size_t prefix = range.low.size();
    bool below = false;
    bool above = false;
    for (const Bound& bound : m_bounds) {
      if (bound.column != column || range.none) continue;
      if (bound.kind == Operation::kEqual && !equal && !below && !above) {
        equal = AppendBound(bound, values, range.low, range.none);
        if (equal) {
          range.high.append(range.low, prefix);
          ++used;
        }
        continue;
      }
      if (equal) continue;
      bool ignored = false;
      const bool lower = bound.kind == Operation::kGreater || bound.kind == Operation::kGreaterEqual;
      if (lower && !below) below = AppendBound(bound, values, range.low, ignored);
      if (!lower && bound.kind != Operation::kEqual && !above) above = AppendBound(bound, values, range.high, ignored);
    }
  }
  range.open = range.high.empty();
  const bool lowCut = Shorten(range.low);
  const bool highCut = Shorten(range.high);
  range.exact = m_onlyBounds && !lowCut && !highCut && used == m_bounds.size();
}

bool CompiledQuery::Matches(std::string_view image, const std::vector<Value>& values) const {
  return m_query.root < 0 || Holds(m_query.root, image, values);
}

bool CompiledQuery::Holds(int index, std::string_view image, const std::vector<Value>& values) const {
  const Operation& operation = m_query.operations[static_cast<std::size_t>(index)];
  switch (operation.kind) {
    case Operation::kAnd:
      return Holds(operation.left, image, values) && Holds(operation.right, image, values);
    case Operation::kOr:
      return Holds(operation.left, image, values) || Holds(operation.right, image, values);
    case Operation::kNot:
      return !Holds(operation.left, image, values);
    case Operation::kTruth:
      return ValueOf(operation.first, image, values).integer != 0;
    default:
      return Compared(operation.kind, ValueOf(operation.first, image, values),
                      ValueOf(operation.second, image, values));
  }
}

void CompiledQuery::SortKey(std::string_view image, std::string& key) const {
  key.clear();
  for (const OrderColumn& order : m_query.order) {
    const Value value = m_plan->ReadColumn(image, order.column);
    const std::size_t begin = key.size();
    if (value.kind == Value::kText) {
      AppendText(key, value.text);
    } else if (value.kind == Value::kInteger) {
      AppendNumber(key, dbField::tpInt8, &value.integer);
    } else {
      AppendNumber(key, dbField::tpReal8, &value.real);
    }
    if (!order.descending) continue;
    for (std::size_t i = begin; i < key.size(); ++i) key[i] = static_cast<char>(~key[i]);
  }
}

}  // namespace dtsdb::internal::rtdb
