// What holds for every model, sound or not.
#include <gtest/gtest.h>
#include <rapidcheck.h>
#include <rapidcheck/gtest.h>

#include <map>
#include <set>

#include "tests/support/messages.h"
#include "tests/validation/random_model.h"
#include "tests/validation/run.h"
#include "validation/internal/relations.h"

namespace dtsdb::test {
namespace {

// The link pass

/// What a link pass leaves: its result, the relation rows by physical number, heads and own rows.
struct Links {
  bool result = false;
  std::vector<std::vector<std::string>> rows;
  std::vector<int> heads;
  std::vector<int> own;
  bool operator==(const Links&) const = default;
};

Links LinksOf(DTSDB& database, bool result) {
  Links links;
  links.result = result;
  for (int i = 0; i < database.m_rDvStTable->GetCount(); ++i) {
    const R_DV_ST& row = database.m_rDvStTable->GetPh(i);
    links.rows.push_back({Utf8(row.dv_id), Utf8(row.st_id), std::to_string(row.idv), std::to_string(row.ist),
                          std::to_string(row.next), std::to_string(row.prev)});
  }
  for (int i = 0; i < database.m_dvTable->GetCount(); ++i) links.heads.push_back((*database.m_dvTable)[i].r_dv_st);
  for (int i = 0; i < database.m_stTable->GetCount(); ++i) links.own.push_back((*database.m_stTable)[i].r_dv_st);
  return links;
}

/// The link pass in its plainest form: every parent with every child.
bool NestedLinkPass(DTSDB& database) {
  tTable<DV>& parents = *database.m_dvTable;
  tTable<ST>& children = *database.m_stTable;
  tTable<R_DV_ST>& rows = *database.m_rDvStTable;
  for (int p = 0; p < parents.GetCount(); ++p) {
    DV& parent = parents[p];
    if (parent.id.isEmpty()) continue;
    parent.r_dv_st = -1;
    for (int c = 0; c < children.GetCount(); ++c) {
      if (children[c].dv != parent.id) continue;
      R_DV_ST row(parent.id, children[c].id);
      row.idv = parents.LgToPh(p);
      row.ist = children.LgToPh(c);
      row.next = -1;
      row.prev = -1;
      const int n = rows.Add(row);
      if (n == -1) return false;
      children[c].r_dv_st = n;
      if (parent.r_dv_st == -1) {
        parent.r_dv_st = n;
        continue;
      }
      R_DV_ST& head = rows.GetPh(parent.r_dv_st);
      rows.GetPh(n).next = head.next;
      rows.GetPh(n).prev = parent.r_dv_st;
      if (head.next != -1) rows.GetPh(head.next).prev = n;
      head.next = n;
    }
  }
  return true;
}

RC_GTEST_PROP(LinkPassProperty, EqualsTheNestedLoops, ()) {
  const auto name = rc::gen::element<std::string>("", "A", "B", "C", "D", "E", "F", "AA", "\xFF");
  std::vector<DV> parents;
  for (const std::string& id : *rc::gen::container<std::vector<std::string>>(name)) {
    parents.emplace_back(IdFromBytes(id.c_str()));
  }
  std::vector<ST> children;
  const bool mayBeDouble = *rc::gen::arbitrary<bool>();
  std::set<std::string> seen;
  for (const auto& [id, dv] : *rc::gen::container<std::vector<std::pair<std::string, std::string>>>(
           rc::gen::pair(rc::gen::container<std::string>(rc::gen::inRange('a', 'f')), name))) {
    if (!mayBeDouble && !seen.insert(id).second) continue;
    children.emplace_back(IdFromBytes(id.c_str()));
    children.back().dv = IdFromBytes(dv.c_str());
  }

  Links links[2];
  for (const bool nested : {false, true}) {
    DTSDB database;
    if (!parents.empty()) LoadRows(database, parents);
    if (!children.empty()) LoadRows(database, children);
    const TemporaryDirectory directory;
    NMD nmd(&database);
    NmdAccess::StartDetect(nmd);
    const bool result = nested ? NestedLinkPass(database) : NmdAccess::LinkPass<R_DV_ST>(nmd);
    links[nested ? 1 : 0] = LinksOf(database, result);
  }
  RC_ASSERT(links[0] == links[1]);
}

// Sound models

template <class T>
void AssertCompact(tTable<T>& table) {
  for (int i = 0; i < table.GetCount(); ++i) RC_ASSERT(table.LgToPh(i) == i);
}

/// Every parent's chain holds exactly its children, and rows and numbers fit; own rows where they are kept so.
template <class Row>
void AssertChains(DTSDB& database, bool ownIsRow) {
  using R = Relation<Row>;
  auto& parents = TableOf<typename R::Parent>(database);
  auto& children = TableOf<typename R::Child>(database);
  auto& rows = TableOf<Row>(database);
  std::multiset<int> chained;
  for (int p = 0; p < parents.GetCount(); ++p) {
    for (const Row& row : Chain(rows, parents[p].*R::kHead)) {
      RC_ASSERT((row.*R::kParentNumber) == p);
      RC_ASSERT((row.*R::kParentId) == parents[p].id);
      RC_ASSERT((row.*R::kChildId) == children.GetPh(row.*R::kChildNumber).id);
      chained.insert(row.*R::kChildNumber);
    }
  }
  std::multiset<int> all;
  for (int c = 0; c < children.GetCount(); ++c) {
    all.insert(c);
    if (ownIsRow) RC_ASSERT((rows.GetPh(children[c].*R::kOwn).*R::kChildNumber) == c);
  }
  RC_ASSERT(chained == all);
}

template <class Branch>
void AssertEnds(DTSDB& database) {
  using Kind = BranchKind<Branch>;
  auto& branches = TableOf<Branch>(database);
  auto& ends = TableOf<typename Kind::End>(database);
  RC_ASSERT(ends.GetCount() == 2 * branches.GetCount());
  for (int i = 0; i < branches.GetCount(); ++i) {
    RC_ASSERT(branches[i].ind != branches[i].iznd);
    RC_ASSERT((ends.GetPh(branches[i].*Kind::kFromEnd).id) == branches[i].id + QLatin1Char('i'));
    RC_ASSERT((ends.GetPh(branches[i].*Kind::kToEnd).id) == branches[i].id + QLatin1Char('z'));
    RC_ASSERT((ends.GetPh(branches[i].*Kind::kFromEnd).*Kind::kOwner) == i);
  }
}

RC_GTEST_PROP(SoundModel, IsGoodAndKeepsEveryPromise, ()) {
  ModelBuilder m = RandomModel(*rc::gen::inRange(2, 6));
  DTSDB& database = m.Db();
  RC_ASSERT(m.Validate());
  ForEachTable(database, [](auto& table) { AssertCompact(table); });
  AssertChains<R_CO_DV>(database, true);
  AssertChains<R_DV_ST>(database, true);
  AssertChains<R_DV_LN>(database, true);  // one district: the row at a line's place is its own
  AssertChains<R_DV_DLN>(database, true);
  AssertChains<R_ST_KV>(database, true);
  AssertChains<R_ST_XF>(database, true);
  AssertChains<R_KV_BUS>(database, true);
  AssertChains<R_KV_CB>(database, true);
  AssertChains<R_KV_CP>(database, true);
  AssertChains<R_KV_LD>(database, true);
  AssertChains<R_KV_ND>(database, true);
  AssertChains<R_KV_UN>(database, true);
  AssertChains<R_ND_CB2>(database, true);
  AssertChains<R_ND_DLN2>(database, true);
  AssertChains<R_ND_LN2>(database, true);
  AssertChains<R_ND_XF2>(database, false);
  AssertChains<R_ND_ZBR2>(database, true);
  AssertEnds<CB>(database);
  AssertEnds<XF>(database);
  AssertEnds<LN>(database);
  AssertEnds<DLN>(database);
  RC_ASSERT(m.Validate());
}

// Unsound models

RC_GTEST_PROP(DamagedModel, IsReportedAndNeverDoesHarm, ()) {
  ModelBuilder m = RandomModel(2);
  DTSDB& database = m.Db();
  if (*rc::gen::arbitrary<bool>()) m.Validate();
  ForEachTable(database, [](auto& table) { Damage(table); });
  const MessageCatcher catcher;  // numbers that are none are warned of

  for (int run = 0; run < 2; ++run) {
    const ValidationRun one(database);
    int errors = 0;
    for (const Finding& finding : one.nmd.Findings()) errors += finding.severity == Severity::kError ? 1 : 0;
    RC_ASSERT(one.global.errors == errors);
    RC_ASSERT(one.global.valid == (one.result && errors == 0 ? 1 : 0));
    RC_ASSERT(one.global.invalid == 1 - one.global.valid);
    RC_ASSERT(one.result || !one.LastError().empty());
    RC_ASSERT(one.log.count('\n') == one.nmd.Findings().size());
  }
}

}  // namespace
}  // namespace dtsdb::test
