/// \file
/// What XML a file contains, seen from its beginning.
#pragma once

#include <QString>
#include <filesystem>
#include <string_view>

namespace dtsdb::tools {

/// So many bytes of a file are enough for the functions below.
inline constexpr qint64 kBeginning = qint64{16} * 1024;

/// The first bytes of a file; none of one that can't be read.
QByteArray BeginningOf(const std::filesystem::path& file);

/// The tag that opens the root element of the XML text that begins with `beginning`, in whatever encoding, without its
/// "<" and as far as it is there. Empty for anything else.
QString RootTag(std::string_view beginning);

/// The name of the root element in such a tag, without its prefix.
QString RootName(const QString& tag);

}  // namespace dtsdb::tools
