/// \file
/// What a user calls a model by.
#pragma once

#include <string>
#include <vector>

#include "formats/import_options.h"

namespace dtsdb::tools {

enum class ModelForm { kObjectFile, kTextTables, kRealtimeDatabase, kCgmes, kXiidm };

/// The name of a form for people.
const char* FormName(ModelForm form);

/// A MODEL of the command line: the path of an object file, of a folder of text tables, of CGMES profiles (a folder, a
/// file, a zip archive) or of an XIIDM file, rtdb:NAME, cgmes:PATH,PATH for CGMES profiles in several places, or
/// xiidm:FILE for a file that is to be XIIDM.
///
/// The command line is read into it once; everything behind asks it and reads no prefix of its own.
class ModelName {
 public:
  ModelName() = default;
  explicit ModelName(const std::string& text);

  /// The realtime database NAME, written with or without "rtdb:" in front of it.
  static ModelName OfDatabase(const std::string& text);

  /// As the user wrote it. Messages name the model so.
  const std::string& Text() const { return m_text; }
  bool IsEmpty() const { return m_text.empty(); }
  bool IsDatabase() const { return m_isDatabase; }

  /// The path of the file or folder; of a database its NAME, a path with or without the ending .fdb. Of several paths
  /// the text that names them.
  const std::string& Path() const { return m_path; }
  /// The paths of CGMES profiles: those behind "cgmes:", or else Path().
  std::vector<std::string> Paths() const;

  /// The form of the model to read: CGMES profiles and XIIDM by their content; any other folder holds text tables, and
  /// any other path is an object file. Looks at the path as it is now.
  ModelForm Form() const;

  /// How a grid in an exchange format is read.
  const ImportOptions& Import() const { return m_import; }
  ImportOptions& Import() { return m_import; }

  /// The form in which a model is to be written unless the user chooses one: XIIDM over such a file and to a name that
  /// ends as its files do (.xiidm, .iidm, the same with .gz); text tables to a folder that exists, a name that ends in
  /// '/' and a name without extension; an object file to any other path. Never CGMES, which no model is written in.
  ModelForm FormAsOutput() const;

 private:
  std::string m_text;
  std::string m_path;
  bool m_isDatabase = false;
  bool m_isCgmes = false;
  bool m_isXiidm = false;
  ImportOptions m_import;
};

}  // namespace dtsdb::tools
