#include "command/script_run.h"

#include <utility>

#include "command/finding_report.h"
#include "formats/field_text.h"
#include "script/edit_run.h"

namespace dtsdb::tools {
namespace {

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
        sheet.Add({NumberCell(edit.line), EditWord(edit.kind), Record::kTableName, IdText(record.id), message.code,
                   message.field != nullptr ? Cell(std::string(message.field)) : Cell(),
                   TextOf(message, language) + refusal.hint, RemedyOf(message, language)});
      },
      edit.record);
}

}  // namespace

ScriptResult ApplyScript(DTSDB& database, const std::vector<Edit>& edits, Language language) {
  const std::vector<int> before = RowCounts(database);
  Sheet refusals("refusals", "Refused lines", {"line", "edit", "table", "id", "code", "field", "text", "what_to_do"});
  refusals.HideColumn(4).HideColumn(5);  // text and what to do name what they are about
  EditRun run(database);
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
