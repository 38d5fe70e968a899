/// \file
/// References to rows.
#pragma once

/// A row's number within its table. It never changes while the row lives and is never 0.
using oid_t = unsigned long long;

/// The reference to a row of any table; 0 refers to none.
class dbAnyReference {
 public:
  /// The reference to row `oid`.
  explicit dbAnyReference(oid_t oid = 0) : m_oid(oid) {}

  /// The row's number; two references are the same when it is.
  oid_t getOid() const { return m_oid; }
  bool operator==(const dbAnyReference& other) const { return m_oid == other.m_oid; }

 private:
  oid_t m_oid;
};

/// The reference to a row of T's table.
template <class T>
class dbReference : public dbAnyReference {
 public:
  using dbAnyReference::dbAnyReference;
};
