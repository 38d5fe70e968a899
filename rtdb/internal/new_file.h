/// \file
/// A file that is written without a name and then takes a place at once.
#pragma once

#include <string>

#include "rtdb/internal/store_file.h"

namespace dtsdb::internal::rtdb {

/// A new file in the folder of its place. Until it takes that place nobody sees it, and nothing is left of it when this
/// or the whole process ends. On a file system without nameless files it has a hidden name, and is removed with this.
/// Numbers are those of errno, 0 for success.
class NewFile {
 public:
  /// `place`: a path without links.
  explicit NewFile(std::string place) : m_place(std::move(place)) {}
  NewFile(const NewFile&) = delete;
  NewFile& operator=(const NewFile&) = delete;
  ~NewFile();

  /// Makes the file, for reading and writing.
  int Make();
  int Fd() const { return m_file.Get(); }
  /// A path that leads to it as long as this lives.
  std::string Path() const { return "/proc/self/fd/" + std::to_string(m_file.Get()); }

  /// Waits until all of it is on the disk and gives it its place, over a file that is there.
  int Replace();
  /// The same where nothing may be there.
  int TakeFreePlace();
  /// The same; what was there gets the free name `old`, in one step for all who look at the place.
  int Exchange(const std::string& old);

 private:
  int GiveName();

  std::string m_place;
  std::string m_name;  // the hidden one; empty for none
  Descriptor m_file;
};

}  // namespace dtsdb::internal::rtdb
