// Random sequences of operations on a table and on its measuring stick: every result, number, link and slot is the
// same at every moment that either can be looked at.
#include <gtest/gtest.h>
#include <rapidcheck.h>
#include <rapidcheck/gtest.h>

#include <map>
#include <numeric>
#include <vector>

#include "tests/include/reference_table.h"

namespace dtsdb::test {
namespace {

enum class What {
  kAdd,
  kRemove,
  kFind,
  kGrow,
  kShrink,
  kSameSize,
  kFreeAll,
  kGrowBy,
  kSetSorted,
  kSetUnsorted,
  kClear,
  kCompact,
  kLgToPh,
  kPhToLg,
  kIndex,
  kSlot,
  kConst,
  kState,
};

struct Step {
  What what = What::kAdd;
  int a = 0;
  int b = 0;
};

void showValue(const Step& step, std::ostream& out) {
  static const char* const names[] = {"Add",     "Remove", "Find",       "Grow",        "Shrink",       "SameSize",
                                      "FreeAll", "GrowBy", "SetSorted",  "SetUnsorted", "Clear",        "Compact",
                                      "LgToPh",  "PhToLg", "operator[]", "GetPh",       "const access", "State"};
  out << names[static_cast<int>(step.what)] << "(" << step.a << ", " << step.b << ")";
}

/// Runs the same steps on both tables.
class Pair {
 public:
  /// Keys are taken from 0 to `keys` - 1.
  explicit Pair(int keys) : m_keys(keys) {}

  void Fill(std::vector<Rec> records, bool sorted) {
    std::vector<Rec> copy = records;
    const int n = static_cast<int>(records.size());
    RC_ASSERT(m_table.SetData(records.data(), n, sorted));
    m_reference.SetData(copy.data(), n, sorted);
    RC_ASSERT(KeysAndTags(records.data(), n) == KeysAndTags(copy.data(), n));
  }

  void Run(const Step& step) {
    const int key = step.a % m_keys;
    const int size = m_reference.GetSize();
    const int count = m_reference.GetCount();
    switch (step.what) {
      case What::kAdd: {
        const Rec rec(key, ++m_tag);
        RC_ASSERT(m_table.Add(rec) == m_reference.Add(rec));
        break;
      }
      case What::kRemove:
        if (size > 0) RC_ASSERT(m_table.Remove(step.a % size) == m_reference.Remove(step.a % size));
        break;
      case What::kFind:
        RC_ASSERT(m_table.Find(Rec(key)) == m_reference.Find(Rec(key)));
        break;
      case What::kGrow:
        SetSize(size + 1 + step.a % 30);
        break;
      case What::kShrink:
        if (size > 1) SetSize(1 + step.a % (size - 1));
        break;
      case What::kSameSize:
        SetSize(size);
        break;
      case What::kFreeAll:
        SetSize(0);
        break;
      case What::kGrowBy:
        m_table.SetGrowBy(step.a % 20 - 2);
        m_reference.SetGrowBy(step.a % 20 - 2);
        break;
      case What::kSetSorted:
      case What::kSetUnsorted:
        Fill(Records(1 + step.a % 40, step.b), step.what == What::kSetSorted);
        break;
      case What::kClear:
        m_table.Clear();
        m_reference.Clear();
        break;
      case What::kCompact:
        m_table.Compact();
        m_reference.Compact();
        break;
      case What::kLgToPh:
        if (count > 0) RC_ASSERT(m_table.LgToPh(step.a % count) == m_reference.LgToPh(step.a % count));
        break;
      case What::kPhToLg:
        if (size > 0) RC_ASSERT(m_table.PhToLg(step.a % size) == m_reference.PhToLg(step.a % size));
        break;
      case What::kIndex:
        if (count > 0) RC_ASSERT(m_table[step.a % count].tag == m_reference.At(step.a % count).tag);
        break;
      case What::kSlot:
        if (size > 0) RC_ASSERT(m_table.GetPh(step.a % size).tag == m_reference.GetPh(step.a % size).tag);
        break;
      case What::kConst:
        CheckConst(step.a, key);
        break;
      case What::kState:
        CheckState();
        break;
    }
    m_putOff = m_putOff || Probe::IsNumberingPutOff(m_table);
    RC_ASSERT(m_table.GetCount() == m_reference.GetCount());
    RC_ASSERT(m_table.GetSize() == m_reference.GetSize());
  }

  void CheckState() { RC_ASSERT(Probe::State(m_table) == m_reference.State()); }
  bool WasNumberingPutOff() const { return m_putOff; }

 private:
  /// `n` records that repeat from `seed`, in no order and with equal keys among them.
  std::vector<Rec> Records(int n, int seed) {
    std::vector<Rec> records;
    for (int i = 0; i < n; ++i) records.emplace_back((i * 7919 + seed) % std::max(1, m_keys / 2), ++m_tag);
    return records;
  }
  /// Every access through a const reference, which changes nothing: numbers that are put off stay so.
  void CheckConst(int n, int key) {
    const Table& table = m_table;
    const bool putOff = Probe::IsNumberingPutOff(table);
    RC_ASSERT(table.Find(Rec(key)) == m_reference.Find(Rec(key)));
    if (const int size = table.GetSize(); size > 0) {
      RC_ASSERT(table.PhToLg(n % size) == m_reference.PhToLg(n % size));
      RC_ASSERT(table.GetPh(n % size).tag == m_reference.GetPh(n % size).tag);
    }
    if (const int count = table.GetCount(); count > 0) {
      RC_ASSERT(table.LgToPh(n % count) == m_reference.LgToPh(n % count));
      RC_ASSERT(table[n % count].tag == m_reference.At(n % count).tag);
      RC_ASSERT(table.GetAt(n % count).tag == m_reference.At(n % count).tag);
    }
    RC_ASSERT(Probe::IsNumberingPutOff(table) == putOff);
  }
  void SetSize(int n) {
    m_table.SetSize(n);
    m_reference.SetSize(n);
  }

  int m_keys;
  int m_tag = 0;
  bool m_putOff = false;
  Table m_table;
  ReferenceTable m_reference;
};

/// Steps of the kinds given, each as often as it stands in the list.
std::vector<Step> Steps(const std::vector<What>& kinds, std::size_t most) {
  const auto count = *rc::gen::inRange<std::size_t>(1, most);
  const auto step = rc::gen::apply(
      [](What what, int a, int b) {
        return Step{what, a, b};
      },
      rc::gen::elementOf(kinds), rc::gen::inRange(0, 1000000), rc::gen::inRange(0, 1000));
  return *rc::gen::container<std::vector<Step>>(count, step);
}

RC_GTEST_PROP(TableProperty, SmallTablesDoWhatTheirMeasuringStickDoes, ()) {
  using enum What;
  Pair pair(*rc::gen::element(3, 12, 40));
  const std::vector<What> kinds = {kAdd,   kAdd,     kAdd,    kAdd,      kAdd,     kRemove, kRemove,    kRemove,
                                   kFind,  kGrow,    kShrink, kSameSize, kFreeAll, kGrowBy, kSetSorted, kSetUnsorted,
                                   kClear, kCompact, kLgToPh, kPhToLg,   kIndex,   kSlot,   kConst,     kState};
  for (const Step& step : Steps(kinds, 120)) pair.Run(step);
  pair.CheckState();
}

// Big enough that numbering is put off: it starts with thousands of rows and gets rarely asked for a number.
RC_GTEST_PROP(TableProperty, LargeTablesDoWhatTheirMeasuringStickDoes, ()) {
  using enum What;
  Pair pair(20000);
  std::vector<Rec> rows;
  const int n = *rc::gen::inRange(2100, 3000);
  for (int i = 0; i < n; ++i) rows.emplace_back(2 + i * 6, -i);
  pair.Fill(rows, *rc::gen::arbitrary<bool>());
  const std::vector<What> kinds = {kAdd,  kAdd,  kAdd,    kAdd,    kAdd,   kAdd,  kRemove, kRemove, kRemove, kRemove,
                                   kFind, kFind, kLgToPh, kPhToLg, kIndex, kSlot, kGrow,   kGrowBy, kConst,  kConst};
  for (const Step& step : Steps(kinds, 200)) pair.Run(step);
  pair.CheckState();
  RC_CLASSIFY(pair.WasNumberingPutOff(), "numbering put off");
}

// The same with the operations that end a put-off numbering by other ways than a look at a number.
RC_GTEST_PROP(TableProperty, LargeTablesGoThroughBulkOperationsAlike, ()) {
  using enum What;
  Pair pair(8000);
  std::vector<Rec> rows;
  for (int i = 0; i < 2200; ++i) rows.emplace_back(i * 3, -i);
  pair.Fill(rows, true);
  const std::vector<What> kinds = {kAdd,    kAdd,  kAdd,  kAdd,  kAdd,     kAdd,   kAdd,    kAdd,    kRemove, kRemove,
                                   kRemove, kFind, kGrow, kGrow, kCompact, kState, kPhToLg, kShrink, kClear,  kConst};
  for (const Step& step : Steps(kinds, 150)) pair.Run(step);
  pair.CheckState();
}

// Rows with equal keys among them: which is found, and which is removed, depends on the numbers alone.
RC_GTEST_PROP(TableProperty, LargeTablesWithEqualRecordsDoWhatTheirMeasuringStickDoes, ()) {
  using enum What;
  Pair pair(4000);
  const int n = 2200;
  const int distinct = *rc::gen::element(5, 300, 2199);
  std::vector<Rec> rows;
  for (int i = 0; i < n; ++i) rows.emplace_back(static_cast<int>(i * 7919L % distinct), i);
  pair.Fill(rows, false);
  const std::vector<What> kinds = {kAdd, kAdd, kAdd, kRemove, kRemove, kFind, kFind, kPhToLg, kIndex, kConst};
  for (const Step& step : Steps(kinds, 150)) pair.Run(step);
  pair.CheckState();
}

RC_GTEST_PROP(TableProperty, BulkLoadSortsLikeTheTextbookPartition, ()) {
  const auto keys =
      *rc::gen::container<std::vector<int>>(*rc::gen::inRange<std::size_t>(1, 400), rc::gen::inRange(0, 200));
  Pair pair(200);
  std::vector<Rec> rows;
  for (const int key : keys) rows.emplace_back(key, static_cast<int>(rows.size()));
  pair.Fill(rows, false);
  pair.CheckState();
}

RC_GTEST_PROP(TableProperty, AgreesWithAStandardMap, (const std::vector<std::pair<bool, std::uint8_t>>& steps)) {
  Table table;
  std::map<int, int> map;
  int tag = 0;
  for (const auto& [add, key] : steps) {
    const int found = table.Find(Rec(key));
    RC_ASSERT((found != -1) == map.contains(key));
    if (add) {
      const bool inserted = map.emplace(key, ++tag).second;
      RC_ASSERT((table.Add(Rec(key, tag)) != -1) == inserted);
    } else if (found != -1) {
      const auto rank = std::distance(map.begin(), map.find(key));
      RC_ASSERT(table.Remove(found) == rank);
      map.erase(key);
    }
    RC_ASSERT(table.GetCount() == static_cast<int>(map.size()));
  }
  int n = 0;
  for (const auto& [key, value] : map) {
    RC_ASSERT(table[n].key == key);
    RC_ASSERT(table[n].tag == value);
    RC_ASSERT(table.PhToLg(table.LgToPh(n)) == n);
    ++n;
  }
}

}  // namespace
}  // namespace dtsdb::test
