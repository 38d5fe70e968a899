#include "formats/text_layout.h"

#include <fmt/format.h>

#include <QChar>
#include <QString>
#include <algorithm>
#include <iterator>

namespace dtsdb::tools {
namespace {

constexpr qsizetype kLongestQuote = 60;

struct Range {
  char32_t first;
  char32_t last;
};

// The blocks of East Asian width W and F, ascending.
constexpr Range kWide[] = {
    {0x1100, 0x115F},   {0x231A, 0x231B},   {0x2329, 0x232A},   {0x23E9, 0x23EC},   {0x23F0, 0x23F0},
    {0x23F3, 0x23F3},   {0x25FD, 0x25FE},   {0x2614, 0x2615},   {0x2648, 0x2653},   {0x267F, 0x267F},
    {0x2693, 0x2693},   {0x26A1, 0x26A1},   {0x26AA, 0x26AB},   {0x26BD, 0x26BE},   {0x26C4, 0x26C5},
    {0x26CE, 0x26CE},   {0x26D4, 0x26D4},   {0x26EA, 0x26EA},   {0x26F2, 0x26F3},   {0x26F5, 0x26F5},
    {0x26FA, 0x26FA},   {0x26FD, 0x26FD},   {0x2705, 0x2705},   {0x270A, 0x270B},   {0x2728, 0x2728},
    {0x274C, 0x274C},   {0x274E, 0x274E},   {0x2753, 0x2755},   {0x2757, 0x2757},   {0x2795, 0x2797},
    {0x27B0, 0x27B0},   {0x27BF, 0x27BF},   {0x2B1B, 0x2B1C},   {0x2B50, 0x2B50},   {0x2B55, 0x2B55},
    {0x2E80, 0x303E},   {0x3041, 0x33FF},   {0x3400, 0x4DBF},   {0x4E00, 0x9FFF},   {0xA000, 0xA4CF},
    {0xA960, 0xA97F},   {0xAC00, 0xD7A3},   {0xF900, 0xFAFF},   {0xFE10, 0xFE19},   {0xFE30, 0xFE6F},
    {0xFF00, 0xFF60},   {0xFFE0, 0xFFE6},   {0x16FE0, 0x18CFF}, {0x1AFF0, 0x1B2FF}, {0x1F004, 0x1F004},
    {0x1F0CF, 0x1F0CF}, {0x1F18E, 0x1F18E}, {0x1F191, 0x1F19A}, {0x1F200, 0x1F320}, {0x1F32D, 0x1F335},
    {0x1F337, 0x1F37C}, {0x1F37E, 0x1F393}, {0x1F3A0, 0x1F3CA}, {0x1F3CF, 0x1F3D3}, {0x1F3E0, 0x1F3F0},
    {0x1F3F4, 0x1F3F4}, {0x1F3F8, 0x1F43E}, {0x1F440, 0x1F440}, {0x1F442, 0x1F4FC}, {0x1F4FF, 0x1F53D},
    {0x1F54B, 0x1F567}, {0x1F5FB, 0x1F64F}, {0x1F680, 0x1F6C5}, {0x1F6CC, 0x1F6DF}, {0x1F6EB, 0x1F6FC},
    {0x1F7E0, 0x1F7F0}, {0x1F90C, 0x1F9FF}, {0x1FA70, 0x1FAFF}, {0x20000, 0x3FFFD},
};

bool IsWide(char32_t c) {
  const auto* const range = std::lower_bound(std::begin(kWide), std::end(kWide), c,
                                             [](const Range& r, char32_t code) { return r.last < code; });
  return range != std::end(kWide) && range->first <= c;
}

bool IsInvisible(char32_t c) {
  switch (QChar::category(c)) {
    case QChar::Mark_NonSpacing:
    case QChar::Mark_Enclosing:
    case QChar::Other_Format:
      return c != 0xAD;  // a soft hyphen stands there like any other hyphen
    default:
      return c >= 0x1160 && c <= 0x11FF;  // vowels and finals, drawn into the syllable before them
  }
}

int WidthOf(char32_t c) {
  if (c < 0x7F) return c < 0x20 ? 0 : 1;
  if (IsInvisible(c) || QChar::category(c) == QChar::Other_Control) return 0;
  return IsWide(c) ? 2 : 1;
}

QString Decoded(std::string_view text) { return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size())); }

bool NeedsEscape(QChar c) {
  return c.category() == QChar::Other_Control || c == QChar(0x2028) || c == QChar(0x2029) || TurnsText(c.unicode());
}

std::string Escaped(QChar c) {
  if (c == u'\n') return "\\n";
  if (c == u'\r') return "\\r";
  if (c == u'\t') return "\\t";
  const unsigned code = c.unicode();
  return code > 0xFF ? fmt::format("\\u{:04X}", code) : fmt::format("\\x{:02X}", code);
}

std::string OneLineOf(const QString& text) {
  QString shown;
  for (const QChar c : text) {
    if (NeedsEscape(c)) {
      shown += QString::fromStdString(Escaped(c));
    } else {
      shown += c;
    }
  }
  return shown.toStdString();
}

}  // namespace

int DisplayWidth(std::string_view text) {
  int width = 0;
  for (const char32_t c : Decoded(text).toStdU32String()) width += WidthOf(c);
  return width;
}

std::string Padded(std::string_view text, int width, bool toRight) {
  const std::string blanks(static_cast<std::size_t>(std::max(0, width - DisplayWidth(text))), ' ');
  return toRight ? blanks + std::string(text) : std::string(text) + blanks;
}

std::string OneLine(std::string_view text) { return OneLineOf(Decoded(text)); }

std::string Counted(long long number, std::string_view noun) {
  return fmt::format("{} {}{}", number, noun, number == 1 ? "" : "s");
}

std::string Quoted(std::string_view text) {
  const QString decoded = Decoded(text);
  if (decoded.size() <= kLongestQuote) return "'" + OneLineOf(decoded) + "'";
  return "'" + OneLineOf(decoded.left(kLongestQuote)) + "...'";
}

}  // namespace dtsdb::tools
