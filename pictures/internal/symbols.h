/// \file
/// The symbols and the style of pictures, which are kept as data in pictures/symbols.svg and pictures/style.css.
#pragma once

#include <string>
#include <string_view>

#include "pictures/picture.h"

namespace dtsdb::pictures::internal {

extern const char* const kSymbolsFile;  ///< the contents of pictures/symbols.svg
extern const char* const kStyleFile;    ///< the contents of pictures/style.css

struct Size {
  int width = 0;
  int height = 0;
};

/// The size of a symbol as it stands upright. {0, 0} for a name that isn't in the file.
Size SizeOfSymbol(const std::string& name);

/// A symbol of the size that the file gives it.
Symbol MakeSymbol(const std::string& name, Point centre, int quarterTurns = 0, const std::string& classes = "");

/// The <symbol> elements of the file, for an SVG.
std::string_view SymbolDefinitions();

}  // namespace dtsdb::pictures::internal
