/// \file
/// The messages of the validation, of the topology and of the editing as a person or a program gets them.
#pragma once

#include <QList>
#include <string>

#include "command/render.h"
#include "formats/import_report.h"
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

/// The findings about records down to the weight `least`, errors in front of warnings, each in the order of the run.
/// Notices are never shown. For a model that was made of a grid in an exchange format two more columns have the mRID of
/// the object that the record stands for, and the file and line that define it.
Sheet FindingSheet(const QList<Finding>& findings, Severity least, Language language, const ImportReport& import = {});

/// The warnings counted by code, with the first records of each, in the order of the run; hidden in text when there is
/// none.
Sheet WarningKinds(const QList<Finding>& findings, Language language);

}  // namespace dtsdb::tools
