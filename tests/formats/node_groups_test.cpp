// Groups of nodes that closed breakers join, on random networks.

#include "formats/node_groups.h"

#include <gtest/gtest.h>
#include <rapidcheck.h>

#include <rapidcheck/gtest.h>

#include "tests/support/messages.h"
#include "tests/topology/random_network.h"
#include "topology/tp.h"

namespace dtsdb::tools {
namespace {

RC_GTEST_PROP(NodeGroups, AreTheNodesThatClosedBreakersJoin, (unsigned seed)) {
  const dtsdb::test::MessageCatcher catcher;
  dtsdb::test::RandomNetwork network(seed);
  RC_ASSERT(network.Model().Validate());
  TP tp(&network.Model().Db());
  RC_PRE(tp.tpAllnew() == 1);
  const dtsdb::test::PlainTopology plain(network.Model());
  std::set<int> seen;
  std::set<int> roots;
  for (const NodeGroup& group : NodeGroups(network.Model().Db())) {
    RC_ASSERT(std::is_sorted(group.nodes.begin(), group.nodes.end()));
    RC_ASSERT(roots.insert(plain.Group(group.nodes.front())).second);
    for (const int node : group.nodes) {
      RC_ASSERT(seen.insert(node).second);
      RC_ASSERT(plain.Group(node) == plain.Group(group.nodes.front()));
      RC_ASSERT((group.section >= 0 && !group.isFragment) == plain.IsLegal(node));
    }
  }
  RC_ASSERT(static_cast<int>(seen.size()) == plain.NodeCount());
}

}  // namespace
}  // namespace dtsdb::tools
