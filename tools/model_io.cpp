#include "tools/model_io.h"

#include <QString>
#include <filesystem>
#include <system_error>

#include "model/objectfile.h"
#include "tools/files.h"
#include "tools/text_tables.h"

namespace fs = std::filesystem;

namespace dtsdb::tools {
namespace {

/// Refuses `path` for the reason that an object file routine gave, a line with its line feed.
void Check(const std::string& path, const QString& failure) {
  if (!failure.isNull()) RefuseFile(path, failure.trimmed().toStdString());
}

}  // namespace

ModelForm FormOfModel(const std::string& path) {
  std::error_code ignored;
  return fs::is_directory(path, ignored) ? ModelForm::TextTables : ModelForm::ObjectFile;
}

ModelForm FormOfOutput(const std::string& path) {
  const fs::path name = fs::path(path).filename();
  if (FormOfModel(path) == ModelForm::TextTables || name.empty() || name.extension().empty()) {
    return ModelForm::TextTables;
  }
  return ModelForm::ObjectFile;
}

DTSDB LoadModel(const std::string& path) {
  std::error_code error;
  if (!fs::exists(path, error)) RefuseFile(path, error ? error.message() : "there is no such file or folder");
  DTSDB database;
  if (FormOfModel(path) == ModelForm::TextTables) {
    ReadTextTables(path, database);
  } else {
    Check(path, ReadObjectFile(database, QtPath(path)));
  }
  return database;
}

void SaveModel(DTSDB& database, const std::string& path, std::optional<ModelForm> form) {
  if (form.value_or(FormOfOutput(path)) == ModelForm::TextTables) {
    WriteTextTables(database, path);
    return;
  }
  std::error_code ignored;
  if (fs::is_directory(path, ignored)) RefuseFile(path, "is a folder; an object file can't take its place");
  Check(path, WriteObjectFile(database, QtPath(path)));
}

}  // namespace dtsdb::tools
