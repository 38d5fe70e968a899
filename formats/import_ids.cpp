#include "formats/import_ids.h"

#include <QSaveFile>

#include "formats/csv.h"
#include "formats/files.h"

namespace dtsdb::tools {
namespace {

void AppendRow(std::string& text, const std::string& table, const std::string& identity, const std::string& mrid,
               const std::string& name) {
  AppendCsvField(text, table, true);
  AppendCsvField(text, identity, false);
  AppendCsvField(text, mrid, false);
  AppendCsvField(text, name, false);
  text += "\r\n";
}

}  // namespace

std::string IdsPath(const ModelName& model) {
  std::string path = model.Path();
  while (path.size() > 1 && path.ends_with('/')) path.pop_back();
  return path + ".ids.csv";
}

void WriteIds(const ImportReport& report, const ModelName& model) {
  if (report.identities.empty()) return;
  std::string text;
  AppendRow(text, "table", "identity", "mrid", "name");
  for (const ImportReport::Identity& row : report.identities) {
    AppendRow(text, row.table, row.identity, row.mrid, row.name);
  }
  const std::string path = IdsPath(model);
  QSaveFile file(QtPath(path));
  const auto size = static_cast<qint64>(text.size());
  const bool isWritten = file.open(QIODevice::WriteOnly) && file.write(text.data(), size) == size && file.commit();
  if (!isWritten) RefuseFile(path, "can't be written: " + file.errorString().toStdString());
}

}  // namespace dtsdb::tools
