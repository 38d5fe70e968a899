/// \file
/// Running the topology on a hand-made network and looking at the results.
#pragma once

#include <gtest/gtest.h>

#include <clocale>
#include <string>
#include <vector>

#include "tests/support/messages.h"
#include "tests/support/model_builder.h"
#include "tests/topology/tp_probe.h"
#include "topology/tp.h"

namespace dtsdb::test {

/// A network on which the topology is run.
class TopologyTest : public testing::Test {
 protected:
  /// Validates the network and runs the topology on it from nothing.
  void Run() {
    ASSERT_TRUE(m.Validate());
    ASSERT_EQ(tp.tpAllnew(), 1);
  }

  int Nd(const char* id) { return m.Number<ND>(id); }
  int Kv(const char* id) { return m.Number<KV>(id); }
  /// The section that a node is in.
  int SectionOf(const char* node) { return m.Of<ND>(node).ibs; }
  /// A stored section.
  BS& Section(int bs) { return m.Db().m_bsTable->GetPh(bs); }
  /// The island that a node's section lies in.
  int IslandOf(const char* node) { return Section(SectionOf(node)).island; }
  void Open(const char* breaker) { m.Of<CB>(breaker).flags |= CB_OPEN; }
  void Close(const char* breaker) { m.Of<CB>(breaker).flags &= ~CB_OPEN; }

  /// The stored bus-section list as a line of text, from the head on: "- ST:A KV:A220 BS:2 LN2:Li UN:U".
  std::string List() {
    tTable<BSL>& list = *m.Db().m_bslTable;
    const int head = m.Db().m_globalTable->GetPh(0).bsl_head;
    std::string text = "-";
    int left = list.GetCount();
    for (int n = list.GetPh(head).next; n != head && left > 0; n = list.GetPh(n).next, --left) {
      text += " " + Describe(list.GetPh(n));
    }
    return text;
  }

  ModelBuilder m;
  TP tp{&m.Db()};
  TpProbe probe{tp};

 private:
  template <class T>
  bool DescribeAs(const BSL& entry, std::string* text) {
    if (entry.kind != kKindOf<T>) return false;
    *text = std::string(T::kTableName) + ":";
    if constexpr (T::kKey == RecordKey::kIdentified) {
      *text += TextFromId(m.Table<T>().GetPh(entry.ref).id).toStdString();
    } else {
      *text += std::to_string(entry.ref);
    }
    return true;
  }
  std::string Describe(const BSL& entry) {
    std::string text = "?";
    const bool known = DescribeAs<ST>(entry, &text) || DescribeAs<KV>(entry, &text) || DescribeAs<BS>(entry, &text) ||
                       DescribeAs<UN>(entry, &text) || DescribeAs<LD>(entry, &text) || DescribeAs<CP>(entry, &text) ||
                       DescribeAs<LN2>(entry, &text) || DescribeAs<XF2>(entry, &text) ||
                       DescribeAs<ZBR2>(entry, &text) || DescribeAs<DLN2>(entry, &text);
    EXPECT_TRUE(known) << "kind " << int{entry.kind};
    return text;
  }
};

/// What `action` writes on the standard output.
template <class Action>
std::string Printed(Action action) {
  std::setlocale(LC_ALL, "C.UTF-8");
  testing::internal::CaptureStdout();
  action();
  std::fflush(stdout);
  return testing::internal::GetCapturedStdout();
}

/// A message of a stage with "N" for the source line; any other message as it is.
inline std::string WithoutSourceLine(std::string text) {
  const std::size_t open = text.find(" (");
  const std::size_t close = text.find(')');
  if (text.starts_with("TP:") && open != std::string::npos && close != std::string::npos) {
    text.replace(open + 2, close - open - 2, "N");
  }
  return text;
}

/// The lines that stages write while `action` runs, with "N" for the source line.
template <class Action>
std::vector<std::string> FailureLines(Action action) {
  const MessageCatcher catcher;
  action();
  std::vector<std::string> lines;
  for (const QString& line : MessageCatcher::Lines()) lines.push_back(WithoutSourceLine(line.toStdString()));
  return lines;
}

using Lines = std::vector<std::string>;

}  // namespace dtsdb::test
