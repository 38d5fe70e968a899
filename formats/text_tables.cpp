#include "formats/text_tables.h"

#include <QString>
#include <filesystem>
#include <map>
#include <set>
#include <system_error>

#include "formats/catalog.h"
#include "formats/failure.h"
#include "formats/files.h"
#include "formats/folder_replacement.h"
#include "formats/nearest.h"
#include "formats/text_layout.h"
#include "formats/text_table_file.h"

namespace fs = std::filesystem;

namespace dtsdb::tools {
namespace {

constexpr const char* kSuffix = ".csv";

/// What stands in a folder of text tables.
struct Listing {
  std::set<std::string> tables;   // file names of text tables
  std::set<std::string> unknown;  // file names that end like a text table's and name no table
  std::set<std::string> others;   // everything else
};

bool EndsLikeTable(const fs::path& name) {
  return QString::fromStdString(name.extension().string()).toLower() == QLatin1String(kSuffix);
}

Listing List(const fs::path& folder) {
  Listing listing;
  std::error_code error;
  fs::directory_iterator entry(folder, error);
  for (; !error && entry != fs::directory_iterator(); entry.increment(error)) {
    const fs::path name = entry->path().filename();
    if (name.extension() == kSuffix && FindTable(name.stem().string()) != KIND_NONE) {
      listing.tables.insert(name.string());
    } else if (EndsLikeTable(name)) {
      listing.unknown.insert(name.string());
    } else {
      listing.others.insert(name.string());
    }
  }
  if (error) RefuseFile(folder, "can't be read: " + error.message());
  return listing;
}

/// The bytes of a text table. A pipe or device of such a name would be waited for or have no end.
std::string ReadTable(const fs::path& path) {
  std::error_code ignored;
  if (fs::is_other(path, ignored)) RefuseFile(path, "can't be read: it is a pipe or device");
  return ReadFile(path);
}

/// What a folder holds, with the bytes of its text tables by file name.
struct Contents {
  Listing listing;
  std::map<std::string, std::string> tables;
};

Contents ReadOnce(const fs::path& folder) {
  Contents contents{List(folder), {}};
  for (const std::string& name : contents.listing.tables) contents.tables[name] = ReadTable(folder / name);
  return contents;
}

/// Reads a folder that may be replaced meanwhile: again, until it was the same one from beginning to end.
Contents ReadWhole(const fs::path& folder) {
  constexpr int kRetries = 100;
  for (int attempt = 1;; ++attempt) {
    FindTextTables(folder.string());
    const OpenFolder begun(folder);
    const auto isSettled = [&] { return attempt == kRetries || !begun.IsOpen() || begun.IsAt(folder); };
    try {
      Contents contents = ReadOnce(folder);
      if (isSettled()) return contents;
    } catch (const Failure&) {
      if (isSettled()) throw;
    }
  }
}

[[noreturn]] void RefuseUnknownTable(const fs::path& folder, const std::string& name) {
  std::vector<std::string> known;
  for (const std::string& table : TableNames()) known.push_back(table + kSuffix);
  RefuseFile(folder / name, "there is no table of this name" + DidYouMean(name, known));
}

/// The folder without links; it may not exist yet.
fs::path Resolved(const std::string& folder, std::error_code& error) {
  fs::path path = fs::weakly_canonical(folder, error);
  return path.has_filename() ? path : path.parent_path();
}

/// Refuses to replace anything but a folder with nothing but text tables in it.
void CheckReplaceable(const std::string& folder, const fs::path& target) {
  std::error_code error;
  if (!fs::exists(target, error)) return;
  if (!fs::is_directory(target, error)) RefuseFile(folder, "isn't replaced: it is a file, not a folder");
  const Listing listing = List(target);
  for (const auto* names : {&listing.unknown, &listing.others}) {
    if (!names->empty()) {
      RefuseFile(folder, "isn't replaced: it holds " + Quoted(*names->begin()) + ", which is no text table");
    }
  }
}

}  // namespace

bool FindTextTables(const std::string& folder) {
  std::error_code error;
  const fs::path target = Resolved(folder, error);
  if (!error) RecoverFolder(target);
  return fs::is_directory(folder, error);
}

void ReadTextTables(const std::string& folder, DTSDB& database, const ReadingProgress& progress) {
  const Contents contents = ReadWhole(folder);
  const Listing& listing = contents.listing;
  if (!listing.unknown.empty()) RefuseUnknownTable(folder, *listing.unknown.begin());
  if (listing.tables.empty() && !listing.others.empty()) {
    RefuseFile(folder, "holds no text tables (CO.csv, KV.csv and so on)");
  }
  std::uint64_t total = 0;
  for (const auto& [name, bytes] : contents.tables) total += bytes.size();
  std::uint64_t done = 0;
  for (const AnyTable& table : AllTables(database)) {
    const std::string name = table.Info().name + std::string(kSuffix);
    const auto found = contents.tables.find(name);
    if (found == contents.tables.end()) continue;
    ReadTextTable((fs::path(folder) / name).string(), found->second, table);
    done += found->second.size();
    if (progress) progress(done, total);
  }
}

TextTableBytes ReadTextTableBytes(const std::string& folder) {
  FindTextTables(folder);
  const Listing listing = List(folder);
  if (listing.tables.empty() && listing.unknown.empty() && !listing.others.empty()) {
    RefuseFile(folder, "holds no text tables (CO.csv, KV.csv and so on)");
  }
  TextTableBytes found;
  for (const std::string& name : listing.unknown) found.faults[name] = "there is no table of this name";
  for (const std::string& name : listing.tables) {
    const std::string table = fs::path(name).stem().string();
    try {
      found.tables[table] = ReadTable(fs::path(folder) / name);
    } catch (const Failure& failure) {
      found.faults[table] = failure.what();
    }
  }
  return found;
}

void WriteTextTables(DTSDB& database, const std::string& folder) {
  std::error_code error;
  const fs::path target = Resolved(folder, error);
  if (error) RefuseFile(folder, "can't be written: " + error.message());
  CheckReplaceable(folder, target);
  FolderReplacement written(target);
  for (const AnyTable& table : AllTables(database)) {
    if (table.GetCount() == 0) continue;
    written.Write(table.Info().name + std::string(kSuffix), TextTable(table));
  }
  written.TakePlace();
}

}  // namespace dtsdb::tools
