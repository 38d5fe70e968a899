/// \file
/// A walk over a damaged store: the entries of a tree that can still be reached.
#pragma once

#include <cstdint>
#include <functional>
#include <string_view>
#include <vector>

#include "rtdb/internal/file_format.h"

namespace dtsdb::internal::rtdb {

/// Reads pages of a file in memory and believes none of them. PageWalk reports whether a state is sound; this one gives
/// what is left of one that isn't. A page is read once at most, whatever leads to it.
class TreeSalvage {
 public:
  /// An entry of a tree.
  struct Entry {
    std::string_view key;
    std::string_view data;
    bool isTree = false;  ///< `data` is the record of a table's tree
  };
  using Visit = std::function<void(const Entry&)>;
  using Fault = std::function<void(std::uint64_t page, std::string_view key, const char* what)>;

  /// `file` must outlive it.
  explicit TreeSalvage(std::string_view file);

  /// The states that the file may still have: those whose heads can be read, the newest first. Two in a sound store.
  const std::vector<format::Head>& States() const { return m_states; }
  /// From here on pages of `state` are read.
  void Begin(const format::Head& state);

  /// Calls `visit` with the entries of a tree that can be read, `fault` where some can't.
  void Walk(const format::Tree& tree, const Visit& visit, const Fault& fault);

 private:
  void AddState(std::uint64_t offset, std::uint64_t number);
  std::uint64_t Age(const format::Head& state) const;
  void WalkPage(std::uint64_t number, int depth, const Visit& visit, const Fault& fault);
  void WalkNode(std::uint64_t number, std::size_t offset, bool leaf, int depth, const Visit& visit, const Fault& fault);
  bool DataOf(const char* node, std::size_t room, Entry& entry);
  bool TakePages(std::uint64_t first, std::uint64_t count);

  std::string_view m_file;
  std::vector<format::Head> m_states;
  std::size_t m_pageSize = 0;
  std::vector<bool> m_read;
};

}  // namespace dtsdb::internal::rtdb
