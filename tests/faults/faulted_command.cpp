#include "tests/faults/faulted_command.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <unistd.h>

#include <new>

namespace dtsdb::tools::test {
namespace {

/// The names under which the library finds its plan.
constexpr const char* kVariables[] = {"LD_PRELOAD", "FAULT_FOLDER", "FAULT_COUNTS", "FAULT_KIND",
                                      "FAULT_AT",   "FAULT_ERROR",  "FAULT_STAYS",  "FAULT_RECORD"};

}  // namespace

FaultLibraryLoaded::FaultLibraryLoaded(const std::filesystem::path& folder, const Fault& fault,
                                       const std::filesystem::path& record) {
  const int counts = ::memfd_create("counts", 0);
  if (::ftruncate(counts, sizeof(CallCounts)) != 0) throw std::bad_alloc();
  void* const shared = ::mmap(nullptr, sizeof(CallCounts), PROT_READ | PROT_WRITE, MAP_SHARED, counts, 0);
  if (shared == MAP_FAILED) throw std::bad_alloc();
  m_counts = static_cast<CallCounts*>(shared);
  const QByteArray path = "/proc/" + QByteArray::number(::getpid()) + "/fd/" + QByteArray::number(counts);
  m_file = counts;
  qputenv("LD_PRELOAD", FAULT_LIBRARY);
  qputenv("FAULT_FOLDER", std::filesystem::canonical(folder).c_str());
  qputenv("FAULT_COUNTS", path);
  qputenv("FAULT_KIND", QByteArray::number(static_cast<int>(fault.kind)));
  qputenv("FAULT_AT", QByteArray::number(static_cast<qlonglong>(fault.at)));
  qputenv("FAULT_ERROR", QByteArray::number(fault.error));
  if (fault.stays) qputenv("FAULT_STAYS", "1");
  if (!record.empty()) qputenv("FAULT_RECORD", record.c_str());
}

FaultLibraryLoaded::~FaultLibraryLoaded() {
  for (const char* variable : kVariables) qunsetenv(variable);
  ::munmap(m_counts, sizeof(CallCounts));
  ::close(m_file);
}

FaultedResult RunWithFault(const Workplace& place, const QStringList& arguments, const Fault& fault) {
  const FaultLibraryLoaded loaded(place.Path(), fault);
  FaultedResult result;
  static_cast<CommandResult&>(result) = place.Run(arguments);
  result.calls = loaded.Counts().calls[static_cast<std::size_t>(fault.kind)];
  result.failed = loaded.Counts().failed > 0;
  return result;
}

}  // namespace dtsdb::tools::test
