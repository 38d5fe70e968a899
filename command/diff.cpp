#include <fmt/format.h>

#include <algorithm>
#include <cmath>

#include "analysis/switching.h"
#include "command/analysis_result.h"
#include "command/commands.h"
#include "command/imported_model.h"
#include "formats/failure.h"
#include "formats/field_text.h"
#include "formats/messages.h"
#include "model/any_table.h"

namespace dtsdb::tools {
namespace {

struct DiffOptions {
  ModelName a;
  ModelName b;
  bool givesEvents = false;
  std::string sheet;
  Format format = Format::kText;
};

constexpr const char* kDiffFooter =
    "Records are compared by identity, field by field; slots are not compared. A null and an empty text are equal, "
    "and\n"
    "so are two nan; 0 and -0 differ.\n\n"
    "Examples:\n"
    "  dtsdb diff before.obj after.obj\n"
    "  dtsdb diff examples/ieee14 grid.obj --format csv\n"
    "  dtsdb diff cgmes:eq.xml,noon.xml cgmes:eq.xml,evening.xml --events > evening.txt";

template <class V>
bool IsSame(const V& a, const V& b) {
  if constexpr (std::is_floating_point_v<V>) {
    return std::isnan(a) ? std::isnan(b) : a == b && std::signbit(a) == std::signbit(b);
  } else {
    return a == b;
  }
}

bool IsSameIn(const FieldInfo& field, const void* a, const void* b) {
  return VisitValue(field, a, [&]<class V>(const V& value) { return IsSame(value, field.In<V>(b)); });
}

/// Compares two models and notes what differs.
class Comparison {
 public:
  Comparison()
      : m_tables("tables", "Tables that differ", {"table", "records_a", "records_b", "only_a", "only_b", "changed"}),
        m_differences("differences", "Differences", {"table", "identity", "change", "field", "a", "b"}) {
    m_differences.GroupBy(2);
  }

  /// Both tables are walked in the order of their keys, side by side.
  void Compare(const AnyTable& a, const AnyTable& b) {
    const TableInfo& table = a.Info();
    const std::vector<const void*> recordsA = InOrder(a);
    const std::vector<const void*> recordsB = InOrder(b);
    Counts counts;
    auto atA = recordsA.begin();
    auto atB = recordsB.begin();
    while (atA != recordsA.end() || atB != recordsB.end()) {
      if (atB == recordsB.end() || (atA != recordsA.end() && a.IsLess(*atA, *atB))) {
        ++counts.onlyA;
        m_differences.Add({table.name, KeyText(table, *atA++), "only in A"});
      } else if (atA == recordsA.end() || a.IsLess(*atB, *atA)) {
        ++counts.onlyB;
        m_differences.Add({table.name, KeyText(table, *atB++), "only in B"});
      } else {
        counts.changed += CompareFields(table, *atA++, *atB++) ? 0 : 1;
      }
    }
    if (counts.onlyA + counts.onlyB + counts.changed == 0) return;
    m_tables.Add({table.name, NumberCell(a.GetCount()), NumberCell(b.GetCount()), NumberCell(counts.onlyA),
                  NumberCell(counts.onlyB), NumberCell(counts.changed)});
  }

  bool IsSameModel() const { return m_tables.Rows().empty(); }

  Report Result() && {
    Report report;
    report.Fact("same", IsSameModel());
    if (IsSameModel()) report.Line("The models are the same.");
    report.Add(std::move(m_tables)).HideWhenEmpty();
    report.Add(std::move(m_differences)).HideWhenEmpty();
    return report;
  }

 private:
  struct Counts {
    int onlyA = 0;
    int onlyB = 0;
    int changed = 0;
  };

  /// The records in the order of their keys, also where an object file holds them in another one.
  static std::vector<const void*> InOrder(const AnyTable& table) {
    std::vector<const void*> records;
    records.reserve(static_cast<std::size_t>(table.GetCount()));
    for (int i = 0; i < table.GetCount(); ++i) records.push_back(table[i]);
    std::stable_sort(records.begin(), records.end(),
                     [&table](const void* a, const void* b) { return table.IsLess(a, b); });
    return records;
  }

  bool CompareFields(const TableInfo& table, const void* a, const void* b) {
    bool same = true;
    for (const FieldInfo& field : table.fields()) {
      if (IsSameIn(field, a, b)) continue;
      same = false;
      m_differences.Add(
          {table.name, KeyText(table, a), "changed", field.name, FieldCell(field, a), FieldCell(field, b)});
    }
    return same;
  }

  Sheet m_tables;
  Sheet m_differences;
};

/// The options of an import hold for both models.
ModelName WithImport(ModelName name, const ImportOptions& import) {
  name.Import() = import;
  return name;
}

Report EventReport(const analysis::Way& way) {
  Report report;
  report.Fact("reachable", way.unreachable.empty());
  Sheet& events = report.Add(Sheet("events", "Events", {"event"}));
  for (const SwitchEvent& event : way.events) events.Add({analysis::EventText(event)});
  Sheet& unreachable = report.Add(Sheet("unreachable", "Not reached", {"table", "identity", "why"}));
  for (const auto& [table, identity, why] : way.unreachable) unreachable.Add({table, identity, why});
  return report;
}

/// Prints the script from the states of A to those of B.
int Events(const DiffOptions& options) {
  const analysis::Model a = OpenModel(options.a);
  const analysis::Model b = OpenModel(WithImport(options.b, options.a.Import()));
  const analysis::Way way = Take(analysis::FindWay(a, b));
  if (options.format == Format::kText && options.sheet.empty()) {
    WriteUtf8(Take(analysis::ScriptOf(way.events)));
    for (const auto& [table, identity, why] : way.unreachable) {
      WriteMessage(fmt::format("{} {}: {}", table, Quoted(identity), why));
    }
  } else {
    WriteReport(EventReport(way), options.format, options.sheet);
  }
  return way.unreachable.empty() ? kExitGood : kExitFaults;
}

int Diff(const DiffOptions& options) {
  if (options.givesEvents) return Events(options);
  DTSDB a = LoadImported(options.a).tables;
  DTSDB b = LoadImported(WithImport(options.b, options.a.Import())).tables;
  Comparison comparison;
  for (const TableInfo& table : Tables()) {
    comparison.Compare(TableOfKind(a, table.kind), TableOfKind(b, table.kind));
  }
  const bool same = comparison.IsSameModel();
  const bool unnamed = options.sheet.empty() && options.format == Format::kCsv;
  WriteReport(std::move(comparison).Result(), options.format, unnamed ? "differences" : options.sheet);
  return same ? kExitGood : kExitFaults;
}

}  // namespace

void AddDiff(CommandLine& app, Action& action) {
  AddCommand<DiffOptions>(
      app, action, "diff", "Compare two models record by record",
      [](CommandLine& command, DiffOptions& options) {
        AddModelArgument(command, options.a, "A").Required();
        AddModelArgument(command, options.b, "B").Required();
        command.AddFlag("--events", options.givesEvents,
                        "Print the script for 'dtsdb switch A --script' that leads from the states of A to those of B");
        AddImportOptions(command, options.a);
        AddSheetOption(command, options.sheet,
                       "tables or differences (the one that csv gives); with --events events or unreachable");
        AddFormatOption(command, options.format);
        command.Footer(kDiffFooter);
        AddExitCodes(command, "the models are the same; with --events the script leads to all states of B",
                     "they differ; with --events some states of B can't be reached");
      },
      Diff);
}

}  // namespace dtsdb::tools
