/// \file
/// Small CGMES profiles written by hand, for tests.
#pragma once

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <initializer_list>
#include <string>
#include <utility>
#include <vector>

#include "formats/cgmes/import.h"
#include "formats/failure.h"
#include "tests/formats/imported_tables.h"

namespace dtsdb::tools::cgmes::test {

using Values = std::vector<std::pair<std::string, std::string>>;

/// One file with all profiles of a small grid, of CGMES 3.0. It starts with station S in district D of company C, and
/// its level V of 220 kV. An mRID is the object's name with a "_" in front in the file, and the name of an object is
/// its mRID unless it is given another. A value that begins with "#" refers to an object.
class ProfileText {
 public:
  ProfileText() {
    Add("GeographicalRegion", "C");
    Add("SubGeographicalRegion", "D", {{"SubGeographicalRegion.Region", "#C"}});
    Add("BaseVoltage", "220kV", {{"BaseVoltage.nominalVoltage", "220"}});
    Station("S");
    Level("V", "S");
  }

  /// An object that the file defines.
  ProfileText& Add(const std::string& type, const std::string& id, const Values& values = {}) {
    return Write(type, "rdf:ID=\"_" + id + "\"", id, values);
  }
  /// More about an object.
  ProfileText& About(const std::string& type, const std::string& id, const Values& values) {
    return Write(type, "rdf:about=\"#_" + id + "\"", "", values);
  }

  ProfileText& Station(const std::string& id) { return Add("Substation", id, {{"Substation.Region", "#D"}}); }
  ProfileText& Level(const std::string& id, const std::string& station, const std::string& base = "220kV") {
    return Add("VoltageLevel", id,
               {{"VoltageLevel.Substation", "#" + station}, {"VoltageLevel.BaseVoltage", "#" + base}});
  }
  ProfileText& Node(const std::string& id, const std::string& container = "V") {
    return Add("ConnectivityNode", id, {{"ConnectivityNode.ConnectivityNodeContainer", "#" + container}});
  }
  /// Equipment with a terminal on each of `nodes`: those of X are X-1, X-2 and so on.
  ProfileText& Equipment(const std::string& type, const std::string& id, const std::vector<std::string>& nodes,
                         const Values& values = {}) {
    Add(type, id, values);
    for (std::size_t i = 0; i < nodes.size(); ++i) {
      const std::string number = std::to_string(i + 1);
      Add("Terminal", id + "-" + number,
          {{"Terminal.ConductingEquipment", "#" + id},
           {"Terminal.ConnectivityNode", "#" + nodes[i]},
           {"ACDCTerminal.sequenceNumber", number}});
    }
    return *this;
  }
  /// The published power into the equipment at a terminal.
  ProfileText& Flow(const std::string& terminal, const std::string& p, const std::string& q) {
    return Add("SvPowerFlow", "flow of " + terminal,
               {{"SvPowerFlow.Terminal", "#" + terminal}, {"SvPowerFlow.p", p}, {"SvPowerFlow.q", q}});
  }

  std::string Text() const { return kBegin + m_objects + "</rdf:RDF>\n"; }

  static constexpr const char* kBegin =
      "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
      "<rdf:RDF xmlns:rdf=\"http://www.w3.org/1999/02/22-rdf-syntax-ns#\" "
      "xmlns:md=\"http://iec.ch/TC57/61970-552/ModelDescription/1#\" xmlns:cim=\"http://iec.ch/TC57/CIM100#\">\n"
      "<md:FullModel rdf:about=\"urn:uuid:model\">\n"
      "<md:Model.profile>http://iec.ch/TC57/ns/CIM/CoreEquipment-EU/3.0</md:Model.profile>\n"
      "<md:Model.profile>http://iec.ch/TC57/ns/CIM/SteadyStateHypothesis-EU/3.0</md:Model.profile>\n"
      "<md:Model.profile>http://iec.ch/TC57/ns/CIM/StateVariables-EU/3.0</md:Model.profile>\n"
      "<md:Model.profile>http://iec.ch/TC57/ns/CIM/Topology-EU/3.0</md:Model.profile>\n"
      "</md:FullModel>\n";

 private:
  ProfileText& Write(const std::string& type, const std::string& key, const std::string& name, const Values& values) {
    m_objects += "<cim:" + type + " " + key + ">\n";
    bool isNamed = name.empty();
    for (const auto& [property, value] : values) {
      isNamed = isNamed || property == "IdentifiedObject.name";
      m_objects += "<cim:" + property;
      if (value.starts_with('#')) {
        m_objects += " rdf:resource=\"#_" + value.substr(1) + "\"/>\n";
      } else {
        m_objects += ">" + value + "</cim:" + property + ">\n";
      }
    }
    if (!isNamed) m_objects += "<cim:IdentifiedObject.name>" + name + "</cim:IdentifiedObject.name>\n";
    m_objects += "</cim:" + type + ">\n";
    return *this;
  }

  std::string m_objects;
};

/// Files of a set in a folder of their own.
class SetFolder {
 public:
  std::string Path() const { return m_folder.path().toStdString(); }

  std::string Write(const std::string& name, const std::string& bytes) const {
    const QString path = m_folder.filePath(QString::fromStdString(name));
    QFile file(path);
    if (file.open(QIODevice::WriteOnly)) file.write(bytes.data(), static_cast<qint64>(bytes.size()));
    return path.toStdString();
  }

 private:
  QTemporaryDir m_folder;
};

/// A grid that was imported from texts, a file each.
struct Imported : tools::test::ImportedTables {
  explicit Imported(const std::vector<std::string>& texts, const ImportOptions& options = {}) {
    const SetFolder folder;
    for (std::size_t i = 0; i < texts.size(); ++i) folder.Write(std::to_string(i) + ".xml", texts[i]);
    report = Import({folder.Path()}, options, model);
  }
  explicit Imported(const ProfileText& profile, const ImportOptions& options = {})
      : Imported(std::vector<std::string>{profile.Text()}, options) {}
};

/// The line with which `work` fails, empty when it doesn't.
template <class Work>
std::string FailureOf(const Work& work) {
  try {
    work();
  } catch (const Failure& failure) {
    return failure.what();
  }
  return "";
}

}  // namespace dtsdb::tools::cgmes::test
