#include "python/core/edit_session.h"

#include <fmt/format.h>

#include <variant>

#include "formats/failure.h"
#include "formats/field_text.h"

namespace dtsdb::python {
namespace {

using analysis::Validation;
using tools::Edit;
using tools::Refusal;

/// What an edit is about, such as "LD Load 7".
std::string PlaceOf(const Edit& edit) {
  return std::visit(
      []<class Record>(const Record& record) {
        return std::string(Record::kTableName) + " " + tools::IdText(record.id);
      },
      edit.record);
}

std::string TextOf(const Edit& edit, const Refusal& refusal) {
  const char* const remedy = refusal.message->Remedy(Language::kEnglish);
  const std::string text = QString::fromUtf8(refusal.message->Text(Language::kEnglish)).trimmed().toStdString();
  return fmt::format("{} {}: {}{}; {}", tools::EditWord(edit.kind), PlaceOf(edit), text, refusal.hint,
                     remedy != nullptr ? remedy : "look at the model");
}

Edit Parsed(const std::vector<std::string>& words, const std::string& model) {
  try {
    return tools::ParseEdit(words);
  } catch (const tools::Failure& failure) {
    RefuseCall(failure.what(), model);
  }
}

}  // namespace

EditSession::EditSession(std::shared_ptr<Network> network) : m_network(std::move(network)) {
  auto [copy, changes] = m_network->CopyToEdit();
  Take(copy.RequireGood());
  m_model = std::move(copy);
  m_changes = changes;
  m_run.emplace(m_model->Tables());
}

void EditSession::RequireOpen() const {
  if (!m_model) RefuseCall("these edits have ended; begin new ones with edit()", m_network->Name());
  if (!m_refused.empty()) {
    RefuseCall("an edit was refused, of " + m_refused + "; begin the edits again", m_network->Name());
  }
}

void EditSession::Apply(const std::vector<std::string>& words) {
  const std::lock_guard lock(m_mutex);
  RequireOpen();
  const Edit edit = Parsed(words, m_network->Name());
  const Refusal refusal = m_run->Apply(edit);
  if (!refusal) return;
  m_refused = PlaceOf(edit);
  throw Raised(refusal.message->code, TextOf(edit, refusal), m_refused);
}

Validation EditSession::Commit() {
  const std::lock_guard lock(m_mutex);
  RequireOpen();
  m_run.reset();
  analysis::Model edited = std::move(*m_model);
  m_model.reset();
  Validation found = Take(edited.Validate());
  if (found.good) m_network->Replace(std::move(edited), m_changes);
  return found;
}

}  // namespace dtsdb::python
