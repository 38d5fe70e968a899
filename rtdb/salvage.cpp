#include "rtdb/salvage.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>

#include <cerrno>
#include <cstring>
#include <map>
#include <memory>
#include <utility>

#include "include/internal/standard_streams.h"
#include "rtdb/internal/file_check.h"
#include "rtdb/internal/key_code.h"
#include "rtdb/internal/row_image.h"
#include "rtdb/internal/snapshot.h"
#include "rtdb/internal/store.h"
#include "rtdb/internal/tree_salvage.h"

namespace dtsdb::rtdb {
namespace {

using internal::Descriptor;
using internal::rtdb::CheckBytes;
using internal::rtdb::Column;
using internal::rtdb::kRowNumberSize;
using internal::rtdb::RowPlan;
using internal::rtdb::Schema;
using internal::rtdb::Snapshot;
using internal::rtdb::Store;
using internal::rtdb::TreeSalvage;
using internal::rtdb::format::Get;
using internal::rtdb::format::Head;
using internal::rtdb::format::Tree;

/// The bytes of a store as they were at one moment.
class MemoryCopy {
 public:
  MemoryCopy() = default;
  MemoryCopy(const MemoryCopy&) = delete;
  MemoryCopy& operator=(const MemoryCopy&) = delete;
  ~MemoryCopy() {
    if (m_size > 0) ::munmap(m_bytes, m_size);
  }

  /// Copies a file; again where a program has written it meanwhile. 0 or an error number.
  int Take(int file) {
    constexpr int kAttempts = 10;
    for (int attempt = 0; attempt < kAttempts; ++attempt) {
      m_copy = Snapshot();
      if (const int error = m_copy.Take(file); error != 0) return error;
      if (m_copy.IsNewest(file)) break;
    }
    struct stat about {};
    if (::fstat(m_copy.Fd(), &about) != 0) return errno;
    if (about.st_size == 0) return 0;
    void* const bytes = ::mmap(nullptr, static_cast<std::size_t>(about.st_size), PROT_READ, MAP_SHARED, m_copy.Fd(), 0);
    if (bytes == MAP_FAILED) return errno;
    m_bytes = bytes;
    m_size = static_cast<std::size_t>(about.st_size);
    return 0;
  }
  std::string_view Bytes() const { return {static_cast<const char*>(m_bytes), m_size}; }

 private:
  Snapshot m_copy;
  void* m_bytes = nullptr;
  std::size_t m_size = 0;
};

/// The first key column where that is a text.
std::string NameIn(const RowPlan& plan, std::string_view key) {
  if (plan.KeyColumns().empty()) return {};
  const Column& first = plan.TableSchema().columns[plan.KeyColumns().front()];
  const std::size_t end = key.find('\0');
  return first.type == dbField::tpString ? std::string(key.substr(0, end)) : std::string();
}

/// The salvage of one store.
class StoreSalvage {
 public:
  StoreSalvage(std::string_view file, const std::function<void(const StoreFault&)>& report)
      : m_trees(file), m_report(report) {}

  /// Looks for the newest state of which anything is left, its tables and their columns. Returns what is wrong where
  /// there is none.
  std::string FindTables() {
    const auto& states = m_trees.States();
    for (const auto& state : states) {
      m_trees.Begin(state);
      m_isListWhole = true;
      FindTrees(state);
      if (m_tables.empty()) continue;
      m_isNewest = states.size() > 1 && &state == &states.front();
      if (!m_isNewest) m_report({.what = "a head is damaged; what is read may be the state before the last commit"});
      FindColumns();
      return "";
    }
    return "no table can be reached";
  }

  void Read(SalvagedTable& target) {
    const std::string name = target.table->getName();
    const auto tree = m_tables.find(name);
    if (tree == m_tables.end()) {
      // A store has a tree for each table of the program that made it.
      if (m_schemas.contains(name)) m_report({.table = name, .what = "the table can't be reached"});
      if (!m_schemas.contains(name) && m_isListWhole && m_isNewest) target.lost = 0;
      return;
    }
    const std::unique_ptr<RowPlan> plan = PlanFor(target);
    if (plan == nullptr) return;
    std::uint64_t faults = 0;
    m_trees.Walk(
        tree->second, [&](const TreeSalvage::Entry& entry) { faults += TakeRow(target, *plan, entry) ? 0 : 1; },
        [&](std::uint64_t page, std::string_view key, const char* what) {
          ++faults;
          m_report({name, page, NameIn(*plan, key), what});
        });
    CountLost(target, tree->second, faults);
  }

 private:
  void FindTrees(const Head& state) {
    m_trees.Walk(
        state.main,
        [this](const TreeSalvage::Entry& entry) {
          if (entry.isTree) m_tables[std::string(entry.key)] = Get<Tree>(entry.data.data());
        },
        [this](std::uint64_t page, std::string_view, const char* what) {
          m_isListWhole = false;
          m_report({.page = page, .what = std::string("the list of tables: ") + what});
        });
  }

  void FindColumns() {
    const auto tree = m_tables.find(Store::kSchemaTree);
    if (tree == m_tables.end()) {
      m_isListWhole = false;
      return;
    }
    std::uint64_t found = 0;
    m_trees.Walk(
        tree->second,
        [&](const TreeSalvage::Entry& entry) {
          const auto schema = Schema::FromText(entry.data);
          if (schema) m_schemas[std::string(entry.key)] = *schema;
          ++found;
        },
        [this](std::uint64_t page, std::string_view, const char* what) {
          m_report({.page = page, .what = std::string("the list of columns: ") + what});
        });
    m_isListWhole = m_isListWhole && found == tree->second.entries;
  }

  /// How the table's rows lie in the store; null after a message where that can't be known.
  std::unique_ptr<RowPlan> PlanFor(const SalvagedTable& target) {
    const std::string name = target.table->getName();
    const auto found = m_schemas.find(name);
    Schema schema = found != m_schemas.end() ? found->second : internal::rtdb::SchemaOf(*target.table);
    bool grown = false;
    const std::string refusal = internal::rtdb::Adopt(schema, *target.table, grown);
    if (!refusal.empty()) {
      m_report({.table = name, .what = refusal});
      return nullptr;
    }
    if (found == m_schemas.end()) {
      m_report(
          {.table = name, .what = "the list of its columns is damaged; rows are read as this program stores them"});
    }
    return std::make_unique<RowPlan>(schema, *target.table);
  }

  /// Takes a row if it can be decoded and is the one that its key names. False after a report.
  bool TakeRow(SalvagedTable& target, const RowPlan& plan, const TreeSalvage::Entry& entry) {
    const auto lose = [&](const char* what) {
      m_report({target.table->getName(), 0, NameIn(plan, entry.key), what});
      return false;
    };
    if (entry.isTree || !plan.IsSound(entry.data)) return lose("a row is damaged");
    plan.Decode(entry.data, target.row);
    std::string key;
    plan.Key(target.row, key);
    if (entry.key.size() != key.size() + kRowNumberSize || !entry.key.starts_with(key)) {
      return lose("a row isn't the one that its key names");
    }
    ++target.saved;
    target.take();
    return true;
  }

  /// The tree's record counts its rows, unless it is damaged itself.
  void CountLost(SalvagedTable& target, const Tree& tree, std::uint64_t faults) {
    if (tree.entries >= target.saved && (faults > 0 || tree.entries == target.saved)) {
      if (m_isNewest) target.lost = tree.entries - target.saved;
    } else if (faults == 0) {
      m_report({.table = target.table->getName(),
                .what = "the table's head counts " + std::to_string(tree.entries) + " rows, " +
                        std::to_string(target.saved) + " are there"});
    }
  }

  TreeSalvage m_trees;
  const std::function<void(const StoreFault&)>& m_report;
  std::map<std::string, Tree> m_tables;
  bool m_isNewest = false;
  bool m_isListWhole = true;  // a table that isn't in it is not in the store
  std::map<std::string, Schema> m_schemas;
};

}  // namespace

std::string SalvageStore(const std::string& file, std::vector<SalvagedTable>& tables,
                         const std::function<void(const StoreFault&)>& report) {
  const internal::StandardStreamsKept kept;
  const Descriptor store(::open(file.c_str(), O_RDONLY | O_CLOEXEC));
  if (!store.IsOpen()) return std::strerror(errno);
  MemoryCopy copy;
  if (const int error = copy.Take(store.Get()); error != 0) return std::strerror(error);
  bool reported = false;
  const std::function<void(const StoreFault&)> count = [&](const StoreFault& fault) {
    reported = true;
    report(fault);
  };
  StoreSalvage salvage(copy.Bytes(), count);
  if (std::string wrong = salvage.FindTables(); !wrong.empty()) return wrong;
  for (SalvagedTable& table : tables) salvage.Read(table);
  if (!reported && !CheckBytes(copy.Bytes()).empty()) {
    count({.what = "the heads or the list of free pages are damaged; all rows can be read"});
  }
  return "";
}

}  // namespace dtsdb::rtdb
