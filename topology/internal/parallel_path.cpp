#include "topology/internal/parallel_path.h"

#include <vector>

namespace dtsdb::internal {

bool HasParallelPath(const Network& network, int cb) {
  const CB& breaker = network.Table<CB>().GetPh(cb);
  const int kv = network.LevelThrough<R_KV_CB>(breaker.r_kv_cb);
  if (kv == -1) return false;
  const int from = breaker.ind;
  const int to = breaker.iznd;
  network.ForEachNode(kv, [&](int nd) {
    network.Node(nd).flags |= ND_MARK;
    return true;
  });
  network.Node(to).flags &= ~ND_MARK;
  std::vector<int> reached = {to};
  bool found = false;
  while (!reached.empty() && !found) {
    const int nd = reached.back();
    reached.pop_back();
    network.ForEachBreaker(nd, [&](const CB& other, int number) {
      if (number == cb || (other.flags & CB_OPEN)) return;
      const int next = OtherNode(other, nd);
      found = found || next == from;
      if (found || !(network.Node(next).flags & ND_MARK)) return;
      network.Node(next).flags &= ~ND_MARK;
      reached.push_back(next);
    });
  }
  return found;
}

}  // namespace dtsdb::internal
