#include "pictures/internal/spring_layout.h"

#include <graphviz/gvc.h>

#include <array>
#include <cstdlib>
#include <memory>
#include <mutex>
#include <string>

// Once in a process Graphviz leaves the text of its configuration behind.
#if defined(__has_feature)
#if __has_feature(address_sanitizer)
#define DTSDB_LEAK_CHECK 1
#include <sanitizer/lsan_interface.h>
#endif
#endif

namespace dtsdb::pictures::internal {
namespace {

constexpr unsigned kSeed = 1;

/// The context that Graphviz works in, made once: it loads its plugins then. Null when there is no memory for it.
GVC_t* MakeContext() {
#ifdef DTSDB_LEAK_CHECK
  __lsan_disable();
#endif
  GVC_t* const context = gvContext();
#ifdef DTSDB_LEAK_CHECK
  __lsan_enable();
#endif
  return context;
}

/// Graphviz takes its random numbers from the C library. While this lives they come from a series of their own.
class FixedRandomNumbers {
 public:
  FixedRandomNumbers() : m_before(initstate(kSeed, m_state.data(), m_state.size())) {}
  FixedRandomNumbers(const FixedRandomNumbers&) = delete;
  FixedRandomNumbers& operator=(const FixedRandomNumbers&) = delete;
  ~FixedRandomNumbers() { setstate(m_before); }

 private:
  std::array<char, 256> m_state{};
  char* m_before;
};

/// The interface of Graphviz takes texts that it doesn't change as char*.
char* Text(const char* text) { return const_cast<char*>(text); }

struct CloseGraph {
  void operator()(Agraph_t* graph) const { agclose(graph); }
};
using Graph = std::unique_ptr<Agraph_t, CloseGraph>;

Graph MakeGraph(std::size_t nodes, const Edges& edges, std::vector<Agnode_t*>& made) {
  Graph graph(agopen(Text("grid"), Agstrictundirected, nullptr));
  agattr(graph.get(), AGRAPH, Text("overlap"), Text("true"));  // the map removes overlaps itself
  agattr(graph.get(), AGRAPH, Text("start"), Text("1"));
  agattr(graph.get(), AGNODE, Text("label"), Text(""));
  agattr(graph.get(), AGNODE, Text("shape"), Text("point"));
  for (std::size_t i = 0; i < nodes; ++i) {
    made.push_back(agnode(graph.get(), Text(std::to_string(i).c_str()), 1));
  }
  for (const auto& [from, to] : edges) {
    agedge(graph.get(), made[static_cast<std::size_t>(from)], made[static_cast<std::size_t>(to)], nullptr, 1);
  }
  return graph;
}

}  // namespace

std::vector<PlanePoint> LayOutBySprings(int nodes, const Edges& edges) {
  static std::mutex mutex;
  const std::lock_guard lock(mutex);
  static GVC_t* const context = MakeContext();
  if (context == nullptr || nodes <= 0) return {};
  const FixedRandomNumbers random;
  std::vector<Agnode_t*> made;
  const Graph graph = MakeGraph(static_cast<std::size_t>(nodes), edges, made);
  if (gvLayout(context, graph.get(), "sfdp") != 0) return {};
  std::vector<PlanePoint> places;
  places.reserve(made.size());
  for (Agnode_t* const node : made) places.push_back({ND_coord(node).x, ND_coord(node).y});
  gvFreeLayout(context, graph.get());
  return places;
}

}  // namespace dtsdb::pictures::internal
