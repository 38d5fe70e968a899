#include "tests/faults/fault_plan.h"

#include <sys/mman.h>

namespace dtsdb::test::fault {

Plan& ThePlan() {
  static Plan plan;
  return plan;
}

int RealOpen(const char* path, int flags, mode_t mode) {
  static int (*next)(const char*, int, ...) = nullptr;
  return Next(next, "open64")(path, flags, mode);
}
ssize_t RealWrite(int file, const void* bytes, std::size_t size) {
  static ssize_t (*next)(int, const void*, std::size_t) = nullptr;
  return Next(next, "write")(file, bytes, size);
}
int RealClose(int file) {
  static int (*next)(int) = nullptr;
  return Next(next, "close")(file);
}

void Plan::MapCounts(const char* path) {
  const int file = RealOpen(path, O_RDWR | O_CLOEXEC, 0);
  static void* (*next)(void*, std::size_t, int, int, int, off64_t) = nullptr;
  void* const at_ = Next(next, "mmap64")(nullptr, sizeof(CallCounts), PROT_READ | PROT_WRITE, MAP_SHARED, file, 0);
  RealClose(file);
  if (at_ != MAP_FAILED) counts = static_cast<CallCounts*>(at_);
}

/// Under a high number, so that the program's own descriptors are what they would be.
void Plan::OpenRecord(const char* path) {
  const int file = RealOpen(path, O_WRONLY | O_APPEND | O_CLOEXEC, 0);
  record = ::fcntl(file, F_DUPFD_CLOEXEC, 900);
  RealClose(file);
}

bool Fails(CallKind kind) {
  Plan& plan = ThePlan();
  if (plan.counts == nullptr) return false;
  const long number = ++plan.counts->calls[static_cast<std::size_t>(kind)];
  if (static_cast<int>(kind) != plan.kind || plan.at == 0) return false;
  if (number != plan.at && (!plan.stays || number < plan.at)) return false;
  ++plan.counts->failed;
  return true;
}

namespace {

bool FailsAt(CallKind kind, const Place& place) {
  if (!place.IsBelow() || !Fails(kind)) return false;
  errno = ThePlan().error;
  return true;
}

}  // namespace

bool FileFails(CallKind kind, int file) {
  const int before = errno;
  if (FailsAt(kind, Place(file))) return true;
  errno = before;
  return false;
}
bool PathFails(CallKind kind, int folder, const char* path) {
  const int before = errno;
  if (FailsAt(kind, Place(folder, path))) return true;
  errno = before;
  return false;
}

}  // namespace dtsdb::test::fault
