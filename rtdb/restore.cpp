#include "rtdb/restore.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <optional>
#include <system_error>

#include "include/internal/new_file.h"
#include "include/internal/standard_streams.h"
#include "rtdb/internal/environment.h"
#include "rtdb/internal/file_check.h"
#include "rtdb/internal/snapshot.h"
#include "rtdb/internal/status.h"
#include "rtdb/internal/store_copy.h"
#include "rtdb/internal/store_file.h"

namespace dtsdb::rtdb {
namespace {

using internal::Descriptor;
using internal::NewFile;
using internal::rtdb::Environment;
using internal::rtdb::OpeningGuard;
using internal::rtdb::Status;
using internal::rtdb::StoreFile;

std::string Because(const std::string& file, int error) { return file + ": " + std::strerror(error); }

/// The store that is to be replaced, kept from being opened meanwhile.
class OldStore {
 public:
  /// Returns what is in the way, or an empty text.
  std::string Take(const std::string& path) {
    if (Environment::IsOpenHere(path)) return path + ": this program has the store open";
    if (const Status status = m_file.Open(path, false); !status) return status.text;
    if (const Status status = m_file.CheckSingleName(); !status) return status.text;
    m_guard.emplace(m_file.Fd());
    if (const int error = m_guard->Take(); error != 0) return Because(path, error);
    const pid_t user = m_file.MarkedBy();
    if (user != 0) {
      return path + ": process " + std::to_string(user) + " has the store open; end the programs that use it";
    }
    return "";
  }
  const std::string& RealPath() const { return m_file.RealPath(); }

  /// Gives `file` the owner, where this user may, and the permissions.
  int Dress(int file) const {
    struct stat about {};
    if (::fstat(m_file.Fd(), &about) != 0) return errno;
    if (::fchown(file, about.st_uid, about.st_gid) != 0 && errno != EPERM) return errno;
    return ::fchmod(file, about.st_mode & 07777) == 0 ? 0 : errno;
  }

 private:
  StoreFile m_file;
  std::optional<OpeningGuard> m_guard;
};

/// Copies `backup` into `file`. Returns what went wrong, or an empty text.
std::string CopyInto(const std::string& backup, const NewFile& file, const std::string& store) {
  const Descriptor from(::open(backup.c_str(), O_RDONLY | O_CLOEXEC));
  struct stat about {};
  if (!from.IsOpen() || ::fstat(from.Get(), &about) != 0) return Because(backup, errno);
  if (!S_ISREG(about.st_mode)) return backup + ": is no file";
  const int error = internal::rtdb::CopyBytes(from.Get(), file.Fd());
  return error == 0 ? "" : Because(store, error);
}

/// Copies the backup, checks the copy and makes it a store of its own.
std::string Prepare(const std::string& backup, NewFile& file, const std::string& store,
                    const std::function<std::string(const std::string&)>& check) {
  if (const int error = file.Make(internal::rtdb::kFileMode); error != 0) return Because(store, error);
  if (std::string wrong = CopyInto(backup, file, store); !wrong.empty()) return wrong;
  if (const std::string wrong = internal::rtdb::CheckWholeFile(file.Fd()); !wrong.empty()) return backup + ": " + wrong;
  if (const std::string wrong = check(file.Path()); !wrong.empty()) return backup + ": " + wrong;
  const int result = internal::rtdb::AmendCopy(file.Path(), std::nullopt);
  return result == 0 ? "" : store + ": " + internal::rtdb::Reason(result);
}

std::string Place(NewFile& file, const OldStore* old, const std::string& store, const std::string& keptAs) {
  int error = old == nullptr ? 0 : old->Dress(file.Fd());
  if (error == 0) {
    error = old == nullptr ? file.TakeFreePlace() : keptAs.empty() ? file.Replace() : file.Exchange(keptAs);
  }
  if (error == 0) return "";
  if (old != nullptr && !keptAs.empty() && (error == EEXIST || error == EXDEV || error == ENOENT)) {
    return Because(keptAs, error);
  }
  if (error == EINVAL || error == ENOSYS) {
    return store + ": this file system can't exchange two files; restore without keeping the old store";
  }
  return Because(store, error);
}

}  // namespace

std::string RestoreStore(const std::string& backup, const std::string& store, const std::string& keptAs,
                         const std::function<std::string(const std::string&)>& check) {
  const internal::StandardStreamsKept kept;
  std::error_code error;
  const bool exists = std::filesystem::exists(store, error);
  if (exists && std::filesystem::equivalent(backup, store, error)) return backup + ": is the store itself";
  OldStore old;
  if (exists) {
    if (std::string wrong = old.Take(store); !wrong.empty()) return wrong;
  }
  const std::string place = exists ? old.RealPath() : std::filesystem::absolute(store, error).string();
  NewFile file(place);
  if (std::string wrong = Prepare(backup, file, store, check); !wrong.empty()) return wrong;
  return Place(file, exists ? &old : nullptr, store, keptAs);
}

}  // namespace dtsdb::rtdb
