/// \file
/// Where the files of a CGMES set come from: paths of files, folders and zip archives.
#pragma once

#include <QIODevice>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <string>
#include <string_view>

namespace dtsdb::tools::cgmes {

/// What the first bytes of a file show.
enum class Content { kOther, kRdf, kZip };

/// Looks at the first kilobytes of a text: kRdf for XML whose root element is called RDF.
Content ContentOf(std::string_view beginning);
/// The same for a file; kOther for one that can't be read.
Content ContentOfFile(const std::filesystem::path& file);

/// True when `path` is a file of RDF, a zip archive, or a folder with such files in it (sub-folders aren't looked at)
/// and without text tables.
bool IsSet(const std::filesystem::path& path);

/// Calls `visit(input, name)` with every file of RDF that `path` leads to: itself, those in a folder in the order of
/// their names, and those in zip archives in the order of the archive. Nothing is written to disk. Other files in
/// folders and archives are passed over. Throws Failure for what can't be read, and for an archive that holds more
/// files, expands to more bytes or is packed more densely than any grid. `count` is called with the bytes
/// that have been read from the disk since its last call.
void ForEachFile(
    const std::filesystem::path& path, const std::function<void(QIODevice&, const std::string&)>& visit,
    const std::function<void(std::uint64_t)>& count = [](std::uint64_t) {});

/// The bytes of the files that `path` leads to, as they lie on the disk; those that can't be read don't count.
std::uint64_t SizeOf(const std::filesystem::path& path);

}  // namespace dtsdb::tools::cgmes
