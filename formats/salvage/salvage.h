/// \file
/// What can be saved of a damaged model.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "formats/model_name.h"
#include "model/dtsdb.h"

namespace dtsdb::tools {

/// A place at which a model is damaged.
struct DamagedPlace {
  std::string table = {};  ///< name of its record class, or a file that belongs to none; empty for the model as a whole
  std::string place = {};  ///< for people: "row 12", "byte 4711", "page 7"
  std::string id = {};     ///< identity of the record that is lost (UTF-8), as far as it can be read
  std::string field = {};  ///< empty for the record as a whole
  std::string what = {};   ///< what is wrong, and what became of it
};

/// What became of the records of a table.
struct TableSalvage {
  const char* table = "";
  long long saved = 0;
  std::optional<long long> lost = 0;  ///< nothing where the number of records can't be known
};

/// A model as far as it could be read.
///
/// Records are as they were written or they are left out. What no format can show is a wrong number within a record:
/// none has sums over its contents.
struct Salvage {
  /// As many places are kept; further ones only counted.
  static constexpr std::size_t kMostPlaces = 10000;

  DTSDB model;
  std::vector<TableSalvage> tables;  ///< of all tables, in the order of their kind codes
  std::vector<DamagedPlace> places;
  std::size_t placeCount = 0;

  bool IsSound() const { return placeCount == 0; }
  void Report(DamagedPlace place);
  /// The entry of the table of kind code `kind`.
  TableSalvage& Of(TableKind kind) { return tables[static_cast<std::size_t>(kind) - 1]; }
};

/// Reads the object file, the folder of text tables or the realtime database `name` as far as it is sound. A model that
/// has lost records has no mark of a good validation. Throws Failure where nothing can be looked at: no such file, no
/// right to read it, another form of model, another program's file.
Salvage SalvageModel(const ModelName& name);

/// What is wrong with a store that nobody writes, or an empty text. `rows` becomes the number of its rows. The file is
/// read as it is, without a lock file beside it.
std::string CheckStoreFile(const std::string& file, long long& rows);

// One for each form. They fill `salvage`, whose tables are there and empty.
void SalvageObjectFile(const std::string& path, Salvage& salvage);
void SalvageTextTables(const std::string& folder, Salvage& salvage);
void SalvageRealtime(const std::string& name, Salvage& salvage);

}  // namespace dtsdb::tools
