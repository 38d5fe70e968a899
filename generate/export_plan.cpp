#include "generate/export_plan.h"

#include <algorithm>
#include <cstddef>

namespace dtsdb::tools {
namespace {

/// A point's part of the tree, and sums over the parts behind it.
struct Part {
  int64_t least = 0;  ///< that it can give
  int64_t most = 0;
  int64_t alone = 0;  ///< that it gives when nobody else asks
  int64_t aloneBehind = 0;
  int64_t lessBehind = 0;  ///< by how much the parts behind it can give less than alone
  int64_t moreBehind = 0;
  int64_t lacking = 0;  ///< what the parts behind it are asked for beyond what they give alone
};

}  // namespace

std::vector<int64_t> PlanExports(const TreeSupply& supply) {
  const auto index = [](int point) { return static_cast<std::size_t>(point); };
  std::vector<Part> parts(supply.need.size());
  for (auto it = supply.order.rbegin(); it != supply.order.rend(); ++it) {
    const std::size_t point = index(*it);
    Part& part = parts[point];
    part.least += supply.leastGiven[point] - supply.need[point];
    part.most += supply.mostGiven[point] - supply.need[point];
    part.alone = std::clamp(int64_t{0}, part.least, part.most);
    if (supply.parent[point] == -1) continue;
    Part& parent = parts[index(supply.parent[point])];
    parent.least += part.least;
    parent.most += part.most;
    parent.aloneBehind += part.alone;
    parent.lessBehind += part.alone - part.least;
    parent.moreBehind += part.most - part.alone;
  }

  std::vector<int64_t> exports(supply.need.size());
  for (const int number : supply.order) {
    const std::size_t point = index(number);
    Part& part = parts[point];
    exports[point] = part.alone;
    if (supply.parent[point] != -1) {
      const Part& parent = parts[index(supply.parent[point])];
      const int64_t margin = parent.lacking > 0 ? part.most - part.alone : part.alone - part.least;
      const int64_t margins = parent.lacking > 0 ? parent.moreBehind : parent.lessBehind;
      if (margins > 0) exports[point] += parent.lacking * margin / margins;
    }
    const int64_t asked = exports[point] + supply.need[point] - part.aloneBehind;
    part.lacking = asked - std::clamp(asked, supply.leastGiven[point], supply.mostGiven[point]);
  }
  return exports;
}

}  // namespace dtsdb::tools
