#include "formats/import/root_element.h"

#include <QFile>
#include <QRegularExpression>
#include <QStringConverter>

#include "formats/files.h"

namespace dtsdb::tools {
namespace {

/// A text as far as it is read, whatever its encoding: that of a byte order mark, else one byte a character.
QString DecodedTag(std::string_view bytes) {
  const QByteArrayView view(bytes.data(), static_cast<qsizetype>(bytes.size()));
  const auto encoding = QStringConverter::encodingForData(view, u'<');
  return QStringDecoder(encoding.value_or(QStringConverter::Latin1))(view);
}

}  // namespace

QByteArray BeginningOf(const std::filesystem::path& file) {
  QFile opened(QtPath(file));
  return opened.open(QIODevice::ReadOnly) ? opened.read(kBeginning) : QByteArray();
}

QString RootTag(std::string_view beginning) {
  // What may stand before the root element: declaration, comments, a document type.
  static const QRegularExpression root(
      QStringLiteral(
          R"(^\x{FEFF}?\s*(?:<\?.*?\?>\s*|<!--.*?-->\s*|<![^<\[]*(?:\[.*?\]\s*)?>\s*)*+<((?:[\w.-]+:)?[\w.-]+(?=[\s>/])[^>]*))"),
      QRegularExpression::DotMatchesEverythingOption);
  return root.match(DecodedTag(beginning)).captured(1);
}

QString RootName(const QString& tag) {
  static const QRegularExpression name(QStringLiteral(R"(^(?:[\w.-]+:)?([\w.-]+))"));
  return name.match(tag).captured(1);
}

}  // namespace dtsdb::tools
