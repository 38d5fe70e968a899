#include "rtdb/query.h"

dbQuery& dbQuery::reset() {
  // The compiled form stays: a query is mostly set anew with the same text.
  m_elements.clear();
  return *this;
}

dbQuery& dbQuery::append(char const* text) {
  dbQueryElement& element = m_elements.emplace_back();
  element.text = text == nullptr ? "" : text;
  return *this;
}

dbQuery &dbQuery::operator,(char const*text) {
  const bool behindText = !m_elements.empty() && m_elements.back().type == dbQueryElement::qExpression;
  return behindText ? Bind(dbQueryElement::qVarString, dbField::tpString, text) : append(text);
}

dbQuery &dbQuery::operator,(char const*const*text) {
  return Bind(dbQueryElement::qVarStringPtr, dbField::tpString, static_cast<void const*>(text));
}

dbQuery &dbQuery::operator,(char**text) {
  return Bind(dbQueryElement::qVarStringPtr, dbField::tpString, static_cast<void const*>(text));
}

dbQuery& dbQuery::Bind(dbQueryElement::ElementType type, dbField::FieldTypes valueType, void const* value) {
  dbQueryElement& element = m_elements.emplace_back();
  element.type = type;
  element.valueType = valueType;
  element.value = value;
  return *this;
}
