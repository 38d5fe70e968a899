#include "formats/cgmes/set.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <algorithm>
#include <iterator>

#include "formats/cgmes/reader.h"
#include "formats/cgmes/source.h"
#include "formats/failure.h"
#include "formats/text_layout.h"

namespace dtsdb::tools::cgmes {
namespace {

constexpr ProfileKind kStates[] = {ProfileKind::kSteadyState, ProfileKind::kTopology, ProfileKind::kStateVariables};

/// Refuses two states of one grid: which of them is meant can't be known.
void CheckTimes(const std::vector<Profile>& profiles) {
  for (const ProfileKind kind : kStates) {
    for (const Profile& profile : profiles) {
      const auto differs = [&](const Profile& other) {
        return other.Is(kind) && other.authority == profile.authority && other.scenarioTime != profile.scenarioTime;
      };
      const auto other = std::find_if(profiles.begin(), profiles.end(), differs);
      if (!profile.Is(kind) || other == profiles.end()) continue;
      throw Failure(kExitFile, fmt::format("{} and {} are two states of one grid, of {} and {}; name the files of one "
                                           "state only, as cgmes:FILE,FILE",
                                           profile.file, other->file, profile.scenarioTime, other->scenarioTime));
    }
  }
}

/// An mRID for a message, of which a line shows no more than names it.
std::string Shown(const std::string& mrid) {
  constexpr std::size_t kMost = 64;
  if (mrid.size() <= kMost) return OneLine(mrid);
  return OneLine(mrid.substr(0, kMost)) + "...";
}

/// The end of a description: where an object is defined, nothing for nowhere.
std::string PlaceOf(const std::vector<Profile>& profiles, int file, int line) {
  if (file == Objects::kNone) return "";
  return fmt::format(", {}, line {}", profiles[static_cast<std::size_t>(file)].file, line);
}

}  // namespace

bool ProfileSet::Has(ProfileKind kind) const {
  return std::any_of(profiles.begin(), profiles.end(), [kind](const Profile& profile) { return profile.Is(kind); });
}

bool ProfileSet::AreOfTwoAuthorities(int a, int b) const {
  const int one = objects.File(a);
  const int other = objects.File(b);
  if (one == Objects::kNone || other == Objects::kNone) return false;
  return profiles[static_cast<std::size_t>(one)].authority != profiles[static_cast<std::size_t>(other)].authority;
}

std::string ProfileSet::Describe(int object) const {
  const int type = objects.Class(object);
  std::string text = type == Objects::kNone ? "object" : objects.ClassName(type);
  if (objects.Has(object, kName)) text += " " + Quoted(objects.Text(object, kName));
  return text + fmt::format(" (mRID {}{})", Shown(objects.Mrid(object)),
                            PlaceOf(profiles, objects.File(object), objects.Line(object)));
}

std::string ProfileSet::Describe(const Objects::Clash& clash) const {
  return fmt::format("{} (mRID {}{}), first a {}", objects.ClassName(clash.type), Shown(objects.Mrid(clash.object)),
                     PlaceOf(profiles, clash.file, clash.line), Describe(clash.object));
}

ProfileSet ReadSet(const std::vector<std::string>& paths, const ReadingProgress& progress) {
  ProfileSet set;
  const auto read = [&set](QIODevice& input, const std::string& name) {
    const int file = static_cast<int>(set.profiles.size());
    set.profiles.push_back(ReadProfile(input, name, file, set.objects));
  };
  std::uint64_t total = 0;
  for (const std::string& path : paths) total += SizeOf(path);
  std::uint64_t done = 0;
  const auto count = [&](std::uint64_t bytes) {
    done += bytes;
    if (progress) progress(done, total);
  };
  for (const std::string& path : paths) ForEachFile(path, read, count);
  if (set.profiles.empty()) {
    throw Failure(kExitFile, fmt::format("{}: there are no CGMES profiles", fmt::join(paths, ",")));
  }
  CheckTimes(set.profiles);
  return set;
}

}  // namespace dtsdb::tools::cgmes
