/// \file
/// The bytes of the files in web/dist; their definitions are written when the program is built (page/embed.cmake).
#pragma once

#include <span>

namespace dtsdb::page::internal {

std::span<const unsigned char> IndexHtml();
std::span<const unsigned char> PageCss();
std::span<const unsigned char> PageJs();

}  // namespace dtsdb::page::internal
