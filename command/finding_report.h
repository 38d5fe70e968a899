/// \file
/// The messages of the validation and of the editing as a person or a program gets them.
#pragma once

#include <QList>
#include <string>

#include "command/render.h"
#include "validation/finding.h"
#include "validation/message_catalog.h"
#include "validation/nmd.h"

namespace dtsdb::tools {

/// The language of the locale: Chinese where its name begins with "zh", English otherwise.
Language LocaleLanguage();

/// A message's text and what to do, without the blanks and line feeds at the ends.
std::string TextOf(const MessageInfo& message, Language language);
Cell RemedyOf(const MessageInfo& message, Language language);

/// Why the last operation of `nmd` failed and what to do, in one line.
std::string FailureText(const NMD& nmd, Language language);

/// What of the findings a sheet shows, and how.
struct FindingView {
  Language language = LocaleLanguage();
  Severity least = Severity::kWarning;  ///< down to this weight; notices are never shown
  int mostOfAKind = 0;                  ///< warnings with one code beyond this number are left out; 0: none is
};

/// The findings about records, errors in front of warnings, each in the order of the run.
Sheet FindingSheet(const QList<Finding>& findings, const FindingView& view);

/// The warnings counted by code, in the order of the run; hidden in text when there is none.
Sheet WarningKinds(const QList<Finding>& findings, Language language);

}  // namespace dtsdb::tools
