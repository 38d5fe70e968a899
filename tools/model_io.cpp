#include "tools/model_io.h"

#include <QString>
#include <filesystem>
#include <system_error>

#include "model/objectfile.h"
#include "tools/failure.h"
#include "tools/files.h"
#include "tools/realtime.h"
#include "tools/text_tables.h"

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

void WriteRealtime(DTSDB& model, const std::string& name) {
  RealtimeDatabase database(name, dbDatabase::dbAllAccess);
  model.WriteFastdb(database.Db());
  database.Check();
}

}  // namespace

const char* FormName(ModelForm form) {
  switch (form) {
    case ModelForm::ObjectFile:
      return "object file";
    case ModelForm::TextTables:
      return "folder of text tables";
    case ModelForm::RealtimeDatabase:
      break;
  }
  return "realtime database";
}

ModelForm FormOfModel(const std::string& path) {
  if (RealtimeName(path)) return ModelForm::RealtimeDatabase;
  std::error_code ignored;
  return fs::is_directory(path, ignored) ? ModelForm::TextTables : ModelForm::ObjectFile;
}

ModelForm FormOfOutput(const std::string& path) {
  const ModelForm found = FormOfModel(path);
  if (found != ModelForm::ObjectFile) return found;
  const fs::path name = fs::path(path).filename();
  if (name.empty() || name.extension().empty()) {
    return ModelForm::TextTables;
  }
  return ModelForm::ObjectFile;
}

DTSDB LoadModel(const std::string& path) {
  DTSDB database;
  if (const auto name = RealtimeName(path)) {
    ReadRealtime(*name, database);
    return database;
  }
  std::error_code error;
  if (!fs::exists(path, error) && !FindTextTables(path)) {
    RefuseFile(path, error ? error.message() : "there is no such file or folder");
  }
  if (FormOfModel(path) == ModelForm::TextTables) {
    ReadTextTables(path, database);
  } else {
    Check(path, ReadObjectFile(database, QtPath(path)));
  }
  return database;
}

void SaveModel(DTSDB& database, const std::string& path, std::optional<ModelForm> form) {
  if (const auto name = RealtimeName(path)) {
    if (form) throw Failure(EXIT_USAGE, path + " is a realtime database; no other form can be chosen for it");
    WriteRealtime(database, *name);
    return;
  }
  if (form.value_or(FormOfOutput(path)) == ModelForm::TextTables) {
    WriteTextTables(database, path);
    return;
  }
  std::error_code ignored;
  if (fs::is_directory(path, ignored)) RefuseFile(path, "is a folder; an object file can't take its place");
  Check(path, WriteObjectFile(database, QtPath(path)));
}

}  // namespace dtsdb::tools
