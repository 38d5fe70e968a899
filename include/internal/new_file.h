/// \file
/// A file that is written without a name and then takes a place at once.
#pragma once

#include <sys/types.h>

#include <string>
#include <utility>

#include "include/internal/descriptor.h"

namespace dtsdb::internal {

/// A new file in the folder of its place. Until it takes that place nobody sees it, and nothing is left of it when this
/// or the whole process ends. Where the file system has no files without a name, and for the instant in which it takes
/// its place, it stands there as .NAME.dtsdb-XXXXXX; such a leftover of a killed program is removed by the next one
/// that makes a file in the same folder.
///
/// Numbers are those of errno, 0 for success.
class NewFile {
 public:
  /// `place`: a path without links.
  explicit NewFile(std::string place) : m_place(std::move(place)) {}
  NewFile(const NewFile&) = delete;
  NewFile& operator=(const NewFile&) = delete;
  ~NewFile();

  /// Makes the file, for reading and writing, with these permissions before the user's mask.
  int Make(mode_t permissions);
  int Fd() const { return m_file.Get(); }
  /// A path that leads to it as long as this lives.
  std::string Path() const { return "/proc/self/fd/" + std::to_string(m_file.Get()); }

  /// Waits until all of it is on the disk and gives it its place, over a file that is there.
  int Replace();
  /// The same where nothing may be there.
  int TakeFreePlace();
  /// The same; what was there gets the free name `old`, in one step for all who look at the place. When the process is
  /// killed just before that step, the new file is left under `old`.
  int Exchange(const std::string& old);

 private:
  int MakeNamed(mode_t permissions);
  int GiveName();
  int Move(const std::string& target, unsigned flags);
  int TakePlace(unsigned flags);

  std::string m_place;
  std::string m_name;  // the one it has beside its place; empty for none
  Descriptor m_file;
};

}  // namespace dtsdb::internal
