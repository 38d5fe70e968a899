/// \file
/// The fonts of pictures, and how wide texts are in them.
#pragma once

#include <string>

namespace dtsdb::pictures::internal {

/// A font of pictures/style.css.
struct Font {
  int size = 11;  ///< in pixels
  bool isBold = false;
};

inline constexpr Font kUsualFont{};
inline constexpr Font kSmallFont{10, false};
inline constexpr Font kBoldFont{11, true};
inline constexpr Font kTitleFont{16, true};

/// Width in pixels that a text takes at most. That of the first fonts that the style names, which are all as wide as
/// Helvetica; characters of other scripts take as much as the widest of them.
int TextWidth(const std::string& text, const Font& font = kUsualFont);

}  // namespace dtsdb::pictures::internal
