/// \file
/// What a validation or a topology run finds.
#pragma once

#include <QString>

#include "model/records.h"

namespace dtsdb {

/// How much a finding weighs. Only errors count: a model without errors is good.
enum class Severity { kError, kWarning, kNotice };

/// The word for a severity, which stays the same: "error", "warning", "notice".
constexpr const char* SeverityName(Severity severity) {
  if (severity == Severity::kError) return "error";
  return severity == Severity::kWarning ? "warning" : "notice";
}

/// One finding of a run. Of a validation the line in "nmd.log" is its `text`, stamped, in the encoding of identities.
struct Finding {
  Severity severity = Severity::kNotice;  ///< how grave it is
  TableKind table = KIND_NONE;            ///< table of the record concerned; none for what concerns the run as a whole
  QString id;                             ///< identity of the record, raw bytes; empty where it has none
  const char* field = nullptr;            ///< name of the field concerned, a literal; null for the record as a whole
  QString text;                           ///< the whole message as real text, without stamp
  const char* code = nullptr;             ///< stable name of the message, a literal; FindMessage has the texts
  QString other = QString();              ///< a second record that the texts name, raw bytes; empty for none
};

}  // namespace dtsdb
