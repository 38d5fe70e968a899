/// \file
/// A small reader of CGMES profiles: all objects with their properties, whatever they are.
#pragma once

#include <QDir>
#include <QFile>
#include <QHash>
#include <QMap>
#include <QString>
#include <QStringList>
#include <QXmlStreamReader>

namespace dtsdb::test {

/// An object as the profiles of a model describe it together.
struct CgmesObject {
  QStringList types;                   ///< a profile may name a superclass
  QHash<QString, QString> properties;  ///< texts, and identities of other objects

  QString operator[](const char* name) const { return properties.value(QLatin1String(name)); }
  double Number(const char* name) const { return (*this)[name].toDouble(); }
  bool Is(const char* type) const { return types.contains(QLatin1String(type)); }
};

/// All objects of the profiles in a folder, by identity.
class CgmesModel {
 public:
  explicit CgmesModel(const QString& folder) {
    const QDir directory(folder);
    for (const QString& name : directory.entryList({QStringLiteral("*.xml")}, QDir::Files, QDir::Name)) {
      QFile file(directory.filePath(name));
      if (file.open(QIODevice::ReadOnly)) Read(file);
    }
  }

  const CgmesObject& Object(const QString& id) const {
    static const CgmesObject kNone;
    const auto found = m_objects.constFind(id);
    return found == m_objects.constEnd() ? kNone : *found;
  }

  /// The objects of a class, in the order of their identities.
  QMap<QString, CgmesObject> OfType(const char* type) const {
    QMap<QString, CgmesObject> objects;
    for (auto it = m_objects.cbegin(); it != m_objects.cend(); ++it) {
      if (it->Is(type)) objects.insert(it.key(), *it);
    }
    return objects;
  }

  /// What went wrong while reading, empty for nothing.
  QString Error() const { return m_error; }

 private:
  void Read(QFile& file) {
    const QString rdf = QStringLiteral("http://www.w3.org/1999/02/22-rdf-syntax-ns#");
    QXmlStreamReader xml(&file);
    xml.readNextStartElement();  // rdf:RDF
    while (xml.readNextStartElement()) {
      const QXmlStreamAttributes named = xml.attributes();
      QString id = named.value(rdf, QLatin1String("ID")).toString();
      if (id.isEmpty()) id = named.value(rdf, QLatin1String("about")).toString().mid(1);  // "#_..."
      CgmesObject& object = m_objects[id];
      object.types.append(xml.name().toString());
      while (xml.readNextStartElement()) {
        const QString name = xml.name().toString();
        const QString resource = xml.attributes().value(rdf, QLatin1String("resource")).toString();
        const QString text = xml.readElementText(QXmlStreamReader::SkipChildElements);
        object.properties.insert(name,
                                 resource.isEmpty() ? text : resource.mid(resource.indexOf(QLatin1Char('#')) + 1));
      }
    }
    if (xml.hasError()) m_error = file.fileName() + QLatin1String(": ") + xml.errorString();
  }

  QHash<QString, CgmesObject> m_objects;
  QString m_error;
};

}  // namespace dtsdb::test
