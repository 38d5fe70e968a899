#include "formats/xiidm/reader.h"

#include <fmt/format.h>

#include <QXmlStreamReader>

#include "formats/failure.h"
#include "formats/import/guarded_device.h"
#include "formats/import/root_element.h"
#include "formats/text_layout.h"
#include "formats/xiidm/own_properties.h"

namespace dtsdb::tools::xiidm {
namespace {

constexpr std::size_t kDeepest = 16;  // a network in a network has nine levels
constexpr int kNewest = 17;           // of the versions 1.x
constexpr const char* kNoRoom = "no table has room for it";

/// What is behind "/schema/iidm/" in a namespace, without what marks a file that has the equipment only.
QStringView VersionPart(QStringView uri) {
  for (const QLatin1String start : {QLatin1String("http://www.powsybl.org/schema/iidm/"),
                                    QLatin1String("http://www.itesla_project.eu/schema/iidm/")}) {
    if (!uri.startsWith(start)) continue;
    const QStringView rest = uri.sliced(start.size());
    constexpr QLatin1String kEquipment("equipment/");
    return rest.startsWith(kEquipment) ? rest.sliced(kEquipment.size()) : rest;
  }
  return {};
}

OwnProperty OwnPropertyOf(QStringView name) {
  for (const OwnProperty& property : kOwnProperties) {
    if (name == QLatin1String(property.name)) return property;
  }
  return {"", kAttributeCount};
}

/// The reading of one file.
class Reading {
 public:
  Reading(QIODevice& input, const std::string& name, int most) : m_guard(input), m_xml(&m_guard), m_most(most) {
    constexpr qint64 kBytesOfObject = 200;  // about as many has one
    m_network.file = name;
    if (!input.isSequential()) m_network.objects.Reserve(input.size() / kBytesOfObject);
  }

  Network Read() {
    while (!m_xml.atEnd()) {
      m_guard.Renew();
      Take(m_xml.readNext());
    }
    if (m_guard.IsTooLong()) Refuse("a tag or text is longer than 64 KiB");
    if (m_xml.hasError()) Refuse(m_xml.errorString().toStdString());
    if (m_network.version.empty()) Refuse("is no XIIDM file: it is empty");
    return std::move(m_network);
  }

 private:
  [[noreturn]] void Refuse(const std::string& what) const {
    throw Failure(kExitFile, fmt::format("{}, line {}: {}", m_network.file, m_xml.lineNumber(), OneLine(what)));
  }

  void Take(QXmlStreamReader::TokenType token) {
    switch (token) {
      case QXmlStreamReader::DTD:
      case QXmlStreamReader::EntityReference:
        Refuse("a document type declaration or an entity, which no XIIDM file has, is refused");
      case QXmlStreamReader::StartElement:
        if (m_open.size() >= kDeepest) Refuse("elements are nested deeper than in any network");
        m_open.push_back(m_open.empty() ? kNone : m_open.back());
        TakeStart();
        break;
      case QXmlStreamReader::EndElement:
        if (m_open.size() == m_extension) m_extension = 0;
        if (m_open.size() == m_unknown) m_unknown = 0;
        m_open.pop_back();
        break;
      default:
        break;
    }
  }

  void TakeStart() {
    if (m_open.size() == 1) return TakeRoot();
    if (m_extension > 0) return TakeExtension();
    if (m_unknown > 0 || m_xml.namespaceUri() != m_namespace) return;
    const ElementRow& row = RowOf(m_xml.name());
    if (row.role == Role::kUnknown) return TakeUnknown();
    if (++m_elements > m_most) Refuse("it has more elements than any network");
    const QXmlStreamAttributes attributes = m_xml.attributes();  // given back before the next element
    if (IsObject(row.role)) {
      TakeObject(row, attributes);
    } else {
      TakePart(row, attributes);
    }
  }

  void TakeRoot() {
    m_namespace = m_xml.namespaceUri().toString();
    const QStringView version = VersionPart(m_namespace);
    if (m_xml.name() != QLatin1String("network") || version.isEmpty()) {
      Refuse("is no XIIDM file: its root element isn't a network of XIIDM");
    }
    bool isNumber = false;
    const int minor = version.startsWith(QLatin1String("1_")) ? version.sliced(2).toInt(&isNumber) : -1;
    if (!isNumber || minor < 0 || minor > kNewest) {
      Refuse(fmt::format("its version {} isn't one of those that are read, 1.0 to 1.{}",
                         Quoted(version.toString().replace(u'_', u'.').toStdString()), kNewest));
    }
    m_network.version = fmt::format("1.{}", minor);
    m_network.caseDate = Utf8(m_xml.attributes().value(QLatin1String("caseDate")));
  }

  /// Passes over what isn't known. It is reported unless it is part of equipment.
  void TakeUnknown() {
    m_unknown = m_open.size();
    const int parent = m_open.back();
    const Role owner = parent == kNone ? Role::kNetwork : m_network.objects.RoleOf(parent);
    if (owner != Role::kNetwork && owner != Role::kStation && owner != Role::kLevel) return;
    m_network.unknown.Count(std::string(Utf8(m_xml.name())), kNoRoom, [&] {
      const std::string id(Utf8(m_xml.attributes().value(QLatin1String("id"))));
      return id.empty() && parent != kNone ? "in " + m_network.objects.Id(parent) : id;
    });
  }

  /// Begins an object. In the topology of a node-breaker level a bus is none, but the voltage of some nodes.
  void TakeObject(const ElementRow& row, const QXmlStreamAttributes& attributes) {
    const int parent = m_open.back();
    if (row.isInLevel && (parent == kNone || m_network.objects.RoleOf(parent) != Role::kLevel)) {
      Refuse(fmt::format("a {} stands outside of a voltage level", row.name));
    }
    if (row.role == Role::kBus && !m_isBusBreaker) return TakeCalculatedBus(parent, attributes);
    const std::string id(Utf8(attributes.value(QLatin1String("id"))));
    if (id.empty()) Refuse(fmt::format("a {} has no id", row.name));
    const int object = m_network.objects.Add(row, parent, m_xml.lineNumber(), id);
    if (object == kNone) RefuseSecond(row, id);
    m_open.back() = object;
    m_sections = 0;
    for (const QXmlStreamAttribute& attribute : attributes) {
      const Attribute known = AttributeOf(attribute.name());
      if (known == kAttributeCount || known == kId) continue;
      const std::string_view text = Utf8(attribute.value());
      if (known >= kNode && known <= kNode3) CheckNode(object, text);
      Set(object, known, text);
    }
    if (row.role == Role::kWithout)
      m_network.unknown.Count(row.name, kNoRoom, [&] { return m_network.objects.Id(object); });
  }

  [[noreturn]] void RefuseSecond(const ElementRow& row, const std::string& id) const {
    const Objects& objects = m_network.objects;
    const int first = objects.Find(id);
    Refuse(fmt::format("{} {} has the id of the {} in line {}", row.name, Quoted(id), objects.RowOf(first).name,
                       objects.Line(first)));
  }

  void CheckNode(int object, std::string_view number) const {
    if (!NodeNumberOf(number)) m_network.Refuse(object, Quoted(number) + " is no number of a node, 0 to 2147483647");
  }

  void TakePart(const ElementRow& row, const QXmlStreamAttributes& attributes) {
    const int parent = m_open.back();
    switch (row.role) {
      case Role::kTopology:
        m_isBusBreaker = m_xml.name() == QLatin1String("busBreakerTopology");
        break;
      case Role::kConnection:
        TakeConnection(parent, attributes);
        break;
      case Role::kModel:
        if (parent != kNone && attributes.hasAttribute(QLatin1String("bPerSection"))) {
          Set(parent, kBPerSection, Utf8(attributes.value(QLatin1String("bPerSection"))));
        }
        break;
      case Role::kSection:
        if (parent != kNone) TakeSection(parent, attributes);
        break;
      case Role::kProperty:
        TakeProperty(parent, attributes);
        break;
      case Role::kExtension:
        m_extension = m_open.size();
        m_extended = Utf8(attributes.value(QLatin1String("id")));
        break;
      default:
        break;
    }
  }

  /// What is in an extension is in namespaces of its own.
  void TakeExtension() {
    if (m_open.size() != m_extension + 1) return;
    if (m_xml.name() == QLatin1String("slackTerminal")) {
      const std::string id(Utf8(m_xml.attributes().value(QLatin1String("id"))));
      if (!id.empty()) m_network.slackTerminals.push_back(id);
      return;
    }
    m_network.unknown.Count("extension " + std::string(Utf8(m_xml.name())), kNoRoom, [this] { return m_extended; });
  }

  void TakeConnection(int level, const QXmlStreamAttributes& attributes) {
    if (level == kNone || m_network.objects.RoleOf(level) != Role::kLevel) {
      Refuse("an internalConnection stands outside of a voltage level");
    }
    const int node1 = ToNodeNumber(Utf8(attributes.value(QLatin1String("node1"))));
    const int node2 = ToNodeNumber(Utf8(attributes.value(QLatin1String("node2"))));
    m_network.connections.push_back({level, node1, node2});
  }

  void TakeCalculatedBus(int level, const QXmlStreamAttributes& attributes) {
    CalculatedBus bus{level,
                      NumberOf(Utf8(attributes.value(QLatin1String("v")))).value_or(0),
                      NumberOf(Utf8(attributes.value(QLatin1String("angle")))).value_or(0),
                      {}};
    const QStringView nodes = attributes.value(QLatin1String("nodes"));
    for (const QStringView node : nodes.split(u',', Qt::SkipEmptyParts)) {
      bus.nodes.push_back(ToNodeNumber(Utf8(node.trimmed())));
    }
    m_network.buses.push_back(std::move(bus));
  }

  int ToNodeNumber(std::string_view text) const {
    const std::optional<int> number = NodeNumberOf(text);
    if (!number) Refuse(Quoted(text) + " is no number of a node, 0 to 2147483647");
    return *number;
  }

  /// Of sections that differ, that of the last one in use counts.
  void TakeSection(int shunt, const QXmlStreamAttributes& attributes) {
    const Objects& objects = m_network.objects;
    const Attribute inUse = objects.Has(shunt, kSolvedSections) ? kSolvedSections : kSections;
    if (++m_sections == objects.NumberOrZero(shunt, inUse)) {
      Set(shunt, kB, Utf8(attributes.value(QLatin1String("b"))));
    }
  }

  void TakeProperty(int owner, const QXmlStreamAttributes& attributes) {
    const QStringView name = attributes.value(QLatin1String("name"));
    if (owner == kNone || !name.startsWith(QLatin1String("dtsdb."))) {
      m_network.unknown.Count("property", kNoRoom, [&] { return std::string(Utf8(name)); });
      return;
    }
    const std::string value(Utf8(attributes.value(QLatin1String("value"))));
    const Attribute own = OwnPropertyOf(name).attribute;
    if (own != kAttributeCount) Set(owner, own, value);
    constexpr QLatin1String kNodeName(kOwnNodeName);
    if (!name.startsWith(kNodeName) || m_network.objects.RoleOf(owner) != Role::kLevel) return;
    m_network.nodeNames.push_back({owner, ToNodeNumber(Utf8(name.sliced(kNodeName.size()))), value});
  }

  void Set(int object, Attribute attribute, std::string_view text) {
    if (!m_network.objects.Set(object, attribute, text)) Refuse("it has more than 2 GiB of names and values");
  }

  /// The same text in UTF-8; it holds until the next call.
  std::string_view Utf8(QStringView text) {
    const auto size = static_cast<std::size_t>(text.size());
    m_utf8.resize(size);
    char16_t all = 0;
    for (std::size_t i = 0; i < size; ++i) {
      const char16_t letter = text.utf16()[i];
      m_utf8[i] = static_cast<char>(letter);
      all |= letter;
    }
    return all < 0x80 ? m_utf8 : m_utf8 = text.toUtf8().toStdString();
  }

  Network m_network;
  GuardedDevice m_guard;
  QXmlStreamReader m_xml;
  QString m_namespace;
  std::vector<int> m_open;      ///< the innermost object of each open element
  std::size_t m_extension = 0;  ///< the depth of the extension that is read, 0 outside
  std::size_t m_unknown = 0;    ///< the same of what isn't known
  std::string m_extended;       ///< the id of what it extends
  bool m_isBusBreaker = false;  ///< the topology at hand or read last
  int m_sections = 0;           ///< of the shunt compensator at hand
  int m_most;
  int m_elements = 0;
  std::string m_utf8;
};

}  // namespace

Network ReadNetwork(QIODevice& input, const std::string& name, int most) { return Reading(input, name, most).Read(); }

bool IsNetworkTag(const QString& tag) {
  return RootName(tag) == QLatin1String("network") && tag.contains(QLatin1String("/schema/iidm/"));
}

}  // namespace dtsdb::tools::xiidm
