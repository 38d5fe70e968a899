/// \file
/// Damaging a store: where its structure lies, and trials in a process of their own, since a bad one may crash.
#pragma once

#include <gtest/gtest.h>
#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cstring>
#include <functional>
#include <new>
#include <string>
#include <vector>

#include "rtdb/internal/file_format.h"

namespace dtsdb::test {

/// The bytes of a store, by what they are to LMDB. Offsets in the file.
struct StorePlaces {
  std::vector<std::size_t> heads;    ///< heads and records of trees
  std::vector<std::size_t> headers;  ///< of pages
  std::vector<std::size_t> entries;  ///< what else leads to rows: lists and headers of entries, page numbers
  std::vector<std::size_t> data;     ///< keys and rows
  int branches = 0;
  int overflows = 0;
  int freeLists = 0;
};

/// Goes through the newest state of an undamaged store.
class PlaceFinder {
 public:
  explicit PlaceFinder(const std::string& bytes) : m_bytes(bytes) {
    using namespace internal::rtdb::format;
    Heads heads{};
    std::memcpy(&heads[0], bytes.data(), sizeof(Head));
    m_pageSize = heads[0].free.pad;
    std::memcpy(&heads[1], bytes.data() + m_pageSize, sizeof(Head));
    Add(m_places.heads, 0, sizeof(Head));
    Add(m_places.heads, m_pageSize, sizeof(Head));
    AddTree(NewestOf(heads).main, false);
    AddTree(NewestOf(heads).free, true);
    // The tree of free pages that the older head names: it is looked at too.
    AddTree(OlderOf(heads).free, true);
  }
  const StorePlaces& Places() const { return m_places; }

 private:
  static void Add(std::vector<std::size_t>& places, std::size_t offset, std::size_t count) {
    for (std::size_t i = 0; i < count; ++i) places.push_back(offset + i);
  }
  template <class T>
  T At(std::size_t offset) const {
    return internal::rtdb::format::Get<T>(m_bytes.data() + offset);
  }
  void AddTree(const internal::rtdb::format::Tree& tree, bool freePages) {
    if (tree.root != internal::rtdb::format::kNoPage) AddPage(tree.root * m_pageSize, freePages);
  }

  void AddPage(std::size_t page, bool freePages) {
    Add(m_places.headers, page, internal::rtdb::format::kPageHeader);
    const bool leaf = At<std::uint16_t>(page + 10) == internal::rtdb::format::kLeaf;
    m_places.branches += leaf ? 0 : 1;
    const std::size_t count = (At<std::uint16_t>(page + 12) - internal::rtdb::format::kPageHeader) / 2;
    Add(m_places.entries, page + internal::rtdb::format::kPageHeader, 2 * count);
    for (std::size_t i = 0; i < count; ++i) {
      const std::size_t node = page + At<std::uint16_t>(page + internal::rtdb::format::kPageHeader + 2 * i);
      Add(m_places.entries, node, internal::rtdb::format::kNodeHeader);
      Add(m_places.data, node + internal::rtdb::format::kNodeHeader, At<std::uint16_t>(node + 6));
      if (leaf) {
        AddValue(node, freePages);
      } else {
        AddPage((At<std::uint32_t>(node) | std::uint64_t{At<std::uint16_t>(node + 4)} << 32) * m_pageSize, freePages);
      }
    }
  }

  void AddValue(std::size_t node, bool freePages) {
    std::size_t value = node + internal::rtdb::format::kNodeHeader + At<std::uint16_t>(node + 6);
    const std::size_t size = At<std::uint32_t>(node);
    const auto flags = At<std::uint16_t>(node + 4);
    if (flags == internal::rtdb::format::kSubTree) {
      Add(m_places.heads, value, size);
      AddTree(At<internal::rtdb::format::Tree>(value), false);
      return;
    }
    if (flags == internal::rtdb::format::kBigData) {
      Add(m_places.entries, value, sizeof(std::uint64_t));
      value = At<std::uint64_t>(value) * m_pageSize;
      Add(m_places.headers, value, internal::rtdb::format::kPageHeader);
      value += internal::rtdb::format::kPageHeader;
      ++m_places.overflows;
    }
    m_places.freeLists += freePages ? 1 : 0;
    Add(freePages ? m_places.entries : m_places.data, value, size);
  }

  const std::string& m_bytes;
  std::size_t m_pageSize = 0;
  StorePlaces m_places;
};

/// What came of the trials. Lies in memory that both processes see.
struct TrialCounts {
  std::size_t next;
  std::size_t refused;
  std::size_t reported;  ///< opened, and an error reported later
  std::size_t unharmed;
  std::size_t otherRows;
  char fault[512];
};

/// Runs `trial` for 0 to `count` in a child process. A trial counts how it ended, and returns what was wrong, or an
/// empty text. Where it crashes or hangs, `describe` names it in the test's failure, and another child goes on behind
/// it.
inline TrialCounts RunTrials(std::size_t count, const std::function<std::string(std::size_t, TrialCounts&)>& trial,
                             const std::function<std::string(std::size_t)>& describe) {
  constexpr unsigned kPatience = 60;
  constexpr int kMostFaults = 20;
  void* memory = ::mmap(nullptr, sizeof(TrialCounts), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
  if (memory == MAP_FAILED) {
    ADD_FAILURE() << "no memory for the trials";
    return {};
  }
  auto* const counts = new (memory) TrialCounts{};
  for (int faults = 0; counts->next < count && faults < kMostFaults;) {
    const pid_t child = ::fork();
    if (child == 0) {
      for (; counts->next < count; ++counts->next) {
        ::alarm(kPatience);
        const std::string fault = trial(counts->next, *counts);
        if (fault.empty()) continue;
        std::strncpy(counts->fault, fault.c_str(), sizeof(counts->fault) - 1);
        ::_exit(1);
      }
      ::_exit(0);
    }
    int result = 0;
    ::waitpid(child, &result, 0);
    if (result == 0) continue;
    ADD_FAILURE() << describe(counts->next) << ": "
                  << (WIFSIGNALED(result) ? ::strsignal(WTERMSIG(result)) : counts->fault);
    std::memset(counts->fault, 0, sizeof(counts->fault));
    ++counts->next;
    ++faults;
  }
  const TrialCounts copy = *counts;
  ::munmap(memory, sizeof(TrialCounts));
  return copy;
}

}  // namespace dtsdb::test
