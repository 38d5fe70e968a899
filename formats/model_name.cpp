#include "formats/model_name.h"

#include <algorithm>
#include <filesystem>
#include <string_view>
#include <system_error>

#include "formats/cgmes/source.h"
#include "formats/xiidm/import.h"

namespace fs = std::filesystem;

namespace dtsdb::tools {
namespace {

constexpr std::string_view kDatabasePrefix = "rtdb:";
constexpr std::string_view kCgmesPrefix = "cgmes:";
constexpr std::string_view kXiidmPrefix = "xiidm:";

bool EndsAsXiidm(std::string_view path) {
  constexpr std::string_view kPacked = ".gz";
  if (path.ends_with(kPacked)) path.remove_suffix(kPacked.size());
  return path.ends_with(".xiidm") || path.ends_with(".iidm");
}

}  // namespace

const char* FormName(ModelForm form) {
  switch (form) {
    case ModelForm::kObjectFile:
      return "object file";
    case ModelForm::kTextTables:
      return "folder of text tables";
    case ModelForm::kCgmes:
      return "CGMES profiles";
    case ModelForm::kXiidm:
      return "XIIDM file";
    case ModelForm::kRealtimeDatabase:
      break;
  }
  return "realtime database";
}

ModelName::ModelName(const std::string& text)
    : m_text(text),
      m_path(text),
      m_isDatabase(text.starts_with(kDatabasePrefix)),
      m_isCgmes(text.starts_with(kCgmesPrefix)),
      m_isXiidm(text.starts_with(kXiidmPrefix)) {
  if (m_isDatabase) m_path.erase(0, kDatabasePrefix.size());
  if (m_isCgmes) m_path.erase(0, kCgmesPrefix.size());
  if (m_isXiidm) m_path.erase(0, kXiidmPrefix.size());
}

ModelName ModelName::OfDatabase(const std::string& text) {
  ModelName name(text);
  name.m_isDatabase = true;
  return name;
}

std::vector<std::string> ModelName::Paths() const {
  if (!m_isCgmes) return {m_path};
  std::vector<std::string> paths;
  for (std::size_t begin = 0; begin <= m_path.size();) {
    const std::size_t end = std::min(m_path.find(',', begin), m_path.size());
    paths.push_back(m_path.substr(begin, end - begin));
    begin = end + 1;
  }
  return paths;
}

ModelForm ModelName::Form() const {
  if (m_isDatabase) return ModelForm::kRealtimeDatabase;
  if (m_isXiidm || xiidm::IsNetworkFile(m_path)) return ModelForm::kXiidm;
  if (m_isCgmes || cgmes::IsSet(m_path)) return ModelForm::kCgmes;
  std::error_code ignored;
  return fs::is_directory(m_path, ignored) ? ModelForm::kTextTables : ModelForm::kObjectFile;
}

ModelForm ModelName::FormAsOutput() const {
  const ModelForm found = Form();
  if (found == ModelForm::kXiidm || EndsAsXiidm(m_path)) return ModelForm::kXiidm;
  if (found == ModelForm::kRealtimeDatabase || found == ModelForm::kTextTables) return found;
  const fs::path name = fs::path(m_path).filename();
  return name.empty() || name.extension().empty() ? ModelForm::kTextTables : ModelForm::kObjectFile;
}

}  // namespace dtsdb::tools
