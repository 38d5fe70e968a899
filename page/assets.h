/// \file
/// The built front end, web/dist, as part of the program.
#pragma once

#include <span>
#include <string_view>

namespace dtsdb::page {

/// A file of the front end. The views hold for the life of the program.
struct Asset {
  std::string_view name;  ///< such as "page.js"
  std::string_view type;  ///< for the header Content-Type
  std::string_view bytes;
};

/// index.html, which refers to the others by their names beside it, page.css and page.js.
std::span<const Asset> Assets();

/// The file of this name; null when there is none.
const Asset* FindAsset(std::string_view name);

}  // namespace dtsdb::page
