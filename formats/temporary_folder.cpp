#include "formats/temporary_folder.h"

#include <dirent.h>
#include <fcntl.h>
#include <poll.h>
#include <pthread.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <cerrno>
#include <system_error>
#include <vector>

#include "formats/files.h"
#include "include/write_whole.h"

namespace fs = std::filesystem;

namespace dtsdb::tools {
namespace {

/// The signals by which a user, a terminal, a pipe or a service manager ends a program.
constexpr std::array kEndingSignals = {SIGHUP, SIGINT, SIGQUIT, SIGPIPE, SIGTERM};

/// The folders that this process has, for the thread whose turn it is. That thread holds its signals: the handler finds
/// the list whole, and never waits for the thread that it has interrupted.
std::vector<const TemporaryFolder*> folders;
std::atomic<pthread_t> turnOf{};

/// Waits until no other thread has its turn. A handler may take no lock of the system, but it may do this.
void TakeTurn() {
  for (pthread_t nobody{}; !turnOf.compare_exchange_strong(nobody, ::pthread_self()); nobody = {}) {
    if (nobody == ::pthread_self()) return;  // an early end in the middle of it
    ::poll(nullptr, 0, 1);
  }
}

extern "C" void EndBySignal(int signal) {
  RemoveTemporaryFolders();
  ::raise(signal);  // takes effect on the way out, by the default that SA_RESETHAND has put back
}

/// Lets EndBySignal handle the ending signals that would end the process now: not those that it ignores or handles.
void HandleEndingSignals() {
  for (const int signal : kEndingSignals) {
    struct sigaction now {};
    if (::sigaction(signal, nullptr, &now) != 0 || now.sa_handler != SIG_DFL) continue;
    struct sigaction handled {};
    handled.sa_handler = EndBySignal;
    handled.sa_flags = static_cast<int>(SA_RESETHAND);
    ::sigfillset(&handled.sa_mask);
    ::sigaction(signal, &handled, nullptr);
  }
}

/// Removes the temporary folders in `parent` whose processes are gone.
void RemoveLeftovers(const fs::path& parent) {
  std::vector<fs::path> found;
  std::error_code error;
  for (fs::directory_iterator entry(parent, error), end; !error && entry != end; entry.increment(error)) {
    if (IsTemporaryName(entry->path().filename().string())) found.push_back(entry->path());
  }
  for (const fs::path& folder : found) {
    const FolderLock lock(folder);
    if (lock.IsHeld() && lock.Folder().IsAt(folder)) RemoveFolder(folder.c_str());
  }
}

}  // namespace

void RemoveTemporaryFolders() {
  TakeTurn();  // for good: no other thread makes a folder before the process has ended
  for (const TemporaryFolder* folder : folders) RemoveFolder(folder->Path().c_str());
}

SignalsHeld::SignalsHeld() {
  sigset_t held;
  ::sigemptyset(&held);
  for (const int signal : kEndingSignals) ::sigaddset(&held, signal);
  ::pthread_sigmask(SIG_BLOCK, &held, &m_before);
  TakeTurn();
}

SignalsHeld::~SignalsHeld() {
  turnOf = {};
  ::pthread_sigmask(SIG_SETMASK, &m_before, nullptr);
}

OpenFolder::OpenFolder(const fs::path& folder, int flags)
    : m_descriptor(::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC | flags)) {}

OpenFolder::~OpenFolder() {
  if (m_descriptor != -1) ::close(m_descriptor);
}

bool OpenFolder::IsAt(const fs::path& folder) const {
  struct stat opened {};
  struct stat named {};
  return ::fstat(m_descriptor, &opened) == 0 && ::stat(folder.c_str(), &named) == 0 && opened.st_dev == named.st_dev &&
         opened.st_ino == named.st_ino;
}

FolderLock::FolderLock(const fs::path& folder)
    : m_folder(folder, O_NOFOLLOW),
      m_error(m_folder.IsOpen() && ::flock(m_folder.Descriptor(), LOCK_EX | LOCK_NB) == 0 ? 0 : errno) {}

void RemoveFolder(const char* path) {
  const int folder = ::open(path, O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC);
  if (folder == -1) return;
  alignas(dirent64) char entries[4096];
  for (bool removed = true; removed;) {  // removing while reading may pass entries over
    removed = false;
    ::lseek(folder, 0, SEEK_SET);
    for (ssize_t size = 0; (size = ::getdents64(folder, entries, sizeof entries)) > 0;) {
      for (ssize_t at = 0; at < size;) {
        const auto* const entry = reinterpret_cast<const dirent64*>(entries + at);
        if (::unlinkat(folder, entry->d_name, 0) == 0) removed = true;
        at += entry->d_reclen;
      }
    }
  }
  ::close(folder);
  ::rmdir(path);
}

TemporaryFolder::TemporaryFolder(const fs::path& parent, const std::string& front, mode_t mode,
                                 const fs::path& target) {
  std::error_code error;
  const fs::path place = fs::absolute(parent.empty() ? "." : parent, error);
  RemoveLeftovers(place);
  const SignalsHeld held;
  HandleEndingSignals();
  while (!Make(place, front, mode, target)) continue;
  folders.push_back(this);
}

/// Makes and locks a folder. False when its name is in use, or when another process, which locks it first to see that
/// it is no leftover, has come in between.
bool TemporaryFolder::Make(const fs::path& parent, const std::string& front, mode_t mode, const fs::path& target) {
  m_path = parent / NewTemporaryName(front);
  if (::mkdir(m_path.c_str(), mode) != 0) {
    if (errno == EEXIST) return false;
    RefuseFile(target, "can't be written: " + std::generic_category().message(errno));
  }
  m_lock = std::make_unique<FolderLock>(m_path);
  if (m_lock->Folder().IsOpen()) return !m_lock->IsHeldElsewhere() && m_lock->Folder().IsAt(m_path);
  if (errno == ENOENT) return false;
  const std::string reason = std::generic_category().message(errno);
  ::rmdir(m_path.c_str());
  RefuseFile(target, "can't be written: " + reason);
}

TemporaryFolder::~TemporaryFolder() {
  RemoveFolder(m_path.c_str());
  const SignalsHeld held;
  folders.erase(std::remove(folders.begin(), folders.end(), this), folders.end());
}

}  // namespace dtsdb::tools
