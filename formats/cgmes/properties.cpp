#include "formats/cgmes/properties.h"

#include <QHash>
#include <QString>

namespace dtsdb::tools::cgmes {
namespace {

constexpr const char* kNames[] = {
#define DTSDB_CGMES_NAME(enumerator, name) name,
    DTSDB_CGMES_PROPERTIES(DTSDB_CGMES_NAME)
#undef DTSDB_CGMES_NAME
};

/// The properties by name. The texts live as long as the program.
QHash<QStringView, Property> MakeIndex() {
  static const QStringList texts = [] {
    QStringList list;
    for (const char* const name : kNames) list.append(QString::fromLatin1(name));
    return list;
  }();
  QHash<QStringView, Property> index;
  for (qsizetype i = 0; i < texts.size(); ++i) index.insert(texts[i], static_cast<Property>(i));
  return index;
}

}  // namespace

Property PropertyOf(QStringView name) {
  static const QHash<QStringView, Property> index = MakeIndex();
  return index.value(name, kPropertyCount);
}

const char* PropertyName(Property property) { return kNames[property]; }

}  // namespace dtsdb::tools::cgmes
