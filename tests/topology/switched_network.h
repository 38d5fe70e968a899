/// \file
/// Random switching on random networks, for the tests of incremental runs.
#pragma once

#include <rapidcheck.h>

#include <algorithm>

#include "tests/support/messages.h"
#include "tests/topology/list_checks.h"
#include "tests/topology/random_network.h"
#include "tests/topology/tp_probe.h"
#include "topology/component_types.h"

namespace dtsdb::test {

/// Which changes are asked for.
enum class Switching {
  All,            ///< every type of change
  WithoutBreaks,  ///< no end of a branch is opened, and none is open from the start
};

/// A network whose breakers and components are switched at random, each few events followed by an incremental run.
/// When one fails a full run follows, as a careful operator would have it.
class SwitchedNetwork {
 public:
  SwitchedNetwork(bool withZbrs, Switching switching)
      : m_switching(switching),
        m_network(*rc::gen::arbitrary<unsigned>(), withZbrs),
        tp(&m_network.Model().Db()),
        probe(tp) {
    if (switching == Switching::WithoutBreaks) m_network.CloseEnds();
    RC_ASSERT(Model().Validate());
    RC_ASSERT(tp.tpAllnew() == 1);
  }

  ModelBuilder& Model() { return m_network.Model(); }
  bool Chance(int percent) { return m_network.Chance(percent); }

  /// Up to `most` events; after each few of them a run, and `check` where it succeeded. Ends when a full run fails:
  /// what a zero-impedance branch open at end 2 alone brings about.
  template <class Check>
  void Switch(int most, Check check) {
    for (int left = m_network.Number(1, most); left > 0;) {
      m_untraced = false;
      int count = std::min(left, m_network.Number(1, 8));
      left -= count;
      for (; count > 0; --count) Event();
      if (tp.tpChange() == 1) {
        m_endAstray = m_endAstray || IsAnEndAstray();
        check();
      } else if (tp.tpAllnew() == 1) {
        m_endAstray = false;
      } else {
        return;
      }
    }
  }

  /// Since the last full run a branch end has named a section given back, perhaps one of another voltage level by now:
  /// what is done to that section is then done without its level being listed anew.
  bool HasEndAstray() const { return m_endAstray; }

  /// A breaker was opened since the last run that left no row: its nodes were joined all the same.
  bool HasUntraced() const { return m_untraced; }

 private:
  void Event() {
    const int lastType = m_switching == Switching::All ? 16 : 8;
    WithComponentType(m_network.Number(1, lastType), [&](const auto& type) {
      auto& table = Model().Table<typename std::remove_cvref_t<decltype(type)>::Record>();
      if (table.GetCount() == 0) return;
      auto& component = table[m_network.Number(0, table.GetCount() - 1)];
      const u32 before = component.*type.word;
      const int traced = tp.tpSetCompStatus(IdToBytes(component.id).constData(), type.code, Chance(50));
      m_untraced = m_untraced || (traced == 0 && component.*type.word != before);
    });
  }

  template <class Branch>
  bool IsAnEndOfAstray() {
    auto& branches = Model().Table<Branch>();
    const auto isAstray = [&](int nd, int bs) {
      const int row = Model().Table<ND>().GetPh(nd).r_kv_nd;
      return bs != 0 && probe.Section(bs).ikv != Model().Table<R_KV_ND>().GetPh(row).ikv;
    };
    for (int i = 0; i < branches.GetCount(); ++i) {
      const Branch& branch = branches[i];
      if (isAstray(branch.ind, branch.ibs) || isAstray(branch.iznd, branch.izbs)) return true;
    }
    return false;
  }
  bool IsAnEndAstray() {
    return IsAnEndOfAstray<LN>() || IsAnEndOfAstray<XF>() || IsAnEndOfAstray<DLN>() || IsAnEndOfAstray<ZBR>();
  }

  MessageCatcher m_catcher;
  Switching m_switching;
  RandomNetwork m_network;
  bool m_untraced = false;
  bool m_endAstray = false;

 public:
  TP tp;
  TpProbe probe;
};

}  // namespace dtsdb::test
