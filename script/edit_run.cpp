#include "script/edit_run.h"

#include <algorithm>
#include <type_traits>
#include <utility>
#include <variant>

#include "formats/field_text.h"
#include "formats/nearest.h"

namespace dtsdb::tools {
namespace {

/// The removal of one of these goes down the chains of what it holds.
template <class Record>
constexpr bool kIsContainer = std::is_same_v<Record, CO> || std::is_same_v<Record, DV> || std::is_same_v<Record, ST> ||
                              std::is_same_v<Record, KV>;

}  // namespace

EditRun::EditRun(DTSDB& database) : m_database(database), m_nmd(&database) {}

Refusal EditRun::Apply(const Edit& edit) {
  return std::visit(
      [&](const auto& record) {
        switch (edit.kind) {
          case EditKind::kAdd:
            return Add(record);
          case EditKind::kChange:
            return Change(record, edit.changed);
          case EditKind::kRemove:
            break;
        }
        return Remove(record);
      },
      edit.record);
}

bool EditRun::Validate() {
  m_isValidated = true;
  return m_nmd.DetectAll() && IsGood();
}

template <class Record>
Refusal EditRun::Add(Record record) {
  if (!m_isValidated && !IsGood()) Validate();
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

/// A new name of another record changes what hangs together, which the next edit has to find in order.
template <class Record>
Refusal EditRun::Change(const Record& record, const std::vector<const FieldInfo*>& fields) {
  if (!IsThere(record)) return NotThere(record);
  tTable<Record>& table = TableOf<Record>(m_database);
  Record& changed = table.GetPh(table.Find(record));
  for (const FieldInfo* const field : fields) {
    VisitValue(*field, &changed, [&]<class V>(V& value) { value = field->In<V>(&record); });
  }
  table.NoteChange();
  m_isValidated = false;
  const bool namesOthers =
      std::any_of(fields.begin(), fields.end(), [](const FieldInfo* field) { return field->type == FieldType::kText; });
  if (namesOthers) Validate();
  return {};
}

template <class Record>
Refusal EditRun::Remove(const Record& record) {
  if (!IsThere(record)) return NotThere(record);
  if (kIsContainer<Record> && !m_isValidated) Validate();
  const bool wasValidated = m_isValidated;
  Refusal reason = TryToRemove(record);
  if (!reason || wasValidated) return reason;
  Validate();
  return IsThere(record) ? TryToRemove(record) : Refusal();
}

template <class Record>
bool EditRun::IsThere(const Record& record) const {
  return TableOf<Record>(m_database).Find(record) != -1;
}

template <class Record>
Refusal EditRun::TryToRemove(const Record& record) {
  m_isValidated = false;
  return RemoveRecord(m_nmd, record) ? Refusal() : Reason();
}

template <class Record>
Refusal EditRun::NotThere(const Record& record) {
  RemoveRecord(m_nmd, record);
  const tTable<Record>& table = TableOf<Record>(m_database);
  std::vector<std::string> known;
  known.reserve(static_cast<std::size_t>(table.GetCount()));
  for (int i = 0; i < table.GetCount(); ++i) known.push_back(IdText(table[i].id));
  return {Reason().message, DidYouMean(IdText(record.id), known)};
}

/// That of the operation that has just failed.
Refusal EditRun::Reason() const { return {FindMessage(m_nmd.LastErrorCode()), ""}; }

bool EditRun::IsGood() const {
  return m_database.m_globalTable->GetCount() > 0 && (*m_database.m_globalTable)[0].valid != 0;
}

}  // namespace dtsdb::tools
