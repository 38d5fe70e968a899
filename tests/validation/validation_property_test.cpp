// What holds for every model, sound or not.
#include <gtest/gtest.h>
#include <rapidcheck.h>
#include <rapidcheck/gtest.h>

#include <map>
#include <set>

#include "tests/support/messages.h"
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

std::string Name(const std::string& prefix, int number) { return prefix + std::to_string(number); }

/// A sound model of `stations` stations, its devices given to random nodes.
ModelBuilder RandomModel(int stations) {
  ModelBuilder m;
  const auto below = [](int n) { return *rc::gen::inRange(0, n); };
  constexpr int kNodes = 5;
  const auto node = [&](int level, int n) { return Name(Name("N", level) + "-", n); };
  // Numbers are counted down, so that the order of mention is not the order of names.
  for (int s = stations - 1; s >= 0; --s) {
    m.Station(Name("S", s).c_str()).Kv(Name("K", 2 * s).c_str(), 220).Kv(Name("K", 2 * s + 1).c_str(), 220);
    m.Winding(Name("X", s).c_str(), Name("S", s).c_str(), Name("K", 2 * s).c_str(), Name("K", 2 * s + 1).c_str(),
              node(2 * s, below(kNodes)).c_str(), node(2 * s + 1, below(kNodes)).c_str());
  }
  for (int i = 0; i < 4 * stations; ++i) {
    const int level = below(2 * stations);
    const std::string kv = Name("K", level);
    const int from = below(kNodes);
    const int to = (from + 1 + below(kNodes - 1)) % kNodes;
    m.Breaker(Name("B", i).c_str(), kv.c_str(), node(level, from).c_str(), node(level, to).c_str());
    if (below(4) == 0) m.Zbr(Name("Z", i).c_str(), Name("B", i).c_str());
    m.Unit(Name("U", i).c_str(), kv.c_str(), node(level, below(kNodes)).c_str());
    m.Load(Name("L", i).c_str(), kv.c_str(), node(level, below(kNodes)).c_str());
    m.Cap(Name("C", i).c_str(), kv.c_str(), node(level, below(kNodes)).c_str());
    m.Bus(Name("P", i).c_str(), kv.c_str(), node(level, below(kNodes)).c_str());
    const int far = below(2 * stations);
    if (far == level) continue;
    const std::string st = Name("S", level / 2);
    const std::string zst = Name("S", far / 2);
    const std::string zkv = Name("K", far);
    m.Line(Name("A", i).c_str(), "DV", st.c_str(), zst.c_str(), kv.c_str(), zkv.c_str(), node(level, from).c_str(),
           node(far, to).c_str());
    m.DcLine(Name("D", i).c_str(), "DV", st.c_str(), zst.c_str(), kv.c_str(), zkv.c_str(), node(level, from).c_str(),
             node(far, to).c_str());
  }
  return m;
}

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

/// Replaces some texts of some records by texts from elsewhere, and some numbers by any.
template <class T>
void Damage(tTable<T>& table) {
  if (table.GetCount() == 0) return;
  std::vector<T> rows;
  for (int i = 0; i < table.GetCount(); ++i) rows.push_back(table[i]);
  const auto texts = rc::gen::element<std::string>("", "S0", "S1", "K0", "K1", "K2", "N0-1", "N1-2", "B0", "DV", "L0",
                                                   "\xFF\x81", "nowhere");
  for (int hit = *rc::gen::inRange(0, 3); hit > 0; --hit) {
    T& row = rows[*rc::gen::inRange<std::size_t>(0, rows.size())];
    const int at = *rc::gen::inRange(0, static_cast<int>(T::Fields().size()));
    int number = 0;
    ForEachField(row, [&]<class Value>(const FieldInfo&, Value& value) {
      if (number++ != at) return;
      if constexpr (std::is_same_v<Value, QString>) {
        value = IdFromBytes((*texts).c_str());
      } else {
        value = static_cast<Value>(*rc::gen::element(-2, -1, 0, 1, 7, 300, 1 << 30));
      }
    });
  }
  table.SetData(rows.data(), static_cast<int>(rows.size()), false);
}

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
