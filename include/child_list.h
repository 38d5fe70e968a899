/// \file
/// The list of child numbers that tTable::ChildList returns.
#pragma once

namespace dtsdb {

/// A node of the list that tTable::ChildList returns. It owns the nodes behind it.
struct tChildNode {
  int value = -1;              ///< number of a child record
  tChildNode* next = nullptr;  ///< next node, null at the end

  tChildNode() = default;
  tChildNode(const tChildNode&) = delete;
  tChildNode& operator=(const tChildNode&) = delete;

  /// Deletes the nodes behind this one, one by one: a chain of any length needs no deep recursion.
  ~tChildNode() {
    while (next != nullptr) {
      tChildNode* const behind = next;
      next = behind->next;
      behind->next = nullptr;
      delete behind;
    }
  }
};

/// A relation row: it names a child record by number.
template <class T>
concept HasChildNumber = requires(const T& row) {
  row.ChildNumber();
};

}  // namespace dtsdb
