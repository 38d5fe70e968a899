#include <algorithm>
#include <cmath>

#include "tools/catalog.h"
#include "tools/commands.h"
#include "tools/failure.h"
#include "tools/field_text.h"
#include "tools/model_io.h"

namespace dtsdb::tools {
namespace {

struct DiffOptions {
  std::string a;
  std::string b;
  std::string sheet;
  Format format = Format::Text;
};

constexpr const char* kFooter =
    "Records are compared by identity, field by field; slots are not compared. A null and an empty text are equal, "
    "and\n"
    "so are two nan; 0 and -0 differ. Exit code 0: the models are the same; 1: they differ.\n\n"
    "Examples:\n"
    "  dtsdb diff before.obj after.obj\n"
    "  dtsdb diff examples/ieee14 grid.obj --format csv";

template <class V>
bool IsSame(const V& a, const V& b) {
  if constexpr (std::is_floating_point_v<V>) {
    return std::isnan(a) ? std::isnan(b) : a == b && std::signbit(a) == std::signbit(b);
  } else {
    return a == b;
  }
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
  template <class T>
  void Compare(tTable<T>& a, tTable<T>& b) {
    const std::vector<const T*> recordsA = InOrder(a);
    const std::vector<const T*> recordsB = InOrder(b);
    Counts counts;
    auto atA = recordsA.begin();
    auto atB = recordsB.begin();
    while (atA != recordsA.end() || atB != recordsB.end()) {
      if (atB == recordsB.end() || (atA != recordsA.end() && **atA < **atB)) {
        ++counts.onlyA;
        m_differences.Add({T::kTableName, KeyText(**atA++), "only in A"});
      } else if (atA == recordsA.end() || **atB < **atA) {
        ++counts.onlyB;
        m_differences.Add({T::kTableName, KeyText(**atB++), "only in B"});
      } else {
        counts.changed += CompareFields(**atA++, **atB++) ? 0 : 1;
      }
    }
    if (counts.onlyA + counts.onlyB + counts.changed == 0) return;
    m_tables.Add({T::kTableName, NumberCell(a.GetCount()), NumberCell(b.GetCount()), NumberCell(counts.onlyA),
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
  template <class T>
  static std::vector<const T*> InOrder(tTable<T>& table) {
    std::vector<const T*> records;
    records.reserve(static_cast<std::size_t>(table.GetCount()));
    for (int i = 0; i < table.GetCount(); ++i) records.push_back(&table[i]);
    std::stable_sort(records.begin(), records.end(), [](const T* a, const T* b) { return *a < *b; });
    return records;
  }

  template <class T>
  bool CompareFields(const T& a, const T& b) {
    bool same = true;
    T::ForEachField([&](const auto& field) {
      if (IsSame(a.*field.member, b.*field.member)) return;
      same = false;
      m_differences.Add(
          {T::kTableName, KeyText(a), "changed", field.name, FieldCell(a.*field.member), FieldCell(b.*field.member)});
    });
    return same;
  }

  Sheet m_tables;
  Sheet m_differences;
};

int Diff(const DiffOptions& options) {
  DTSDB a = LoadModel(options.a);
  DTSDB b = LoadModel(options.b);
  Comparison comparison;
#define DTSDB_COMPARE(T, table, key, meaning) comparison.Compare(*a.table, *b.table);
  DTSDB_TABLES(DTSDB_COMPARE)
#undef DTSDB_COMPARE
  const bool same = comparison.IsSameModel();
  const bool unnamed = options.sheet.empty() && options.format == Format::Csv;
  WriteReport(std::move(comparison).Result(), options.format, unnamed ? "differences" : options.sheet);
  return same ? EXIT_GOOD : EXIT_FAULTS;
}

}  // namespace

void AddDiff(CLI::App& app, Action& action) {
  AddCommand<DiffOptions>(
      app, action, "diff", "Compare two models record by record",
      [](CLI::App& command, DiffOptions& options) {
        AddModelArgument(command, options.a, "A")->required();
        AddModelArgument(command, options.b, "B")->required();
        AddSheetOption(command, options.sheet, "tables or differences (the one that csv gives)");
        AddFormatOption(command, options.format);
        command.footer(kFooter);
      },
      Diff);
}

}  // namespace dtsdb::tools
