/// \file
/// One version of a model as all viewers see it.
#pragma once

#include <cstddef>
#include <deque>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <utility>

#include "analysis/error.h"
#include "analysis/model.h"
#include "page/documents.h"

namespace dtsdb::page {

/// A document, shared by those who send it.
using DocumentText = std::shared_ptr<const std::string>;

/// A model with its documents, which doesn't change any more. Any thread may use it.
///
/// The documents of one grid, and the tables below them, are worked on by one thread at a time: all of them share a
/// turn. A document is written once and then handed out as it is; the oldest are forgotten
/// when they take too much room.
class LiveState {
 public:
  /// `turn` is shared by the states of one grid.
  LiveState(analysis::Model model, Documents documents, std::shared_ptr<std::mutex> turn)
      : m_version(documents.Version()),
        m_model(std::move(model)),
        m_documents(std::move(documents)),
        m_turn(std::move(turn)) {}

  int Version() const { return m_version; }

  /// The document of that name; `make(documents)` writes it, a Result of a text. Where it has failed it is made again.
  template <class Make>
  analysis::Result<DocumentText> Get(const std::string& name, Make make) const {
    const std::lock_guard lock(*m_turn);
    const auto known = m_texts.find(name);
    if (known != m_texts.end()) return known->second;
    analysis::Result<std::string> text = make(m_documents);
    if (!text) return tl::unexpected(text.error());
    auto shared = std::make_shared<const std::string>(std::move(*text));
    Keep(name, shared);
    return shared;
  }

  /// Calls `use(model, documents)` and returns what it returns. No other thread works on this grid meanwhile.
  template <class Use>
  decltype(auto) InTurn(Use use) const {
    const std::lock_guard lock(*m_turn);
    return use(m_model, m_documents);
  }

  /// The same for `use(documents, theirs)`, where `other` is another state of the same grid.
  template <class Use>
  decltype(auto) InTurnWith(const LiveState& other, Use use) const {
    const std::lock_guard lock(*m_turn);
    return use(m_documents, other.m_documents);
  }

 private:
  static constexpr std::size_t kMostBytes = std::size_t{32} * 1024 * 1024;  ///< of the documents that are kept

  void Keep(const std::string& name, const DocumentText& text) const {
    m_order.push_back(name);
    m_texts.emplace(name, text);
    m_bytes += text->size();
    while (m_bytes > kMostBytes) {
      const auto oldest = m_texts.find(m_order.front());
      m_bytes -= oldest->second->size();
      m_texts.erase(oldest);
      m_order.pop_front();
    }
  }

  int m_version;
  analysis::Model m_model;
  Documents m_documents;
  std::shared_ptr<std::mutex> m_turn;
  mutable std::map<std::string, DocumentText> m_texts;
  mutable std::deque<std::string> m_order;  // as they were written
  mutable std::size_t m_bytes = 0;
};

}  // namespace dtsdb::page
