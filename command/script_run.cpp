#include "command/script_run.h"

#include <utility>

#include "command/finding_report.h"
#include "command/validation_run.h"
#include "formats/field_text.h"
#include "formats/nearest.h"
#include "validation/nmd.h"

namespace dtsdb::tools {
namespace {

/// The removal of one of these goes down the chains of what it holds.
template <class Record>
constexpr bool kIsContainer = std::is_same_v<Record, CO> || std::is_same_v<Record, DV> || std::is_same_v<Record, ST> ||
                              std::is_same_v<Record, KV>;

/// Why an edit is refused.
struct Refusal {
  const MessageInfo* message = nullptr;  ///< null: it isn't
  std::string hint;                      ///< what goes behind the text

  explicit operator bool() const { return message != nullptr; }
};

/// Applies edits one by one. Edits leave links that only a validation puts in order, so that a step may fail, or reach
/// too far, for no fault of its own: then a newly validated model shows what holds.
class ScriptRun {
 public:
  explicit ScriptRun(DTSDB& database) : m_database(database), m_nmd(&database) {}

  Refusal Apply(const Edit& edit) {
    return std::visit([&](auto record) { return edit.isRemoval ? Remove(record) : Add(record); }, edit.record);
  }

  /// True when the model is good.
  bool Validate() {
    m_isValidated = true;
    return m_nmd.DetectAll() && IsMarkedGood(m_database);
  }

  /// What the last validation found.
  const QList<Finding>& Findings() const { return m_nmd.Findings(); }

 private:
  template <class Record>
  Refusal Add(Record record) {
    if (!m_isValidated && !IsMarkedGood(m_database)) Validate();
    if (!m_nmd.IsValid(record)) {
      if (m_isValidated) return Reason();
      Validate();
      if (!m_nmd.IsValid(record)) return Reason();
    }
    if (AddRecord(m_nmd, record)) {
      m_isValidated = false;
      return {};
    }
    const Refusal reason = Reason();
    return Validate() ? Refusal() : reason;  // it stopped midway, and the validation has made the rest
  }

  template <class Record>
  Refusal Remove(const Record& record) {
    if (!IsThere(record)) return NotThere(record);
    if (kIsContainer<Record> && !m_isValidated) Validate();
    const bool wasValidated = m_isValidated;
    Refusal reason = TryToRemove(record);
    if (!reason || wasValidated) return reason;
    Validate();
    return IsThere(record) ? TryToRemove(record) : Refusal();
  }

  template <class Record>
  bool IsThere(const Record& record) {
    return TableOf<Record>(m_database).Find(record) != -1;
  }

  template <class Record>
  Refusal TryToRemove(const Record& record) {
    m_isValidated = false;
    return RemoveRecord(m_nmd, record) ? Refusal() : Reason();
  }

  template <class Record>
  Refusal NotThere(const Record& record) {
    RemoveRecord(m_nmd, record);
    tTable<Record>& table = TableOf<Record>(m_database);
    std::vector<std::string> known;
    known.reserve(static_cast<std::size_t>(table.GetCount()));
    for (int i = 0; i < table.GetCount(); ++i) known.push_back(IdText(table[i].id));
    return {Reason().message, DidYouMean(IdText(record.id), known)};
  }

  /// The reason of the operation that has just failed.
  Refusal Reason() const { return {FindMessage(m_nmd.LastErrorCode()), ""}; }

  DTSDB& m_database;
  NMD m_nmd;
  bool m_isValidated = false;  // nothing was edited since the last validation
};

/// The number of records in each table that can be edited.
std::vector<int> RowCounts(DTSDB& database) {
  std::vector<int> counts;
  ForEachType(EditedRecords(), [&]<class T> { counts.push_back(TableOf<T>(database).GetCount()); });
  return counts;
}

Sheet ChangedTables(const std::vector<int>& before, const std::vector<int>& after) {
  Sheet sheet("records", "Records", {"table", "before", "after"});
  std::size_t at = 0;
  ForEachType(EditedRecords(), [&]<class T> {
    if (before[at] != after[at]) sheet.Add({T::kTableName, NumberCell(before[at]), NumberCell(after[at])});
    ++at;
  });
  return sheet;
}

void AddRefusal(Sheet& sheet, const Edit& edit, const Refusal& refusal, Language language) {
  const MessageInfo& message = *refusal.message;
  std::visit(
      [&]<class Record>(const Record& record) {
        sheet.Add({NumberCell(edit.line), edit.isRemoval ? "remove" : "add", Record::kTableName, IdText(record.id),
                   message.code, message.field != nullptr ? Cell(std::string(message.field)) : Cell(),
                   TextOf(message, language) + refusal.hint, RemedyOf(message, language)});
      },
      edit.record);
}

}  // namespace

ScriptResult ApplyScript(DTSDB& database, const std::vector<Edit>& edits, Language language) {
  const std::vector<int> before = RowCounts(database);
  Sheet refusals("refusals", "Refused lines", {"line", "edit", "table", "id", "code", "field", "text", "what_to_do"});
  refusals.HideColumn(4).HideColumn(5);  // text and what to do name what they are about
  ScriptRun run(database);
  int applied = 0;
  for (const Edit& edit : edits) {
    if (const Refusal refusal = run.Apply(edit)) {
      AddRefusal(refusals, edit, refusal, language);
    } else {
      ++applied;
    }
  }
  const bool isWhole = refusals.Rows().empty();
  const bool good = isWhole && run.Validate();
  Sheet faults = FindingSheet(isWhole ? run.Findings() : QList<Finding>(), Severity::kError, language);
  return {applied, std::move(refusals), ChangedTables(before, RowCounts(database)), std::move(faults), good};
}

}  // namespace dtsdb::tools
