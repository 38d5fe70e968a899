/// \file
/// A set of CGMES profiles, read.
#pragma once

#include <string>
#include <vector>

#include "formats/cgmes/objects.h"
#include "formats/cgmes/profile.h"
#include "formats/reading_progress.h"

namespace dtsdb::tools::cgmes {

struct ProfileSet {
  std::vector<Profile> profiles;  ///< in the order in which they were read
  Objects objects;                ///< Objects::File is a place in `profiles`

  bool Has(ProfileKind kind) const;
  /// True when two objects are defined by files of different modelling authorities.
  bool AreOfTwoAuthorities(int a, int b) const;
  /// An object for a message: class, name, mRID, and the file and line that define it.
  std::string Describe(int object) const;
  /// The same for a definition that doesn't count, with the one that does.
  std::string Describe(const Objects::Clash& clash) const;
};

/// Reads the files, folders and zip archives `paths` as one set. Throws Failure for what can't be read, when there is
/// no profile at all, and when one authority has given two states (SSH, SV or TP) of different times.
ProfileSet ReadSet(const std::vector<std::string>& paths, const ReadingProgress& progress = {});

}  // namespace dtsdb::tools::cgmes
