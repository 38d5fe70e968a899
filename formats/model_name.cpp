#include "formats/model_name.h"

#include <filesystem>
#include <string_view>
#include <system_error>

namespace fs = std::filesystem;

namespace dtsdb::tools {
namespace {

constexpr std::string_view kDatabasePrefix = "rtdb:";

}  // namespace

const char* FormName(ModelForm form) {
  switch (form) {
    case ModelForm::kObjectFile:
      return "object file";
    case ModelForm::kTextTables:
      return "folder of text tables";
    case ModelForm::kRealtimeDatabase:
      break;
  }
  return "realtime database";
}

ModelName::ModelName(const std::string& text)
    : m_text(text), m_path(text), m_isDatabase(text.starts_with(kDatabasePrefix)) {
  if (m_isDatabase) m_path.erase(0, kDatabasePrefix.size());
}

ModelName ModelName::OfDatabase(const std::string& text) {
  ModelName name(text);
  name.m_isDatabase = true;
  return name;
}

ModelForm ModelName::Form() const {
  if (m_isDatabase) return ModelForm::kRealtimeDatabase;
  std::error_code ignored;
  return fs::is_directory(m_path, ignored) ? ModelForm::kTextTables : ModelForm::kObjectFile;
}

ModelForm ModelName::FormAsOutput() const {
  const ModelForm found = Form();
  if (found != ModelForm::kObjectFile) return found;
  const fs::path name = fs::path(m_path).filename();
  return name.empty() || name.extension().empty() ? ModelForm::kTextTables : ModelForm::kObjectFile;
}

}  // namespace dtsdb::tools
