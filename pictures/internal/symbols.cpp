#include "pictures/internal/symbols.h"

#include <QString>
#include <QStringList>
#include <QXmlStreamReader>
#include <map>
#include <utility>

namespace dtsdb::pictures::internal {
namespace {

std::map<std::string, Size> ReadSizes() {
  std::map<std::string, Size> sizes;
  QXmlStreamReader reader{QString::fromUtf8(kSymbolsFile)};
  while (!reader.atEnd()) {
    if (reader.readNext() != QXmlStreamReader::StartElement || reader.name() != QLatin1String("symbol")) continue;
    const QXmlStreamAttributes attributes = reader.attributes();
    sizes[attributes.value(QLatin1String("id")).toString().toStdString()] = {
        attributes.value(QLatin1String("width")).toInt(), attributes.value(QLatin1String("height")).toInt()};
  }
  return sizes;
}

}  // namespace

Size SizeOfSymbol(const std::string& name) {
  static const std::map<std::string, Size> sizes = ReadSizes();
  const auto found = sizes.find(name);
  return found == sizes.end() ? Size() : found->second;
}

std::string_view SymbolDefinitions() {
  const std::string_view file(kSymbolsFile);
  const std::size_t first = file.find("<defs>");
  const std::size_t last = file.find("</defs>");
  if (first == std::string_view::npos || last == std::string_view::npos) return {};
  return file.substr(first + 6, last - first - 6);
}

Symbol MakeSymbol(const std::string& name, Point centre, int quarterTurns, const std::string& classes) {
  Size size = SizeOfSymbol(name);
  if (quarterTurns % 2 == 1) std::swap(size.width, size.height);
  return {name,
          classes,
          centre,
          quarterTurns,
          {centre.x - size.width / 2, centre.y - size.height / 2, size.width, size.height}};
}

}  // namespace dtsdb::pictures::internal
