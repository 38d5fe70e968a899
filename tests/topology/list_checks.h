/// \file
/// What must hold of the lists of the topology after every run that succeeded.
#pragma once

#include <map>
#include <sstream>
#include <string>
#include <tuple>
#include <vector>

#include "tests/support/model_builder.h"
#include "tests/topology/tp_probe.h"

namespace dtsdb::test {

/// Looks through the lists and collects what is wrong with them.
class ListChecks {
 public:
  ListChecks(ModelBuilder& model, TpProbe& probe, std::vector<int> kvs)
      : m_model(model), m_probe(probe), m_kvs(std::move(kvs)) {
    CheckSections();
    CheckLevels();
    CheckNodes();
    const std::vector<int> list = CheckEntries();
    const std::size_t linkFaults = m_faults.size();
    CheckLayout(list);
    m_linkFaults.assign(m_faults.begin(), m_faults.begin() + static_cast<std::ptrdiff_t>(linkFaults));
  }

  /// One line for each fault; empty when all is well.
  const std::vector<std::string>& Faults() const { return m_faults; }
  /// The same without those of what is listed under which section.
  const std::vector<std::string>& LinkFaults() const { return m_linkFaults; }

 private:
  /// Notes the fault that the pieces of text and numbers make up, unless all is well.
  template <class... Pieces>
  void Check(bool holds, const Pieces&... pieces) {
    if (holds) return;
    std::ostringstream fault;
    (fault << ... << pieces);
    m_faults.push_back(fault.str());
  }
  bool IsSection(int bs) const { return bs >= 0 && bs < m_probe.SectionCount(); }

  /// The entries from `first` along `next` up to `end`. Stops at a link that leads nowhere or back.
  template <class Next>
  std::vector<int> Walk(int first, int end, int size, Next next, const std::string& list) {
    std::vector<int> found;
    for (int n = first; n != end; n = next(n)) {
      if (n < 0 || n >= size || static_cast<int>(found.size()) == size) {
        m_faults.push_back(list + " doesn't come to its end");
        break;
      }
      found.push_back(n);
    }
    return found;
  }

  /// Every section stands in one list: the ring, the free list, or as one of the two heads.
  void CheckSections() {
    const auto next = [&](int bs) { return m_probe.Section(bs).next; };
    const int size = m_probe.SectionCount();
    m_ring = Walk(next(0), 0, size, next, "the ring of sections");
    const std::vector<int> free = Walk(m_probe.Global().bs_free, -1, size, next, "the list of free sections");
    Check(next(1) == 1 && m_probe.Section(1).prev == 1, "the holding ring isn't empty");
    std::vector<int> lists(static_cast<std::size_t>(size), 0);
    lists[0] = lists[1] = 1;
    for (const int bs : m_ring) ++lists[static_cast<std::size_t>(bs)];
    for (const int bs : free) ++lists[static_cast<std::size_t>(bs)];
    for (int bs = 0; bs < size; ++bs) {
      const int count = lists[static_cast<std::size_t>(bs)];
      Check(count == 1, "section ", bs, " stands in ", count, " lists");
    }
    for (const int bs : m_ring) {
      const int behind = next(bs);
      Check(IsSection(behind) && m_probe.Section(behind).prev == bs, "section ", bs, " isn't linked both ways");
      Check((m_probe.Section(bs).flags & BS_UNCLAIMED) == 0, "section ", bs, " is left unclaimed");
    }
  }

  /// The ring is grouped by voltage level, each beginning with its first section.
  void CheckLevels() {
    std::size_t place = 0;
    for (const int kv : m_kvs) {
      const int first = m_model.Table<KV>().GetPh(kv).ibs;
      Check(place < m_ring.size() && m_ring[place] == first, "level ", kv, " doesn't begin with its first section");
      while (place < m_ring.size() && m_probe.Section(m_ring[place]).ikv == kv) ++place;
    }
    Check(place == m_ring.size(), "the ring isn't grouped by voltage level");
  }

  /// A node stands on a section of the ring or on the dead head, with all of its group.
  void CheckNodes() {
    auto& nodes = m_model.Table<ND>();
    for (int i = 0; i < nodes.GetCount(); ++i) {
      const ND& node = nodes[i];
      const QByteArray id = IdToBytes(node.id);
      const bool known = node.ibs == 0 || std::find(m_ring.begin(), m_ring.end(), node.ibs) != m_ring.end();
      Check(known, "node ", id.constData(), " stands on section ", node.ibs, ", which isn't in use");
      Check(nodes.GetPh(node.next).ibs == node.ibs, "node ", id.constData(),
            " doesn't stand with the next of its group");
    }
  }

  /// Every list entry stands in one list. Gives those of the bus-section list.
  std::vector<int> CheckEntries() {
    const auto next = [&](int n) { return m_probe.Entry(n).next; };
    const int size = m_probe.EntryCount();
    const GLOBAL& global = m_probe.Global();
    std::vector<int> list = Walk(next(global.bsl_head), global.bsl_head, size, next, "the bus-section list");
    const std::vector<int> free = Walk(global.bsl_free, -1, size, next, "the list of free entries");
    Check(static_cast<int>(list.size() + free.size()) + 1 == size, "list entries are lost or stand twice");
    return list;
  }

  /// The list follows the ring, a section names its own entry, and everything is listed once and under its section.
  void CheckLayout(const std::vector<int>& list) {
    std::vector<int> listed;
    std::map<std::pair<int, int>, int> sectionOf;  // by kind and number of what hangs there
    for (const int n : list) {
      const BSL& entry = m_probe.Entry(n);
      if (entry.kind == KIND_BS) {
        listed.push_back(entry.ref);
        Check(IsSection(entry.ref) && m_probe.Section(entry.ref).ibsl == n, "section ", entry.ref,
              " doesn't name its entry");
      } else if (entry.kind != KIND_ST && entry.kind != KIND_KV) {
        Check(!listed.empty(), "something is listed in front of all sections");
        const int bs = listed.empty() ? -1 : listed.back();
        const bool once = sectionOf.emplace(std::pair{int{entry.kind}, entry.ref}, bs).second;
        Check(once, "kind ", int{entry.kind}, " number ", entry.ref, " is listed twice");
      }
    }
    Check(listed == m_ring, "the list doesn't follow the ring of sections");
    CheckHanging<LN>(sectionOf);
    CheckHanging<DLN>(sectionOf);
    CheckHanging<XF>(sectionOf);
    CheckHanging<ZBR>(sectionOf);
  }

  /// Each branch end hangs under the section that the branch names. An end that still names a section given back, be
  /// it one of another voltage level by now, is left aside.
  template <class Branch>
  void CheckHanging(const std::map<std::pair<int, int>, int>& sectionOf) {
    using Kind = BranchKind<Branch>;
    auto& branches = m_model.Table<Branch>();
    for (int i = 0; i < branches.GetCount(); ++i) {
      const Branch& branch = branches[i];
      for (const auto& [end, nd, bs] : {std::tuple{branch.*Kind::kFromEnd, branch.ind, branch.ibs},
                                        {branch.*Kind::kToEnd, branch.iznd, branch.izbs}}) {
        const auto found = sectionOf.find({kKindOf<typename Kind::End>, end});
        const int hangsOn = found == sectionOf.end() ? 0 : found->second;
        Check(IsAstray(nd, bs) || hangsOn == bs, "an end of ", IdToBytes(branch.id).constData(),
              " hangs under section ", hangsOn, " and names ", bs);
      }
    }
  }

  /// True for a section that isn't in use, or not by the level of node `nd`.
  bool IsAstray(int nd, int bs) {
    if (bs == 0) return false;
    const int row = m_model.Table<ND>().GetPh(nd).r_kv_nd;
    return !IsSection(bs) || m_probe.Section(bs).ikv != m_model.Table<R_KV_ND>().GetPh(row).ikv;
  }

  ModelBuilder& m_model;
  TpProbe& m_probe;
  std::vector<int> m_kvs;
  std::vector<int> m_ring;
  std::vector<std::string> m_faults;
  std::vector<std::string> m_linkFaults;
};

}  // namespace dtsdb::test
