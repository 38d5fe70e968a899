// The part of the fault library that makes allocations fail, from main on.
#include <cerrno>
#include <cstddef>

#include "tests/faults/fault_plan.h"

extern "C" {
void* __libc_malloc(std::size_t);
void* __libc_calloc(std::size_t, std::size_t);
void* __libc_realloc(void*, std::size_t);
void* __libc_memalign(std::size_t, std::size_t);
}

namespace {

using dtsdb::test::CallKind;
using dtsdb::test::fault::Fails;
using dtsdb::test::fault::Next;

bool armed = false;  // once main has begun

bool MemoryFails() {
  if (!armed || !Fails(CallKind::kMemory)) return false;
  errno = ENOMEM;
  return true;
}

int (*realMain)(int, char**, char**) = nullptr;

int MainWithFaults(int argc, char** argv, char** environment) {
  dtsdb::test::fault::ThePlan();
  armed = true;
  const int result = realMain(argc, argv, environment);
  armed = false;
  return result;
}

}  // namespace

extern "C" {

int __libc_start_main(int (*program)(int, char**, char**), int argc, char** argv, void (*init)(), void (*fini)(),
                      void (*loader)(), void* stack) {
  realMain = program;
  static int (*next)(int (*)(int, char**, char**), int, char**, void (*)(), void (*)(), void (*)(), void*) = nullptr;
  return Next(next, "__libc_start_main")(MainWithFaults, argc, argv, init, fini, loader, stack);
}

void* malloc(std::size_t size) { return MemoryFails() ? nullptr : __libc_malloc(size); }
void* calloc(std::size_t count, std::size_t size) { return MemoryFails() ? nullptr : __libc_calloc(count, size); }
void* realloc(void* old, std::size_t size) { return MemoryFails() ? nullptr : __libc_realloc(old, size); }
void* memalign(std::size_t place, std::size_t size) { return MemoryFails() ? nullptr : __libc_memalign(place, size); }
void* aligned_alloc(std::size_t place, std::size_t size) { return memalign(place, size); }
int posix_memalign(void** made, std::size_t place, std::size_t size) {
  if (MemoryFails()) return ENOMEM;
  *made = __libc_memalign(place, size);
  return *made == nullptr ? ENOMEM : 0;
}

}  // extern "C"
