#include "formats/cgmes/profile_writer.h"

#include <algorithm>

#include "formats/files.h"

namespace dtsdb::tools::cgmes {
namespace {

constexpr qsizetype kLongestName = 128;    // of CGMES 3.0, in characters
constexpr qsizetype kLongestNameOld = 32;  // of CGMES 2.4.15

const QString kRdf = QStringLiteral("http://www.w3.org/1999/02/22-rdf-syntax-ns#");
const QString kMd = QStringLiteral("http://iec.ch/TC57/61970-552/ModelDescription/1#");

QString CimOf(bool isNew) {
  return isNew ? QStringLiteral("http://iec.ch/TC57/CIM100#")
               : QStringLiteral("http://iec.ch/TC57/2013/CIM-schema-cim16#");
}

std::string UriOf(ProfileKind kind, bool isNew) {
  const std::string name = kind == ProfileKind::kTopology ? "Topology" : "StateVariables";
  return isNew ? "http://iec.ch/TC57/ns/CIM/" + name + "-EU/3.0" : "http://entsoe.eu/CIM/" + name + "/4/1";
}

QString Unicode(const std::string& text) { return QString::fromStdString(text); }

/// The first `most` characters of a text, with a blank for each that XML can't hold.
QString Shortened(const std::string& text, qsizetype most) {
  const QList<uint> letters = Unicode(text).toUcs4();
  QString shortened;
  for (const uint letter : letters.first(std::min(most, letters.size()))) {
    const bool isWritable = letter >= 0x20 && letter != 0xFFFE && letter != 0xFFFF;
    const char32_t character = isWritable ? static_cast<char32_t>(letter) : U' ';
    shortened += QString::fromUcs4(&character, 1);
  }
  return shortened.trimmed();
}

}  // namespace

ProfileWriter::ProfileWriter(const std::filesystem::path& path, const Header& header)
    : m_path(path.string()), m_isNew(header.version == "3.0"), m_file(QtPath(path)) {
  if (!m_file.Open()) RefuseFile(m_path, "can't be written: " + m_file.Error().toStdString());
  m_xml.setDevice(&m_file.Device());
  m_xml.setAutoFormatting(true);
  m_xml.setAutoFormattingIndent(2);
  m_xml.writeStartDocument();
  m_xml.writeNamespace(kRdf, QStringLiteral("rdf"));
  m_xml.writeNamespace(kMd, QStringLiteral("md"));
  m_xml.writeNamespace(CimOf(m_isNew), QStringLiteral("cim"));
  m_xml.writeStartElement(kRdf, QStringLiteral("RDF"));
  WriteHeader(header);
}

void ProfileWriter::WriteHeader(const Header& header) {
  m_xml.writeStartElement(kMd, QStringLiteral("FullModel"));
  m_xml.writeAttribute(kRdf, QStringLiteral("about"), Unicode("urn:uuid:" + header.mrid));
  for (const std::string& mrid : header.dependsOn) {
    m_xml.writeEmptyElement(kMd, QStringLiteral("Model.DependentOn"));
    m_xml.writeAttribute(kRdf, QStringLiteral("resource"), Unicode("urn:uuid:" + mrid));
  }
  HeaderText("Model.created", header.created);
  if (!header.authority.empty()) HeaderText("Model.modelingAuthoritySet", header.authority);
  HeaderText("Model.profile", UriOf(header.kind, m_isNew));
  HeaderText("Model.scenarioTime", header.scenarioTime);
  HeaderText("Model.version", "1");
  EndObject();
}

void ProfileWriter::HeaderText(const char* property, const std::string& text) {
  m_xml.writeTextElement(kMd, QString::fromLatin1(property), Unicode(text));
}

void ProfileWriter::Define(const char* type, const std::string& mrid) {
  m_xml.writeStartElement(CimOf(m_isNew), QString::fromLatin1(type));
  m_xml.writeAttribute(kRdf, QStringLiteral("ID"), Unicode("_" + mrid));
}

void ProfileWriter::About(const char* type, const std::string& mrid) {
  m_xml.writeStartElement(CimOf(m_isNew), QString::fromLatin1(type));
  m_xml.writeAttribute(kRdf, QStringLiteral("about"), Unicode("#_" + mrid));
}

void ProfileWriter::Name(const std::string& name, const std::string& mrid) {
  if (m_isNew) m_xml.writeTextElement(CimOf(m_isNew), QStringLiteral("IdentifiedObject.mRID"), Unicode(mrid));
  const qsizetype most = m_isNew ? kLongestName : kLongestNameOld;
  const QString shortened = Shortened(name, most);
  m_xml.writeTextElement(CimOf(m_isNew), QStringLiteral("IdentifiedObject.name"),
                         shortened.isEmpty() ? Shortened(mrid, most) : shortened);
}

void ProfileWriter::Refer(const char* property, const std::string& mrid) {
  m_xml.writeEmptyElement(CimOf(m_isNew), QString::fromLatin1(property));
  m_xml.writeAttribute(kRdf, QStringLiteral("resource"), Unicode("#_" + mrid));
}

void ProfileWriter::Finish() {
  m_xml.writeEndDocument();
  if (!m_file.Finish()) RefuseFile(m_path, "can't be written: " + m_file.Error().toStdString());
}

}  // namespace dtsdb::tools::cgmes
