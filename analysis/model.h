/// \file
/// A network model of any form: opened, validated, copied and saved.
#pragma once

#include <QList>
#include <memory>
#include <string>

#include "analysis/error.h"
#include "formats/import_options.h"
#include "formats/reading_progress.h"
#include "formats/station_positions.h"
#include "model/dtsdb.h"
#include "validation/finding.h"
#include "validation/message_catalog.h"

namespace dtsdb::analysis {

using tools::ImportOptions;
using tools::ReadingProgress;
using tools::StationPositions;

/// What a validation found.
struct Validation {
  bool good = false;        ///< no error: the topology and the flows work on such a model only
  int errors = 0;           ///< number of findings that are errors
  int warnings = 0;         ///< number of findings that are warnings
  QList<Finding> findings;  ///< in the order in which they were found
};

/// A model in memory. Moving it moves the handle; what works on the model keeps it alive. One thread at a time.
class Model {
 public:
  /// Reads a model: an object file, a folder of text tables, CGMES profiles, an XIIDM file, or "rtdb:NAME" for a
  /// realtime database. `import` is how a grid in an exchange format becomes a model; while its files are read
  /// `progress` is called.
  static Result<Model> Open(const std::string& name, const ImportOptions& import = {},
                            const ReadingProgress& progress = {});

  /// A model that shares the tables of `tables`. `name` is what errors call it.
  static Model Of(const DTSDB& tables, const std::string& name = "the model", StationPositions positions = {});

  /// Writes the model in the form that `name` asks for, as Open reads it: to a new name with an extension an object
  /// file, to one without a folder of text tables. A failure leaves what stood there.
  Result<void> Save(const std::string& name);

  /// Checks every record and builds what the topology works on. A model with errors is a result, no Error. What keeps
  /// a validation from being finished is described in `language`.
  Result<Validation> Validate(Language language = Language::kEnglish);

  /// True when the last validation found no error.
  bool IsGood() const;

  /// Validates the model unless it is good already. An Error when it has errors.
  Result<void> RequireGood(Language language = Language::kEnglish);

  /// A model of its own with all records and all numbering of this one.
  Result<Model> Copy() const;

  /// The name by which errors call the model.
  const std::string& Name() const { return m_name; }

  /// Where its stations stand on the map; empty unless the model was made of a grid that has such places. Saving
  /// doesn't keep them.
  const StationPositions& Positions() const { return m_positions; }

  /// The tables, for the classes of the core. What changes states here is followed up by no session: begin a new one.
  DTSDB& Tables() const { return *m_tables; }
  /// The tables, kept alive by the holder.
  const std::shared_ptr<DTSDB>& Shared() const { return m_tables; }

 private:
  Model(std::shared_ptr<DTSDB> tables, std::string name, StationPositions positions)
      : m_tables(std::move(tables)), m_name(std::move(name)), m_positions(std::move(positions)) {}

  std::shared_ptr<DTSDB> m_tables;
  std::string m_name;
  StationPositions m_positions;
};

}  // namespace dtsdb::analysis
