/// \file
/// What a message of the validation is made of.
///
/// A message in the log reads "--NMD ", the word of its severity, ":", the name of the table, a blank, the identity
/// and the text given here.
#pragma once

#include "validation/finding.h"

namespace dtsdb::internal {

/// What is reported about a record, whichever it is, or about the run.
struct Message {
  Severity severity;
  const char* code;   ///< for programs
  const char* field;  ///< field concerned; null for the record as a whole
  const char* text;   ///< what follows the identity, UTF-8
  bool names = true;  ///< false: without blank and identity, the text follows the name of the table
};

/// A reason of a failure, as it stands in NMD::GetLastError.
struct Reason {
  const char* code;  ///< for programs
  const char* text;  ///< UTF-8; null: no text, the last error stays as it was
};

namespace message {

constexpr Message Error(const char* code, const char* field, const char* text, bool names = true) {
  return {Severity::kError, code, field, text, names};
}
constexpr Message Warning(const char* code, const char* field, const char* text) {
  return {Severity::kWarning, code, field, text};
}
constexpr Message Notice(const char* code, const char* text) { return {Severity::kNotice, code, nullptr, text}; }

/// In place of a message that isn't reported of `Record`: doesn't compile.
template <class Record>
consteval Message NotReportedOf() {
  static_assert(sizeof(Record) == 0, "schema/messages.json doesn't list the table with this message");
  return {};
}

}  // namespace message

}  // namespace dtsdb::internal
