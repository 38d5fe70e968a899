/// \file
/// Files and folders, with failures reported in one line.
#pragma once

#include <QString>
#include <cstddef>
#include <filesystem>
#include <string>
#include <string_view>

namespace dtsdb::tools {

/// A path as Qt takes it.
QString QtPath(const std::filesystem::path& path);

/// The most bytes of a file that is read whole.
inline constexpr std::size_t kMostFileBytes = std::size_t{4} << 30;
/// The most bytes of a script.
inline constexpr std::size_t kMostScriptBytes = std::size_t{64} << 20;

/// The bytes of a file. Throws Failure when it can't be read or has more than `most` bytes: a device has no end.
std::string ReadFile(const std::filesystem::path& path, std::size_t most = kMostFileBytes);

/// The bytes of a text file behind the byte order mark that some editors put in front of UTF-8.
std::string_view WithoutByteOrderMark(std::string_view bytes);

/// Makes a file with `bytes`, which takes the place of an old one when it is whole and on the disk
/// (model/whole_file.h). Throws Failure, and leaves an old one as it was, when it can't be written.
void WriteFile(const std::filesystem::path& path, const std::string& bytes);

/// Refuses to go on because of the file or folder `path`.
[[noreturn]] void RefuseFile(const std::filesystem::path& path, const std::string& what);

}  // namespace dtsdb::tools
