/// \file
/// Edits applied to a model one by one.
#pragma once

#include <string>

#include "script/edit_script.h"
#include "validation/message_catalog.h"
#include "validation/nmd.h"

namespace dtsdb::tools {

/// Why an edit is refused.
struct Refusal {
  const MessageInfo* message = nullptr;  ///< null: it isn't
  std::string hint;                      ///< what goes behind the text

  explicit operator bool() const { return message != nullptr; }
};

/// Applies edits one by one, by the rules of the editing (docs/editing.md). Edits leave links that only a validation
/// puts in order, so that a step may fail, or reach too far, for no fault of its own: then a newly validated model
/// shows what holds. Behind the last edit comes a Validate. They are logged as those of any
/// NMD.
class EditRun {
 public:
  /// `database` is good, and outlives the run.
  explicit EditRun(DTSDB& database);

  /// Applies an edit, or returns why it is refused; what was refused may have left a part of its work.
  Refusal Apply(const Edit& edit);

  /// True when the model is good.
  bool Validate();

  /// What the last validation found.
  const QList<Finding>& Findings() const { return m_nmd.Findings(); }

 private:
  template <class Record>
  Refusal Add(Record record);
  template <class Record>
  Refusal Change(const Record& record, const std::vector<const FieldInfo*>& fields);
  template <class Record>
  Refusal Remove(const Record& record);
  template <class Record>
  bool IsThere(const Record& record) const;
  template <class Record>
  Refusal TryToRemove(const Record& record);
  template <class Record>
  Refusal NotThere(const Record& record);
  Refusal Reason() const;
  bool IsGood() const;

  DTSDB& m_database;
  NMD m_nmd;
  bool m_isValidated = false;  // nothing was edited since the last validation
};

}  // namespace dtsdb::tools
