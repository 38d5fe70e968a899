#include "page/commit_log.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <iterator>
#include <string_view>
#include <type_traits>
#include <utility>

#include "formats/field_text.h"
#include "model/any_table.h"
#include "script/switch_events.h"
#include "topology/component_types.h"

namespace dtsdb::page {
namespace {

/// The tables that make the grid what it is, whatever its states and powers.
constexpr std::array kGridTables{KIND_CO, KIND_DV, KIND_ST, KIND_KV, KIND_BUS, KIND_CB,  KIND_UN,
                                 KIND_LD, KIND_CP, KIND_XF, KIND_LN, KIND_DLN, KIND_ZBR, KIND_ND};

/// The tables of which a person reads changes: all others follow from them.
bool IsLogged(TableKind kind) {
  return std::find(kGridTables.begin(), kGridTables.end(), kind) != kGridTables.end() || kind == KIND_ANALOG ||
         kind == KIND_STATUS || kind == KIND_TPTRACE;
}

template <class V>
bool IsSameValue(const V& a, const V& b) {
  if constexpr (std::is_floating_point_v<V>) {
    return a == b || (std::isnan(a) && std::isnan(b));
  } else {
    return a == b;
  }
}

bool IsSameField(const FieldInfo& field, const void* a, const void* b) {
  return VisitValue(field, a, [&]<class V>(const V& value) { return IsSameValue(value, field.In<V>(b)); });
}

/// A value that comes from outside, for people: no number of a record, and no word of bits.
bool IsShownValue(const FieldInfo& field) {
  const std::string_view writers = field.writers;
  const std::string_view name = field.name;
  const bool isWorkedOut =
      writers.find("validation") != std::string_view::npos || writers.find("topology") != std::string_view::npos;
  return !isWorkedOut && field.refers == KIND_NONE && name != "flags" && name != "status" && name != "tp_status";
}

/// Walks two tables side by side and notes what differs.
class TableLog {
 public:
  TableLog(const TableInfo& table, CommitLog& log) : m_table(table), m_log(log) {}

  std::vector<LogLine> switching;
  std::vector<LogLine> moves;
  std::vector<LogLine> values;

  void Compare(const AnyTable& before, const AnyTable& after) {
    int a = 0;
    int b = 0;
    while (a < before.GetCount() || b < after.GetCount()) {
      const bool hasBoth = a < before.GetCount() && b < after.GetCount();
      if (b == after.GetCount() || (hasBoth && before.IsLess(before[a], after[b]))) {
        Move(before[a++], "removed");
      } else if (a == before.GetCount() || before.IsLess(after[b], before[a])) {
        Move(after[b++], "added");
      } else {
        CompareRecords(before[a++], after[b++]);
      }
    }
  }

 private:
  void Move(const void* record, const char* text) {
    m_log.isSame = false;
    if (IsOfGrid()) m_log.isOtherGrid = true;
    Add(moves, record, text);
  }

  void CompareRecords(const void* a, const void* b) {
    std::string changes;
    bool differs = false;
    for (const FieldInfo& field : m_table.fields()) {
      if (IsSameField(field, a, b)) continue;
      differs = true;
      if (field.type == FieldType::kText && IsOfGrid()) m_log.isOtherGrid = true;
      if (!IsShownValue(field)) continue;
      const std::string unit = *field.unit != '\0' ? std::string(" ") + field.unit : "";
      changes += fmt::format("{}{} {} to {}{}", changes.empty() ? "" : ", ", field.name, tools::FieldText(field, a),
                             tools::FieldText(field, b), unit);
    }
    if (!differs) return;
    m_log.isSame = false;
    LogSwitching(a, b);
    if (!changes.empty()) Add(values, b, changes);
  }

  void LogSwitching(const void* a, const void* b) {
    const auto compare = [&](const auto& type) {
      using Record = typename std::remove_cvref_t<decltype(type)>::Record;
      if (Record::kKind != m_table.kind) return;
      const bool was = (static_cast<const Record*>(a)->*type.word & type.bit) != 0;
      const bool is = (static_cast<const Record*>(b)->*type.word & type.bit) != 0;
      if (was != is) Add(switching, b, tools::WhatHappened(type.code, !is));
    };
    std::apply([&](const auto&... types) { (compare(types), ...); }, kComponentTypes);
  }

  void Add(std::vector<LogLine>& lines, const void* record, std::string text) {
    if (!IsLogged(m_table.kind)) return;
    ++m_log.count;
    lines.push_back({m_table.name, tools::KeyText(m_table, record), std::move(text)});
  }

  bool IsOfGrid() const { return std::find(kGridTables.begin(), kGridTables.end(), m_table.kind) != kGridTables.end(); }

  const TableInfo& m_table;
  CommitLog& m_log;
};

void Append(std::vector<LogLine>& lines, std::vector<LogLine>& more, std::size_t most) {
  const std::size_t count = std::min(more.size(), most - std::min(most, lines.size()));
  const auto end = more.begin() + static_cast<std::ptrdiff_t>(count);
  lines.insert(lines.end(), std::make_move_iterator(more.begin()), std::make_move_iterator(end));
}

/// A validation numbers everything anew.
bool WasValidated(DTSDB& before, DTSDB& after) {
  if (before.m_globalTable->GetCount() == 0 || after.m_globalTable->GetCount() == 0) {
    return before.m_globalTable->GetCount() != after.m_globalTable->GetCount();
  }
  const GLOBAL& a = (*before.m_globalTable)[0];
  const GLOBAL& b = (*after.m_globalTable)[0];
  return a.check_time != b.check_time || a.valid != b.valid;
}

}  // namespace

CommitLog DescribeCommit(DTSDB& before, DTSDB& after, const std::vector<TableKind>& changed, std::size_t most) {
  CommitLog log;
  log.isOtherGrid = WasValidated(before, after);
  std::vector<LogLine> values;
  for (const TableKind kind : changed) {
    TableLog table(TableOfKind(kind), log);
    table.Compare(TableOfKind(before, kind), TableOfKind(after, kind));
    Append(log.switching, table.switching, most);
    Append(log.others, table.moves, most);
    Append(values, table.values, most);
  }
  Append(log.others, values, most);
  return log;
}

}  // namespace dtsdb::page
