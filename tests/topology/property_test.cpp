// Random networks: what the topology produces against plain reasoning, and what must hold of its lists in any case.
#include <gtest/gtest.h>
#include <rapidcheck.h>

#include <rapidcheck/gtest.h>

#include <map>

#include "include/chain.h"
#include "tests/support/messages.h"
#include "tests/topology/random_network.h"
#include "tests/topology/tp_probe.h"

namespace dtsdb::test {
namespace {

/// A random network on which the topology was run. What the library writes meanwhile is caught: a zero-impedance branch
/// with a number beyond the lines causes a warning, as it should.
struct SolvedNetwork {
  SolvedNetwork() : network(*rc::gen::arbitrary<unsigned>()), model(network.Model()), tp(&model.Db()), probe(tp) {
    RC_ASSERT(model.Validate());
    RC_ASSERT(tp.tpAllnew() == 1);
  }
  ND& Node(int nd) { return model.Table<ND>().GetPh(nd); }
  BS& SectionOf(int nd) { return model.Table<BS>().GetPh(Node(nd).ibs); }

  MessageCatcher catcher;
  RandomNetwork network;
  ModelBuilder& model;
  TP tp;
  TpProbe probe;
};

/// All records of all tables as text, without the time of the run.
QStringList Contents(DTSDB& database) {
  QStringList contents;
  ForEachTable(database, [&](auto& table) {
    for (int i = 0; i < table.GetCount(); ++i) {
      auto& record = table[i];
      using Record = std::remove_reference_t<decltype(record)>;
      QString text = QString::fromLatin1(Record::kTableName);
      ForEachField(record, [&text]<class Value>(const FieldInfo& field, const Value& value) {
        if (QLatin1String(field.name) == QLatin1String("time")) return;
        text += QLatin1Char(' ');
        if constexpr (std::is_same_v<std::remove_const_t<Value>, QString>) {
          text += value;
        } else {
          text += QString::number(static_cast<double>(value));
        }
      });
      contents.append(text);
    }
  });
  return contents;
}

RC_GTEST_PROP(TopologyProperty, NodesShareASectionExactlyWhenJoinedAndLegal, ()) {
  SolvedNetwork solved;
  const PlainTopology plain(solved.model);
  std::map<int, int> sectionOfGroup;
  std::set<int> sections;
  for (int nd = 0; nd < plain.NodeCount(); ++nd) {
    const int bs = solved.Node(nd).ibs;
    const bool isolated = solved.SectionOf(nd).status & BS_ISOLATED;
    RC_ASSERT(isolated == !plain.IsLegal(nd));
    RC_ASSERT(static_cast<bool>(solved.Node(nd).flags & ND_DEAD) == isolated);
    const auto [known, isNew] = sectionOfGroup.emplace(plain.Group(nd), bs);
    RC_ASSERT(known->second == bs);
    if (isNew && bs != 0) RC_ASSERT(sections.insert(bs).second);
  }
}

RC_GTEST_PROP(TopologyProperty, IslandsAreTheComponentsAndLiveExactlyWithAUnit, ()) {
  SolvedNetwork solved;
  const PlainTopology plain(solved.model);
  std::map<int, int> numberOfIsland;
  std::set<int> numbers;
  for (int nd = 0; nd < plain.NodeCount(); ++nd) {
    if (!plain.IsLegal(nd)) continue;
    const int island = solved.SectionOf(nd).island;
    RC_ASSERT((island >= 0) == plain.IsLive(nd));
    RC_ASSERT(static_cast<bool>(solved.SectionOf(nd).status & BS_DEAD) == (island < 0));
    if (island < 0) continue;
    const auto [known, isNew] = numberOfIsland.emplace(plain.Island(nd), island);
    RC_ASSERT(known->second == island);
    if (isNew) RC_ASSERT(numbers.insert(island).second);
  }
  RC_ASSERT(solved.model.Table<ISLAND>().GetCount() == plain.LiveIslandCount());
  RC_ASSERT(static_cast<int>(numbers.size()) == plain.LiveIslandCount());
}

RC_GTEST_PROP(TopologyProperty, EndsAreIsolatedAndHeldByFragmentsAsTheStatesDemand, ()) {
  SolvedNetwork solved;
  const PlainTopology plain(solved.model);
  auto& sections = solved.model.Table<BS>();
  int fragments = 0;
  plain.ForEachBranch([&](const auto& branch) {
    const bool cut1 = plain.IsCut(branch, 1);
    const bool cut2 = plain.IsCut(branch, 2);
    RC_ASSERT(static_cast<bool>(branch.tp_status & TP_END1_ISOLATED) == cut1);
    RC_ASSERT(static_cast<bool>(branch.tp_status & TP_END2_ISOLATED) == cut2);
    if (cut1 == cut2) {
      if (cut1) RC_ASSERT(sections.GetPh(branch.ibs).status & BS_DEAD || branch.ibs == 0);
      return;
    }
    const BS& held = sections.GetPh(cut1 ? branch.ibs : branch.izbs);
    const BS& live = sections.GetPh(cut1 ? branch.izbs : branch.ibs);
    if (held.id != 0) {
      ++fragments;
      RC_ASSERT(held.status & BS_ISOLATED);
      RC_ASSERT(held.island == live.island);
    } else {
      RC_ASSERT(branch.status & BranchKind<std::remove_cvref_t<decltype(branch)>>::kOut);
    }
  });
  for (const int bs : solved.probe.Ring()) fragments -= solved.probe.Section(bs).status & BS_ISOLATED ? 1 : 0;
  RC_ASSERT(fragments == 0);
}

RC_GTEST_PROP(TopologyProperty, DevicesAreDeadExactlyOffOrOnADeadSection, ()) {
  SolvedNetwork solved;
  const PlainTopology plain(solved.model);
  const auto check = [&](auto& table) {
    for (int i = 0; i < table.GetCount(); ++i) {
      const bool dead = (table[i].status & SHUNT_OFF) || !plain.IsLive(table[i].ind);
      RC_ASSERT(static_cast<bool>(table[i].tp_status & SHUNT_DEAD) == dead);
    }
  };
  check(solved.model.Table<UN>());
  check(solved.model.Table<LD>());
  check(solved.model.Table<CP>());
}

RC_GTEST_PROP(TopologyProperty, SecondRunChangesNothing, ()) {
  SolvedNetwork solved;
  const QStringList first = Contents(solved.model.Db());
  RC_ASSERT(solved.tp.tpAllnew() == 1);
  RC_ASSERT(Contents(solved.model.Db()) == first);
}

RC_GTEST_PROP(TopologyProperty, RingIsGroupedByLevelAndBeginsEachWithItsFirstSection, ()) {
  SolvedNetwork solved;
  std::vector<int> kvs(static_cast<std::size_t>(solved.tp.getAllKVCount()));
  RC_ASSERT(solved.tp.getAllKVs(kvs.data(), static_cast<int>(kvs.size())));
  const std::vector<int> ring = solved.probe.Ring();
  std::size_t place = 0;
  for (const int kv : kvs) {
    RC_ASSERT(place < ring.size());
    RC_ASSERT(solved.model.Table<KV>().GetPh(kv).ibs == ring[place]);
    while (place < ring.size() && solved.probe.Section(ring[place]).ikv == kv) ++place;
  }
  RC_ASSERT(place == ring.size());
  RC_ASSERT(solved.probe.Ring(1).empty());
  for (const int bs : ring) RC_ASSERT(solved.probe.Section(solved.probe.Section(bs).next).prev == bs);
  RC_ASSERT(ring.size() + solved.probe.FreeSections().size() + 2 ==
            static_cast<std::size_t>(solved.probe.SectionCount()));
}

RC_GTEST_PROP(TopologyProperty, EveryListEntryStandsInExactlyOneList, ()) {
  SolvedNetwork solved;
  std::vector<int> seen(static_cast<std::size_t>(solved.probe.EntryCount()), 0);
  const GLOBAL& global = solved.probe.Global();
  int n = global.bsl_head;
  do {
    ++seen[static_cast<std::size_t>(n)];
    RC_ASSERT(seen[static_cast<std::size_t>(n)] == 1);
    n = solved.probe.Entry(n).next;
  } while (n != global.bsl_head);
  for (n = global.bsl_free; n != -1; n = solved.probe.Entry(n).next) ++seen[static_cast<std::size_t>(n)];
  for (const int count : seen) RC_ASSERT(count == 1);
}

RC_GTEST_PROP(TopologyProperty, EverythingHangsUnderItsSectionOnce, ()) {
  SolvedNetwork solved;
  std::map<std::pair<int, int>, int> sectionOfEntry;  // kind and number of what hangs there
  int bs = -1;
  const GLOBAL& global = solved.probe.Global();
  for (int n = solved.probe.Entry(global.bsl_head).next; n != global.bsl_head; n = solved.probe.Entry(n).next) {
    const BSL& entry = solved.probe.Entry(n);
    if (entry.kind == KIND_BS) {
      bs = entry.ref;
      RC_ASSERT(solved.probe.Section(bs).ibsl == n);
    }
    RC_ASSERT((sectionOfEntry.emplace(std::pair{int{entry.kind}, entry.ref}, bs).second));
  }
  const auto hangs = [&](int kind, int number, int section) {
    const auto found = sectionOfEntry.find({kind, number});
    RC_ASSERT((found != sectionOfEntry.end()) == (section != 0));
    if (section != 0) RC_ASSERT(found->second == section);
  };
  auto& lines = solved.model.Table<LN>();
  for (int i = 0; i < lines.GetCount(); ++i) {
    hangs(KIND_LN2, lines[i].ln2, lines[i].ibs);
    hangs(KIND_LN2, lines[i].zln2, lines[i].izbs);
  }
  auto& windings = solved.model.Table<XF>();
  for (int i = 0; i < windings.GetCount(); ++i) hangs(KIND_XF2, windings[i].xf2, windings[i].ibs);
  auto& units = solved.model.Table<UN>();
  for (int i = 0; i < units.GetCount(); ++i) hangs(KIND_UN, i, solved.Node(units[i].ind).ibs);
}

// Damage

/// Overwrites `count` random number fields of random records with numbers that lead somewhere or nowhere.
void Damage(RandomNetwork& network, int count) {
  std::vector<i32*> numbers;
  ForEachTable(network.Model().Db(), [&](auto& table) {
    for (int i = 0; i < table.GetCount(); ++i) {
      auto& record = table[i];
      for (const FieldInfo& field : record.Fields()) {
        if (field.type == FieldType::kI32) numbers.push_back(&field.In<i32>(&record));
      }
    }
  });
  for (int i = 0; i < count; ++i) {
    const auto place = static_cast<std::size_t>(network.Number(0, static_cast<int>(numbers.size()) - 1));
    const int values[] = {-1, -2, 0, 1, network.Number(0, 20), network.Number(0, 20000), 0x7fffffff, -0x7fffffff - 1};
    *numbers[place] = values[network.Number(0, 7)];
  }
}

/// Asks for a few random changes and runs on what waits.
void SwitchSomething(TP& tp, RandomNetwork& network) {
  for (int i = network.Number(1, 60); i > 0; --i) {
    auto& table = network.Model().Table<CB>();
    const int wanted = network.Number(0, 12);
    QByteArray id = "nobody";
    if (network.Chance(60) && wanted < table.GetCount()) id = IdToBytes(table[wanted].id);
    if (network.Chance(30)) id = "L" + QByteArray::number(network.Number(0, 60)).rightJustified(3, '0');
    tp.tpSetCompStatus(id.constData(), network.Number(0, 17), network.Chance(50));
    if (network.Chance(20)) tp.tpChange();
  }
  tp.tpRefreshCB();
  tp.tpChange();
}

/// Calls everything that can be called, in an order that a careful caller would not choose.
void RunEverything(TP& tp, RandomNetwork& network) {
  TpProbe probe(tp);
  bool changed = false;
  SwitchSomething(tp, network);
  probe.SetAllnew(network.Chance(50));
  probe.NodeSort(probe.IsAllnew());
  probe.BslBuild(network.Chance(50));
  probe.BsSort(&changed);
  probe.UpdateStatus();
  probe.FindPassPath(network.Number(-2, 20));
  probe.FindPassPath(0);
  int bs = network.Number(-2, 20);
  probe.NodeConnect(network.Number(-2, 10), network.Number(-2, 20), &bs);
  probe.BsFragment(network.Number(-2, 10), network.Number(-2, 20), &bs, network.Chance(50));
  probe.BsFragment(network.Number(-2, 10), network.Number(-2, 20));
  probe.AddBrokenBs(network.Number(-2, 10), 0, bs);
  probe.BsSort(&changed);
  tp.tpSetRefUN();
  SwitchSomething(tp, network);
  tp.tpAllnew();
  SwitchSomething(tp, network);
  tp.tpSetRefUN();
}

RC_GTEST_PROP(TopologyProperty, DamagedModelNeverCrashesOrHangs, ()) {
  RandomNetwork network(*rc::gen::arbitrary<unsigned>());
  RC_ASSERT(network.Model().Validate());
  const MessageCatcher catcher;
  testing::internal::CaptureStdout();
  Damage(network, network.Number(1, 20));
  network.Model().Db().m_globalTable->GetPh(0).valid = 1;
  TP tp(&network.Model().Db());
  tp.tpAllnew();
  RunEverything(tp, network);
  Damage(network, network.Number(1, 20));
  RunEverything(tp, network);
  testing::internal::GetCapturedStdout();
}

RC_GTEST_PROP(TopologyProperty, DamagedWorkArraysNeverCrashOrHang, ()) {
  SolvedNetwork solved;
  RandomNetwork& network = solved.network;
  testing::internal::CaptureStdout();
  const int count = network.Number(1, 10);
  for (int i = 0; i < count; ++i) {
    BS& section = solved.probe.Section(network.Number(0, 12));
    BSL& entry = solved.probe.Entry(network.Number(0, 40));
    i32* const numbers[] = {&section.next,   &section.prev, &section.ibsl, &section.ikv,
                            &section.island, &entry.next,   &entry.prev,   &entry.ref};
    *numbers[network.Number(0, 7)] = network.Chance(70) ? network.Number(-2, 20) : 0x7fffffff;
  }
  RunEverything(solved.tp, network);
  testing::internal::GetCapturedStdout();
}

// The tables are exchanged under a living TP, which still holds the work arrays of the old ones.
RC_GTEST_PROP(TopologyProperty, ExchangedTablesNeverCrashOrHang, ()) {
  SolvedNetwork solved;
  testing::internal::CaptureStdout();
  ForEachTable(solved.model.Db(), [&](auto& table) {
    if (solved.network.Chance(50)) table.SetSize(solved.network.Number(0, 3));
  });
  RunEverything(solved.tp, solved.network);
  testing::internal::GetCapturedStdout();
}

}  // namespace
}  // namespace dtsdb::test
