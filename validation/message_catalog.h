/// \file
/// The messages of the validation, of the topology and of the editing as a list: codes, texts in two languages, what to
/// do.
#pragma once

#include <span>
#include <string_view>

#include "validation/finding.h"

namespace dtsdb {

/// The languages of messages.
enum class Language { kEnglish, kChinese };

/// A message. Texts are UTF-8 literals.
struct MessageInfo {
  const char* code;           ///< stable, for programs
  Severity severity;          ///< kError for the reasons of a failure
  TableKind table;            ///< table of the records that it is about; none for the run
  const char* field;          ///< field concerned; null for the record as a whole
  const char* chinese;        ///< as it stands behind the identity in the log or in NMD::GetLastError, blanks included
  const char* english;        ///< the same for readers of English: a clause about the record
  const char* chineseRemedy;  ///< what to do; null where there is nothing to do
  const char* englishRemedy;  ///< the same in English

  /// The message, and what to do, in a language.
  const char* Text(Language language) const { return language == Language::kChinese ? chinese : english; }
  const char* Remedy(Language language) const { return language == Language::kChinese ? chineseRemedy : englishRemedy; }
};

/// All messages in the order of their codes (docs/messages.md).
std::span<const MessageInfo> AllMessages();

/// The message with code `code`; null when there is none.
const MessageInfo* FindMessage(std::string_view code);

/// The text of the finding's message with the identities that it names filled in; the catalog must have its code.
QString TextOf(const Finding& finding, Language language);

}  // namespace dtsdb
