#include "generate/supply_tree.h"

#include <array>
#include <map>
#include <numeric>
#include <utility>

namespace dtsdb::tools {
namespace {

const Level& LevelOf(const Plan& plan, const CircuitEnd& end) { return plan.levels[Index(end.level)]; }

/// Where a winding in service begins.
int WindingPoint(const Plan& plan, int branch) {
  return plan.ToPoint(plan.branches[Index(branch)]) == -1 ? -1 : plan.FromPoint(plan.branches[Index(branch)]);
}

bool AreSideBySide(const Plan& plan, const Transformer& one, const Transformer& other) {
  if (one.station != other.station || one.windings != 3 || other.windings != 3) return false;
  for (int i = 0; i < 3; ++i) {
    if (WindingPoint(plan, one.firstBranch + i) != WindingPoint(plan, other.firstBranch + i)) return false;
  }
  return true;
}

/// Of each star point: the first one of its station whose windings lead to the same points. Of others: themselves.
std::vector<int> FirstOfStars(const Plan& plan) {
  std::vector<int> first(plan.PointCount());
  std::iota(first.begin(), first.end(), 0);
  const auto starOf = [&plan](const Transformer& transformer) {
    return Index(plan.PointOf(plan.branches[Index(transformer.firstBranch)].to));
  };
  for (std::size_t i = 1; i < plan.transformers.size(); ++i) {
    const Transformer& one = plan.transformers[i - 1];
    const Transformer& other = plan.transformers[i];
    if (AreSideBySide(plan, one, other)) first[starOf(other)] = first[starOf(one)];
  }
  return first;
}

std::vector<Link> FindLinks(const Plan& plan) {
  const std::vector<int> first = FirstOfStars(plan);
  std::map<std::pair<int, int>, std::size_t> known;
  std::vector<Link> links;
  for (std::size_t i = 0; i < plan.branches.size(); ++i) {
    const Branch& branch = plan.branches[i];
    const int from = plan.FromPoint(branch);
    if (from == -1 || plan.ToPoint(branch) == -1) continue;
    const int to = first[Index(plan.ToPoint(branch))];
    const auto [it, isNew] = known.try_emplace({from, to}, links.size());
    if (isNew) links.push_back({from, to, {}, LevelOf(plan, branch.to).isStar});
    links[it->second].branches.push_back(static_cast<int>(i));
  }
  return links;
}

/// The voltage at which a link leads to `point`; to a star point, that of the winding.
std::size_t TierOf(const Plan& plan, const Link& link, int point) {
  const Branch& branch = plan.branches[Index(link.branches.front())];
  return static_cast<std::size_t>(LevelOf(plan, link.from == point || link.leadsToStar ? branch.from : branch.to).tier);
}

}  // namespace

SupplyTree GrowSupplyTree(const Plan& plan, int root) {
  const std::size_t points = plan.PointCount();
  SupplyTree tree{FindLinks(plan), {}, {}, std::vector<int>(points, -1), std::vector<int>(points, -1)};
  tree.inTree.assign(tree.links.size(), 0);
  const ListsByPoint linksAt(points, static_cast<int>(tree.links.size()), [&tree](int i) {
    return std::array{tree.links[Index(i)].from, tree.links[Index(i)].to};
  });

  std::array<std::vector<std::pair<int, int>>, kTiers> reached;  // points and the links that lead to them, by voltage
  std::array<std::size_t, kTiers> taken{};
  std::vector<char> isIn(points);
  reached[0].emplace_back(root, -1);
  for (;;) {
    std::size_t tier = 0;
    while (tier < reached.size() && taken[tier] == reached[tier].size()) ++tier;
    if (tier == reached.size()) return tree;
    const auto [point, link] = reached[tier][taken[tier]++];
    if (isIn[Index(point)] != 0) continue;
    isIn[Index(point)] = 1;
    tree.order.push_back(point);
    if (link != -1) {
      tree.upward[Index(point)] = link;
      tree.parent[Index(point)] = tree.links[Index(link)].OtherEnd(point);
      tree.inTree[Index(link)] = 1;
    }
    for (const int next : linksAt.Of(point)) {
      const int other = tree.links[Index(next)].OtherEnd(point);
      if (isIn[Index(other)] == 0) reached[TierOf(plan, tree.links[Index(next)], other)].emplace_back(other, next);
    }
  }
}

}  // namespace dtsdb::tools
