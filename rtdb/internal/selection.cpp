#include "rtdb/internal/selection.h"

#include <algorithm>
#include <numeric>

#include "rtdb/internal/key_code.h"
#include "rtdb/internal/lmdb_value.h"

namespace dtsdb::internal::rtdb {
namespace {

/// Fetches the row that probably comes next. Rows that were added in the order of their keys lie one below the other in
/// their page, and a walk else waits for each of them.
void FetchNext(std::string_view key, std::string_view image) {
  constexpr std::size_t kLine = 64;
  const std::size_t size = key.size() + image.size();
  for (std::size_t below = size; below < 2 * size + kLine; below += kLine) __builtin_prefetch(key.data() - below);
}

}  // namespace

void KeyList::Clear() {
  m_bytes.clear();
  m_ends.clear();
}

void KeyList::Add(std::string_view key) {
  m_bytes.append(key);
  m_ends.push_back(m_bytes.size());
}

std::string_view KeyList::At(std::size_t index) const {
  const std::size_t begin = index == 0 ? 0 : m_ends[index - 1];
  return std::string_view(m_bytes).substr(begin, m_ends[index] - begin);
}

Selection::~Selection() {
  Reset();
  if (m_context != nullptr) m_context->Unlink(this);
}

void Selection::ContextEnded() {
  Reset();
  m_context = nullptr;
}

void Selection::LinkTo(Context& context) {
  if (m_context == &context) return;
  if (m_context != nullptr) {
    m_keepRow();
    m_context->Unlink(this);
  }
  m_context = &context;
  context.Link(this);
}

void Selection::Reset() {
  CloseStream();
  if (!m_rows.empty() && m_context != nullptr) m_context->StreamClosed(this);
  m_rows.clear();
  m_keys.Clear();
  m_next.clear();
  m_prev.clear();
  m_size = m_live = 0;
  m_current = 0;
}

void Selection::CloseStream() {
  if (m_stream == nullptr) return;
  mdb_cursor_close(m_stream);
  if (m_numberedRows != nullptr) mdb_cursor_close(m_numberedRows);
  m_stream = m_numberedRows = nullptr;
  m_context->StreamClosed(this);
}

Status Selection::Run(Context& context, const Table& table, const std::shared_ptr<const RowPlan>& plan, dbQuery* query,
                      LoadedRow& row, bool& loaded) {
  Reset();
  LinkTo(context);
  m_table = &table;
  m_plan = plan;
  loaded = false;
  if (!table.present) return {};
  std::shared_ptr<const CompiledQuery> compiled;
  if (query != nullptr && !query->Elements().empty()) {
    Status status;
    compiled = CompiledQuery::Of(*query, plan, table.name, status);
    if (compiled == nullptr) return status;
    CompiledQuery::ReadValues(query->Elements(), m_values);
  }
  const Order order = OrderOf(compiled.get());
  bool opened = false;
  Status status;
  if (compiled == nullptr || !compiled->HasCondition()) status = OpenStream(order, opened);
  if (status && !opened) status = Collect(compiled.get(), order, row, loaded);
  if (!status) Reset();
  return status;
}

Selection::Order Selection::OrderOf(const CompiledQuery* query) const {
  if (query == nullptr || query->Order().empty()) {
    return m_plan->KeyColumns().empty() ? Order::kByKey : Order::kByNumber;
  }
  return query->KeepsKeyOrder() && !m_context->Use(*m_table).longKeys ? Order::kByKey : Order::kByColumns;
}

Status Selection::OpenStream(Order order, bool& opened) {
  opened = false;
  m_streamsNumbers = order == Order::kByNumber;
  if (order == Order::kByColumns || (m_streamsNumbers && !m_table->ordered)) return {};
  MDB_txn* const transaction = m_context->Transaction();
  MDB_stat rows{};
  int result = mdb_stat(transaction, m_table->handle, &rows);
  if (result == MDB_SUCCESS && m_streamsNumbers) {
    MDB_stat numbers{};
    result = mdb_stat(transaction, m_table->order, &numbers);
    // A program that knows only the older format has written beside this one.
    if (result == MDB_SUCCESS && numbers.ms_entries != rows.ms_entries) return {};
  }
  if (result == MDB_SUCCESS && rows.ms_entries > 0) {
    result = mdb_cursor_open(transaction, m_streamsNumbers ? m_table->order : m_table->handle, &m_stream);
    if (result == MDB_SUCCESS && m_streamsNumbers) {
      result = mdb_cursor_open(transaction, m_table->handle, &m_numberedRows);
      if (result != MDB_SUCCESS) mdb_cursor_close(std::exchange(m_stream, nullptr));
    }
  }
  if (result != MDB_SUCCESS) return m_context->Failed(result, "select");
  opened = true;
  m_size = m_live = rows.ms_entries;
  if (m_stream == nullptr) return {};
  m_streamStarted = false;
  m_context->StreamOpened(this);
  return {};
}

Status Selection::Collect(const CompiledQuery* query, Order order, LoadedRow& row, bool& loaded) {
  m_range = {{}, {}, true, true, false};
  if (query != nullptr) query->Range(m_values, m_range);
  if (m_range.none) return {};
  const bool sort = order == Order::kByColumns;
  MDB_cursor* cursor = nullptr;
  if (Status status = m_context->CursorOf(*m_table, cursor); !status) return status;
  if (query == nullptr || !query->HasCondition()) {  // then all of them are selected
    MDB_stat rows{};
    if (mdb_stat(m_context->Transaction(), m_table->handle, &rows) == MDB_SUCCESS) m_rows.reserve(rows.ms_entries);
  }
  std::vector<std::string> sortKeys;
  MDB_val key = Val(m_range.low);
  MDB_val data{};
  int result = mdb_cursor_get(cursor, &key, &data, m_range.low.empty() ? MDB_FIRST : MDB_SET_RANGE);
  for (; result == MDB_SUCCESS; result = mdb_cursor_get(cursor, &key, &data, MDB_NEXT)) {
    if (m_range.IsBeyond(View(key))) break;
    const std::string_view image = View(data);
    if (!m_plan->IsSound(image)) return Damaged();
    if (!m_range.exact && !query->Matches(image, m_values)) continue;
    if (m_rows.empty() && !sort) {
      Take(View(key), image, kNowhere, row);
      loaded = true;
    }
    m_rows.push_back({View(key), image});
    if (sort) query->SortKey(image, sortKeys.emplace_back());
  }
  if (result != MDB_SUCCESS && result != MDB_NOTFOUND) return m_context->Failed(result, "select");
  if (sort) SortByColumns(sortKeys);
  if (order == Order::kByNumber && SortByNumber()) loaded = false;
  m_size = m_live = m_rows.size();
  Settle();
  if (!loaded) return {};
  // The one row found is likely to be updated next: leave the table's cursor on it.
  if (m_size == 1 && m_range.exact) {
    if (result == MDB_SUCCESS)
      result = mdb_cursor_get(cursor, &key, &data, MDB_PREV);
    else
      result = MDB_SUCCESS;
    if (result == MDB_SUCCESS) row.place = m_context->Use(*m_table).place;
  }
  return {};
}

void Selection::TakeOrder(const std::vector<std::size_t>& places) {
  std::vector<StoredRow> rows;
  rows.reserve(places.size());
  for (const std::size_t place : places) rows.push_back(m_rows[place]);
  m_rows = std::move(rows);
}

void Selection::Settle() {
  // What this transaction has written may be moved in memory by whatever it writes next.
  const bool stay = !m_context->Use(*m_table).changed && m_rows.size() > 1;
  if (stay) {
    m_context->StreamOpened(this);
  } else {
    KeepKeys();
  }
}

void Selection::KeepKeys() {
  for (const StoredRow& row : m_rows) m_keys.Add(row.key);
  m_rows.clear();
}

void Selection::SortByColumns(const std::vector<std::string>& sortKeys) {
  std::vector<std::size_t> order(sortKeys.size());
  std::iota(order.begin(), order.end(), std::size_t{0});
  std::stable_sort(order.begin(), order.end(), [&](std::size_t a, std::size_t b) { return sortKeys[a] < sortKeys[b]; });
  TakeOrder(order);
}

bool Selection::SortByNumber() {
  std::vector<oid_t> numbers(m_rows.size());
  for (std::size_t i = 0; i < numbers.size(); ++i) numbers[i] = RowNumberOf(m_rows[i].key);
  if (std::is_sorted(numbers.begin(), numbers.end())) return false;
  std::vector<std::size_t> order(numbers.size());
  std::iota(order.begin(), order.end(), std::size_t{0});
  std::sort(order.begin(), order.end(), [&](std::size_t a, std::size_t b) { return numbers[a] < numbers[b]; });
  TakeOrder(order);
  return true;
}

bool Selection::BeginOne(Context& context, const Table& table, const std::shared_ptr<const RowPlan>& plan) {
  Reset();
  LinkTo(context);
  m_table = &table;
  m_plan = plan;
  return table.present;
}

void Selection::TakeOne(const std::string& key) {
  m_keys.Add(key);
  m_size = m_live = 1;
}

Status Selection::RunFor(Context& context, const Table& table, const std::shared_ptr<const RowPlan>& plan,
                         oid_t number) {
  if (!BeginOne(context, table, plan)) return {};
  std::string key;
  bool found = false;
  if (Status status = context.KeyOf(table, number, key, found); !status || !found) return status;
  TakeOne(key);
  return {};
}

Status Selection::RunFor(Context& context, const Table& table, const std::shared_ptr<const RowPlan>& plan, oid_t number,
                         const void* record) {
  if (!BeginOne(context, table, plan)) return {};
  std::string key;
  plan->Key(record, key);
  AppendRowNumber(key, number);
  std::string_view image;
  bool found = false;
  if (Status status = context.FindRow(table, key, image, found); !status || !found) return status;
  TakeOne(key);
  return {};
}

void Selection::Detach() {
  if (!m_rows.empty()) {
    KeepKeys();
    m_context->StreamClosed(this);
  }
  MDB_cursor* const stream = m_stream;
  if (stream == nullptr) return;
  m_keys.Clear();
  MDB_val key{};
  MDB_val data{};
  int result = mdb_cursor_get(stream, &key, &data, MDB_FIRST);
  for (; result == MDB_SUCCESS; result = mdb_cursor_get(stream, &key, &data, MDB_NEXT)) {
    m_keys.Add(View(m_streamsNumbers ? data : key));
  }
  // A walk that fails on the way ends there.
  m_size = std::min(m_size, m_keys.Size());
  m_live = m_size;
  CloseStream();
}

std::size_t Selection::Last() const {
  if (!m_prev.empty()) return m_prev[m_size];
  return m_size == 0 ? 0 : m_size - 1;
}

std::size_t Selection::After(std::size_t place) const {
  if (place >= m_size) return m_size;
  return m_next.empty() ? place + 1 : m_next[place];
}

std::size_t Selection::Before(std::size_t place) const {
  if (place >= m_size) return m_size;
  if (!m_prev.empty()) return m_prev[place];
  return place == 0 ? m_size : place - 1;
}

void Selection::Drop(std::size_t place) {
  if (m_next.empty()) {
    m_next.resize(m_size + 1);
    m_prev.resize(m_size + 1);
    for (std::size_t i = 0; i <= m_size; ++i) {
      m_next[i] = static_cast<std::uint32_t>(i == m_size ? 0 : i + 1);
      m_prev[i] = static_cast<std::uint32_t>(i == 0 ? m_size : i - 1);
    }
  }
  m_next[m_prev[place]] = m_next[place];
  m_prev[m_next[place]] = m_prev[place];
  --m_live;
}

Status Selection::Damaged() const {
  return Status::Error(dbErrors::FileError, "table " + m_table->name + ": a row is damaged");
}

Status Selection::LoadFromStream(std::size_t place, LoadedRow& row) {
  MDB_val key{};
  MDB_val data{};
  int result = MDB_SUCCESS;
  if (!m_streamStarted || place == 0 || place + 1 == m_size) {
    const bool last = place != 0 && place + 1 == m_size;
    result = mdb_cursor_get(m_stream, &key, &data, last ? MDB_LAST : MDB_FIRST);
    m_streamPlace = last ? m_size - 1 : 0;
    m_streamStarted = true;
  } else if (place == m_streamPlace) {
    result = mdb_cursor_get(m_stream, &key, &data, MDB_GET_CURRENT);
  }
  for (; result == MDB_SUCCESS && m_streamPlace < place; ++m_streamPlace) {
    result = mdb_cursor_get(m_stream, &key, &data, MDB_NEXT);
  }
  for (; result == MDB_SUCCESS && m_streamPlace > place; --m_streamPlace) {
    result = mdb_cursor_get(m_stream, &key, &data, MDB_PREV);
  }
  if (result != MDB_SUCCESS) return m_context->Failed(result, "reading a row");
  if (m_streamsNumbers) return LoadNumbered(View(data), row);
  if (!m_plan->IsSound(View(data))) return Damaged();
  Take(View(key), View(data), kNowhere, row);
  return {};
}

Status Selection::LoadNumbered(std::string_view key, LoadedRow& row) {
  MDB_val at{};
  MDB_val data{};
  // Most rows were inserted in the order of their keys: then the next of the one is the next of the other.
  int result = mdb_cursor_get(m_numberedRows, &at, &data, MDB_NEXT);
  if (result != MDB_SUCCESS || View(at) != key) {
    at = Val(key);
    result = mdb_cursor_get(m_numberedRows, &at, &data, MDB_SET_KEY);
  }
  if (result == MDB_NOTFOUND) return Damaged();
  if (result != MDB_SUCCESS) return m_context->Failed(result, "reading a row");
  if (!m_plan->IsSound(View(data))) return Damaged();
  Take(View(at), View(data), kNowhere, row);
  return {};
}

Status Selection::Load(std::size_t place, LoadedRow& row, bool& found) {
  found = false;
  if (m_context == nullptr || place >= m_size) return {};
  if (m_stream != nullptr) {
    Status status = LoadFromStream(place, row);
    found = status.ok;
    return status;
  }
  const std::string_view key = Key(place);
  if (m_rows.empty()) return LoadByKey(key, row, found);
  Take(key, m_rows[place].image, kNowhere, row);
  found = true;
  return {};
}

Status Selection::LoadByKey(std::string_view key, LoadedRow& row, bool& found) {
  m_key = key;
  std::string_view image;
  if (Status status = m_context->FindRow(*m_table, m_key, image, found); !status || !found) return status;
  if (!m_plan->IsSound(image)) {
    found = false;
    return Damaged();
  }
  Take(m_key, image, m_context->Use(*m_table).place, row);
  return {};
}

void Selection::Take(std::string_view key, std::string_view image, std::uint64_t place, LoadedRow& row) const {
  const TableUse& use = m_context->Use(*m_table);
  FetchNext(key, image);
  row.Set(key, image);
  row.changes = use.changes;
  row.place = place;
  // What this transaction has written may be moved in memory by whatever it writes next.
  if (use.changed) row.Keep();
}

}  // namespace dtsdb::internal::rtdb
