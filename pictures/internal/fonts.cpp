#include "pictures/internal/fonts.h"

#include <array>

#include "formats/text_layout.h"

namespace dtsdb::pictures::internal {
namespace {

/// The widths of the characters from blank to tilde, in thousandths of the size.
constexpr std::array<int, 95> kWidths = {
    278, 278, 355, 556, 556, 889, 667, 191, 333, 333, 389, 584, 278, 333,  278, 278, 556, 556, 556,
    556, 556, 556, 556, 556, 556, 556, 278, 278, 584, 584, 584, 556, 1015, 667, 667, 722, 722, 667,
    611, 778, 722, 278, 500, 667, 556, 833, 722, 778, 667, 778, 722, 667,  611, 722, 667, 944, 667,
    667, 611, 278, 278, 278, 469, 556, 333, 556, 556, 500, 556, 556, 278,  556, 556, 222, 222, 500,
    222, 833, 556, 556, 556, 556, 333, 500, 278, 556, 500, 722, 500, 500,  500, 334, 260, 334, 584};
constexpr int kColumn = 700;  // of a column of other characters
constexpr int kBoldPercent = 112;

bool IsPlain(char c) { return c >= ' ' && c <= '~'; }
bool IsContinued(char c) { return (static_cast<unsigned char>(c) & 0xC0) == 0x80; }

/// The width of the character of UTF-8 that begins at `begin`, which is moved behind it.
int TakeCharacter(const std::string& text, std::size_t& begin) {
  if (IsPlain(text[begin])) return kWidths[static_cast<std::size_t>(text[begin++] - ' ')];
  std::size_t end = begin + 1;
  while (end < text.size() && IsContinued(text[end])) ++end;
  const int columns = tools::DisplayWidth(text.substr(begin, end - begin));
  begin = end;
  return columns * kColumn;
}

}  // namespace

int TextWidth(const std::string& text, const Font& font) {
  if (text.empty()) return 0;
  int thousandths = 0;
  for (std::size_t i = 0; i < text.size();) thousandths += TakeCharacter(text, i);
  if (font.isBold) thousandths = thousandths * kBoldPercent / 100;
  return thousandths * font.size / 1000 + 2;
}

}  // namespace dtsdb::pictures::internal
