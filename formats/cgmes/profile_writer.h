/// \file
/// Writes one file of CGMES profiles.
#pragma once

#include <QXmlStreamWriter>
#include <filesystem>
#include <string>
#include <vector>

#include "formats/cgmes/profile.h"
#include "model/whole_file.h"

namespace dtsdb::tools::cgmes {

/// What the header of a written profile states.
struct Header {
  ProfileKind kind = ProfileKind::kTopology;  ///< TP or SV
  std::string version;                        ///< of CGMES: "2.4.15" or "3.0"
  std::string mrid;
  std::string created;                 ///< time, as in 2022-06-16T23:30:00Z
  std::string scenarioTime;            ///< likewise
  std::string authority;               ///< the modelling authority set; empty for none
  std::vector<std::string> dependsOn;  ///< mRIDs of profiles
};

/// The file appears under its name when it is whole. Texts are UTF-8. Throws Failure when it can't be written.
class ProfileWriter {
 public:
  ProfileWriter(const std::filesystem::path& path, const Header& header);
  ProfileWriter(const ProfileWriter&) = delete;
  ProfileWriter& operator=(const ProfileWriter&) = delete;

  /// Begins an object that the file defines.
  void Define(const char* type, const std::string& mrid);
  /// Begins more about an object of another file.
  void About(const char* type, const std::string& mrid);
  /// Its name, no longer than the version allows, and where the version asks for it its mRID.
  void Name(const std::string& name, const std::string& mrid);
  void Refer(const char* property, const std::string& mrid);
  void EndObject() { m_xml.writeEndElement(); }

  /// Ends the file and gives it its name.
  void Finish();

 private:
  void WriteHeader(const Header& header);
  void HeaderText(const char* property, const std::string& text);

  std::string m_path;
  bool m_isNew;  ///< of CGMES 3.0
  WholeFile m_file;
  QXmlStreamWriter m_xml;
};

}  // namespace dtsdb::tools::cgmes
