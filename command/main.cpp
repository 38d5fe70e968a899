#include <fcntl.h>
#include <unistd.h>

#include "command/commands.h"

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

}  // namespace

int main(int argc, char** argv) {
  OpenMissingStreams();
  return dtsdb::tools::RunCommand(argc, argv);
}
