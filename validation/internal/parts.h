/// \file
/// An NMD's parts, put together.
#pragma once

#include "model/dtsdb.h"
#include "validation/internal/addition_tests.h"
#include "validation/internal/additions.h"
#include "validation/internal/last_error.h"
#include "validation/internal/log.h"
#include "validation/internal/removals.h"
#include "validation/internal/row_checks.h"

namespace dtsdb::internal {

/// The log, the checks and the editing of one model, built on each other. File, stream and the last error's text are
/// the owner's.
struct ValidationParts {
  /// `database` may be null: then the model is empty.
  ValidationParts(const DTSDB* database, QFile& file, QTextStream& stream, QString& lastErrorText)
      : model(database != nullptr ? *database : DTSDB()),
        log(file, stream, *model.m_globalTable),
        lastError(lastErrorText),
        checks(model, log, lastError),
        tests(model, lastError),
        additions(model, lastError, tests),
        removals(model, lastError) {}

  DTSDB model;  ///< shares the tables that the database has now, whatever is assigned to it later
  ValidationLog log;
  LastError lastError;
  RowChecks checks;
  AdditionTests tests;
  Additions additions;
  Removals removals;
};

}  // namespace dtsdb::internal
