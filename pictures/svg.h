/// \file
/// Pictures as SVG.
#pragma once

#include <string>

#include "pictures/picture.h"

namespace dtsdb::pictures {

/// A picture as an SVG document in UTF-8, complete in itself: symbols and style are inside, nothing is referred to
/// outside. Elements are groups with id, class, `<title>` and the record in data-table and data-id. Texts are escaped;
/// what XML can't hold becomes U+FFFD.
std::string ToSvg(const Picture& picture);

}  // namespace dtsdb::pictures
