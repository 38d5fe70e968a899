#include <atomic>
#include <condition_variable>
#include <cstring>
#include <deque>
#include <mutex>

#include "model/exchange.h"
#include "model/threads.h"

namespace dtsdb {
namespace {

/// Rows one behind the other, of the records from number `first` on.
struct RowBlock {
  std::vector<std::byte> rows;
  int first = 0;
  int count = 0;
};

/// One thread fills blocks with rows, the others load the records of them.
class BlockLoading {
 public:
  static constexpr int kRowsOfBlock = 1024;

  BlockLoading(const RowLayout& layout, void* records, int threads)
      : m_layout(layout), m_records(static_cast<std::byte*>(records)), m_most(2 * static_cast<std::size_t>(threads)) {}

  /// Takes up to `n` rows; returns how many.
  int Fill(int n, const std::function<const void*()>& next) {
    int taken = 0;
    for (bool goesOn = true; goesOn && taken < n;) {
      RowBlock block = EmptyBlock();
      block.first = taken;
      for (block.count = 0; block.count < kRowsOfBlock && taken < n; ++block.count, ++taken) {
        const void* const row = next();
        goesOn = row != nullptr;
        if (!goesOn) break;
        std::memcpy(RowOf(block, block.count), row, m_layout.rowSize);
      }
      HandOver(std::move(block));
    }
    return taken;
  }

  /// No block comes any more.
  void End() {
    const std::lock_guard lock(m_mutex);
    m_isOver = true;
    m_changed.notify_all();
  }

  /// Loads blocks until the last.
  void LoadAll() {
    RowBlock block;
    while (Take(block)) {
      Load(block);
      const std::lock_guard lock(m_mutex);
      m_empty.push_back(std::move(block));
    }
  }

 private:
  std::byte* RowOf(RowBlock& block, int i) const {
    return block.rows.data() + static_cast<std::size_t>(i) * m_layout.rowSize;
  }

  RowBlock EmptyBlock() {
    {
      const std::lock_guard lock(m_mutex);
      if (!m_empty.empty()) {
        RowBlock block = std::move(m_empty.back());
        m_empty.pop_back();
        return block;
      }
    }
    return {std::vector<std::byte>(kRowsOfBlock * m_layout.rowSize), 0, 0};
  }

  /// Where many blocks wait already, this one is loaded at once.
  void HandOver(RowBlock block) {
    {
      const std::lock_guard lock(m_mutex);
      if (m_waiting.size() < m_most) {
        m_waiting.push_back(std::move(block));
        m_changed.notify_one();
        return;
      }
    }
    Load(block);
    const std::lock_guard lock(m_mutex);
    m_empty.push_back(std::move(block));
  }

  bool Take(RowBlock& block) {
    std::unique_lock lock(m_mutex);
    m_changed.wait(lock, [&] { return m_isOver || !m_waiting.empty(); });
    if (m_waiting.empty()) return false;
    block = std::move(m_waiting.front());
    m_waiting.pop_front();
    return true;
  }

  void Load(RowBlock& block) const {
    for (int i = 0; i < block.count; ++i) {
      void* const record = m_records + static_cast<std::size_t>(block.first + i) * m_layout.recordSize;
      LoadFields(record, m_layout.fields, RowOf(block, i), m_layout.columns);
    }
  }

  const RowLayout& m_layout;
  std::byte* m_records;
  std::size_t m_most;
  std::mutex m_mutex;
  std::condition_variable m_changed;
  std::deque<RowBlock> m_waiting;
  std::vector<RowBlock> m_empty;
  bool m_isOver = false;
};

}  // namespace

int LoadRecordsOneByOne(const RowLayout& layout, void* records, int n, const std::function<const void*()>& next) {
  int read = 0;
  auto* record = static_cast<std::byte*>(records);
  for (const void* row = next(); row != nullptr && read < n; row = next(), ++read, record += layout.recordSize) {
    LoadFields(record, layout.fields, row, layout.columns);
  }
  return read;
}

int LoadRecords(const RowLayout& layout, void* records, int n, const std::function<const void*()>& next) {
  const int threads = ThreadCount();
  if (threads == 1 || n <= BlockLoading::kRowsOfBlock) return LoadRecordsOneByOne(layout, records, n, next);
  BlockLoading loading(layout, records, threads);
  int read = 0;
  RunOnThreads(threads, [&](int number) {
    if (number > 0) return loading.LoadAll();
    struct AtEnd {
      BlockLoading& loading;
      ~AtEnd() { loading.End(); }
    };
    {
      const AtEnd end{loading};
      read = loading.Fill(n, next);
    }
    loading.LoadAll();
  });
  return read;
}

}  // namespace dtsdb
