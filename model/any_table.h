/// \file
/// Tables whose record class is known only when the program runs, for work over all fields of any table.
#pragma once

#include <cstddef>
#include <memory>
#include <vector>

#include "model/dtsdb.h"
#include "model/table_info.h"

namespace dtsdb {

/// New records of one class on their way into a table. Each has the defaults of its class.
class NewRecords {
 public:
  virtual ~NewRecords() = default;

  /// Adds a record. The address holds until the next one is added.
  virtual void* Add() = 0;
  virtual std::size_t Count() const = 0;
  virtual const void* operator[](std::size_t place) const = 0;
};

/// A table by reference: it must outlive this.
class AnyTable {
 public:
  /// Implicit, so that a table of any class is taken.
  template <class T>
  AnyTable(tTable<T>& table) : m_table(&table), m_calls(&kCallsOf<T>) {}

  /// The table's name, kind code and fields.
  const TableInfo& Info() const { return TableOfKind(m_calls->kind); }
  /// Number of its records, and of its slots.
  int GetCount() const { return m_calls->count(m_table); }
  int GetSize() const { return m_calls->size(m_table); }
  /// Bytes of one record.
  std::size_t RecordSize() const { return m_calls->recordSize; }
  /// The record with the logical number `lg`.
  const void* operator[](int lg) const { return m_calls->record(m_table, lg); }
  /// The logical number of the record whose key is that of `record`, which is of the table's class; -1 for none.
  int Find(const void* record) const { return m_calls->find(m_table, record); }
  /// True when record `a` stands in front of record `b`.
  bool IsLess(const void* a, const void* b) const { return m_calls->isLess(a, b); }

  /// An empty list of records of the table's class.
  std::unique_ptr<NewRecords> MakeRecords() const { return m_calls->makeRecords(); }
  /// Replaces the contents of the table by `records`, which MakeRecords() of this table has made. They may be in any
  /// order and are sorted; none leave the table as it was.
  void SetData(NewRecords& records) const { m_calls->setData(m_table, records); }

 private:
  struct Calls {
    TableKind kind;
    std::size_t recordSize;
    int (*count)(void* table);
    int (*size)(void* table);
    const void* (*record)(void* table, int lg);
    int (*find)(void* table, const void* record);
    bool (*isLess)(const void* a, const void* b);
    std::unique_ptr<NewRecords> (*makeRecords)();
    void (*setData)(void* table, NewRecords& records);
  };

  template <class T>
  class RecordsOf : public NewRecords {
   public:
    void* Add() override { return &records.emplace_back(); }
    std::size_t Count() const override { return records.size(); }
    const void* operator[](std::size_t place) const override { return &records[place]; }

    std::vector<T> records;
  };

  template <class T>
  static tTable<T>& Typed(void* table) {
    return *static_cast<tTable<T>*>(table);
  }

  template <class T>
  static constexpr Calls kCallsOf = {
      T::kKind,
      sizeof(T),
      [](void* table) { return Typed<T>(table).GetCount(); },
      [](void* table) { return Typed<T>(table).GetSize(); },
      [](void* table, int lg) { return static_cast<const void*>(&Typed<T>(table)[lg]); },
      [](void* table, const void* record) {
        const int ph = Typed<T>(table).Find(*static_cast<const T*>(record));
        return ph < 0 ? -1 : Typed<T>(table).PhToLg(ph);
      },
      [](const void* a, const void* b) { return *static_cast<const T*>(a) < *static_cast<const T*>(b); },
      []() -> std::unique_ptr<NewRecords> { return std::make_unique<RecordsOf<T>>(); },
      [](void* table, NewRecords& records) {
        auto& rows = static_cast<RecordsOf<T>&>(records).records;
        if (!rows.empty()) Typed<T>(table).SetData(std::move(rows));
      },
  };

  void* m_table;
  const Calls* m_calls;
};

/// The tables of `database`, in the order of their kind codes.
std::vector<AnyTable> AllTables(DTSDB& database);

/// The table of kind code `kind`, which must be one.
AnyTable TableOfKind(DTSDB& database, TableKind kind);

}  // namespace dtsdb
