#include "formats/cgmes/source.h"

#include <QFile>
#include <set>
#include <system_error>

#include "formats/catalog.h"
#include "formats/files.h"
#include "formats/import/archive.h"
#include "formats/import/counted_file.h"
#include "formats/import/root_element.h"

namespace fs = std::filesystem;

namespace dtsdb::tools::cgmes {
namespace {

using Visit = std::function<void(QIODevice&, const std::string&)>;
using Count = std::function<void(std::uint64_t)>;

/// The files of a folder by name.
std::set<fs::path> FilesIn(const fs::path& folder) {
  std::set<fs::path> files;
  std::error_code error;
  for (fs::directory_iterator entry(folder, error); !error && entry != fs::directory_iterator();
       entry.increment(error)) {
    if (entry->is_regular_file(error)) files.insert(entry->path());
  }
  if (error) RefuseFile(folder, "can't be read: " + error.message());
  return files;
}

bool IsTextTable(const fs::path& file) {
  return file.extension() == ".csv" && FindTable(file.stem().string()) != KIND_NONE;
}

void ReadPlainFile(const fs::path& path, const Visit& visit, const Count& count) {
  CountedFile file(path, count);
  if (!file.open(QIODevice::ReadOnly)) RefuseFile(path, "can't be read: " + file.errorString().toStdString());
  visit(file, path.string());
}

void ReadArchive(const fs::path& path, const Visit& visit, const Count& count) {
  const auto visitRdf = [&visit](QIODevice& entry, const std::string& name) {
    const QByteArray beginning = entry.peek(kBeginning);
    const std::string_view bytes(beginning.constData(), static_cast<std::size_t>(beginning.size()));
    if (ContentOf(bytes) == Content::kRdf) visit(entry, name);
  };
  ForEachEntry(path, visitRdf, count);
}

/// The content of a file of a set, which must be readable: without one of its files the set would be another.
Content RequiredContent(const fs::path& path) {
  QFile file(QtPath(path));
  if (!file.open(QIODevice::ReadOnly)) RefuseFile(path, "can't be read: " + file.errorString().toStdString());
  const QByteArray bytes = file.read(kBeginning);
  return ContentOf(std::string_view(bytes.constData(), static_cast<std::size_t>(bytes.size())));
}

}  // namespace

Content ContentOf(std::string_view beginning) {
  if (beginning.starts_with("PK\x03\x04") || beginning.starts_with("PK\x05\x06")) return Content::kZip;
  return RootName(RootTag(beginning)) == QLatin1String("RDF") ? Content::kRdf : Content::kOther;
}

Content ContentOfFile(const fs::path& file) {
  const QByteArray bytes = BeginningOf(file);
  return ContentOf(std::string_view(bytes.constData(), static_cast<std::size_t>(bytes.size())));
}

bool IsSet(const fs::path& path) {
  std::error_code error;
  if (!fs::is_directory(path, error)) {
    return fs::is_regular_file(path, error) && ContentOfFile(path) != Content::kOther;
  }
  bool found = false;
  for (fs::directory_iterator entry(path, error); !error && entry != fs::directory_iterator(); entry.increment(error)) {
    if (IsTextTable(entry->path())) return false;
    found = found || (entry->is_regular_file(error) && ContentOfFile(entry->path()) != Content::kOther);
  }
  return found;
}

void ForEachFile(const fs::path& path, const Visit& visit, const Count& count) {
  std::error_code error;
  if (fs::is_directory(path, error)) {
    for (const fs::path& file : FilesIn(path)) {
      const Content content = RequiredContent(file);
      if (content == Content::kRdf) ReadPlainFile(file, visit, count);
      if (content == Content::kZip) ReadArchive(file, visit, count);
    }
    return;
  }
  if (!fs::exists(path, error)) RefuseFile(path, error ? error.message() : "there is no such file or folder");
  if (!fs::is_regular_file(path, error))
    RefuseFile(path, "is neither a file nor a folder");  // a pipe would be waited for
  if (ContentOfFile(path) == Content::kZip) return ReadArchive(path, visit, count);
  ReadPlainFile(path, visit, count);
}

std::uint64_t SizeOf(const fs::path& path) {
  std::error_code error;
  const auto size = [&error](const fs::path& file) {
    const std::uintmax_t bytes = fs::file_size(file, error);
    return error ? std::uint64_t{0} : std::uint64_t{bytes};
  };
  if (!fs::is_directory(path, error)) return size(path);
  std::uint64_t total = 0;
  for (const fs::path& file : FilesIn(path)) {
    if (ContentOfFile(file) != Content::kOther) total += size(file);
  }
  return total;
}

}  // namespace dtsdb::tools::cgmes
