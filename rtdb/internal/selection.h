/// \file
/// The rows that a cursor has selected, and its place among them.
#pragma once

#include <lmdb.h>

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "rtdb/internal/context.h"
#include "rtdb/internal/query_compile.h"
#include "rtdb/query.h"
#include "rtdb/reference.h"

namespace dtsdb::internal::rtdb {

/// Keys in one piece of memory.
class KeyList {
 public:
  void Clear();
  void Add(std::string_view key);
  std::string_view At(std::size_t index) const;
  std::size_t Size() const { return m_ends.size(); }

 private:
  std::string m_bytes;
  std::vector<std::size_t> m_ends;
};

/// A selection is fixed when it is made. Its rows stand in the order of the query, without one in that of their
/// insertion. A whole table in the order of its keys or of their insertion is walked over directly, for as long as the
/// thread leaves the table alone and stays with its transaction; else the rows' keys are kept, and for as long as that
/// where the rows lie.
///
/// Places are counted from 0; Size() stands for no place. Removed rows have no place any more.
class Selection final : private RowStream {
 public:
  /// `current` is the row number that the owner holds for its current row; it is set to 0 with the transaction's end,
  /// before which `keepRow` is called.
  explicit Selection(
      oid_t& current, std::function<void()> keepRow = [] {})
      : m_current(current), m_keepRow(std::move(keepRow)) {}
  Selection(const Selection&) = delete;
  Selection& operator=(const Selection&) = delete;
  ~Selection();

  /// Selects the rows of a query, all rows for null. If a row has been loaded on the way, it is the first one and `row`
  /// holds it.
  Status Run(Context& context, const Table& table, const std::shared_ptr<const RowPlan>& plan, dbQuery* query,
             LoadedRow& row, bool& loaded);
  /// Selects the row of that number, if the table has it.
  Status RunFor(Context& context, const Table& table, const std::shared_ptr<const RowPlan>& plan, oid_t number);
  /// The same by going straight to it: the row's key columns are those of the record.
  Status RunFor(Context& context, const Table& table, const std::shared_ptr<const RowPlan>& plan, oid_t number,
                const void* record);
  void KeepRow() override { m_keepRow(); }
  /// Forgets all rows.
  void Reset() override;
  /// Turns a direct walk into one over kept keys, and forgets where rows lie.
  void Detach() override;

  std::size_t Size() const { return m_size; }
  /// The rows that have not been removed through this selection.
  std::size_t Live() const { return m_live; }
  std::size_t First() const { return m_next.empty() ? 0 : m_next[m_size]; }
  std::size_t Last() const;
  std::size_t After(std::size_t place) const;
  std::size_t Before(std::size_t place) const;
  void Drop(std::size_t place);

  /// Reads the row at a place. `found` is false for a row that has gone.
  Status Load(std::size_t place, LoadedRow& row, bool& found);
  std::string KeyAt(std::size_t place) const { return std::string(Key(place)); }
  const RowPlan* Plan() const { return m_plan.get(); }

 private:
  /// A row where it lies in the store's memory.
  struct StoredRow {
    std::string_view key;
    std::string_view image;
  };
  enum class Order {
    kByKey,     ///< as the table's tree has them
    kByNumber,  ///< as they were inserted
    kByColumns  ///< as the query orders
  };

  // What the context reports.
  bool IsOver(const Table& table) const override { return m_table == &table; }
  void ContextEnded() override;

  void LinkTo(Context& context);
  Order OrderOf(const CompiledQuery* query) const;
  void CloseStream();
  /// Opens a direct walk over the whole table. None is opened where the table has no walk in this order.
  Status OpenStream(Order order, bool& opened);
  /// Keeps the keys of the rows that fulfil the condition; of all rows for null.
  Status Collect(const CompiledQuery* query, Order order, LoadedRow& row, bool& loaded);
  void SortByColumns(const std::vector<std::string>& sortKeys);
  /// Begins a selection of one row at most. False where the store doesn't have the table.
  bool BeginOne(Context& context, const Table& table, const std::shared_ptr<const RowPlan>& plan);
  void TakeOne(const std::string& key);
  /// True if that has changed the order.
  bool SortByNumber();
  void TakeOrder(const std::vector<std::size_t>& places);
  /// Goes over to keys of its own for the collected rows, unless these stay where they lie for a while.
  void Settle();
  void KeepKeys();
  std::string_view Key(std::size_t place) const { return m_rows.empty() ? m_keys.At(place) : m_rows[place].key; }
  Status LoadFromStream(std::size_t place, LoadedRow& row);
  /// Reads the row with that key, in a walk in the order of insertion.
  Status LoadNumbered(std::string_view key, LoadedRow& row);
  /// Reads the row with that key.
  Status LoadByKey(std::string_view key, LoadedRow& row, bool& found);
  /// Takes a row that lies in the store's memory.
  void Take(std::string_view key, std::string_view image, std::uint64_t place, LoadedRow& row) const;
  Status Damaged() const;

  oid_t& m_current;
  std::function<void()> m_keepRow;
  Context* m_context = nullptr;
  const Table* m_table = nullptr;
  std::shared_ptr<const RowPlan> m_plan;
  std::vector<Value> m_values;
  KeyRange m_range;
  std::string m_key;              ///< of the row that was looked for by its key
  std::vector<StoredRow> m_rows;  ///< empty where only the keys are kept
  KeyList m_keys;
  std::size_t m_size = 0;
  std::size_t m_live = 0;
  std::vector<std::uint32_t> m_next;  ///< over live places, made with the first removal; m_size stands for both ends
  std::vector<std::uint32_t> m_prev;
  MDB_cursor* m_stream = nullptr;
  MDB_cursor* m_numberedRows = nullptr;  ///< goes along over the rows where the walk is over their order of insertion
  bool m_streamsNumbers = false;         ///< the walk is over the order of insertion, whose entries hold the rows' keys
  std::size_t m_streamPlace = 0;
  bool m_streamStarted = false;
};

}  // namespace dtsdb::internal::rtdb
