/// \file
/// Packed files: read from the beginning to the end without anything written to disk, and made.
#pragma once

#include <QIODevice>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <string>

namespace dtsdb::tools {

/// The most bytes that a packed file may expand to.
inline constexpr qint64 kMostExpandedBytes = qint64{8} << 30;

/// Calls `visit(entry, name)` with the files in a zip archive, in its order. Names are only shown, never used as paths.
/// Throws Failure for an archive that can't be read, that expands to more than `most` bytes or that otherwise costs
/// more than any grid. `count` is called with the bytes of the archive that have been read since its last call.
void ForEachEntry(
    const std::filesystem::path& archive, const std::function<void(QIODevice&, const std::string&)>& visit,
    const std::function<void(std::uint64_t)>& count = [](std::uint64_t) {}, qint64 most = kMostExpandedBytes);

/// Calls `visit(content)` with what a file packed by gzip expands to. Throws Failure as ForEachEntry does.
void ReadPacked(
    const std::filesystem::path& file, const std::function<void(QIODevice&)>& visit,
    const std::function<void(std::uint64_t)>& count = [](std::uint64_t) {}, qint64 most = kMostExpandedBytes);

/// Writes `text` packed by gzip, without a time, so that the same text gives the same bytes. False when that fails.
bool Pack(const QByteArray& text, QIODevice& output);

}  // namespace dtsdb::tools
