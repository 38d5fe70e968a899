#include "script/edit_script.h"

#include <algorithm>
#include <optional>

#include "formats/catalog.h"
#include "formats/failure.h"
#include "formats/field_text.h"
#include "formats/nearest.h"
#include "formats/text_layout.h"
#include "formats/text_table_file.h"
#include "script/script_lines.h"

namespace dtsdb::tools {
namespace {

/// Something wrong in a line; the reader of the script knows in which.
class LineError : public Failure {
 public:
  explicit LineError(const std::string& what) : Failure(kExitFile, what) {}
};

/// Reads the value of one field. Returns an empty text, or what is wrong.
std::string ParseValue(const FieldInfo& field, const std::string& text, void* record) {
  if (field.IsLink()) return "is a number that an addition works out; it can't be given";
  return VisitValue(field, record, [&text]<class V>(V& value) -> std::string {
    if constexpr (std::is_same_v<V, QString>) {
      return ParseIdentity(text, value);
    } else {
      return ParseNumber(text, value);
    }
  });
}

void TakeIdentity(const std::string& text, QString& id) {
  const std::string wrong = text.empty() ? "a record needs an identity" : ParseIdentity(text, id);
  if (!wrong.empty()) throw LineError(wrong);
}

/// Puts the value of FIELD=VALUE into a record and returns the field.
const FieldInfo* TakeValue(const std::string& word, std::vector<std::string>& given, std::span<const FieldInfo> fields,
                           void* record) {
  const std::size_t sign = word.find('=');
  if (sign == std::string::npos || sign == 0) throw LineError(Quoted(word) + " is not of the form FIELD=VALUE");
  const std::string name = word.substr(0, sign);
  if (std::find(given.begin(), given.end(), name) != given.end()) throw LineError("field " + name + " stands twice");
  given.push_back(name);
  const auto field =
      std::find_if(fields.begin(), fields.end(), [&name](const FieldInfo& known) { return name == known.name; });
  const std::string wrong = field != fields.end() ? ParseValue(*field, word.substr(sign + 1), record)
                                                  : "the table has no such field" + DidYouMean(name, NamesOf(fields));
  if (!wrong.empty()) throw LineError("field " + OneLine(name) + ": " + wrong);
  return &*field;
}

/// The record that the words behind the table's name describe; fields of a change are noted in `edit`.
template <class Record>
Record ParseRecord(const std::vector<std::string>& words, Edit& edit) {
  Record record;
  if (edit.kind == EditKind::kRemove) {
    if (words.size() != 3) throw LineError("'remove' takes a table and one identity");
    TakeIdentity(words[2], record.id);
    return record;
  }
  const bool isChange = edit.kind == EditKind::kChange;
  if (isChange) {
    if (words.size() < 4) throw LineError("'change' takes a table, an identity and FIELD=VALUE");
    TakeIdentity(words[2], record.id);
  }
  ClearLinks(record);
  std::vector<std::string> given;
  if (isChange) given.emplace_back("id");  // a record keeps its identity
  for (std::size_t i = isChange ? 3 : 2; i < words.size(); ++i) {
    if (isChange && words[i].starts_with("id=")) {
      throw LineError("an identity can't be changed; remove the record and add it with the other one");
    }
    const FieldInfo* const field = TakeValue(words[i], given, Record::Fields(), &record);
    if (isChange) edit.changed.push_back(field);
  }
  if (record.id.isEmpty()) throw LineError("id=... is missing: a record needs an identity");
  return record;
}

EditedRecord ParseTable(const std::vector<std::string>& words, Edit& edit) {
  const std::string& name = words[1];
  const QString folded = QString::fromStdString(name).toUpper();
  std::vector<std::string> known;
  std::optional<EditedRecord> record;
  ForEachType(EditedRecords(), [&]<class T> {
    known.emplace_back(T::kTableName);
    if (folded == QLatin1String(T::kTableName)) record = ParseRecord<T>(words, edit);
  });
  if (record) return *record;
  if (FindTable(folded.toStdString()) != KIND_NONE) {
    throw LineError("table " + folded.toStdString() + " can't be edited: its records follow from those of others");
  }
  throw LineError("there is no table " + Quoted(name) + " that can be edited" + DidYouMean(name, known));
}

EditKind ParseKind(const std::string& word) {
  for (const EditKind kind : {EditKind::kAdd, EditKind::kChange, EditKind::kRemove}) {
    if (word == EditWord(kind)) return kind;
  }
  throw LineError("a line begins with 'add', 'change' or 'remove', not with " + Quoted(word));
}

}  // namespace

const char* EditWord(EditKind kind) {
  switch (kind) {
    case EditKind::kAdd:
      return "add";
    case EditKind::kChange:
      return "change";
    case EditKind::kRemove:
      break;
  }
  return "remove";
}

Edit ParseEdit(const std::vector<std::string>& words) {
  if (words.empty()) throw LineError("there is no edit");
  Edit edit;
  edit.kind = ParseKind(words[0]);
  if (words.size() < 2) throw LineError(Quoted(words[0]) + " needs a table");
  edit.record = ParseTable(words, edit);
  return edit;
}

std::vector<Edit> ReadEditScript(const std::string& file, std::string_view bytes) {
  std::vector<Edit> edits;
  ForEachLine(file, bytes, kExitFile, [&edits](int number, std::string_view line) {
    const std::vector<std::string> words = SplitWords(line);
    if (words.empty()) return;
    edits.push_back(ParseEdit(words));
    edits.back().line = number;
  });
  return edits;
}

}  // namespace dtsdb::tools
