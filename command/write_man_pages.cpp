// Writes the manual pages of the command: write_man_pages FOLDER DATE

#include <iostream>

#include "command/commands.h"
#include "command/man_page.h"
#include "formats/failure.h"
#include "formats/files.h"

namespace {

using dtsdb::tools::CommandOutline;

void WritePages(const CommandOutline& command, const CommandOutline& program, const std::string& folder,
                const std::string& date) {
  const std::string page = dtsdb::tools::ManPage(command, program, "dtsdb " DTSDB_VERSION, date);
  dtsdb::tools::WriteFile(folder + '/' + dtsdb::tools::ManPageFile(command), page);
  for (const CommandOutline& other : command.commands) WritePages(other, program, folder, date);
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 3) {
    std::cerr << "usage: write_man_pages FOLDER DATE\n";
    return dtsdb::tools::kExitUsage;
  }
  try {
    const CommandOutline program = dtsdb::tools::OutlineOfProgram();
    WritePages(program, program, argv[1], argv[2]);
    return dtsdb::tools::kExitGood;
  } catch (const std::exception& failure) {
    std::cerr << failure.what() << '\n';
    return dtsdb::tools::kExitFile;
  }
}
