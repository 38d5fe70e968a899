/// \file
/// Small XIIDM networks as texts, and models made of them.
#pragma once

#include <QBuffer>
#include <string>

#include "formats/failure.h"
#include "formats/xiidm/import.h"
#include "formats/xiidm/reader.h"
#include "tests/formats/imported_tables.h"

namespace dtsdb::tools::xiidm::test {

inline constexpr const char* kNewest = "http://www.powsybl.org/schema/iidm/1_17";

/// A network with `body` in it, of the version that the namespace names.
inline std::string NetworkText(const std::string& body, const std::string& uri = kNewest) {
  return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<iidm:network xmlns:iidm=\"" + uri +
         "\" id=\"net\" caseDate=\"2026-01-01T00:00:00.000Z\" forecastDistance=\"0\" sourceFormat=\"test\">\n" + body +
         "</iidm:network>\n";
}

/// A substation "S" with a node-breaker level "V" of 220 kV: `topology` in its topology, `equipment` behind it.
inline std::string Level(const std::string& topology, const std::string& equipment = "", const std::string& id = "V") {
  return "<iidm:substation id=\"S" + id + "\" country=\"FR\">\n<iidm:voltageLevel id=\"" + id +
         "\" nominalV=\"220.0\" topologyKind=\"NODE_BREAKER\">\n<iidm:nodeBreakerTopology>\n" + topology +
         "</iidm:nodeBreakerTopology>\n" + equipment + "</iidm:voltageLevel>\n</iidm:substation>\n";
}

/// The same as a bus-breaker level with the buses "B1" and "B2".
inline std::string BusLevel(const std::string& equipment, const std::string& switches = "") {
  return "<iidm:voltageLevel id=\"V\" nominalV=\"220.0\" topologyKind=\"BUS_BREAKER\">\n<iidm:busBreakerTopology>\n"
         "<iidm:bus id=\"B1\" v=\"225.5\" angle=\"1.5\"/>\n<iidm:bus id=\"B2\"/>\n" +
         switches + "</iidm:busBreakerTopology>\n" + equipment + "</iidm:voltageLevel>\n";
}

inline Network Read(const std::string& text) {
  QByteArray bytes = QByteArray::fromStdString(text);
  QBuffer input(&bytes);
  input.open(QIODevice::ReadOnly);
  return ReadNetwork(input, "a.xiidm");
}

/// A model made of a text.
struct Imported : tools::test::ImportedTables {
  explicit Imported(const std::string& text, const ImportOptions& options = {}) {
    report = ImportNetwork(Read(text), options, model);
  }
};

inline std::string Real(const QString& id) { return TextFromId(id).toStdString(); }

/// The reason for which an object of this class was left out or mapped otherwise, empty for none.
inline std::string WhyOf(const std::vector<ImportReport::Exception>& exceptions, const std::string& type) {
  for (const ImportReport::Exception& exception : exceptions) {
    if (exception.type == type) return exception.why;
  }
  return "";
}

/// The line with which a text is refused, empty when it isn't.
inline std::string FaultOf(const std::string& text) {
  try {
    Imported grid(text);
  } catch (const Failure& failure) {
    return failure.what();
  }
  return "";
}

}  // namespace dtsdb::tools::xiidm::test
