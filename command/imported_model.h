/// \file
/// Models that commands read, and what has become of grids in exchange formats on the way.
#pragma once

#include "analysis/model.h"
#include "command/command_line.h"
#include "command/render.h"
#include "formats/cgmes/set.h"
#include "formats/import_report.h"
#include "formats/model_name.h"
#include "model/dtsdb.h"

namespace dtsdb::tools {

/// The options by which a grid in an exchange format is read: --ids, --ties and --merge-retained.
void AddImportOptions(CommandLine& command, ModelName& model);

/// A model of any form, with what became of the objects of a grid in an exchange format.
struct ImportedModel {
  ModelName name;  ///< that it was read by
  DTSDB tables;
  ImportReport report;
};

/// Reads a model, and shows on a terminal how far that has come. A message hints at identities that are read in the
/// wrong encoding.
DTSDB ReadModel(const ModelName& name, ImportReport* report = nullptr);

/// The same; another message counts the objects that a model made of a grid in an exchange format lacks.
ImportedModel LoadImported(const ModelName& name);
/// The same for the interface of `analysis/`.
analysis::Model OpenModel(const ModelName& name);

/// The same for a CGMES set, which is read into `set` too.
ImportedModel LoadImported(const ModelName& name, cgmes::ProfileSet& set);

/// Writes what shows which objects the records of a model stand for, beside it as it was written to `output`: that of
/// the import, or what lay beside the model that was read.
void WriteIdsBeside(const ImportedModel& model, const ModelName& output);

/// Adds the account of an import: the sheets files, classes, left_out, changed and unknown.
void AddImportSheets(Report& report, const ImportReport& import);

}  // namespace dtsdb::tools
