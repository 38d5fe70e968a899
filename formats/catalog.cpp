#include "formats/catalog.h"

#include <QString>

#include "formats/failure.h"
#include "formats/nearest.h"
#include "formats/text_layout.h"

namespace dtsdb::tools {

std::vector<std::string> TableNames() {
  std::vector<std::string> names;
  for (const TableInfo& table : Tables()) names.emplace_back(table.name);
  return names;
}

TableKind FindTable(const std::string& name) {
  for (const TableInfo& table : Tables()) {
    if (name == table.name) return table.kind;
  }
  return KIND_NONE;
}

TableKind NamedTable(const std::string& name) {
  const TableKind kind = FindTable(QString::fromStdString(name).toUpper().toStdString());
  if (kind != KIND_NONE) return kind;
  throw Failure(kExitUsage, "there is no table " + Quoted(name) + DidYouMean(name, TableNames()));
}

}  // namespace dtsdb::tools
