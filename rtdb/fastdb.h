/// \file
/// The realtime database: FastDB's source-level interface, kept in an LMDB file.
///
/// A program describes its table classes with TYPE_DESCRIPTOR and REGISTER, opens a dbDatabase and walks over rows with
/// dbCursor<T>. Several programs share one file; a reader never waits and sees whole commits only. No call throws or
/// aborts: what goes wrong is reported through dbDatabase::handleError, and the call has the result its comment states.
/// docs/realtime-store.md describes the guarantees and the file format.
#pragma once

#include "rtdb/cursor.h"
#include "rtdb/database.h"
#include "rtdb/descriptors.h"
#include "rtdb/error_class.h"
#include "rtdb/query.h"
#include "rtdb/reference.h"
