#include <fcntl.h>
#include <unistd.h>

#include <cstdlib>
#include <exception>
#include <new>

#include "command/commands.h"
#include "formats/failure.h"
#include "formats/temporary_folder.h"

namespace {

/// Gives standard streams that the command was started without something to lead to: a file that is opened later must
/// not get their descriptors, and with them what is printed.
void OpenMissingStreams() {
  int opened = 0;
  do {
    opened = ::open("/dev/null", O_RDWR);
  } while (opened >= 0 && opened <= STDERR_FILENO);
  if (opened >= 0) ::close(opened);
}

/// The end where memory fails in a function of a library that lets no exception out: like any other end for want of
/// memory.
[[noreturn]] void EndForWantOfMemory() {
  try {
    if (const std::exception_ptr thrown = std::current_exception()) std::rethrow_exception(thrown);
  } catch (const std::bad_alloc&) {
    dtsdb::tools::ReportNoMemory();
    dtsdb::tools::RemoveTemporaryFolders();
    ::_exit(dtsdb::tools::kExitFile);
  } catch (...) {  // a fault of the program
    std::abort();
  }
  std::abort();
}

}  // namespace

int main(int argc, char** argv) {
  OpenMissingStreams();
  std::set_terminate(EndForWantOfMemory);
  return dtsdb::tools::RunCommand(argc, argv);
}
