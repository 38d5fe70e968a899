/// \file
/// Commands that write something, and what stands in their folder before and after them.
#pragma once

#include <map>
#include <memory>
#include <ostream>
#include <string>
#include <vector>

#include "tests/support/command_runner.h"

namespace dtsdb::tools::test {

/// What a folder contains, by the names in it: of a file its bytes, of a folder those of all its files, of a realtime
/// database its rows. Its lock files are left out, and of a log the times.
using Contents = std::map<std::string, std::string>;

/// What stands where no file is. A realtime database that has been made and got no rows counts as none.
inline constexpr const char* kNothing = "nothing";

Contents ContentsOf(const std::filesystem::path& folder);

/// A command with its folder as it is before.
class Scenario {
 public:
  /// `preparation` are commands that make what the folder contains beside the sample network `good`.
  Scenario(std::string name, std::string command, std::vector<std::string> preparation = {});

  const std::string& Name() const { return m_name; }
  QStringList Command() const;
  /// Whether libraries take part that end the program by themselves where memory fails: Graphviz and libarchive.
  bool MayEndOtherwise() const { return m_name == "Draw" || m_name == "Report" || m_name == "Xiidm"; }
  bool WritesStore() const { return m_command.find("rtdb") != std::string::npos; }
  /// Makes the folder. A test fails where that can't be done.
  void Prepare();
  /// Puts the folder back as Prepare has left it.
  void Restore() const;
  const Workplace& Place() const { return *m_place; }

  const Contents& Before() const { return m_before; }
  /// What stands there when the command has done its work; taken by the first call.
  const Contents& After();

 private:
  std::string m_name;
  std::string m_command;
  std::vector<std::string> m_preparation;
  std::shared_ptr<Workplace> m_place;
  std::shared_ptr<Workplace> m_kept;
  Contents m_before;
  Contents m_after;
};

void PrintTo(const Scenario& scenario, std::ostream* stream);

/// The commands of the program that write, one of each kind.
std::vector<Scenario> WritingCommands();

}  // namespace dtsdb::tools::test
