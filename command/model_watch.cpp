#include "command/model_watch.h"

#include <functional>
#include <string>
#include <string_view>
#include <utility>

#include "model/exchange.h"

namespace dtsdb::tools {
namespace {

/// So many times as long as it took to read the texts they aren't read again.
constexpr double kWatchPause = 20;

/// The row of `global`; one that no database has where there is none.
GLOBAL GlobalIn(dbDatabase* db, dbCursorType type) {
  GLOBAL global;
  global.id = -1;
  dbCursor<Twin<GLOBAL>::Row> cursor(db, type);
  if (cursor.select(Twin<GLOBAL>::kReadingOrder) <= 0) return global;
  const auto* row = cursor.get();
  if (row != nullptr) LoadFields(&global, GLOBAL::Fields(), row, Twin<GLOBAL>::Row::Columns());
  return global;
}

/// What the validation and the topology leave there. The carried values belong to other programs.
bool SameModelAndRun(const GLOBAL& a, const GLOBAL& b) {
  return a.id == b.id && a.valid == b.valid && a.invalid == b.invalid && a.errors == b.errors &&
         a.check_time == b.check_time && a.time == b.time && a.u1 == b.u1 && a.bs_free == b.bs_free &&
         a.bs_dead == b.bs_dead && a.bs_live == b.bs_live && a.bsl_free == b.bsl_free && a.bsl_head == b.bsl_head;
}

}  // namespace

void ModelWatch::NoteModel() {
  m_global = GlobalIn(m_db, dbCursorViewOnly);
  m_sums = Sums();
}

bool ModelWatch::HasChanged() {
  bool changed = !IsNotedGlobal(dbCursorViewOnly);
  if (!changed && m_clock.steady() >= m_sumsDue) changed = Sums() != m_sums;
  m_db->commit();
  return changed;
}

bool ModelWatch::BeginStoring() {
  if (IsNotedGlobal(dbCursorForUpdate)) return true;
  m_db->rollback();
  return false;
}

bool ModelWatch::IsNotedGlobal(dbCursorType type) { return SameModelAndRun(GlobalIn(m_db, type), m_global); }

template <class T>
ModelWatch::Sum ModelWatch::SumOf() {
  Sum sum;
  std::string texts;
  dbCursor<typename Twin<T>::Row> cursor(m_db, dbCursorViewOnly);
  if (cursor.select() <= 0) return sum;
  for (const auto* row = cursor.get(); row != nullptr; row = cursor.next()) {
    texts.clear();
    for (const ColumnInfo& column : Twin<T>::Row::Columns()) {
      if (column.type != ColumnType::kText) continue;
      char const* text = column.In<char const*>(row);
      if (text != nullptr) texts += text;
      texts += '\0';
    }
    ++sum.rows;
    sum.hashes += std::hash<std::string_view>()(texts);
  }
  return sum;
}

std::vector<ModelWatch::Sum> ModelWatch::Sums() {
  const double begun = m_clock.steady();
  // The input of the validation but measurements and states, and the nodes that it has found.
  std::vector<Sum> sums{SumOf<CO>(), SumOf<DV>(), SumOf<ST>(), SumOf<KV>(), SumOf<BUS>(), SumOf<CB>(),  SumOf<UN>(),
                        SumOf<LD>(), SumOf<CP>(), SumOf<XF>(), SumOf<LN>(), SumOf<DLN>(), SumOf<ZBR>(), SumOf<ND>()};
  const double ended = m_clock.steady();
  m_sumsDue = ended + kWatchPause * (ended - begun);
  return sums;
}

}  // namespace dtsdb::tools
