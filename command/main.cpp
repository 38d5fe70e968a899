#include <fcntl.h>
#include <unistd.h>

#include <atomic>
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

std::atomic<bool> memoryHasFailed = false;

[[noreturn]] void NoteWantOfMemory() {
  memoryHasFailed = true;
  throw std::bad_alloc();
}

/// Whether the exception that nobody catches is for want of memory. A library that lets none out may end the program
/// before it counts as one that is handled.
bool IsForWantOfMemory() {
  try {
    if (const std::exception_ptr thrown = std::current_exception()) std::rethrow_exception(thrown);
  } catch (const std::bad_alloc&) {
    return true;
  } catch (...) {
    return false;
  }
  return memoryHasFailed;
}

/// The end where memory fails in a function of a library that lets no exception out: like any other end for want of
/// memory.
[[noreturn]] void EndWithoutCatch() {
  if (!IsForWantOfMemory()) std::abort();  // a fault of the program
  dtsdb::tools::ReportNoMemory();
  dtsdb::tools::RemoveTemporaryFolders();
  ::_exit(dtsdb::tools::kExitFile);
}

}  // namespace

int main(int argc, char** argv) {
  OpenMissingStreams();
  std::set_new_handler(NoteWantOfMemory);
  std::set_terminate(EndWithoutCatch);
  return dtsdb::tools::RunCommand(argc, argv);
}
