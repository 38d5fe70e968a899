#include "formats/cgmes/reader.h"

#include <fmt/format.h>

#include <QXmlStreamReader>

#include "formats/failure.h"
#include "formats/import/guarded_device.h"

namespace dtsdb::tools::cgmes {
namespace {

constexpr int kDeepest = 16;  // a profile has three levels
constexpr QLatin1String kRdfNamespace("http://www.w3.org/1999/02/22-rdf-syntax-ns#");

/// The version of CGMES that has this namespace, empty for none.
std::string VersionOf(QStringView uri) {
  if (uri == QLatin1String("http://iec.ch/TC57/2013/CIM-schema-cim16#")) return "2.4.15";
  if (uri == QLatin1String("http://iec.ch/TC57/CIM100#")) return "3.0";
  return "";
}

/// The reading of one file.
class Reading {
 public:
  Reading(QIODevice& input, const std::string& name, int file, Objects& objects)
      : m_objects(objects), m_guard(input), m_xml(&m_guard), m_file(file) {
    m_profile.file = name;
  }

  Profile Read() {
    while (!m_isDone && !m_xml.atEnd()) {
      m_guard.Renew();
      Take(m_xml.readNext());
    }
    if (!m_isDone) CheckEnd();
    return m_profile;
  }

 private:
  [[noreturn]] void Refuse(const std::string& what) const {
    throw Failure(kExitFile, fmt::format("{}, line {}: {}", m_profile.file, m_xml.lineNumber(), what));
  }

  void Take(QXmlStreamReader::TokenType token) {
    switch (token) {
      case QXmlStreamReader::DTD:
      case QXmlStreamReader::EntityReference:
        Refuse("a document type declaration or an entity, which no profile has, is refused");
      case QXmlStreamReader::StartElement:
        if (++m_depth > kDeepest) Refuse("elements are nested deeper than in any profile");
        TakeStart();
        break;
      case QXmlStreamReader::Characters:
        if (m_depth == 3 && m_takesText) m_value += m_xml.text();
        break;
      case QXmlStreamReader::EndElement:
        if (m_depth == 3 && m_takesText) TakeText();
        if (m_depth == 2) TakeEndOfObject();
        --m_depth;
        break;
      default:
        break;
    }
  }

  void TakeStart() {
    if (m_depth == 1) TakeRoot();
    if (m_depth == 2) TakeObject();
    if (m_depth == 3) TakeProperty();
  }

  void TakeRoot() {
    if (m_xml.name() != QLatin1String("RDF") || m_xml.namespaceUri() != kRdfNamespace) {
      Refuse("is no CGMES profile: its root element isn't rdf:RDF");
    }
    for (const QXmlStreamNamespaceDeclaration& declared : m_xml.namespaceDeclarations()) {
      const std::string version = VersionOf(declared.namespaceUri());
      if (!version.empty()) m_profile.version = version;
    }
    if (m_profile.version.empty()) Refuse("its CIM namespace is neither that of CGMES 2.4.15 nor of 3.0");
  }

  void TakeObject() {
    if (m_xml.name() == QLatin1String("DifferenceModel")) {
      Refuse("is a difference model; apply it to its base first and give the full model");
    }
    m_isHeader = m_xml.name() == QLatin1String("FullModel");
    const QXmlStreamAttributes attributes = m_xml.attributes();
    QStringView id = attributes.value(kRdfNamespace, QLatin1String("ID"));
    const bool defines = !id.isEmpty();
    if (!defines) id = attributes.value(kRdfNamespace, QLatin1String("about"));
    const QStringView mrid = MridOf(id);
    if (mrid.isEmpty()) Refuse("an object has neither rdf:ID nor rdf:about");
    if (m_isHeader) {
      m_profile.mrid = mrid.toUtf8().toStdString();
      return;
    }
    m_object = Number(mrid);
    if (m_xml.name() != m_typeName) {
      m_typeName = m_xml.name().toString();
      m_type = m_objects.ClassNumber(m_typeName);
    }
    m_objects.Describe(m_object, m_type, defines, m_file, m_xml.lineNumber());
    ++m_profile.objects;
  }

  void TakeProperty() {
    m_takesText = false;
    m_value.clear();
    if (m_isHeader) {
      m_headerField = m_xml.name().toString();
      m_takesText = true;
      return;
    }
    m_property = PropertyOf(m_xml.name());
    if (m_property == kPropertyCount) return;
    const QXmlStreamAttributes attributes = m_xml.attributes();
    const QStringView resource = attributes.value(kRdfNamespace, QLatin1String("resource"));
    if (resource.isEmpty()) {
      m_takesText = true;
    } else {
      TakeReference(resource);
    }
  }

  /// A reference is to an object, or to one of the values of an enumeration, whose name is then the text.
  void TakeReference(QStringView resource) {
    const QStringView fragment = resource.sliced(resource.indexOf(QLatin1Char('#')) + 1);
    const bool isObject = resource.startsWith(QLatin1Char('#')) || fragment.startsWith(QLatin1Char('_')) ||
                          resource.startsWith(QLatin1String("urn:uuid:"));
    if (!isObject) {
      Check(m_objects.SetText(m_object, m_property, Utf8(fragment)));
      return;
    }
    const QStringView mrid = MridOf(resource);
    if (mrid.isEmpty()) Refuse("a reference of the object with mRID " + m_objects.Mrid(m_object) + " names no object");
    const int target = Number(mrid);
    Check(m_objects.SetTarget(m_object, m_property, target));
  }

  void TakeText() {
    m_takesText = false;
    const QStringView text = QStringView(m_value).trimmed();
    if (!m_isHeader) {
      Check(m_objects.SetText(m_object, m_property, Utf8(text)));
    } else if (m_headerField == QLatin1String("Model.profile")) {
      m_profile.kinds.push_back(KindOfProfile(text));
    } else if (m_headerField == QLatin1String("Model.scenarioTime")) {
      m_profile.scenarioTime = Utf8(text);
    } else if (m_headerField == QLatin1String("Model.modelingAuthoritySet")) {
      m_profile.authority = Utf8(text);
    }
  }

  /// Behind its header, a profile that isn't read is left.
  void TakeEndOfObject() {
    if (!m_isHeader) return;
    m_isHeader = false;
    m_hasHeader = true;
    bool isRead = false;
    for (const ProfileKind kind : m_profile.kinds) isRead = isRead || kind != ProfileKind::kOther;
    m_profile.isRead = isRead;
    m_isDone = !isRead && m_profile.objects == 0;
  }

  void CheckEnd() {
    if (m_guard.IsTooLong()) Refuse("a tag or text is longer than 64 KiB");
    if (m_xml.hasError()) Refuse(m_xml.errorString().toStdString());
    if (!m_hasHeader) Refuse("has no header (md:FullModel), so it is no CGMES profile");
    if (m_profile.kinds.empty()) Refuse("its header names no profile (md:Model.profile)");
  }

  void Check(bool isTaken) const {
    if (!isTaken) Refuse("the set is too large: more than 2 GiB of names and values");
  }

  int Number(QStringView mrid) { return m_objects.FindOrMake(Utf8(mrid)); }

  /// The same text in UTF-8; it holds until the next call.
  const std::string& Utf8(QStringView text) {
    m_utf8.clear();
    for (const QChar c : text) {
      if (c.unicode() >= 0x80) return m_utf8 = text.toUtf8().toStdString();
      m_utf8 += static_cast<char>(c.unicode());
    }
    return m_utf8;
  }

  Objects& m_objects;
  Profile m_profile;
  GuardedDevice m_guard;
  QXmlStreamReader m_xml;
  int m_file;
  int m_depth = 0;
  bool m_isDone = false;
  bool m_hasHeader = false;
  bool m_isHeader = false;  ///< the object being read is the header
  QString m_headerField;
  int m_object = Objects::kNone;
  QString m_typeName;
  int m_type = Objects::kNone;
  Property m_property = kPropertyCount;
  bool m_takesText = false;
  QString m_value;
  std::string m_utf8;
};

}  // namespace

QStringView MridOf(QStringView reference) {
  QStringView mrid = reference.sliced(reference.indexOf(QLatin1Char('#')) + 1);
  constexpr QLatin1String kUrn("urn:uuid:");
  if (mrid.startsWith(kUrn)) mrid = mrid.sliced(kUrn.size());
  if (mrid.startsWith(QLatin1Char('_'))) mrid = mrid.sliced(1);
  return mrid;
}

Profile ReadProfile(QIODevice& input, const std::string& name, int file, Objects& objects) {
  return Reading(input, name, file, objects).Read();
}

}  // namespace dtsdb::tools::cgmes
