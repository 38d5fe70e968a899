#include "formats/model_io.h"

#include <fmt/format.h>

#include <QString>
#include <filesystem>
#include <system_error>
#include <utility>

#include "formats/cgmes/import.h"
#include "formats/failure.h"
#include "formats/files.h"
#include "formats/realtime.h"
#include "formats/text_tables.h"
#include "formats/xiidm/export.h"
#include "formats/xiidm/import.h"
#include "model/exchange.h"
#include "model/objectfile.h"

namespace fs = std::filesystem;

namespace dtsdb::tools {
namespace {

/// Refuses `path` for the reason that an object file routine gave, a line with its line feed.
void Check(const std::string& path, const QString& failure) {
  if (!failure.isNull()) RefuseFile(path, failure.trimmed().toStdString());
}

void ReadRealtime(const std::string& name, DTSDB& model) {
  RealtimeDatabase database(name, dbDatabase::dbReadOnly);
  model.ReadFastdb(database.Db());
  database.Check();
}

/// A model that was never validated has no GLOBAL row. One that the database has from another model would mark it as
/// good: it goes in the same transaction.
void WriteRealtime(DTSDB& model, const std::string& name) {
  RealtimeDatabase database(name, dbDatabase::dbAllAccess);
  if (model.m_globalTable->GetCount() == 0) TwinWriter<GLOBAL>(database.Db()).RemoveAll();
  model.WriteFastdb(database.Db());
  database.Check();
}

}  // namespace

DTSDB LoadModel(const ModelName& name, ImportReport* report, const ReadingProgress& progress) {
  DTSDB database;
  const std::string& path = name.Path();
  if (name.IsDatabase()) {
    ReadRealtime(path, database);
    return database;
  }
  const ModelForm form = name.Form();
  if (form == ModelForm::kCgmes || form == ModelForm::kXiidm) {
    ImportReport made = form == ModelForm::kCgmes ? cgmes::Import(name.Paths(), name.Import(), database, progress)
                                                  : xiidm::Import(path, name.Import(), database, progress);
    if (report != nullptr) *report = std::move(made);
    return database;
  }
  std::error_code error;
  if (!fs::exists(path, error) && !FindTextTables(path)) {
    RefuseFile(path, error ? error.message() : "there is no such file or folder");
  }
  if (name.Form() == ModelForm::kTextTables) {  // the folder may have been put back just now
    ReadTextTables(path, database, progress);
  } else {
    Check(path, ReadObjectFile(database, QtPath(path)));
  }
  return database;
}

void SaveModel(DTSDB& database, const ModelName& name, std::optional<ModelForm> form) {
  const std::string& path = name.Path();
  if (name.IsDatabase()) {
    if (form) throw Failure(kExitUsage, name.Text() + " is a realtime database; no other form can be chosen for it");
    WriteRealtime(database, path);
    return;
  }
  if (name.Form() == ModelForm::kCgmes) {
    throw Failure(kExitUsage, name.Text() + " holds CGMES profiles, which no model is written over; name another OUT");
  }
  const ModelForm written = form.value_or(name.FormAsOutput());
  if (written == ModelForm::kTextTables) {
    WriteTextTables(database, path);
    return;
  }
  const bool isXiidm = written == ModelForm::kXiidm;
  std::error_code ignored;
  if (fs::is_directory(path, ignored)) {
    RefuseFile(path, fmt::format("is a folder; an {} file can't take its place", isXiidm ? "XIIDM" : "object"));
  }
  if (isXiidm) {
    xiidm::Export(database, path);
    return;
  }
  Check(path, WriteObjectFile(database, QtPath(path)));
}

}  // namespace dtsdb::tools
