#include "command/page_subject.h"

#include <filesystem>

#include "formats/import_ids.h"

namespace dtsdb::tools {

page::Subject PageSubject(const ModelName& model, Language language) {
  std::string path = model.Paths().empty() ? model.Path() : model.Paths().front();
  while (path.size() > 1 && path.ends_with('/')) path.pop_back();
  const std::string name = std::filesystem::path(path).filename().string();
  page::Subject subject;
  subject.name = name.empty() || name == "." || name == ".." ? "Grid" : name;
  subject.source = FormName(model.Form());
  subject.language = language;
  subject.positions = PositionsBeside(model);
  return subject;
}

}  // namespace dtsdb::tools
